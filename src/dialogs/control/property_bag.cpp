#include "dialogs/control/property_bag.h"

#include "com/entry.h"
#include "com/hresult_failure.h"
#include "com/variant_convert.h"
#include "ground/error.h"

namespace vrx {
namespace {

/// Containers answer many failures for a property that they do not have; these mean a value that they have.
bool isRefusal(HRESULT answer) {
    return answer == DISP_E_TYPEMISMATCH || answer == DISP_E_OVERFLOW || answer == E_OUTOFMEMORY;
}

/// Empty where the bag has none.
Variant readProperty(IPropertyBag& bag, const wchar_t* name, VARTYPE type, IErrorLog* log) {
    Variant value;
    V_VT(&value.get()) = type;
    V_UNKNOWN(&value.get()) = nullptr;  // a bag may clear it
    const HRESULT answer = callHost([&] { return bag.Read(name, &value.get(), log); });
    if (SUCCEEDED(answer)) return value;
    // What a bag leaves behind with a failure is not to be freed.
    static_cast<void>(value.release());
    if (isRefusal(answer)) throw HresultFailure{answer};
    return {};
}

ComPtr<IPicture> pictureIn(const VARIANT& value) {
    if (V_VT(&value) == VT_EMPTY) return {};
    IUnknown* object = objectIn(value);
    auto picture = interfaceOf<IPicture>(object);
    if (object && !picture) throw platformError(Platform::TypeMismatch);
    return picture;
}

}  // namespace

KeptProperties readProperties(IPropertyBag& bag, IErrorLog* log) {
    // Each may be an object, which is asked what it is.
    const Held<Variant> number(readProperty(bag, kMousePointerName, VT_I2, log));
    const Variant pointer = convert(number->get(), VT_I2);
    const Held<Variant> icon(readProperty(bag, kMouseIconName, VT_DISPATCH, log));
    return {static_cast<MousePointer>(V_I2(&pointer.get())), pictureIn(icon->get())};
}

HRESULT writePointer(IPropertyBag& bag, MousePointer pointer) {
    Variant value = makeInteger(static_cast<short>(pointer));
    return callHost([&] { return bag.Write(kMousePointerName, &value.get()); });
}

HRESULT writeIcon(IPropertyBag& bag, const ComPtr<IPicture>& icon) {
    const Held<Variant> value;
    V_VT(&value->get()) = VT_DISPATCH;
    V_DISPATCH(&value->get()) = interfaceOf<IPictureDisp>(icon.get()).detach();
    return callHost([&] { return bag.Write(kMouseIconName, &value->get()); });
}

}  // namespace vrx
