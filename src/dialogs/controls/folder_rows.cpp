#include "dialogs/controls/folder_rows.h"

#include <shellapi.h>

#include <algorithm>

#include "com/variant_convert.h"
#include "common/device_context.h"
#include "dialogs/dpi.h"

namespace vrx {
namespace {

/// As the system shows any folder; none of the disk's is looked at.
Icon folderIcon(UINT kind) {
    SHFILEINFOW info{};
    SHGetFileInfoW(L"folder", FILE_ATTRIBUTE_DIRECTORY, &info, sizeof info,
                   SHGFI_USEFILEATTRIBUTES | SHGFI_ICON | SHGFI_SMALLICON | kind);
    return Icon(info.hIcon);
}

int textHeight(HWND window) {
    const WindowDc dc(window);
    const auto font = reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0));
    const Selection selected(dc.get(), font);
    TEXTMETRICW metrics{};
    GetTextMetricsW(dc.get(), &metrics);
    return metrics.tmHeight;
}

int pixels(HDC dc, int designed) { return MulDiv(designed, GetDeviceCaps(dc, LOGPIXELSX), kDesignDpi); }

COLORREF textColor(UINT state) {
    if (state & ODS_DISABLED) return GetSysColor(COLOR_GRAYTEXT);
    return GetSysColor(state & ODS_SELECTED ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT);
}

}  // namespace

void FolderRows::attach(HWND listBox) {
    icon_ = {GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON)};
    closed_ = folderIcon(0);
    open_ = folderIcon(SHGFI_OPENICON);
    const int height = std::max(static_cast<int>(icon_.cy), textHeight(listBox)) + 2;
    SendMessageW(listBox, LB_SETITEMHEIGHT, 0, height);
}

void FolderRows::draw(const DRAWITEMSTRUCT& row, const std::u16string& name, int depth, bool open) const {
    const HDC dc = row.hDC;
    RECT area = row.rcItem;
    const bool selected = (row.itemState & ODS_SELECTED) != 0;
    FillRect(dc, &area, GetSysColorBrush(selected ? COLOR_HIGHLIGHT : COLOR_WINDOW));
    area.left += pixels(dc, 2) + depth * icon_.cx / 2;
    const HICON icon = open ? open_.get() : closed_.get();
    if (icon)
        DrawIconEx(dc, area.left, (area.top + area.bottom - icon_.cy) / 2, icon, icon_.cx, icon_.cy, 0,
                   nullptr, DI_NORMAL);
    area.left += icon_.cx + pixels(dc, 4);
    const int previousMode = SetBkMode(dc, TRANSPARENT);
    const COLORREF previousColor = SetTextColor(dc, textColor(row.itemState));
    DrawTextW(dc, asWide(name.c_str()), static_cast<int>(name.size()), &area,
              DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
    SetTextColor(dc, previousColor);
    SetBkMode(dc, previousMode);
    if ((row.itemState & ODS_FOCUS) && !(row.itemState & ODS_NOFOCUSRECT)) DrawFocusRect(dc, &row.rcItem);
}

}  // namespace vrx
