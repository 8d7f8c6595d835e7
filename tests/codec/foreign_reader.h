// JPEG files read by another library than the one that the codec is built on: stb_image.
#pragma once

#include <cstdint>
#include <span>

#include "picture.h"

namespace vrx::test {

/// An empty picture where the reader refuses the file.
Picture readByAnother(std::span<const std::uint8_t> file);

}  // namespace vrx::test
