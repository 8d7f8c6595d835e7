// Any bytes as a bitmap file. Whatever is whole stays whole when something follows it.
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

#include "raster/engine/bmp_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<std::uint8_t> file(data, data + size);
    const bool cut = vrx::isBrokenBmp(file);
    file.push_back(0);
    if (!cut && size >= 2 && vrx::isBrokenBmp(file)) std::abort();
    return 0;
}
