// BMP files of 24 bits per pixel: file header, 40-byte information header, rows bottom-up, pixels at
// offset 54.
#pragma once

#include <cstdint>

#include "common/engine/byte_sink.h"

namespace vrx {

/// Writes the whole file for rows of 24-bit pixels laid out bottom-up with padded strides.
/// Error 481 where width or height is 0.
void encodeBmp(std::uint32_t width, std::uint32_t height, const std::uint8_t* pixels, ByteSink& sink);

}  // namespace vrx
