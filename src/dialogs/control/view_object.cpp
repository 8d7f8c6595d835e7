#include "dialogs/control/view_object.h"

#include <olectl.h>

#include <utility>

namespace vrx {
namespace {

constexpr DWORD kFrozenCookie = 1;
constexpr LONG kWhole = -1;

}  // namespace

STDMETHODIMP ViewObjectPart::Draw(DWORD aspect, LONG, void*, DVTARGETDEVICE*, HDC, HDC dc, LPCRECTL bounds,
                                  LPCRECTL, BOOL(STDMETHODCALLTYPE*)(ULONG_PTR), ULONG_PTR) {
    if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
    if (!dc) return E_INVALIDARG;
    // Only a control without a window of its own knows its place by itself.
    if (!bounds) return E_INVALIDARG;
    return run([&] {
        const RECT place{bounds->left, bounds->top, bounds->right, bounds->bottom};
        if (!body_.window()) {
            container_.readAmbient();
            body_.ambientChanged();
        }
        const Held<PictureScene> scene(frozen_ ? *frozen_ : body_.scene());
        drawOnDevice(dc, place, *scene);
        return S_OK;
    });
}

STDMETHODIMP ViewObjectPart::GetColorSet(DWORD aspect, LONG, void*, DVTARGETDEVICE*, HDC,
                                         LOGPALETTE** colors) {
    if (!colors) return E_POINTER;
    *colors = nullptr;
    return aspect == DVASPECT_CONTENT ? S_FALSE : DV_E_DVASPECT;
}

STDMETHODIMP ViewObjectPart::Freeze(DWORD aspect, LONG, void*, DWORD* cookie) {
    if (!cookie) return E_POINTER;
    *cookie = 0;
    if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
    return run([&] {
        const bool already = frozen_.has_value();
        if (!already) frozen_ = body_.scene();
        *cookie = kFrozenCookie;
        return already ? VIEW_S_ALREADY_FROZEN : S_OK;
    });
}

STDMETHODIMP ViewObjectPart::Unfreeze(DWORD cookie) {
    if (cookie != kFrozenCookie || !frozen_) return OLE_E_NOCONNECTION;
    return run([&] {
        // The picture goes last: it may be one of the host's own.
        const auto gone = std::exchange(frozen_, std::nullopt);
        return S_OK;
    });
}

STDMETHODIMP ViewObjectPart::SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) {
    return run([&] {
        aspects_ = sink ? aspects : 0;
        flags_ = sink ? flags : 0;
        const HeldReference old(std::exchange(sink_, ComPtr<IAdviseSink>(sink)));
        if (flags_ & ADVF_PRIMEFIRST) tellChanged();
        return S_OK;
    });
}

STDMETHODIMP ViewObjectPart::GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) {
    if (aspects) *aspects = aspects_;
    if (flags) *flags = flags_;
    if (sink) *sink = ComPtr<IAdviseSink>(sink_).detach();
    return S_OK;
}

STDMETHODIMP ViewObjectPart::GetExtent(DWORD aspect, LONG, DVTARGETDEVICE*, LPSIZEL size) {
    if (!size) return E_POINTER;
    if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
    *size = extent_.himetric();
    return S_OK;
}

void ViewObjectPart::tellChanged() {
    if (!sink_ || !(aspects_ & DVASPECT_CONTENT)) return;
    const bool once = (flags_ & ADVF_ONLYONCE) != 0;
    const HeldReference sink(once ? std::exchange(sink_, {}) : sink_);
    callHost([&] { sink->OnViewChange(DVASPECT_CONTENT, kWhole); });
}

}  // namespace vrx
