// CVrxFun: the message box, read and answered from another thread.

#include <gtest/gtest.h>

#include "host.h"
#include "message_box_watcher.h"

using vrx::ComPtr;

namespace {

constexpr wchar_t kHostTitle[] = L"VrxCommon pictures, patterns and dialogs";

class VrxMsgBox : public testing::Test {
  protected:
    struct Shown {
        host::MessageBox box;
        long answer = -1;
    };

    /// Shows the box and presses a button of it.
    template <class... Title>
    Shown show(const wchar_t* message, long style, int button, const Title&... title) {
        host::MessageBoxWatcher watcher(button);
        const host::Outcome outcome =
            host::call(*fun_, L"VrxMsgBox", {host::Text(message), host::integer(style), title...});
        const auto boxes = watcher.boxes();
        EXPECT_EQ(boxes.size(), 1u);
        EXPECT_EQ(V_VT(&outcome.result.get()), VT_I4);
        if (boxes.empty()) return {};
        return {boxes.front(), V_I4(&outcome.result.get())};
    }

    ComPtr<IDispatch> fun_ = host::create(L"VrxCommon.CVrxFun");
};

TEST_F(VrxMsgBox, ShowsTheMessageWithTheTitleAndReturnsTheButton) {
    const Shown shown = show(L"Go on?", MB_YESNO | MB_ICONEXCLAMATION, IDNO, host::Text(L"My title"));
    EXPECT_EQ(shown.box.text, L"Go on?");
    EXPECT_EQ(shown.box.title, L"My title");
    EXPECT_TRUE(shown.box.exclamation);
    EXPECT_FALSE(shown.box.onlyOk);
    EXPECT_EQ(shown.answer, IDNO);
}

TEST_F(VrxMsgBox, HasOneButtonAndNoIconInStyleZero) {
    const Shown shown = show(L"Done", MB_OK, IDOK, host::Text(L"t"));
    EXPECT_TRUE(shown.box.onlyOk);
    EXPECT_FALSE(shown.box.exclamation);
    EXPECT_EQ(shown.answer, IDOK);
}

// The test program carries the component's version information.
TEST_F(VrxMsgBox, WithAnEmptyTitleUsesTheHostsTitle) {
    EXPECT_EQ(show(L"Done", MB_OK, IDOK, host::Text(L"")).box.title, kHostTitle);
}

TEST_F(VrxMsgBox, WithoutATitleUsesTheHostsTitle) {
    EXPECT_EQ(show(L"Done", MB_OK, IDOK).box.title, kHostTitle);
    EXPECT_EQ(show(L"Done", MB_OK, IDOK, host::omitted()).box.title, kHostTitle);
}

}  // namespace
