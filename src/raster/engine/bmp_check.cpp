#include "raster/engine/bmp_check.h"

#include <cstddef>
#include <cstdlib>

namespace vrx {
namespace {

constexpr std::uint64_t kFileHeaderSize = 14;
constexpr std::uint64_t kCoreHeaderSize = 12;
constexpr std::uint64_t kInfoHeaderSize = 40;

constexpr std::uint32_t kRle8 = 1;
constexpr std::uint32_t kRle4 = 2;
constexpr std::uint32_t kBitFields = 3;

class Fields {
  public:
    explicit Fields(std::span<const std::uint8_t> file) : file_(file) {}

    [[nodiscard]] std::uint32_t word(std::size_t offset) const {
        return file_[offset] | static_cast<std::uint32_t>(file_[offset + 1]) << 8;
    }
    [[nodiscard]] std::uint32_t dword(std::size_t offset) const {
        return word(offset) | word(offset + 2) << 16;
    }
    [[nodiscard]] std::int64_t signedDword(std::size_t offset) const {
        return static_cast<std::int32_t>(dword(offset));
    }

  private:
    std::span<const std::uint8_t> file_;
};

/// What the headers say of the parts that follow them.
struct Claims {
    bool empty;
    std::uint64_t headersSize;  ///< with palette and masks
    std::uint64_t bitsOffset;
    std::uint64_t rowSize;  ///< without padding
    std::uint64_t stride;
    std::uint64_t rows;
};

std::uint64_t coloursOf(std::uint32_t bitCount, std::uint32_t used) {
    if (used != 0) return used;
    return bitCount <= 8 ? 1U << bitCount : 0;
}

void setRows(Claims& claims, std::int64_t width, std::int64_t height, std::uint32_t bitCount) {
    const std::uint64_t rowBits = static_cast<std::uint64_t>(std::llabs(width)) * bitCount;
    claims.rowSize = (rowBits + 7) / 8;
    claims.stride = (rowBits + 31) / 32 * 4;
    claims.rows = static_cast<std::uint64_t>(std::llabs(height));
}

Claims readCore(const Fields& fields) {
    const std::uint32_t bitCount = fields.word(24);
    Claims claims{};
    claims.empty = fields.word(18) == 0 || fields.word(20) == 0;
    claims.headersSize = kFileHeaderSize + kCoreHeaderSize + coloursOf(bitCount, 0) * 3;
    claims.bitsOffset = fields.dword(10);
    setRows(claims, fields.word(18), fields.word(20), bitCount);
    return claims;
}

Claims readInfo(const Fields& fields) {
    const std::uint32_t bitCount = fields.word(28);
    const std::uint32_t compression = fields.dword(30);
    Claims claims{};
    claims.empty = fields.dword(18) == 0 || fields.dword(22) == 0;
    claims.headersSize = kFileHeaderSize + fields.dword(14) + coloursOf(bitCount, fields.dword(46)) * 4;
    claims.bitsOffset = fields.dword(10);
    if (compression == kBitFields && fields.dword(14) == kInfoHeaderSize) claims.headersSize += 12;
    if (compression == kRle8 || compression == kRle4) {
        claims.rowSize = fields.dword(34);
        claims.rows = 1;
    } else {
        setRows(claims, fields.signedDword(18), fields.signedDword(22), bitCount);
    }
    return claims;
}

/// Files may end without the padding of the last row.
bool holdsRows(std::uint64_t size, const Claims& claims) {
    if (claims.rowSize == 0) return true;
    if (claims.rowSize > size) return false;
    return claims.rows == 1 || claims.rows - 1 <= (size - claims.rowSize) / claims.stride;
}

}  // namespace

bool isBrokenBmp(std::span<const std::uint8_t> file) {
    if (file.size() < 2 || file[0] != 'B' || file[1] != 'M') return false;
    if (file.size() < kFileHeaderSize + kCoreHeaderSize) return true;
    const Fields fields(file);
    const bool isCore = fields.dword(14) == kCoreHeaderSize;
    if (!isCore && file.size() < kFileHeaderSize + kInfoHeaderSize) return true;
    const Claims claims = isCore ? readCore(fields) : readInfo(fields);
    return claims.empty || claims.headersSize > file.size() || claims.bitsOffset > file.size() ||
           !holdsRows(file.size() - claims.bitsOffset, claims);
}

}  // namespace vrx
