// Objects for HDR files that are of the host's own class, and code of the host's that leaves the control's
// calls to them.

#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <string>

#include "control_fixture.h"
#include "leaving.h"

namespace {

/// Loads nothing. Tells of the calls that connect it before it answers them. On the stack of the test.
class HostHdr final : public _CVrxHDR, public IConnectionPointContainer, public IConnectionPoint {
  public:
    std::function<void(const std::string& call)> onCall = [](const std::string&) {};
    vrx::ComPtr<IDispatch> sink;

    [[nodiscard]] ULONG references() const { return references_; }

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        onCall("QueryInterface");
        *object = nullptr;
        if (iid == IID_IUnknown || iid == IID__CVrxHDR) *object = static_cast<_CVrxHDR*>(this);
        if (iid == IID_IConnectionPointContainer) *object = static_cast<IConnectionPointContainer*>(this);
        if (!*object) return E_NOINTERFACE;
        ++references_;
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
    STDMETHODIMP_(ULONG) Release() override { return --references_; }

    STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints**) override { return E_NOTIMPL; }
    STDMETHODIMP FindConnectionPoint(REFIID iid, IConnectionPoint** point) override {
        onCall("FindConnectionPoint");
        *point = iid == DIID___CVrxHDR ? this : nullptr;
        if (!*point) return CONNECT_E_NOCONNECTION;
        ++references_;
        return S_OK;
    }
    STDMETHODIMP GetConnectionInterface(IID*) override { return E_NOTIMPL; }
    STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer**) override { return E_NOTIMPL; }
    STDMETHODIMP Advise(IUnknown* events, DWORD* cookie) override {
        sink = vrx::ComPtr<IUnknown>(events).as<IDispatch>();
        onCall("Advise");
        *cookie = 7;
        return S_OK;
    }
    STDMETHODIMP Unadvise(DWORD cookie) override {
        EXPECT_EQ(cookie, 7u);
        onCall("Unadvise");
        sink = {};
        return S_OK;
    }
    STDMETHODIMP EnumConnections(IEnumConnections**) override { return E_NOTIMPL; }

    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
        return E_NOTIMPL;
    }
    STDMETHODIMP get_REGKEY(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_REGKEY(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_HDRLoading(VARIANT_BOOL* value) override {
        *value = VARIANT_FALSE;
        return S_OK;
    }
    STDMETHODIMP get_Gamma(float*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Gamma(float) override { return E_NOTIMPL; }
    STDMETHODIMP get_Exposure(float*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Exposure(float) override { return E_NOTIMPL; }
    STDMETHODIMP get_AutoExposition(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP put_AutoExposition(VARIANT_BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP get_AutoExpositionType(Enum_AutoExpositionType*) override { return E_NOTIMPL; }
    STDMETHODIMP put_AutoExpositionType(Enum_AutoExpositionType) override { return E_NOTIMPL; }
    STDMETHODIMP get_DimX(long*) override { return E_NOTIMPL; }
    STDMETHODIMP get_DimY(long*) override { return E_NOTIMPL; }
    STDMETHODIMP Get_Picture(float, long, float, long, float, long, float, long, IPictureDisp**) override {
        return E_NOTIMPL;
    }
    STDMETHODIMP Set_HDR(VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP Get_HDR(VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP Load(BSTR, BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP See(BSTR, float, float) override { return E_NOTIMPL; }
    STDMETHODIMP Save(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP Convert_HDR_to_BMP(BSTR, float, float) override { return E_NOTIMPL; }
    STDMETHODIMP Load_HDR(BSTR, VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP Save_HDR(BSTR, BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP Get_Preview(BSTR) override {
        onCall("Get_Preview");
        return S_OK;
    }
    STDMETHODIMP Get_BMP() override { return E_NOTIMPL; }
    STDMETHODIMP Get_Compo(long, long, long, float*) override { return E_NOTIMPL; }
    STDMETHODIMP EndHDR() override {
        onCall("EndHDR");
        return S_OK;
    }
    STDMETHODIMP Get_Pixel(long, long, VARIANT*, VARIANT*, VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP Cls() override { return E_NOTIMPL; }
    STDMETHODIMP Init() override { return E_NOTIMPL; }

  private:
    ULONG references_ = 0;
};

class HdrOfTheHost : public host::ControlTest {
  protected:
    HostHdr hdr_;
    std::string calls_;  // that the object has got

    void SetUp() override {
        ControlTest::SetUp();
        hdr_.onCall = [this](const std::string& call) { calls_ += call + ' '; };
    }
    void TearDown() override {
        hdr_.onCall = [](const std::string&) {};
        ControlTest::TearDown();
        // A call to another object makes good what the last one of the control has left.
        host::createDirectly(CLSID_VrxPreviewImg);
        EXPECT_EQ(hdr_.references(), 0u);
    }

    void leaveIn(const std::string& call) {
        hdr_.onCall = [call](const std::string& current) {
            if (current == call) host::leaveByJump();
        };
    }
    /// Deeper in the stack than the next call, which makes good what was left.
    [[nodiscard, gnu::noinline]] static bool endsByLeaving(const std::function<void()>& action) {
        return host::endsByJump(action);
    }
    void letControlGo() {
        ole_ = {};
        control_ = {};
    }
};

TEST_F(HdrOfTheHost, IsFollowedUntilAnotherOneIs) {
    EXPECT_EQ(control_->putref_objHDR(&hdr_), S_OK);
    EXPECT_EQ(calls_, "QueryInterface FindConnectionPoint Advise ");
    EXPECT_EQ(control_->putref_objHDR(nullptr), S_OK);
    EXPECT_EQ(calls_, "QueryInterface FindConnectionPoint Advise Unadvise ");
    EXPECT_EQ(hdr_.references(), 0u);
}

TEST_F(HdrOfTheHost, IsLeftOnceByAControlThatGoes) {
    EXPECT_EQ(control_->putref_objHDR(&hdr_), S_OK);
    calls_.clear();
    letControlGo();
    EXPECT_EQ(calls_, "EndHDR Unadvise ");
    EXPECT_EQ(hdr_.references(), 0u);
}

TEST_F(HdrOfTheHost, IsGivenBackWhenItLeavesBeingConnected) {
    for (const char* call : {"QueryInterface", "FindConnectionPoint", "Advise"}) {
        leaveIn(call);
        EXPECT_TRUE(endsByLeaving([&] { control_->putref_objHDR(&hdr_); })) << call;
        EXPECT_EQ(control_->put_MousePointer(2), S_OK);
        EXPECT_EQ(hdr_.references(), 0u) << call;
    }
    // It has kept the receiver, which tells the control nothing more.
    ASSERT_TRUE(hdr_.sink);
    VARIANT size[2]{};
    for (VARIANT& length : size) {
        V_VT(&length) = VT_I4;
        V_I4(&length) = 10;
    }
    DISPPARAMS arguments{size, nullptr, 2, 0};
    const ULONG before = references();
    EXPECT_EQ(hdr_.sink->Invoke(2, IID_NULL, 0, DISPATCH_METHOD, &arguments, nullptr, nullptr, nullptr),
              S_OK);
    EXPECT_EQ(references(), before);
    EXPECT_EQ(hdr_.sink.detach()->Release(), 0u);
}

TEST_F(HdrOfTheHost, StaysFollowedWhenAnotherOneLeavesBeingConnected) {
    HostHdr first;
    ASSERT_EQ(control_->putref_objHDR(&first), S_OK);
    leaveIn("Advise");
    EXPECT_TRUE(endsByLeaving([&] { control_->putref_objHDR(&hdr_); }));
    hdr_.sink = {};
    vrx::ComPtr<_CVrxHDR> followed;
    EXPECT_EQ(control_->get_objHDR(followed.put()), S_OK);
    EXPECT_EQ(followed.get(), &first);
    followed = {};
    EXPECT_EQ(control_->putref_objHDR(nullptr), S_OK);
    EXPECT_EQ(first.references(), 0u);
}

TEST_F(HdrOfTheHost, IsGivenBackWhenItLeavesBeingDisconnected) {
    ASSERT_EQ(control_->putref_objHDR(&hdr_), S_OK);
    leaveIn("Unadvise");
    EXPECT_TRUE(endsByLeaving([&] { control_->putref_objHDR(nullptr); }));
    hdr_.sink = {};
    vrx::ComPtr<_CVrxHDR> followed;
    EXPECT_EQ(control_->get_objHDR(followed.put()), S_OK);
    EXPECT_FALSE(followed);
    EXPECT_EQ(hdr_.references(), 0u);
}

TEST_F(HdrOfTheHost, IsGivenBackWhenItLeavesAPreview) {
    ASSERT_EQ(control_->putref_objHDR(&hdr_), S_OK);
    ASSERT_EQ(control_->put_HDRFile(VARIANT_TRUE), S_OK);
    const ULONG before = hdr_.references();
    leaveIn("Get_Preview");
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(endsByLeaving([&] { setFile(L"picture.hdr"); }));
    EXPECT_EQ(control_->put_MousePointer(2), S_OK);
    EXPECT_EQ(hdr_.references(), before);
}

/// What becomes of a control whose last release is left in that call.
class ReleaseLeftIn : public HdrOfTheHost, public testing::WithParamInterface<const char*> {};

TEST_P(ReleaseLeftIn, StillEndsTheControlWithAllThatItHolds) {
    setFile(picture());
    vrx::ComPtr<IPictureDisp> shown;
    ASSERT_EQ(control_->get_Picture(shown.put()), S_OK);
    ASSERT_EQ(control_->putref_objHDR(&hdr_), S_OK);
    leaveIn(GetParam());
    EXPECT_TRUE(endsByLeaving([&] { letControlGo(); }));
    host::createDirectly(CLSID_VrxPreviewImg);
    hdr_.sink = {};
    EXPECT_EQ(hdr_.references(), 0u);
    EXPECT_EQ(shown.detach()->Release(), 0u);
}

INSTANTIATE_TEST_SUITE_P(Call, ReleaseLeftIn, testing::Values("EndHDR", "Unadvise"),
                         [](const auto& tested) { return tested.param; });

}  // namespace
