#include "random_values.h"

#include <array>
#include <limits>
#include <set>

#include "host.h"

namespace faults {
namespace {

constexpr VARTYPE kScalars[] = {VT_I2,   VT_I4,   VT_R4,      VT_R8,   VT_CY,  VT_DATE, VT_BSTR,
                                VT_BOOL, VT_I1,   VT_UI1,     VT_UI2,  VT_UI4, VT_I8,   VT_UI8,
                                VT_INT,  VT_UINT, VT_DECIMAL, VT_BSTR, VT_I4,  VT_BSTR};
constexpr VARTYPE kElements[] = {VT_UI1,  VT_UI1, VT_UI1, VT_I4,   VT_VARIANT,
                                 VT_BSTR, VT_R8,  VT_I2,  VT_BOOL, VT_DISPATCH};

}  // namespace

std::vector<Member> membersOf(IDispatch& object) {
    static const std::set<std::wstring> kDialogs = {L"Load", L"See", L"Save", L"VrxMsgBox"};
    std::vector<Member> members;
    vrx::ComPtr<ITypeInfo> info;
    if (FAILED(object.GetTypeInfo(0, 0, info.put()))) return members;
    FUNCDESC* function = nullptr;
    for (UINT i = 0; SUCCEEDED(info->GetFuncDesc(i, &function)); ++i) {
        vrx::Bstr name;
        UINT count = 0;
        info->GetNames(function->memid, name.put(), 1, &count);
        // Those of IDispatch itself stand among the others in a dual interface.
        if (function->memid > 0 && function->memid < 1000) {
            members.push_back({name.get(), function->memid, static_cast<WORD>(function->invkind),
                               static_cast<unsigned>(function->cParams), kDialogs.contains(name.get())});
        }
        info->ReleaseFuncDesc(function);
    }
    return members;
}

double RandomValues::number() {
    constexpr double kExtremes[] = {2147483647.0,
                                    -2147483648.0,
                                    4294967296.0,
                                    32768,
                                    -32769,
                                    65536,
                                    1e30,
                                    -1e300,
                                    std::numeric_limits<double>::quiet_NaN(),
                                    std::numeric_limits<double>::infinity(),
                                    0.5,
                                    -1,
                                    255,
                                    256,
                                    1e-40};
    if (below(5) == 0) return kExtremes[below(std::size(kExtremes))];
    return static_cast<double>(below(24)) - 3;
}

std::wstring RandomValues::text() {
    switch (below(9)) {
        case 0:
            return L"";
        case 1:
            return folder_ + L"\\out" + std::to_wstring(below(3));
        case 2:
            return folder_ + L"\\no\\such";
        case 3:
            return std::to_wstring(static_cast<long>(below(100)));
        case 4:
            return L"0-255;50-65280;100-16711680;";
        case 5:
            return L"C:\\a\\b/c-d";
        case 6:
            return folder_ + L"\\bad?<>name";
        case 7:
            return std::wstring(below(2000), L'x') + L"?";
        default:
            return folder_ + L"\\in.hdr";
    }
}

vrx::Variant RandomValues::scalar() {
    vrx::Variant value;
    const std::size_t kind = below(12);
    if (kind == 0) return value;
    if (kind == 1) {
        V_VT(&value.get()) = VT_NULL;
    } else if (kind == 2) {
        V_VT(&value.get()) = VT_ERROR;
        V_ERROR(&value.get()) = below(4) == 0 ? E_FAIL : DISP_E_PARAMNOTFOUND;
    } else if (kind == 3) {
        V_VT(&value.get()) = below(2) == 0 ? VT_DISPATCH : VT_UNKNOWN;
        V_DISPATCH(&value.get()) = nullptr;
        if (below(3) != 0 && !objects_.empty()) {
            V_DISPATCH(&value.get()) = objects_[below(objects_.size())].get();
            V_DISPATCH(&value.get())->AddRef();
        }
    } else {
        const VARTYPE type = kScalars[below(std::size(kScalars))];
        V_VT(&value.get()) = VT_R8;
        V_R8(&value.get()) = number();
        if (type == VT_BSTR && below(3) != 0) {
            V_VT(&value.get()) = VT_BSTR;
            V_BSTR(&value.get()) = below(10) == 0 ? nullptr : SysAllocString(text().c_str());
        } else if (FAILED(VariantChangeTypeEx(&value.get(), &value.get(), 0x0409, 0, type))) {
            V_VT(&value.get()) = VT_R8;
        }
    }
    return value;
}

vrx::Variant RandomValues::array() {
    std::array<SAFEARRAYBOUND, 5> bounds{};
    const auto rank = static_cast<UINT>(1 + (below(2) == 0 ? 0 : below(4)));
    for (UINT i = 0; i < rank; ++i) {
        bounds[i] = {static_cast<ULONG>(below(rank == 1 ? 800 : 9)),
                     static_cast<LONG>(below(4) == 0 ? below(5) : 2) - 2};
    }
    const VARTYPE element = kElements[below(std::size(kElements))];
    vrx::Variant value;
    V_ARRAY(&value.get()) = below(12) == 0 ? nullptr : SafeArrayCreate(element, rank, bounds.data());
    V_VT(&value.get()) = static_cast<VARTYPE>(VT_ARRAY | element);
    return value;
}

VARIANT RandomValues::argument(Arguments& owner) {
    owner.owned.push_back(below(4) == 0 ? array() : scalar());
    VARIANT* target = &owner.owned.back().get();
    const std::size_t way = below(4);
    if (way == 0 && V_VT(target) > VT_NULL && V_VT(target) != VT_ERROR) {
        // Only variables of the types that hosts have.
        if (V_VT(target) == VT_DECIMAL) return host::typedReference(VT_DECIMAL, target);
        return host::typedReference(V_VT(target), &V_I4(target));
    }
    if (way == 1) return host::reference(*target);
    return *target;
}

Arguments RandomValues::arguments(const Member& member) {
    Arguments made;
    constexpr WORD kFlags[] = {DISPATCH_METHOD,
                               DISPATCH_PROPERTYGET,
                               DISPATCH_PROPERTYPUT,
                               DISPATCH_PROPERTYPUTREF,
                               DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                               0,
                               0x1F};
    made.flags = below(20) == 0 ? kFlags[below(std::size(kFlags))] : member.flags;
    const std::size_t count = below(6) == 0 ? below(member.parameters + 3) : member.parameters;
    for (std::size_t i = 0; i < count; ++i) made.passed.push_back(argument(made));
    if ((made.flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0 && below(10) != 0 && count > 0) {
        made.named.push_back(DISPID_PROPERTYPUT);
    } else if (below(5) == 0) {
        const std::size_t named = below(count + 1);
        for (std::size_t i = 0; i < named; ++i) {
            made.named.push_back(static_cast<DISPID>(below(count + 2)) - (below(20) == 0 ? 1 : 0));
        }
    }
    return made;
}

}  // namespace faults
