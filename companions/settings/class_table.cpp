// What VrxSettings.dll publishes.
#include "com/class_table.h"

#include "VrxSettings.h"
#include "com/object_base.h"
#include "settings/SettingsRegistry.h"

namespace vrx {

std::span<const ClassRow> classTable() {
    static const ClassRow rows[] = {
        {CLSID_SettingsRegistry, L"SettingsRegistry", L"VrxSettings settings in the registry",
         createObject<SettingsRegistry>},
    };
    return rows;
}

const wchar_t* libraryName() { return L"VrxSettings"; }

const wchar_t* helpFileName() { return L"VrxCommon.chm"; }

const RecordRow* recordRow() { return nullptr; }

int typeLibraryCount() { return 1; }

void releaseHeldObjects() noexcept {}

}  // namespace vrx
