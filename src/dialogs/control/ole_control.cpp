#include "dialogs/control/ole_control.h"

namespace vrx {

/// Enter is a click, not the default button of the form.
STDMETHODIMP OleControlPart::GetControlInfo(CONTROLINFO* info) {
    if (!info) return E_POINTER;
    if (info->cb != sizeof *info) return E_INVALIDARG;
    info->hAccel = nullptr;
    info->cAccel = 0;
    info->dwFlags = CTRLINFO_EATS_RETURN;
    return S_OK;
}

STDMETHODIMP OleControlPart::OnMnemonic(LPMSG) { return S_OK; }

STDMETHODIMP OleControlPart::OnAmbientPropertyChange(DISPID) {
    return run([&] {
        container_.readAmbient();
        body_.ambientChanged();
        return S_OK;
    });
}

STDMETHODIMP OleControlPart::FreezeEvents(BOOL freeze) {
    if (freeze) {
        ++freezes_;
    } else if (freezes_ > 0) {
        --freezes_;
    }
    return S_OK;
}

}  // namespace vrx
