#include "com/dispatch_invoke.h"

#include <algorithm>
#include <array>
#include <new>

#include "com/dispatch_argument.h"
#include "com/entry.h"
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

/// For each parameter the index of its argument in rgvarg, or kNoArgument.
using Places = std::array<UINT, kMostArguments>;

/// Positional arguments stand in reverse order behind the named ones.
Places placeArguments(const Member& member, const DISPPARAMS& arguments) {
    const UINT positional = arguments.cArgs - arguments.cNamedArgs;
    if (arguments.cArgs > member.parameters.size()) throw HresultFailure{DISP_E_BADPARAMCOUNT};
    Places places;
    places.fill(kNoArgument);
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

VARIANTARG* argumentAt(const DispatchCall& call, UINT place) {
    return place == kNoArgument ? nullptr : &call.arguments->rgvarg[place];
}

/// A member with its arguments in their order.
class MemberCall {
  public:
    MemberCall(const Member& member, const Places& places) : member_(member), places_(places) {}

    /// False where an argument needs a conversion.
    [[nodiscard]] bool bindAsTheyAre(const DispatchCall& call) noexcept {
        for (std::size_t i = 0; i < count(); ++i) {
            if (!arguments_[i].bindAsItIs(member_.parameters[i], argumentAt(call, places_[i]))) return false;
        }
        return true;
    }

    void bind(const DispatchCall& call) {
        for (std::size_t i = 0; i < count(); ++i) {
            VARIANTARG* source = argumentAt(call, places_[i]);
            withArgument(places_[i], [&] { arguments_[i].bind(member_.parameters[i], source); });
        }
    }

    HRESULT make(IDispatch& object, const DispatchCall& call) {
        NativeCall native;
        for (std::size_t i = 0; i < count(); ++i) arguments_[i].pass(native);
        Variant result;
        if (member_.resultType != VT_EMPTY) native.passAddress(&V_NONE(&result.get()));
        SetErrorInfo(0, nullptr);
        const HRESULT outcome = native.make(object, member_.slot);
        if (FAILED(outcome)) return reportFailure(outcome, call.exception);
        V_VT(&result.get()) = member_.resultType;
        for (std::size_t i = 0; i < count(); ++i) {
            withArgument(places_[i], [&] { arguments_[i].writeBack(); });
        }
        if (call.result) *call.result = result.release();
        return S_OK;
    }

  private:
    [[nodiscard]] std::size_t count() const { return member_.parameters.size(); }

    const Member& member_;
    const Places places_;
    std::array<DispatchArgument, kMostArguments> arguments_;
};

HRESULT invoke(IDispatch& object, const MemberTable& members, const DispatchCall& call) {
    if (*call.iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    if (!call.arguments) return E_INVALIDARG;
    checkShape(*call.arguments);
    const Member* member = members.find(call.id, call.flags);
    if (!member) return DISP_E_MEMBERNOTFOUND;

    const Places places = placeArguments(*member, *call.arguments);
    if (tooFew(*member, *call.arguments)) return DISP_E_BADPARAMCOUNT;
    MemberCall direct(*member, places);
    if (direct.bindAsTheyAre(call)) return direct.make(object, call);
    const Held<MemberCall> converted(*member, places);
    converted->bind(call);
    return converted->make(object, call);
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
