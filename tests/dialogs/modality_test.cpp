// Modal means modal: the host's windows while a form or a message of the library's is shown, and afterwards.

#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "common/message_box.h"
#include "common/modal_scope.h"
#include "dialogs/form.h"
#include "dialogs/resource.h"
#include "hdr_host.h"
#include "registry_folder.h"
#include "test_form.h"
#include "throwaway_folder.h"
#include "window_driver.h"

using host::eventually;
using host::WindowDriver;
using vrx::Bstr;
using vrx::ModalScope;

namespace {

constexpr wchar_t kTestForm[] = L"Test form";

/// A window of the host's.
class HostWindow {
  public:
    explicit HostWindow(bool visible = true)
        : window_(CreateWindowW(L"STATIC", L"Host", WS_OVERLAPPEDWINDOW | (visible ? WS_VISIBLE : 0), 0, 0,
                                200, 100, nullptr, nullptr, nullptr, nullptr)) {}
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;
    ~HostWindow() { destroy(); }

    [[nodiscard]] HWND window() const { return window_; }
    [[nodiscard]] bool isEnabled() const { return IsWindowEnabled(window_) != FALSE; }
    void destroy() {
        if (IsWindow(window_)) DestroyWindow(window_);
    }

  private:
    HWND window_;
};

class TestForm final : public vrx::Form {
  public:
    TestForm() : Form(IDD_TEST_FORM) {}
    std::function<void()> onPressed;

  private:
    void onCommand(int id, int /*notification*/, HWND /*control*/) override {
        if (id == IDOK && onPressed) onPressed();
    }
};

std::function<void()> onEnabled;
WNDPROC unwatched = nullptr;

LRESULT CALLBACK watchEnabling(HWND window, UINT message, WPARAM wide, LPARAM longer) {
    if (message == WM_ENABLE && wide && onEnabled) onEnabled();
    return CallWindowProcW(unwatched, window, message, wide, longer);
}

void watch(HWND window) {
    unwatched = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(watchEnabling)));
}

BOOL CALLBACK noteProperty(HWND, LPWSTR name, HANDLE, ULONG_PTR found) {
    const std::wstring text = IS_INTRESOURCE(name) ? L"" : name;
    if (text.find(L"VrxCommon.") == 0) reinterpret_cast<std::vector<std::wstring>*>(found)->push_back(text);
    return TRUE;
}

class Modality : public testing::Test {
  protected:
    HostWindow first_;
    HostWindow second_;
    HostWindow disabled_;
    HostWindow hidden_{false};

    void SetUp() override {
        EnableWindow(disabled_.window(), FALSE);
        SetActiveWindow(first_.window());
    }
    void expectShutOut() const {
        EXPECT_FALSE(first_.isEnabled());
        EXPECT_FALSE(second_.isEnabled());
        EXPECT_FALSE(disabled_.isEnabled());
        EXPECT_TRUE(hidden_.isEnabled());
    }
    void expectAsBefore() const {
        EXPECT_TRUE(first_.isEnabled());
        EXPECT_TRUE(second_.isEnabled());
        EXPECT_FALSE(disabled_.isEnabled());
        EXPECT_TRUE(hidden_.isEnabled());
    }
    /// Shows a window of this caption by the call, and closes it.
    void expectModal(const wchar_t* caption, const std::function<void()>& call) const {
        SCOPED_TRACE(testing::Message() << caption);
        const WindowDriver driver(caption, [this](HWND shown) {
            EXPECT_TRUE(IsWindowEnabled(shown));
            expectShutOut();
        });
        call();
        expectAsBefore();
    }
};

TEST_F(Modality,
       AllVisibleEnabledTopLevelWindowsOfTheThreadAreDisabledWhileAFormIsShownAndRestoredAfterwards) {
    expectModal(kTestForm, [] {
        TestForm form;
        form.showModal();
        form.unload();
    });
}

TEST_F(Modality, HoldsForEveryFormAndMessageBox) {
    const host::RegistryFolder keys;
    const host::ThrowawayFolder folder;
    const host::Hdr hdr;
    const auto image = host::create(L"VrxCommon.CVrxImage").as<_CVrxImage>();
    const auto pattern = host::create(L"VrxCommon.CVrxPattern").as<_CVrxPattern>();
    const auto fun = host::create(L"VrxCommon.CVrxFun").as<_CVrxFun>();
    const Bstr key(SysAllocString(host::RegistryFolder::kSubkey));
    ASSERT_EQ(hdr->put_REGKEY(key.get()), S_OK);
    ASSERT_EQ(image->put_REGKEY(key.get()), S_OK);
    ASSERT_EQ(pattern->put_REGKEY(key.get()), S_OK);
    const Bstr bmp(SysAllocString(folder.write(L"picture.bmp", host::bmpFile(40, 30, RGB(1, 2, 3))).c_str()));
    const Bstr rgbe(SysAllocString(folder.write(L"picture.hdr", host::RgbePicture(40, 30).file()).c_str()));
    const Bstr title(SysAllocString(L"A title"));
    expectModal(L"A title", [&] {
        long answer = 0;
        EXPECT_EQ(fun->VrxMsgBox(title.get(), MB_OK, title.get(), &answer), S_OK);
    });
    expectModal(L"Viewer", [&] { EXPECT_EQ(image->See(bmp.get()), S_OK); });
    expectModal(L"Viewer", [&] { EXPECT_EQ(hdr->See(rgbe.get(), 0, 1), S_OK); });
    Bstr chosen;
    expectModal(L"Load Picture", [&] { EXPECT_EQ(image->Load(bmp.get(), chosen.put()), S_OK); });
    expectModal(L"Save Picture", [&] { EXPECT_EQ(image->Save(bmp.get()), S_OK); });
    expectModal(L"Load HDR Picture", [&] { EXPECT_EQ(hdr->Load(rgbe.get(), chosen.put()), S_OK); });
    expectModal(L"Save HDR", [&] { EXPECT_EQ(hdr->Save(nullptr), S_OK); });
    expectModal(L"Pattern", [&] {
        BSTR text = SysAllocString(L"0-1;100-2;");
        EXPECT_EQ(pattern->Load(&text), S_OK);
        SysFreeString(text);
    });
}

