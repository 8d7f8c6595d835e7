// Handles of windows, device contexts and bitmaps as the 32-bit numbers that the published interfaces carry.
#pragma once

#include <cstdint>

namespace vrx {

/// A 64-bit process extends the number by its sign, as the system does.
template <class Handle>
[[nodiscard]] Handle handleOf(std::int32_t number) {
    return reinterpret_cast<Handle>(static_cast<std::intptr_t>(number));
}

}  // namespace vrx
