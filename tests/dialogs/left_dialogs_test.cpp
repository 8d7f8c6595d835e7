// Host code that runs in a dialog's message loop and leaves it without returning.

#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <string>

#include "dialogs/resource.h"
#include "hdr_host.h"
#include "leaving.h"
#include "throwaway_folder.h"
#include "window_driver.h"

using host::Hdr;

namespace {

constexpr wchar_t kClassName[] = L"LeavingHost";

/// What the host's window does at its next timer message.
std::function<void()> onTimer;

/// What the host's windows do when they are disabled or enabled.
std::function<void(HWND window, bool enabled)> onEnable;

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wide, LPARAM longer) {
    if (message == WM_ENABLE && onEnable) onEnable(window, wide != 0);
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

    /// Opens the dialog; the host's timer leaves it as soon as it has disabled the host's window. The frames
    /// that are left lie deeper than the test's own message loop, as those of a button's handler do.
    [[nodiscard, gnu::noinline]] bool openAndLeave() {
        const volatile char handlersFrames[0x10000] = {};
        static_cast<void>(handlersFrames[0]);
        onTimer = [this] {
            if (IsWindowEnabled(window_.get())) return;
            KillTimer(window_.get(), 1);
            host::leaveByJump();
        };
        SetTimer(window_.get(), 1, 20, nullptr);
        return host::endsByJump([&] { GetParam().open(hdr_); });
    }

    /// The same by an exception that the host handles in the function that has opened the dialog: its code.
    [[nodiscard, gnu::noinline]] DWORD openAndRaise(DWORD code) {
        const volatile char handlersFrames[0x10000] = {};
        static_cast<void>(handlersFrames[0]);
        onTimer = [this, code] {
            if (IsWindowEnabled(window_.get())) return;
            KillTimer(window_.get(), 1);
            host::leaveByException(code);
        };
        SetTimer(window_.get(), 1, 20, nullptr);
        return host::exceptionEnding([&] { GetParam().open(hdr_); });
    }

    void expectClosed(long references) const {
        EXPECT_FALSE(hdr_.loading());
        EXPECT_TRUE(IsWindowEnabled(window_.get()));
        EXPECT_EQ(host::ownWindowCount(), windowsBefore_);
        EXPECT_EQ(this->references(), references);
    }
};

TEST_P(LeftDialogs, AreClosedAtTheNextCallAndTheHostsWindowsEnabled) {
    const long before = references();
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(openAndLeave());
        expectClosed(before);
    }
}

