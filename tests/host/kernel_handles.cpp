#include "kernel_handles.h"

#include <windows.h>

#include <algorithm>
#include <vector>

namespace host {
namespace {

// GetProcessHandleCount is not available everywhere; this table is.
constexpr int kSystemHandleInformation = 16;
constexpr LONG kTooSmall = static_cast<LONG>(0xC0000004);

struct HandleEntry {
    USHORT process;
    USHORT trace;
    UCHAR type;
    UCHAR flags;
    USHORT handle;
    void* object;
    ULONG access;
};

struct HandleTable {
    ULONG count;
    HandleEntry entries[1];
};

using QueryInformation = LONG(WINAPI*)(int kind, void* table, ULONG size, ULONG* needed);

}  // namespace

std::size_t kernelHandles() {
    static const auto query = reinterpret_cast<QueryInformation>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll"), "NtQuerySystemInformation")));
    std::vector<char> memory(65536);
    ULONG needed = 0;
    while (query(kSystemHandleInformation, memory.data(), static_cast<ULONG>(memory.size()), &needed) ==
           kTooSmall) {
        memory.resize(memory.size() * 2);
    }
    const auto& table = *reinterpret_cast<const HandleTable*>(memory.data());
    const auto own = static_cast<USHORT>(GetCurrentProcessId());
    return static_cast<std::size_t>(
        std::count_if(table.entries, table.entries + table.count,
                      [&](const HandleEntry& entry) { return entry.process == own; }));
}

}  // namespace host
