// The headers of a bitmap file: their sizes, the places of their fields, and how these are read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace vrx {

namespace bmp {

inline constexpr std::uint32_t kFileHeaderSize = 14;
inline constexpr std::uint32_t kInfoHeaderSize = 40;

// Offsets in the file.
inline constexpr std::uint32_t kRowsOffset = 10;
inline constexpr std::uint32_t kHeaderSize = 14;  // of the header that begins here
inline constexpr std::uint32_t kWidth = 18;
inline constexpr std::uint32_t kHeight = 22;
inline constexpr std::uint32_t kBitCount = 28;
inline constexpr std::uint32_t kCompression = 30;
inline constexpr std::uint32_t kRowsSize = 34;
inline constexpr std::uint32_t kColoursUsed = 46;

}  // namespace bmp

/// Numbers in the first bytes of a file. Whoever reads one has asked whether it is held.
class BmpFields {
  public:
    explicit BmpFields(std::span<const std::uint8_t> head) : head_(head) {}

    [[nodiscard]] bool beginAsBitmap() const { return holds(2) && byte(0) == 'B' && byte(1) == 'M'; }
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
    [[nodiscard]] std::int32_t signedDword(std::uint64_t offset) const {
        return static_cast<std::int32_t>(dword(offset));
    }

  private:
    std::span<const std::uint8_t> head_;
};

}  // namespace vrx
