// help_contexts LIBRARY... - prints the help context, help file and name of each type library, and of
// everything in it that has a page of its own: types, their members and events.

#include <windows.h>

#include <oleauto.h>

#include <cstdio>

namespace {

void print(ITypeInfo& type, MEMBERID id) {
    BSTR name = nullptr;
    BSTR file = nullptr;
    DWORD context = 0;
    type.GetDocumentation(id, &name, nullptr, &context, &file);
    std::printf("%lu\t%ls\t%ls\n", context, file ? file : L"", name ? name : L"");
    SysFreeString(name);
    SysFreeString(file);
}

// A dual interface lists the members that it has from IDispatch as well; they are the system's.
bool isOurs(const FUNCDESC& function) { return (function.wFuncFlags & FUNCFLAG_FRESTRICTED) == 0; }

void printType(ITypeInfo& type) {
    print(type, MEMBERID_NIL);
    TYPEATTR* attributes = nullptr;
    if (FAILED(type.GetTypeAttr(&attributes))) return;
    for (UINT i = 0; i < attributes->cFuncs; ++i) {
        FUNCDESC* function = nullptr;
        if (FAILED(type.GetFuncDesc(i, &function))) continue;
        if (isOurs(*function)) print(type, function->memid);
        type.ReleaseFuncDesc(function);
    }
    type.ReleaseTypeAttr(attributes);
}

bool printLibrary(const wchar_t* path) {
    ITypeLib* library = nullptr;
    if (FAILED(LoadTypeLibEx(path, REGKIND_NONE, &library))) return false;
    for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
        ITypeInfo* type = nullptr;
        if (FAILED(library->GetTypeInfo(i, &type))) return false;
        printType(*type);
        type->Release();
    }
    library->Release();
    return true;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    CoInitialize(nullptr);
    bool read = count > 1;
    for (int i = 1; i < count; ++i) read = printLibrary(arguments[i]) && read;
    CoUninitialize();
    return read ? 0 : 1;
}