TEST_F(Modality, SurvivesWindowsThatGoMeanwhile) {
    const WindowDriver driver(kTestForm, [this](HWND form) {
        SendMessageW(form, WM_COMMAND, IDOK, 0);
        EXPECT_FALSE(IsWindow(second_.window()));
    });
    TestForm form;
    form.onPressed = [this] { second_.destroy(); };
    form.showModal();
    form.unload();
    EXPECT_TRUE(first_.isEnabled());
}

/// What a new window lacks is the mark that the old one of its handle had.
TEST_F(Modality, LeavesANewWindowOfTheSameHandleAlone) {
    std::vector<std::wstring> marks;
    {
        ModalScope scope;
        scope.begin(nullptr);
        EnumPropsExW(second_.window(), noteProperty, reinterpret_cast<LPARAM>(&marks));
        for (const std::wstring& mark : marks) RemovePropW(second_.window(), mark.c_str());
    }
    EXPECT_EQ(marks.size(), 1u);
    EXPECT_TRUE(first_.isEnabled());
    EXPECT_FALSE(second_.isEnabled());
}

TEST_F(Modality, AFormOverAFormLeavesTheHostsWindowsDisabled) {
    TestForm outer;
    outer.onPressed = [&] {
        const HWND below = outer.window();
        const WindowDriver driver(L"Over it", [&](HWND) {
            expectShutOut();
            EXPECT_FALSE(IsWindowEnabled(below));
        });
        TestForm inner;
        inner.load(below);
        SetWindowTextW(inner.window(), L"Over it");
        inner.showModal();
        inner.unload();
        expectShutOut();
        EXPECT_TRUE(IsWindowEnabled(below));
        EXPECT_EQ(GetActiveWindow(), below);
    };
    const WindowDriver driver(kTestForm, [](HWND form) { SendMessageW(form, WM_COMMAND, IDOK, 0); });
    outer.showModal();
    outer.unload();
    expectAsBefore();
}

TEST_F(Modality, FormsMayEndInAnotherOrderThanTheyBegan) {
    ModalScope outer;
    ModalScope inner;
    outer.begin(nullptr);
    inner.begin(nullptr);
    outer.end();
    expectShutOut();
    inner.end();
    expectAsBefore();
}

TEST_F(Modality, AWindowThatIsShownMeanwhileIsShutOutByTheNextFormAndFreeAfterIt) {
    ModalScope outer;
    outer.begin(nullptr);
    const HostWindow late;
    {
        ModalScope inner;
        inner.begin(nullptr);
        EXPECT_FALSE(late.isEnabled());
    }
    EXPECT_TRUE(late.isEnabled());
    EXPECT_FALSE(first_.isEnabled());
}

TEST_F(Modality, TheWindowThatWasActiveIsActiveAgainAndWasEnabledBeforeTheFormWent) {
    bool formWasThere = false;
    TestForm form;
    const WindowDriver driver(kTestForm, [](HWND) {});
    onEnabled = [&] { formWasThere = IsWindowVisible(form.window()) != FALSE; };
    watch(first_.window());
    form.showModal();
    onEnabled = {};
    EXPECT_TRUE(formWasThere);
    EXPECT_EQ(GetActiveWindow(), first_.window());
    form.unload();
}

/// As the system does with the windows of one that is minimised and restored.
TEST_F(Modality, StaysWhileAFormIsGoneWithItsOwner) {
    TestForm form;
    form.onPressed = [&] {
        ShowOwnedPopups(first_.window(), FALSE);
        EXPECT_FALSE(IsWindowVisible(form.window()));
        expectShutOut();
        ShowOwnedPopups(first_.window(), TRUE);
        EXPECT_TRUE(IsWindowVisible(form.window()));
    };
    const WindowDriver driver(kTestForm, [this](HWND window) {
        SendMessageW(window, WM_COMMAND, IDOK, 0);
        host::settle(window);
        EXPECT_TRUE(IsWindow(window));
        expectShutOut();
    });
    form.showModal();
    form.unload();
    expectAsBefore();
}

TEST_F(Modality, EndsWithAFormThatAnotherHides) {
    TestForm form;
    form.onPressed = [&] { ShowWindow(form.window(), SW_HIDE); };
    const WindowDriver driver(kTestForm, [](HWND window) { SendMessageW(window, WM_COMMAND, IDOK, 0); });
    form.showModal();
    expectAsBefore();
    EXPECT_EQ(GetActiveWindow(), first_.window());
    form.unload();
}

TEST_F(Modality, EndsWithAFormThatIsDestroyed) {
    TestForm form;
    form.onPressed = [&] { DestroyWindow(form.window()); };
    const WindowDriver driver(kTestForm, [](HWND window) { SendMessageW(window, WM_COMMAND, IDOK, 0); });
    form.showModal();
    expectAsBefore();
    EXPECT_EQ(GetActiveWindow(), first_.window());
}

}  // namespace
