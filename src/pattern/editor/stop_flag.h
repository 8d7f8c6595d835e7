// The flag of a colour stop: shows its colour, is dragged with the mouse and takes the keyboard's focus.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "dialogs/controls/custom_control.h"
#include "pattern/engine/pattern_editor.h"

namespace vrx {

/// What the user does with a flag. What may take the flag away is posted to its parent instead.
class StopFlagOwner {
  public:
    virtual void flagPressed(std::size_t index) = 0;
    /// By so many columns; to the left when it is negative.
    virtual void flagDragged(std::size_t index, std::int32_t columns) = 0;
    virtual void flagReleased() = 0;
    virtual void flagFocused(std::size_t index) = 0;

  protected:
    ~StopFlagOwner() = default;
};

/// Posted to a flag's parent, a dialog, in the range that is left for those: a double click, and a key that
/// flags use as the first parameter, 0 when it is up again. The second parameter is the flag's index.
inline constexpr UINT kFlagOpened = WM_APP;
inline constexpr UINT kFlagKey = WM_APP + 1;

class StopFlag final : public CustomControl {
  public:
    StopFlag(StopFlagOwner& owner, HWND parent, int id, std::size_t index);

    void moveTo(int left, int top);
    void setColor(std::int32_t color);
    /// The selected flag is the one that Tab comes to.
    void setSelected(bool selected);
    /// What a screen reader reads.
    void setName(const std::u16string& name);
    void bringToFront();

  private:
    std::optional<LRESULT> handle(UINT message, WPARAM wide, LPARAM longer) override;
    std::optional<LRESULT> handleMouse(UINT message, WPARAM wide, int x);
    void post(UINT message, WPARAM wide) const;
    void press(int x);
    void drag(int x);
    void lift(WPARAM buttons);
    void release();
    void paint();
    [[nodiscard]] bool showsFocus() const;
    void invalidate() const {
        if (window()) InvalidateRect(window(), nullptr, FALSE);
    }

    StopFlagOwner& owner_;
    const std::size_t index_;
    FlagDrag drag_;
    bool placed_ = false;
    int left_ = 0;
    int top_ = 0;
    std::u16string name_;
    std::int32_t color_ = 0;
    bool selected_ = false;
    bool pressed_ = false;
};

}  // namespace vrx
