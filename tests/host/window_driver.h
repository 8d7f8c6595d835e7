// Works with the windows that the calling thread shows, as a user does: from a thread of its own.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <thread>

#include "picture_pixels.h"

namespace host {

/// Asks again every few milliseconds until the answer is yes; false when it has not been for 30 seconds.
bool eventually(const std::function<bool()>& question);

/// A visible top-level window of a thread by its caption; null for none.
HWND windowOf(DWORD thread, const std::wstring& caption);

/// How many top-level windows the calling thread has, visible or not.
int ownWindowCount();

std::wstring captionOf(HWND window);

/// Waits until the window's thread has done all that is in its queue now, for what is sent to a window
/// overtakes what was posted before it. A window that is gone has nothing left to do.
void settle(HWND window);

/// A press and a release of the left button, put into the window's queue.
void click(HWND window, int x, int y);

/// What can be seen of a window's inner area now.
Pixels shownIn(HWND window);

/// The part of a picture from its top left corner (x, y) on.
Pixels partOf(const Pixels& pixels, int x, int y, int width, int height);

/// A 24-bit BMP file with these bytes, rows from the bottom.
FileBytes bmpFile(int width, int height, const FileBytes& bits);
/// The same with one colour.
FileBytes bmpFile(int width, int height, COLORREF color);

/// Waits for a window that the thread which made the driver shows and for what it does when it opens, does
/// something with it and closes it if it is still there.
class WindowDriver {
  public:
    WindowDriver(std::wstring caption, std::function<void(HWND)> act);
    WindowDriver(const WindowDriver&) = delete;
    WindowDriver& operator=(const WindowDriver&) = delete;
    ~WindowDriver();

  private:
    std::thread thread_;
};

}  // namespace host
