// Picture files for tests, byte by byte.
#pragma once

#include <cstdint>
#include <vector>

#include "throwaway_folder.h"

namespace host {

struct Colour {
    std::uint8_t b, g, r;
};

/// A BMP file of 24 bits; rows from the top, all of the same length.
FileBytes bmpFile(const std::vector<std::vector<Colour>>& rows);
FileBytes bmpFile(int width, int height, Colour colour);

/// Two pixels: red and blue.
FileBytes gifFile();

/// 32 x 32 pixels: red on the left, nothing on the right.
FileBytes iconFile();

/// One inch in square: blue in its top left quarter, nothing elsewhere.
FileBytes metafile();

/// 8 x 8 pixels of grey 128.
FileBytes jpegFile();

}  // namespace host
