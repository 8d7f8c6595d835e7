#include "com/entry.h"

#include <windows.h>

#include <atomic>
#include <cstddef>
#include <new>
#include <utility>
#include <vector>

#include "com/per_thread.h"

namespace vrx {
namespace {

constexpr std::size_t kUsualDepth = 64;

/// An entry that is running, as far as anybody knows.
struct EntryRecord {
    const void* caller;
    const Entry* entry;
    unsigned number;
    FloatingPointMode host;
    std::size_t ends;  // how many frame ends there were before it
};

struct EndRecord {
    FrameEnd::Action action;
    void* target;
};

/// Tells stacks apart: each fiber of a host has its own.
const void* currentStack() {
    const void* base;
#ifdef _WIN64
    __asm__ __volatile__("movq %%gs:8, %0" : "=r"(base));
#else
    __asm__ __volatile__("movl %%fs:4, %0" : "=r"(base));
#endif
    return base;
}

/// How many records there are in all threads.
std::atomic<long> recordedEntries = 0;

}  // namespace

/// What is known of the calls on one stack, the outermost first.
struct StackCalls {
    const void* stack = currentStack();
    std::vector<EntryRecord> entries;
    std::vector<EndRecord> ends;
    bool hostRuns = true;
    unsigned lastNumber = 0;  // of an entry or of a call into the host
    StackCalls* nextOfThread = nullptr;

    StackCalls() {
        entries.reserve(kUsualDepth);
        ends.reserve(kUsualDepth);
    }

    /// Whether the library's own code makes the entry.
    [[nodiscard]] bool isNested(const Entry& entry, const void* caller) const {
        return !hostRuns && !entries.empty() && !isGone(entries.back(), entry, caller);
    }

    /// Two entries that both run cannot begin at the same place; but one can be part of the other's function.
    [[nodiscard]] bool isGone(const EntryRecord& record, const Entry& entry, const void* caller) const {
        if (record.caller < caller) return true;
        if (record.caller == caller && (hostRuns || record.entry == &entry)) return true;
        // The new frames may lie deeper than those that are gone, and over them.
        return record.entry->calls_ != this || record.entry->number_ != record.number;
    }

    /// Records the entry in place of those that are gone; nothing where there is no memory for it.
    void enter(Entry& entry, const void* caller) noexcept {
        std::size_t depth = 0;
        while (depth < entries.size() && !isGone(entries[depth], entry, caller)) ++depth;
        const std::size_t left = depth < entries.size() ? entries[depth].ends : ends.size();
        forgetEntries(depth);
        try {
            entries.push_back({caller, &entry, ++lastNumber, entry.host_, left});
        } catch (const std::bad_alloc&) {
            return;
        }
        ++recordedEntries;
        entry.calls_ = this;
        entry.number_ = lastNumber;
        entry.depth_ = entries.size();
        hostRuns = false;
        endFrames(left);
    }

    /// What is recorded behind `depth` entries was left by the host's code that has returned now.
    void returnTo(std::size_t depth) noexcept {
        if (depth >= entries.size()) return;
        const std::size_t left = entries[depth].ends;
        forgetEntries(depth);
        endFrames(left);
    }

    void forgetEntries(std::size_t depth) noexcept {
        recordedEntries -= static_cast<long>(entries.size() - depth);
        entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(depth), entries.end());
    }

    /// Innermost first. Each is forgotten before it is done: that may run the host's code.
    void endFrames(std::size_t count) noexcept {
        while (ends.size() > count) {
            const EndRecord end = ends.back();
            ends.pop_back();
            end.action(end.target);
        }
    }
};

namespace {

/// The calls on a thread's stacks.
struct ThreadCalls {
    StackCalls* first = nullptr;

    ThreadCalls() = default;
    ThreadCalls(const ThreadCalls&) = delete;
    ThreadCalls& operator=(const ThreadCalls&) = delete;
    ~ThreadCalls() {
        while (first) delete std::exchange(first, first->nextOfThread);
    }

    /// Null where there are none yet.
    [[nodiscard]] StackCalls* find() const noexcept {
        StackCalls* calls = first;
        while (calls && calls->stack != currentStack()) calls = calls->nextOfThread;
        return calls;
    }

    /// Null where there is no memory for them.
    [[nodiscard]] StackCalls* make() noexcept {
        try {
            auto* made = new StackCalls;
            made->nextOfThread = std::exchange(first, made);
            return made;
        } catch (const std::bad_alloc&) {
            return nullptr;
        }
    }
};

PerThread<ThreadCalls> threadCalls;

/// Those on the current stack; null where there are none yet.
StackCalls* findCalls() noexcept {
    const ThreadCalls* calls = threadCalls.find();
    return calls ? calls->find() : nullptr;
}

/// The same; null where there is no memory for them.
StackCalls* findOrMakeCalls() noexcept {
    ThreadCalls* calls = threadCalls.findOrMake();
    if (!calls) return nullptr;
    StackCalls* found = calls->find();
    return found ? found : calls->make();
}

}  // namespace

Entry::Entry(const void* caller) noexcept : host_(enterOwnMode()) {
    StackCalls* calls = findOrMakeCalls();
    if (calls && !calls->isNested(*this, caller)) calls->enter(*this, caller);
}

Entry::~Entry() {
    if (calls_) {
        calls_->returnTo(depth_);
        host_ = calls_->entries.back().host;
        calls_->forgetEntries(depth_ - 1);
        calls_->hostRuns = true;
    }
    restoreMode(host_);
}

HostCall::HostCall() noexcept : calls_(findCalls()) {
    if (calls_ && calls_->hostRuns) calls_ = nullptr;
    if (!calls_) return;
    depth_ = calls_->entries.size();
    calls_->hostRuns = true;
    ++calls_->lastNumber;
    restoreMode(calls_->entries.back().host);
}

HostCall::~HostCall() {
    if (!calls_) return;
    calls_->returnTo(depth_);
    calls_->entries.back().host = enterOwnMode();
    calls_->hostRuns = false;
}

HostTurn lastHostTurn() noexcept {
    const StackCalls* calls = findCalls();
    return calls ? HostTurn{calls->stack, calls->lastNumber} : HostTurn{};
}

void enterAfterLeaving(const void* caller) noexcept {
    if (recordedEntries != 0) const Entry entry(caller);
}

FrameEnd::FrameEnd(Action action, void* target) : calls_(findOrMakeCalls()) {
    if (!calls_) throw std::bad_alloc();
    place_ = calls_->ends.size();
    calls_->ends.push_back({action, target});
}

/// What is recorded behind it was left by the host's code that has returned.
FrameEnd::~FrameEnd() { calls_->endFrames(place_); }

}  // namespace vrx
