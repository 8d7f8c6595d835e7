#include "dialogs/controls/picture_drawing.h"

#include <olectl.h>

#include "com/entry.h"
#include "common/device_context.h"
#include "raster/drawing_surface.h"
#include "raster/picture_file.h"

namespace vrx {
namespace {

/// The handle of a picture that is a plain bitmap; null for every other kind.
HBITMAP plainBitmap(IPicture& picture) {
    DWORD attributes = 0;
    const bool told = SUCCEEDED(callHost([&] { return picture.get_Attributes(&attributes); }));
    return told && (attributes & PICTURE_TRANSPARENT) ? nullptr : bitmapOf(picture);
}

/// Printers and metafiles of theirs take a bitmap's bits, but not always what a bitmap of the screen's holds.
bool isScreen(HDC dc) {
    const DWORD kind = GetObjectType(dc);
    return kind != OBJ_METADC && kind != OBJ_ENHMETADC && GetDeviceCaps(dc, TECHNOLOGY) == DT_RASDISPLAY;
}

/// True when it was drawn.
bool stretchBits(HDC dc, IPicture& picture, HBITMAP bitmap, const RECT& frame) {
    try {
        PicturePixels pixels = readPixels(bitmap, pixelSizeOf(picture));
        BITMAPINFO info{};
        info.bmiHeader = header24(pixels.width, pixels.height);
        info.bmiHeader.biSizeImage = static_cast<DWORD>(pixels.rows().size());  // metafiles go by it
        SetStretchBltMode(dc, COLORONCOLOR);
        const int drawn =
            StretchDIBits(dc, frame.left, frame.top, frame.right - frame.left, frame.bottom - frame.top, 0, 0,
                          pixels.width, pixels.height, pixels.rows().data(), &info, DIB_RGB_COLORS, SRCCOPY);
        return drawn != static_cast<int>(GDI_ERROR);
    } catch (const Error&) {
        return false;
    }
}

/// True when it was drawn.
bool stretchBitmap(HDC dc, HBITMAP bitmap, const RECT& frame) {
    BITMAP description{};
    if (!bitmap || !GetObjectW(bitmap, sizeof description, &description)) return false;
    const BitmapDc source(bitmap);
    if (!source) return false;
    SetStretchBltMode(dc, COLORONCOLOR);
    return StretchBlt(dc, frame.left, frame.top, frame.right - frame.left, frame.bottom - frame.top,
                      source.get(), 0, 0, description.bmWidth, description.bmHeight, SRCCOPY) != FALSE;
}

}  // namespace

/// For a 24-bit section it is one as well: the system would convert the whole of a large picture, only to
/// show few of its pixels.
HBITMAP makeCanvas(HDC screen, IPicture* picture, int width, int height) {
    DIBSECTION section{};
    const HBITMAP shown = picture ? plainBitmap(*picture) : nullptr;
    const bool isSection = shown && GetObjectW(shown, sizeof section, &section) == sizeof section;
    if (!isSection || section.dsBmih.biBitCount != 24) return CreateCompatibleBitmap(screen, width, height);
    BITMAPINFO info{};
    info.bmiHeader = header24(width, height);
    void* bits = nullptr;
    return CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
}

void drawPicture(HDC dc, IPicture& picture, const RECT& frame) {
    const HBITMAP bitmap = plainBitmap(picture);
    if (bitmap && !isScreen(dc) && stretchBits(dc, picture, bitmap, frame)) return;
    if (stretchBitmap(dc, bitmap, frame)) return;
    callHost([&] {
        OLE_XSIZE_HIMETRIC width = 0;
        OLE_YSIZE_HIMETRIC height = 0;
        if (FAILED(picture.get_Width(&width)) || FAILED(picture.get_Height(&height))) return;
        // A picture's own lengths count from the bottom.
        picture.Render(dc, frame.left, frame.top, frame.right - frame.left, frame.bottom - frame.top, 0,
                       height, width, -height, nullptr);
    });
}

}  // namespace vrx
