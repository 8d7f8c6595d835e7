// The class factory of one row of the class table.
#pragma once

#include <windows.h>

#include <unknwn.h>

#include <atomic>

#include "com/class_table.h"
#include "com/module.h"

namespace vrx {

class ClassFactory final : public IClassFactory {
  public:
    explicit ClassFactory(const ClassRow& row) : row_(row) {}
    ClassFactory(const ClassFactory&) = delete;
    ClassFactory& operator=(const ClassFactory&) = delete;

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;
    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** object) override;
    STDMETHODIMP LockServer(BOOL lock) override;

  private:
    virtual ~ClassFactory() = default;

    const ClassRow& row_;
    std::atomic<long> references_ = 0;
    ModuleLock lock_;
};

/// An interface of the factory for a class; CLASS_E_CLASSNOTAVAILABLE for one that is not in the table.
HRESULT findClassFactory(REFCLSID classId, REFIID iid, void** factory);

}  // namespace vrx
