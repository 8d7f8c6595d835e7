#include "library_files.h"

#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>

#include <algorithm>

namespace vrx::test {
namespace {

/// Writes rows without padding; `configure` chooses the kind of file.
template <class Configure>
JpegFile write(const std::uint8_t* rows, int width, int height, int channels, J_COLOR_SPACE color,
               Configure configure) {
    jpeg_compress_struct codec{};
    jpeg_error_mgr errors{};
    codec.err = jpeg_std_error(&errors);
    jpeg_create_compress(&codec);
    unsigned char* bytes = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&codec, &bytes, &size);
    codec.image_width = static_cast<JDIMENSION>(width);
    codec.image_height = static_cast<JDIMENSION>(height);
    codec.input_components = channels;
    codec.in_color_space = color;
    jpeg_set_defaults(&codec);
    configure(codec);
    jpeg_start_compress(&codec, TRUE);
    for (int y = 0; y < height; ++y) {
        auto* row = const_cast<JSAMPROW>(rows + static_cast<std::ptrdiff_t>(y) * width * channels);
        jpeg_write_scanlines(&codec, &row, 1);
    }
    jpeg_finish_compress(&codec);
    jpeg_destroy_compress(&codec);
    JpegFile file(bytes, bytes + size);
    std::free(bytes);
    return file;
}

template <class Configure>
JpegFile write(const Picture& picture, Configure configure) {
    return write(picture.rgb.data(), static_cast<int>(picture.width), static_cast<int>(picture.height), 3,
                 JCS_RGB, configure);
}

using Position = std::ptrdiff_t;

/// Where a marker stands; image data between markers never looks like one.
Position find(const JpegFile& file, std::uint8_t marker, Position from = 0) {
    const std::uint8_t bytes[] = {0xFF, marker};
    return std::search(file.begin() + from, file.end(), bytes, bytes + 2) - file.begin();
}

constexpr std::uint8_t kStartOfScan = 0xDA;

}  // namespace

JpegFile progressiveFile(const Picture& picture) {
    return write(picture, [](jpeg_compress_struct& codec) { jpeg_simple_progression(&codec); });
}

JpegFile fourColorFile() {
    const std::vector<std::uint8_t> pixels(8 * 8 * 4, 100);
    return write(pixels.data(), 8, 8, 4, JCS_CMYK, [](jpeg_compress_struct&) {});
}

JpegFile fileOfRepeatedScans(const Picture& picture, int repetitions) {
    static const jpeg_scan_info kScans[] = {
        {1, {0}, 0, 63, 0, 0}, {1, {1}, 0, 63, 0, 0}, {1, {2}, 0, 63, 0, 0}};
    JpegFile file = write(picture, [](jpeg_compress_struct& codec) {
        codec.scan_info = kScans;
        codec.num_scans = 3;
    });
    const Position first = find(file, kStartOfScan);
    const Position second = find(file, kStartOfScan, first + 2);
    // Between two scans there may be tables for the next one.
    const JpegFile scan(file.begin() + first, file.begin() + std::min(second, find(file, 0xC4, first)));
    JpegFile repeated(file.begin(), file.begin() + first);
    for (int i = 0; i < repetitions; ++i) repeated.insert(repeated.end(), scan.begin(), scan.end());
    repeated.insert(repeated.end(), file.begin() + first, file.end());
    return repeated;
}

void setSizes(JpegFile& file, int width, int height) {
    const Position frame = std::min(find(file, 0xC0), find(file, 0xC2));
    // Marker, length of 2 bytes, precision; then height and width, high byte first.
    std::uint8_t* const sizes = file.data() + frame + 5;
    sizes[0] = static_cast<std::uint8_t>(height >> 8);
    sizes[1] = static_cast<std::uint8_t>(height);
    sizes[2] = static_cast<std::uint8_t>(width >> 8);
    sizes[3] = static_cast<std::uint8_t>(width);
}

}  // namespace vrx::test
