#include "dialogs/controls/folder_list.h"

#include <algorithm>
#include <utility>

#include "dialogs/controls/folder_contents.h"
#include "dialogs/controls/list_rows.h"
#include "dialogs/engine/file_names.h"

namespace vrx {
namespace {

/// A root has no name but itself.
std::u16string nameOf(const std::u16string& folder) {
    return folder.ends_with(u'\\') ? folder : folder.substr(folder.rfind(u'\\') + 1);
}

}  // namespace

void FolderList::attach(HWND listBox) {
    window_ = listBox;
    folder_.clear();
    open_.clear();
    rows_.attach(listBox);
}

void FolderList::setFolder(const std::u16string& folder) {
    std::u16string path = folderOfDrive(folder);
    std::vector<std::u16string> inside = foldersIn(path);
    open_ = foldersFromRoot(path);
    folder_ = std::move(path);

    std::vector<std::u16string> rows;
    std::ranges::transform(open_, std::back_inserter(rows), nameOf);
    std::ranges::move(inside, std::back_inserter(rows));
    setRows(window_, rows);
    const std::size_t own = open_.size() - 1;
    SendMessageW(window_, LB_SETCURSEL, own, 0);
    // The folder above stays in sight, and as many of the folders inside as there is room for.
    SendMessageW(window_, LB_SETTOPINDEX, own - std::min<std::size_t>(own, 1), 0);
}

void FolderList::openSelected() {
    const int row = selectedRow(window_);
    if (row >= 0) setFolder(folderOfRow(row));
}

void FolderList::draw(const DRAWITEMSTRUCT& item) const {
    const int row = static_cast<int>(item.itemID);
    if (row < 0) return;
    const int openRows = static_cast<int>(open_.size());
    rows_.draw(item, rowText(window_, row), std::min(row, openRows), row < openRows);
}

std::u16string FolderList::folderOfRow(int row) const {
    const auto index = static_cast<std::size_t>(row);
    return index < open_.size() ? open_[index] : fullFileName(folder_, rowText(window_, row));
}

}  // namespace vrx
