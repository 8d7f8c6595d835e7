#include "pattern/editor/pattern_files.h"

#include "com/entry.h"
#include "common/file_io.h"
#include "ground/paths.h"
#include "pattern/engine/pattern_file.h"

namespace vrx {

ChosenFile PatternFiles::choose(HWND owner, PatternFileUse use) {
    const Held<std::u16string> proposed(fileName_ + u".VGR");
    auto path = choosePatternFile(owner, use, folder_, *proposed);
    if (!path) return path;
    folder_ = *path;
    fileName_ = getAppName(folder_, false);  // cuts the path down to the folder
    return path;
}

std::optional<std::u16string> readPatternFile(const std::u16string& path) {
    const Bytes file = readFileAndZero(path);
    const auto content = file.span().first(file.size() - 1);
    if (content.empty()) return std::nullopt;
    return decodePatternFile(content);
}

void writePatternFile(const std::u16string& path, const std::u16string& pattern) {
    FileReplacement file(path);
    file.write(encodePatternFile(pattern));
    file.commit();
}

}  // namespace vrx
