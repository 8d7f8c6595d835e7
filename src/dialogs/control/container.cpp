#include "dialogs/control/container.h"

#include <olectl.h>

#include <cmath>
#include <utility>

#include "com/entry.h"
#include "ground/error.h"

namespace vrx {
namespace {

// The container's modifiers of a key.
constexpr DWORD kShift = 1;
constexpr DWORD kControl = 2;
constexpr DWORD kAlt = 4;

bool isDown(int key) { return GetKeyState(key) < 0; }

/// The ambient property, converted; Empty where the container does not tell it.
Variant readAmbientProperty(IDispatch& properties, DISPID id, VARTYPE type) {
    DISPPARAMS none{};
    const Held<Variant> value;
    const HRESULT answer = callHost([&] {
        return properties.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none,
                                 &value->get(), nullptr, nullptr);
    });
    if (FAILED(answer) || V_VT(&value->get()) == VT_EMPTY) return {};
    try {
        return convert(value->get(), type);
    } catch (const Error&) {
        return {};
    }
}

bool isTold(const Variant& value) { return V_VT(&value.get()) != VT_EMPTY; }

std::optional<COLORREF> readColor(IDispatch& properties, DISPID id) {
    const Variant value = readAmbientProperty(properties, id, VT_I4);
    COLORREF color = 0;
    if (!isTold(value)) return {};
    if (FAILED(OleTranslateColor(static_cast<OLE_COLOR>(V_I4(&value.get())), nullptr, &color))) return {};
    return color;
}

std::wstring readText(IDispatch& properties, DISPID id) {
    const Variant value = readAmbientProperty(properties, id, VT_BSTR);
    return isTold(value) ? toWide(toText(V_BSTR(&value.get()))) : std::wstring();
}

void readAll(IDispatch& properties, Ambient& ambient) {
    const Variant userMode = readAmbientProperty(properties, DISPID_AMBIENT_USERMODE, VT_BOOL);
    if (isTold(userMode)) ambient.userMode = V_BOOL(&userMode.get()) != VARIANT_FALSE;
    ambient.backColor = readColor(properties, DISPID_AMBIENT_BACKCOLOR);
    ambient.foreColor = readColor(properties, DISPID_AMBIENT_FORECOLOR);
    ambient.displayName = readText(properties, DISPID_AMBIENT_DISPLAYNAME);
    ambient.scaleUnits = readText(properties, DISPID_AMBIENT_SCALEUNITS);
    const Variant locale = readAmbientProperty(properties, DISPID_AMBIENT_LOCALEID, VT_I4);
    if (isTold(locale)) ambient.locale = static_cast<LCID>(V_I4(&locale.get()));
}

/// With two decimals at most, as people of that locale write numbers.
std::wstring numberText(float number, LCID locale) {
    Bstr text;
    const double rounded = std::round(number * 100.0) / 100.0;
    if (FAILED(VarBstrFromR8(rounded, locale, 0, text.put()))) return {};
    return toWide(toText(text.get()));
}

}  // namespace

void Container::setSite(ComPtr<IOleClientSite> site) {
    // The old one goes last: its release may run the host's code.
    std::swap(site_, site);
    ambient_ = {};
}

void Container::readAmbient() {
    const HeldReference site(site_);
    const HeldReference properties(siteAs<IDispatch>());
    if (!properties) {
        ambient_ = {};
        return;
    }
    const Held<Ambient> ambient;
    readAll(*properties.get(), *ambient);
    if (site.get() == site_.get()) ambient_ = std::move(*ambient);
}

void Container::tellFocus(bool gained) const {
    const HeldReference site(siteAs<IOleControlSite>());
    if (site) callHost([&] { return site->OnFocus(gained ? TRUE : FALSE); });
}

bool Container::translateKey(MSG& key) const {
    const HeldReference site(siteAs<IOleControlSite>());
    if (!site) return false;
    const DWORD modifiers =
        (isDown(VK_SHIFT) ? kShift : 0) | (isDown(VK_CONTROL) ? kControl : 0) | (isDown(VK_MENU) ? kAlt : 0);
    return callHost([&] { return site->TranslateAccelerator(&key, modifiers); }) == S_OK;
}

bool Container::showPropertyFrame() const {
    const HeldReference site(siteAs<IOleControlSite>());
    return site && callHost([&] { return site->ShowPropertyFrame(); }) == S_OK;
}

std::wstring Container::sizeText(SIZEL himetric) const {
    const HeldReference site(siteAs<IOleControlSite>());
    if (!site || ambient_.scaleUnits.empty()) return {};
    POINTL lengths{himetric.cx, himetric.cy};
    POINTF units{};
    const HRESULT answer = callHost([&] {
        return site->TransformCoords(&lengths, &units, XFORMCOORDS_SIZE | XFORMCOORDS_HIMETRICTOCONTAINER);
    });
    if (FAILED(answer)) return {};
    return numberText(units.x, ambient_.locale) + L" x " + numberText(units.y, ambient_.locale) + L' ' +
           ambient_.scaleUnits;
}

}  // namespace vrx
