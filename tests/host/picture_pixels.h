// What is to be seen in a picture object.
#pragma once

#include <oaidl.h>

#include <iosfwd>

#include "throwaway_folder.h"

namespace host {

struct Pixels {
    int width = 0;
    int height = 0;
    int depth = 0;    ///< bits per pixel of the picture's own bitmap
    FileBytes bytes;  ///< blue, green, red; bottom-up with padded rows

    bool operator==(const Pixels&) const = default;
};

/// The bitmap of a picture object; an empty one for anything else.
Pixels pixelsOf(IDispatch& picture);

/// A 24-bit bitmap with these bytes.
Pixels pixels24(int width, int height, FileBytes bytes);

void PrintTo(const Pixels& pixels, std::ostream* out);

}  // namespace host
