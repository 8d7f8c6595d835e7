// Uncompressed bitmap files of 1 to 32 bits per pixel: headers in, rows of 24-bit pixels out. Every read is
// checked, so that no header can lead it outside the bytes that there are.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

namespace vrx {

class BmpFields;

class BmpReader {
  public:
    /// The longest headers with masks and palette; the reader needs no more of a file than this at first.
    static constexpr std::size_t kHeadSize = 14 + 124 + 12 + 256 * 4;

    /// For the first bytes of a file and its size. Nothing for files of other kinds, bitmap files of
    /// run-length-coded rows among them. Error 481 for a bitmap file without pixels, or with less in it than
    /// its headers promise: only the last row may lack bytes.
    [[nodiscard]] static std::optional<BmpReader> read(std::span<const std::uint8_t> head,
                                                       std::uint64_t fileSize);

    [[nodiscard]] std::uint32_t width() const { return width_; }
    [[nodiscard]] std::uint32_t height() const { return height_; }
    /// Whether the file's first row is the picture's top one.
    [[nodiscard]] bool topDown() const { return topDown_; }

    /// Where the rows begin in the file, and bytes from one to the next.
    [[nodiscard]] std::uint64_t rowsOffset() const { return rowsOffset_; }
    [[nodiscard]] std::uint64_t rowStride() const { return rowStride_; }

    /// A row of the file as `width` pixels of blue, green, red. Pixels that the row does not hold are black.
    void convertRow(std::span<const std::uint8_t> row, std::uint8_t* pixels) const;

  private:
    using Colour = std::array<std::uint8_t, 3>;

    BmpReader() = default;
    void readCore(const BmpFields& fields);
    void readInfo(const BmpFields& fields);
    void readPalette(const BmpFields& fields, std::uint64_t offset, std::uint64_t entrySize,
                     std::uint64_t used);
    void readMasks(const BmpFields& fields);
    void setRows(std::int64_t width, std::int64_t height);
    [[nodiscard]] bool holdsRows(std::uint64_t fileSize) const;
    [[nodiscard]] Colour colourOf(std::uint32_t pixel) const;

    std::uint32_t width_ = 0;
    std::uint32_t height_ = 0;
    bool topDown_ = false;
    std::uint32_t bitCount_ = 0;
    std::uint64_t rowsOffset_ = 0;
    std::uint64_t rowStride_ = 0;
    std::array<std::uint32_t, 3> masks_{};  // blue, green, red; of 16 and 32 bits
    std::array<Colour, 256> palette_{};     // of 8 bits and less
};

}  // namespace vrx
