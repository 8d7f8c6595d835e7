// What a module keeps for each of its threads: made at the thread's first need, gone with the thread or with
// the module.
#pragma once

#include <windows.h>

#include <new>

namespace vrx {

/// All of the module's PerThread objects.
class ThreadItems {
  public:
    ThreadItems(const ThreadItems&) = delete;
    ThreadItems& operator=(const ThreadItems&) = delete;

    /// Frees what they keep for the thread, which ends; for DllMain.
    static void releaseThread() noexcept;

  protected:
    ThreadItems() noexcept;
    ~ThreadItems();

  private:
    virtual void releaseItem() noexcept = 0;

    static ThreadItems* first_;
    ThreadItems* next_;
};

/// One item for each thread; an object of static duration. Finding it takes no lock.
template <class Item>
class PerThread final : private ThreadItems {
  public:
    PerThread() { InitializeCriticalSection(&guard_); }
    /// The slot itself goes with the other ones of the module.
    ~PerThread() {
        slot_ = TLS_OUT_OF_INDEXES;
        while (first_) remove(first_);
        DeleteCriticalSection(&guard_);
    }

    /// Null where there is none yet.
    [[nodiscard]] Item* find() const noexcept {
        Node* node = ofThread();
        return node ? &node->item : nullptr;
    }

    /// Null where there is no memory for it.
    [[nodiscard]] Item* findOrMake() noexcept {
        Item* item = find();
        return item || slot_ == TLS_OUT_OF_INDEXES ? item : make();
    }

  private:
    struct Node {
        Item item;
        Node* previous = nullptr;
        Node* next = nullptr;
    };

    void releaseItem() noexcept override {
        Node* node = ofThread();
        if (!node) return;
        TlsSetValue(slot_, nullptr);
        remove(node);
    }

    [[nodiscard]] Node* ofThread() const noexcept {
        return slot_ == TLS_OUT_OF_INDEXES ? nullptr : static_cast<Node*>(TlsGetValue(slot_));
    }

    [[nodiscard]] Item* make() noexcept {
        Node* made = new (std::nothrow) Node;
        if (!made) return nullptr;
        if (!TlsSetValue(slot_, made)) {
            delete made;
            return nullptr;
        }
        EnterCriticalSection(&guard_);
        made->next = first_;
        if (first_) first_->previous = made;
        first_ = made;
        LeaveCriticalSection(&guard_);
        return &made->item;
    }

    void remove(Node* node) noexcept {
        EnterCriticalSection(&guard_);
        if (node->previous) node->previous->next = node->next;
        if (node->next) node->next->previous = node->previous;
        if (first_ == node) first_ = node->next;
        LeaveCriticalSection(&guard_);
        delete node;
    }

    CRITICAL_SECTION guard_;
    DWORD slot_ = TlsAlloc();
    Node* first_ = nullptr;
};

}  // namespace vrx
