// Containers that leave the control's frames without returning, in one of the calls that they get.

#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <string>

#include "control_fixture.h"
#include "leaving.h"

namespace {

struct Leaving {
    const char* call;  ///< in which the container leaves
    LONG before;       ///< verbs that bring the control into the state for it
    LONG verb;         ///< that makes the control call; 0 for the end of the activation
};

constexpr LONG kNoVerb = OLEIVERB_DISCARDUNDOSTATE;
constexpr LONG kDeactivation = 0;

const Leaving kLeavings[] = {
    {"CanInPlaceActivate", kNoVerb, OLEIVERB_INPLACEACTIVATE},
    {"OnInPlaceActivate", kNoVerb, OLEIVERB_INPLACEACTIVATE},
    {"GetWindow", kNoVerb, OLEIVERB_INPLACEACTIVATE},
    {"GetWindowContext", kNoVerb, OLEIVERB_INPLACEACTIVATE},
    {"ShowObject", kNoVerb, OLEIVERB_INPLACEACTIVATE},
    {"OnUIActivate", OLEIVERB_INPLACEACTIVATE, OLEIVERB_UIACTIVATE},
    {"SetActiveObject", OLEIVERB_INPLACEACTIVATE, OLEIVERB_UIACTIVATE},
    {"SetBorderSpace", OLEIVERB_INPLACEACTIVATE, OLEIVERB_UIACTIVATE},
    {"OnUIDeactivate", OLEIVERB_UIACTIVATE, kDeactivation},
    {"OnInPlaceDeactivate", OLEIVERB_UIACTIVATE, kDeactivation},
};

class LeftControl : public host::ControlTest, public testing::WithParamInterface<Leaving> {
  protected:
    HRESULT deactivate() { return as<IOleInPlaceObject>()->InPlaceDeactivate(); }

    /// Deeper in the stack than what the container calls later, as its own functions are.
    [[nodiscard, gnu::noinline]] bool endsByLeaving() {
        container_.onCall = [](const char* call) {
            if (std::string(call) == GetParam().call) host::leaveByJump();
            return S_OK;
        };
        const bool left = host::endsByJump([&] {
            static_cast<void>(GetParam().verb == kDeactivation ? deactivate() : verb(GetParam().verb));
        });
        container_.onCall = {};
        return left;
    }
};

TEST_P(LeftControl, CanBeActivatedAgainAndHoldsNoMoreReferences) {
    ASSERT_EQ(ole_->SetClientSite(container_.site()), S_OK);
    const ULONG references = container_.references();
    ASSERT_EQ(verb(GetParam().before), S_OK);
    EXPECT_TRUE(endsByLeaving());
    EXPECT_EQ(verb(OLEIVERB_UIACTIVATE), S_OK);
    EXPECT_TRUE(window());
    EXPECT_EQ(deactivate(), S_OK);
    EXPECT_EQ(container_.references(), references);
}

INSTANTIATE_TEST_SUITE_P(In, LeftControl, testing::ValuesIn(kLeavings),
                         [](const auto& tested) { return tested.param.call; });

/// Leaves with every byte that is asked of it or given to it. On the stack of the test.
class LeavingStream final : public IStream {
  public:
    [[nodiscard]] ULONG references() const { return references_; }

