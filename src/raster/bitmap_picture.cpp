#include "raster/bitmap_picture.h"

#include <olectl.h>

#include "ground/error.h"
#include "raster/engine/bitmap24.h"

namespace vrx {

BITMAPINFOHEADER header24(std::int32_t width, std::int32_t height) {
    BITMAPINFOHEADER header{};
    header.biSize = sizeof header;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = 24;
    header.biCompression = BI_RGB;
    return header;
}

BitmapSection makeSection(std::int32_t width, std::int32_t height) {
    // Throws for sizes that no process holds, before the system computes with them.
    static_cast<void>(bitmapSize(static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height)));
    BITMAPINFO info{};
    info.bmiHeader = header24(width, height);
    void* bits = nullptr;
    Bitmap bitmap(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    if (!bitmap) throw platformError(Platform::OutOfMemory);
    return {std::move(bitmap), static_cast<std::uint8_t*>(bits)};
}

ComPtr<IPictureDisp> makePicture(Bitmap bitmap) {
    PICTDESC description{};
    description.cbSizeofstruct = sizeof description;
    description.picType = PICTYPE_BITMAP;
    description.bmp.hbitmap = bitmap.get();
    ComPtr<IPictureDisp> picture;
    if (FAILED(OleCreatePictureIndirect(&description, IID_IPictureDisp, TRUE,
                                        reinterpret_cast<void**>(picture.put())))) {
        throw platformError(Platform::OutOfMemory);
    }
    static_cast<void>(bitmap.release());
    return picture;
}

}  // namespace vrx
