// Classes by their ids: the row of the class table, and the factory that goes with it.
#pragma once

#include <windows.h>

#include <unknwn.h>

#include "com/class_table.h"
#include "com/counted.h"
#include "com/module.h"

namespace vrx {

class ClassFactory final : public Counted<IClassFactory> {
  public:
    explicit ClassFactory(const ClassRow& row) : row_(row) {}

    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** object) override;
    STDMETHODIMP LockServer(BOOL lock) override;

  private:
    ~ClassFactory() override = default;

    const ClassRow& row_;
    ModuleLock lock_;
};

/// The row of a class in the module's table; null for a class that is not there.
[[nodiscard]] const ClassRow* findClassRow(REFCLSID classId);

/// An interface of the factory for a class; CLASS_E_CLASSNOTAVAILABLE for one that is not in the table.
HRESULT findClassFactory(REFCLSID classId, REFIID iid, void** factory);

}  // namespace vrx
