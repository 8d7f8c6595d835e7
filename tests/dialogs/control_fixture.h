// A control of the component on a form of the test's own.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <ocidl.h>
#include <olectl.h>
#include <oleidl.h>

#include "VrxCommon.h"
#include "com/com_ptr.h"
#include "control_container.h"
#include "host.h"
#include "sink.h"
#include "throwaway_folder.h"
#include "window_driver.h"

namespace host {

inline VARIANT truthAmbient(bool value) {
    VARIANT ambient{};
    V_VT(&ambient) = VT_BOOL;
    V_BOOL(&ambient) = value ? VARIANT_TRUE : VARIANT_FALSE;
    return ambient;
}

/// The messages that wait on this thread now.
inline void pumpMessages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

class ControlTest : public testing::Test {
  protected:
    const ThrowawayFolder folder_;
    const HWND form_ = CreateWindowExW(WS_EX_TOPMOST, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 10, 10, 400, 300,
                                       nullptr, nullptr, nullptr, nullptr);
    ControlContainer container_{form_};
    vrx::ComPtr<_VrxPreviewImg> control_ = createDirectly(CLSID_VrxPreviewImg).as<_VrxPreviewImg>();
    vrx::ComPtr<IOleObject> ole_ = control_.as<IOleObject>();

    void SetUp() override { ASSERT_TRUE(ole_); }
    void TearDown() override {
        if (ole_) {
            ole_->Close(OLECLOSE_NOSAVE);
            ole_->SetClientSite(nullptr);
        }
        ole_ = {};
        control_ = {};
        DestroyWindow(form_);
        EXPECT_EQ(container_.references(), 0u);
        EXPECT_EQ(container_.mistake, "");
        EXPECT_TRUE(container_.isBalanced());
    }

    template <class Interface>
    [[nodiscard]] vrx::ComPtr<Interface> as() const {
        return control_.as<Interface>();
    }
    void putOnForm() {
        ASSERT_EQ(ole_->SetClientSite(container_.site()), S_OK);
        ASSERT_EQ(verb(OLEIVERB_INPLACEACTIVATE), S_OK);
    }
    HRESULT verb(LONG number) {
        return ole_->DoVerb(number, nullptr, container_.site(), 0, form_, &container_.place);
    }
    /// To the control.
    [[nodiscard]] ULONG references() const {
        control_->AddRef();
        return control_->Release();
    }
    [[nodiscard]] HWND window() const {
        HWND found = nullptr;
        as<IOleInPlaceObject>()->GetWindow(&found);
        return found;
    }
    void setFile(const std::wstring& name) const {
        EXPECT_EQ(control_->put_File(vrx::Bstr(SysAllocString(name.c_str())).get()), S_OK);
    }
    /// A picture of one colour, twice as wide as high.
    std::wstring picture(COLORREF color = RGB(200, 30, 40)) const {
        return folder_.write(L"wide.bmp", bmpFile(40, 20, color));
    }
};

}  // namespace host
