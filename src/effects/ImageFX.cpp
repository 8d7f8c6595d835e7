#include "effects/ImageFX.h"

#include "com/handle_number.h"
#include "common/screen_scale.h"
#include "effects/engine/fit_proportional.h"
#include "effects/engine/grey.h"
#include "effects/engine/smoothing.h"
#include "raster/bitmap_picture.h"
#include "raster/picture_file.h"

namespace vrx {
namespace {

const ClassIdentity kIdentity = {u"ImageFX", CLSID_ImageFX, IID__ImageFX};

using Effect = void (*)(std::span<std::uint8_t>, std::int32_t, std::int32_t);

/// Applies an effect to a host's own array. Its bytes count from the first element, whatever the lower bound.
void applyTo(const VARIANT& buffer, Effect effect, std::int32_t dimX, std::int32_t dimY) {
    const ByteArrayView array(buffer);
    if (array.rank() > 1) throw platformError(Platform::TypeMismatch);
    effect(array.bytes(), dimX, dimY);
}

/// A typed parameter by reference, for which compiled hosts may pass nothing.
template <class T>
T valueOf(const T* parameter, T byDefault) {
    return parameter ? *parameter : byDefault;
}

/// A context that cannot be drawn on is the host's: it learns of that as of every failure here, by what it
/// sees.
void draw(HDC context, const FittedRectangle& target, const PicturePixels& pixels) {
    BITMAPINFO info{};
    info.bmiHeader = header24(pixels.width, pixels.height);
    StretchDIBits(context, target.left, target.top, target.width, target.height, 0, 0, pixels.width,
                  pixels.height, pixels.bits.data(), &info, DIB_RGB_COLORS, SRCCOPY);
}

}  // namespace

ImageFX::ImageFX() : ObjectBase(kIdentity) {}

STDMETHODIMP ImageFX::ScaleX(float Width, short* value) {
    return answer(value, [&] { return scaleX(Width); });
}

STDMETHODIMP ImageFX::ScaleY(float Height, short* value) {
    return answer(value, [&] { return scaleY(Height); });
}

STDMETHODIMP ImageFX::Blur_Buffer(VARIANT* Buffer, long DimX, long DimY) {
    if (!Buffer) return E_POINTER;
    return run([&] { applyTo(*Buffer, blur, DimX, DimY); });
}

STDMETHODIMP ImageFX::MedianCut_Buffer(VARIANT* Buffer, long DimX, long DimY) {
    if (!Buffer) return E_POINTER;
    return run([&] { applyTo(*Buffer, medianCut, DimX, DimY); });
}

STDMETHODIMP ImageFX::ColorToBN(BSTR FileName, long PictureHDC, long, VARIANT_BOOL* TwoColor,
                                unsigned char* Threshold, VARIANT_BOOL* HoldProportion, long* Width,
                                long* Height, VARIANT_BOOL* value) {
    const GreyStyle style{valueOf(TwoColor, VARIANT_FALSE) != VARIANT_FALSE,
                          valueOf(Threshold, GreyStyle{}.threshold)};
    const bool fitted = valueOf(HoldProportion, VARIANT_FALSE) != VARIANT_FALSE;
    return answer(value, [&] {
        try {
            PicturePixels pixels = loadPixels(toText(FileName));
            FittedRectangle target{0, 0, pixels.width, pixels.height};
            convertToGrey(pixels.rows(), pixels.width, pixels.height, style);
            SetStretchBltMode(handleOf<HDC>(PictureHDC), COLORONCOLOR);
            if (fitted) {
                target =
                    fitProportional(valueOf(Width, 0L), valueOf(Height, 0L), target.width, target.height);
            }
            draw(handleOf<HDC>(PictureHDC), target, pixels);
        } catch (...) {
            // Hosts see a failure only in that nothing is drawn.
        }
        return false;
    });
}

}  // namespace vrx
