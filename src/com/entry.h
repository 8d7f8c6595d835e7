// Calls from the host into the library and back. The host's code may leave our frames without returning to
// them: by longjmp, or by an exception that only its own frames know. No destructor runs then. So what must
// happen at the end of a frame is known to its thread, and is made good at the thread's next entry: the
// frames of an earlier entry are gone when they would lie deeper on the stack than those of the new one.
#pragma once

#include <cstddef>
#include <memory>
#include <utility>

#include "com/com_ptr.h"
#include "com/fp_mode.h"

namespace vrx {

struct StackCalls;

/// Stands first in every function that the host calls. Makes good what frames that are gone have left, and
/// sets our floating-point mode; the host's comes back at the end. An entry made by our own code does nothing
/// more.
class Entry {
  public:
    /// `caller` is where the frame of the function begins.
    explicit Entry(const void* caller = __builtin_dwarf_cfa()) noexcept;
    Entry(const Entry&) = delete;
    Entry& operator=(const Entry&) = delete;
    ~Entry();

  private:
    friend struct StackCalls;

    StackCalls* calls_ = nullptr;  // null without a record of this entry
    unsigned number_ = 0;
    std::size_t depth_ = 0;
    FloatingPointMode host_;
};

/// Stands around every call into the host (an event sink, dispatched messages), in the host's floating-point
/// mode. A mode that the host changes in there holds from then on.
class HostCall {
  public:
    HostCall() noexcept;
    HostCall(const HostCall&) = delete;
    HostCall& operator=(const HostCall&) = delete;
    ~HostCall();

  private:
    StackCalls* calls_;  // null where no entry is known
    std::size_t depth_ = 0;
};

/// Another interface of an object that may be the host's; empty when it has none such. Whoever asks holds
/// nothing for it: asking is the host's code.
template <class Interface>
[[nodiscard]] ComPtr<Interface> interfaceOf(IUnknown* object) {
    if (!object) return {};
    const HostCall host;
    ComPtr<Interface> found;
    object->QueryInterface(__uuidof(Interface), reinterpret_cast<void**>(found.put()));
    return found;
}

/// When the host's code has run last on this stack: another value each time. Not known without a record.
struct HostTurn {
    const void* stack = nullptr;
    unsigned number = 0;

    [[nodiscard]] bool isKnown() const { return stack != nullptr; }
    bool operator==(const HostTurn&) const = default;
};
[[nodiscard]] HostTurn lastHostTurn() noexcept;

/// What the host answers to a call.
template <class Call>
auto callHost(Call&& call) {
    const HostCall host;
    return call();
}

/// For functions that a host calls at any time, also for what it has left: an entry where there may be
/// something to make good.
void enterAfterLeaving(const void* caller = __builtin_dwarf_cfa()) noexcept;

/// Does something at the end of the frame that it stands in, however that ends. What it is done to must not
/// lie in a frame.
class FrameEnd {
  public:
    using Action = void (*)(void* target) noexcept;

    /// Throws std::bad_alloc, and does nothing then.
    FrameEnd(Action action, void* target);
    FrameEnd(const FrameEnd&) = delete;
    FrameEnd& operator=(const FrameEnd&) = delete;
    ~FrameEnd();

  private:
    StackCalls* calls_;
    std::size_t place_ = 0;
};

/// A local variable that ends with its frame, however that ends: for everything that owns something and is
/// there while the host's code may run.
template <class T>
class Held {
  public:
    template <class... Arguments>
    explicit Held(Arguments&&... arguments)
        : Held(FromObject{}, std::make_unique<T>(std::forward<Arguments>(arguments)...)) {}
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;

    T* operator->() const { return object_; }
    T& operator*() const { return *object_; }

  private:
    struct FromObject {};

    Held(FromObject, std::unique_ptr<T> object)
        : object_(object.get()),
          end_([](void* target) noexcept { delete static_cast<T*>(target); }, object_) {
        static_cast<void>(object.release());
    }

    T* object_;
    FrameEnd end_;
};

/// A reference to an object that ends with its frame, like a Held one, but needs no memory for itself.
template <class Interface>
class HeldReference {
  public:
    /// Empty for an empty one.
    explicit HeldReference(ComPtr<Interface> object) : object_(object.get()), end_(release, object_) {
        static_cast<void>(object.detach());
    }
    HeldReference(const HeldReference&) = delete;
    HeldReference& operator=(const HeldReference&) = delete;

    [[nodiscard]] Interface* get() const { return object_; }
    Interface* operator->() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }

  private:
    static void release(void* object) noexcept {
        if (object) static_cast<Interface*>(object)->Release();
    }

    Interface* object_;
    FrameEnd end_;
};

/// Sets a flag for as long as its frame runs, however that ends. The flag must not lie in a frame.
class HeldFlag {
  public:
    explicit HeldFlag(bool& flag)
        : end_([](void* target) noexcept { *static_cast<bool*>(target) = false; }, &flag) {
        flag = true;
    }

  private:
    FrameEnd end_;
};

}  // namespace vrx
