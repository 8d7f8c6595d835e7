#include "jpeg/host_memory.h"

#include <windows.h>

#include <algorithm>

#include "jpeg/engine/status.h"

namespace vrx::jpeg {
namespace {

constexpr std::uint64_t kAddressSpaceEnd = std::uint64_t{1} << 32;
constexpr std::size_t kLongestFileName = 1024;

constexpr DWORD kWritable = PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
constexpr DWORD kReadable = kWritable | PAGE_READONLY | PAGE_EXECUTE_READ;

std::uint8_t* pointerTo(Address32 address) { return reinterpret_cast<std::uint8_t*>(address); }

/// How many bytes from `address` on allow one of the kinds of access, `size` at most.
std::size_t accessibleSize(Address32 address, std::size_t size, DWORD access) {
    if (address == 0) return 0;
    const std::uint64_t end = std::min(std::uint64_t{address} + size, kAddressSpaceEnd);
    std::uint64_t position = address;
    while (position < end) {
        MEMORY_BASIC_INFORMATION region;
        const void* const start = pointerTo(static_cast<Address32>(position));
        if (VirtualQuery(start, &region, sizeof region) == 0 || region.State != MEM_COMMIT ||
            (region.Protect & access) == 0 || (region.Protect & PAGE_GUARD) != 0) {
            break;
        }
        position = reinterpret_cast<Address32>(region.BaseAddress) + std::uint64_t{region.RegionSize};
    }
    return static_cast<std::size_t>(std::min(position, end) - address);
}

std::span<std::uint8_t> bytesAt(Address32 address, std::size_t size, DWORD access) {
    require(address != 0 && accessibleSize(address, size, access) == size, Status::BadAddress);
    return {pointerTo(address), size};
}

}  // namespace

std::span<const std::uint8_t> readableBytes(Address32 address, std::size_t size) {
    return bytesAt(address, size, kReadable);
}

std::span<std::uint8_t> writableBytes(Address32 address, std::size_t size) {
    return bytesAt(address, size, kWritable);
}

std::u16string fileNameAt(Address32 address) {
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
