#include "dialogs/control/in_place.h"

#include <ocidl.h>

#include <algorithm>
#include <utility>

#include "com/entry.h"
#include "dialogs/window_place.h"

namespace vrx {
namespace {

// The name that a container shows of an active control, such as in a caption.
constexpr wchar_t kActiveName[] = L"Preview";

// The longest side that a window can have.
constexpr long long kLongestSide = 32767;

/// Nothing for edges that stand the wrong way round.
int sideOf(LONG from, LONG to) {
    return static_cast<int>(std::clamp(static_cast<long long>(to) - from, 0LL, kLongestSide));
}

}  // namespace

HRESULT InPlace::activate(bool withKeyboard, const PlaceHint& hint) {
    if (opening_ || leaving_) return E_UNEXPECTED;
    if (!site_ || !body_.window()) {
        const HeldFlag opening(opening_);
        const HRESULT result = site_ ? open(activation_, hint) : enter(hint);
        if (FAILED(result)) return result;
    }
    ShowWindow(body_.window(), SW_SHOWNA);
    return withKeyboard ? activateKeyboard() : S_OK;
}

HRESULT InPlace::enter(const PlaceHint& hint) {
    const HeldReference client(container_.site());
    const HeldReference site(container_.siteAs<IOleInPlaceSite>());
    if (!site || callHost([&] { return site->CanInPlaceActivate(); }) != S_OK) return OLE_E_NOT_INPLACEACTIVE;
    if (container_.site().get() != client.get()) return OLE_E_NOT_INPLACEACTIVE;
    const unsigned activation = ++activation_;
    site_ = ComPtr<IOleInPlaceSite>(site.get());
    const HRESULT agreed = callHost([&] { return site->OnInPlaceActivate(); });
    if (!isCurrent(activation)) return OLE_E_NOT_INPLACEACTIVE;
    if (FAILED(agreed)) {
        site_ = {};
        return agreed;
    }
    const HRESULT opened = tryOpen(activation, hint);
    if (FAILED(opened)) {
        if (isCurrent(activation)) deactivate();
        return opened;
    }
    callHost([&] { return client->ShowObject(); });
    return isCurrent(activation) ? S_OK : OLE_E_NOT_INPLACEACTIVE;
}

/// The container is told of the end of an activation that fails, whatever the reason.
HRESULT InPlace::tryOpen(unsigned activation, const PlaceHint& hint) noexcept {
    try {
        return open(activation, hint);
    } catch (...) {
        return hresultOfCurrentException();
    }
}

HRESULT InPlace::open(unsigned activation, const PlaceHint& hint) {
    const HWND parent = parentFor(hint);
    if (!isCurrent(activation) || !parent) return OLE_E_NOT_INPLACEACTIVE;
    const auto [place, clip] = askForPlace(activation, hint);
    if (!isCurrent(activation)) return OLE_E_NOT_INPLACEACTIVE;
    container_.readAmbient();
    if (!isCurrent(activation)) return OLE_E_NOT_INPLACEACTIVE;
    body_.ambientChanged();
    body_.createWindow(parent, {place.left, place.top, place.left + sideOf(place.left, place.right),
                                place.top + sideOf(place.top, place.bottom)});
    if (!isCurrent(activation)) {
        body_.destroyWindow();
        return OLE_E_NOT_INPLACEACTIVE;
    }
    clipped_ = false;
    setRects(place, &clip);
    return body_.window() ? S_OK : OLE_E_NOT_INPLACEACTIVE;
}

/// Where the container tells no window, that of the verb.
HWND InPlace::parentFor(const PlaceHint& hint) const {
    const HeldReference site(site_);
    HWND parent = nullptr;
    const HRESULT told = callHost([&] { return site->GetWindow(&parent); });
    return SUCCEEDED(told) && parent ? parent : hint.parent;
}

/// Where the container tells no place, that of the verb. Takes its frame and document, too.
PlaceAndClip InPlace::askForPlace(unsigned activation, const PlaceHint& hint) {
    const HeldReference site(site_);
    const SIZE size = extent_.pixels();
    const RECT wanted = hint.place ? *hint.place : RECT{0, 0, size.cx, size.cy};
    ComPtr<IOleInPlaceFrame> frame;
    ComPtr<IOleInPlaceUIWindow> document;
    RECT place{};
    RECT clip{};
    OLEINPLACEFRAMEINFO keys{};
    keys.cb = sizeof keys;
    const HRESULT told =
        callHost([&] { return site->GetWindowContext(frame.put(), document.put(), &place, &clip, &keys); });
    if (isCurrent(activation)) {
        frame_ = std::move(frame);
        document_ = std::move(document);
    }
    if (FAILED(told)) return {wanted, wanted};
    return {place, IsRectEmpty(&clip) ? place : clip};
}

void InPlace::hide() {
    deactivateKeyboard();
    if (body_.window()) ShowWindow(body_.window(), SW_HIDE);
}

/// A container that decides itself who gets the keyboard is asked.
bool InPlace::mayHaveKeyboard(IOleInPlaceSite& site) const {
    const HeldReference asked(interfaceOf<IOleInPlaceSiteEx>(&site));
    return !asked || callHost([&] { return asked->RequestUIActivate(); }) == S_OK;
}

HRESULT InPlace::activateKeyboard() {
    if (!site_ || leaving_ || yielding_) return OLE_E_NOT_INPLACEACTIVE;
    if (!hasKeyboard_) {
        const HRESULT taken = takeKeyboard();
        if (FAILED(taken)) return taken;
    }
    if (body_.window() && GetFocus() != body_.window()) SetFocus(body_.window());
    return S_OK;
}

HRESULT InPlace::takeKeyboard() {
    const HeldReference site(site_);
    hasKeyboard_ = true;
    const unsigned turn = ++keyboardTurn_;
    const HRESULT agreed = mayHaveKeyboard(*site.get()) ? callHost([&] { return site->OnUIActivate(); })
                                                        : OLE_E_NOT_INPLACEACTIVE;
    if (turn != keyboardTurn_) return OLE_E_NOT_INPLACEACTIVE;
    if (FAILED(agreed)) {
        hasKeyboard_ = false;
        return agreed;
    }
    void* active = nullptr;
    object_.QueryInterface(IID_IOleInPlaceActiveObject, &active);
    const HeldReference object(
        ComPtr<IOleInPlaceActiveObject>::attach(static_cast<IOleInPlaceActiveObject*>(active)));
    setActiveObject(object.get(), turn);
    return turn == keyboardTurn_ ? S_OK : OLE_E_NOT_INPLACEACTIVE;
}

/// Null for none. As far as the keyboard does not change hands meanwhile.
void InPlace::setActiveObject(IOleInPlaceActiveObject* active, unsigned turn) {
    const HeldReference document(document_);
    const HeldReference frame(frame_);
    const wchar_t* name = active ? kActiveName : nullptr;
    for (IOleInPlaceUIWindow* const window :
         {document.get(), static_cast<IOleInPlaceUIWindow*>(frame.get())}) {
        if (window && turn == keyboardTurn_) callHost([&] { return window->SetActiveObject(active, name); });
        // The control has no tool bars of its own: the container keeps its.
        if (window && active && turn == keyboardTurn_)
            callHost([&] { return window->SetBorderSpace(nullptr); });
    }
}

/// The keyboard does not come back before the container knows that it is gone.
void InPlace::deactivateKeyboard() {
    if (!std::exchange(hasKeyboard_, false)) return;
    const HeldFlag yielding(yielding_);
    const unsigned turn = ++keyboardTurn_;
    const HeldReference site(site_);
    setActiveObject(nullptr, turn);
    if (site) callHost([&] { return site->OnUIDeactivate(FALSE); });
}

void InPlace::deactivate() {
    if (!site_ || leaving_) return;
    leave();
    if (!site_) body_.setDesignedSize(extent_.pixels());
}

/// No new activation begins before the container knows of this one's end.
void InPlace::leave() {
    const HeldFlag leaving(leaving_);
    deactivateKeyboard();
    ++activation_;
    const HeldReference site(std::exchange(site_, {}));
    const HeldReference frame(std::exchange(frame_, {}));
    const HeldReference document(std::exchange(document_, {}));
    body_.destroyWindow();
    if (std::exchange(hasFocus_, false)) container_.tellFocus(false);
    callHost([&] { return site->OnInPlaceDeactivate(); });
}

void InPlace::setRects(const RECT& place, const RECT* clip) {
    const HWND window = body_.window();
    if (!window) return;
    const int width = sideOf(place.left, place.right);
    const int height = sideOf(place.top, place.bottom);
    RECT shown = place;
    const bool whole = !clip || (IntersectRect(&shown, &place, clip) && EqualRect(&shown, &place));
    if (!whole) {
        OffsetRect(&shown, -place.left, -place.top);
        // The system owns the region from here on.
        SetWindowRgn(window, CreateRectRgnIndirect(&shown), TRUE);
    } else if (clipped_) {
        SetWindowRgn(window, nullptr, TRUE);
    }
    clipped_ = !whole;
    SetWindowPos(window, nullptr, place.left, place.top, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
}

RECT InPlace::placeWithExtent() const {
    RECT place = placeInParent(body_.window());
    const SIZE size = extent_.pixels();
    place.right = place.left + size.cx;
    place.bottom = place.top + size.cy;
    return place;
}

void InPlace::extentChanged() {
    if (!site_ || !body_.window()) {
        body_.setDesignedSize(extent_.pixels());
        return;
    }
    const RECT now = placeInParent(body_.window());
    const RECT wanted = placeWithExtent();
    const HeldReference site(site_);
    if (!EqualRect(&now, &wanted)) callHost([&] { return site->OnPosRectChange(&wanted); });
}

void InPlace::focusChanged(bool gained) {
    if (!site_ || hasFocus_ == gained) return;
    hasFocus_ = gained;
    const unsigned activation = activation_;
    if (gained && container_.ambient().userMode) activateKeyboard();
    if (isCurrent(activation)) container_.tellFocus(gained);
}

/// The keys that click are the window's own, whatever they mean elsewhere in the container.
HRESULT InPlace::translateKey(MSG& key) {
    if (key.message < WM_KEYFIRST || key.message > WM_KEYLAST || !body_.window()) return S_FALSE;
    const bool clicks = key.message == WM_KEYDOWN && (key.wParam == VK_SPACE || key.wParam == VK_RETURN);
    if (clicks && key.hwnd == body_.window()) {
        SendMessageW(key.hwnd, key.message, key.wParam, key.lParam);
        return S_OK;
    }
    return container_.translateKey(key) ? S_OK : S_FALSE;
}

namespace {

HRESULT windowOf(const ControlBody& body, HWND* window) {
    if (!window) return E_POINTER;
    *window = body.window();
    return *window ? S_OK : E_FAIL;
}

}  // namespace

STDMETHODIMP InPlaceObjectPart::GetWindow(HWND* window) { return windowOf(body_, window); }

STDMETHODIMP InPlaceObjectPart::ContextSensitiveHelp(BOOL) { return S_OK; }

STDMETHODIMP InPlaceObjectPart::InPlaceDeactivate() {
    return run([&] {
        inPlace_.deactivate();
        return S_OK;
    });
}

STDMETHODIMP InPlaceObjectPart::UIDeactivate() {
    return run([&] {
        inPlace_.deactivateKeyboard();
        return S_OK;
    });
}

STDMETHODIMP InPlaceObjectPart::SetObjectRects(LPCRECT place, LPCRECT clip) {
    if (!place) return E_POINTER;
    return run([&] {
        inPlace_.setRects(*place, clip);
        return S_OK;
    });
}

STDMETHODIMP InPlaceObjectPart::ReactivateAndUndo() { return INPLACE_E_NOTUNDOABLE; }

STDMETHODIMP InPlaceActiveObjectPart::GetWindow(HWND* window) { return windowOf(body_, window); }

STDMETHODIMP InPlaceActiveObjectPart::ContextSensitiveHelp(BOOL) { return S_OK; }

STDMETHODIMP InPlaceActiveObjectPart::TranslateAccelerator(LPMSG key) {
    if (!key) return E_POINTER;
    return run([&] {
        MSG own = *key;
        return inPlace_.translateKey(own);
    });
}

STDMETHODIMP InPlaceActiveObjectPart::OnFrameWindowActivate(BOOL) { return S_OK; }

STDMETHODIMP InPlaceActiveObjectPart::OnDocWindowActivate(BOOL) { return S_OK; }

STDMETHODIMP InPlaceActiveObjectPart::ResizeBorder(LPCRECT, IOleInPlaceUIWindow*, BOOL) { return S_OK; }

STDMETHODIMP InPlaceActiveObjectPart::EnableModeless(BOOL) { return S_OK; }

}  // namespace vrx
