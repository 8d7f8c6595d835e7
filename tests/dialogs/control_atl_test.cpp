// The control in a container that is none of ours: the system's own window class for controls.

#include <gtest/gtest.h>
#include <windows.h>

#include <oleidl.h>

#include "VrxCommon.h"
#include "com/win_resource.h"
#include "control_fixture.h"
#include "hdr_host.h"
#include "leaks.h"
#include "sink.h"
#include "throwaway_folder.h"
#include "window_driver.h"

using vrx::ComPtr;

namespace {

/// Controls of its window class are named by their captions. It stays, as its window class does.
class AtlLibrary {
  public:
    AtlLibrary() : module_(LoadLibraryW(L"atl.dll")) {
        const auto init = find<BOOL(WINAPI*)()>("AtlAxWinInit");
        ready_ = init && init();
    }

    [[nodiscard]] bool ready() const { return ready_; }
    [[nodiscard]] ComPtr<IUnknown> controlIn(HWND window) const {
        ComPtr<IUnknown> control;
        if (const auto get = find<HRESULT(WINAPI*)(HWND, IUnknown**)>("AtlAxGetControl"))
            get(window, control.put());
        return control;
    }

  private:
    template <class Function>
    Function find(const char* name) const {
        const FARPROC found = module_ ? GetProcAddress(module_.get(), name) : nullptr;
        return reinterpret_cast<Function>(reinterpret_cast<void*>(found));
    }

    vrx::Module module_;
    bool ready_ = false;
};

class AtlAxWin : public testing::Test {
  protected:
    static const AtlLibrary& atl() {
        static const auto* const library = new AtlLibrary;
        return *library;
    }

    const host::ThrowawayFolder folder_;
    const HWND form_ = CreateWindowExW(WS_EX_TOPMOST, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 10, 10, 400, 300,
                                       nullptr, nullptr, nullptr, nullptr);
    HWND frame_ = nullptr;

    void SetUp() override {
        ASSERT_TRUE(atl().ready());
        frame_ = make();
        ASSERT_TRUE(control());
    }
    void TearDown() override {
        DestroyWindow(form_);
        host::pumpMessages();
    }
    HWND make() const {
        return CreateWindowExW(0, L"AtlAxWin", L"VrxCommon.VrxPreviewImg", WS_CHILD | WS_VISIBLE | WS_TABSTOP,
                               0, 0, 200, 200, form_, nullptr, nullptr, nullptr);
    }
    [[nodiscard]] ComPtr<_VrxPreviewImg> control() const {
        return atl().controlIn(frame_).as<_VrxPreviewImg>();
    }
    static HWND windowOf(const ComPtr<_VrxPreviewImg>& control) {
        HWND window = nullptr;
        if (const auto place = control.as<IOleWindow>()) place->GetWindow(&window);
        return window;
    }
};

TEST_F(AtlAxWin, ShowsTheControlInTheWholeOfItsWindow) {
    const HWND window = windowOf(control());
    ASSERT_TRUE(window);
    EXPECT_TRUE(IsChild(frame_, window));
    RECT inner{};
    GetClientRect(window, &inner);
    EXPECT_EQ(inner.right, 200);
    EXPECT_EQ(inner.bottom, 200);
}

TEST_F(AtlAxWin, ResizesTheControlWithItsWindow) {
    const HWND window = windowOf(control());
    MoveWindow(frame_, 0, 0, 120, 90, TRUE);
    RECT inner{};
    GetClientRect(window, &inner);
    EXPECT_EQ(inner.right, 120);
    EXPECT_EQ(inner.bottom, 90);
}

TEST_F(AtlAxWin, ShowsAnHdrFileAndHearsClicks) {
    const host::Hdr hdr;
    hdr.view(0, 1);
    const auto preview = control();
    EXPECT_EQ(preview->putref_objHDR(hdr.operator->()), S_OK);
    EXPECT_EQ(preview->put_HDRFile(VARIANT_TRUE), S_OK);
    const std::wstring file =
        folder_.write(L"wide.hdr", host::RgbePicture(40, 20).fill({128, 64, 32, 136}).file());
    EXPECT_EQ(preview->put_File(vrx::Bstr(SysAllocString(file.c_str())).get()), S_OK);
    int clicks = 0;
    const auto sink = host::Sink::make(DIID___VrxPreviewImg, [&](DISPID, const DISPPARAMS&) {
        ++clicks;
        return S_OK;
    });
    DWORD cookie = 0;
    const auto point = host::connectionPoint(*preview.get(), DIID___VrxPreviewImg);
    ASSERT_EQ(point->Advise(sink.get(), &cookie), S_OK);
    host::pumpMessages();
    host::click(windowOf(preview), 100, 100);
    host::pumpMessages();
    EXPECT_EQ(clicks, 1);
    UpdateWindow(windowOf(preview));
    const host::Pixels shown = host::shownIn(windowOf(preview));
    host::FileBytes color = host::bmpFile(1, 1, RGB(128, 64, 32));
    color.erase(color.begin(), color.begin() + 54);
    EXPECT_EQ(host::partOf(shown, 100, 100, 1, 1), host::pixels24(1, 1, std::move(color)));
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
    EXPECT_EQ(preview->putref_objHDR(nullptr), S_OK);
}

TEST_F(AtlAxWin, MayBeDestroyedInsideClick) {
    auto preview = control();
    const std::wstring file = folder_.write(L"wide.bmp", host::bmpFile(40, 20, RGB(1, 2, 3)));
    preview->put_File(vrx::Bstr(SysAllocString(file.c_str())).get());
    const auto sink = host::Sink::make(DIID___VrxPreviewImg, [&](DISPID, const DISPPARAMS&) {
        DestroyWindow(frame_);
        return S_OK;
    });
    DWORD cookie = 0;
    host::connectionPoint(*preview.get(), DIID___VrxPreviewImg)->Advise(sink.get(), &cookie);
    const HWND window = windowOf(preview);
    preview = {};
    host::click(window, 100, 100);
    host::pumpMessages();
    EXPECT_FALSE(IsWindow(window));
    EXPECT_EQ(sink->references(), 1u);
}

TEST_F(AtlAxWin, LeavesNothingBehind) {
    host::expectNothingLeft([&] {
        DestroyWindow(make());
        host::pumpMessages();
    });
}

}  // namespace
