#include "com/class_factory.h"

#include <new>

#include "com/com_ptr.h"

namespace vrx {

STDMETHODIMP ClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    return outer ? CLASS_E_NOAGGREGATION : row_.create(iid, object);
}

STDMETHODIMP ClassFactory::LockServer(BOOL lock) {
    lock ? lockModule() : unlockModule();
    return S_OK;
}

const ClassRow* findClassRow(REFCLSID classId) {
    for (const ClassRow& row : kPublication.classes) {
        if (row.classId == classId) return &row;
    }
    return nullptr;
}

HRESULT findClassFactory(REFCLSID classId, REFIID iid, void** factory) {
    if (!factory) return E_POINTER;
    *factory = nullptr;
    const ClassRow* row = findClassRow(classId);
    if (!row) return CLASS_E_CLASSNOTAVAILABLE;
    const ComPtr<ClassFactory> created(new (std::nothrow) ClassFactory(*row));
    return created ? created->QueryInterface(iid, factory) : E_OUTOFMEMORY;
}

}  // namespace vrx
