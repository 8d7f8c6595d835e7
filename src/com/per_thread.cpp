#include "com/per_thread.h"

namespace vrx {

ThreadItems* ThreadItems::first_ = nullptr;

ThreadItems::ThreadItems() noexcept : next_(first_) { first_ = this; }

ThreadItems::~ThreadItems() {
    ThreadItems** link = &first_;
    while (*link != this) link = &(*link)->next_;
    *link = next_;
}

void ThreadItems::releaseThread() noexcept {
    for (ThreadItems* items = first_; items; items = items->next_) items->releaseItem();
}

}  // namespace vrx
