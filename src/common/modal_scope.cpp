#include "common/modal_scope.h"

#include <map>
#include <mutex>
#include <new>
#include <string>
#include <utility>

#include "com/module.h"

namespace vrx {
namespace {

/// How many scopes hold each disabled window, by the window's ticket. A count in the property itself would
/// not do: a scope could not tell the window that it holds from a new one of the same handle that another
/// scope holds.
class Tickets {
  public:
    /// One more scope; false for a ticket that no window has.
    bool share(ULONG_PTR ticket) {
        const std::lock_guard lock(guard_);
        const auto found = holders_.find(ticket);
        if (found == holders_.end()) return false;
        ++found->second;
        return true;
    }
    ULONG_PTR make() {
        const std::lock_guard lock(guard_);
        holders_.emplace(++last_, 1);
        return last_;
    }
    /// One scope less; whether it was the last.
    bool giveBack(ULONG_PTR ticket) {
        const std::lock_guard lock(guard_);
        const auto found = holders_.find(ticket);
        if (found == holders_.end() || --found->second > 0) return false;
        holders_.erase(found);
        return true;
    }

  private:
    std::mutex guard_;
    std::map<ULONG_PTR, int> holders_;
    ULONG_PTR last_ = 0;
};

Tickets tickets;

struct Found {
    std::vector<HWND> windows;
    bool outOfMemory = false;
};

/// No exception may pass through the system.
BOOL CALLBACK collect(HWND window, LPARAM parameter) {
    auto& found = *reinterpret_cast<Found*>(parameter);
    try {
        if (IsWindowVisible(window)) found.windows.push_back(window);
    } catch (const std::bad_alloc&) {
        found.outOfMemory = true;
    }
    return !found.outOfMemory;
}

std::vector<HWND> visibleWindows() {
    Found found;
    EnumThreadWindows(GetCurrentThreadId(), collect, reinterpret_cast<LPARAM>(&found));
    if (found.outOfMemory) throw std::bad_alloc();
    return std::move(found.windows);
}

}  // namespace

/// The property of a disabled window that keeps its ticket. It goes with the window, so that a handle that is
/// given out again has none. Another copy of the library has tickets of its own.
ModalScope::ModalScope()
    : property_(L"VrxCommon.Modal." + std::to_wstring(reinterpret_cast<ULONG_PTR>(moduleInstance()))) {}

void ModalScope::begin(HWND spared) {
    const Held<std::vector<HWND>> windows(visibleWindows());
    holds_.reserve(windows->size());
    const HostCall host;
    for (const HWND window : *windows) {
        if (window != spared) hold(window);
    }
}

/// A window that somebody else has disabled is that one's to enable.
void ModalScope::hold(HWND window) {
    const auto known = reinterpret_cast<ULONG_PTR>(GetPropW(window, property_.c_str()));
    if (tickets.share(known)) {
        holds_.push_back({window, known});
        EnableWindow(window, FALSE);
        return;
    }
    if (!IsWindowEnabled(window)) return;
    const ULONG_PTR ticket = tickets.make();
    holds_.push_back({window, ticket});
    if (SetPropW(window, property_.c_str(), reinterpret_cast<HANDLE>(ticket))) EnableWindow(window, FALSE);
}

void ModalScope::end() noexcept {
    const HostCall host;
    // What a window does when it is enabled may come back here.
    while (!holds_.empty()) {
        const auto [window, ticket] = holds_.back();
        holds_.pop_back();
        const bool last = tickets.giveBack(ticket);
        if (!last || GetPropW(window, property_.c_str()) != reinterpret_cast<HANDLE>(ticket)) continue;
        RemovePropW(window, property_.c_str());
        EnableWindow(window, TRUE);
    }
}

}  // namespace vrx
