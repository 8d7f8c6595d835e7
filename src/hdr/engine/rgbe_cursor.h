// A cursor over a picture file in memory. One zero byte stands behind the last byte of the file and can be
// read; what is read beyond it makes the file malformed. Skipping is free: only reading is checked.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "hdr/engine/hdr_error.h"

namespace vrx {

class RgbeCursor {
  public:
    /// `bytes` is the file followed by its zero byte.
    RgbeCursor(std::span<const std::uint8_t> bytes, std::size_t position)
        : bytes_(bytes), position_(position) {}

    [[nodiscard]] std::size_t position() const { return position_; }

    std::uint8_t next() {
        if (position_ >= bytes_.size()) throw wrongFileType();
        return bytes_[position_++];
    }

    /// The next `count` bytes, without moving on.
    [[nodiscard]] const std::uint8_t* peek(std::size_t count) const {
        if (position_ > bytes_.size() || count > bytes_.size() - position_) throw wrongFileType();
        return bytes_.data() + position_;
    }

    /// What is left to read.
    [[nodiscard]] std::span<const std::uint8_t> rest() const {
        return bytes_.subspan(position_ < bytes_.size() ? position_ : bytes_.size());
    }

    void skip(std::size_t count) { position_ += count; }

  private:
    std::span<const std::uint8_t> bytes_;
    std::size_t position_;
};

}  // namespace vrx
