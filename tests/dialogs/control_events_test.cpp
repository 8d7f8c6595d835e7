// What happens in the control on a form: clicks, and pictures that are loaded meanwhile.

#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <string>

#include "control_fixture.h"
#include "hdr_host.h"
#include "sink.h"

using host::ControlTest;
using host::pumpMessages;
using vrx::ComPtr;

namespace {

class Clicks : public ControlTest {
  protected:
    void SetUp() override {
        ControlTest::SetUp();
        putOnForm();
        setFile(picture());
        sink_ = host::Sink::make(DIID___VrxPreviewImg, [&](DISPID event, const DISPPARAMS&) {
            if (event == 1) ++clicks_;
            if (onClick_) onClick_();
            return S_OK;
        });
        const auto point = host::connectionPoint(*control_.get(), DIID___VrxPreviewImg);
        ASSERT_TRUE(point);
        ASSERT_EQ(point->Advise(sink_.get(), &cookie_), S_OK);
    }
    void click() {
        host::click(window(), 50, 40);
        pumpMessages();
    }

    int clicks_ = 0;
    std::function<void()> onClick_;
    ComPtr<host::Sink> sink_;
    DWORD cookie_ = 0;
};

TEST_F(Clicks, ComeFromMouseSpaceAndEnter) {
    click();
    EXPECT_EQ(clicks_, 1);
    SendMessageW(window(), WM_KEYDOWN, VK_SPACE, 0);
    EXPECT_EQ(clicks_, 2);
    SendMessageW(window(), WM_KEYDOWN, VK_RETURN, 0);
    EXPECT_EQ(clicks_, 3);
    EXPECT_EQ(SendMessageW(window(), WM_GETDLGCODE, VK_RETURN, 0) & DLGC_WANTMESSAGE, DLGC_WANTMESSAGE);
    CONTROLINFO info{};
    info.cb = sizeof info;
    EXPECT_EQ(as<IOleControl>()->GetControlInfo(&info), S_OK);
    EXPECT_EQ(info.dwFlags, static_cast<DWORD>(CTRLINFO_EATS_RETURN));
}

TEST_F(Clicks, OfTheMouseGiveTheControlTheKeyboard) {
    SetForegroundWindow(form_);
    SetFocus(form_);
    click();
    EXPECT_EQ(GetFocus(), window());
    EXPECT_NE(container_.activeObject(), nullptr);
}

TEST_F(Clicks, ComeFromKeysThatTheContainerTranslates) {
    SetForegroundWindow(form_);
    EXPECT_EQ(verb(OLEIVERB_UIACTIVATE), S_OK);
    const auto active = as<IOleInPlaceActiveObject>();
    MSG key{window(), WM_KEYDOWN, VK_RETURN, 0, 0, {}};
    EXPECT_EQ(active->TranslateAccelerator(&key), S_OK);
    EXPECT_EQ(clicks_, 1);
    WPARAM passed = 0;
    container_.onKey = [&](const MSG& message) {
        passed = message.wParam;
        return S_OK;
    };
    key.wParam = VK_TAB;
    EXPECT_EQ(active->TranslateAccelerator(&key), S_OK);
    EXPECT_EQ(passed, static_cast<WPARAM>(VK_TAB));
    container_.onKey = [&](const MSG&) { return S_FALSE; };
    EXPECT_EQ(active->TranslateAccelerator(&key), S_FALSE);
    EXPECT_EQ(active->TranslateAccelerator(nullptr), E_POINTER);
}

TEST_F(Clicks, AreLostWhileTheContainerFreezesEvents) {
    as<IOleControl>()->FreezeEvents(TRUE);
    click();
    EXPECT_EQ(clicks_, 0);
    as<IOleControl>()->FreezeEvents(FALSE);
    click();
    EXPECT_EQ(clicks_, 1);
}

TEST_F(Clicks, AreNoneWhileTheFormIsDesigned) {
    container_.ambient[DISPID_AMBIENT_USERMODE] = host::truthAmbient(false);
    EXPECT_EQ(as<IOleControl>()->OnAmbientPropertyChange(DISPID_AMBIENT_USERMODE), S_OK);
    click();
    EXPECT_EQ(clicks_, 0);
}

TEST_F(Clicks, MayEndTheWindow) {
    onClick_ = [&] { DestroyWindow(window()); };
    click();
    EXPECT_EQ(clicks_, 1);
    EXPECT_EQ(window(), nullptr);
}

TEST_F(Clicks, MayTakeTheSiteAway) {
    onClick_ = [&] { ole_->SetClientSite(nullptr); };
    click();
    EXPECT_EQ(clicks_, 1);
    EXPECT_EQ(window(), nullptr);
}

TEST_F(Clicks, MayGiveBackTheLastReference) {
    onClick_ = [&] {
        ole_->Close(OLECLOSE_NOSAVE);
        ole_->SetClientSite(nullptr);
        ole_ = {};
        control_ = {};
    };
    const HWND view = window();
    click();
    EXPECT_EQ(clicks_, 1);
    EXPECT_FALSE(IsWindow(view));
}

/// An HDR file of 400 rows is being loaded while something happens to the control.
class Loads : public ControlTest {
  protected:
    const host::Hdr hdr_;
    host::Listener listener_{hdr_};
    const std::wstring tall_ = folder_.write(L"tall.hdr", host::RgbePicture(8, 400).file());

