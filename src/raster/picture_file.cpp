#include "raster/picture_file.h"

#include <olectl.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <vector>

#include "com/entry.h"
#include "com/handle_number.h"
#include "com/win_resource.h"
#include "common/device_context.h"
#include "common/file_io.h"
#include "common/screen_scale.h"
#include "ground/error.h"
#include "raster/bitmap_picture.h"
#include "raster/engine/bitmap24.h"
#include "raster/engine/bmp_check.h"
#include "raster/engine/bmp_reader.h"

namespace vrx {
namespace {

constexpr std::uint64_t kReadAtOnce = 1U << 20;

void check(HRESULT result) {
    if (result == E_OUTOFMEMORY) throw platformError(Platform::OutOfMemory);
    if (FAILED(result)) throw platformError(Platform::InvalidPicture);
}

void require(bool condition, Platform otherwise) {
    if (!condition) throw platformError(otherwise);
}

/// Black pixels. Error 7 for more than the process can hold.
PicturePixels makePixels(PictureSize size) {
    require(size.width > 0 && size.height > 0, Platform::InvalidPicture);
    const std::uint64_t stride = strideOf(static_cast<std::uint32_t>(size.width));
    PicturePixels pixels{size.width, size.height,
                         Bytes(stride * static_cast<std::uint32_t>(size.height) + 1)};
    std::memset(pixels.bits.data(), 0, pixels.bits.size());
    return pixels;
}

std::optional<BmpReader> readBmp(const InputFile& file) {
    std::array<std::uint8_t, BmpReader::kHeadSize> head;
    const std::size_t size = file.readAt(0, head);
    return BmpReader::read({head.data(), size}, file.size());
}

/// Fills the rows of a bottom-up bitmap, some at a time: the file is never in memory as a whole.
void decode(const BmpReader& bmp, const InputFile& file, std::uint8_t* bits) {
    const std::uint64_t stride = bmp.rowStride();
    const std::uint64_t most = std::max<std::uint64_t>(kReadAtOnce / stride, 1);
    Bytes part(stride * std::min<std::uint64_t>(most, bmp.height()));
    const auto rowsAtOnce = static_cast<std::uint32_t>(part.size() / stride);
    for (std::uint32_t first = 0; first < bmp.height(); first += rowsAtOnce) {
        const std::uint32_t count = std::min(rowsAtOnce, bmp.height() - first);
        const std::size_t held = file.readAt(bmp.rowsOffset() + first * stride,
                                             {part.data(), static_cast<std::size_t>(count * stride)});
        for (std::uint32_t i = 0; i < count; ++i) {
            const auto start = std::min(static_cast<std::size_t>(i * stride), held);
            const auto size = std::min(static_cast<std::size_t>(stride), held - start);
            const std::uint32_t row = bmp.topDown() ? bmp.height() - 1 - (first + i) : first + i;
            bmp.convertRow({part.data() + start, size}, bits + std::size_t{row} * strideOf(bmp.width()));
        }
    }
}

ComPtr<IPicture> pictureOf(const BmpReader& bmp, const InputFile& file) {
    constexpr std::uint32_t kLargest = INT32_MAX;
    require(bmp.width() <= kLargest && bmp.height() <= kLargest, Platform::OutOfMemory);
    BitmapSection section =
        makeSection(static_cast<std::int32_t>(bmp.width()), static_cast<std::int32_t>(bmp.height()));
    decode(bmp, file, section.bits);
    return makePicture(std::move(section.bitmap)).as<IPicture>();
}

/// The file's bytes as a stream that owns them. Error 481 for those that the platform's reader must not see.
ComPtr<IStream> streamOf(const InputFile& file) {
    const std::uint64_t size = file.size();
    require(size != 0, Platform::InvalidPicture);
    require(size <= kMaxByteCount, Platform::OutOfMemory);
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, static_cast<SIZE_T>(size));
    require(memory != nullptr, Platform::OutOfMemory);
    ComPtr<IStream> stream;
    if (FAILED(CreateStreamOnHGlobal(memory, TRUE, stream.put()))) {
        GlobalFree(memory);
        throw platformError(Platform::OutOfMemory);
    }
    const std::span bytes(static_cast<std::uint8_t*>(GlobalLock(memory)), static_cast<std::size_t>(size));
    require(bytes.data() != nullptr, Platform::OutOfMemory);
    const std::size_t held = file.readAt(0, bytes);
    const bool isBroken = held != size || isBrokenBmp(bytes);
    GlobalUnlock(memory);
    require(!isBroken, Platform::InvalidPicture);
    // The block may be larger than what was asked for.
    ULARGE_INTEGER end{};
    end.QuadPart = size;
    check(stream->SetSize(end));
    return stream;
}

bool isEmpty(IPicture& picture) {
    SHORT type = PICTYPE_NONE;
    return FAILED(picture.get_Type(&type)) || type == PICTYPE_NONE || type == PICTYPE_UNINITIALIZED;
}

ComPtr<IPicture> loadByPlatform(const InputFile& file) {
    ComPtr<IPicture> picture;
    // Not in run mode: there a picture does not own its bitmap on every system.
    check(OleLoadPicture(streamOf(file).get(), static_cast<LONG>(file.size()), FALSE, IID_IPicture,
                         reinterpret_cast<void**>(picture.put())));
    if (!picture || isEmpty(*picture)) throw platformError(Platform::InvalidPicture);
    return picture;
}

void readBitmap(HBITMAP bitmap, PicturePixels& pixels) {
    const MemoryDc dc(CreateCompatibleDC(nullptr));
    require(static_cast<bool>(dc), Platform::OutOfMemory);
    BITMAPINFO info{};
    info.bmiHeader = header24(pixels.width, pixels.height);
    const int read = GetDIBits(dc.get(), bitmap, 0, static_cast<UINT>(pixels.height), pixels.bits.data(),
                               &info, DIB_RGB_COLORS);
    require(read != 0, Platform::InvalidPicture);
}

/// What is no bitmap draws itself, on white.
void renderOnWhite(IPicture& picture, PicturePixels& pixels) {
    OLE_XSIZE_HIMETRIC width = 0;
    OLE_YSIZE_HIMETRIC height = 0;
    check(picture.get_Width(&width));
    check(picture.get_Height(&height));
    const BitmapSection section = makeSection(pixels.width, pixels.height);
    std::memset(section.bits, 0xFF, pixels.rows().size());
    {
        const BitmapDc dc(section.bitmap.get());
        require(static_cast<bool>(dc), Platform::OutOfMemory);
        // The picture's heights count upwards.
        check(
            picture.Render(dc.get(), 0, 0, pixels.width, pixels.height, 0, height, width, -height, nullptr));
    }
    GdiFlush();
    std::memcpy(pixels.bits.data(), section.bits, pixels.rows().size());
}

}  // namespace

