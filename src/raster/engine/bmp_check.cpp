#include "raster/engine/bmp_check.h"

#include <cstddef>

namespace vrx {
namespace {

constexpr std::uint64_t kFileHeaderSize = 14;
constexpr std::uint64_t kInfoHeaderSize = 40;

constexpr std::uint32_t kRle8 = 1;
constexpr std::uint32_t kRle4 = 2;

std::uint32_t dwordAt(std::span<const std::uint8_t> file, std::size_t offset) {
    std::uint32_t value = 0;
    for (std::size_t i = 4; i > 0; --i) value = value << 8 | file[offset + i - 1];
    return value;
}

bool isRunLengthCoded(std::uint32_t bitCount, std::uint32_t compression) {
    return (compression == kRle8 && bitCount == 8) || (compression == kRle4 && bitCount == 4);
}

}  // namespace

bool isBrokenBmp(std::span<const std::uint8_t> file) {
    if (file.size() < 2 || file[0] != 'B' || file[1] != 'M') return false;
    if (file.size() < kFileHeaderSize + kInfoHeaderSize) return true;
    const std::uint64_t headerSize = dwordAt(file, 14);
    const std::uint32_t bitCount = dwordAt(file, 26) >> 16;
    if (headerSize < kInfoHeaderSize || !isRunLengthCoded(bitCount, dwordAt(file, 30))) return true;

    const bool isEmpty = dwordAt(file, 18) == 0 || dwordAt(file, 22) == 0;
    const std::uint64_t used = dwordAt(file, 46);
    const std::uint64_t colours = used != 0 ? used : std::uint64_t{1} << bitCount;
    const std::uint64_t bitsOffset = dwordAt(file, 10);
    const std::uint64_t bitsSize = dwordAt(file, 34);
    return isEmpty || kFileHeaderSize + headerSize + colours * 4 > file.size() ||
           bitsOffset + bitsSize > file.size();
}

}  // namespace vrx
