#include "host.h"

#include <algorithm>

namespace host {

Component::Component(const wchar_t* fileName)
    : path_(programFolder() + L'\\' + fileName), module_(LoadLibraryW(path_.c_str())) {}

template <class Function>
Function Component::find(const char* name) const {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
}

HRESULT Component::registerMachine() const { return find<HRESULT(WINAPI*)()>("DllRegisterServer")(); }
HRESULT Component::unregisterMachine() const { return find<HRESULT(WINAPI*)()>("DllUnregisterServer")(); }
HRESULT Component::canUnload() const { return find<HRESULT(WINAPI*)()>("DllCanUnloadNow")(); }

HRESULT Component::install(bool install, const wchar_t* commandLine) const {
    return find<HRESULT(WINAPI*)(BOOL, PCWSTR)>("DllInstall")(install, commandLine);
}

HRESULT Component::classObject(REFCLSID classId, REFIID iid, void** object) const {
    return find<HRESULT(WINAPI*)(REFCLSID, REFIID, void**)>("DllGetClassObject")(classId, iid, object);
}

const Component& component() {
    static const Component loaded(L"VrxCommon.dll");
    return loaded;
}

const Component& settingsComponent() {
    static const Component loaded(L"VrxSettings.dll");
    return loaded;
}

std::wstring programFolder() {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    const std::wstring text = path;
    return text.substr(0, text.find_last_of(L'\\'));
}

vrx::ComPtr<IDispatch> create(const wchar_t* programId) {
    CLSID classId{};
    vrx::ComPtr<IDispatch> object;
    if (FAILED(CLSIDFromProgID(programId, &classId))) return object;
    CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                     reinterpret_cast<void**>(object.put()));
    return object;
}

vrx::ComPtr<IDispatch> createDirectly(REFCLSID classId) {
    vrx::ComPtr<IClassFactory> factory;
    vrx::ComPtr<IDispatch> object;
    component().classObject(classId, IID_IClassFactory, reinterpret_cast<void**>(factory.put()));
    if (factory) factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(object.put()));
    return object;
}

DISPID idOf(IDispatch& object, const wchar_t* name) {
    DISPID id = DISPID_UNKNOWN;
    wchar_t* names[] = {const_cast<wchar_t*>(name)};
    object.GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
    return id;
}

Outcome invoke(IDispatch& object, DISPID id, WORD flags, DISPPARAMS arguments) {
    Outcome outcome;
    EXCEPINFO exception{};
    outcome.code = object.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &arguments, &outcome.result.get(),
                                 &exception, &outcome.badArgument);
    outcome.scode = exception.scode;
    outcome.wCode = exception.wCode;
    const vrx::Bstr source(exception.bstrSource);
    const vrx::Bstr description(exception.bstrDescription);
    const vrx::Bstr helpFile(exception.bstrHelpFile);
    if (source) outcome.source = source.get();
    if (description) outcome.description = description.get();
    if (helpFile) outcome.helpFile = helpFile.get();
    outcome.helpContext = exception.dwHelpContext;
    return outcome;
}

Outcome call(IDispatch& object, const wchar_t* name, std::initializer_list<VARIANT> arguments, WORD flags) {
    std::vector<VARIANT> reversed(arguments);
    std::ranges::reverse(reversed);
    return invoke(object, idOf(object, name), flags,
                  {reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0});
}

Outcome get(IDispatch& object, const wchar_t* name) { return call(object, name, {}, DISPATCH_PROPERTYGET); }

Outcome put(IDispatch& object, const wchar_t* name, VARIANT value, WORD flags) {
    DISPID named = DISPID_PROPERTYPUT;
    return invoke(object, idOf(object, name), flags, {&value, &named, 1, 1});
}

VARIANT integer(long value) {
    VARIANT made{};
    V_VT(&made) = VT_I4;
    V_I4(&made) = value;
    return made;
}

VARIANT number(double value) {
    VARIANT made{};
    V_VT(&made) = VT_R8;
    V_R8(&made) = value;
    return made;
}

VARIANT truth(bool value) {
    VARIANT made{};
    V_VT(&made) = VT_BOOL;
    V_BOOL(&made) = value ? VARIANT_TRUE : VARIANT_FALSE;
    return made;
}

VARIANT omitted() {
    VARIANT made{};
    V_VT(&made) = VT_ERROR;
    V_ERROR(&made) = DISP_E_PARAMNOTFOUND;
    return made;
}

VARIANT reference(VARIANT& variable) { return typedReference(VT_VARIANT, &variable); }

VARIANT typedReference(VARTYPE type, void* variable) {
    VARIANT made{};
    V_VT(&made) = VT_BYREF | type;
    V_BYREF(&made) = variable;
    return made;
}

Text::Text(const wchar_t* text) {
    VariantInit(&value_);
    V_VT(&value_) = VT_BSTR;
    V_BSTR(&value_) = SysAllocString(text);
}

}  // namespace host
