// Reads a type library back into the shape of the published table.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include "com/com_ptr.h"
#include "type_library_table.h"

std::string narrow(const wchar_t* text);

vrx::ComPtr<ITypeLib> loadLibrary(const std::wstring& path);

/// A type by its name; empty when the library has none such.
vrx::ComPtr<ITypeInfo> findType(ITypeLib& library, const std::string& name);

/// For a dual interface, its table of methods instead of its dispatch description.
vrx::ComPtr<ITypeInfo> tableOfMethods(ITypeInfo& dispatchInfo);

TYPEATTR attributesOf(ITypeInfo& info);
std::string typeName(ITypeInfo& info, const TYPEDESC& description);

/// The members in their order; `slots` receives the offsets in the table of methods.
std::vector<published::Member> readMembers(ITypeInfo& info, std::vector<long>& slots);

/// Description of a member, or of the type itself for MEMBERID_NIL.
std::string helpOf(ITypeInfo& info, MEMBERID id);
