#include "common/clipboard.h"

#include <windows.h>

#include "com/entry.h"

namespace vrx {

namespace {

class OpenedClipboard {
  public:
    OpenedClipboard() : open_(OpenClipboard(nullptr) != FALSE) {}
    OpenedClipboard(const OpenedClipboard&) = delete;
    OpenedClipboard& operator=(const OpenedClipboard&) = delete;
    ~OpenedClipboard() {
        if (open_) CloseClipboard();
    }

    explicit operator bool() const { return open_; }

  private:
    bool open_;
};

}  // namespace

void clearClipboard() {
    const Held<OpenedClipboard> clipboard;
    // A window of the host's may be told that its content goes.
    if (*clipboard) callHost([] { return EmptyClipboard(); });
}

}  // namespace vrx
