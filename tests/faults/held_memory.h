// What the process holds of its memory, to the byte: neither gaps in the heaps nor pages that the system
// keeps for later.
#pragma once

#include <cstddef>

namespace faults {

/// Bytes of the used blocks of all heaps, and of the private pages that belong to no heap.
std::size_t heldMemory();

/// How far that may be off: 0, or some groups of blocks where the system's heap takes room for many small
/// ones at once.
[[nodiscard]] long heldMemoryDoubt();

}  // namespace faults
