// The rows of list boxes as texts.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace vrx {

/// Replaces all rows in one go, in this order, however many they are; none is selected.
void setRows(HWND listBox, const std::vector<std::u16string>& rows);

/// Empty for a row that there is not.
[[nodiscard]] std::u16string rowText(HWND listBox, int row);

/// -1 for none.
[[nodiscard]] inline int selectedRow(HWND listBox) {
    return static_cast<int>(SendMessageW(listBox, LB_GETCURSEL, 0, 0));
}

}  // namespace vrx
