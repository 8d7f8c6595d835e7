// CVrxFun: the short message as a user sees it on the screen.

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <string>
#include <thread>
#include <utility>

#include "VrxCommon.h"
#include "com/win_resource.h"
#include "host.h"
#include "throwaway_folder.h"

using vrx::Bstr;
using vrx::ComPtr;

namespace {

constexpr wchar_t kClassName[] = L"VrxCommon.frmMessage";
constexpr int kMargin = 12;

std::wstring windowText(HWND window) {
    wchar_t text[1024] = {};
    GetWindowTextW(window, text, 1024);
    return text;
}

RECT screenArea(HWND window) {
    RECT area{};
    GetWindowRect(window, &area);
    return area;
}

SIZE sizeOf(const RECT& area) { return {area.right - area.left, area.bottom - area.top}; }

/// Measured line by line, apart from how the form does it.
SIZE lineExtent(HWND label, const std::wstring& line) {
    HDC dc = GetDC(label);
    HGDIOBJ old = SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(label, WM_GETFONT, 0, 0)));
    SIZE extent{};
    GetTextExtentPoint32W(dc, line.c_str(), static_cast<int>(line.size()), &extent);
    SelectObject(dc, old);
    ReleaseDC(label, dc);
    return extent;
}

ComPtr<_CVrxFun> makeFun() { return host::createDirectly(CLSID_CVrxFun).as<_CVrxFun>(); }

HRESULT show(_CVrxFun& fun, const wchar_t* text) {
    const Bstr message(SysAllocString(text));
    return fun.Show_ShortMessage(message.get());
}

bool hide(_CVrxFun& fun) {
    VARIANT_BOOL last = 77;
    EXPECT_EQ(fun.Hide_ShortMessage(&last), S_OK);
    EXPECT_TRUE(last == VARIANT_TRUE || last == VARIANT_FALSE);
    return last == VARIANT_TRUE;
}

/// Lets the thread's messages happen until the condition holds, for two seconds at most.
template <class Condition>
bool waitFor(Condition condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) return false;
        for (MSG message; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);) DispatchMessageW(&message);
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

