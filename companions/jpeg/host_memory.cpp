#include "jpeg/host_memory.h"

#include <windows.h>

#include <algorithm>
#include <limits>

#include "jpeg/engine/status.h"

namespace vrx::jpeg {
namespace {

constexpr Address kLastAddress = std::numeric_limits<Address>::max();
constexpr std::size_t kLongestFileName = 1024;

constexpr DWORD kWritable = PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
constexpr DWORD kReadable = kWritable | PAGE_READONLY | PAGE_EXECUTE_READ;

std::uint8_t* pointerTo(Address address) { return reinterpret_cast<std::uint8_t*>(address); }

/// How many bytes from `address` on allow one of the kinds of access, `size` at most.
std::size_t accessibleSize(Address address, std::size_t size, DWORD access) {
    if (address == 0) return 0;
    const Address end = address + std::min(size, kLastAddress - address);
    Address position = address;
    while (position < end) {
        MEMORY_BASIC_INFORMATION region;
        if (VirtualQuery(pointerTo(position), &region, sizeof region) == 0 || region.State != MEM_COMMIT ||
            (region.Protect & access) == 0 || (region.Protect & PAGE_GUARD) != 0) {
            break;
        }
        const Address start = reinterpret_cast<Address>(region.BaseAddress);
        position = start + std::min<Address>(region.RegionSize, kLastAddress - start);
    }
    return std::min(position, end) - address;
}

std::span<std::uint8_t> bytesAt(Address address, std::size_t size, DWORD access) {
    require(address != 0 && accessibleSize(address, size, access) == size, Status::BadAddress);
    return {pointerTo(address), size};
}

}  // namespace

std::span<const std::uint8_t> readableBytes(Address address, std::size_t size) {
    return bytesAt(address, size, kReadable);
}

std::span<std::uint8_t> writableBytes(Address address, std::size_t size) {
    return bytesAt(address, size, kWritable);
}

std::u16string fileNameAt(Address address) {
    const std::span<const std::uint8_t> bytes(pointerTo(address),
                                              accessibleSize(address, kLongestFileName, kReadable));
    const auto end = std::find(bytes.begin(), bytes.end(), std::uint8_t{0});
    require(end != bytes.end() && end != bytes.begin(), Status::BadAddress);

    const auto* const text = reinterpret_cast<const char*>(bytes.data());
    const int length = static_cast<int>(end - bytes.begin());
    std::u16string name(static_cast<std::size_t>(length), u'\0');
    const int converted =
        MultiByteToWideChar(CP_ACP, 0, text, length, reinterpret_cast<wchar_t*>(name.data()), length);
    require(converted > 0, Status::BadAddress);
    name.resize(static_cast<std::size_t>(converted));
    return name;
}

}  // namespace vrx::jpeg
