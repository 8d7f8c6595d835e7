#include "com/module.h"

#include <atomic>

#include "com/win32_error.h"
#include "ground/memory_block.h"

namespace vrx {
namespace {

HINSTANCE instance = nullptr;
std::atomic<long> locks = 0;
std::atomic<void (*)() noexcept> unusedAction = nullptr;

}  // namespace

HINSTANCE moduleInstance() { return instance; }
void storeModuleInstance(HINSTANCE stored) { instance = stored; }

std::wstring modulePath() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD size = static_cast<DWORD>(path.size());
        const DWORD length = GetModuleFileNameW(instance, path.data(), size);
        if (length == 0) throw win32Error(GetLastError());
        if (length < size) return path.substr(0, length);
        path.resize(path.size() * 2);
    }
}

std::wstring folderOf(const std::wstring& path) { return path.substr(0, path.find_last_of(L'\\')); }

void lockModule() { ++locks; }
void unlockModule() {
    if (--locks != 0) return;
    releaseWaitingBlocks();
    if (const auto action = unusedAction.load()) action();
}
bool moduleInUse() { return locks != 0; }
void whenUnused(void (*action)() noexcept) { unusedAction = action; }

}  // namespace vrx
