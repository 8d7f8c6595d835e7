// Large pieces of plain memory. To get new pages takes the system longer than it takes us to fill them, so a
// few blocks that were given up wait for the next one who wants as much.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace vrx {

/// Gives a block back, or lets it wait.
struct GiveUpBlock {
    using Release = void (*)(std::uint8_t* block) noexcept;

    std::size_t size = 0;
    Release release = nullptr;

    void operator()(std::uint8_t* block) const noexcept;
};

using MemoryBlock = std::unique_ptr<std::uint8_t[], GiveUpBlock>;

/// At least so many bytes, their content undefined. Null where the process does not have them.
[[nodiscard]] MemoryBlock makeBlock(std::size_t size) noexcept;
/// The same, all zero. Of a large block new from the system no page is there before something is written to
/// it.
[[nodiscard]] MemoryBlock makeZeroedBlock(std::size_t size) noexcept;

/// Gives back what waits. Called by all threads, as the others are.
void releaseWaitingBlocks() noexcept;

}  // namespace vrx