    STDMETHODIMP QueryInterface(REFIID, void** object) override {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
    STDMETHODIMP_(ULONG) Release() override { return --references_; }
    STDMETHODIMP Read(void*, ULONG, ULONG*) override { host::leaveByJump(); }
    STDMETHODIMP Write(const void*, ULONG, ULONG*) override { host::leaveByJump(); }
    STDMETHODIMP Seek(LARGE_INTEGER, DWORD, ULARGE_INTEGER*) override { return E_NOTIMPL; }
    STDMETHODIMP SetSize(ULARGE_INTEGER) override { return E_NOTIMPL; }
    STDMETHODIMP CopyTo(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*, ULARGE_INTEGER*) override {
        return E_NOTIMPL;
    }
    STDMETHODIMP Commit(DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP Revert() override { return E_NOTIMPL; }
    STDMETHODIMP LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP Stat(STATSTG*, DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP Clone(IStream**) override { return E_NOTIMPL; }

  private:
    ULONG references_ = 0;
};

/// Has this stream under every name.
class StorageOf final : public IStorage {
  public:
    explicit StorageOf(IStream& stream) : stream_(stream) {}

    STDMETHODIMP QueryInterface(REFIID, void** object) override {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 1; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP CreateStream(LPCOLESTR, DWORD, DWORD, DWORD, IStream** stream) override {
        return give(stream);
    }
    STDMETHODIMP OpenStream(LPCOLESTR, void*, DWORD, DWORD, IStream** stream) override {
        return give(stream);
    }
    STDMETHODIMP CreateStorage(LPCOLESTR, DWORD, DWORD, DWORD, IStorage**) override { return E_NOTIMPL; }
    STDMETHODIMP OpenStorage(LPCOLESTR, IStorage*, DWORD, SNB, DWORD, IStorage**) override {
        return E_NOTIMPL;
    }
    STDMETHODIMP CopyTo(DWORD, const IID*, SNB, IStorage*) override { return E_NOTIMPL; }
    STDMETHODIMP MoveElementTo(LPCOLESTR, IStorage*, LPCOLESTR, DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP Commit(DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP Revert() override { return E_NOTIMPL; }
    STDMETHODIMP EnumElements(DWORD, void*, DWORD, IEnumSTATSTG**) override { return E_NOTIMPL; }
    STDMETHODIMP DestroyElement(LPCOLESTR) override { return E_NOTIMPL; }
    STDMETHODIMP RenameElement(LPCOLESTR, LPCOLESTR) override { return E_NOTIMPL; }
    STDMETHODIMP SetElementTimes(LPCOLESTR, const FILETIME*, const FILETIME*, const FILETIME*) override {
        return E_NOTIMPL;
    }
    STDMETHODIMP SetClass(REFCLSID) override { return E_NOTIMPL; }
    STDMETHODIMP SetStateBits(DWORD, DWORD) override { return E_NOTIMPL; }
    STDMETHODIMP Stat(STATSTG*, DWORD) override { return E_NOTIMPL; }

  private:
    HRESULT give(IStream** stream) {
        stream_.AddRef();
        *stream = &stream_;
        return S_OK;
    }

    IStream& stream_;
};

/// Leaves when it is asked what it is. On the stack of the test.
class LeavingObject final : public IDispatch {
  public:
    [[nodiscard]] ULONG references() const { return references_; }

    STDMETHODIMP QueryInterface(REFIID, void**) override { host::leaveByJump(); }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
    STDMETHODIMP_(ULONG) Release() override { return --references_; }
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
        host::leaveByJump();
    }

  private:
    ULONG references_ = 0;
};

/// Has this object as the property of this name.
class BagOf final : public IPropertyBag {
  public:
    BagOf(const wchar_t* name, LeavingObject& object) : name_(name), object_(object) {}

    STDMETHODIMP QueryInterface(REFIID, void** object) override {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 1; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP Read(LPCOLESTR name, VARIANT* value, IErrorLog*) override {
        if (name != name_) return E_INVALIDARG;
        V_VT(value) = VT_DISPATCH;
        V_DISPATCH(value) = &object_;
        object_.AddRef();
        return S_OK;
    }
    STDMETHODIMP Write(LPCOLESTR, VARIANT*) override { return S_OK; }

  private:
    const std::wstring name_;
    LeavingObject& object_;
};

/// Leaves with every property that it is to keep.
class LeavingBag final : public IPropertyBag {
  public:
    STDMETHODIMP QueryInterface(REFIID, void** object) override {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 1; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP Read(LPCOLESTR, VARIANT*, IErrorLog*) override { return E_NOTIMPL; }
    STDMETHODIMP Write(LPCOLESTR, VARIANT* value) override {
        if (V_VT(value) == VT_DISPATCH) host::leaveByJump();
        return S_OK;
    }
};

class LeftKeeping : public host::ControlTest {
  protected:
    /// Deeper in the stack than the next call, which makes good what was left.
    [[nodiscard, gnu::noinline]] static bool endsByLeaving(const std::function<void()>& action) {
        return host::endsByJump(action);
    }
    void callAgain() const { EXPECT_EQ(control_->put_MousePointer(2), S_OK); }
};

TEST_F(LeftKeeping, GivesBackItselfWhenAHandlerOfAClickLeaves) {
    putOnForm();
    host::pumpMessages();
    const auto sink = host::Sink::make(DIID___VrxPreviewImg,
                                       [](DISPID, const DISPPARAMS&) -> HRESULT { host::leaveByJump(); });
    DWORD cookie = 0;
    const auto point = host::connectionPoint(*control_.get(), DIID___VrxPreviewImg);
    ASSERT_EQ(point->Advise(sink.get(), &cookie), S_OK);
    const auto click = [&] {
        EXPECT_TRUE(endsByLeaving([&] {
            host::click(window(), 5, 5);
            host::pumpMessages();
        }));
        callAgain();
    };
    // The first one makes it the form's active object.
    click();
    const ULONG before = references();
    for (int i = 0; i < 3; ++i) click();
    EXPECT_EQ(references(), before);
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
}

/// Leaves when it is asked for anything.
class LeavingSink final : public IUnknown {
  public:
    STDMETHODIMP QueryInterface(REFIID, void**) override { host::leaveByJump(); }
    STDMETHODIMP_(ULONG) AddRef() override { return 1; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
};

TEST_F(LeftKeeping, GivesBackItselfWhenASinkLeavesItsActivation) {
    const auto quick = as<IQuickActivate>();
    LeavingSink sink;
    QACONTAINER container{};
    container.cbSize = sizeof container;
    container.pUnkEventSink = &sink;
    QACONTROL control{};
    control.cbSize = sizeof control;
    const ULONG before = references();
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(endsByLeaving([&] { quick->QuickActivate(&container, &control); }));
    }
    callAgain();
    EXPECT_EQ(references(), before);
}

TEST_F(LeftKeeping, GivesBackTheReceiverOfViewChanges) {
    const auto view = as<IViewObject>();
    ASSERT_EQ(view->SetAdvise(DVASPECT_CONTENT, 0, &container_), S_OK);
    const ULONG references = container_.references();
    container_.onCall = [](const char*) -> HRESULT { host::leaveByJump(); };
    EXPECT_TRUE(endsByLeaving([&] { control_->put_Picture(nullptr); }));
    container_.onCall = {};
    callAgain();
    EXPECT_EQ(container_.references(), references);
    EXPECT_EQ(view->SetAdvise(DVASPECT_CONTENT, 0, nullptr), S_OK);
}

TEST_F(LeftKeeping, GivesBackTheStreamOfAStorage) {
    const auto kept = as<IPersistStorage>();
    LeavingStream stream;
    StorageOf storage(stream);
    EXPECT_TRUE(endsByLeaving([&] { kept->Load(&storage); }));
    callAgain();
    EXPECT_EQ(stream.references(), 0u);
    EXPECT_TRUE(endsByLeaving([&] { kept->Save(&storage, TRUE); }));
    callAgain();
    EXPECT_EQ(stream.references(), 0u);
}

TEST_F(LeftKeeping, GivesBackThePictureThatAPropertyBagIsGiven) {
    setFile(picture());
    vrx::ComPtr<IPictureDisp> icon;
    ASSERT_EQ(control_->get_Picture(icon.put()), S_OK);
    ASSERT_EQ(control_->putref_MouseIcon(icon.get()), S_OK);
    const auto references = [&] {
        icon->AddRef();
        return icon->Release();
    };
    const ULONG before = references();
    LeavingBag bag;
    const auto kept = as<IPersistPropertyBag>();
    EXPECT_TRUE(endsByLeaving([&] { kept->Save(&bag, FALSE, TRUE); }));
    callAgain();
    EXPECT_EQ(references(), before);
}

TEST_F(LeftKeeping, GivesBackTheObjectsOfAPropertyBag) {
    const auto kept = as<IPersistPropertyBag>();
    for (const wchar_t* name : {L"MousePointer", L"MouseIcon"}) {
        LeavingObject object;
        BagOf bag(name, object);
        EXPECT_TRUE(endsByLeaving([&] { kept->Load(&bag, nullptr); })) << name;
        callAgain();
        EXPECT_EQ(object.references(), 0u) << name;
    }
}

TEST_F(LeftKeeping, GivesBackAnObjectThatIsAssignedLateBound) {
    LeavingObject object;
    VARIANT argument{};
    V_DISPATCH(&argument) = &object;
    for (const VARTYPE type : {VT_DISPATCH, VT_UNKNOWN}) {
        V_VT(&argument) = type;
        for (const wchar_t* name : {L"Picture", L"MouseIcon", L"objHDR"}) {
            const WORD flags =
                name == std::wstring(L"Picture") ? DISPATCH_PROPERTYPUT : DISPATCH_PROPERTYPUTREF;
            EXPECT_TRUE(endsByLeaving([&] { host::put(*control_.get(), name, argument, flags); })) << name;
            callAgain();
            EXPECT_EQ(object.references(), 0u) << name;
        }
    }
}

TEST_F(LeftKeeping, GivesBackAPictureThatIsAssignedEarlyBound) {
    LeavingObject object;
    auto* const picture = reinterpret_cast<IPictureDisp*>(static_cast<IDispatch*>(&object));
    EXPECT_TRUE(endsByLeaving([&] { control_->put_Picture(picture); }));
    EXPECT_TRUE(endsByLeaving([&] { control_->putref_MouseIcon(picture); }));
    callAgain();
    EXPECT_EQ(object.references(), 0u);
}

}  // namespace
