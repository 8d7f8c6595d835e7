#include "raster/engine/bmp_reader.h"

#include <algorithm>
#include <bit>

#include "ground/error.h"

namespace vrx {
namespace {

constexpr std::uint64_t kFileHeaderSize = 14;
constexpr std::uint64_t kCoreHeaderSize = 12;
constexpr std::uint64_t kInfoHeaderSize = 40;
constexpr std::uint64_t kMaxHeaderSize = 124;
constexpr std::size_t kMasksOffset = kFileHeaderSize + kInfoHeaderSize;
constexpr std::uint64_t kMasksSize = 12;

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

/// The bits of a mask as 0 to 255; fewer than 8 bits are repeated.
std::uint8_t component(std::uint32_t pixel, std::uint32_t mask) {
    if (mask == 0) return 0;
    const int count = std::bit_width(mask >> std::countr_zero(mask));
    std::uint32_t bits = (pixel & mask) >> std::countr_zero(mask) << (32 - count);
    for (int filled = count; filled < 8; filled *= 2) bits |= bits >> filled;
    return static_cast<std::uint8_t>(bits >> 24);
}

}  // namespace

class BmpReader::Fields {
  public:
    explicit Fields(std::span<const std::uint8_t> head) : head_(head) {}

    [[nodiscard]] bool holds(std::uint64_t size) const { return size <= head_.size(); }
    [[nodiscard]] std::uint8_t byte(std::uint64_t offset) const {
        return head_[static_cast<std::size_t>(offset)];
    }
    [[nodiscard]] std::uint32_t word(std::uint64_t offset) const {
        return byte(offset) | std::uint32_t{byte(offset + 1)} << 8;
    }
    [[nodiscard]] std::uint32_t dword(std::uint64_t offset) const {
        return word(offset) | word(offset + 2) << 16;
    }
    [[nodiscard]] std::int64_t signedDword(std::uint64_t offset) const {
        return static_cast<std::int32_t>(dword(offset));
    }

  private:
    std::span<const std::uint8_t> head_;
};

std::optional<BmpReader> BmpReader::read(std::span<const std::uint8_t> head, std::uint64_t fileSize) {
    if (head.size() < 2 || head[0] != 'B' || head[1] != 'M') return {};
    const Fields fields(head);
    require(fields.holds(kFileHeaderSize + kCoreHeaderSize));
    BmpReader reader;
    reader.rowsOffset_ = fields.dword(10);
    const std::uint32_t headerSize = fields.dword(14);
    if (headerSize == kCoreHeaderSize) {
        reader.bitCount_ = fields.word(24);
        if (!isPlain(reader.bitCount_, kRgb)) return {};
        reader.readCore(fields);
    } else {
        require(fields.holds(kFileHeaderSize + kInfoHeaderSize));
        reader.bitCount_ = fields.word(28);
        if (headerSize < kInfoHeaderSize || headerSize > kMaxHeaderSize ||
            !isPlain(reader.bitCount_, fields.dword(30))) {
            return {};
        }
        reader.readInfo(fields);
    }
    require(reader.holdsRows(fileSize));
    return reader;
}

void BmpReader::readCore(const Fields& fields) {
    setRows(fields.word(18), fields.word(20));
    if (bitCount_ <= 8) readPalette(fields, kFileHeaderSize + kCoreHeaderSize, 3, 0);
    readMasks(fields);
}

void BmpReader::readInfo(const Fields& fields) {
    const std::uint64_t headerSize = fields.dword(14);
    require(fields.holds(kFileHeaderSize + headerSize));
    setRows(fields.signedDword(18), fields.signedDword(22));
    if (bitCount_ <= 8) readPalette(fields, kFileHeaderSize + headerSize, 4, fields.dword(46));
    readMasks(fields);
}

/// What the palette lacks is black. Behind pixels of more bits it is a hint for screens of few colours.
void BmpReader::readPalette(const Fields& fields, std::uint64_t offset, std::uint64_t entrySize,
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

void BmpReader::readMasks(const Fields& fields) {
    masks_ = kUsualMasks;
    if (bitCount_ == 16) masks_ = {0x001F, 0x03E0, 0x7C00};
    const bool own = fields.dword(14) >= kInfoHeaderSize && fields.dword(30) == kBitFields;
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
    const std::size_t bytes = bitCount_ / 8;
    for (std::size_t x = 0; x < count; ++x) {
        std::uint32_t pixel = 0;
        if (bytes == 0) {
            const std::size_t bit = x * bitCount_;
            pixel = static_cast<std::uint32_t>(row[bit / 8]) >> (8 - bitCount_ - bit % 8) &
                    ((1U << bitCount_) - 1);
        }
        for (std::size_t i = bytes; i > 0; --i) pixel = pixel << 8 | row[x * bytes + i - 1];
        const Colour colour = colourOf(pixel);
        std::copy(colour.begin(), colour.end(), pixels + x * 3);
    }
}

}  // namespace vrx
