// Saving the kept properties to a stream and to a storage of the container's.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include "com/part.h"
#include "dialogs/control/control_body.h"

namespace vrx {

class StreamPersistencePart final : public Part<IPersistStreamInit> {
  public:
    StreamPersistencePart(IUnknown& object, const CLSID& classId, ControlBody& body)
        : Part(object), classId_(classId), body_(body) {}

    STDMETHODIMP GetClassID(CLSID* classId) override;
    STDMETHODIMP IsDirty() override;
    STDMETHODIMP Load(IStream* stream) override;
    STDMETHODIMP Save(IStream* stream, BOOL clearDirty) override;
    STDMETHODIMP GetSizeMax(ULARGE_INTEGER* size) override;
    STDMETHODIMP InitNew() override;

  private:
    const CLSID& classId_;
    ControlBody& body_;
};

/// Reads and writes whole; between calls it holds no storage.
class StoragePersistencePart final : public Part<IPersistStorage> {
  public:
    StoragePersistencePart(IUnknown& object, const CLSID& classId, ControlBody& body)
        : Part(object), classId_(classId), body_(body) {}

    STDMETHODIMP GetClassID(CLSID* classId) override;
    STDMETHODIMP IsDirty() override;
    STDMETHODIMP InitNew(IStorage* storage) override;
    STDMETHODIMP Load(IStorage* storage) override;
    STDMETHODIMP Save(IStorage* storage, BOOL sameAsLoad) override;
    STDMETHODIMP SaveCompleted(IStorage* storage) override;
    STDMETHODIMP HandsOffStorage() override;

  private:
    /// What was saved and is not known to have arrived.
    enum class Pending { Nothing, Document, Copy };

    const CLSID& classId_;
    ControlBody& body_;
    bool initialized_ = false;
    bool handsOff_ = false;
    Pending pending_ = Pending::Nothing;
};

}  // namespace vrx
