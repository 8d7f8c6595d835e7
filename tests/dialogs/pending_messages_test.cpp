// CVrxFun: the host's messages that wait while a short message is shown or hidden.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>

#include "VrxCommon.h"
#include "com/win_resource.h"
#include "host.h"
#include "window_driver.h"

using vrx::Bstr;
using vrx::ComPtr;

namespace {

constexpr UINT kPosted = WM_APP + 5;

/// A window of the host that hands some of its messages to a function and paints nothing.
class HostWindow {
  public:
    using Handler = std::function<void(HWND window, UINT message)>;

    explicit HostWindow(Handler handler, const wchar_t* caption = L"Host") : handler_(std::move(handler)) {
        WNDCLASSW description{};
        description.lpfnWndProc = procedure;
        description.hInstance = GetModuleHandleW(nullptr);
        description.lpszClassName = L"VrxTestHostWindow";
        RegisterClassW(&description);
        window_ = CreateWindowW(description.lpszClassName, caption, WS_POPUP | WS_VISIBLE, 0, 0, 60, 60, nullptr,
                                nullptr, description.hInstance, nullptr);
        SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        UpdateWindow(window_);
    }
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;
    ~HostWindow() { DestroyWindow(window_); }

    [[nodiscard]] HWND get() const { return window_; }
    void post(int count = 1) const {
        for (int i = 0; i < count; ++i) PostMessageW(window_, kPosted, 0, 0);
    }
    void invalidate() const { InvalidateRect(window_, nullptr, TRUE); }
    [[nodiscard]] bool isPainted() const { return !GetUpdateRect(window_, nullptr, FALSE); }

  private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wide, LPARAM longer) {
        auto* const self = reinterpret_cast<HostWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        const LRESULT answer = DefWindowProcW(window, message, wide, longer);
        if (self && (message == kPosted || message == WM_PAINT || message == WM_TIMER))
            self->handler_(window, message);
        return answer;
    }

    Handler handler_;
    HWND window_;
};

/// Counts what reaches a window of the host.
struct Counts {
    int posted = 0;
    int painted = 0;
    int ticks = 0;

    HostWindow::Handler counting() {
        return [this](HWND, UINT message) {
            posted += message == kPosted;
            painted += message == WM_PAINT;
            ticks += message == WM_TIMER;
        };
    }
};

class PendingMessages : public testing::Test {
  protected:
    void SetUp() override {
        for (MSG message; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);) DispatchMessageW(&message);
    }

    void show() const { EXPECT_EQ(fun_->Show_ShortMessage(Bstr(SysAllocString(L"A")).get()), S_OK); }
    void hide() const {
        VARIANT_BOOL last = VARIANT_FALSE;
        EXPECT_EQ(fun_->Hide_ShortMessage(&last), S_OK);
    }

    const ComPtr<_CVrxFun> fun_ = host::createDirectly(CLSID_CVrxFun).as<_CVrxFun>();
};

TEST_F(PendingMessages, AThousandPostedOnesAndTheHostsPaintingBehindThemAreProcessedOnceByShowAndByHide) {
    Counts counts;
    const HostWindow window(counts.counting());
    counts = {};
    window.invalidate();
    window.post(1000);
    show();
    EXPECT_EQ(counts.posted, 1000);
    EXPECT_EQ(counts.painted, 1);
    window.invalidate();
    window.post(1000);
    hide();
    EXPECT_EQ(counts.posted, 2000);
    EXPECT_EQ(counts.painted, 2);
}

TEST_F(PendingMessages, WhatTheyPostMayWait) {
    int handled = 0;
    HWND window = nullptr;
    const HostWindow host([&](HWND, UINT message) {
        if (message != kPosted) return;
        ++handled;
        PostMessageW(window, kPosted, 0, 0);
    });
    window = host.get();
    host.post(3);
    show();
    EXPECT_GE(handled, 3);
    EXPECT_LT(handled, 100);
    hide();
    EXPECT_GE(handled, 6);
    EXPECT_LT(handled, 200);
}

TEST_F(PendingMessages, OfAWindowThatPostsToItselfForEverDoNotKeepPaintingAndTimersFromTheirTurn) {
    const HostWindow restless([](HWND window, UINT message) {
        if (message == kPosted) PostMessageW(window, kPosted, 0, 0);
    });
    Counts counts;
    const HostWindow window(counts.counting());
    counts = {};
    restless.post();
    window.invalidate();
    SetTimer(window.get(), 1, 10, nullptr);
    Sleep(50);
    show();
    KillTimer(window.get(), 1);
    EXPECT_EQ(counts.painted, 1);
    EXPECT_GE(counts.ticks, 1);
    hide();
}

