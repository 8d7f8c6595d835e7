#include "held_memory.h"

#include <windows.h>

#include <algorithm>
#include <array>

namespace faults {
namespace {

struct HeapBytes {
    std::size_t used = 0;
    std::size_t committed = 0;
};

void add(HANDLE heap, HeapBytes& bytes) {
    PROCESS_HEAP_ENTRY entry{};
    HeapLock(heap);
    while (HeapWalk(heap, &entry)) {
        if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) bytes.used += entry.cbData;
        if (entry.wFlags & PROCESS_HEAP_REGION) bytes.committed += entry.Region.dwCommittedSize;
    }
    HeapUnlock(heap);
}

std::size_t privatePages() {
    std::size_t bytes = 0;
    MEMORY_BASIC_INFORMATION pages{};
    const char* next = nullptr;
    while (VirtualQuery(next, &pages, sizeof pages) != 0) {
        if (pages.State == MEM_COMMIT && pages.Type == MEM_PRIVATE) bytes += pages.RegionSize;
        next = static_cast<const char*>(pages.BaseAddress) + pages.RegionSize;
        if (!next) break;
    }
    return bytes;
}

}  // namespace

std::size_t heldMemory() {
    std::array<HANDLE, 256> heaps{};
    const DWORD count = GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
    HeapBytes bytes;
    for (std::size_t i = 0; i < std::min<std::size_t>(count, heaps.size()); ++i) add(heaps[i], bytes);
    return bytes.used + privatePages() - bytes.committed;
}

long heldMemoryDoubt() {
    constexpr std::size_t kSize = 12;
    constexpr long kGroups = 16 * 1024;
    std::array<void*, 100> blocks{};
    const std::size_t before = heldMemory();
    for (void*& block : blocks) block = HeapAlloc(GetProcessHeap(), 0, kSize);
    const bool exact = heldMemory() == before + blocks.size() * kSize;
    for (void* const block : blocks) HeapFree(GetProcessHeap(), 0, block);
    return exact ? 0 : kGroups;
}

}  // namespace faults
