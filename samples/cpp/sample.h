// What the C++ samples share: owners for texts and interface pointers, and failures as exceptions with the
// texts of the component.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cstdio>
#include <string>
#include <utility>

#include "VrxCommon.h"

// [failure]
/// What a failed call reports. The low word of the HRESULT is the number that Visual Basic shows as
/// Err.Number.
struct Failure {
    HRESULT result;
    std::wstring source;
    std::wstring description;

    [[nodiscard]] int number() const { return static_cast<int>(result & 0xFFFF); }
};

/// Turns a failed call into an exception. The component leaves source and description with the thread.
inline void check(HRESULT result) {
    if (SUCCEEDED(result)) return;
    Failure failure{result, L"", L""};
    IErrorInfo* info = nullptr;
    if (GetErrorInfo(0, &info) == S_OK) {
        BSTR source = nullptr;
        BSTR description = nullptr;
        info->GetSource(&source);
        info->GetDescription(&description);
        failure.source.assign(source, source + SysStringLen(source));
        failure.description.assign(description, description + SysStringLen(description));
        SysFreeString(source);
        SysFreeString(description);
        info->Release();
    }
    throw failure;
}
// [/failure]

/// A text as automation takes it.
class Text {
  public:
    Text() = default;
    explicit Text(const wchar_t* text) : text_(SysAllocString(text)) {}
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    ~Text() { SysFreeString(text_); }

    [[nodiscard]] BSTR get() const { return text_; }
    [[nodiscard]] const wchar_t* c_str() const { return text_ ? text_ : L""; }
    BSTR* put() { return &text_; }

  private:
    BSTR text_ = nullptr;
};

/// An interface pointer that is released at the end.
template <class Interface>
class Pointer {
  public:
    Pointer() = default;
    Pointer(const Pointer&) = delete;
    Pointer& operator=(const Pointer&) = delete;
    ~Pointer() { reset(); }

    [[nodiscard]] Interface* get() const { return pointer_; }
    Interface* operator->() const { return pointer_; }
    explicit operator bool() const { return pointer_ != nullptr; }
    /// The address for a call that returns a pointer.
    Interface** put() {
        reset();
        return &pointer_;
    }
    void reset() {
        if (Interface* old = std::exchange(pointer_, nullptr)) old->Release();
    }

  private:
    Interface* pointer_ = nullptr;
};

/// A variant that clears itself.
struct Value : VARIANT {
    Value() { VariantInit(this); }
    Value(const Value&) = delete;
    Value& operator=(const Value&) = delete;
    ~Value() { VariantClear(this); }
};

// [create]
/// Creates an object of a class: create(CLSID_CVrxHDR, hdr).
template <class Interface>
void create(REFCLSID classId, Pointer<Interface>& object) {
    check(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface),
                           reinterpret_cast<void**>(object.put())));
}
// [/create]

/// Runs a sample in an apartment of its own thread and prints a failure. The exit status of the program.
template <class Body>
int runSample(const char* name, Body body) {
    CoInitialize(nullptr);
    int status = 0;
    try {
        body();
    } catch (const Failure& failure) {
        const auto result = static_cast<unsigned long>(failure.result);
        if (failure.description.empty())
            std::fprintf(stderr, "%s: 0x%08lX. Is the component installed for programs of this kind?\n", name,
                         result);
        else
            std::fprintf(stderr, "%s: error %d from %ls: %ls (0x%08lX)\n", name, failure.number(),
                         failure.source.c_str(), failure.description.c_str(), result);
        status = 1;
    }
    CoUninitialize();
    return status;
}
