// What the compiler's own libraries keep in a DLL, which know no unloading; for the DLL's DllMain.
#pragma once

namespace vrx {

/// When the module goes while the process stays: all of it is given back after the last destructor.
void releaseRuntimeAtUnload();

/// When a thread ends: before Windows Vista the system tells the libraries only of threads in modules that
/// were loaded with the program.
void releaseThreadAtItsEnd();

/// The part of it that is ours (exception_memory.cpp): the thread's list of caught exceptions.
void releaseExceptionsOfThread();

}  // namespace vrx
