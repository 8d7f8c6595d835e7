#include "com/member_table.h"

#include "com/com_ptr.h"
#include "com/hresult_failure.h"

namespace vrx {
namespace {

/// A type as a variant names it, and the interface for an object.
struct ResolvedType {
    VARTYPE type = VT_EMPTY;
    unsigned pointers = 0;
    IID iid = {};
};

class TypeAttributes {
  public:
    explicit TypeAttributes(ITypeInfo& info) : info_(info) { throwIfFailed(info.GetTypeAttr(&attributes_)); }
    TypeAttributes(const TypeAttributes&) = delete;
    TypeAttributes& operator=(const TypeAttributes&) = delete;
    ~TypeAttributes() { info_.ReleaseTypeAttr(attributes_); }
    const TYPEATTR* operator->() const { return attributes_; }

  private:
    ITypeInfo& info_;
    TYPEATTR* attributes_ = nullptr;
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

Parameter describeParameter(const ResolvedType& type, const PARAMDESC& description) {
    Parameter parameter;
    parameter.type = type.type;
    parameter.byReference = isReference(type);
    parameter.output = (description.wParamFlags & PARAMFLAG_FOUT) != 0;
    parameter.optional = (description.wParamFlags & PARAMFLAG_FOPT) != 0;
    parameter.iid = type.iid;
    if (description.wParamFlags & PARAMFLAG_FHASDEFAULT) {
        parameter.defaultValue = Variant(description.pparamdescex->varDefaultValue);
    }
    return parameter;
}

Member describeMember(ITypeInfo& info, UINT index) {
    const FunctionDescription function(info, index);
    Member member{function->memid, function->invkind, static_cast<ULONG_PTR>(function->oVft), {}};
    for (SHORT i = 0; i < function->cParams; ++i) {
        const ELEMDESC& element = function->lprgelemdescParam[i];
        const ResolvedType type = resolve(info, element.tdesc);
        if (element.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) {
            member.resultType = type.type;
        } else {
            member.parameters.push_back(describeParameter(type, element.paramdesc));
        }
    }
    return member;
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
}

const Member* MemberTable::find(DISPID id, WORD flags) const {
    for (const Member& member : members_) {
        if (member.id == id && (member.kind & flags) != 0) return &member;
    }
    return nullptr;
}

}  // namespace vrx
