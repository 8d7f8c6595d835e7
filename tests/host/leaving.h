// Ways in which a host's code leaves the frames of whoever has called it, and ends up in its own.
#pragma once

#include <windows.h>

#include <functional>

namespace host {

/// Runs `action`; true when leaveByJump() ended it.
bool endsByJump(const std::function<void()>& action);
/// To the innermost endsByJump(). No frame in between is told.
[[noreturn]] void leaveByJump();

/// Runs `action` under a handler for structured exceptions like those that the system's compilers make: the
/// code of the exception that ended it, or 0.
DWORD exceptionEnding(const std::function<void()>& action);
void leaveByException(DWORD code);

// The exceptions of Microsoft's C++ and of Delphi.
constexpr DWORD kMicrosoftCpp = 0xE06D7363;
constexpr DWORD kDelphi = 0x0EEDFADE;

}  // namespace host
