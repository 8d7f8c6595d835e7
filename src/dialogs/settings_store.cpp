#include "dialogs/settings_store.h"

#include <windows.h>

#include <objidl.h>

#include <atomic>
#include <optional>

#include "VrxSettings.h"
#include "com/com_ptr.h"
#include "com/variant_convert.h"
#include "common/engine/decimal_text.h"
#include "common/host_program.h"

namespace vrx {
namespace {

constexpr long kMachine = static_cast<long>(0x80000002);

// The component's number in COM's table of objects, from where every apartment gets it; 0 while there is
// none. The table may forget it with the apartment that made it; then the next use makes a new one. Making
// one can let other code of this thread run, so there is no lock around it.
std::atomic<DWORD> shared = 0;

ComPtr<IGlobalInterfaceTable> interfaceTable() {
    ComPtr<IGlobalInterfaceTable> table;
    CoCreateInstance(CLSID_StdGlobalInterfaceTable, nullptr, CLSCTX_INPROC_SERVER, IID_IGlobalInterfaceTable,
                     reinterpret_cast<void**>(table.put()));
    return table;
}

/// The shared component, made on first use; empty where none can be made.
ComPtr<_SettingsRegistry> component() {
    ComPtr<_SettingsRegistry> found;
    const ComPtr<IGlobalInterfaceTable> table = interfaceTable();
    if (!table) return found;
    DWORD known = shared;
    void** result = reinterpret_cast<void**>(found.put());
    if (known != 0 && SUCCEEDED(table->GetInterfaceFromGlobal(known, IID__SettingsRegistry, result)))
        return found;
    CoCreateInstance(CLSID_SettingsRegistry, nullptr, CLSCTX_SERVER, IID__SettingsRegistry, result);
    DWORD made = 0;
    if (!found || FAILED(table->RegisterInterfaceInGlobal(found.get(), IID__SettingsRegistry, &made)))
        return found;
    if (!shared.compare_exchange_strong(known, made)) table->RevokeInterfaceFromGlobal(made);
    return found;
}

std::u16string subkey(const std::u16string& root, std::u16string_view suffix) {
    return std::u16string(root).append(suffix);
}

/// The component's answer; nothing without a component and when it fails.
template <class Setting>
std::optional<std::u16string> readText(const std::u16string& root, const Setting& setting,
                                       const std::u16string& defaultText) {
    const ComPtr<_SettingsRegistry> registry = component();
    if (!registry) return std::nullopt;
    Bstr passedDefault = toBstr(defaultText);
    BSTR byReference = passedDefault.release();
    Bstr result;
    const HRESULT outcome = registry->ReadValue(kMachine, toBstr(subkey(root, setting.suffix)).get(),
                                                toBstr(setting.name).get(), &byReference, result.put());
    passedDefault.reset(byReference);
    if (FAILED(outcome)) return std::nullopt;
    return toText(result.get());
}

template <class Setting>
void writeText(const std::u16string& root, const Setting& setting, const std::u16string& text) {
    const ComPtr<_SettingsRegistry> registry = component();
    if (!registry) return;
    registry->WriteValue(kMachine, toBstr(subkey(root, setting.suffix)).get(), toBstr(setting.name).get(),
                         toBstr(text).get());
}

}  // namespace

std::u16string SettingsStore::read(const FolderSetting& setting) const {
    const std::u16string folder = hostFolder();
    return readText(root_, setting, folder).value_or(folder);
}

std::int32_t SettingsStore::read(const NumberSetting& setting) const {
    const auto text = readText(root_, setting, decimalText(setting.defaultValue));
    return text ? settingNumber(*text, setting) : setting.defaultValue;
}

void SettingsStore::write(const FolderSetting& setting, const std::u16string& folder) const {
    writeText(root_, setting, folder);
}

void SettingsStore::write(const NumberSetting& setting, std::int32_t value) const {
    writeText(root_, setting, decimalText(value));
}

void releaseSettingsComponent() noexcept {
    const DWORD known = shared.exchange(0);
    if (known == 0) return;
    if (const ComPtr<IGlobalInterfaceTable> table = interfaceTable()) table->RevokeInterfaceFromGlobal(known);
}

}  // namespace vrx
