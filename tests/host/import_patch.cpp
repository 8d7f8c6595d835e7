#include "import_patch.h"

#include <cstring>

namespace host {
namespace {

template <class T>
T* at(HMODULE module, DWORD offset) {
    return reinterpret_cast<T*>(reinterpret_cast<char*>(module) + offset);
}

/// Where the module keeps the address of a function that it imports by this name.
void** slotOf(HMODULE module, const char* name) {
    const auto* const dos = at<IMAGE_DOS_HEADER>(module, 0);
    const auto* const headers = at<IMAGE_NT_HEADERS>(module, static_cast<DWORD>(dos->e_lfanew));
    const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    const auto* library = at<IMAGE_IMPORT_DESCRIPTOR>(module, directory.VirtualAddress);
    for (; library->Name != 0; ++library) {
        const auto* thunk = at<IMAGE_THUNK_DATA>(module, library->OriginalFirstThunk);
        auto* slot = at<void*>(module, library->FirstThunk);
        for (; thunk->u1.AddressOfData != 0; ++thunk, ++slot) {
            if (IMAGE_SNAP_BY_ORDINAL(thunk->u1.Ordinal)) continue;
            const auto* const import =
                at<IMAGE_IMPORT_BY_NAME>(module, static_cast<DWORD>(thunk->u1.AddressOfData));
            if (std::strcmp(reinterpret_cast<const char*>(import->Name), name) == 0) return slot;
        }
    }
    return nullptr;
}

}  // namespace

ImportPatch::ImportPatch(HMODULE module, const char* name, void* replacement) : slot_(slotOf(module, name)) {
    if (!slot_) return;
    original_ = *slot_;
    store(slot_, replacement);
}

ImportPatch::~ImportPatch() {
    if (slot_) store(slot_, original_);
}

void ImportPatch::store(void** slot, void* function) {
    DWORD before = 0;
    VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &before);
    *slot = function;
    VirtualProtect(slot, sizeof *slot, before, &before);
}

}  // namespace host
