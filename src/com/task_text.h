// Texts that their receiver gives back to the task's allocator.
#pragma once

#include <windows.h>

#include <objbase.h>

#include <cwchar>
#include <new>

namespace vrx {

/// A copy for a receiver.
[[nodiscard]] inline wchar_t* taskText(const wchar_t* text) {
    const std::size_t size = (std::wcslen(text) + 1) * sizeof(wchar_t);
    auto* copy = static_cast<wchar_t*>(CoTaskMemAlloc(size));
    if (!copy) throw std::bad_alloc();
    return std::wmemcpy(copy, text, size / sizeof(wchar_t));
}

}  // namespace vrx
