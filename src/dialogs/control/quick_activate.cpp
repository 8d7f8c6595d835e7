#include "dialogs/control/quick_activate.h"

#include <olectl.h>

#include <utility>

namespace vrx {

STDMETHODIMP QuickActivatePart::QuickActivate(QACONTAINER* container, QACONTROL* control) {
    if (!container || !control) return E_POINTER;
    if (container->cbSize < sizeof *container || control->cbSize < sizeof *control) return E_INVALIDARG;
    return run([&] {
        const ULONG size = control->cbSize;
        *control = {};
        control->cbSize = size;
        return connect(*container, *control);
    });
}

/// All or none of the connections.
HRESULT QuickActivatePart::connect(const QACONTAINER& container, QACONTROL& control) {
    if (container.pClientSite) {
        const HRESULT taken = oleObject_.SetClientSite(container.pClientSite);
        if (FAILED(taken)) return taken;
    }
    HRESULT result = advise(eventsId_, container.pUnkEventSink, control.dwEventCookie);
    if (FAILED(result)) return result;
    result = advise(IID_IPropertyNotifySink, container.pPropertyNotifySink, control.dwPropNotifyCookie);
    if (FAILED(result)) {
        ComPtr<IConnectionPoint> point;
        if (control.dwEventCookie != 0 && SUCCEEDED(events_.FindConnectionPoint(eventsId_, point.put())))
            point->Unadvise(control.dwEventCookie);
        control.dwEventCookie = 0;
        return result;
    }
    if (container.pAdviseSink) view_.SetAdvise(DVASPECT_CONTENT, 0, container.pAdviseSink);
    oleObject_.GetMiscStatus(DVASPECT_CONTENT, &control.dwMiscStatus);
    control.dwViewStatus = VIEWSTATUS_OPAQUE | VIEWSTATUS_SOLIDBKGND;
    control.dwPointerActivationPolicy = 0;
    return S_OK;
}

/// Nothing for no sink.
HRESULT QuickActivatePart::advise(const IID& iid, IUnknown* sink, DWORD& cookie) {
    if (!sink) return S_OK;
    ComPtr<IConnectionPoint> found;
    const HRESULT answer = events_.FindConnectionPoint(iid, found.put());
    if (FAILED(answer)) return answer;
    const HeldReference point(std::move(found));
    return point->Advise(sink, &cookie);
}

STDMETHODIMP QuickActivatePart::SetContentExtent(LPSIZEL size) {
    return oleObject_.SetExtent(DVASPECT_CONTENT, size);
}

STDMETHODIMP QuickActivatePart::GetContentExtent(LPSIZEL size) {
    return oleObject_.GetExtent(DVASPECT_CONTENT, size);
}

}  // namespace vrx
