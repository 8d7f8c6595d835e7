#include "dialogs/controls/file_list.h"

#include "dialogs/controls/folder_contents.h"
#include "dialogs/controls/list_rows.h"
#include "ground/error.h"

namespace vrx {

void FileList::attach(HWND listBox) {
    window_ = listBox;
    folder_.clear();
}

void FileList::setFolder(const std::u16string& folder) {
    folder_ = folder;
    list();
}

void FileList::setPattern(const std::u16string& pattern) {
    pattern_ = pattern;
    list();
}

std::u16string FileList::fileName() const { return rowText(window_, selectedRow(window_)); }

void FileList::list() {
    std::vector<std::u16string> names;
    try {
        if (!folder_.empty()) names = filesIn(folder_, pattern_);
    } catch (const Error&) {
        // A folder that cannot be read has no files to show.
    }
    setRows(window_, names);
}

}  // namespace vrx