HBITMAP bitmapOf(IPicture& picture) {
    SHORT type = PICTYPE_NONE;
    OLE_HANDLE handle = 0;
    const bool isBitmap = callHost([&] {
        return SUCCEEDED(picture.get_Type(&type)) && type == PICTYPE_BITMAP &&
               SUCCEEDED(picture.get_Handle(&handle));
    });
    return isBitmap ? handleOf<HBITMAP>(static_cast<LONG>(handle)) : nullptr;
}

ComPtr<IPicture> loadPicture(const std::u16string& path) {
    // The system's own loading by path would also take an address on a network, and short names only.
    const InputFile file(path);
    const std::optional<BmpReader> bmp = readBmp(file);
    return bmp ? pictureOf(*bmp, file) : loadByPlatform(file);
}

PictureSize pixelSizeOf(IPicture& picture) {
    OLE_XSIZE_HIMETRIC width = 0;
    OLE_YSIZE_HIMETRIC height = 0;
    check(callHost([&] { return picture.get_Width(&width); }));
    check(callHost([&] { return picture.get_Height(&height); }));
    return {scaleX(static_cast<float>(width)), scaleY(static_cast<float>(height))};
}

PicturePixels readPixels(HBITMAP bitmap, PictureSize size) {
    PicturePixels pixels = makePixels(size);
    readBitmap(bitmap, pixels);
    return pixels;
}

PicturePixels readPixels(IPicture& picture) {
    const PictureSize size = pixelSizeOf(picture);
    if (const HBITMAP bitmap = bitmapOf(picture)) return readPixels(bitmap, size);
    PicturePixels pixels = makePixels(size);
    renderOnWhite(picture, pixels);
    return pixels;
}

PicturePixels loadPixels(const std::u16string& path) {
    const InputFile file(path);
    const std::optional<BmpReader> bmp = readBmp(file);
    if (!bmp) return readPixels(*loadByPlatform(file));
    // As far as the size in pixels of a picture object goes.
    constexpr std::uint32_t kLongest = INT16_MAX;
    require(bmp->width() <= kLongest && bmp->height() <= kLongest, Platform::Overflow);
    PicturePixels pixels =
        makePixels({static_cast<std::int32_t>(bmp->width()), static_cast<std::int32_t>(bmp->height())});
    decode(*bmp, file, pixels.bits.data());
    return pixels;
}

}  // namespace vrx
