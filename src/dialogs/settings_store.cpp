#include "dialogs/settings_store.h"

#include <windows.h>

#include <objidl.h>

#include <algorithm>
#include <mutex>
#include <optional>
#include <vector>

#include "VrxSettings.h"
#include "com/com_ptr.h"
#include "com/variant_convert.h"
#include "common/engine/decimal_text.h"
#include "common/host_program.h"

namespace vrx {
namespace {

constexpr long kMachine = static_cast<long>(0x80000002);

/// A component in COM's table of objects, from where every apartment gets it, and the thread that made it.
struct Shared {
    DWORD thread;
    DWORD cookie;
};

// The first one serves every thread that can use it; the others those threads that cannot, because the system
// does not know how to carry the component's interface to them. Calls of a component can let other code of this
// thread run, so there is none under the guard.
std::mutex guard;
std::vector<Shared> components;

ComPtr<IGlobalInterfaceTable> interfaceTable() {
    ComPtr<IGlobalInterfaceTable> table;
    CoCreateInstance(CLSID_StdGlobalInterfaceTable, nullptr, CLSCTX_INPROC_SERVER, IID_IGlobalInterfaceTable,
                     reinterpret_cast<void**>(table.put()));
    return table;
}

bool isOwn(const Shared& component) { return component.thread == GetCurrentThreadId(); }

/// This thread's own component before the one for all.
std::vector<Shared> candidates() {
    const std::lock_guard lock(guard);
    std::vector<Shared> found;
    const auto own = std::ranges::find_if(components, isOwn);
    if (own != components.end()) found.push_back(*own);
    if (!components.empty() && own != components.begin()) found.push_back(components.front());
    return found;
}

void forget(IGlobalInterfaceTable& table, DWORD cookie) {
    {
        const std::lock_guard lock(guard);
        std::erase_if(components, [&](const Shared& component) { return component.cookie == cookie; });
    }
    table.RevokeInterfaceFromGlobal(cookie);
}

/// A component that is there and serves this thread. The table holds what every object can be asked for on every
/// thread; only then the object itself is asked for its interface. It loses an object with the apartment that
/// made it.
ComPtr<_SettingsRegistry> findComponent(IGlobalInterfaceTable& table) {
    for (const Shared& candidate : candidates()) {
        ComPtr<IUnknown> object;
        void** result = reinterpret_cast<void**>(object.put());
        if (FAILED(table.GetInterfaceFromGlobal(candidate.cookie, IID_IUnknown, result))) {
            forget(table, candidate.cookie);
        } else if (ComPtr<_SettingsRegistry> found = object.as<_SettingsRegistry>()) {
            return found;
        }
    }
    return {};
}

ComPtr<_SettingsRegistry> makeComponent(IGlobalInterfaceTable& table) {
    ComPtr<_SettingsRegistry> made;
    CoCreateInstance(CLSID_SettingsRegistry, nullptr, CLSCTX_SERVER, IID__SettingsRegistry,
                     reinterpret_cast<void**>(made.put()));
    DWORD cookie = 0;
    if (!made || FAILED(table.RegisterInterfaceInGlobal(made.get(), IID_IUnknown, &cookie))) return made;
    const std::lock_guard lock(guard);
    components.push_back({GetCurrentThreadId(), cookie});
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
    std::vector<Shared> released;
    {
        const std::lock_guard lock(guard);
        released.swap(components);
    }
    if (released.empty()) return;
    const ComPtr<IGlobalInterfaceTable> table = interfaceTable();
    for (const Shared& component : released) {
        if (table) table->RevokeInterfaceFromGlobal(component.cookie);
    }
}

}  // namespace vrx
