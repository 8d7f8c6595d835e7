// Modality: while the user has a window of the library's to answer, the host's other windows take no input.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "com/entry.h"

namespace vrx {

/// Disables the thread's visible and enabled top-level windows between its beginning and its end. A window
/// that several scopes hold is enabled again by the last of them, in whatever order they end; one that has
/// gone meanwhile is left alone, and so is a new one of the same handle. The windows' own code runs when they
/// are disabled and enabled; where it leaves, the scope can still be ended.
class ModalScope {
  public:
    ModalScope();
    ModalScope(const ModalScope&) = delete;
    ModalScope& operator=(const ModalScope&) = delete;
    ~ModalScope() { end(); }

    /// For all but this window: the one that the user is to answer, or the owner of a dialog of the system's,
    /// which disables that one itself.
    void begin(HWND spared);
    /// To be called before the answered window goes, which would otherwise leave the user in another program:
    /// the system looks for an enabled window to go on with.
    void end() noexcept;

  private:
    struct Hold {
        HWND window;
        ULONG_PTR ticket;
    };

    void hold(HWND window);

    const std::wstring property_;
    std::vector<Hold> holds_;
};

/// A scope for as long as its frame runs, however that ends.
class HeldModality {
  public:
    explicit HeldModality(HWND spared)
        : end_([](void* scope) noexcept { static_cast<ModalScope*>(scope)->end(); }, &*scope_) {
        scope_->begin(spared);
    }

  private:
    Held<ModalScope> scope_;
    FrameEnd end_;
};

}  // namespace vrx
