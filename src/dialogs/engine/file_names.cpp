#include "dialogs/engine/file_names.h"

#include <algorithm>

#include "ground/paths.h"

namespace vrx {
namespace {

constexpr std::size_t kShortestWithParent = 5;  // "C:\AB"

}  // namespace

std::u16string fullFileName(std::u16string_view folder, std::u16string_view name) {
    std::u16string full(folder);
    if (folder.size() != kRootLength) full += u'\\';
    return full.append(name);
}

std::u16string folderAbove(std::u16string_view folder) {
    const std::size_t backslash = folder.rfind(u'\\');
    if (folder.size() < kShortestWithParent || backslash == std::u16string_view::npos)
        return std::u16string(folder);
    // The backslash of a root belongs to the root.
    return std::u16string(folder.substr(0, backslash <= kRootLength ? backslash + 1 : backslash));
}

std::vector<std::u16string> foldersFromRoot(std::u16string_view folder) {
    std::vector<std::u16string> folders{std::u16string(folder.substr(0, kRootLength))};
    for (std::size_t end = kRootLength; end < folder.size();) {
        end = std::min(folder.find(u'\\', end + 1), folder.size());
        folders.emplace_back(folder.substr(0, end));
    }
    return folders;
}

std::u16string folderOfSuggestion(std::u16string_view name) {
    std::u16string folder(name);
    splitFileName(folder);
    return folder;
}

std::u16string temporaryFileName(std::u16string_view folder) {
    std::u16string name(folder);
    if (!folder.ends_with(u'\\')) name += u'\\';
    return name + u"temp.BMP";
}

}  // namespace vrx
