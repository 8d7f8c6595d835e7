// A user of the dialogs that the calling thread shows. Works from inside their own message loops: by the
// thread whose calls of the system fail.
#pragma once

#include <windows.h>

#include <functional>
#include <vector>

namespace faults {

/// The dialog of this thread in front, where the user can work in it; null for none.
HWND frontDialog();
bool isDialog(HWND window);
/// As opposed to one of the system's.
bool isOfComponent(HWND window);

/// What a user does with a dialog of the component. Must come back at once: what takes longer is posted.
using UserStep = std::function<void(HWND dialog)>;

/// While it exists, the thread's dialogs are used: the component's own by one step at a time, in the order in
/// which they are shown, and when there are no more steps each is closed. The system's dialogs are accepted
/// as long as there are steps.
class User {
  public:
    explicit User(std::vector<UserStep> steps = {});
    User(const User&) = delete;
    User& operator=(const User&) = delete;
    ~User();

  private:
    static void CALLBACK tick(HWND, UINT, UINT_PTR, DWORD);
    void use(HWND dialog);

    std::vector<UserStep> steps_;
    std::size_t done_ = 0;
    User* outer_;
    UINT_PTR timer_;
};

}  // namespace faults