    void SetUp() override {
        ControlTest::SetUp();
        putOnForm();
        hdr_.view(0, 1);
        control_->putref_objHDR(hdr_.operator->());
        control_->put_HDRFile(VARIANT_TRUE);
    }
    void loadAnd(std::function<void()> happening) {
        listener_.onRefresh = [this, happening](IDispatch&) {
            if (listener_.refreshes == 2) happening();
        };
        const ComPtr<_VrxPreviewImg> called = control_;
        called->put_File(vrx::Bstr(SysAllocString(tall_.c_str())).get());
    }
};

TEST_F(Loads, GoOnWhenTheWindowEnds) {
    loadAnd([&] { DestroyWindow(window()); });
    EXPECT_EQ(listener_.finishes, 1);
    EXPECT_EQ(window(), nullptr);
    EXPECT_EQ(verb(OLEIVERB_SHOW), S_OK);
}

TEST_F(Loads, GoOnWhenTheContainerTakesTheSiteAway) {
    loadAnd([&] {
        ole_->Close(OLECLOSE_NOSAVE);
        ole_->SetClientSite(nullptr);
    });
    EXPECT_EQ(listener_.finishes, 1);
    EXPECT_EQ(window(), nullptr);
}

TEST_F(Loads, EndWithTheControl) {
    listener_.onRefresh = [&](IDispatch&) {
        if (listener_.refreshes != 2) return;
        ole_->Close(OLECLOSE_NOSAVE);
        ole_->SetClientSite(nullptr);
        ole_ = {};
        control_ = {};
    };
    EXPECT_EQ(hdr_.preview(tall_), S_OK);
    EXPECT_EQ(listener_.finishes, 1);
    // Rows 0 and 80, and once at the end of a load that was ended early.
    EXPECT_EQ(listener_.refreshes, 3);
    EXPECT_FALSE(hdr_.loading());
}

TEST_F(Loads, MayBeEndedByWhoeverDrawsTheControl) {
    as<IOleInPlaceObject>()->InPlaceDeactivate();
    as<IViewObject2>()->SetAdvise(DVASPECT_CONTENT, 0, &container_);
    int changes = 0;
    container_.onCall = [&](const char* call) {
        if (std::string(call) == "OnViewChange" && ++changes == 3) {
            ole_->SetClientSite(nullptr);
            ole_ = {};
            control_ = {};
        }
        return S_OK;
    };
    EXPECT_EQ(hdr_.preview(tall_), S_OK);
    EXPECT_FALSE(control_);
    EXPECT_EQ(listener_.finishes, 1);
}

TEST_F(Loads, ThatTheControlEndsAreFollowedByOnePassOfMessages) {
    const HWND note = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
    PostMessageW(note, WM_CLOSE, 0, 0);
    ole_->Close(OLECLOSE_NOSAVE);
    ole_->SetClientSite(nullptr);
    ole_ = {};
    control_ = {};
    EXPECT_FALSE(IsWindow(note));
}

}  // namespace
