#include "dialogs/controls/list_rows.h"

#include "com/variant_convert.h"

namespace vrx {

void setRows(HWND listBox, const std::vector<std::u16string>& rows) {
    std::size_t bytes = 0;
    for (const std::u16string& row : rows) bytes += (row.size() + 1) * sizeof(wchar_t);
    SendMessageW(listBox, WM_SETREDRAW, FALSE, 0);
    SendMessageW(listBox, LB_RESETCONTENT, 0, 0);
    SendMessageW(listBox, LB_INITSTORAGE, rows.size(), static_cast<LPARAM>(bytes));
    // Inserted rather than added, so that a list that sorts leaves them as they are.
    for (const std::u16string& row : rows)
        SendMessageW(listBox, LB_INSERTSTRING, static_cast<WPARAM>(-1),
                     reinterpret_cast<LPARAM>(asWide(row.c_str())));
    SendMessageW(listBox, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(listBox, nullptr, TRUE);
}

std::u16string rowText(HWND listBox, int row) {
    const auto index = static_cast<WPARAM>(row);
    const LRESULT length = row < 0 ? LB_ERR : SendMessageW(listBox, LB_GETTEXTLEN, index, 0);
    if (length == LB_ERR) return {};
    std::vector<wchar_t> text(static_cast<std::size_t>(length) + 1);
    SendMessageW(listBox, LB_GETTEXT, index, reinterpret_cast<LPARAM>(text.data()));
    return fromWide({text.data(), text.size() - 1});
}

}  // namespace vrx
