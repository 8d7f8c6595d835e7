// The small window that shows where a stop is while it is dragged.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "dialogs/controls/custom_control.h"

namespace vrx {

class PercentTip final : public CustomControl {
  public:
    /// Makes the windows, hidden, with the font of their parent's controls.
    void attach(HWND parent, HFONT font, SIZE text);
    /// In the parent's coordinates, around this column and within its width.
    void show(const std::u16string& text, int column, int top);
    void hide();

  private:
    std::optional<LRESULT> handle(UINT message, WPARAM wide, LPARAM longer) override;

    HWND label_ = nullptr;
    std::u16string text_;
};

}  // namespace vrx
