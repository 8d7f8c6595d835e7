// What stands in a folder, by name as the user's language sorts it. Hidden and system entries are left out.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vrx {

/// A folder of a drive with its drive letter, "\" between the names, and none at the end unless it is a root.
/// Error 76 for network and relative paths.
[[nodiscard]] std::u16string folderOfDrive(std::u16string_view path);

// Both throw the platform's error for a folder that cannot be read.
[[nodiscard]] std::vector<std::u16string> foldersIn(const std::u16string& folder);
[[nodiscard]] std::vector<std::u16string> filesIn(const std::u16string& folder, std::u16string_view patterns);

}  // namespace vrx
