// Resources of the system that end with their frame, however that ends.
#pragma once

#include <utility>

#include "com/entry.h"

namespace vrx {

/// Like a Held owner of the resource, but needs no memory for itself. May be empty.
template <class Owner>
class HeldResource {
  public:
    explicit HeldResource(Owner owner) : handle_(owner.get()), end_(close, handle_) {
        static_cast<void>(owner.release());
    }
    HeldResource(const HeldResource&) = delete;
    HeldResource& operator=(const HeldResource&) = delete;

    [[nodiscard]] auto get() const { return handle_; }
    explicit operator bool() const { return handle_ != nullptr; }

  private:
    using Handle = decltype(std::declval<Owner>().get());

    static void close(void* handle) noexcept { const Owner owner(static_cast<Handle>(handle)); }

    Handle handle_;
    FrameEnd end_;
};

}  // namespace vrx