TEST_F(PendingMessages, OfAWindowThatInvalidatesItselfInPaintingDoNotKeepTheOthersFromTheirTurn) {
    Counts counts;
    const HostWindow below(counts.counting());
    int painted = 0;
    const HostWindow restless([&](HWND window, UINT message) {
        if (message != WM_PAINT) return;
        ++painted;
        InvalidateRect(window, nullptr, TRUE);
    });
    const vrx::Window child(CreateWindowW(L"BUTTON", L"", WS_CHILD | WS_VISIBLE, 5, 5, 20, 20, below.get(),
                                          nullptr, nullptr, nullptr));
    counts = {};
    below.invalidate();
    InvalidateRect(child.get(), nullptr, TRUE);
    restless.invalidate();
    painted = 0;
    show();
    EXPECT_EQ(counts.painted, 1);
    EXPECT_TRUE(below.isPainted());
    EXPECT_FALSE(GetUpdateRect(child.get(), nullptr, FALSE));
    EXPECT_GE(painted, 1);
    EXPECT_LE(painted, 4);
    hide();
}

TEST_F(PendingMessages, OfATimerThatIsAlwaysDueDoNotHoldTheCall) {
    int ticks = 0;
    const HostWindow window([&](HWND, UINT message) {
        if (message != WM_TIMER) return;
        ++ticks;
        Sleep(30);
    });
    SetTimer(window.get(), 1, 10, nullptr);
    Sleep(50);
    show();
    KillTimer(window.get(), 1);
    EXPECT_GE(ticks, 1);
    EXPECT_LE(ticks, 2);
    hide();
}

TEST_F(PendingMessages, OfTheKeyboardComeInTheOrderInWhichTheUserTyped) {
    const vrx::Window edit(CreateWindowW(L"EDIT", L"", WS_POPUP | WS_VISIBLE, 0, 0, 200, 30, nullptr, nullptr,
                                         nullptr, nullptr));
    SetForegroundWindow(edit.get());
    SetFocus(edit.get());
    ASSERT_EQ(GetFocus(), edit.get());
    for (const WORD key : {WORD{'A'}, WORD{VK_LEFT}, WORD{'B'}}) {
        INPUT stroke[2] = {};
        for (INPUT& input : stroke) input.type = INPUT_KEYBOARD;
        stroke[0].ki.wVk = stroke[1].ki.wVk = key;
        stroke[1].ki.dwFlags = KEYEVENTF_KEYUP;
        SendInput(2, stroke, sizeof(INPUT));
    }
    show();
    EXPECT_EQ(host::captionOf(edit.get()), L"ba");
    hide();
}

TEST_F(PendingMessages, AreProcessedBeforeTheRequestToQuitWhichIsLeftForTheHost) {
    Counts counts;
    const HostWindow window(counts.counting());
    counts = {};
    PostQuitMessage(7);
    window.post(300);
    show();
    EXPECT_EQ(counts.posted, 300);
    hide();
    MSG message{};
    ASSERT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
    EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
    EXPECT_EQ(message.wParam, 7u);
    EXPECT_FALSE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
}

TEST_F(PendingMessages, MayShowAndHideMessagesThemselves) {
    int handled = 0;
    int depth = 0;
    int deepest = 0;
    const HostWindow window([&](HWND, UINT message) {
        if (message != kPosted) return;
        ++handled;
        deepest = std::max(deepest, ++depth);
        show();
        hide();
        --depth;
    });
    window.post(5000);
    show();
    EXPECT_EQ(handled, 5000);
    EXPECT_GT(deepest, 1);
    hide();
}

TEST_F(PendingMessages, MayRunALoopOfTheirOwn) {
    int handled = 0;
    const HostWindow window([&](HWND, UINT message) {
        if (message != kPosted) return;
        if (++handled > 1) return;
        for (MSG next; PeekMessageW(&next, nullptr, 0, 0, PM_REMOVE);) DispatchMessageW(&next);
    });
    window.post(100);
    show();
    EXPECT_EQ(handled, 100);
    hide();
}

}  // namespace
