#include "raster/picture_file.h"

#include <olectl.h>

#include "common/engine/error.h"
#include "common/file_io.h"
#include "common/handle_number.h"
#include "common/win_resource.h"
#include "effects/screen_scale.h"
#include "raster/drawing_surface.h"
#include "raster/engine/bmp_check.h"

namespace vrx {
namespace {

void check(HRESULT result) {
    if (result == E_OUTOFMEMORY) throw platformError(Platform::OutOfMemory);
    if (FAILED(result)) throw platformError(Platform::InvalidPicture);
}

ComPtr<IStream> streamOf(std::span<const std::uint8_t> bytes) {
    ComPtr<IStream> stream;
    check(CreateStreamOnHGlobal(nullptr, TRUE, stream.put()));
    ULONG written = 0;
    check(stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), &written));
    if (written != bytes.size()) throw platformError(Platform::OutOfMemory);
    check(stream->Seek({}, STREAM_SEEK_SET, nullptr));
    return stream;
}

bool isEmpty(IPicture& picture) {
    SHORT type = PICTYPE_NONE;
    return FAILED(picture.get_Type(&type)) || type == PICTYPE_NONE || type == PICTYPE_UNINITIALIZED;
}

}  // namespace

HBITMAP bitmapOf(IPicture& picture) {
    SHORT type = PICTYPE_NONE;
    OLE_HANDLE handle = 0;
    if (FAILED(picture.get_Type(&type)) || type != PICTYPE_BITMAP || FAILED(picture.get_Handle(&handle)))
        return nullptr;
    return handleOf<HBITMAP>(static_cast<LONG>(handle));
}

ComPtr<IPicture> loadPicture(const std::u16string& path) {
    // The system's own loading by path would also take an address on a network, and short names only.
    Bytes file = readFileAndZero(path);
    file.shrink(file.size() - 1);
    if (isBrokenBmp(file.span())) throw platformError(Platform::InvalidPicture);
    ComPtr<IPicture> picture;
    // Not in run mode: there a picture does not own its bitmap on every system.
    check(OleLoadPicture(streamOf(file.span()).get(), static_cast<LONG>(file.size()), FALSE, IID_IPicture,
                         reinterpret_cast<void**>(picture.put())));
    if (!picture || isEmpty(*picture)) throw platformError(Platform::InvalidPicture);
    return picture;
}

PictureSize pixelSizeOf(IPicture& picture) {
    OLE_XSIZE_HIMETRIC width = 0;
    OLE_YSIZE_HIMETRIC height = 0;
    check(picture.get_Width(&width));
    check(picture.get_Height(&height));
    return {scaleX(static_cast<float>(width)), scaleY(static_cast<float>(height))};
}

Bitmap24 readPixels(IPicture& picture) {
    const HBITMAP bitmap = bitmapOf(picture);
    if (!bitmap) throw platformError(Platform::InvalidPicture);
    const PictureSize size = pixelSizeOf(picture);
    if (size.width <= 0 || size.height <= 0) throw platformError(Platform::InvalidPicture);
    Bitmap24 pixels(static_cast<std::uint32_t>(size.width), static_cast<std::uint32_t>(size.height));
    const MemoryDc dc(CreateCompatibleDC(nullptr));
    if (!dc) throw platformError(Platform::OutOfMemory);
    BITMAPINFO info{};
    info.bmiHeader = header24(size.width, size.height);
    if (!GetDIBits(dc.get(), bitmap, 0, static_cast<UINT>(size.height), pixels.data(), &info,
                   DIB_RGB_COLORS)) {
        throw platformError(Platform::InvalidPicture);
    }
    return pixels;
}

}  // namespace vrx
