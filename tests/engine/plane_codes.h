// The codes that the kernels write for a plane.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "ground/processor.h"
#include "hdr/engine/run_length_rows.h"

namespace vrx::test {

using EncodePlane = std::uint8_t* (*)(std::span<const std::uint8_t> plane, std::uint8_t* out);

/// The kernels that this processor has.
inline std::vector<EncodePlane> planeEncoders() {
    if (!hasAvx2()) return {baseline::encodePlane};
    return {baseline::encodePlane, avx2::encodePlane};
}

/// Plane and room are blocks of their own, so that sanitizers see every byte too far.
inline std::vector<std::uint8_t> codesBy(EncodePlane encode, std::span<const std::uint8_t> plane) {
    const auto in = std::make_unique<std::uint8_t[]>(plane.size());
    std::copy(plane.begin(), plane.end(), in.get());
    const auto room =
        std::make_unique<std::uint8_t[]>(static_cast<std::size_t>(runLengthBound(plane.size())));
    std::uint8_t* const end = encode({in.get(), plane.size()}, room.get());
    return {room.get(), end};
}

}  // namespace vrx::test
