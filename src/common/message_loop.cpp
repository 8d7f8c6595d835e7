#include "common/message_loop.h"

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <new>
#include <utility>
#include <vector>

#include "com/entry.h"
#include "com/module.h"

namespace vrx {
namespace {

constexpr DWORD kDialogClass = 32770;

// What the user does this much later than the call need not be waited for.
constexpr LONG kLatestInputMilliseconds = 50;

bool isOwnDialog(HWND window) {
    return GetClassLongW(window, GCW_ATOM) == kDialogClass &&
           reinterpret_cast<HINSTANCE>(GetWindowLongPtrW(window, GWLP_HINSTANCE)) == moduleInstance();
}

/// Tab, arrows, Enter and Esc in one of the library's own dialogs.
bool isForDialog(MSG& message) {
    const HWND dialog = message.hwnd ? GetAncestor(message.hwnd, GA_ROOT) : nullptr;
    if (!dialog || !isOwnDialog(dialog)) return false;
    const bool enter = message.message == WM_KEYDOWN && message.wParam == VK_RETURN;
    if (enter && SendMessageW(dialog, kEnterPressed, 0, reinterpret_cast<LPARAM>(message.hwnd))) return true;
    return IsDialogMessageW(dialog, &message);
}

void dispatch(MSG& message) {
    const HostCall host;
    if (isForDialog(message)) return;
    TranslateMessage(&message);
    DispatchMessageW(&message);
}

/// Stands behind everything that is posted to the thread by now: a window that closes when its turn comes,
/// whichever message loop takes it.
class Mark {
  public:
    Mark()
        : window_(CreateWindowExW(0, L"STATIC", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                  moduleInstance(), nullptr)) {}
    Mark(const Mark&) = delete;
    Mark& operator=(const Mark&) = delete;
    ~Mark() {
        if (IsWindow(window_)) DestroyWindow(window_);
    }

    /// A queue that is full takes the mark as soon as there is room.
    [[nodiscard]] bool isAhead() {
        if (!window_) return false;
        posted_ = posted_ || PostMessageW(window_, WM_CLOSE, 0, 0);
        return IsWindow(window_);
    }

  private:
    HWND window_;
    bool posted_ = false;
};

/// Takes the thread's messages in the system's own order: posted ones, input, painting, timers. Each kind has
/// its own end, as messages of an earlier kind would otherwise keep the later ones waiting.
class PendingMessages {
  public:
    void dispatchAll() {
        const DWORD began = GetTickCount();
        dispatchPosted();
        dispatchInput(began);
        if (dispatchOnceEach(QS_PAINT)) EnumThreadWindows(GetCurrentThreadId(), paintWindowAndChildren, 0);
        dispatchOnceEach(QS_TIMER);
    }

    [[nodiscard]] bool toQuit() const { return toQuit_; }

  private:
    /// One message of these kinds; false when there is none.
    bool dispatchNext(UINT kinds) {
        if (!take(0, kinds)) return false;
        dispatch(message_);
        return true;
    }

    bool take(UINT id, UINT kinds) {
        if (toQuit_ || !PeekMessageW(&message_, nullptr, id, id, PM_REMOVE | kinds << 16)) return false;
        if (message_.message != WM_QUIT) return true;
        PostQuitMessage(static_cast<int>(message_.wParam));
        toQuit_ = true;
        return false;
    }

    /// The request to quit has its turn when nothing else is posted.
    void dispatchPosted() {
        constexpr UINT kEveryKind = 0;
        const Held<Mark> mark;
        bool goesOn = true;
        while (goesOn && mark->isAhead()) goesOn = dispatchNext(kEveryKind);
        take(WM_QUIT, kEveryKind);
    }

    /// The characters of a key are posted, and have their turn before the next key.
    void dispatchInput(DWORD began) {
        while (dispatchNext(QS_INPUT)) {
            const auto age = static_cast<LONG>(message_.time - began);
            dispatchPosted();
            if (age > kLatestInputMilliseconds) return;
        }
    }

    /// Until one comes again; whether it has.
    bool dispatchOnceEach(UINT kind) {
        const Held<std::vector<std::pair<HWND, WPARAM>>> seen;
        while (take(0, kind)) {
            const std::pair sender(message_.hwnd, message_.wParam);
            dispatch(message_);
            if (std::ranges::find(*seen, sender) != seen->end()) return true;
            seen->push_back(sender);
        }
        return false;
    }

    /// For windows that others keep from their turn.
    static BOOL CALLBACK paintWindow(HWND window, LPARAM) {
        const bool own = GetWindowThreadProcessId(window, nullptr) == GetCurrentThreadId();
        const HostCall host;
        if (own && GetUpdateRect(window, nullptr, FALSE)) UpdateWindow(window);
        return TRUE;
    }
    static BOOL CALLBACK paintWindowAndChildren(HWND window, LPARAM) {
        EnumChildWindows(window, paintWindow, 0);
        return paintWindow(window, 0);
    }

    MSG message_{};
    bool toQuit_ = false;
};

/// Whether calls that dispatch messages which make such calls have used half of the stack.
bool stackIsHalfUsed() {
    MEMORY_BASIC_INFORMATION stack{};
    if (VirtualQuery(&stack, &stack, sizeof stack) == 0) return false;
    const auto bottom = reinterpret_cast<std::uintptr_t>(stack.AllocationBase);
    const auto top = reinterpret_cast<std::uintptr_t>(stack.BaseAddress) + stack.RegionSize;
    return reinterpret_cast<std::uintptr_t>(&stack) < bottom + (top - bottom) / 2;
}

bool nothingWaits() { return HIWORD(GetQueueStatus(QS_ALLINPUT)) == 0; }

bool dispatchWaiting() noexcept {
    // The messages are then left to the calls further out.
    if (stackIsHalfUsed()) return true;
    PendingMessages messages;
    try {
        messages.dispatchAll();
    } catch (const std::bad_alloc&) {
        // What was not dispatched waits for the next call.
    }
    return !messages.toQuit();
}

std::uint64_t ticksOf(BOOL(WINAPI* clock)(LARGE_INTEGER*)) {
    LARGE_INTEGER ticks{};
    clock(&ticks);
    return static_cast<std::uint64_t>(ticks.QuadPart);
}

}  // namespace

bool doEvents() noexcept { return nothingWaits() || dispatchWaiting(); }

bool MessageBreaks::doEvents() noexcept {
    static const std::uint64_t millisecond = ticksOf(QueryPerformanceFrequency) / 1000;
    const HostTurn turn = lastHostTurn();
    const std::uint64_t now = ticksOf(QueryPerformanceCounter);
    if (turn.isKnown() && turn == quietTurn_ && now - quietTime_ < millisecond) return true;
    if (nothingWaits()) {
        quietTurn_ = turn;
        quietTime_ = now;
        return true;
    }
    // Windows may be sent messages in there, of which nobody tells us.
    quietTurn_ = {};
    return dispatchWaiting();
}

}  // namespace vrx
