// Any bytes as a bitmap file: its rows are converted into room that is not one byte larger. Of files that are
// left to the system's reader, whatever is whole stays whole when something follows it.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

#include "ground/error.h"
#include "raster/engine/bmp_check.h"
#include "raster/engine/bmp_reader.h"

namespace {

constexpr std::uint32_t kMostPixels = 1U << 18;

void require(bool condition) {
    if (!condition) std::abort();
}

void convertRows(const vrx::BmpReader& reader, std::span<const std::uint8_t> file) {
    require(reader.rowsOffset() < file.size() && reader.width() > 0 && reader.height() > 0);
    if (reader.width() > kMostPixels || reader.height() > kMostPixels) return;
    std::vector<std::uint8_t> pixels(std::size_t{reader.width()} * 3);
    for (std::uint32_t row = 0; row < reader.height(); ++row) {
        const std::uint64_t offset = reader.rowsOffset() + row * reader.rowStride();
        const auto start = static_cast<std::size_t>(std::min<std::uint64_t>(offset, file.size()));
        const auto size =
            static_cast<std::size_t>(std::min<std::uint64_t>(reader.rowStride(), file.size() - start));
        // Only the last row may lack bytes, or a few short ones.
        require(size == reader.rowStride() || file.size() - start < reader.rowStride());
        const std::vector<std::uint8_t> held(file.begin() + static_cast<std::ptrdiff_t>(start),
                                             file.begin() + static_cast<std::ptrdiff_t>(start + size));
        reader.convertRow(held, pixels.data());
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span<const std::uint8_t> input(data, size);
    try {
        const auto head = input.first(std::min(size, vrx::BmpReader::kHeadSize));
        if (const auto reader = vrx::BmpReader::read(head, size)) convertRows(*reader, input);
    } catch (const vrx::Error& error) {
        require(error.number == 481);
    }
    std::vector<std::uint8_t> file(data, data + size);
    const bool cut = vrx::isBrokenBmp(file);
    file.push_back(0);
    require(cut || size < 2 || !vrx::isBrokenBmp(file));
    return 0;
}
