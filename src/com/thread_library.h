// The thread library that the compiler links into each module, which knows no unloading.
#pragma once

namespace vrx {

/// For DllMain, when the module goes while the process stays: what the thread library holds is given back
/// after the last destructor.
void releaseThreadLibraryAtUnload();

/// For DllMain, when a thread ends: before Windows Vista the system tells the thread library of no module
/// that was loaded later than the program.
void releaseThreadAtItsEnd();

/// The thread's list of caught exceptions, which is our own.
void releaseExceptionsOfThread();

}  // namespace vrx
