// Works with the pattern editor and the system's dialogs that it opens, as a user does.
#pragma once

#include <windows.h>

#include <functional>
#include <initializer_list>
#include <string>

#include "VrxCommon.h"
#include "com/com_ptr.h"
#include "host.h"
#include "window_driver.h"

namespace host {

/// The editor's window, from a driver's thread.
class PatternWindow {
  public:
    explicit PatternWindow(HWND window) : window_(window) {}

    [[nodiscard]] HWND window() const { return window_; }
    [[nodiscard]] HWND control(int id) const { return GetDlgItem(window_, id); }
    /// Null when there is no such stop.
    [[nodiscard]] HWND flag(int index) const;
    [[nodiscard]] int flagCount() const;
    /// Where a stop stands: its flag's left edge less 8.
    [[nodiscard]] int column(int index) const;
    /// The colour in the middle of a flag.
    [[nodiscard]] COLORREF flagColor(int index) const;
    /// The flag with the yellow frame; -1 for none.
    [[nodiscard]] int selected() const;
    /// As "255 0 128".
    [[nodiscard]] std::wstring labels() const;
    /// What the tooltip shows; empty while it is hidden.
    [[nodiscard]] std::wstring tip() const;
    [[nodiscard]] int rampWidth() const;
    [[nodiscard]] Pixels ramp() const;

    /// Outer size; what comes of it is the window's decision.
    void resize(int width, int height = 144) const;
    [[nodiscard]] SIZE size() const;
    /// Makes the ramp so many columns wide.
    void setRampWidth(int width) const;

    /// Drags the lower right corner with the mouse, as far as the screen goes.
    void dragCorner(int x, int y) const;

    void click(int id) const;
    void press(int index) const;
    /// With the button down, from where it was pressed, so many columns to the right of its flag.
    void dragTo(int index, int columns) const;
    void release(int index) const;
    void drag(int index, int columns) const;
    /// A key that the flag gets when it has the focus; what it does comes later.
    void key(int index, int key) const;
    /// Keys pressed in this order and released in the opposite one, for the window in front.
    void type(std::initializer_list<int> keys) const;

    /// Starts something that opens one of the system's dialogs and waits for it; null when it does not come.
    [[nodiscard]] HWND open(const std::function<void()>& start) const;
    /// Chooses a menu item and waits for its dialog.
    [[nodiscard]] HWND openByMenu(int id) const;
    /// Ends a dialog with one of its buttons and waits until the editor goes on.
    void end(HWND dialog, int button) const;
    /// Chooses a file in the dialog that a menu item opens.
    void chooseFile(int menuId, const std::wstring& path) const;

  private:
    HWND window_;
};

/// The text of a control of any dialog, and a new one for it.
std::wstring textOf(HWND dialog, int id);
void setText(HWND dialog, int id, const std::wstring& text);

/// The control that takes the name in the system's file dialog.
inline constexpr int kFileNameEdit = 0x47C;

/// Opens the editor with a pattern string; the driver closes it by its frame when nothing else does. What
/// `Load` leaves.
std::wstring editPattern(_CVrxPattern& pattern, const std::wstring& text,
                         const std::function<void(const PatternWindow&)>& act);

}  // namespace host
