// A reference to a COM object that is given back when it goes out of scope.
#pragma once

#include <unknwn.h>

#include <utility>

namespace vrx {

template <class T>
class ComPtr {
  public:
    ComPtr() = default;
    /// Adds a reference of its own.
    explicit ComPtr(T* object) : object_(object) {
        if (object_) object_->AddRef();
    }
    ComPtr(const ComPtr& other) : ComPtr(other.object_) {}
    ComPtr(ComPtr&& other) noexcept : object_(other.detach()) {}
    ComPtr& operator=(ComPtr other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~ComPtr() {
        if (object_) object_->Release();
    }

    /// Takes over a reference that the caller holds.
    [[nodiscard]] static ComPtr attach(T* object) {
        ComPtr owner;
        owner.object_ = object;
        return owner;
    }
    [[nodiscard]] T* detach() { return std::exchange(object_, nullptr); }

    [[nodiscard]] T* get() const { return object_; }
    T* operator->() const { return object_; }
    T& operator*() const { return *object_; }
    explicit operator bool() const { return object_ != nullptr; }

    /// The address for a call that returns an object; what was held before is released.
    [[nodiscard]] T** put() {
        *this = ComPtr();
        return &object_;
    }

    /// Another interface of the object; empty when it has none such.
    template <class Other>
    [[nodiscard]] ComPtr<Other> as() const {
        ComPtr<Other> other;
        if (object_) object_->QueryInterface(__uuidof(Other), reinterpret_cast<void**>(other.put()));
        return other;
    }

  private:
    T* object_ = nullptr;
};

}  // namespace vrx
