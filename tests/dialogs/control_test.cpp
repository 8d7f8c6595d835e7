// The preview as a control on a form: site, size, verbs, keyboard, and its end.

#include "control_fixture.h"

using host::ControlTest;
using vrx::ComPtr;

namespace {

using Control = ControlTest;

constexpr DWORD kMiscStatus = OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT |
                              OLEMISC_ACTIVATEWHENVISIBLE | OLEMISC_SETCLIENTSITEFIRST;

TEST_F(Control, OffersEveryInterfaceOfAControlWithOneIdentity) {
    const auto identity = as<IUnknown>();
    for (const IID& iid :
         {IID_IOleObject, IID_IOleControl, IID_IOleWindow, IID_IOleInPlaceObject, IID_IOleInPlaceActiveObject,
          IID_IViewObject, IID_IViewObject2, IID_IPersist, IID_IPersistPropertyBag, IID_IPersistStreamInit,
          IID_IPersistStorage, IID_IQuickActivate, IID_IProvideClassInfo2, IID_IConnectionPointContainer,
          IID_ISpecifyPropertyPages}) {
        ComPtr<IUnknown> other;
        ASSERT_EQ(control_->QueryInterface(iid, reinterpret_cast<void**>(other.put())), S_OK);
        EXPECT_EQ(other.as<IUnknown>().get(), identity.get());
        ComPtr<IOleObject> back;
        EXPECT_EQ(other->QueryInterface(IID_IOleObject, reinterpret_cast<void**>(back.put())), S_OK);
    }
}

TEST_F(Control, IsNotMarkedSafeForScripting) {
    constexpr IID kObjectSafety = {
        0xCB5BDC81, 0x93C1, 0x11CF, {0x8F, 0x20, 0x00, 0x80, 0x5F, 0x2C, 0xD0, 0x64}};
    ComPtr<IUnknown> safety;
    EXPECT_EQ(control_->QueryInterface(kObjectSafety, reinterpret_cast<void**>(safety.put())), E_NOINTERFACE);
}

TEST_F(Control, TellsItsStatusTypeAndVerb) {
    DWORD status = 0;
    EXPECT_EQ(ole_->GetMiscStatus(DVASPECT_CONTENT, &status), S_OK);
    EXPECT_EQ(status, kMiscStatus);
    CLSID classId{};
    EXPECT_EQ(ole_->GetUserClassID(&classId), S_OK);
    EXPECT_EQ(classId, CLSID_VrxPreviewImg);
    LPOLESTR type = nullptr;
    EXPECT_EQ(ole_->GetUserType(USERCLASSTYPE_FULL, &type), S_OK);
    EXPECT_STREQ(type, L"VrxCommon preview");
    CoTaskMemFree(type);
    ComPtr<IEnumOLEVERB> verbs;
    OLEVERB verb{};
    ASSERT_EQ(ole_->EnumVerbs(verbs.put()), S_OK);
    EXPECT_EQ(verbs->Next(1, &verb, nullptr), S_OK);
    EXPECT_EQ(verb.lVerb, OLEIVERB_PROPERTIES);
    CoTaskMemFree(verb.lpszVerbName);
}

TEST_F(Control, NamesTheSystemsPicturePage) {
    CAUUID pages{};
    ASSERT_EQ(as<ISpecifyPropertyPages>()->GetPages(&pages), S_OK);
    ASSERT_EQ(pages.cElems, 1u);
    EXPECT_EQ(pages.pElems[0], CLSID_CPicturePropPage);
    CoTaskMemFree(pages.pElems);
}

TEST_F(Control, KeepsExtentsInHimetricAndRefusesThoseThatAreNoLengths) {
    SIZEL size{5080, 2540};
    EXPECT_EQ(ole_->SetExtent(DVASPECT_CONTENT, &size), S_OK);
    for (const SIZEL& bad : {SIZEL{0, 100}, SIZEL{100, 0}, SIZEL{-1, 100}, SIZEL{100, -1},
                             SIZEL{static_cast<LONG>(0x80000000), 100}}) {
        SIZEL wanted = bad;
        EXPECT_EQ(ole_->SetExtent(DVASPECT_CONTENT, &wanted), E_INVALIDARG);
    }
    EXPECT_EQ(ole_->SetExtent(DVASPECT_ICON, &size), DV_E_DVASPECT);
    EXPECT_EQ(ole_->SetExtent(DVASPECT_CONTENT, nullptr), E_POINTER);
    SIZEL kept{};
    EXPECT_EQ(ole_->GetExtent(DVASPECT_CONTENT, &kept), S_OK);
    EXPECT_EQ(kept.cx, 5080);
    EXPECT_EQ(kept.cy, 2540);
    EXPECT_EQ(as<IViewObject2>()->GetExtent(DVASPECT_CONTENT, -1, nullptr, &kept), S_OK);
    EXPECT_EQ(kept.cx, 5080);
    SIZEL largest{0x7FFFFFFF, 0x7FFFFFFF};
    EXPECT_EQ(ole_->SetExtent(DVASPECT_CONTENT, &largest), S_OK);
}

TEST_F(Control, AsksForThePlaceThatANewExtentNeeds) {
    putOnForm();
    SIZEL size{2540, 5080};
    EXPECT_EQ(ole_->SetExtent(DVASPECT_CONTENT, &size), S_OK);
    // 96 dots per inch: one inch by two, from the corner where it stands.
    const RECT expected{10, 10, 106, 202};
    EXPECT_TRUE(EqualRect(&container_.wantedPlace, &expected));
}

TEST_F(Control, CannotBeActivatedWithoutASite) {
    EXPECT_EQ(verb(OLEIVERB_INPLACEACTIVATE), OLE_E_NOT_INPLACEACTIVE);
    EXPECT_EQ(window(), nullptr);
}

TEST_F(Control, IsActivatedInTheDocumentedOrder) {
    putOnForm();
    EXPECT_EQ(container_.log, "CanInPlaceActivate OnInPlaceActivate GetWindow GetWindowContext ShowObject ");
    ASSERT_TRUE(window());
    EXPECT_EQ(GetParent(window()), form_);
    RECT place{};
    GetWindowRect(window(), &place);
    EXPECT_EQ(place.right - place.left, 100);
    EXPECT_EQ(place.bottom - place.top, 80);
    container_.log.clear();
    EXPECT_EQ(as<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK);
    EXPECT_EQ(container_.log, "OnInPlaceDeactivate ");
    EXPECT_EQ(window(), nullptr);
}

TEST_F(Control, TakesTheKeyboardInTheDocumentedOrder) {
    putOnForm();
    container_.log.clear();
    SetForegroundWindow(form_);
    EXPECT_EQ(verb(OLEIVERB_UIACTIVATE), S_OK);
    EXPECT_EQ(container_.log, "OnUIActivate SetActiveObject SetBorderSpace OnFocus(1) ");
    EXPECT_EQ(GetFocus(), window());
    container_.log.clear();
    EXPECT_EQ(as<IOleInPlaceObject>()->UIDeactivate(), S_OK);
    EXPECT_EQ(container_.log, "SetActiveObject(0) OnUIDeactivate ");
    SetFocus(form_);
    EXPECT_EQ(container_.log, "SetActiveObject(0) OnUIDeactivate OnFocus(0) ");
}

TEST_F(Control, StaysInactiveWhereTheContainerRefuses) {
    ASSERT_EQ(ole_->SetClientSite(container_.site()), S_OK);
    for (const std::string refused : {"CanInPlaceActivate", "OnInPlaceActivate"}) {
        container_.onCall = [&](const char* call) { return refused == call ? E_FAIL : S_OK; };
        EXPECT_TRUE(FAILED(verb(OLEIVERB_SHOW)));
        EXPECT_EQ(window(), nullptr);
    }
}

TEST_F(Control, DoesWithTheVerbsWindowAndPlaceWhereTheSiteTellsNone) {
    ASSERT_EQ(ole_->SetClientSite(container_.site()), S_OK);
    container_.onCall = [](const char* call) {
        return std::string(call).starts_with("GetWindow") ? E_FAIL : S_OK;
    };
    EXPECT_EQ(verb(OLEIVERB_SHOW), S_OK);
    EXPECT_EQ(GetParent(window()), form_);
}

TEST_F(Control, MayBeShrunkToNothingAndClippedBySetObjectRects) {
    putOnForm();
    const RECT nothing{20, 30, 20, 30};
    EXPECT_EQ(as<IOleInPlaceObject>()->SetObjectRects(&nothing, nullptr), S_OK);
    RECT place{};
    GetWindowRect(window(), &place);
    EXPECT_EQ(place.right - place.left, 0);
    const RECT backwards{50, 50, 20, 20};
    EXPECT_EQ(as<IOleInPlaceObject>()->SetObjectRects(&backwards, &backwards), S_OK);
    const RECT whole{0, 0, 100, 80};
    const RECT half{0, 0, 50, 80};
    EXPECT_EQ(as<IOleInPlaceObject>()->SetObjectRects(&whole, &half), S_OK);
    RECT shown{};
    EXPECT_NE(GetWindowRgnBox(window(), &shown), ERROR);
    EXPECT_EQ(shown.right, 50);
    EXPECT_EQ(as<IOleInPlaceObject>()->SetObjectRects(&whole, &whole), S_OK);
    EXPECT_EQ(GetWindowRgnBox(window(), &shown), ERROR);
    EXPECT_EQ(as<IOleInPlaceObject>()->SetObjectRects(nullptr, nullptr), E_POINTER);
}

TEST_F(Control, FollowsItsContainerToAnotherWindow) {
    putOnForm();
    setFile(picture());
    const HWND other = CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 30, 30, 200, 200, nullptr,
                                       nullptr, nullptr, nullptr);
    SetParent(window(), other);
    container_.moveTo(other);
    const RECT place{0, 0, 50, 50};
    EXPECT_EQ(as<IOleInPlaceObject>()->SetObjectRects(&place, nullptr), S_OK);
    EXPECT_EQ(GetParent(window()), other);
    EXPECT_EQ(verb(OLEIVERB_HIDE), S_OK);
    EXPECT_FALSE(IsWindowVisible(window()));
    EXPECT_EQ(verb(OLEIVERB_SHOW), S_OK);
    EXPECT_TRUE(IsWindowVisible(window()));
    DestroyWindow(other);
    EXPECT_EQ(window(), nullptr);
}

