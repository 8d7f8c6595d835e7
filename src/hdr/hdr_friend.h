// What a CVrxHDR object and the library's own windows agree on: its events, and an interface that the type
// library does not describe. QueryInterface gives it to whoever knows its id.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include "com/class_identity.h"

namespace vrx {

/// The object's events by their dispatch ids.
inline constexpr DISPID kOnRefresh = 1;
inline constexpr DISPID kOnHeaderLoaded = 2;
inline constexpr DISPID kOnFinish = 3;

struct DECLSPEC_UUID("6F3C1E0B-2B7D-4C5A-9E61-3D0C5B7A1F42") IHdrFriend : IUnknown {
    /// The file to show next: a running load begins again with it.
    virtual HRESULT STDMETHODCALLTYPE setFileName(BSTR name) = 0;
};

/// For the list of an ObjectBase.
class HdrFriend : public IHdrFriend {
  public:
    using Published = IHdrFriend;

    explicit HdrFriend(const ClassIdentity&) {}

  protected:
    virtual ~HdrFriend() = default;
};

}  // namespace vrx

__CRT_UUID_DECL(vrx::IHdrFriend, 0x6F3C1E0B, 0x2B7D, 0x4C5A, 0x9E, 0x61, 0x3D, 0x0C, 0x5B, 0x7A, 0x1F, 0x42)
