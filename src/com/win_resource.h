// Owners of operating-system resources: one generic owner, one alias line for each kind.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <utility>

namespace vrx {

/// Owns one resource and gives it back with `close`. Empty is the value-initialised handle.
template <class Handle, void (*close)(Handle)>
class Resource {
  public:
    Resource() = default;
    explicit Resource(Handle handle) : handle_(handle) {}
    Resource(Resource&& other) noexcept : handle_(other.release()) {}
    Resource& operator=(Resource&& other) noexcept {
        if (this != &other) reset(other.release());
        return *this;
    }
    ~Resource() { reset(); }

    [[nodiscard]] Handle get() const { return handle_; }
    explicit operator bool() const { return handle_ != Handle{}; }

    [[nodiscard]] Handle release() { return std::exchange(handle_, Handle{}); }
    void reset(Handle handle = {}) {
        if (handle_ != Handle{}) close(handle_);
        handle_ = handle;
    }
    /// The address for a call that returns a handle; what was owned before is given back.
    [[nodiscard]] Handle* put() {
        reset();
        return &handle_;
    }

  private:
    Handle handle_{};
};

namespace closing {
inline void key(HKEY handle) { RegCloseKey(handle); }
inline void handle(HANDLE handle) { CloseHandle(handle); }
inline void find(HANDLE handle) { FindClose(handle); }
inline void module(HMODULE handle) { FreeLibrary(handle); }
inline void window(HWND handle) { DestroyWindow(handle); }
inline void memoryDc(HDC handle) { DeleteDC(handle); }
inline void bitmap(HBITMAP handle) { DeleteObject(handle); }
inline void icon(HICON handle) { DestroyIcon(handle); }
inline void font(HFONT handle) { DeleteObject(handle); }
inline void pen(HPEN handle) { DeleteObject(handle); }
inline void brush(HBRUSH handle) { DeleteObject(handle); }
inline void text(BSTR handle) { SysFreeString(handle); }
inline void array(SAFEARRAY* handle) { SafeArrayDestroy(handle); }
}  // namespace closing

using RegistryKey = Resource<HKEY, closing::key>;
using KernelHandle = Resource<HANDLE, closing::handle>;
using FindHandle = Resource<HANDLE, closing::find>;
using Module = Resource<HMODULE, closing::module>;
using Window = Resource<HWND, closing::window>;
using MemoryDc = Resource<HDC, closing::memoryDc>;
using Bitmap = Resource<HBITMAP, closing::bitmap>;
using Icon = Resource<HICON, closing::icon>;
using Font = Resource<HFONT, closing::font>;
using Pen = Resource<HPEN, closing::pen>;
using Brush = Resource<HBRUSH, closing::brush>;
using Bstr = Resource<BSTR, closing::text>;
using SafeArray = Resource<SAFEARRAY*, closing::array>;

/// An opened file or search: the calls that open them answer INVALID_HANDLE_VALUE for none.
template <class Owner = KernelHandle>
[[nodiscard]] Owner validHandle(HANDLE handle) {
    return Owner(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

}  // namespace vrx
