// The font of the pattern editor's controls. The window's height in pixels is fixed and it can be made
// narrow, so that at a high resolution the dialog's own font may be too large for it.
#pragma once

#include <windows.h>

#include "com/win_resource.h"
#include "pattern/engine/pattern_layout.h"

namespace vrx {

class EditorFont {
  public:
    /// Begins with the dialog's own font.
    void attach(HWND dialog);
    /// Gives the controls the dialog's font, or the largest below it with which they fit an inner area of
    /// this size.
    void fit(HWND dialog, SIZE inner);

    [[nodiscard]] HFONT get() const { return smallerFont_ ? smallerFont_.get() : dialogFont_; }
    [[nodiscard]] const PatternTexts& texts() const { return texts_; }
    /// Of "100.0%", the longest that the editor shows in its tip.
    [[nodiscard]] SIZE percentage() const { return percentage_; }

  private:
    void measure(HWND dialog, HFONT font);

    HFONT dialogFont_ = nullptr;
    Font smallerFont_;
    LONG height_ = 0;  // of the font in use, as a LOGFONTW tells it
    PatternTexts texts_{};
    SIZE percentage_{};
};

}  // namespace vrx
