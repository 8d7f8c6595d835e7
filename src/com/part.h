// One interface of an object as a small class of its own, for objects with many. Who asks it for another
// interface asks the object.
#pragma once

#include <windows.h>

#include <unknwn.h>

#include "com/com_ptr.h"
#include "com/entry.h"
#include "com/error_info.h"

namespace vrx {

/// A member of the object, which hands it out in `findPart`; shares its identity and its life.
template <class Interface>
class Part : public Interface {
  public:
    explicit Part(IUnknown& object) : object_(object) {}
    Part(const Part&) = delete;
    Part& operator=(const Part&) = delete;

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        return object_.QueryInterface(iid, object);
    }
    STDMETHODIMP_(ULONG) AddRef() override { return object_.AddRef(); }
    STDMETHODIMP_(ULONG) Release() override { return object_.Release(); }

  protected:
    virtual ~Part() = default;

    /// A method: answers what its body answers. The object stays meanwhile, whatever the host does in calls
    /// back.
    template <class Body>
    [[gnu::always_inline]] HRESULT run(Body&& body) noexcept {
        const Entry entry;
        try {
            const HeldReference alive{ComPtr<IUnknown>(&object_)};
            return body();
        } catch (...) {
            return hresultOfCurrentException();
        }
    }

  private:
    IUnknown& object_;
};

}  // namespace vrx
