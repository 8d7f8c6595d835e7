#include "raster/engine/bmp_reader.h"

#include <algorithm>
#include <bit>

#include "ground/error.h"
#include "raster/engine/bmp_fields.h"

namespace vrx {
namespace {

// The shorter header of the oldest files, and where its fields are.
constexpr std::uint32_t kCoreHeaderSize = 12;
constexpr std::uint32_t kCoreWidth = 18;
constexpr std::uint32_t kCoreHeight = 20;
constexpr std::uint32_t kCoreBitCount = 24;

constexpr std::uint32_t kMaxHeaderSize = 124;
constexpr std::uint32_t kMasksOffset = bmp::kFileHeaderSize + bmp::kInfoHeaderSize;
constexpr std::uint32_t kMasksSize = 12;

constexpr std::uint32_t kRgb = 0;
constexpr std::uint32_t kBitFields = 3;

constexpr std::array<std::uint32_t, 3> kUsualMasks = {0x0000FF, 0x00FF00, 0xFF0000};

// A file may lack that many bytes at its end, or a whole row where that is more: programs that count wrong
// leave out some.
constexpr std::uint64_t kMayLack = 16;

void require(bool condition) {
    if (!condition) throw platformError(Platform::InvalidPicture);
}

bool isPlain(std::uint32_t bitCount, std::uint32_t compression) {
    switch (bitCount) {
        case 1:
        case 4:
        case 8:
        case 24:
            return compression == kRgb;
        case 16:
        case 32:
            return compression == kRgb || compression == kBitFields;
        default:
            return false;
    }
}

/// The bits of a pixel; of several in one byte, the first one's are the highest.
std::uint32_t pixelAt(std::span<const std::uint8_t> row, std::size_t x, std::uint32_t bitCount) {
    if (bitCount < 8) {
        const std::size_t bit = x * bitCount;
        return std::uint32_t{row[bit / 8]} >> (8 - bitCount - bit % 8) & ((1U << bitCount) - 1);
    }
    const std::size_t bytes = bitCount / 8;
    std::uint32_t pixel = 0;
    for (std::size_t i = bytes; i > 0; --i) pixel = pixel << 8 | row[x * bytes + i - 1];
    return pixel;
}

/// The bits of a mask as 0 to 255; fewer than 8 bits are repeated.
std::uint8_t component(std::uint32_t pixel, std::uint32_t mask) {
    if (mask == 0) return 0;
    const int count = std::bit_width(mask >> std::countr_zero(mask));
    std::uint32_t bits = (pixel & mask) >> std::countr_zero(mask) << (32 - count);
    for (int filled = count; filled < 8; filled *= 2) bits |= bits >> filled;
    return static_cast<std::uint8_t>(bits >> 24);
}

}  // namespace

std::optional<BmpReader> BmpReader::read(std::span<const std::uint8_t> head, std::uint64_t fileSize) {
    const BmpFields fields(head);
    if (!fields.beginAsBitmap()) return {};
    require(fields.holds(bmp::kFileHeaderSize + kCoreHeaderSize));
    BmpReader reader;
    reader.rowsOffset_ = fields.dword(bmp::kRowsOffset);
    const std::uint32_t headerSize = fields.dword(bmp::kHeaderSize);
    if (headerSize == kCoreHeaderSize) {
        reader.bitCount_ = fields.word(kCoreBitCount);
        if (!isPlain(reader.bitCount_, kRgb)) return {};
        reader.readCore(fields);
    } else {
        require(fields.holds(bmp::kFileHeaderSize + bmp::kInfoHeaderSize));
        reader.bitCount_ = fields.word(bmp::kBitCount);
        if (headerSize < bmp::kInfoHeaderSize || headerSize > kMaxHeaderSize ||
            !isPlain(reader.bitCount_, fields.dword(bmp::kCompression))) {
            return {};
        }
        reader.readInfo(fields);
    }
    require(reader.holdsRows(fileSize));
    return reader;
}

void BmpReader::readCore(const BmpFields& fields) {
    setRows(fields.word(kCoreWidth), fields.word(kCoreHeight));
    if (bitCount_ <= 8) readPalette(fields, bmp::kFileHeaderSize + kCoreHeaderSize, 3, 0);
    readMasks(fields);
}

void BmpReader::readInfo(const BmpFields& fields) {
    const std::uint64_t headersEnd = bmp::kFileHeaderSize + std::uint64_t{fields.dword(bmp::kHeaderSize)};
    require(fields.holds(headersEnd));
    setRows(fields.signedDword(bmp::kWidth), fields.signedDword(bmp::kHeight));
    if (bitCount_ <= 8) readPalette(fields, headersEnd, 4, fields.dword(bmp::kColoursUsed));
    readMasks(fields);
}

/// What the palette lacks is black. Behind pixels of more bits it is a hint for screens of few colours.
void BmpReader::readPalette(const BmpFields& fields, std::uint64_t offset, std::uint64_t entrySize,
                            std::uint64_t used) {
    const std::uint64_t most = std::uint64_t{1} << bitCount_;
    const std::uint64_t count = used == 0 ? most : std::min(used, most);
    require(fields.holds(offset + count * entrySize));
    for (std::uint64_t i = 0; i < count; ++i) {
        const std::uint64_t entry = offset + i * entrySize;
        palette_[static_cast<std::size_t>(i)] = {fields.byte(entry), fields.byte(entry + 1),
                                                 fields.byte(entry + 2)};
    }
}

void BmpReader::readMasks(const BmpFields& fields) {
    masks_ = kUsualMasks;
    if (bitCount_ == 16) masks_ = {0x001F, 0x03E0, 0x7C00};
    const bool own = fields.dword(bmp::kHeaderSize) >= bmp::kInfoHeaderSize &&
                     fields.dword(bmp::kCompression) == kBitFields;
    if (!own) return;
    require(fields.holds(kMasksOffset + kMasksSize));
    for (std::size_t i = 0; i < masks_.size(); ++i) masks_[2 - i] = fields.dword(kMasksOffset + i * 4);
}

void BmpReader::setRows(std::int64_t width, std::int64_t height) {
    require(width > 0 && height != 0);
    width_ = static_cast<std::uint32_t>(width);
    height_ = static_cast<std::uint32_t>(height < 0 ? -height : height);
    topDown_ = height < 0;
    rowStride_ = (std::uint64_t{width_} * bitCount_ + 31) / 32 * 4;
}

bool BmpReader::holdsRows(std::uint64_t fileSize) const {
    if (rowsOffset_ >= fileSize) return false;
    const std::uint64_t there = fileSize - rowsOffset_ + std::max(rowStride_, kMayLack);
    const std::uint64_t lastRow = (std::uint64_t{width_} * bitCount_ + 7) / 8;
    return lastRow <= there && height_ - 1 <= (there - lastRow) / rowStride_;
}

BmpReader::Colour BmpReader::colourOf(std::uint32_t pixel) const {
    if (bitCount_ <= 8) return palette_[pixel];
    return {component(pixel, masks_[0]), component(pixel, masks_[1]), component(pixel, masks_[2])};
}

void BmpReader::convertRow(std::span<const std::uint8_t> row, std::uint8_t* pixels) const {
    const std::uint64_t held = std::min<std::uint64_t>(std::uint64_t{row.size()} * 8 / bitCount_, width_);
    const auto count = static_cast<std::size_t>(held);
    std::fill(pixels + count * 3, pixels + std::size_t{width_} * 3, std::uint8_t{0});
    if (bitCount_ == 24) {
        std::copy_n(row.begin(), count * 3, pixels);
        return;
    }
    if (bitCount_ == 32 && masks_ == kUsualMasks) {
        for (std::size_t x = 0; x < count; ++x) std::copy_n(row.begin() + x * 4, 3, pixels + x * 3);
        return;
    }
    for (std::size_t x = 0; x < count; ++x) {
        const Colour colour = colourOf(pixelAt(row, x, bitCount_));
        std::copy(colour.begin(), colour.end(), pixels + x * 3);
    }
}

}  // namespace vrx
