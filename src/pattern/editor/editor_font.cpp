#include "pattern/editor/editor_font.h"

#include <algorithm>
#include <string_view>
#include <utility>

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
    SendMessageW(control, WM_SETFONT, static_cast<WPARAM>(font), TRUE);
    return TRUE;
}

}  // namespace

void EditorFont::attach(HWND dialog) {
    dialogFont_ = reinterpret_cast<HFONT>(SendMessageW(dialog, WM_GETFONT, 0, 0));
    measure(dialog, dialogFont_);
}

void EditorFont::fit(HWND dialog, SIZE inner) {
    LOGFONTW description{};
    if (GetObjectW(dialogFont_, sizeof description, &description) == 0) return;
    Font smaller;
    measure(dialog, dialogFont_);
    while (!patternFits(inner.cx, inner.cy, texts_) && -description.lfHeight > kLowest) {
        ++description.lfHeight;
        smaller.reset(CreateFontIndirectW(&description));
        measure(dialog, smaller ? smaller.get() : dialogFont_);
    }
    if (std::exchange(height_, description.lfHeight) == description.lfHeight) return;
    // The controls let go of the old one first.
    const Font old = std::exchange(smallerFont_, std::move(smaller));
    EnumChildWindows(dialog, setFont, reinterpret_cast<LPARAM>(get()));
}

void EditorFont::measure(HWND dialog, HFONT font) {
    const TextDc dc(dialog, font);
    texts_.height = dc.extent(L"0").cy;
    texts_.legend = std::max({dc.extent(L"R:").cx, dc.extent(L"G:").cx, dc.extent(L"B:").cx});
    texts_.value = dc.extent(L"255").cx;
    texts_.ok = dc.extent(L"OK").cx;
    texts_.cancel = dc.extent(L"Cancel").cx;
    percentage_ = dc.extent(L"100.0%");
}

}  // namespace vrx
