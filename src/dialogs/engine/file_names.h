// How the file dialogs build and cut the names of files and folders, as text.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vrx {

inline constexpr std::size_t kRootLength = 3;  // "C:\"

/// The full name of a file in a folder: a backslash between them unless the folder is the root of a drive,
/// three characters long.
[[nodiscard]] std::u16string fullFileName(std::u16string_view folder, std::u16string_view name);

/// The folder above. A folder of fewer than five characters is left as it is; so is one without a backslash.
[[nodiscard]] std::u16string folderAbove(std::u16string_view folder);

/// The root, every folder on the way, and the folder itself.
[[nodiscard]] std::vector<std::u16string> foldersFromRoot(std::u16string_view folder);

/// The folder of a suggested file name: its last four characters go, then everything after the last
/// backslash. Without a backslash it is what is left of the name.
[[nodiscard]] std::u16string folderOfSuggestion(std::u16string_view name);

/// A file in the folder where temporary pictures stand.
[[nodiscard]] std::u16string temporaryFileName(std::u16string_view folder);

}  // namespace vrx
