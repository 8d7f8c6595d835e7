// Reads and closes the message boxes that the calling thread shows, from a thread of its own.
#pragma once

#include <windows.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace host {

struct MessageBox {
    std::wstring text;
    bool exclamation = false;  ///< has the icon of a warning
    bool critical = false;     ///< has the icon of an error
    bool onlyOk = false;       ///< has one button
    bool yesNo = false;        ///< has these two
    std::wstring title;
};

class MessageBoxWatcher {
  public:
    /// `answer` is the button that closes them; those without it are closed with OK.
    explicit MessageBoxWatcher(int answer = IDOK);
    MessageBoxWatcher(const MessageBoxWatcher&) = delete;
    MessageBoxWatcher& operator=(const MessageBoxWatcher&) = delete;
    ~MessageBoxWatcher();

    /// Ends the watch; all boxes that have been shown.
    [[nodiscard]] std::vector<MessageBox> boxes();

  private:
    void watch();

    DWORD watched_;
    int answer_;
    std::atomic<bool> ended_ = false;
    std::vector<MessageBox> boxes_;
    std::thread thread_;
};

}  // namespace host
