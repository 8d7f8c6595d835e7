// The attributes of a type description, given back to it when they go out of scope.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include "com/hresult_failure.h"

namespace vrx {

class TypeAttributes {
  public:
    /// Throws HresultFailure.
    explicit TypeAttributes(ITypeInfo& info) : info_(info) { throwIfFailed(info.GetTypeAttr(&attributes_)); }
    TypeAttributes(const TypeAttributes&) = delete;
    TypeAttributes& operator=(const TypeAttributes&) = delete;
    ~TypeAttributes() { info_.ReleaseTypeAttr(attributes_); }

    const TYPEATTR* operator->() const { return attributes_; }

  private:
    ITypeInfo& info_;
    TYPEATTR* attributes_ = nullptr;
};

}  // namespace vrx
