// What a module publishes: its classes, its type libraries and what goes with them.
#pragma once

#include <windows.h>

#include <cstddef>
#include <span>

namespace vrx {

/// What hosts want to know of a class that they place on forms, before they create one.
struct ControlTraits {
    DWORD miscStatus;   ///< OLEMISC bits
    int toolboxBitmap;  ///< number of the picture for tool boxes, 16 x 15 pixels, in the module's resources
};

/// A creatable class: one row feeds class lookup, registration and unregistration.
struct ClassRow {
    const CLSID& classId;
    const wchar_t* name;  ///< of the class; its program id is the library's name, a dot and this
    const wchar_t* description;
    HRESULT (*create)(REFIID iid, void** object);
    const ControlTraits* control = nullptr;  ///< null for a class that is no control
};

/// A record that members take, described by one of the module's type libraries.
struct RecordRow {
    const GUID& recordId;
    int typeLibrary;  ///< its number in the module's resources
    std::size_t size;
};

struct Publication {
    std::span<const ClassRow> classes;
    const wchar_t* libraryName;   ///< of the module's type library; its program ids begin with it
    const wchar_t* helpFileName;  ///< of the help file that is installed beside the module
    /// How many type libraries are in the module's resources: its own, number 1, and those that it imports.
    int typeLibraryCount = 1;
    /// The one record of the published interfaces; null where they have none.
    const RecordRow* record = nullptr;
    /// Gives back what the module holds of others, for it may be unloaded now; null where it holds nothing.
    void (*releaseHeldObjects)() noexcept = nullptr;
};

/// Each module that has public classes defines its own.
extern const Publication kPublication;

}  // namespace vrx
