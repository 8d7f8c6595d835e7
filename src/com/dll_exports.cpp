// Entry points of a DLL with public classes.

#include <windows.h>

#include <objbase.h>
#include <olectl.h>

#include "com/class_factory.h"
#include "com/class_table.h"
#include "com/entry.h"
#include "com/module.h"
#include "com/per_thread.h"
#include "com/registration.h"
#include "com/runtime_calls.h"
#include "com/type_library.h"

using vrx::RegistrationScope;

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void* processEnds) {
    if (reason == DLL_PROCESS_ATTACH) vrx::storeModuleInstance(instance);
    if (reason == DLL_THREAD_DETACH) {
        vrx::ThreadItems::releaseThread();
        vrx::releaseThreadAtItsEnd();
    }
    if (reason == DLL_PROCESS_DETACH && !processEnds) vrx::releaseRuntimeAtUnload();
    return TRUE;
}

STDAPI DllGetClassObject(REFCLSID classId, REFIID iid, void** factory) {
    const vrx::Entry entry;
    return vrx::findClassFactory(classId, iid, factory);
}

STDAPI DllCanUnloadNow() {
    const vrx::Entry entry;
    if (!vrx::releaseTypeInformationIfUnused()) return S_FALSE;
    if (vrx::kPublication.releaseHeldObjects) vrx::kPublication.releaseHeldObjects();
    return S_OK;
}

STDAPI DllRegisterServer() { return vrx::registerLibrary(RegistrationScope::Machine); }

STDAPI DllUnregisterServer() { return vrx::unregisterLibrary(RegistrationScope::Machine); }

/// `regsvr32 /n /i:user` registers for the current user; without a command line it is the machine.
STDAPI DllInstall(BOOL install, PCWSTR commandLine) {
    const bool empty = !commandLine || !*commandLine;
    if (!empty && lstrcmpiW(commandLine, L"user") != 0) return E_INVALIDARG;
    const RegistrationScope scope = empty ? RegistrationScope::Machine : RegistrationScope::User;
    return install ? vrx::registerLibrary(scope) : vrx::unregisterLibrary(scope);
}
