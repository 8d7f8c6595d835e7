#include "com/member_table.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "com/com_ptr.h"
#include "com/hresult_failure.h"
#include "com/native_call.h"
#include "com/type_attributes.h"

namespace vrx {
namespace {

constexpr std::size_t kLongestName = 64;

/// A type as a variant names it, and the interface for an object.
struct ResolvedType {
    VARTYPE type = VT_EMPTY;
    unsigned pointers = 0;
    IID iid = {};
};

class FunctionDescription {
  public:
    FunctionDescription(ITypeInfo& info, UINT index) : info_(info) {
        throwIfFailed(info.GetFuncDesc(index, &description_));
    }
    FunctionDescription(const FunctionDescription&) = delete;
    FunctionDescription& operator=(const FunctionDescription&) = delete;
    ~FunctionDescription() { info_.ReleaseFuncDesc(description_); }
    const FUNCDESC* operator->() const { return description_; }

  private:
    ITypeInfo& info_;
    FUNCDESC* description_ = nullptr;
};

ResolvedType resolve(ITypeInfo& info, const TYPEDESC& description);

ResolvedType resolveUserDefined(ITypeInfo& info, HREFTYPE reference) {
    ComPtr<ITypeInfo> referred;
    // The record's library is found only where it is registered; nothing else is defined outside of this
    // library and the system's.
    if (FAILED(info.GetRefTypeInfo(reference, referred.put()))) return {VT_RECORD};
    const TypeAttributes attributes(*referred);
    switch (attributes->typekind) {
        case TKIND_ENUM:
            return {VT_I4};
        case TKIND_RECORD:
            return {VT_RECORD};
        case TKIND_ALIAS:
            return resolve(*referred, attributes->tdescAlias);
        case TKIND_DISPATCH:
            return {VT_DISPATCH, 0, attributes->guid};
        case TKIND_INTERFACE:
            return {VT_UNKNOWN, 0, attributes->guid};
        default:
            throw HresultFailure{TYPE_E_TYPEMISMATCH};
    }
}

ResolvedType resolve(ITypeInfo& info, const TYPEDESC& description) {
    switch (description.vt) {
        case VT_PTR: {
            ResolvedType pointed = resolve(info, *description.lptdesc);
            ++pointed.pointers;
            return pointed;
        }
        case VT_SAFEARRAY: {
            const ResolvedType element = resolve(info, *description.lptdesc);
            return {static_cast<VARTYPE>(VT_ARRAY | element.type)};
        }
        case VT_USERDEFINED:
            return resolveUserDefined(info, description.hreftype);
        default:
            return {description.vt};
    }
}

/// An object is a pointer in itself; what is left are pointers to the argument.
bool isReference(const ResolvedType& type) {
    const bool object = type.type == VT_DISPATCH || type.type == VT_UNKNOWN;
    return type.pointers > (object && type.iid != IID{} ? 1u : 0u);
}

/// The published names are of ASCII characters.
char16_t smallLetter(wchar_t character) {
    const bool capital = character >= L'A' && character <= L'Z';
    return static_cast<char16_t>(capital ? character - L'A' + L'a' : character);
}

/// A host's name in small letters; empty for one that is longer than any of ours.
class SmallName {
  public:
    explicit SmallName(const wchar_t* name) {
        if (!name) return;
        std::size_t length = 0;
        for (; name[length]; ++length) {
            if (length == letters_.size()) return;
            letters_[length] = smallLetter(name[length]);
        }
        length_ = length;
    }
    operator std::u16string_view() const { return {letters_.data(), length_}; }

