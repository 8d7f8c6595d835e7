// Two owners of plain byte memory that std::vector cannot replace: neither touches its pages when it is made.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <utility>

#include "ground/error.h"
#include "ground/memory_block.h"

namespace vrx {

/// The largest block asked of the system; more is "Out of memory", in a 32-bit and in a 64-bit process alike.
inline constexpr std::uint64_t kMaxByteCount = 0x7FFFFFFF;

/// Bytes whose content is undefined until written: a file just read, a file being built.
class Bytes {
  public:
    Bytes() = default;
    explicit Bytes(std::uint64_t size) {
        if (size > kMaxByteCount) throw platformError(Platform::OutOfMemory);
        size_ = static_cast<std::size_t>(size);
        data_ = makeBlock(size_);
        if (!data_) throw platformError(Platform::OutOfMemory);
    }

    [[nodiscard]] std::uint8_t* data() { return data_.get(); }
    [[nodiscard]] const std::uint8_t* data() const { return data_.get(); }
    [[nodiscard]] std::size_t size() const { return size_; }
    [[nodiscard]] std::span<const std::uint8_t> span() const { return {data_.get(), size_}; }

    /// Gives up the end of the block; the memory itself stays.
    void shrink(std::size_t size) { size_ = size < size_ ? size : size_; }

  private:
    MemoryBlock data_;
    std::size_t size_ = 0;
};

/// Bytes that read as zero until written. Large blocks come from the system as untouched zero pages, so that
/// a block costs what is written to it, not what it claims.
class ZeroedBytes {
  public:
    ZeroedBytes() = default;
    explicit ZeroedBytes(std::uint64_t size) {
        if (size > kMaxByteCount) throw platformError(Platform::OutOfMemory);
        take(makeZeroedBlock(static_cast<std::size_t>(size)), static_cast<std::size_t>(size));
    }
    /// A copy, whose memory is not cleared first.
    explicit ZeroedBytes(std::span<const std::uint8_t> content) {
        take(makeBlock(content.size()), content.size());
        if (size_ > 0) std::memcpy(data_.get(), content.data(), size_);
    }
    ZeroedBytes(ZeroedBytes&& other) noexcept
        : data_(std::move(other.data_)), size_(std::exchange(other.size_, 0)) {}
    ZeroedBytes& operator=(ZeroedBytes&& other) noexcept {
        data_ = std::move(other.data_);
        size_ = std::exchange(other.size_, 0);
        return *this;
    }

    /// All zero again in another size. Memory of the same size is kept: clearing it costs less than new
    /// pages.
    void reset(std::uint64_t size) {
        if (data_ && size == size_ && size <= kMaxKept) {
            std::memset(data_.get(), 0, size_);
            return;
        }
        *this = {};
        *this = ZeroedBytes(size);
    }

    [[nodiscard]] std::uint8_t* data() { return data_.get(); }
    [[nodiscard]] const std::uint8_t* data() const { return data_.get(); }
    [[nodiscard]] std::size_t size() const { return size_; }

  private:
    static constexpr std::uint64_t kMaxKept = 64 << 20;

    void take(MemoryBlock block, std::size_t size) {
        if (!block) throw platformError(Platform::OutOfMemory);
        data_ = std::move(block);
        size_ = size;
    }

    MemoryBlock data_;
    std::size_t size_ = 0;
};

}  // namespace vrx
