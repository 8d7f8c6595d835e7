// Any bytes as a JPEG file: the first one says how the pixels are to lie in memory, the rest is the file.
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

#include "jpeg/engine/decoder.h"
#include "jpeg/engine/status.h"

namespace {

using namespace vrx::jpeg;

constexpr std::uint64_t kMostPixels = 1U << 18;
constexpr std::uint8_t kUntouched = 0xEE;

void require(bool condition) {
    if (!condition) std::abort();
}

/// Room for the picture and not one byte more, so that the sanitizer sees every step beyond it.
void decodeInto(const PixelLayout& layout, std::span<const std::uint8_t> file) {
    std::vector<std::uint8_t> pixels(layout.size(), kUntouched);
    decode(file, layout, pixels);
    for (std::uint32_t y = 0; y + 1 < layout.height; ++y) {
        for (std::size_t i = layout.rowSize(); i < layout.stride; ++i) {
            require(pixels[y * layout.stride + i] == kUntouched);
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span<const std::uint8_t> input(data, size);
    if (input.empty()) return 0;
    const auto color = static_cast<Color>(1 + input[0] % 4);
    const bool bottomUp = (input[0] & 4) != 0;
    const std::span<const std::uint8_t> file = input.subspan(1);
    try {
        const JpegHeader header = readHeader(file);
        if (std::uint64_t{header.width} * header.height > kMostPixels) return 0;
        const std::size_t rowSize = std::size_t{header.width} * static_cast<std::size_t>(channelsOf(color));
        decodeInto({header.width, header.height, color, (rowSize + 3) / 4 * 4, bottomUp}, file);
    } catch (const Failure& failure) {
        require(failure.status != Status::Ok && failure.status != Status::InternalError);
    }
    return 0;
}