TEST_F(Control, IsMadeAgainWhenTheContainerHasEndedItsWindow) {
    putOnForm();
    setFile(picture());
    DestroyWindow(window());
    EXPECT_EQ(window(), nullptr);
    EXPECT_EQ(verb(OLEIVERB_SHOW), S_OK);
    EXPECT_TRUE(window());
}

TEST_F(Control, GivesBackEverythingWhenItsContainerReleasesItEarly) {
    putOnForm();
    const HWND view = window();
    ole_ = {};
    control_ = {};
    EXPECT_FALSE(IsWindow(view));
    EXPECT_EQ(container_.references(), 0u);
    // A container that has given the control back hears no more of it.
    EXPECT_TRUE(container_.isInPlace());
    static_cast<void>(container_.OnInPlaceDeactivate());
}

TEST_F(Control, SavesItselfWhenItIsClosed) {
    ASSERT_EQ(ole_->SetClientSite(container_.site()), S_OK);
    DWORD cookie = 0;
    EXPECT_EQ(ole_->Advise(static_cast<IAdviseSink*>(&container_), &cookie), S_OK);
    EXPECT_EQ(ole_->Close(OLECLOSE_SAVEIFDIRTY), S_OK);
    EXPECT_EQ(container_.log, "OnClose ");
    container_.log.clear();
    control_->put_MousePointer(2);
    EXPECT_EQ(ole_->Close(OLECLOSE_PROMPTSAVE), S_OK);
    EXPECT_EQ(container_.log, "SaveObject OnSave OnClose ");
    EXPECT_EQ(ole_->Close(77), E_INVALIDARG);
    EXPECT_EQ(ole_->Unadvise(cookie), S_OK);
}

