#include "dialogs/settings_store.h"

#include <windows.h>

#include <objidl.h>

#include <algorithm>
#include <mutex>
#include <new>
#include <optional>
#include <vector>

#include "VrxSettings.h"
#include "com/com_ptr.h"
#include "com/variant_convert.h"
#include "common/host_program.h"
#include "ground/decimal_text.h"

namespace vrx {
namespace {

// HKEY_LOCAL_MACHINE as the component takes it.
constexpr long kLocalMachine = static_cast<long>(0x80000002);

// In place of a thread's number: the component serves every thread.
constexpr DWORD kEveryThread = 0;

/// A component in COM's table of objects, and the thread that gets it from there.
struct Kept {
    DWORD thread;
    DWORD cookie;
};

// One for every thread, or one for each where the system does not know how to carry the component's interface
// from thread to thread. Calls of a component can let other code of this thread run, so there is none under
// the guard.
std::mutex guard;
std::vector<Kept> components;

ComPtr<IGlobalInterfaceTable> interfaceTable() {
    ComPtr<IGlobalInterfaceTable> table;
    CoCreateInstance(CLSID_StdGlobalInterfaceTable, nullptr, CLSCTX_INPROC_SERVER, IID_IGlobalInterfaceTable,
                     reinterpret_cast<void**>(table.put()));
    return table;
}

std::optional<Kept> keptForThisThread() {
    const std::lock_guard lock(guard);
    const auto found = std::ranges::find_if(components, [](const Kept& kept) {
        return kept.thread == kEveryThread || kept.thread == GetCurrentThreadId();
    });
    if (found == components.end()) return std::nullopt;
    return *found;
}

void forget(IGlobalInterfaceTable& table, DWORD cookie) {
    {
        const std::lock_guard lock(guard);
        std::erase_if(components, [&](const Kept& kept) { return kept.cookie == cookie; });
    }
    table.RevokeInterfaceFromGlobal(cookie);
}

/// The table loses an object with the apartment that made it.
ComPtr<_SettingsRegistry> findComponent(IGlobalInterfaceTable& table) {
    while (const auto kept = keptForThisThread()) {
        ComPtr<IUnknown> object;
        const IID& wanted = kept->thread == kEveryThread ? IID__SettingsRegistry : IID_IUnknown;
        table.GetInterfaceFromGlobal(kept->cookie, wanted, reinterpret_cast<void**>(object.put()));
        if (ComPtr<_SettingsRegistry> found = object.as<_SettingsRegistry>()) return found;
        forget(table, kept->cookie);
    }
    return {};
}

/// The table takes an object by its IUnknown, which the system can always carry, where it refuses the
/// interface.
std::optional<Kept> keep(IGlobalInterfaceTable& table, _SettingsRegistry* made) {
    Kept kept{kEveryThread, 0};
    if (SUCCEEDED(table.RegisterInterfaceInGlobal(made, IID__SettingsRegistry, &kept.cookie))) return kept;
    kept.thread = GetCurrentThreadId();
    if (SUCCEEDED(table.RegisterInterfaceInGlobal(made, IID_IUnknown, &kept.cookie))) return kept;
    return std::nullopt;
}

ComPtr<_SettingsRegistry> makeComponent(IGlobalInterfaceTable& table) {
    ComPtr<_SettingsRegistry> made;
    CoCreateInstance(CLSID_SettingsRegistry, nullptr, CLSCTX_SERVER, IID__SettingsRegistry,
                     reinterpret_cast<void**>(made.put()));
    if (!made) return made;
    const auto kept = keep(table, made.get());
    if (!kept) return made;
    try {
        const std::lock_guard lock(guard);
        components.push_back(*kept);
    } catch (const std::bad_alloc&) {
        table.RevokeInterfaceFromGlobal(kept->cookie);
        throw;
    }
    return made;
}

/// Made on first use; empty where none can be made.
ComPtr<_SettingsRegistry> component() {
    const ComPtr<IGlobalInterfaceTable> table = interfaceTable();
    if (!table) return {};
    if (ComPtr<_SettingsRegistry> found = findComponent(*table)) return found;
    return makeComponent(*table);
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
    const HRESULT outcome = registry->ReadValue(kLocalMachine, toBstr(subkey(root, setting.suffix)).get(),
                                                toBstr(setting.name).get(), &byReference, result.put());
    passedDefault.reset(byReference);
    if (FAILED(outcome)) return std::nullopt;
    return toText(result.get());
}

template <class Setting>
void writeText(const std::u16string& root, const Setting& setting, const std::u16string& text) {
    const ComPtr<_SettingsRegistry> registry = component();
    if (!registry) return;
    registry->WriteValue(kLocalMachine, toBstr(subkey(root, setting.suffix)).get(),
                         toBstr(setting.name).get(), toBstr(text).get());
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
    std::vector<Kept> released;
    {
        const std::lock_guard lock(guard);
        released.swap(components);
    }
    if (released.empty()) return;
    const ComPtr<IGlobalInterfaceTable> table = interfaceTable();
    for (const Kept& kept : released) {
        if (table) table->RevokeInterfaceFromGlobal(kept.cookie);
    }
}

}  // namespace vrx
