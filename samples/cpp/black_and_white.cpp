// black_and_white IN.bmp OUT.bmp [THRESHOLD]
// Lets ImageFX draw a picture file in black and white into a device context, and writes what was drawn.
#include <windows.h>

#include <oleauto.h>

#include <cstdio>
#include <cstdlib>

#include "VrxCommon.h"

namespace {

struct Canvas {
    HDC dc = CreateCompatibleDC(nullptr);
    HBITMAP bitmap = nullptr;
    void* bits = nullptr;
    BITMAPINFOHEADER header{};

    Canvas(long width, long height) {
        header.biSize = sizeof header;
        header.biWidth = width;
        header.biHeight = height;
        header.biPlanes = 1;
        header.biBitCount = 24;
        header.biSizeImage = static_cast<DWORD>(((width * 3 + 3) & ~3) * height);
        bitmap =
            CreateDIBSection(dc, reinterpret_cast<BITMAPINFO*>(&header), DIB_RGB_COLORS, &bits, nullptr, 0);
        SelectObject(dc, bitmap);
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;
    ~Canvas() {
        DeleteDC(dc);
        DeleteObject(bitmap);
    }

    bool write(const wchar_t* path) const {
        BITMAPFILEHEADER file{};
        file.bfType = 0x4D42;
        file.bfOffBits = sizeof file + sizeof header;
        file.bfSize = file.bfOffBits + header.biSizeImage;
        std::FILE* out = _wfopen(path, L"wb");
        if (!out) return false;
        GdiFlush();
        const bool written = std::fwrite(&file, sizeof file, 1, out) == 1 &&
                             std::fwrite(&header, sizeof header, 1, out) == 1 &&
                             std::fwrite(bits, header.biSizeImage, 1, out) == 1;
        return std::fclose(out) == 0 && written;
    }
};

/// The size of a picture file, which CVrxImage tells in its record.
HRESULT sizeOf(BSTR path, BmpInfo& info) {
    _CVrxImage* image = nullptr;
    HRESULT result = CoCreateInstance(CLSID_CVrxImage, nullptr, CLSCTX_INPROC_SERVER, IID__CVrxImage,
                                      reinterpret_cast<void**>(&image));
    if (FAILED(result)) return result;
    SAFEARRAY* bits = nullptr;
    result = image->Load_BMP(path);
    if (SUCCEEDED(result)) result = image->Get_BMP(&bits, &info);
    if (bits) SafeArrayDestroy(bits);
    image->Release();
    return result;
}

// [colortobn]
HRESULT draw(BSTR path, Canvas& canvas, unsigned char threshold) {
    _ImageFX* effects = nullptr;
    HRESULT result = CoCreateInstance(CLSID_ImageFX, nullptr, CLSCTX_INPROC_SERVER, IID__ImageFX,
                                      reinterpret_cast<void**>(&effects));
    if (FAILED(result)) return result;
    VARIANT_BOOL twoColors = VARIANT_TRUE;
    VARIANT_BOOL holdProportion = VARIANT_FALSE;
    long width = 0;
    long height = 0;
    VARIANT_BOOL always = VARIANT_FALSE;
    result = effects->ColorToBN(path, static_cast<long>(reinterpret_cast<INT_PTR>(canvas.dc)), 0, &twoColors,
                                &threshold, &holdProportion, &width, &height, &always);
    effects->Release();
    return result;
}
// [/colortobn]

HRESULT convert(const wchar_t* source, const wchar_t* target, unsigned char threshold) {
    BSTR path = SysAllocString(source);
    BmpInfo info{};
    HRESULT result = sizeOf(path, info);
    if (SUCCEEDED(result)) {
        Canvas canvas(info.biWidth, info.biHeight);
        result = canvas.bitmap ? draw(path, canvas, threshold) : E_OUTOFMEMORY;
        if (SUCCEEDED(result) && !canvas.write(target)) result = E_FAIL;
    }
    SysFreeString(path);
    return result;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    if (count != 3 && count != 4) {
        std::fputs("usage: black_and_white IN.bmp OUT.bmp [THRESHOLD]\n", stderr);
        return 2;
    }
    const int threshold = count == 4 ? _wtoi(arguments[3]) : 128;
    HRESULT result = CoInitialize(nullptr);
    if (SUCCEEDED(result)) {
        result = convert(arguments[1], arguments[2], static_cast<unsigned char>(threshold));
        CoUninitialize();
    }
    if (FAILED(result))
        std::fprintf(stderr, "black_and_white: failed with 0x%08lX\n", static_cast<unsigned long>(result));
    return SUCCEEDED(result) ? 0 : 1;
}
