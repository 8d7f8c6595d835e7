#include "pattern/CVrxPattern.h"

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

STDMETHODIMP CVrxPattern::Get_PatternFromString(BSTR, long, VARIANT*) { return refuse(); }

}  // namespace vrx
