#include "type_library_reader.h"

#include <array>

#include "com/win_resource.h"

using published::Member;
using published::Parameter;
using vrx::ComPtr;

namespace {

std::string kindName(INVOKEKIND kind) {
    switch (kind) {
        case INVOKE_PROPERTYGET:
            return "get";
        case INVOKE_PROPERTYPUT:
            return "put";
        case INVOKE_PROPERTYPUTREF:
            return "putref";
        default:
            return "method";
    }
}

/// A default value as Basic writes it, only when it has the type of its parameter.
std::string defaultText(const VARIANT& value, const std::string& type) {
    const std::string plain = type.substr(0, type.find('*'));
    if (plain == "Single" && V_VT(&value) == VT_R4) return std::to_string(static_cast<long>(V_R4(&value)));
    if (plain == "Long" && V_VT(&value) == VT_I4) return std::to_string(V_I4(&value));
    if (plain == "Byte" && V_VT(&value) == VT_UI1) return std::to_string(V_UI1(&value));
    if (plain == "Boolean" && V_VT(&value) == VT_BOOL) {
        return V_BOOL(&value) == VARIANT_TRUE    ? "True"
               : V_BOOL(&value) == VARIANT_FALSE ? "False"
                                                 : "neither";
    }
    if (plain == "String" && V_VT(&value) == VT_BSTR) return '"' + narrow(V_BSTR(&value)) + '"';
    return "of type " + std::to_string(V_VT(&value));
}

std::string passing(const PARAMDESC& description, const std::string& type) {
    std::string text;
    if (description.wParamFlags & PARAMFLAG_FIN) text += "in";
    if (description.wParamFlags & PARAMFLAG_FOUT) text += ",out";
    if (description.wParamFlags & PARAMFLAG_FOPT) text += ",optional";
    if (description.wParamFlags & PARAMFLAG_FHASDEFAULT) {
        text += '=' + defaultText(description.pparamdescex->varDefaultValue, type);
    }
    return text;
}

Member readMember(ITypeInfo& info, const FUNCDESC& function) {
    std::array<BSTR, 20> names{};
    UINT named = 0;
    info.GetNames(function.memid, names.data(), static_cast<UINT>(names.size()), &named);
    Member member{function.memid, kindName(function.invkind), narrow(names[0]), {}, ""};
    const bool put = (function.invkind & (INVOKE_PROPERTYPUT | INVOKE_PROPERTYPUTREF)) != 0;
    for (SHORT i = 0; i < function.cParams; ++i) {
        const ELEMDESC& element = function.lprgelemdescParam[i];
        const std::string type = typeName(info, element.tdesc);
        if (element.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) {
            member.result = type.substr(0, type.size() - 1);
        } else {
            // The value of a put has no name in the description.
            const std::string name = put ? "value" : narrow(names[static_cast<std::size_t>(i) + 1]);
            member.parameters.push_back({name, type, passing(element.paramdesc, type)});
        }
    }
    for (BSTR name : names) SysFreeString(name);
    return member;
}

}  // namespace

std::string narrow(const wchar_t* text) {
    std::string narrowed;
    for (; text && *text; ++text) narrowed += static_cast<char>(*text);
    return narrowed;
}

ComPtr<ITypeLib> loadLibrary(const std::wstring& path) {
    ComPtr<ITypeLib> library;
    LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.put());
    return library;
}

ComPtr<ITypeInfo> findType(ITypeLib& library, const std::string& name) {
    for (UINT index = 0; index < library.GetTypeInfoCount(); ++index) {
        vrx::Bstr found;
        library.GetDocumentation(static_cast<INT>(index), found.put(), nullptr, nullptr, nullptr);
        if (narrow(found.get()) != name) continue;
        ComPtr<ITypeInfo> info;
        library.GetTypeInfo(index, info.put());
        return info;
    }
    return {};
}

ComPtr<ITypeInfo> tableOfMethods(ITypeInfo& dispatchInfo) {
    HREFTYPE reference = 0;
    ComPtr<ITypeInfo> info;
    if (SUCCEEDED(dispatchInfo.GetRefTypeOfImplType(static_cast<UINT>(-1), &reference))) {
        dispatchInfo.GetRefTypeInfo(reference, info.put());
    }
    return info;
}

TYPEATTR attributesOf(ITypeInfo& info) {
    TYPEATTR* attributes = nullptr;
    info.GetTypeAttr(&attributes);
    const TYPEATTR copy = *attributes;
    info.ReleaseTypeAttr(attributes);
    return copy;
}

std::string typeName(ITypeInfo& info, const TYPEDESC& description) {
    switch (description.vt) {
        case VT_I2:
            return "Integer";
        case VT_I4:
            return "Long";
        case VT_R4:
            return "Single";
        case VT_UI1:
            return "Byte";
        case VT_BOOL:
            return "Boolean";
        case VT_BSTR:
            return "String";
        case VT_VARIANT:
            return "Variant";
        case VT_HRESULT:
            return "HRESULT";
        case VT_PTR:
            return typeName(info, *description.lptdesc) + '*';
        case VT_SAFEARRAY:
            return typeName(info, *description.lptdesc) + "()";
        case VT_CARRAY: {
            const ARRAYDESC& array = *description.lpadesc;
            return typeName(info, array.tdescElem) + '(' + std::to_string(array.rgbounds[0].cElements) + ')';
        }
        case VT_USERDEFINED: {
            ComPtr<ITypeInfo> referred;
            if (FAILED(info.GetRefTypeInfo(description.hreftype, referred.put()))) return "unresolved";
            vrx::Bstr name;
            referred->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr);
            return narrow(name.get());
        }
        default:
            return "type " + std::to_string(description.vt);
    }
}

std::vector<Member> readMembers(ITypeInfo& info, std::vector<long>& slots) {
    std::vector<Member> members;
    for (UINT index = 0; index < attributesOf(info).cFuncs; ++index) {
        FUNCDESC* function = nullptr;
        if (FAILED(info.GetFuncDesc(index, &function))) break;
        members.push_back(readMember(info, *function));
        slots.push_back(function->oVft);
        info.ReleaseFuncDesc(function);
    }
    return members;
}

std::string helpOf(ITypeInfo& info, MEMBERID id) {
    vrx::Bstr help;
    info.GetDocumentation(id, nullptr, help.put(), nullptr, nullptr);
    return narrow(help.get());
}
