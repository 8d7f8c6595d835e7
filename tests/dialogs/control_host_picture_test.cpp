// Pictures that the host makes itself: objects of its own, which draw themselves in its own code.

#include <gtest/gtest.h>
#include <windows.h>

#include <functional>

#include "control_fixture.h"
#include "gdi_handles.h"
#include "leaving.h"

namespace {

/// No bitmap: it is asked to draw itself. On the stack of the test.
class HostPicture final : public IPicture, public IPictureDisp {
  public:
    std::function<void()> onType = [] {};
    std::function<void()> onWidth = [] {};
    std::function<void()> onRender = [] {};

    [[nodiscard]] ULONG references() const { return references_; }

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        *object = nullptr;
        if (iid == IID_IUnknown || iid == IID_IPicture) *object = static_cast<IPicture*>(this);
        if (iid == IID_IDispatch || iid == IID_IPictureDisp) *object = static_cast<IPictureDisp*>(this);
        if (!*object) return E_NOINTERFACE;
        ++references_;
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
    STDMETHODIMP_(ULONG) Release() override { return --references_; }

    STDMETHODIMP get_Handle(OLE_HANDLE* handle) override {
        *handle = 1;
        return S_OK;
    }
    STDMETHODIMP get_hPal(OLE_HANDLE*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Type(SHORT* type) override {
        onType();
        *type = PICTYPE_ENHMETAFILE;
        return S_OK;
    }
    STDMETHODIMP get_Width(OLE_XSIZE_HIMETRIC* width) override {
        onWidth();
        *width = 2000;
        return S_OK;
    }
    STDMETHODIMP get_Height(OLE_YSIZE_HIMETRIC* height) override {
        *height = 1000;
        return S_OK;
    }
    STDMETHODIMP Render(HDC, LONG, LONG, LONG, LONG, OLE_XPOS_HIMETRIC, OLE_YPOS_HIMETRIC, OLE_XSIZE_HIMETRIC,
                        OLE_YSIZE_HIMETRIC, LPCRECT) override {
        onRender();
        return S_OK;
    }
    STDMETHODIMP set_hPal(OLE_HANDLE) override { return E_NOTIMPL; }
    STDMETHODIMP get_CurDC(HDC*) override { return E_NOTIMPL; }
    STDMETHODIMP SelectPicture(HDC, HDC*, OLE_HANDLE*) override { return E_NOTIMPL; }
    STDMETHODIMP get_KeepOriginalFormat(WINBOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_KeepOriginalFormat(WINBOOL) override { return E_NOTIMPL; }
    STDMETHODIMP PictureChanged() override { return E_NOTIMPL; }
    STDMETHODIMP SaveAsFile(LPSTREAM, WINBOOL, LONG*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Attributes(DWORD* attributes) override {
        *attributes = PICTURE_SCALABLE;
        return S_OK;
    }

    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
        return E_NOTIMPL;
    }

  private:
    ULONG references_ = 0;
};

class PictureOfTheHost : public host::ControlTest {
  protected:
    HostPicture picture_;

    void SetUp() override {
        ControlTest::SetUp();
        putOnForm();
        host::pumpMessages();
        ASSERT_EQ(control_->put_Picture(&picture_), S_OK);
    }
    void TearDown() override {
        picture_.onType = picture_.onWidth = picture_.onRender = [] {};
        ControlTest::TearDown();
        EXPECT_EQ(picture_.references(), 0u);
    }

    void paint() const {
        InvalidateRect(window(), nullptr, FALSE);
        host::pumpMessages();
    }
    [[nodiscard]] HRESULT draw() const {
        const vrx::MemoryDc dc(CreateCompatibleDC(nullptr));
        const RECTL bounds{0, 0, 100, 80};
        return as<IViewObject>()->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, dc.get(), &bounds,
                                       nullptr, nullptr, 0);
    }
    /// Deeper in the stack than the next call, which makes good what was left.
    [[nodiscard, gnu::noinline]] static bool endsByLeaving(const std::function<void()>& action) {
        return host::endsByJump(action);
    }
    /// Leaves a few times only: the system keeps what it needs for a window procedure that never returns.
    void expectNothingLeftBy(const std::function<void()>& action) {
        const auto leave = [&] {
            EXPECT_TRUE(endsByLeaving(action));
            EXPECT_EQ(control_->put_MousePointer(2), S_OK);
        };
        leave();
        const ULONG before = references();
        const ULONG picturesBefore = picture_.references();
        const std::size_t drawingBefore = host::gdiObjects();
        for (int i = 0; i < 10; ++i) leave();
        EXPECT_EQ(references(), before);
        EXPECT_EQ(picture_.references(), picturesBefore);
        EXPECT_EQ(host::gdiObjects(), drawingBefore);
    }
};

TEST_F(PictureOfTheHost, IsAskedToDrawItself) {
    int drawn = 0;
    picture_.onRender = [&] { ++drawn; };
    paint();
    EXPECT_EQ(drawn, 1);
    EXPECT_EQ(draw(), S_OK);
    EXPECT_EQ(drawn, 2);
}

TEST_F(PictureOfTheHost, MayLeaveWhileItDrawsItselfInTheWindow) {
    picture_.onRender = [] { host::leaveByJump(); };
    expectNothingLeftBy([&] { paint(); });
    EXPECT_FALSE(GetUpdateRect(window(), nullptr, FALSE));
}

TEST_F(PictureOfTheHost, MayLeaveWhileItDrawsItselfOnADevice) {
    const vrx::MemoryDc dc(CreateCompatibleDC(nullptr));
    const RECTL bounds{0, 0, 100, 80};
    const auto view = as<IViewObject>();
    picture_.onRender = [] { host::leaveByJump(); };
    expectNothingLeftBy([&] {
        view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, dc.get(), &bounds, nullptr, nullptr, 0);
    });
}

TEST_F(PictureOfTheHost, MayLeaveWhenItIsAskedForItsKindOrItsSize) {
    picture_.onType = [] { host::leaveByJump(); };
    expectNothingLeftBy([&] { paint(); });
    picture_.onType = [] {};
    picture_.onWidth = [] { host::leaveByJump(); };
    long width = 0;
    expectNothingLeftBy([&] { control_->get_ImageWidth(&width); });
}

TEST_F(PictureOfTheHost, MaySetAnotherPictureWhileItIsUsed) {
    const auto leave = [&] { EXPECT_EQ(control_->put_Picture(nullptr), S_OK); };
    const auto again = [&] { EXPECT_EQ(control_->put_Picture(&picture_), S_OK); };
    picture_.onRender = leave;
    paint();
    again();
    EXPECT_EQ(draw(), S_OK);
    picture_.onRender = [] {};
    picture_.onType = leave;
    again();
    paint();
    picture_.onType = [] {};
    picture_.onWidth = leave;
    again();
    long width = 0;
    EXPECT_EQ(control_->get_ImageWidth(&width), S_OK);
}

TEST_F(PictureOfTheHost, MayTakeTheControlAwayWhileItIsDrawn) {
    picture_.onRender = [&] { EXPECT_EQ(as<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK); };
    paint();
    EXPECT_FALSE(window());
}

TEST_F(PictureOfTheHost, IsGivenBackWhenAContainerLeavesTheAssignmentOfAnotherOne) {
    // Without a window the control tells its container of the new view.
    ASSERT_EQ(as<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK);
    const auto view = as<IViewObject>();
    ASSERT_EQ(view->SetAdvise(DVASPECT_CONTENT, 0, &container_), S_OK);
    container_.onCall = [](const char*) -> HRESULT { host::leaveByJump(); };
    EXPECT_TRUE(endsByLeaving([&] { control_->put_Picture(nullptr); }));
    container_.onCall = {};
    EXPECT_EQ(control_->put_MousePointer(2), S_OK);
    EXPECT_EQ(picture_.references(), 0u);
    EXPECT_EQ(view->SetAdvise(DVASPECT_CONTENT, 0, nullptr), S_OK);
}

}  // namespace
