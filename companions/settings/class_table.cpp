// What VrxSettings.dll publishes.
#include "com/class_table.h"

#include "VrxSettings.h"
#include "com/object_base.h"
#include "settings/SettingsRegistry.h"

namespace vrx {
namespace {

const ClassRow kClasses[] = {
    {CLSID_SettingsRegistry, L"SettingsRegistry", L"VrxSettings settings in the registry",
     createObject<SettingsRegistry>},
};

}  // namespace

const Publication kPublication = {
    .classes = kClasses,
    .libraryName = L"VrxSettings",
    .helpFileName = L"VrxCommon.chm",
};

}  // namespace vrx
