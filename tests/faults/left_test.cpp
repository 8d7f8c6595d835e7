// What the component holds after the host's code has left its dialogs and messages without returning: not a
// block more.

#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <string>

#include "VrxCommon.h"
#include "dialogs/resource.h"
#include "faults.h"
#include "hdr_host.h"
#include "holdings.h"
#include "leaving.h"
#include "registry_folder.h"
#include "throwaway_folder.h"
#include "user.h"

using faults::Holdings;
using host::Text;

namespace {

// The system keeps what it needs for a window procedure that never returns.
constexpr int kTimes = 3;

constexpr wchar_t kNoFolder[] = L"C:\\no such folder at all\\a picture with a long name";

BOOL CALLBACK destroyMessage(HWND window, LPARAM) {
    if (faults::isDialog(window) && !faults::isOfComponent(window)) DestroyWindow(window);
    return TRUE;
}

/// What is done with the dialog in front; once for each time.
std::function<void(HWND dialog)> onDialog;

LRESULT CALLBACK tick(HWND window, UINT message, WPARAM wide, LPARAM longer) {
    const HWND front = message == WM_TIMER ? faults::frontDialog() : nullptr;
    if (!front) return DefWindowProcW(window, message, wide, longer);
    if (!faults::isOfComponent(front)) host::leaveByJump();
    if (onDialog) std::exchange(onDialog, {})(front);
    return 0;
}

/// A window of the host's whose timer runs in every loop of messages.
HWND makeTicking() {
    const HWND window = CreateWindowW(L"STATIC", L"", 0, 0, 0, 1, 1, HWND_MESSAGE, nullptr, nullptr, nullptr);
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(tick));
    SetTimer(window, 1, 20, nullptr);
    return window;
}

class Left : public testing::Test {
  protected:
    const host::RegistryFolder keys_;
    const host::ThrowawayFolder folder_;
    const std::wstring bmp_ = folder_.write(L"picture.bmp", host::bmpFile(40, 30, RGB(1, 2, 3)));
    const std::wstring hdrFile_ = folder_.write(L"a picture with a long name.hdr",
                                                host::RgbePicture(40, 30).fill({1, 2, 3, 128}).file());

    void SetUp() override { faults::install(); }
    void TearDown() override { onDialog = {}; }

    /// The frames that are left lie deeper than those of the calls that follow.
    [[gnu::noinline]] static bool endsByLeaving(const std::function<void()>& action) {
        const volatile char handlersFrames[0x10000] = {};
        static_cast<void>(handlersFrames[0]);
        return host::endsByJump(action);
    }
    static void leave(const std::function<void()>& action, const std::function<void(HWND)>& use) {
        onDialog = use;
        const HWND ticking = makeTicking();
        EXPECT_TRUE(endsByLeaving(action));
        DestroyWindow(ticking);
        // A call makes good what was left; a message's window is the system's.
        host::createDirectly(CLSID_CVrxFun);
        EnumThreadWindows(GetCurrentThreadId(), destroyMessage, 0);
    }
    /// The host leaves `action` in a message, or where its sink does.
    static void expectNothingLeft(const std::function<void()>& action,
                                  const std::function<void(HWND)>& use = {}) {
        leave(action, use);
        const Holdings before;
        for (int i = 0; i < kTimes; ++i) leave(action, use);
        const Holdings after;
        EXPECT_EQ(after.blocks, before.blocks);
        EXPECT_EQ(after.windows, before.windows);
    }
    static void save(HWND dialog, const wchar_t* name) {
        SetDlgItemTextW(dialog, IDC_TEXT1, name);
        PostMessageW(GetDlgItem(dialog, IDC_COMMAND1), BM_CLICK, 0, 0);
    }
    [[nodiscard]] vrx::ComPtr<IDispatch> make(const CLSID& classId) const {
        auto object = host::createDirectly(classId);
        EXPECT_EQ(host::put(*object, L"REGKEY", Text(host::RegistryFolder::kSubkey)).code, S_OK);
        return object;
    }
};

