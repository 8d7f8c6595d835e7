// Host code that runs in a dialog's message loop and leaves it without returning.

#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <string>

#include "hdr_host.h"
#include "leaving.h"
#include "window_driver.h"

using host::Hdr;

namespace {

constexpr wchar_t kClassName[] = L"LeavingHost";

/// What the host's window does at its next timer message.
std::function<void()> onTimer;

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wide, LPARAM longer) {
    if (message != WM_TIMER) return DefWindowProcW(window, message, wide, longer);
    onTimer();
    return 0;
}

BOOL CALLBACK wake(HWND window, LPARAM) { return PostMessageW(window, WM_NULL, 0, 0), TRUE; }

class HostWindow {
  public:
    HostWindow() {
        WNDCLASSW description{};
        description.lpfnWndProc = procedure;
        description.lpszClassName = kClassName;
        RegisterClassW(&description);
        window_ = CreateWindowW(kClassName, L"host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 200, 100,
                                nullptr, nullptr, nullptr, nullptr);
    }
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;
    ~HostWindow() {
        DestroyWindow(window_);
        UnregisterClassW(kClassName, nullptr);
    }
    [[nodiscard]] HWND get() const { return window_; }

  private:
    HWND window_;
};

struct Opening {
    const char* name;
    void (*open)(const Hdr& hdr);
};

const Opening kOpenings[] = {
    {"Load",
     [](const Hdr& hdr) {
         vrx::Bstr chosen;
         hdr->Load(nullptr, chosen.put());
     }},
    {"Save", [](const Hdr& hdr) { hdr->Save(nullptr); }},
    {"See", [](const Hdr& hdr) { hdr->See(nullptr, 0, 1); }},
};

class LeftDialogs : public testing::TestWithParam<Opening> {
  protected:
    HostWindow window_;
    Hdr hdr_;
    int windowsBefore_ = host::ownWindowCount();

    [[nodiscard]] long references() const {
        hdr_->AddRef();
        return static_cast<long>(hdr_->Release());
    }

    /// Opens the dialog; the host's timer leaves it as soon as it has disabled the host's window. The frames that
    /// are left lie deeper than the test's own message loop, as those of a button's handler do.
    [[nodiscard, gnu::noinline]] bool openAndLeave() {
        volatile char handlersFrames[0x10000];
        handlersFrames[0] = 0;
        onTimer = [this] {
            if (IsWindowEnabled(window_.get())) return;
            KillTimer(window_.get(), 1);
            host::leaveByJump();
        };
        SetTimer(window_.get(), 1, 20, nullptr);
        return host::endsByJump([&] { GetParam().open(hdr_); });
    }
};

TEST_P(LeftDialogs, AreClosedAtTheNextCallAndTheHostsWindowsEnabled) {
    const long before = references();
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(openAndLeave());
        EXPECT_FALSE(hdr_.loading());
        EXPECT_TRUE(IsWindowEnabled(window_.get()));
        EXPECT_EQ(host::ownWindowCount(), windowsBefore_);
        EXPECT_EQ(references(), before);
    }
}

TEST_P(LeftDialogs, AreClosedByTheirOwnNextMessage) {
    ASSERT_TRUE(openAndLeave());
    EXPECT_FALSE(IsWindowEnabled(window_.get()));
    MSG message;
    for (int i = 0; i < 100 && !IsWindowEnabled(window_.get()); ++i) {
        EnumThreadWindows(GetCurrentThreadId(), wake, 0);
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    }
    EXPECT_TRUE(IsWindowEnabled(window_.get()));
    EXPECT_EQ(host::ownWindowCount(), windowsBefore_);
}

INSTANTIATE_TEST_SUITE_P(Of, LeftDialogs, testing::ValuesIn(kOpenings),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