TEST_F(Control, TellsAndAsksAboutItsBindableProperties) {
    const auto point = host::connectionPoint(*control_.get(), IID_IPropertyNotifySink);
    ASSERT_TRUE(point);
    DWORD cookie = 0;
    ASSERT_EQ(point->Advise(static_cast<IPropertyNotifySink*>(&container_), &cookie), S_OK);
    EXPECT_EQ(control_->put_MousePointer(2), S_OK);
    EXPECT_EQ(container_.log, "OnRequestEdit OnChanged ");
    EXPECT_EQ(container_.changed, 8);
    EXPECT_EQ(control_->putref_MouseIcon(nullptr), S_OK);
    EXPECT_EQ(container_.changed, 9);
    container_.requestEdit = S_FALSE;
    EXPECT_EQ(control_->put_MousePointer(3), S_FALSE);
    short pointer = 0;
    control_->get_MousePointer(&pointer);
    EXPECT_EQ(pointer, 2);
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
}

TEST_F(Control, IsReadyAfterOneQuickActivation) {
    int clicks = 0;
    const auto sink = host::Sink::make(DIID___VrxPreviewImg, [&](DISPID, const DISPPARAMS&) {
        ++clicks;
        return S_OK;
    });
    QACONTAINER container{};
    container.cbSize = sizeof container;
    container.pClientSite = container_.site();
    container.pUnkEventSink = sink.get();
    container.pPropertyNotifySink = static_cast<IPropertyNotifySink*>(&container_);
    QACONTROL answer{};
    answer.cbSize = sizeof answer;
    const auto quick = as<IQuickActivate>();
    EXPECT_EQ(quick->QuickActivate(nullptr, &answer), E_POINTER);
    ASSERT_EQ(quick->QuickActivate(&container, &answer), S_OK);
    EXPECT_EQ(answer.dwMiscStatus, kMiscStatus);
    EXPECT_NE(answer.dwEventCookie, 0u);
    EXPECT_NE(answer.dwPropNotifyCookie, 0u);
    ASSERT_EQ(verb(OLEIVERB_INPLACEACTIVATE), S_OK);
    setFile(picture());
    SendMessageW(window(), WM_KEYDOWN, VK_SPACE, 0);
    EXPECT_EQ(clicks, 1);
    control_->put_MousePointer(2);
    EXPECT_EQ(container_.changed, 8);
    for (const auto& [iid, cookie] : {std::pair{DIID___VrxPreviewImg, answer.dwEventCookie},
                                      std::pair{IID_IPropertyNotifySink, answer.dwPropNotifyCookie}})
        EXPECT_EQ(host::connectionPoint(*control_.get(), iid)->Unadvise(cookie), S_OK);
}

}  // namespace