  private:
    std::array<char16_t, kLongestName> letters_;
    std::size_t length_ = 0;
};

/// The names of a member and its parameters, in small letters; empty for those without one.
std::vector<std::u16string> namesOf(ITypeInfo& info, MEMBERID id) {
    std::array<BSTR, 1 + kMostArguments> found{};
    UINT count = 0;
    throwIfFailed(info.GetNames(id, found.data(), static_cast<UINT>(found.size()), &count));
    std::vector<std::u16string> names(found.size());
    for (std::size_t i = 0; i < found.size(); ++i) {
        const Bstr name(found[i]);
        if (name) names[i] = SmallName(name.get());
    }
    return names;
}

Parameter describeParameter(std::u16string name, const ResolvedType& type, const PARAMDESC& description) {
    Parameter parameter;
    parameter.name = std::move(name);
    parameter.type = type.type;
    parameter.byReference = isReference(type);
    parameter.output = (description.wParamFlags & PARAMFLAG_FOUT) != 0;
    parameter.optional = (description.wParamFlags & PARAMFLAG_FOPT) != 0;
    parameter.iid = type.iid;
    if (!parameter.byReference && passedSize(type.type) == 0) throw HresultFailure{TYPE_E_TYPEMISMATCH};
    if (description.wParamFlags & PARAMFLAG_FHASDEFAULT) {
        parameter.defaultValue = convert(description.pparamdescex->varDefaultValue, type.type);
    }
    return parameter;
}

Member describeMember(ITypeInfo& info, UINT index) {
    const FunctionDescription function(info, index);
    if (static_cast<std::size_t>(function->cParams) > kMostArguments)
        throw HresultFailure{TYPE_E_TYPEMISMATCH};
    std::vector<std::u16string> names = namesOf(info, function->memid);
    Member member{std::move(names[0]),
                  function->memid,
                  function->invkind,
                  static_cast<std::size_t>(function->oVft),
                  {}};
    for (SHORT i = 0; i < function->cParams; ++i) {
        const ELEMDESC& element = function->lprgelemdescParam[i];
        const ResolvedType type = resolve(info, element.tdesc);
        if (element.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) {
            member.resultType = type.type;
        } else {
            member.parameters.push_back(describeParameter(std::move(names[i + 1u]), type, element.paramdesc));
        }
    }
    return member;
}

const std::u16string& nameOf(const Member* member) { return member->name; }

DISPID parameterId(const Member& member, std::u16string_view name) {
    const auto found = std::ranges::find(member.parameters, name, &Parameter::name);
    return found == member.parameters.end() || name.empty()
               ? DISPID_UNKNOWN
               : static_cast<DISPID>(found - member.parameters.begin());
}

}  // namespace

MemberTable::MemberTable(ITypeInfo& dispatchInfo) {
    HREFTYPE reference = 0;
    throwIfFailed(dispatchInfo.GetRefTypeOfImplType(static_cast<UINT>(-1), &reference));
    ComPtr<ITypeInfo> info;
    throwIfFailed(dispatchInfo.GetRefTypeInfo(reference, info.put()));
    const TypeAttributes attributes(*info);
    for (UINT index = 0; index < attributes->cFuncs; ++index)
        members_.push_back(describeMember(*info, index));
    std::ranges::stable_sort(members_, {}, &Member::id);
    for (const Member& member : members_) byName_.push_back(&member);
    std::ranges::stable_sort(byName_, {}, nameOf);
}

const Member* MemberTable::find(DISPID id, WORD flags) const {
    auto member = std::ranges::lower_bound(members_, id, {}, &Member::id);
    for (; member != members_.end() && member->id == id; ++member) {
        if ((member->kind & flags) != 0) return &*member;
    }
    return nullptr;
}

HRESULT MemberTable::findIds(std::span<const LPOLESTR> names, DISPID* ids) const noexcept {
    std::fill_n(ids, names.size(), DISPID_UNKNOWN);
    const SmallName name(names.front());
    const auto member = std::ranges::lower_bound(byName_, std::u16string_view(name), {}, nameOf);
    if (member == byName_.end() || (*member)->name != std::u16string_view(name)) return DISP_E_UNKNOWNNAME;
    ids[0] = (*member)->id;
    HRESULT result = S_OK;
    for (std::size_t i = 1; i < names.size(); ++i) {
        ids[i] = parameterId(**member, SmallName(names[i]));
        if (ids[i] == DISPID_UNKNOWN) result = DISP_E_UNKNOWNNAME;
    }
    return result;
}

}  // namespace vrx
