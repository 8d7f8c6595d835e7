#include "raster/engine/bmp_check.h"

#include "raster/engine/bmp_fields.h"

namespace vrx {
namespace {

constexpr std::uint32_t kRle8 = 1;
constexpr std::uint32_t kRle4 = 2;

bool isRunLengthCoded(std::uint32_t bitCount, std::uint32_t compression) {
    return (compression == kRle8 && bitCount == 8) || (compression == kRle4 && bitCount == 4);
}

}  // namespace

bool isBrokenBmp(std::span<const std::uint8_t> file) {
    const BmpFields fields(file);
    if (!fields.beginAsBitmap()) return false;
    if (!fields.holds(bmp::kFileHeaderSize + bmp::kInfoHeaderSize)) return true;
    const std::uint64_t headerSize = fields.dword(bmp::kHeaderSize);
    const std::uint32_t bitCount = fields.word(bmp::kBitCount);
    if (headerSize < bmp::kInfoHeaderSize) return true;
    if (!isRunLengthCoded(bitCount, fields.dword(bmp::kCompression))) return true;

    const bool isEmpty = fields.dword(bmp::kWidth) == 0 || fields.dword(bmp::kHeight) == 0;
    const std::uint64_t used = fields.dword(bmp::kColoursUsed);
    const std::uint64_t colours = used != 0 ? used : std::uint64_t{1} << bitCount;
    const std::uint64_t rowsOffset = fields.dword(bmp::kRowsOffset);
    const std::uint64_t rowsSize = fields.dword(bmp::kRowsSize);
    return isEmpty || !fields.holds(bmp::kFileHeaderSize + headerSize + colours * 4) ||
           !fields.holds(rowsOffset + rowsSize);
}

}  // namespace vrx
