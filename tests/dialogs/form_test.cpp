// Enter in a form's controls, and its sliders.

#include "dialogs/form.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>

#include <atomic>

#include "com/win_resource.h"
#include "common/owner_window.h"
#include "dialogs/controls/slider.h"
#include "ground/error.h"
#include "test_form.h"
#include "window_driver.h"

using host::eventually;
using host::WindowDriver;

namespace {

constexpr wchar_t kCaption[] = L"Test form";

constexpr UINT kDestroy = WM_APP + 5;

enum class OnEnter { LeaveIt, TakeIt, Fail };

class TestForm final : public vrx::Form {
  public:
    explicit TestForm(OnEnter answer, const vrx::SliderScale& scale = vrx::kExposureScale)
        : Form(IDD_TEST_FORM), answer_(answer), scale_(scale) {}

    vrx::Slider slider;
    std::atomic<int> entered = 0;
    std::atomic<int> pressed = 0;
    std::atomic<int> scrolled = 0;

  private:
    void onLoad() override {
        SendMessageW(control(IDC_TEST_COMBO), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(L"row"));
        slider.attach(control(IDC_TEST_SLIDER), scale_);
    }
    void onCommand(int id, int /*notification*/, HWND /*control*/) override {
        if (id == IDOK) ++pressed;
    }
    void onScroll(HWND /*control*/, int /*code*/) override { ++scrolled; }
    bool onEnter() override {
        ++entered;
        if (answer_ == OnEnter::Fail) throw vrx::platformError(vrx::Platform::InvalidCall);
        return answer_ == OnEnter::TakeIt;
    }

    bool onMessage(UINT message, WPARAM /*wide*/, LPARAM /*longer*/, LRESULT& /*answer*/) override {
        if (message != kDestroy) return false;
        DestroyWindow(window());
        return true;
    }

    const OnEnter answer_;
    const vrx::SliderScale scale_;
};

void pressEnter(HWND form, int control) { PostMessageW(GetDlgItem(form, control), WM_KEYDOWN, VK_RETURN, 0); }

TEST(Form, EndsWhenItsWindowGoesInAMessageThatWasSent) {
    TestForm form(OnEnter::LeaveIt);
    const WindowDriver driver(kCaption, [](HWND window) { SendMessageW(window, kDestroy, 0, 0); });
    form.showModal();
    EXPECT_FALSE(form.isLoaded());
}

TEST(OwnerWindow, IsNeverOneThatIsHidden) {
    const vrx::Window shown(CreateWindowW(L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50, nullptr, nullptr,
                                          nullptr, nullptr));
    const vrx::Window hidden(
        CreateWindowW(L"STATIC", L"", WS_POPUP, 0, 0, 50, 50, nullptr, nullptr, nullptr, nullptr));
    SetActiveWindow(hidden.get());
    ASSERT_EQ(GetActiveWindow(), hidden.get());
    EXPECT_EQ(vrx::ownerWindow(), shown.get());
    SetActiveWindow(shown.get());
    EXPECT_EQ(vrx::ownerWindow(), shown.get());
}

TEST(Form, LeavesEnterToTheDefaultButton) {
    TestForm form(OnEnter::LeaveIt);
    const WindowDriver driver(kCaption, [&](HWND window) {
        pressEnter(window, IDC_TEST_EDIT);
        EXPECT_TRUE(eventually([&] { return form.pressed == 1; }));
    });
    form.showModal();
    form.unload();
    EXPECT_EQ(form.entered, 1);
}

TEST(Form, KeepsEnterFromTheDefaultButton) {
    TestForm form(OnEnter::TakeIt);
    const WindowDriver driver(kCaption, [&](HWND window) {
        pressEnter(window, IDC_TEST_EDIT);
        EXPECT_TRUE(eventually([&] { return form.entered == 1; }));
    });
    form.showModal();
    form.unload();
    EXPECT_EQ(form.pressed, 0);
}

TEST(Form, LeavesEnterToAListThatIsDown) {
    TestForm form(OnEnter::TakeIt);
    const WindowDriver driver(kCaption, [&](HWND window) {
        const HWND combo = GetDlgItem(window, IDC_TEST_COMBO);
        SendMessageW(combo, CB_SHOWDROPDOWN, TRUE, 0);
        pressEnter(window, IDC_TEST_COMBO);
        EXPECT_TRUE(eventually([&] { return !SendMessageW(combo, CB_GETDROPPEDSTATE, 0, 0); }));
    });
    form.showModal();
    form.unload();
    EXPECT_EQ(form.entered, 0);
}

TEST(Form, ClosesWhenEnterFailsAndFailsItself) {
    TestForm form(OnEnter::Fail);
    const WindowDriver driver(kCaption, [&](HWND window) {
        pressEnter(window, IDC_TEST_EDIT);
        EXPECT_TRUE(eventually([&] { return !IsWindowVisible(window); }));
    });
    EXPECT_THROW(form.showModal(), vrx::Error);
    EXPECT_FALSE(IsWindowVisible(form.window()));
    form.unload();
}

class SliderTest : public testing::Test {
  protected:
    static LRESULT press(const TestForm& form, WPARAM key) {
        SendMessageW(form.slider.window(), WM_KEYDOWN, key, 0);
        return form.slider.position();
    }
};

TEST_F(SliderTest, BeginsAtItsDesignedPositionWithItsRangeAndTicks) {
    TestForm form(OnEnter::LeaveIt);
    form.load(nullptr);
    const HWND window = form.slider.window();
    EXPECT_EQ(form.slider.position(), 160);
    EXPECT_EQ(SendMessageW(window, TBM_GETRANGEMIN, 0, 0), 0);
    EXPECT_EQ(SendMessageW(window, TBM_GETRANGEMAX, 0, 0), 320);
    // One every 10 positions, both ends included.
    EXPECT_EQ(SendMessageW(window, TBM_GETNUMTICS, 0, 0), 33);
    EXPECT_EQ(form.scrolled, 0);
}

TEST_F(SliderTest, MovesByOneWithAnArrowAndByATickWithAPageKey) {
    TestForm form(OnEnter::LeaveIt);
    form.load(nullptr);
    EXPECT_EQ(press(form, VK_RIGHT), 161);
    EXPECT_GT(form.scrolled, 0);
    EXPECT_EQ(press(form, VK_NEXT), 171);
    EXPECT_EQ(press(form, VK_HOME), 0);
    EXPECT_EQ(press(form, VK_END), 320);
}

TEST_F(SliderTest, OfTheQualityMovesByTwoPositionsWithAPageKey) {
    TestForm form(OnEnter::LeaveIt, vrx::kQualityScale);
    form.load(nullptr);
    EXPECT_EQ(form.slider.position(), 17);
    EXPECT_EQ(press(form, VK_PRIOR), 15);
    EXPECT_EQ(press(form, VK_HOME), 1);
}

TEST_F(SliderTest, TakesTheNearestPositionAndTellsNobody) {
    TestForm form(OnEnter::LeaveIt, vrx::kQualityScale);
    form.load(nullptr);
    form.slider.setPosition(0);
    EXPECT_EQ(form.slider.position(), 1);
    form.slider.setPosition(50);
    EXPECT_EQ(form.slider.position(), 20);
    EXPECT_EQ(form.scrolled, 0);
}

}  // namespace
