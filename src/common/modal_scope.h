// Modality: while the user has a window of the library's to answer, the host's other windows take no input.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace vrx {

/// Disables the thread's visible and enabled top-level windows for as long as it exists. A window that
/// several scopes hold is enabled again by the last of them, in whatever order they end; one that has gone
/// meanwhile is left alone, and so is a new one of the same handle.
class ModalScope {
  public:
    /// All but this window: the one that the user is to answer, or the owner of a dialog of the system's,
    /// which disables that one itself.
    explicit ModalScope(HWND spared);
    ModalScope(const ModalScope&) = delete;
    ModalScope& operator=(const ModalScope&) = delete;
    ~ModalScope();

    /// What the destructor does. To be called before the answered window goes, which would otherwise leave
    /// the user in another program: the system looks for an enabled window to go on with.
    void end();

  private:
    struct Hold {
        HWND window;
        ULONG_PTR ticket;
    };

    void hold(HWND window);

    std::wstring property_;
    std::vector<Hold> holds_;
};

}  // namespace vrx
