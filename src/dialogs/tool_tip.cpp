#include "dialogs/tool_tip.h"

#include <commctrl.h>

#include "com/module.h"
#include "com/variant_convert.h"

namespace vrx {

void addToolTip(HWND control, const std::u16string& text) {
    const HWND dialog = GetParent(control);
    const HWND tip = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP,
                                     CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, dialog,
                                     nullptr, moduleInstance(), nullptr);
    std::wstring shown = toWide(text);
    TTTOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V1_SIZE;  // known to the common controls of every version
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = dialog;
    tool.uId = reinterpret_cast<UINT_PTR>(control);
    tool.lpszText = shown.data();
    SendMessageW(tip, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

}  // namespace vrx
