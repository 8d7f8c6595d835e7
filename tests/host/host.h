// What a host does with the component, in short: load it, create objects, call them late-bound.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "com/com_ptr.h"
#include "com/variant_convert.h"

namespace host {

/// A DLL with classes beside the test program, and its entry points.
class Component {
  public:
    explicit Component(const wchar_t* fileName);

    [[nodiscard]] const std::wstring& path() const { return path_; }
    [[nodiscard]] HRESULT registerMachine() const;
    [[nodiscard]] HRESULT unregisterMachine() const;
    [[nodiscard]] HRESULT install(bool install, const wchar_t* commandLine) const;
    [[nodiscard]] HRESULT canUnload() const;
    HRESULT classObject(REFCLSID classId, REFIID iid, void** object) const;

  private:
    template <class Function>
    Function find(const char* name) const;

    std::wstring path_;
    HMODULE module_;
};

/// VrxCommon.dll and VrxSettings.dll.
const Component& component();
const Component& settingsComponent();

/// Folder of the test program, without a backslash at the end.
std::wstring programFolder();

/// An object by its program id; empty when it cannot be created.
vrx::ComPtr<IDispatch> create(const wchar_t* programId);

/// The same by its class id, from the component without the registry.
vrx::ComPtr<IDispatch> createDirectly(REFCLSID classId);

/// What a late-bound call gave.
struct Outcome {
    HRESULT code = E_FAIL;
    vrx::Variant result;
    HRESULT scode = S_OK;
    WORD wCode = 0;
    std::wstring source;
    std::wstring description;
    std::wstring helpFile;
    DWORD helpContext = 0;
    UINT badArgument = 99;
};

DISPID idOf(IDispatch& object, const wchar_t* name);

/// Calls with positional arguments in their order; the variants stay the caller's.
Outcome call(IDispatch& object, const wchar_t* name, std::initializer_list<VARIANT> arguments = {},
             WORD flags = DISPATCH_METHOD);

/// Calls with these DISPPARAMS as they are.
Outcome invoke(IDispatch& object, DISPID id, WORD flags, DISPPARAMS arguments);

Outcome get(IDispatch& object, const wchar_t* name);
Outcome put(IDispatch& object, const wchar_t* name, VARIANT value, WORD flags = DISPATCH_PROPERTYPUT);

VARIANT integer(long value);
VARIANT number(double value);
VARIANT truth(bool value);
VARIANT omitted();
VARIANT reference(VARIANT& variable);
VARIANT typedReference(VARTYPE type, void* variable);

/// Owns a text for as long as the full expression lasts that passes it on.
class Text {
  public:
    explicit Text(const wchar_t* text);
    ~Text() { VariantClear(&value_); }
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    operator VARIANT() const { return value_; }

  private:
    VARIANT value_;
};

}  // namespace host
