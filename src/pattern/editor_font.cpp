#include "pattern/editor_font.h"

#include <algorithm>
#include <string_view>

#include "common/device_context.h"

namespace vrx {
namespace {

// Below this height nobody can read it.
constexpr LONG kLowest = 9;

/// A window's device context with a font selected.
class TextDc {
  public:
    TextDc(HWND window, HFONT font) : dc_(window), selected_(dc_.get(), font) {}

    [[nodiscard]] SIZE extent(std::wstring_view text) const {
        SIZE size{};
        GetTextExtentPoint32W(dc_.get(), text.data(), static_cast<int>(text.size()), &size);
        return size;
    }

  private:
    WindowDc dc_;
    Selection selected_;
};

BOOL CALLBACK setFont(HWND control, LPARAM font) {
    SendMessageW(control, WM_SETFONT, static_cast<WPARAM>(font), FALSE);
    return TRUE;
}

}  // namespace

void EditorFont::attach(HWND dialog, SIZE inner) {
    font_ = reinterpret_cast<HFONT>(SendMessageW(dialog, WM_GETFONT, 0, 0));
    measure(dialog);
    LOGFONTW description{};
    if (GetObjectW(font_, sizeof description, &description) == 0) return;
    while (!patternFits(inner.cx, inner.cy, texts_) && -description.lfHeight > kLowest) {
        ++description.lfHeight;
        Font smaller(CreateFontIndirectW(&description));
        if (!smaller) break;
        font_ = smaller.get();
        own_ = std::move(smaller);
        measure(dialog);
    }
    if (own_) EnumChildWindows(dialog, setFont, reinterpret_cast<LPARAM>(font_));
}

void EditorFont::measure(HWND dialog) {
    const TextDc dc(dialog, font_);
    texts_.height = dc.extent(L"0").cy;
    texts_.legend = std::max({dc.extent(L"R:").cx, dc.extent(L"G:").cx, dc.extent(L"B:").cx});
    texts_.value = dc.extent(L"255").cx;
    texts_.ok = dc.extent(L"OK").cx;
    texts_.cancel = dc.extent(L"Cancel").cx;
    percentage_ = dc.extent(L"100.0%");
}

}  // namespace vrx
