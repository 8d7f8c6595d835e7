#include "raster/engine/bmp_file.h"

#include <algorithm>
#include <array>

#include "ground/error.h"
#include "raster/engine/bitmap24.h"
#include "raster/engine/bmp_fields.h"

namespace vrx {
namespace {

constexpr std::uint32_t kPixelOffset = bmp::kFileHeaderSize + bmp::kInfoHeaderSize;
// Bytes of the rows that are painted before they are written.
constexpr std::size_t kBlockSize = 1U << 18;

class LittleEndianWriter {
  public:
    explicit LittleEndianWriter(std::uint8_t* out) : out_(out) {}

    void word(std::uint32_t value) { put(value, 2); }
    void dword(std::uint32_t value) { put(value, 4); }

  private:
    void put(std::uint32_t value, int size) {
        for (int i = 0; i < size; ++i, value >>= 8) *out_++ = static_cast<std::uint8_t>(value);
    }

    std::uint8_t* out_;
};

void writeHeaders(std::uint32_t width, std::uint32_t height, std::uint32_t imageSize, std::uint8_t* out) {
    LittleEndianWriter header(out);
    header.word(0x4D42);  // "BM"
    header.dword(kPixelOffset + imageSize);
    header.dword(0);
    header.dword(kPixelOffset);

    header.dword(bmp::kInfoHeaderSize);
    header.dword(width);
    header.dword(height);
    header.word(1);   // planes
    header.word(24);  // bits per pixel
    header.dword(0);  // uncompressed
    header.dword(imageSize);
    for (int i = 0; i < 4; ++i) header.dword(0);  // resolution and palette: none
}

/// The size of the pixels.
std::uint32_t encodeHeaders(std::uint32_t width, std::uint32_t height, ByteSink& sink) {
    if (width == 0 || height == 0) throw platformError(Platform::InvalidPicture);
    const auto imageSize = static_cast<std::uint32_t>(bitmapSize(width, height));
    std::array<std::uint8_t, kPixelOffset> headers;
    writeHeaders(width, height, imageSize, headers.data());
    sink.write(headers);
    return imageSize;
}

}  // namespace

void encodeBmp(std::uint32_t width, std::uint32_t height, const std::uint8_t* pixels, ByteSink& sink) {
    const std::uint32_t imageSize = encodeHeaders(width, height, sink);
    sink.write({pixels, imageSize});
}

void encodeBmp(const BitmapRows& rows, ByteSink& sink) {
    encodeHeaders(rows.width, rows.height, sink);
    const auto stride = static_cast<std::size_t>(strideOf(rows.width));
    const std::uint32_t rowsAtOnce =
        std::clamp(static_cast<std::uint32_t>(kBlockSize / stride), 1U, rows.height);
    ZeroedBytes block(std::uint64_t{stride} * rowsAtOnce);
    for (std::uint32_t left = rows.height; left > 0;) {
        const std::uint32_t count = std::min(left, rowsAtOnce);
        for (std::uint32_t i = 0; i < count; ++i) rows.paint(--left, block.data() + i * stride);
        sink.write({block.data(), count * stride});
    }
}

}  // namespace vrx
