// CVrxHDR: messages that reach the host's windows while a preview yields.

#include <gtest/gtest.h>

#include <chrono>
#include <semaphore>
#include <stop_token>
#include <thread>

#include "hdr_host.h"
#include "picture_pixels.h"

using host::Hdr;
using host::Listener;
using host::RgbePicture;

namespace {

/// A window without a face that hands its messages to a function.
class MessageWindow {
  public:
    explicit MessageWindow(std::function<void(UINT message)> handler) : handler_(std::move(handler)) {
        WNDCLASSW description{};
        description.lpfnWndProc = procedure;
        description.hInstance = GetModuleHandleW(nullptr);
        description.lpszClassName = L"VrxTestMessageWindow";
        RegisterClassW(&description);
        window_ = CreateWindowW(description.lpszClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                description.hInstance, nullptr);
        SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    }
    MessageWindow(const MessageWindow&) = delete;
    MessageWindow& operator=(const MessageWindow&) = delete;
    ~MessageWindow() { DestroyWindow(window_); }

    [[nodiscard]] HWND get() const { return window_; }

  private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        auto* const self = reinterpret_cast<MessageWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (self && (message == WM_APP || message == WM_TIMER)) self->handler_(message);
        return DefWindowProcW(window, message, wParam, lParam);
    }

    std::function<void(UINT)> handler_;
    HWND window_;
};

class HdrMessages : public testing::Test {
  protected:
    const host::ThrowawayFolder folder_;
    const RgbePicture tall_{3, 200};
    const std::wstring file_ = folder_.write(L"tall.hdr", tall_.file());
    Hdr hdr_;
    Listener listener_{hdr_};
};

constexpr char kEnded[] = "header(3,200) refresh refresh finish ";
constexpr char kWhole[] = "header(3,200) refresh refresh refresh refresh finish ";

TEST_F(HdrMessages, ThatWerePostedArriveDuringAPreviewAndMayEndIt) {
    bool loading = false;
    const MessageWindow window([&](UINT) {
        loading = hdr_.loading();
        hdr_->EndHDR();
    });
    listener_.onRefresh = [&](IDispatch&) {
        if (listener_.refreshes == 1) PostMessageW(window.get(), WM_APP, 0, 0);
    };
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    EXPECT_EQ(listener_.log, kEnded);
    EXPECT_TRUE(loading);
}

TEST_F(HdrMessages, OfATimerArriveDuringAPreview) {
    int ticks = 0;
    const MessageWindow window([&](UINT message) {
        ticks += message == WM_TIMER;
        hdr_->EndHDR();
    });
    listener_.onRefresh = [&](IDispatch&) {
        if (listener_.refreshes == 1) Sleep(50);
    };
    SetTimer(window.get(), 1, 10, nullptr);
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    KillTimer(window.get(), 1);
    EXPECT_GE(ticks, 1);
    EXPECT_LE(listener_.refreshes, 2);
    EXPECT_EQ(listener_.finishes, 1);
}

TEST_F(HdrMessages, MayChangeParametersOfAPreview) {
    hdr_.view(0, 1);
    const MessageWindow window([&](UINT) { hdr_->put_Exposure(4); });
    host::Pixels last;
    listener_.onRefresh = [&](IDispatch& picture) {
        last = host::pixelsOf(picture);
        if (listener_.refreshes == 1) PostMessageW(window.get(), WM_APP, 0, 0);
    };
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    EXPECT_EQ(listener_.log, std::string(kEnded) + kWhole);
    EXPECT_EQ(last, host::pixels24(3, 200, tall_.bitmap(4, 1)));
}

TEST_F(HdrMessages, ThatAnotherThreadSendsAreAnsweredDuringAPreview) {
    bool loading = false;
    const MessageWindow window([&](UINT) { loading = hdr_.loading(); });
    std::jthread sender;
    listener_.onRefresh = [&](IDispatch&) {
        if (listener_.refreshes != 1) return;
        sender = std::jthread([&] { SendMessageW(window.get(), WM_APP, 0, 0); });
        for (int i = 0; i < 5000 && HIWORD(GetQueueStatus(QS_SENDMESSAGE)) == 0; ++i) Sleep(1);
    };
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    EXPECT_TRUE(loading);
    // Lets the sender end in any case.
    MSG message;
    PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE);
}

TEST_F(HdrMessages, ThatAnotherThreadPostsArriveAlsoWhereNoneOfTheHostsCodeHasRun) {
    const std::wstring file = folder_.write(L"very tall.hdr", RgbePicture(3, 200000).file());
    listener_.disconnect();
    int loads = 0;
    std::binary_semaphore next(1);
    const MessageWindow window([&](UINT) {
        loads += hdr_.loading();
        // Begins again from the first row.
        if (loads < 3) hdr_->put_Exposure(static_cast<float>(loads));
        next.release();
    });
    std::jthread poster([&](const std::stop_token& stop) {
        while (!stop.stop_requested()) {
            if (!next.try_acquire_for(std::chrono::milliseconds(10))) continue;
            Sleep(3);
            PostMessageW(window.get(), WM_APP, 0, 0);
        }
    });
    EXPECT_EQ(hdr_.preview(file), S_OK);
    EXPECT_GE(loads, 3);
}

TEST_F(HdrMessages, MayReleaseTheObject) {
    const MessageWindow window([&](UINT) { hdr_.release(); });
    listener_.holdNothing();
    PostMessageW(window.get(), WM_APP, 0, 0);
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    EXPECT_LE(listener_.refreshes, 2);
    CoFreeUnusedLibraries();
    EXPECT_EQ(host::component().canUnload(), S_OK);
}

TEST_F(HdrMessages, WaitWhileALoadWithoutPreviewRuns) {
    bool arrived = false;
    const MessageWindow window([&](UINT) { arrived = true; });
    PostMessageW(window.get(), WM_APP, 0, 0);
    EXPECT_EQ(hdr_.load(file_), S_OK);
    EXPECT_FALSE(arrived);
}

TEST_F(HdrMessages, ToQuitEndThePreviewAndAreThereForTheHostAfterwards) {
    listener_.onRefresh = [&](IDispatch&) {
        if (listener_.refreshes == 1) PostQuitMessage(7);
    };
    EXPECT_EQ(hdr_.preview(file_), S_OK);
    EXPECT_EQ(listener_.log, kEnded);
    EXPECT_FALSE(hdr_.loading());
    MSG message{};
    ASSERT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
    EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
    EXPECT_EQ(message.wParam, 7u);
    EXPECT_FALSE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
}

}  // namespace
