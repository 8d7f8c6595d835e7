// make_sky OUT.hdr
// Computes a sky with a sun over a plain, hands the pixels to CVrxHDR as RGBE bytes and lets it write the
// file.
#include <windows.h>

#include <oleauto.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "VrxCommon.h"

namespace {

constexpr long kWidth = 768;
constexpr long kHeight = 384;
constexpr double kPi = 3.14159265358979323846;

struct Colour {
    double r, g, b;
};

Colour mix(const Colour& a, const Colour& b, double t) {
    return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t};
}

/// Radiance from a direction: azimuth 0 to 2 pi, altitude -pi/2 to pi/2.
Colour radiance(double azimuth, double altitude) {
    if (altitude < 0.0) {
        const double distance = std::min(-altitude * 3.0, 1.0);
        return mix({0.55, 0.50, 0.40}, {0.16, 0.17, 0.07}, distance);
    }
    Colour sky = mix({1.1, 1.15, 1.2}, {0.12, 0.28, 0.75}, std::sqrt(std::sin(altitude)));
    const double sunAzimuth = 1.2 * kPi;
    const double sunAltitude = 0.14 * kPi;
    const double cosine = std::sin(altitude) * std::sin(sunAltitude) +
                          std::cos(altitude) * std::cos(sunAltitude) * std::cos(azimuth - sunAzimuth);
    const double angle = std::acos(std::clamp(cosine, -1.0, 1.0));
    const double glow = 4.0 * std::exp(-angle * 9.0) + 0.5 * std::exp(-angle * 2.0);
    const double disc = angle < 0.02 ? 20000.0 : 0.0;
    return {sky.r + glow + disc, sky.g + glow * 0.85 + disc * 0.9, sky.b + glow * 0.6 + disc * 0.75};
}

/// Writes one pixel's three mantissas and shared exponent into the planes of the array.
void putPixel(unsigned char* pixel, std::size_t plane, const Colour& colour) {
    int exponent = 0;
    const double largest = std::max({colour.r, colour.g, colour.b});
    const double scale = std::frexp(largest, &exponent) * 256.0 / largest;
    pixel[0] = static_cast<unsigned char>(colour.r * scale);
    pixel[plane] = static_cast<unsigned char>(colour.g * scale);
    pixel[2 * plane] = static_cast<unsigned char>(colour.b * scale);
    pixel[3 * plane] = static_cast<unsigned char>(exponent + 128);
}

/// A byte array (0 To width, 0 To height, 0 To 3): one column and one row more than the picture.
SAFEARRAY* makePixels() {
    SAFEARRAYBOUND bounds[] = {{kWidth + 1, 0}, {kHeight + 1, 0}, {4, 0}};
    SAFEARRAY* array = SafeArrayCreate(VT_UI1, 3, bounds);
    void* data = nullptr;
    if (!array || FAILED(SafeArrayAccessData(array, &data))) return nullptr;
    const std::size_t stride = kWidth + 1;
    const std::size_t plane = stride * (kHeight + 1);
    for (long y = 0; y < kHeight; ++y) {
        const double altitude = kPi * (0.5 - (static_cast<double>(y) + 0.5) / kHeight);
        auto* row = static_cast<unsigned char*>(data) + static_cast<std::size_t>(y) * stride;
        for (long x = 0; x < kWidth; ++x) {
            const double azimuth = 2.0 * kPi * (static_cast<double>(x) + 0.5) / kWidth;
            putPixel(row + x, plane, radiance(azimuth, altitude));
        }
    }
    SafeArrayUnaccessData(array);
    return array;
}

HRESULT writeSky(const wchar_t* path) {
    _CVrxHDR* picture = nullptr;
    HRESULT result = CoCreateInstance(CLSID_CVrxHDR, nullptr, CLSCTX_INPROC_SERVER, IID__CVrxHDR,
                                      reinterpret_cast<void**>(&picture));
    if (FAILED(result)) return result;

    VARIANT pixels;
    VariantInit(&pixels);
    V_VT(&pixels) = VT_ARRAY | VT_UI1;
    V_ARRAY(&pixels) = makePixels();
    result = V_ARRAY(&pixels) ? picture->Set_HDR(&pixels) : E_OUTOFMEMORY;
    VariantClear(&pixels);

    BSTR name = SysAllocString(path);
    BSTR written = nullptr;
    if (SUCCEEDED(result)) result = picture->Save_HDR(name, &written);
    SysFreeString(written);
    SysFreeString(name);
    picture->Release();
    return result;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    if (count != 2) {
        std::fputs("usage: make_sky OUT.hdr\n", stderr);
        return 2;
    }
    HRESULT result = CoInitialize(nullptr);
    if (SUCCEEDED(result)) {
        result = writeSky(arguments[1]);
        CoUninitialize();
    }
    if (FAILED(result))
        std::fprintf(stderr, "make_sky: failed with 0x%08lX\n", static_cast<unsigned long>(result));
    return SUCCEEDED(result) ? 0 : 1;
}
