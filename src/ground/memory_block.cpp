#include "ground/memory_block.h"

#include <array>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace vrx {
namespace {

// Smaller ones the C library keeps itself; larger ones would be missed by the rest of a 32-bit process.
constexpr std::size_t kLeastWaiting = std::size_t{128} << 10;
constexpr std::size_t kMostWaiting = std::size_t{6} << 20;

/// At the begin of a block that waits.
struct Waiting {
    GiveUpBlock owner;
};

void release(Waiting* block) noexcept {
    if (block != nullptr) block->owner.release(reinterpret_cast<std::uint8_t*>(block));
}

/// No more than twice what is wanted.
bool suits(const Waiting& block, std::size_t size) {
    return block.owner.size >= size && block.owner.size / 2 <= size;
}

/// Each place is taken and filled in one step, so that no thread waits for another.
class WaitingBlocks {
  public:
    constexpr WaitingBlocks() = default;
    WaitingBlocks(const WaitingBlocks&) = delete;
    WaitingBlocks& operator=(const WaitingBlocks&) = delete;
    ~WaitingBlocks() { releaseAll(); }

    void releaseAll() noexcept {
        for (Place& place : places_) release(place.exchange(nullptr));
    }

    [[nodiscard]] Waiting* take(std::size_t size) noexcept {
        for (Place& place : places_) {
            Waiting* const block = place.exchange(nullptr);
            if (block == nullptr) continue;
            if (suits(*block, size)) return block;
            release(place.exchange(block));
        }
        return nullptr;
    }

    /// Where there is no place for it, in place of another.
    void add(Waiting* block) noexcept {
        for (Place& place : places_) {
            Waiting* nobody = nullptr;
            if (place.compare_exchange_strong(nobody, block)) return;
        }
        release(places_[next_++ % places_.size()].exchange(block));
    }

  private:
    using Place = std::atomic<Waiting*>;

    std::array<Place, 3> places_{};
    std::atomic<unsigned> next_ = 0;
};

constinit WaitingBlocks waitingBlocks;

MemoryBlock waitingBlock(std::size_t size) noexcept {
    if (size < kLeastWaiting || size > kMostWaiting) return nullptr;
    Waiting* const block = waitingBlocks.take(size);
    if (block == nullptr) return nullptr;
    const GiveUpBlock owner = block->owner;
    return {reinterpret_cast<std::uint8_t*>(block), owner};
}

std::uint8_t* allocateArray(std::size_t size) noexcept { return new (std::nothrow) std::uint8_t[size]; }
void releaseArray(std::uint8_t* block) noexcept { delete[] block; }

std::uint8_t* allocateZeroed(std::size_t size) noexcept {
    return static_cast<std::uint8_t*>(std::calloc(size > 0 ? size : 1, 1));
}
void releaseZeroed(std::uint8_t* block) noexcept { std::free(block); }

/// What waits is given up before the process is out of memory.
MemoryBlock newBlock(std::size_t size, std::uint8_t* (*allocate)(std::size_t) noexcept,
                     GiveUpBlock::Release release) noexcept {
    std::uint8_t* block = allocate(size);
    if (block == nullptr) {
        waitingBlocks.releaseAll();
        block = allocate(size);
    }
    return {block, GiveUpBlock{size, release}};
}

}  // namespace

void GiveUpBlock::operator()(std::uint8_t* block) const noexcept {
    if (size < kLeastWaiting || size > kMostWaiting) return release(block);
    waitingBlocks.add(new (block) Waiting{*this});
}

MemoryBlock makeBlock(std::size_t size) noexcept {
    MemoryBlock block = waitingBlock(size);
    return block ? std::move(block) : newBlock(size, allocateArray, releaseArray);
}

MemoryBlock makeZeroedBlock(std::size_t size) noexcept {
    MemoryBlock block = waitingBlock(size);
    if (!block) return newBlock(size, allocateZeroed, releaseZeroed);
    std::memset(block.get(), 0, size);
    return block;
}

void releaseWaitingBlocks() noexcept { waitingBlocks.releaseAll(); }

}  // namespace vrx
