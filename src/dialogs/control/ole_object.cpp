#include "dialogs/control/ole_object.h"

#include <olectl.h>

#include <string>
#include <vector>

#include "com/class_factory.h"
#include "com/enumerator.h"
#include "com/task_text.h"
#include "dialogs/control/property_pages.h"

namespace vrx {
namespace {

/// The one verb that a container's menu offers.
struct PropertiesVerb {
    [[nodiscard]] OLEVERB item() const {
        return {OLEIVERB_PROPERTIES, taskText(L"&Properties..."), 0, OLEVERBATTRIB_ONCONTAINERMENU};
    }
};

}  // namespace

/// May come at any time: a control that is active ends that with the site that it is active in.
STDMETHODIMP OleObjectPart::SetClientSite(IOleClientSite* site) {
    return run([&] {
        if (site != container_.site().get()) inPlace_.deactivate();
        container_.setSite(ComPtr<IOleClientSite>(site));
        container_.readAmbient();
        body_.ambientChanged();
        return S_OK;
    });
}

STDMETHODIMP OleObjectPart::GetClientSite(IOleClientSite** site) {
    if (!site) return E_POINTER;
    *site = ComPtr<IOleClientSite>(container_.site()).detach();
    return S_OK;
}

STDMETHODIMP OleObjectPart::SetHostNames(LPCOLESTR, LPCOLESTR) { return S_OK; }

STDMETHODIMP OleObjectPart::Close(DWORD saving) {
    if (saving != OLECLOSE_SAVEIFDIRTY && saving != OLECLOSE_NOSAVE && saving != OLECLOSE_PROMPTSAVE)
        return E_INVALIDARG;
    return run([&] {
        // A control in its container's document is saved with it: there is nothing to ask the user.
        if (saving != OLECLOSE_NOSAVE) saveIfChanged();
        inPlace_.deactivate();
        const HeldReference listeners(listeners_);
        if (listeners) callHost([&] { return listeners->SendOnClose(); });
        return S_OK;
    });
}

void OleObjectPart::saveIfChanged() {
    const HeldReference site(container_.site());
    if (!site || !body_.isChanged()) return;
    const HeldReference listeners(listeners_);
    if (callHost([&] { return site->SaveObject(); }) == S_OK && listeners)
        callHost([&] { return listeners->SendOnSave(); });
}

/// Nothing links to a control.
STDMETHODIMP OleObjectPart::SetMoniker(DWORD, IMoniker*) { return E_NOTIMPL; }

STDMETHODIMP OleObjectPart::GetMoniker(DWORD assign, DWORD which, IMoniker** moniker) {
    if (!moniker) return E_POINTER;
    *moniker = nullptr;
    return run([&] {
        const HeldReference site(container_.site());
        return site ? callHost([&] { return site->GetMoniker(assign, which, moniker); }) : E_UNEXPECTED;
    });
}

STDMETHODIMP OleObjectPart::InitFromData(IDataObject*, BOOL, DWORD) { return E_NOTIMPL; }

STDMETHODIMP OleObjectPart::GetClipboardData(DWORD, IDataObject** data) {
    if (!data) return E_POINTER;
    *data = nullptr;
    return E_NOTIMPL;
}

STDMETHODIMP OleObjectPart::DoVerb(LONG verb, LPMSG, IOleClientSite*, LONG, HWND parent, LPCRECT place) {
    return run([&] { return perform(verb, {parent, place}); });
}

HRESULT OleObjectPart::perform(LONG verb, const PlaceHint& hint) {
    constexpr bool kWithKeyboard = true;
    switch (verb) {
        case OLEIVERB_SHOW:
        case OLEIVERB_INPLACEACTIVATE:
            return inPlace_.activate(!kWithKeyboard, hint);
        case OLEIVERB_PRIMARY:
        case OLEIVERB_OPEN:
        case OLEIVERB_UIACTIVATE:
            return inPlace_.activate(kWithKeyboard, hint);
        case OLEIVERB_HIDE:
            inPlace_.hide();
            return S_OK;
        case OLEIVERB_DISCARDUNDOSTATE:
            return S_OK;
        case OLEIVERB_PROPERTIES:
            return showProperties(hint.parent);
        default:
            break;
    }
    if (verb < 0) return E_NOTIMPL;
    // An unknown verb of the container's is the primary one.
    const HRESULT result = inPlace_.activate(kWithKeyboard, hint);
    return SUCCEEDED(result) ? OLEOBJ_S_INVALIDVERB : result;
}

HRESULT OleObjectPart::showProperties(HWND parent) {
    if (container_.showPropertyFrame()) return S_OK;
    IUnknown* object = &object_;
    CLSID page = propertyPage();
    const Held<std::wstring> caption(container_.ambient().displayName);
    return callHost([&] {
        return OleCreatePropertyFrame(parent, 0, 0, caption->c_str(), 1, &object, 1, &page,
                                      container_.ambient().locale, 0, nullptr);
    });
}

STDMETHODIMP OleObjectPart::EnumVerbs(IEnumOLEVERB** verbs) {
    if (!verbs) return E_POINTER;
    *verbs = nullptr;
    return run([&] {
        return Enumerator<IEnumOLEVERB, OLEVERB, PropertiesVerb>::create(std::vector<PropertiesVerb>(1), 0,
                                                                         verbs);
    });
}

STDMETHODIMP OleObjectPart::Update() { return S_OK; }

STDMETHODIMP OleObjectPart::IsUpToDate() { return S_OK; }

STDMETHODIMP OleObjectPart::GetUserClassID(CLSID* classId) {
    if (!classId) return E_POINTER;
    *classId = classId_;
    return S_OK;
}

STDMETHODIMP OleObjectPart::GetUserType(DWORD form, LPOLESTR* type) {
    if (!type) return E_POINTER;
    *type = nullptr;
    if (form < USERCLASSTYPE_FULL || form > USERCLASSTYPE_APPNAME) return E_INVALIDARG;
    const ClassRow* row = findClassRow(classId_);
    if (!row) return OLE_E_CLASSDIFF;
    return run([&] {
        *type = taskText(form == USERCLASSTYPE_APPNAME ? kPublication.libraryName : row->description);
        return S_OK;
    });
}

STDMETHODIMP OleObjectPart::SetExtent(DWORD aspect, SIZEL* size) {
    if (!size) return E_POINTER;
    if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
    if (!DesignedExtent::isLength(*size)) return E_INVALIDARG;
    return run([&] {
        extent_.set(*size);
        inPlace_.extentChanged();
        body_.ambientChanged();
        return S_OK;
    });
}

STDMETHODIMP OleObjectPart::GetExtent(DWORD aspect, SIZEL* size) {
    if (!size) return E_POINTER;
    if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
    *size = extent_.himetric();
    return S_OK;
}

STDMETHODIMP OleObjectPart::Advise(IAdviseSink* sink, DWORD* cookie) {
    if (!cookie) return E_POINTER;
    *cookie = 0;
    if (!sink) return E_INVALIDARG;
    return run([&] {
        if (!listeners_) {
            const HRESULT made = CreateOleAdviseHolder(listeners_.put());
            if (FAILED(made)) return made;
        }
        return listeners_->Advise(sink, cookie);
    });
}

STDMETHODIMP OleObjectPart::Unadvise(DWORD cookie) {
    return run([&] { return listeners_ ? listeners_->Unadvise(cookie) : OLE_E_NOCONNECTION; });
}

STDMETHODIMP OleObjectPart::EnumAdvise(IEnumSTATDATA** connections) {
    if (!connections) return E_POINTER;
    *connections = nullptr;
    return run([&] { return listeners_ ? listeners_->EnumAdvise(connections) : S_OK; });
}

STDMETHODIMP OleObjectPart::GetMiscStatus(DWORD aspect, DWORD* status) {
    if (!status) return E_POINTER;
    *status = 0;
    const ClassRow* row = findClassRow(classId_);
    if (aspect == DVASPECT_CONTENT && row && row->control) *status = row->control->miscStatus;
    return S_OK;
}

STDMETHODIMP OleObjectPart::SetColorScheme(LOGPALETTE*) { return S_OK; }

}  // namespace vrx
