// Functions on paths as text; none of them looks at the file system.
// A path is split at "\", or at "/" when it holds no "\"; a network path begins with "\\" or "//".
#pragma once

#include <string>
#include <string_view>

namespace vrx {

[[nodiscard]] bool isNetworkPath(std::u16string_view path);

/// The path of a file that is given relative to a folder, written with "\". A file with a drive letter or a
/// network path comes back as it is. Error 79 for a folder without any separator.
[[nodiscard]] std::u16string getAbsolutePath(std::u16string_view file, std::u16string_view folder);

/// The path of a file relative to a folder, written with "/".
[[nodiscard]] std::u16string getRelativePath(std::u16string_view file, std::u16string_view folder);

/// For display: the first two levels and the name. A text without "\" has its first three characters in
/// front once more.
[[nodiscard]] std::u16string getPathShortFormat(std::u16string_view path);

/// The name of a path, which is cut down to the folder including its "\". Unless the extension is wanted,
/// everything from the last "." of the path goes first, even when that is in the folder.
std::u16string getAppName(std::u16string& path, bool withExtension);

/// The folder of a path, written with "\" and ending in one; empty for a bare name.
[[nodiscard]] std::u16string getPath(std::u16string_view path);

/// What stands before the first "." of a name; empty for a name without one. No caller in the library: it
/// completes these functions, and tests keep it right.
[[nodiscard]] std::u16string getNameBeforeDot(std::u16string_view name);

/// The name of a path without its last four characters, whatever they are; the path is cut down to the
/// folder including its "\", or without a "\" to the name.
std::u16string splitFileName(std::u16string& path);

}  // namespace vrx
