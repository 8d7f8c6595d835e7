// What a module publishes. Each module that has public classes defines these functions for itself.
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

[[nodiscard]] std::span<const ClassRow> classTable();
/// Its row; null for a class that is not in the table.
[[nodiscard]] const ClassRow* findClassRow(REFCLSID classId);

/// Name of the module's type library, which its program ids begin with.
[[nodiscard]] const wchar_t* libraryName();

/// Name of the help file that is installed beside the module.
[[nodiscard]] const wchar_t* helpFileName();

/// A record that members take, described by one of the module's type libraries.
struct RecordRow {
    const GUID& recordId;
    int typeLibrary;  ///< its number in the module's resources
    std::size_t size;
};

/// The one record of the published interfaces; null where they have none.
[[nodiscard]] const RecordRow* recordRow();

/// How many type libraries are in the module's resources: its own, number 1, and those that it imports.
[[nodiscard]] int typeLibraryCount();

/// Gives back what the module holds of others, for it may be unloaded now.
void releaseHeldObjects() noexcept;

}  // namespace vrx
