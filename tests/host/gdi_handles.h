// How many objects of the drawing and of the window system the process holds.
#pragma once

#include <cstddef>

namespace host {

/// How many objects of the drawing system the process has, at once.
std::size_t gdiObjects();

/// Makes objects until the system refuses, and gives them all back. Fewer than before means that some leaked.
std::size_t freeGdiHandles();

/// The same for objects of the window system, such as windows, menus and cursors.
std::size_t freeUserHandles();

}  // namespace host
