#include "common/host_program.h"

#include <windows.h>

#include <array>

#include "com/variant_convert.h"

namespace vrx {

std::u16string hostPath() {
    std::array<wchar_t, 32768> path{};
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    return fromWide({path.data(), length});
}

std::u16string hostFolder() {
    const std::u16string path = hostPath();
    const std::size_t end = path.find_last_of(u'\\');
    if (end == std::u16string::npos) return {};
    const bool root = end == 2 && path[1] == u':';
    return path.substr(0, root ? end + 1 : end);
}

}  // namespace vrx
