#include "common/frmMessage.h"

#include <windows.h>

#include <memory>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "com/entry.h"
#include "com/module.h"
#include "common/message_loop.h"
#include "common/message_window.h"

namespace vrx::frmMessage {
namespace {

// Posted to the window by other threads: that the messages have changed, and a lock of the module to give
// back.
constexpr UINT kMessagesChanged = WM_USER;
constexpr UINT kUnlockModule = WM_USER + 1;

/// What all threads share. Nothing that may run other code happens under the guard.
struct SharedForm {
    std::mutex guard;
    /// While there are any they hold a lock of the module.
    std::vector<std::u16string> messages;
    // Owned, but never destroyed with the module: windows are none of a module's business when a program
    // ends.
    MessageWindow* window = nullptr;
};

SharedForm shared;

/// The window, where it belongs to this thread. No other thread takes it away.
MessageWindow* windowOfThisThread() {
    const std::lock_guard lock(shared.guard);
    return shared.window && shared.window->isOfThisThread() ? shared.window : nullptr;
}

/// Empty where there is none.
std::optional<std::u16string> lastMessage() {
    const std::lock_guard lock(shared.guard);
    if (shared.messages.empty()) return std::nullopt;
    return shared.messages.back();
}

/// Brings the window of this thread in line with the messages.
void refresh() {
    MessageWindow* const window = windowOfThisThread();
    if (!window) return;
    const Held<std::optional<std::u16string>> message(lastMessage());
    *message ? window->display(**message) : window->conceal();
}

/// For a change made by another thread; it has no one to fail to.
void refreshQuietly() noexcept {
    try {
        refresh();
    } catch (...) {
        return;
    }
}

/// The window that nobody needs any more, for its end on this thread. One of another thread gets a lock of
/// the module to give back there, with which it comes here again.
std::unique_ptr<MessageWindow> takeUnused() {
    const std::lock_guard lock(shared.guard);
    if (!shared.window || !shared.messages.empty() || moduleInUse()) return nullptr;
    if (shared.window->isAlive() && !shared.window->isOfThisThread()) {
        lockModule();
        PostMessageW(shared.window->form(), kUnlockModule, 0, 0);
        return nullptr;
    }
    return std::unique_ptr<MessageWindow>(std::exchange(shared.window, nullptr));
}

void closeUnused() noexcept { takeUnused().reset(); }

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wide, LPARAM longer) {
    switch (message) {
        case WM_CLOSE:
            // Only hide() takes a message away.
            return 0;
        case kMessagesChanged:
            refreshQuietly();
            return 0;
        case kUnlockModule:
            if (MessageWindow* const own = windowOfThisThread()) own->leaveModule();
            unlockModule();
            return 0;
        default:
            return DefWindowProcW(window, message, wide, longer);
    }
}

/// Makes the window where there is none that lives.
void ensureWindow() {
    const auto lives = [] { return shared.window && shared.window->isAlive(); };
    {
        const std::lock_guard lock(shared.guard);
        if (lives()) return;
    }
    whenUnused(closeUnused);
    auto made = std::make_unique<MessageWindow>(procedure);
    const std::lock_guard lock(shared.guard);
    if (!lives()) made.reset(std::exchange(shared.window, made.release()));
}

/// Brings the window in line with the messages; one of another thread as soon as that takes its messages.
void update() {
    ensureWindow();
    if (windowOfThisThread()) {
        refresh();
    } else {
        const std::lock_guard lock(shared.guard);
        if (shared.window) PostMessageW(shared.window->form(), kMessagesChanged, 0, 0);
    }
    static_cast<void>(doEvents());
}

}  // namespace

void show(const std::u16string& message) {
    ensureWindow();
    {
        const std::lock_guard lock(shared.guard);
        shared.messages.push_back(message);
        if (shared.messages.size() == 1) lockModule();
    }
    update();
}

bool hide() {
    bool last = false;
    {
        const std::lock_guard lock(shared.guard);
        if (shared.messages.empty()) return false;
        shared.messages.pop_back();
        last = shared.messages.empty();
    }
    if (last) unlockModule();
    update();
    return last;
}

}  // namespace vrx::frmMessage
