// How many objects of the drawing and of the window system the process holds, counted by how many more it
// gets.
#pragma once

#include <cstddef>

namespace host {

/// Makes objects until the system refuses, and gives them all back. Fewer than before means that some leaked.
std::size_t freeGdiHandles();

/// The same for objects of the window system, such as windows, menus and cursors.
std::size_t freeUserHandles();

}  // namespace host
