// BMP files of 24 bits per pixel: file header, 40-byte information header, rows bottom-up, pixels at
// offset 54.
#pragma once

#include <cstdint>
#include <functional>

#include "ground/byte_sink.h"

namespace vrx {

/// Writes the whole file for rows of 24-bit pixels laid out bottom-up with padded strides.
/// Error 481 where width or height is 0.
void encodeBmp(std::uint32_t width, std::uint32_t height, const std::uint8_t* pixels, ByteSink& sink);

/// A picture that is painted row by row when it is written.
struct BitmapRows {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    /// Puts the row that is y rows below the top into 3 * width bytes.
    std::function<void(std::uint32_t y, std::uint8_t* bgr)> paint;
};

/// The same file of rows of which only a few are in memory at a time.
void encodeBmp(const BitmapRows& rows, ByteSink& sink);

}  // namespace vrx
