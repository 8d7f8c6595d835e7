#include "com/dispatch_invoke.h"

#include <algorithm>
#include <new>
#include <vector>

#include "com/dispatch_argument.h"
#include "com/error_info.h"
#include "com/hresult_failure.h"

namespace vrx {
namespace {

constexpr WORD kPut = DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF;

void checkShape(const DISPPARAMS& arguments) {
    if (arguments.cNamedArgs > arguments.cArgs) throw HresultFailure{E_INVALIDARG};
    if (arguments.cArgs != 0 && !arguments.rgvarg) throw HresultFailure{E_INVALIDARG};
    if (arguments.cNamedArgs != 0 && !arguments.rgdispidNamedArgs) throw HresultFailure{E_INVALIDARG};
}

/// Index of the parameter that a named argument means: ids are indices, and a put names its last one
/// specially.
std::size_t namedParameter(const Member& member, DISPID name, UINT index) {
    const std::size_t count = member.parameters.size();
    if (name == DISPID_PROPERTYPUT && (member.kind & kPut) && count != 0) return count - 1;
    if (name < 0 || static_cast<std::size_t>(name) >= count)
        throw HresultFailure{DISP_E_PARAMNOTFOUND, index};
    return static_cast<std::size_t>(name);
}

/// For each parameter the index of its argument in rgvarg, or kNoArgument. Positional arguments stand in
/// reverse order behind the named ones.
std::vector<UINT> placeArguments(const Member& member, const DISPPARAMS& arguments) {
    const UINT positional = arguments.cArgs - arguments.cNamedArgs;
    if (arguments.cArgs > member.parameters.size()) throw HresultFailure{DISP_E_BADPARAMCOUNT};
    std::vector<UINT> places(member.parameters.size(), kNoArgument);
    for (UINT i = 0; i < positional; ++i) places[i] = arguments.cArgs - 1 - i;
    for (UINT i = 0; i < arguments.cNamedArgs; ++i) {
        UINT& place = places[namedParameter(member, arguments.rgdispidNamedArgs[i], i)];
        if (place != kNoArgument) throw HresultFailure{DISP_E_BADPARAMCOUNT};
        place = i;
    }
    return places;
}

/// Whether arguments are missing at the end, as opposed to left out in between.
bool tooFew(const Member& member, const DISPPARAMS& arguments) {
    const auto required =
        std::ranges::count_if(member.parameters, [](const Parameter& p) { return !p.optional; });
    return arguments.cNamedArgs == 0 && arguments.cArgs < static_cast<std::size_t>(required);
}

/// A value that does not suit its parameter.
struct BadArgument {
    Error error;
    UINT index;
};

/// Runs `step` on an argument; a failure names the argument.
template <class Step>
void withArgument(UINT index, Step step) {
    try {
        step();
    } catch (const Error& error) {
        throw BadArgument{error, index};
    } catch (const HresultFailure& failure) {
        throw HresultFailure{failure.code, index};
    }
}

HRESULT report(const BadArgument& bad, const char16_t* className, const DispatchCall& call) noexcept {
    if (call.badArgument && bad.index != kNoArgument) *call.badArgument = bad.index;
    if (call.exception) return reportError(bad.error, className, *call.exception);
    switch (static_cast<Platform>(bad.error.number)) {
        case Platform::Overflow:
            return DISP_E_OVERFLOW;
        case Platform::OutOfMemory:
            return E_OUTOFMEMORY;
        default:
            return DISP_E_TYPEMISMATCH;
    }
}

HRESULT callMember(IDispatch& object, const Member& member, std::vector<DispatchArgument>& arguments,
                   Variant& result) {
    std::vector<VARTYPE> types;
    std::vector<VARIANTARG*> values;
    for (DispatchArgument& argument : arguments) {
        types.push_back(argument.passedType());
        values.push_back(argument.passed());
    }
    VARIANTARG resultAddress{};
    if (member.resultType != VT_EMPTY) {
        V_VT(&resultAddress) = VT_BYREF | member.resultType;
        V_BYREF(&resultAddress) = &V_NONE(&result.get());
        types.push_back(V_VT(&resultAddress));
        values.push_back(&resultAddress);
    }
    VARIANT outcome{};
    SetErrorInfo(0, nullptr);
    throwIfFailed(DispCallFunc(&object, member.slot, CC_STDCALL, VT_ERROR, static_cast<UINT>(types.size()),
                               types.data(), values.data(), &outcome));
    if (SUCCEEDED(V_ERROR(&outcome))) V_VT(&result.get()) = member.resultType;
    return V_ERROR(&outcome);
}

HRESULT invoke(IDispatch& object, const MemberTable& members, const DispatchCall& call) {
    if (*call.iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    if (!call.arguments) return E_INVALIDARG;
    checkShape(*call.arguments);
    const Member* member = members.find(call.id, call.flags);
    if (!member) return DISP_E_MEMBERNOTFOUND;

    const std::vector<UINT> places = placeArguments(*member, *call.arguments);
    if (tooFew(*member, *call.arguments)) return DISP_E_BADPARAMCOUNT;
    std::vector<DispatchArgument> arguments(places.size());
    for (std::size_t i = 0; i < places.size(); ++i) {
        VARIANTARG* source = places[i] == kNoArgument ? nullptr : &call.arguments->rgvarg[places[i]];
        withArgument(places[i], [&] { arguments[i].bind(member->parameters[i], source); });
    }
    Variant result;
    const HRESULT outcome = callMember(object, *member, arguments, result);
    if (FAILED(outcome)) return reportFailure(outcome, call.exception);
    for (std::size_t i = 0; i < places.size(); ++i) {
        withArgument(places[i], [&] { arguments[i].writeBack(); });
    }
    if (call.result) *call.result = result.release();
    return S_OK;
}

}  // namespace

HRESULT invokeMember(IDispatch& object, const char16_t* className, const MemberTable& members,
                     const DispatchCall& call) noexcept {
    if (call.result) VariantInit(call.result);
    try {
        return invoke(object, members, call);
    } catch (const BadArgument& bad) {
        return report(bad, className, call);
    } catch (const HresultFailure& failure) {
        if (call.badArgument && failure.argument != kNoArgument) *call.badArgument = failure.argument;
        return failure.code;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

}  // namespace vrx
