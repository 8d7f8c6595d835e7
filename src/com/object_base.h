// Base of every public class: reference count, interfaces, late binding, class and error information.
#pragma once

#include <windows.h>

#include <oaidl.h>
#include <ocidl.h>

#include <atomic>
#include <new>

#include "com/dispatch_invoke.h"
#include "com/guard.h"
#include "com/hresult_failure.h"
#include "com/module.h"
#include "com/type_library.h"

namespace vrx {

/// `Interface` is the dual interface. Each of `More` implements one further interface, which it names
/// `Published`, and is made from the class identity.
template <class Interface, class... More>
class ObjectBase : public Interface, public ISupportErrorInfo, public IProvideClassInfo2, public More... {
  public:
    explicit ObjectBase(const ClassIdentity& identity) : More(identity)..., identity_(identity) {}
    ObjectBase(const ObjectBase&) = delete;
    ObjectBase& operator=(const ObjectBase&) = delete;

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        if (!object) return E_POINTER;
        *object = nullptr;
        Interface* self = this;
        if (iid == __uuidof(IUnknown) || iid == __uuidof(IDispatch)) *object = self;
        const bool found =
            *object || offer<Interface>(iid, self, object) || offer<ISupportErrorInfo>(iid, this, object) ||
            offer<IProvideClassInfo>(iid, this, object) || offer<IProvideClassInfo2>(iid, this, object) ||
            (offer<typename More::Published>(iid, static_cast<More*>(this), object) || ...) ||
            (*object = findPart(iid)) != nullptr;
        if (!found) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }

    STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(++references_); }

    STDMETHODIMP_(ULONG) Release() override {
        enterAfterLeaving();
        const long left = --references_;
        if (left == 0) destroy();
        return static_cast<ULONG>(left);
    }

    STDMETHODIMP GetTypeInfoCount(UINT* count) override {
        if (!count) return E_POINTER;
        *count = 1;
        return S_OK;
    }

    STDMETHODIMP GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
        if (!info) return E_POINTER;
        *info = nullptr;
        return index == 0 ? typeInfo(identity_.interfaceId, info) : DISP_E_BADINDEX;
    }

    STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
        if (!names || !ids || count == 0) return E_INVALIDARG;
        try {
            return members().findIds({names, count}, ids);
        } catch (const HresultFailure& failure) {
            return failure.code;
        } catch (...) {
            return E_OUTOFMEMORY;
        }
    }

    STDMETHODIMP Invoke(DISPID id, REFIID iid, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                        EXCEPINFO* exception, UINT* badArgument) override {
        const Entry entry;
        try {
            const ActiveCall call(*this);
            return invokeMember(*this, identity_.name, members(),
                                {id, &iid, flags, arguments, result, exception, badArgument});
        } catch (const HresultFailure& failure) {
            return failure.code;
        } catch (...) {
            return E_OUTOFMEMORY;
        }
    }

    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) override {
        return iid == identity_.interfaceId ? S_OK : S_FALSE;
    }

    STDMETHODIMP GetClassInfo(ITypeInfo** info) override {
        if (!info) return E_POINTER;
        *info = nullptr;
        return typeInfo(identity_.classId, info);
    }

    STDMETHODIMP GetGUID(DWORD kind, GUID* guid) override {
        if (!guid) return E_POINTER;
        *guid = GUID_NULL;
        if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID) return E_INVALIDARG;
        if (!identity_.eventsId) return E_NOTIMPL;
        *guid = *identity_.eventsId;
        return S_OK;
    }

  protected:
    virtual ~ObjectBase() = default;

    /// What the object ends with others before its destructor, and everything there that is the host's code:
    /// that may leave.
    virtual void letGo() noexcept {}

    /// An interface that a piece of the object implements (part.h); null for none.
    virtual void* findPart(REFIID) { return nullptr; }

    /// Body of a method without a result.
    template <class Body>
    [[gnu::always_inline]] HRESULT run(Body&& body) noexcept {
        const Entry entry;
        return guarded(identity_, [&] {
            const ActiveCall call(*this);
            body();
        });
    }

    /// Whether only calls that run now hold the object: the host has given back its last reference in an
    /// event.
    [[nodiscard]] bool isAbandoned() const { return references_ == activeCalls_; }

    /// Body of a method that returns what `body` does; the result is cleared first.
    template <class T, class Body>
    [[gnu::always_inline]] HRESULT answer(T* result, Body&& body) noexcept {
        if (!result) return E_POINTER;
        *result = T{};
        return run([&] { storeResult(result, body()); });
    }

  private:
    /// Keeps the object alive while a call runs, whatever the host does in events.
    class ActiveCall {
      public:
        explicit ActiveCall(ObjectBase& object) : end_(end, &object) {
            object.AddRef();
            ++object.activeCalls_;
        }

      private:
        static void end(void* target) noexcept {
            auto& object = *static_cast<ObjectBase*>(target);
            --object.activeCalls_;
            object.Release();
        }

        FrameEnd end_;
    };

    template <class Offered, class Self>
    static bool offer(REFIID iid, Self* self, void** object) {
        if (iid != __uuidof(Offered)) return false;
        *object = static_cast<Offered*>(self);
        return true;
    }

    static HRESULT typeInfo(const GUID& guid, ITypeInfo** info) noexcept {
        try {
            ComPtr<ITypeInfo> found;
            const HRESULT result = findTypeInfo(guid, found);
            *info = found.detach();
            return result;
        } catch (...) {
            return E_OUTOFMEMORY;
        }
    }

    /// The table is shared by all objects of the class, and stays as long as there is one.
    const MemberTable& members() {
        const MemberTable* known = members_.load(std::memory_order_acquire);
        if (!known) {
            known = &memberTableOf(identity_.interfaceId);
            members_.store(known, std::memory_order_release);
        }
        return *known;
    }

    void destroy() noexcept {
        const Entry entry;
        // Code that runs now may take references to the object and give them back.
        references_ = kDestroying;
        try {
            const FrameEnd end([](void* target) noexcept { delete static_cast<ObjectBase*>(target); }, this);
            letGo();
        } catch (const std::bad_alloc&) {
            // Where nothing can be recorded, nothing that is left can be made good.
            letGo();
            delete this;
        }
    }

    static constexpr long kDestroying = 0x40000000;

    const ClassIdentity& identity_;
    std::atomic<long> references_ = 0;
    std::atomic<long> activeCalls_ = 0;
    std::atomic<const MemberTable*> members_ = nullptr;
    ModuleLock lock_;
};

/// Creates an object with what it needs and hands out one of its interfaces.
template <class Object, class... Needed>
HRESULT createObject(REFIID iid, void** object, const Needed&... needed) noexcept {
    const Entry entry;
    try {
        const ComPtr<Object> created(new Object(needed...));
        return created->QueryInterface(iid, object);
    } catch (const HresultFailure& failure) {
        return failure.code;
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

}  // namespace vrx
