#include "dialogs/control/persistence.h"

#include "com/hresult_failure.h"
#include "dialogs/control/property_stream.h"

namespace vrx {
namespace {

constexpr wchar_t kContents[] = L"Contents";

HRESULT copyClassId(const CLSID& own, CLSID* classId) {
    if (!classId) return E_POINTER;
    *classId = own;
    return S_OK;
}

HRESULT dirtiness(const ControlBody& body) { return body.isChanged() ? S_OK : S_FALSE; }

ComPtr<IStream> openContents(IStorage& storage) {
    ComPtr<IStream> stream;
    throwIfFailed(callHost([&] {
        return storage.OpenStream(kContents, nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0, stream.put());
    }));
    if (!stream) throw HresultFailure{E_UNEXPECTED};
    return stream;
}

ComPtr<IStream> createContents(IStorage& storage) {
    ComPtr<IStream> stream;
    throwIfFailed(callHost([&] {
        return storage.CreateStream(kContents, STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE, 0, 0,
                                    stream.put());
    }));
    if (!stream) throw HresultFailure{E_UNEXPECTED};
    return stream;
}

}  // namespace

STDMETHODIMP StreamPersistencePart::GetClassID(CLSID* classId) { return copyClassId(classId_, classId); }

STDMETHODIMP StreamPersistencePart::IsDirty() { return dirtiness(body_); }

STDMETHODIMP StreamPersistencePart::Load(IStream* stream) {
    if (!stream) return E_POINTER;
    return run([&] {
        body_.setKeptProperties(readProperties(*stream));
        return S_OK;
    });
}

STDMETHODIMP StreamPersistencePart::Save(IStream* stream, BOOL clearDirty) {
    if (!stream) return E_POINTER;
    return run([&] {
        writeProperties(*stream, body_.keptProperties());
        if (clearDirty) body_.markSaved();
        return S_OK;
    });
}

STDMETHODIMP StreamPersistencePart::GetSizeMax(ULARGE_INTEGER* size) {
    if (!size) return E_POINTER;
    size->QuadPart = 0;
    return run([&] {
        size->QuadPart = propertyBytes(body_.keptProperties()).size();
        return S_OK;
    });
}

STDMETHODIMP StreamPersistencePart::InitNew() {
    return run([&] {
        body_.setKeptProperties({});
        return S_OK;
    });
}

STDMETHODIMP StoragePersistencePart::GetClassID(CLSID* classId) { return copyClassId(classId_, classId); }

STDMETHODIMP StoragePersistencePart::IsDirty() { return dirtiness(body_); }

STDMETHODIMP StoragePersistencePart::InitNew(IStorage* storage) {
    if (!storage) return E_POINTER;
    if (initialized_) return CO_E_ALREADYINITIALIZED;
    return run([&] {
        body_.setKeptProperties({});
        initialized_ = true;
        return S_OK;
    });
}

STDMETHODIMP StoragePersistencePart::Load(IStorage* storage) {
    if (!storage) return E_POINTER;
    if (initialized_) return CO_E_ALREADYINITIALIZED;
    return run([&] {
        const HeldReference stream(openContents(*storage));
        body_.setKeptProperties(readProperties(*stream.get()));
        initialized_ = true;
        return S_OK;
    });
}

STDMETHODIMP StoragePersistencePart::Save(IStorage* storage, BOOL sameAsLoad) {
    if (!storage) return E_POINTER;
    if (handsOff_) return E_UNEXPECTED;
    return run([&] {
        const HeldReference stream(createContents(*storage));
        writeProperties(*stream.get(), body_.keptProperties());
        pending_ = sameAsLoad ? Pending::Document : Pending::Copy;
        return S_OK;
    });
}

/// A copy that does not become the document leaves the document as old as it was.
STDMETHODIMP StoragePersistencePart::SaveCompleted(IStorage* storage) {
    if (handsOff_ && !storage) return E_INVALIDARG;
    if (!handsOff_ && pending_ == Pending::Nothing) return E_UNEXPECTED;
    return run([&] {
        if (pending_ == Pending::Document || (pending_ == Pending::Copy && storage)) body_.markSaved();
        pending_ = Pending::Nothing;
        handsOff_ = false;
        return S_OK;
    });
}

STDMETHODIMP StoragePersistencePart::HandsOffStorage() {
    handsOff_ = true;
    return S_OK;
}

}  // namespace vrx
