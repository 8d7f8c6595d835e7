// How many kernel objects the process holds open.
#pragma once

#include <cstddef>

namespace host {

/// Entries of this process in the system's table of handles.
std::size_t kernelHandles();

}  // namespace host