TEST_F(Left, MessagesOfTheHostsOwn) {
    const auto fun = host::createDirectly(CLSID_CVrxFun);
    expectNothingLeft([&] {
        host::call(*fun, L"VrxMsgBox",
                   {Text(L"a text of some length"), host::integer(0), Text(L"and its title")});
    });
}

TEST_F(Left, MessagesOfPicturesThatCannotBeWritten) {
    const auto hdr = make(CLSID_CVrxHDR);
    const auto image = make(CLSID_CVrxImage);
    host::call(*hdr, L"Load_HDR", {Text(hdrFile_.c_str())});
    expectNothingLeft([&] { host::call(*hdr, L"Save_HDR", {Text(kNoFolder)}); });
    expectNothingLeft([&] {
        host::call(*image, L"Convert_BMP_to_JPG", {Text(kNoFolder), host::integer(90), Text(bmp_.c_str())});
    });
}

TEST_F(Left, MessagesOfTheDialogThatSaves) {
    const auto image = make(CLSID_CVrxImage);
    const auto open = [&] { host::call(*image, L"Save", {Text(bmp_.c_str())}); };
    expectNothingLeft(open, [](HWND dialog) { save(dialog, L""); });
    expectNothingLeft(open, [](HWND dialog) { save(dialog, L"not a name? of a file"); });
    const std::wstring there = bmp_.substr(0, bmp_.size() - 4);
    expectNothingLeft(open, [&](HWND dialog) { save(dialog, there.c_str()); });
}

TEST_F(Left, DialogsOfTheSystemsThatTheEditorOpens) {
    const auto pattern = make(CLSID_CVrxPattern);
    const auto open = [&] {
        vrx::Variant text = vrx::makeText(u"0-255;500-65280;1000-16711680;");
        host::call(*pattern, L"Load", {host::reference(text.get())});
    };
    for (const int item : {IDM_ITEMLOAD, IDM_ITEMSAVE})
        expectNothingLeft(open, [item](HWND editor) { PostMessageW(editor, WM_COMMAND, item, 0); });
    expectNothingLeft(
        open, [](HWND editor) { PostMessageW(GetDlgItem(editor, IDC_PICFLAGUP), WM_KEYDOWN, VK_F2, 1); });
}

class LeftByEvents : public Left {
  protected:
    const vrx::ComPtr<IDispatch> hdr_ = make(CLSID_CVrxHDR);
    const vrx::ComPtr<IConnectionPoint> point_ = host::connectionPoint(*hdr_, DIID___CVrxHDR);
    const vrx::ComPtr<host::Sink> sink_ =
        host::Sink::make(DIID___CVrxHDR, [](DISPID event, const DISPPARAMS&) -> HRESULT {
            constexpr DISPID kOnRefresh = 1;
            if (event == kOnRefresh) host::leaveByJump();
            return S_OK;
        });
    DWORD cookie_ = 0;

    void SetUp() override {
        Left::SetUp();
        host::call(*hdr_, L"Load_HDR", {Text(hdrFile_.c_str())});
        ASSERT_EQ(point_->Advise(sink_.get(), &cookie_), S_OK);
    }
    void TearDown() override {
        point_->Unadvise(cookie_);
        Left::TearDown();
    }
};

TEST_F(LeftByEvents, APreviewInTheDialogThatLoads) {
    expectNothingLeft([&] { host::call(*hdr_, L"Load", {Text(hdrFile_.c_str())}); },
                      [](HWND dialog) {
                          const HWND files = GetDlgItem(dialog, IDC_FILE1);
                          SendMessageW(files, LB_SETCURSEL, 0, 0);
                          PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(IDC_FILE1, LBN_SELCHANGE),
                                       reinterpret_cast<LPARAM>(files));
                      });
}

/// Windows that the host makes later look as its own do.
TEST_F(LeftByEvents, TheDialogThatSavesWhileItIsMade) {
    expectNothingLeft([&] { host::call(*hdr_, L"Save", {Text(hdrFile_.c_str())}); });
    HANDLE active = INVALID_HANDLE_VALUE;
    EXPECT_TRUE(GetCurrentActCtx(&active));
    EXPECT_EQ(active, nullptr);
}

}  // namespace
