#include "pattern/CVrxPattern.h"

#include <utility>

#include "pattern/engine/pattern_expansion.h"

namespace vrx {
namespace {

const ClassIdentity kIdentity = {u"CVrxPattern", CLSID_CVrxPattern, IID__CVrxPattern};

}  // namespace

CVrxPattern::CVrxPattern(const PatternDialog& dialog) : ObjectBase(kIdentity), dialog_(dialog) {}

STDMETHODIMP CVrxPattern::get_REGKEY(BSTR* value) {
    return answer(value, [&] { return std::u16string_view(regKey_); });
}

STDMETHODIMP CVrxPattern::put_REGKEY(BSTR value) {
    return run([&] { regKey_ = toText(value); });
}

STDMETHODIMP CVrxPattern::Load(BSTR* Default) {
    if (!Default) return E_POINTER;
    return run([&] {
        Bstr edited = toBstr(dialog_.edit(*this, regKey_, *Default));
        const Bstr previous(std::exchange(*Default, edited.release()));
    });
}

STDMETHODIMP CVrxPattern::Get_PatternFromString(BSTR strPattern, long NumItem, VARIANT* arPattern) {
    if (!arPattern) return E_POINTER;
    return run([&] {
        if (NumItem < 0) throw platformError(Platform::SubscriptOutOfRange);
        // The text may be in the array that makes way for the new one.
        const std::u16string pattern = toText(strPattern);
        SafeArray made = makeVariantArray(static_cast<std::size_t>(NumItem) + 1);
        SAFEARRAY& table = *made.get();
        putVariant(*arPattern, makeArray(std::move(made)));
        fillVariantArray(table, vrx::Get_PatternFromString(pattern, NumItem).colors());
    });
}

}  // namespace vrx
