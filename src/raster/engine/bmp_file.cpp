#include "raster/engine/bmp_file.h"

#include <array>

#include "common/engine/error.h"
#include "raster/engine/bitmap24.h"

namespace vrx {
namespace {

constexpr std::uint32_t kFileHeaderSize = 14;
constexpr std::uint32_t kInfoHeaderSize = 40;
constexpr std::uint32_t kPixelOffset = kFileHeaderSize + kInfoHeaderSize;

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

    header.dword(kInfoHeaderSize);
    header.dword(width);
    header.dword(height);
    header.word(1);   // planes
    header.word(24);  // bits per pixel
    header.dword(0);  // uncompressed
    header.dword(imageSize);
    for (int i = 0; i < 4; ++i) header.dword(0);  // resolution and palette: none
}

}  // namespace

void encodeBmp(std::uint32_t width, std::uint32_t height, const std::uint8_t* pixels, ByteSink& sink) {
    if (width == 0 || height == 0) throw platformError(Platform::InvalidPicture);
    if (strideOf(width) > kMaxByteCount / height) throw platformError(Platform::OutOfMemory);
    const auto imageSize = static_cast<std::uint32_t>(strideOf(width) * height);
    std::array<std::uint8_t, kPixelOffset> headers;
    writeHeaders(width, height, imageSize, headers.data());
    sink.write(headers);
    sink.write({pixels, imageSize});
}

}  // namespace vrx
