// Whether something that windows do over and over leaves handles behind.
#pragma once

#include <functional>

namespace host {

/// Does it 200 times, and some more where something is missing then: the system keeps some handles of first
/// windows for the next ones, and takes some at times of its own, but what is lost each time is lost in every
/// round. Fails the test when no round leaves the GDI, USER and kernel handles, the thread's windows and the
/// memory as they were.
void expectNothingLeft(const std::function<void()>& action);

}  // namespace host
