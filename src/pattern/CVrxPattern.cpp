#include "pattern/CVrxPattern.h"

#include <vector>

#include "pattern/engine/pattern_expansion.h"

namespace vrx {
namespace {

const ClassIdentity kIdentity = {u"CVrxPattern", CLSID_CVrxPattern, IID__CVrxPattern};

}  // namespace

CVrxPattern::CVrxPattern() : ObjectBase(kIdentity) {}

STDMETHODIMP CVrxPattern::get_REGKEY(BSTR* value) {
    return answer(value, [&] { return std::u16string_view(regKey_); });
}

STDMETHODIMP CVrxPattern::put_REGKEY(BSTR value) {
    return run([&] { regKey_ = toText(value); });
}

STDMETHODIMP CVrxPattern::Load(BSTR*) { return refuse(); }

STDMETHODIMP CVrxPattern::Get_PatternFromString(BSTR strPattern, long NumItem, VARIANT* arPattern) {
    if (!arPattern) return E_POINTER;
    return run([&] {
        const std::vector<std::int32_t> colors = vrx::Get_PatternFromString(toText(strPattern), NumItem);
        putVariant(*arPattern, makeArray(makeVariantArray(colors, static_cast<std::size_t>(NumItem) + 1)));
    });
}

}  // namespace vrx