/// Runs what another apartment does, while this thread's messages go on.
template <class Action>
void inAnotherApartment(Action action) {
    std::future<void> done = std::async(std::launch::async, [&] {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        action();
        CoUninitialize();
    });
    EXPECT_TRUE(waitFor([&] { return done.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
}

class ShortMessage : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(fun_); }
    void TearDown() override {
        for (int i = 0; fun_ && i < 10; ++i) {
            VARIANT_BOOL last = VARIANT_FALSE;
            fun_->Hide_ShortMessage(&last);
        }
        fun_ = {};
        EXPECT_EQ(form(), nullptr);
    }

    [[nodiscard]] static HWND form() { return FindWindowW(kClassName, nullptr); }
    [[nodiscard]] static HWND label() { return GetWindow(form(), GW_CHILD); }
    [[nodiscard]] static bool isShown(const wchar_t* text) {
        return IsWindowVisible(form()) && windowText(label()) == text;
    }
    SIZE sizeFor(const wchar_t* text) {
        show(*fun_, text);
        return sizeOf(screenArea(form()));
    }

    ComPtr<_CVrxFun> fun_ = makeFun();
};

TEST_F(ShortMessage, ShowAShowBHideAIsDisplayedAgainASecondHideHidesTheWindowAThirdReturnsFalse) {
    EXPECT_EQ(show(*fun_, L"A"), S_OK);
    EXPECT_TRUE(isShown(L"A"));
    EXPECT_EQ(show(*fun_, L"B"), S_OK);
    EXPECT_TRUE(isShown(L"B"));
    EXPECT_FALSE(hide(*fun_));
    EXPECT_TRUE(isShown(L"A"));
    EXPECT_TRUE(hide(*fun_));
    EXPECT_FALSE(IsWindowVisible(form()));
    EXPECT_FALSE(hide(*fun_));
}

TEST_F(ShortMessage, IsNotThereForAHideWithoutAShow) {
    EXPECT_FALSE(hide(*fun_));
    EXPECT_FALSE(IsWindowVisible(form()));
    show(*fun_, L"A");
    EXPECT_TRUE(isShown(L"A"));
}

TEST_F(ShortMessage, ALongerMessageGivesAWiderWindowAlwaysCentredOnTheScreen) {
    const SIZE narrow = sizeFor(L"Loading");
    const RECT first = screenArea(form());
    const SIZE wide = sizeFor(L"Loading a picture that takes a little longer");
    const RECT second = screenArea(form());
    EXPECT_GT(wide.cx, narrow.cx);
    EXPECT_EQ(wide.cy, narrow.cy);
    EXPECT_EQ(first.left, (GetSystemMetrics(SM_CXSCREEN) - narrow.cx) / 2);
    EXPECT_EQ(first.top, (GetSystemMetrics(SM_CYSCREEN) - narrow.cy) / 2);
    EXPECT_EQ(second.left, (GetSystemMetrics(SM_CXSCREEN) - wide.cx) / 2);
    EXPECT_EQ(second.top, (GetSystemMetrics(SM_CYSCREEN) - wide.cy) / 2);
    hide(*fun_);
    EXPECT_EQ(sizeOf(screenArea(form())).cx, narrow.cx);
}

TEST_F(ShortMessage, IsAsLargeAsItsTextAnd24Pixels) {
    const SIZE size = sizeFor(L"Please wait & see");
    const SIZE text = lineExtent(label(), L"Please wait & see");
    EXPECT_EQ(size.cx, text.cx + 2 * kMargin);
    EXPECT_EQ(size.cy, text.cy + 2 * kMargin);
}

TEST_F(ShortMessage, IsAsWideAsItsWidestLineAndAsHighAsAllOfThem) {
    const SIZE size = sizeFor(L"one\r\nthe widest of three\nthree");
    const SIZE widest = lineExtent(label(), L"the widest of three");
    EXPECT_EQ(size.cx, widest.cx + 2 * kMargin);
    EXPECT_EQ(size.cy, 3 * widest.cy + 2 * kMargin);
}

TEST_F(ShortMessage, WithoutTextIsOneLineHighAndAsWideAsItsMargins) {
    const SIZE size = sizeFor(L"");
    EXPECT_EQ(size.cx, 2 * kMargin);
    EXPECT_EQ(size.cy, lineExtent(label(), L"X").cy + 2 * kMargin);
    EXPECT_TRUE(IsWindowVisible(form()));
}

TEST_F(ShortMessage, WiderThanTheScreenIsCentredToo) {
    const std::wstring text(1000, L'W');
    const SIZE size = sizeFor(text.c_str());
    EXPECT_EQ(size.cx, lineExtent(label(), text).cx + 2 * kMargin);
    EXPECT_EQ(screenArea(form()).left, (GetSystemMetrics(SM_CXSCREEN) - size.cx) / 2);
    hide(*fun_);
    EXPECT_EQ(show(*fun_, std::wstring(1000000, L'W').c_str()), S_OK);
}

TEST_F(ShortMessage, HasItsTextTwelvePixelsFromEveryEdge) {
    sizeFor(L"Please wait");
    const RECT outer = screenArea(form());
    const RECT inner = screenArea(label());
    EXPECT_EQ(inner.left - outer.left, kMargin);
    EXPECT_EQ(inner.top - outer.top, kMargin);
    EXPECT_EQ(outer.right - inner.right, kMargin);
    EXPECT_EQ(outer.bottom - inner.bottom, kMargin);
}

TEST_F(ShortMessage, IsOnTopOfAllWindowsWhileItIsShown) {
    show(*fun_, L"A");
    show(*fun_, L"B");
    EXPECT_TRUE(GetWindowLongW(form(), GWL_EXSTYLE) & WS_EX_TOPMOST);
    hide(*fun_);
    EXPECT_TRUE(GetWindowLongW(form(), GWL_EXSTYLE) & WS_EX_TOPMOST);
    hide(*fun_);
    EXPECT_FALSE(GetWindowLongW(form(), GWL_EXSTYLE) & WS_EX_TOPMOST);
}

TEST_F(ShortMessage, IsPaintedWhenTheCallReturns) {
    show(*fun_, L"Please wait");
    EXPECT_FALSE(GetUpdateRect(form(), nullptr, FALSE));
    EXPECT_FALSE(GetUpdateRect(label(), nullptr, FALSE));
    HDC dc = GetDC(form());
    EXPECT_EQ(GetPixel(dc, 3, 3), GetSysColor(COLOR_BTNFACE));
    const RECT text = screenArea(label());
    int inked = 0;
    for (int y = 0; y < text.bottom - text.top; ++y) {
        for (int x = 0; x < text.right - text.left; ++x) {
            inked += GetPixel(dc, x + kMargin - 1, y + kMargin - 1) != GetSysColor(COLOR_BTNFACE);
        }
    }
    ReleaseDC(form(), dc);
    EXPECT_GT(inked, 50);
}

TEST_F(ShortMessage, LeavesTheFocusWhereItIs) {
    HWND window = CreateWindowW(L"EDIT", L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 200, 100, nullptr,
                                nullptr, nullptr, nullptr);
    SetFocus(window);
    ASSERT_EQ(GetFocus(), window);
    show(*fun_, L"A");
    EXPECT_EQ(GetActiveWindow(), window);
    EXPECT_EQ(GetFocus(), window);
    show(*fun_, L"B");
    hide(*fun_);
    hide(*fun_);
    EXPECT_EQ(GetFocus(), window);
    DestroyWindow(window);
}

TEST_F(ShortMessage, IsNotClosedByTheSystemsClosingMessage) {
    show(*fun_, L"A");
    SendMessageW(form(), WM_CLOSE, 0, 0);
    EXPECT_TRUE(isShown(L"A"));
}

TEST_F(ShortMessage, LetsWaitingMessagesHappen) {
    MSG message;
    PostThreadMessageW(GetCurrentThreadId(), WM_APP, 0, 0);
    show(*fun_, L"A");
    EXPECT_FALSE(PeekMessageW(&message, nullptr, WM_APP, WM_APP, PM_REMOVE));
    PostThreadMessageW(GetCurrentThreadId(), WM_APP, 0, 0);
    hide(*fun_);
    EXPECT_FALSE(PeekMessageW(&message, nullptr, WM_APP, WM_APP, PM_REMOVE));
}

TEST_F(ShortMessage, IsSharedByAllObjects) {
    const ComPtr<_CVrxFun> other = makeFun();
    show(*fun_, L"A");
    show(*other, L"B");
    EXPECT_FALSE(hide(*fun_));
    EXPECT_TRUE(isShown(L"A"));
    EXPECT_TRUE(hide(*other));
}

TEST_F(ShortMessage, StaysWithoutAnObjectAndKeepsTheLibraryInMemory) {
    show(*fun_, L"A");
    fun_ = {};
    EXPECT_TRUE(isShown(L"A"));
    EXPECT_EQ(host::component().canUnload(), S_FALSE);
    fun_ = makeFun();
    EXPECT_TRUE(hide(*fun_));
    fun_ = {};
    EXPECT_EQ(form(), nullptr);
    EXPECT_EQ(host::component().canUnload(), S_OK);
}

TEST_F(ShortMessage, KeepsItsHiddenWindowForAsLongAsAnObjectLives) {
    const ComPtr<_CVrxFun> other = makeFun();
    show(*fun_, L"A");
    const HWND window = form();
    hide(*fun_);
    fun_ = {};
    EXPECT_EQ(form(), window);
    show(*other, L"B");
    EXPECT_EQ(form(), window);
    hide(*other);
}

TEST_F(ShortMessage, HasItsWindowForAsLongAsTheLibraryHasAnyObjectAndANewOneAfterwards) {
    ComPtr<IDispatch> other = host::createDirectly(CLSID_CVrxPattern);
    show(*fun_, L"A");
    const HWND window = form();
    hide(*fun_);
    fun_ = {};
    EXPECT_EQ(form(), window);
    fun_ = makeFun();
    show(*fun_, L"B");
    EXPECT_EQ(form(), window);
    hide(*fun_);
    fun_ = {};
    other = {};
    EXPECT_EQ(form(), nullptr);
    EXPECT_EQ(host::component().canUnload(), S_OK);
    fun_ = makeFun();
    EXPECT_EQ(show(*fun_, L"C"), S_OK);
    EXPECT_TRUE(isShown(L"C"));
}

TEST_F(ShortMessage, OfAnotherThreadGoesThereWhenTheLastObjectHasGone) {
    ComPtr<_CVrxFun> kept = std::exchange(fun_, {});
    std::promise<void> hidden;
    std::promise<void> released;
    std::future<void> done = std::async(std::launch::async, [&] {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        ComPtr<_CVrxFun> other = makeFun();
        show(*other, L"A");
        hide(*other);
        other = {};
        EXPECT_NE(form(), nullptr);
        hidden.set_value();
        released.get_future().wait();
        EXPECT_TRUE(waitFor([] { return form() == nullptr; }));
        CoUninitialize();
    });
    hidden.get_future().wait();
    kept = {};
    released.set_value();
    done.wait();
    EXPECT_EQ(host::component().canUnload(), S_OK);
    fun_ = makeFun();
}

/// A program may let go of the library without asking whether it is in use.
TEST_F(ShortMessage, HasItsCodeForAsLongAsItIsShown) {
    const host::ThrowawayFolder folder;
    const std::wstring copy = folder / L"copy.dll";
    ASSERT_TRUE(CopyFileW(host::component().path().c_str(), copy.c_str(), TRUE));
    const auto withCopy = [&](auto action) {
        const vrx::Module module(LoadLibraryW(copy.c_str()));
        ComPtr<IClassFactory> factory;
        const auto find = reinterpret_cast<HRESULT(WINAPI*)(REFCLSID, REFIID, void**)>(
            reinterpret_cast<void*>(GetProcAddress(module.get(), "DllGetClassObject")));
        find(CLSID_CVrxFun, IID_IClassFactory, reinterpret_cast<void**>(factory.put()));
        ComPtr<_CVrxFun> fun;
        factory->CreateInstance(nullptr, IID__CVrxFun, reinterpret_cast<void**>(fun.put()));
        factory = {};
        action(*fun);
    };
    withCopy([](_CVrxFun& fun) { show(fun, L"A"); });
    EXPECT_TRUE(GetModuleHandleW(copy.c_str()));
    EXPECT_EQ(SendMessageW(form(), WM_CLOSE, 0, 0), 0);
    EXPECT_TRUE(isShown(L"A"));
    withCopy([](_CVrxFun& fun) { EXPECT_TRUE(hide(fun)); });
    EXPECT_FALSE(GetModuleHandleW(copy.c_str()));
}

TEST_F(ShortMessage, IsChangedFromAnotherApartment) {
    show(*fun_, L"A");
    inAnotherApartment([] {
        const ComPtr<_CVrxFun> other = makeFun();
        EXPECT_EQ(show(*other, L"B"), S_OK);
    });
    EXPECT_TRUE(waitFor([] { return isShown(L"B"); }));
    inAnotherApartment([] {
        const ComPtr<_CVrxFun> other = makeFun();
        EXPECT_FALSE(hide(*other));
    });
    EXPECT_TRUE(waitFor([] { return isShown(L"A"); }));
    inAnotherApartment([] {
        const ComPtr<_CVrxFun> other = makeFun();
        EXPECT_TRUE(hide(*other));
    });
    EXPECT_TRUE(waitFor([] { return !IsWindowVisible(form()); }));
}

TEST_F(ShortMessage, IsMadeAnewWhenItsThreadHasEnded) {
    inAnotherApartment([] {
        const ComPtr<_CVrxFun> other = makeFun();
        show(*other, L"A");
    });
    EXPECT_TRUE(waitFor([] { return form() == nullptr; }));
    EXPECT_EQ(show(*fun_, L"B"), S_OK);
    EXPECT_TRUE(isShown(L"B"));
    EXPECT_FALSE(hide(*fun_));
    EXPECT_TRUE(isShown(L"A"));
    EXPECT_TRUE(hide(*fun_));
}

TEST_F(ShortMessage, IsShownForScriptsToo) {
    const ComPtr<IDispatch> script = host::create(L"VrxCommon.CVrxFun");
    EXPECT_EQ(host::call(*script, L"Show_ShortMessage", {host::Text(L"A")}).code, S_OK);
    EXPECT_TRUE(isShown(L"A"));
    const host::Outcome hidden = host::call(*script, L"Hide_ShortMessage");
    EXPECT_EQ(V_VT(&hidden.result.get()), VT_BOOL);
    EXPECT_EQ(V_BOOL(&hidden.result.get()), VARIANT_TRUE);
}

}  // namespace
