// A COM enumerator over a fixed list of elements.
#pragma once

#include <windows.h>

#include <new>
#include <utility>
#include <vector>

#include "com/com_ptr.h"
#include "com/counted.h"
#include "com/module.h"

namespace vrx {

/// `Interface` is IEnumXxx and `Item` what its Next hands out. `Element` owns what an item needs and makes
/// items: `Item item() const`, with references that the receiver releases.
template <class Interface, class Item, class Element>
class Enumerator final : public Counted<Interface> {
  public:
    Enumerator(std::vector<Element> elements, std::size_t position)
        : elements_(std::move(elements)), position_(position) {}

    /// Creates one and hands it out.
    static HRESULT create(std::vector<Element> elements, std::size_t position, Interface** enumerator) {
        *enumerator = new Enumerator(std::move(elements), position);
        (*enumerator)->AddRef();
        return S_OK;
    }

    STDMETHODIMP Next(ULONG count, Item* items, ULONG* fetched) override {
        if (fetched) *fetched = 0;
        if (!items || (!fetched && count != 1)) return E_POINTER;
        ULONG taken = 0;
        while (taken < count && position_ < elements_.size()) items[taken++] = elements_[position_++].item();
        if (fetched) *fetched = taken;
        return taken == count ? S_OK : S_FALSE;
    }

    STDMETHODIMP Skip(ULONG count) override {
        const std::size_t left = elements_.size() - position_;
        position_ += count < left ? count : left;
        return count <= left ? S_OK : S_FALSE;
    }

    STDMETHODIMP Reset() override {
        position_ = 0;
        return S_OK;
    }

    STDMETHODIMP Clone(Interface** clone) override {
        if (!clone) return E_POINTER;
        *clone = nullptr;
        try {
            return create(elements_, position_, clone);
        } catch (const std::bad_alloc&) {
            return E_OUTOFMEMORY;
        }
    }

  private:
    ~Enumerator() override = default;

    std::vector<Element> elements_;
    std::size_t position_;
    ModuleLock lock_;
};

}  // namespace vrx
