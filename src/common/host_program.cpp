#include "common/host_program.h"

#include <windows.h>

#include <string>

#include "com/variant_convert.h"

namespace vrx {

std::u16string hostPath() {
    // As long as a path can be; too much for the stack of a small thread.
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return fromWide(path);
}

std::u16string hostFolder() {
    const std::u16string path = hostPath();
    const std::size_t end = path.find_last_of(u'\\');
    if (end == std::u16string::npos) return {};
    const bool root = end == 2 && path[1] == u':';
    return path.substr(0, root ? end + 1 : end);
}

}  // namespace vrx
