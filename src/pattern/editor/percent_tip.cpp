#include "pattern/editor/percent_tip.h"

#include <algorithm>
#include <utility>

#include "com/variant_convert.h"
#include "com/win32_error.h"
#include "dialogs/resource.h"
#include "dialogs/window_place.h"

namespace vrx {
namespace {

constexpr int kBorder = 1;
constexpr int kPaddingBeside = 2;
constexpr int kPaddingAbove = 1;

}  // namespace

void PercentTip::attach(HWND parent, HFONT font, SIZE text) {
    const int width = text.cx + 2 * kPaddingBeside;
    const int height = text.cy + 2 * kPaddingAbove;
    create(parent, IDC_PICTOOLTIPS, WS_BORDER, {0, 0, width + 2 * kBorder, height + 2 * kBorder});
    label_ = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE | SS_CENTER | SS_NOPREFIX, 0, 0, width,
                             height, window(), reinterpret_cast<HMENU>(static_cast<INT_PTR>(IDC_LBLPERC)),
                             moduleInstance(), nullptr);
    if (!label_) throw win32Error(GetLastError());
    SendMessageW(label_, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
}

void PercentTip::show(const std::u16string& text, int column, int top) {
    RECT inner{};
    GetClientRect(GetParent(window()), &inner);
    const auto width = static_cast<int>(outerSize(window()).cx);
    const int furthest = std::max(static_cast<int>(inner.right) - width, 0);
    if (std::exchange(text_, text) != text) SetWindowTextW(label_, toWide(text).c_str());
    SetWindowPos(window(), HWND_TOP, std::clamp(column - width / 2, 0, furthest), top, 0, 0,
                 SWP_NOSIZE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
}

void PercentTip::hide() { ShowWindow(window(), SW_HIDE); }

std::optional<LRESULT> PercentTip::handle(UINT message, WPARAM wide, LPARAM /*longer*/) {
    if (message == WM_ERASEBKGND) return 1;  // the label covers everything
    if (message != WM_CTLCOLORSTATIC) return std::nullopt;
    const auto dc = reinterpret_cast<HDC>(wide);
    SetTextColor(dc, GetSysColor(COLOR_INFOTEXT));
    SetBkColor(dc, GetSysColor(COLOR_INFOBK));
    return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_INFOBK));
}

}  // namespace vrx
