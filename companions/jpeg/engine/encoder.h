// Pixels in, a JPEG file in memory out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>

#include "jpeg/engine/picture_format.h"

namespace vrx::jpeg {

/// Bytes of a file that grows at its end.
class GrowingFile {
  public:
    [[nodiscard]] std::span<const std::uint8_t> span() const { return {bytes_.get(), size_}; }

    /// All the room that there is now.
    [[nodiscard]] std::span<std::uint8_t> room() { return {bytes_.get(), capacity_}; }
    /// More room behind what is there; false when there is no memory for it.
    [[nodiscard]] bool grow();
    /// How much of the room is the file.
    void setSize(std::size_t size) { size_ = size; }

  private:
    struct Free {
        void operator()(std::uint8_t* block) const { std::free(block); }
    };
    std::unique_ptr<std::uint8_t, Free> bytes_;
    std::size_t capacity_ = 0;
    std::size_t size_ = 0;
};

/// The JPEG file takes the place of what `file` held. Fails for fewer pixels than the layout describes.
void encode(std::span<const std::uint8_t> pixels, const PixelLayout& layout, const JpegFormat& format,
            GrowingFile& file);

}  // namespace vrx::jpeg
