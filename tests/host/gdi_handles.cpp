#include "gdi_handles.h"

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace host {
namespace {

/// Of the system's table of drawing objects, which each process sees.
struct TableEntry {
    std::uint64_t object;
    std::uint32_t owner;
    std::uint16_t unique;
    std::uint8_t type;  ///< 0 for none
    std::uint8_t flags;
    std::uint64_t user;
};
constexpr std::size_t kEntries = 65536;

/// Where the process's environment block keeps the table's address.
const TableEntry* table() {
#ifdef _WIN64
    constexpr std::size_t kOffset = 0xF8;
    const auto* const block = reinterpret_cast<const std::byte*>(__readgsqword(0x60));
#else
    constexpr std::size_t kOffset = 0x94;
    const auto* const block = reinterpret_cast<const std::byte*>(__readfsdword(0x30));
#endif
    return *reinterpret_cast<const TableEntry* const*>(block + kOffset);
}

}  // namespace

/// Wine answers 0, and has one process's objects only in its table.
std::size_t gdiObjects() {
    if (const DWORD count = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS)) return count;
    const TableEntry* const entries = table();
    return static_cast<std::size_t>(
        std::count_if(entries, entries + kEntries, [](const TableEntry& entry) { return entry.type != 0; }));
}

std::size_t freeGdiHandles() {
    std::vector<HPEN> pens;
    while (const HPEN pen = CreatePen(PS_SOLID, 1, RGB(1, 2, 3))) pens.push_back(pen);
    for (const HPEN pen : pens) DeleteObject(pen);
    return pens.size();
}

std::size_t freeUserHandles() {
    std::vector<HMENU> menus;
    while (const HMENU menu = CreatePopupMenu()) menus.push_back(menu);
    for (const HMENU menu : menus) DestroyMenu(menu);
    return menus.size();
}

}  // namespace host
