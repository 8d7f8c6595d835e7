// Base of small objects that others hold for themselves: one interface and a reference count.
#pragma once

#include <unknwn.h>

#include <atomic>

namespace vrx {

/// `More` are further names that the interface answers to: those that it extends.
template <class Interface, class... More>
class Counted : public Interface {
  public:
    Counted() = default;
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        if (!object) return E_POINTER;
        const bool known =
            iid == __uuidof(IUnknown) || iid == __uuidof(Interface) || ((iid == __uuidof(More)) || ...);
        *object = known ? this : nullptr;
        if (known) AddRef();
        return known ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
    STDMETHODIMP_(ULONG) Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

  protected:
    virtual ~Counted() = default;

  private:
    std::atomic<ULONG> references_ = 0;
};

}  // namespace vrx
