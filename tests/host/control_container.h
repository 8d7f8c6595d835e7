// A container of controls as forms are: answers what its kind of host answers, notes what it is told, and
// fails or strikes back where a test wants it.
#pragma once

#include <windows.h>

#include <ocidl.h>
#include <oleidl.h>

#include <functional>
#include <map>
#include <string>

#include "com/com_ptr.h"
#include "com/variant_convert.h"

namespace host {

/// Each interface of the site, the frame and the receivers in one object, on the stack of the test.
class ControlContainer final : public IOleClientSite,
                               public IOleInPlaceSite,
                               public IOleControlSite,
                               public IOleInPlaceFrame,
                               public IDispatch,
                               public IAdviseSinkEx,
                               public IPropertyNotifySink {
  public:
    explicit ControlContainer(HWND window) : window_(window) {}
    ControlContainer(const ControlContainer&) = delete;
    ControlContainer& operator=(const ControlContainer&) = delete;
    virtual ~ControlContainer() = default;

    std::map<DISPID, VARIANT> ambient;  ///< values that own nothing
    RECT place{10, 10, 110, 90};
    RECT clip{0, 0, 1000, 1000};
    bool offersInPlace = true;
    bool offersControlSite = true;
    bool offersAmbient = true;
    std::string log;  ///< like "CanInPlaceActivate OnInPlaceActivate "
    /// Called with the name of each call that comes; what it returns is the answer where it is a failure.
    std::function<HRESULT(const char* call)> onCall;
    HRESULT requestEdit = S_OK;
    DISPID changed = DISPID_UNKNOWN;
    std::function<HRESULT(const MSG& key)> onKey;
    RECT wantedPlace{};  ///< of the last OnPosRectChange

    void moveTo(HWND window) { window_ = window; }
    [[nodiscard]] HWND window() const { return window_; }
    /// How many references others hold.
    [[nodiscard]] ULONG references() const { return references_; }
    [[nodiscard]] IOleClientSite* site() { return this; }

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
    STDMETHODIMP_(ULONG) Release() override { return --references_; }

    STDMETHODIMP SaveObject() override { return note("SaveObject"); }
    STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker** moniker) override;
    STDMETHODIMP GetContainer(IOleContainer** container) override;
    STDMETHODIMP ShowObject() override { return note("ShowObject"); }
    STDMETHODIMP OnShowWindow(BOOL) override { return note("OnShowWindow"); }
    STDMETHODIMP RequestNewObjectLayout() override { return E_NOTIMPL; }

    STDMETHODIMP GetWindow(HWND* window) override;
    STDMETHODIMP ContextSensitiveHelp(BOOL) override { return S_OK; }
    STDMETHODIMP CanInPlaceActivate() override { return note("CanInPlaceActivate"); }
    STDMETHODIMP OnInPlaceActivate() override;
    STDMETHODIMP OnUIActivate() override;
    STDMETHODIMP GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document, LPRECT position,
                                  LPRECT clipping, OLEINPLACEFRAMEINFO* info) override;
    STDMETHODIMP Scroll(SIZE) override { return E_NOTIMPL; }
    STDMETHODIMP OnUIDeactivate(BOOL undoable) override;
    STDMETHODIMP OnInPlaceDeactivate() override;
    STDMETHODIMP DiscardUndoState() override { return S_OK; }
    STDMETHODIMP DeactivateAndUndo() override { return S_OK; }
    STDMETHODIMP OnPosRectChange(LPCRECT wanted) override;

    STDMETHODIMP OnControlInfoChanged() override { return S_OK; }
    STDMETHODIMP LockInPlaceActive(BOOL) override { return S_OK; }
    STDMETHODIMP GetExtendedControl(IDispatch** extended) override;
    STDMETHODIMP TransformCoords(POINTL* himetric, POINTF* units, DWORD flags) override;
    STDMETHODIMP TranslateAccelerator(MSG* key, DWORD) override { return onKey ? onKey(*key) : S_FALSE; }
    STDMETHODIMP OnFocus(BOOL gained) override { return note(gained ? "OnFocus(1)" : "OnFocus(0)"); }
    STDMETHODIMP ShowPropertyFrame() override { return note("ShowPropertyFrame"); }

    STDMETHODIMP GetBorder(LPRECT) override { return INPLACE_E_NOTOOLSPACE; }
    STDMETHODIMP RequestBorderSpace(LPCBORDERWIDTHS) override { return INPLACE_E_NOTOOLSPACE; }
    STDMETHODIMP SetBorderSpace(LPCBORDERWIDTHS) override { return note("SetBorderSpace"); }
    STDMETHODIMP SetActiveObject(IOleInPlaceActiveObject* active, LPCOLESTR) override;
    STDMETHODIMP InsertMenus(HMENU, OLEMENUGROUPWIDTHS*) override { return E_NOTIMPL; }
    STDMETHODIMP SetMenu(HMENU, HOLEMENU, HWND) override { return E_NOTIMPL; }
    STDMETHODIMP RemoveMenus(HMENU) override { return E_NOTIMPL; }
    STDMETHODIMP SetStatusText(LPCOLESTR) override { return S_OK; }
    STDMETHODIMP EnableModeless(BOOL) override { return S_OK; }
    STDMETHODIMP TranslateAccelerator(MSG*, WORD) override { return S_FALSE; }

    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                        UINT*) override;

    STDMETHODIMP_(void) OnDataChange(FORMATETC*, STGMEDIUM*) override {}
    STDMETHODIMP_(void) OnViewChange(DWORD, LONG) override { static_cast<void>(note("OnViewChange")); }
    STDMETHODIMP_(void) OnRename(IMoniker*) override {}
    STDMETHODIMP_(void) OnViewStatusChange(DWORD) override {}
    STDMETHODIMP_(void) OnSave() override { static_cast<void>(note("OnSave")); }
    STDMETHODIMP_(void) OnClose() override { static_cast<void>(note("OnClose")); }

    STDMETHODIMP OnChanged(DISPID property) override;
    STDMETHODIMP OnRequestEdit(DISPID) override {
        static_cast<void>(note("OnRequestEdit"));
        return requestEdit;
    }

    /// Whether calls that come in pairs have come in pairs.
    [[nodiscard]] bool isBalanced() const { return !inPlace_ && !uiActive_ && !active_; }
    [[nodiscard]] bool isInPlace() const { return inPlace_; }
    [[nodiscard]] IOleInPlaceActiveObject* activeObject() const { return active_.get(); }
    /// As a container does that gives the control back.
    void forgetActive() { active_ = {}; }
    /// A mistake in the order of calls, told once; empty for none.
    std::string mistake;

  private:
    HRESULT note(const char* call);

    HWND window_;
    ULONG references_ = 0;
    bool inPlace_ = false;
    bool uiActive_ = false;
    unsigned turns_ = 0;
    vrx::ComPtr<IOleInPlaceActiveObject> active_;
};

}  // namespace host
