// The library's own type information, loaded from this module's resources, so that it works unregistered as
// well.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include "com/com_ptr.h"

namespace vrx {

class MemberTable;

/// Resource number of the module's own type library.
constexpr int kOwnTypeLibrary = 1;

/// Loads a type library from the module, without registering it.
HRESULT loadTypeLibrary(int number, ComPtr<ITypeLib>& library);

/// Description of a published interface or class; loaded once in a process.
HRESULT findTypeInfo(const GUID& guid, ComPtr<ITypeInfo>& info);

/// Members of a published dual interface; described once in a process. Throws HresultFailure.
const MemberTable& memberTableOf(const IID& iid);

/// Gives the type information back unless the module is in use; false where it is. Asked and done under one
/// lock, as an object that is made meanwhile would go on with what is given back.
[[nodiscard]] bool releaseTypeInformationIfUnused();

}  // namespace vrx