TEST_P(LeftDialogs, AreClosedAtTheNextCallWhenAnExceptionOfTheHostsHasPassedThem) {
    const long before = references();
    for (const DWORD code : {host::kDelphi, host::kMicrosoftCpp}) {
        ASSERT_EQ(openAndRaise(code), code);
        expectClosed(before);
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

/// A dialog's preview lets the host's messages pass when the dialog has ended.
class LastMessages : public testing::TestWithParam<Opening> {
  protected:
    HostWindow window_;

    /// Cancels the dialog as soon as it is there; the message that waits then leaves. The frames that are
    /// left lie deeper than those of the test's own calls.
    [[nodiscard, gnu::noinline]] bool openAndLeaveAtTheEnd(const Hdr& hdr) {
        const volatile char handlersFrames[0x10000] = {};
        static_cast<void>(handlersFrames[0]);
        onTimer = [this] {
            if (IsWindowEnabled(window_.get())) return;
            KillTimer(window_.get(), 1);
            onTimer = [this] {
                EXPECT_TRUE(IsWindowEnabled(window_.get()));
                host::leaveByJump();
            };
            PostMessageW(GetActiveWindow(), WM_CLOSE, 0, 0);
            PostMessageW(window_.get(), WM_TIMER, 0, 0);
        };
        SetTimer(window_.get(), 1, 20, nullptr);
        return host::endsByJump([&] { GetParam().open(hdr); });
    }
};

TEST_P(LastMessages, MayLeaveTheDialogThatHasEnded) {
    ASSERT_EQ(host::component().canUnload(), S_OK);
    const int windows = host::ownWindowCount();
    {
        const Hdr hdr;
        for (int i = 0; i < 3; ++i) ASSERT_TRUE(openAndLeaveAtTheEnd(hdr));
    }
    EXPECT_EQ(host::component().canUnload(), S_OK);
    EXPECT_EQ(host::ownWindowCount(), windows);
}

INSTANTIATE_TEST_SUITE_P(Of, LastMessages, testing::Values(kOpenings[0], kOpenings[1]),
                         [](const auto& tested) { return tested.param.name; });

/// Windows of the host's that leave when they are disabled or enabled.
class LeftModality : public testing::TestWithParam<Opening> {
  protected:
    HostWindow windows_[2];
    HostWindow owner_;
    const Hdr hdr_;
    const int windowsBefore_ = host::ownWindowCount();

    void SetUp() override { SetActiveWindow(owner_.get()); }
    void TearDown() override { onEnable = {}; }

    /// The first one leaves. Not the owner of a message, which is the system's own and so are its frames.
    void leaveWhenSet(bool enabled) const {
        onEnable = [this, enabled](HWND window, bool now) {
            if (now != enabled || window == owner_.get()) return;
            onEnable = {};
            host::leaveByJump();
        };
    }
    /// The frames that are left lie deeper than those of the test's own calls.
    [[nodiscard, gnu::noinline]] bool openAndLeave() const {
        const volatile char handlersFrames[0x10000] = {};
        static_cast<void>(handlersFrames[0]);
        return host::endsByJump([&] { GetParam().open(hdr_); });
    }
    void expectAsBefore() const {
        EXPECT_FALSE(hdr_.loading());
        for (const HostWindow& window : windows_) EXPECT_TRUE(IsWindowEnabled(window.get()));
        EXPECT_TRUE(IsWindowEnabled(owner_.get()));
        EXPECT_EQ(host::ownWindowCount(), windowsBefore_);
    }
};

TEST_P(LeftModality, EndsForAllWindowsWhenOneLeavesBeingDisabled) {
    leaveWhenSet(false);
    EXPECT_TRUE(openAndLeave());
    expectAsBefore();
}

TEST_P(LeftModality, EndsForAllWindowsWhenOneLeavesBeingEnabled) {
    leaveWhenSet(true);
    onTimer = [this] {
        if (IsWindowEnabled(windows_[0].get())) return;
        KillTimer(windows_[0].get(), 1);
        PostMessageW(GetActiveWindow(), WM_CLOSE, 0, 0);
    };
    SetTimer(windows_[0].get(), 1, 20, nullptr);
    EXPECT_TRUE(openAndLeave());
    expectAsBefore();
}

const Opening kModalOpenings[] = {
    kOpenings[0],
    kOpenings[1],
    kOpenings[2],
    {"Message",
     [](const Hdr&) {
         const auto fun = host::create(L"VrxCommon.CVrxFun").as<_CVrxFun>();
         const vrx::Bstr text(SysAllocString(L"text"));
         long answer = 0;
         fun->VrxMsgBox(text.get(), MB_OK, text.get(), &answer);
     }},
};

INSTANTIATE_TEST_SUITE_P(Of, LeftModality, testing::ValuesIn(kModalOpenings),
                         [](const auto& tested) { return tested.param.name; });

/// A picture's preview in the dialog, which the host's own object loads; the handler of its event leaves.
class LeftPreviews : public testing::Test {
  protected:
    HostWindow window_;
    const host::ThrowawayFolder folder_;
    const std::wstring file_ = folder_.write(L"picture.hdr", host::RgbePicture(16, 12).file());
    Hdr hdr_;
    host::Listener listener_{hdr_};
    int windowsBefore_ = host::ownWindowCount();

    /// A click on the file in the list, as soon as the dialog is there.
    void choosePreview() {
        onTimer = [this] {
            const HWND dialog = host::windowOf(GetCurrentThreadId(), L"Load HDR Picture");
            if (!dialog) return;
            KillTimer(window_.get(), 1);
            const HWND files = GetDlgItem(dialog, IDC_FILE1);
            SendMessageW(files, LB_SETCURSEL, 0, 0);
            PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(IDC_FILE1, LBN_SELCHANGE),
                         reinterpret_cast<LPARAM>(files));
        };
        SetTimer(window_.get(), 1, 20, nullptr);
    }
    /// The frames that are left lie deeper than those of the test's own calls.
    [[gnu::noinline]] void open() {
        const volatile char handlersFrames[0x10000] = {};
        static_cast<void>(handlersFrames[0]);
        const vrx::Bstr suggestion(SysAllocString(file_.c_str()));
        vrx::Bstr chosen;
        hdr_->Load(suggestion.get(), chosen.put());
    }
    void expectIdle() const {
        EXPECT_FALSE(hdr_.loading());
        EXPECT_TRUE(IsWindowEnabled(window_.get()));
        EXPECT_EQ(host::ownWindowCount(), windowsBefore_);
    }
};

TEST_F(LeftPreviews, EndWhenTheHandlerJumps) {
    for (int i = 0; i < 3; ++i) {
        listener_.onRefresh = [](IDispatch&) { host::leaveByJump(); };
        choosePreview();
        ASSERT_TRUE(host::endsByJump([&] { open(); }));
        listener_.onRefresh = {};
        expectIdle();
        EXPECT_EQ(hdr_.preview(file_), S_OK);
    }
}

TEST_F(LeftPreviews, EndWhenTheHandlersExceptionPassesTheDialog) {
    for (const DWORD code : {host::kDelphi, host::kMicrosoftCpp}) {
        listener_.onRefresh = [code](IDispatch&) { host::leaveByException(code); };
        choosePreview();
        ASSERT_EQ(host::exceptionEnding([&] { open(); }), code);
        listener_.onRefresh = {};
        expectIdle();
        EXPECT_EQ(hdr_.preview(file_), S_OK);
    }
}

}  // namespace
