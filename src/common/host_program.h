// The program that the library runs in.
#pragma once

#include <string>

namespace vrx {

/// Full path of the program's file.
[[nodiscard]] std::u16string hostPath();

/// The folder of that file; with a backslash at its end only when it is a root.
[[nodiscard]] std::u16string hostFolder();

}  // namespace vrx
