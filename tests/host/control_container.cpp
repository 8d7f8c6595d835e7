#include "control_container.h"

namespace host {

STDMETHODIMP ControlContainer::QueryInterface(REFIID iid, void** object) {
    *object = nullptr;
    if (iid == IID_IUnknown || iid == IID_IOleClientSite) *object = static_cast<IOleClientSite*>(this);
    if (offersInPlace && (iid == IID_IOleInPlaceSite || iid == IID_IOleWindow))
        *object = static_cast<IOleInPlaceSite*>(this);
    if (offersControlSite && iid == IID_IOleControlSite) *object = static_cast<IOleControlSite*>(this);
    if (iid == IID_IOleInPlaceFrame || iid == IID_IOleInPlaceUIWindow)
        *object = static_cast<IOleInPlaceFrame*>(this);
    if (offersAmbient && iid == IID_IDispatch) *object = static_cast<IDispatch*>(this);
    if (iid == IID_IAdviseSink || iid == IID_IAdviseSinkEx) *object = static_cast<IAdviseSinkEx*>(this);
    if (iid == IID_IPropertyNotifySink) *object = static_cast<IPropertyNotifySink*>(this);
    if (!*object) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

HRESULT ControlContainer::note(const char* call) {
    log += call;
    log += ' ';
    const auto act = onCall;  // the call may give the container another one
    const HRESULT answer = act ? act(call) : S_OK;
    return FAILED(answer) ? answer : S_OK;
}

STDMETHODIMP ControlContainer::GetMoniker(DWORD, DWORD, IMoniker** moniker) {
    *moniker = nullptr;
    return E_NOTIMPL;
}

STDMETHODIMP ControlContainer::GetContainer(IOleContainer** container) {
    *container = nullptr;
    return E_NOINTERFACE;
}

STDMETHODIMP ControlContainer::GetWindow(HWND* window) {
    *window = nullptr;
    const HRESULT answer = note("GetWindow");
    if (SUCCEEDED(answer)) *window = window_;
    return answer;
}

STDMETHODIMP ControlContainer::OnInPlaceActivate() {
    if (inPlace_) mistake = "activated twice";
    inPlace_ = true;
    const unsigned turn = ++turns_;
    const HRESULT answer = note("OnInPlaceActivate");
    if (FAILED(answer) && turn == turns_) inPlace_ = false;
    return answer;
}

STDMETHODIMP ControlContainer::OnUIActivate() {
    if (!inPlace_ || uiActive_) mistake = "the keyboard at a wrong time";
    uiActive_ = true;
    const unsigned turn = ++turns_;
    const HRESULT answer = note("OnUIActivate");
    if (FAILED(answer) && turn == turns_) uiActive_ = false;
    return answer;
}

STDMETHODIMP ControlContainer::GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document,
                                                LPRECT position, LPRECT clipping, OLEINPLACEFRAMEINFO* info) {
    *frame = nullptr;
    *document = nullptr;
    const HRESULT answer = note("GetWindowContext");
    if (FAILED(answer)) return answer;
    *frame = this;
    AddRef();
    *position = place;
    *clipping = clip;
    info->fMDIApp = FALSE;
    info->hwndFrame = window_;
    info->haccel = nullptr;
    info->cAccelEntries = 0;
    return S_OK;
}

STDMETHODIMP ControlContainer::OnUIDeactivate(BOOL) {
    if (!uiActive_) mistake = "the keyboard given back twice";
    uiActive_ = false;
    ++turns_;
    return note("OnUIDeactivate");
}

STDMETHODIMP ControlContainer::OnInPlaceDeactivate() {
    if (!inPlace_) mistake = "deactivated twice";
    inPlace_ = false;
    ++turns_;
    return note("OnInPlaceDeactivate");
}

STDMETHODIMP ControlContainer::OnPosRectChange(LPCRECT wanted) {
    wantedPlace = *wanted;
    return note("OnPosRectChange");
}

STDMETHODIMP ControlContainer::GetExtendedControl(IDispatch** extended) {
    *extended = nullptr;
    return E_NOTIMPL;
}

STDMETHODIMP ControlContainer::TransformCoords(POINTL* himetric, POINTF* units, DWORD) {
    // In centimetres.
    *units = {static_cast<float>(himetric->x) / 1000, static_cast<float>(himetric->y) / 1000};
    return S_OK;
}

STDMETHODIMP ControlContainer::SetActiveObject(IOleInPlaceActiveObject* active, LPCOLESTR) {
    active_ = vrx::ComPtr<IOleInPlaceActiveObject>(active);
    return note(active ? "SetActiveObject" : "SetActiveObject(0)");
}

STDMETHODIMP ControlContainer::Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                                      UINT*) {
    const HRESULT answer = onCall ? onCall("Invoke") : S_OK;
    if (FAILED(answer)) return answer;
    const auto found = ambient.find(id);
    if (found == ambient.end()) return DISP_E_MEMBERNOTFOUND;
    return VariantCopy(result, &found->second);
}

STDMETHODIMP ControlContainer::OnChanged(DISPID property) {
    changed = property;
    return note("OnChanged");
}

}  // namespace host
