#include "hdr_pictures.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

#include "hdr/engine/rgbe_header.h"
#include "hdr/engine/rgbe_reader.h"
#include "hdr/engine/rgbe_writer.h"
#include "sample_picture.h"

namespace vrx::bench {
namespace {

std::vector<HdrPicture>& chosen() {
    static std::vector<HdrPicture> pictures;
    return pictures;
}

RgbeStore decoded(std::span<const std::uint8_t> bytes) {
    RgbeCursor cursor(bytes, 1);
    const Resolution size = readResolution(cursor);
    RgbeStore store(size.dimX, size.dimY);
    for (std::int32_t y = 0; y < size.dimY; ++y) {
        if (readScanline(cursor, store, y) != ScanlineResult::Decoded)
            throw std::runtime_error("not run-length");
    }
    return store;
}

HdrPicture fromFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw std::runtime_error("cannot be opened");
    HdrPicture picture{std::filesystem::path(path).filename().string(), path, {}, {}};
    picture.bytes.assign(std::istreambuf_iterator<char>(file), {});
    picture.bytes.push_back(0);
    picture.store = decoded(picture.bytes);
    if (picture.pixels() == 0) throw std::runtime_error("has no pixels");
    return picture;
}

}  // namespace

HdrPicture builtInPicture(const std::string& name, int width, int height, unsigned seed) {
    HdrPicture picture{name, {}, {}, samplePicture(width, height, seed)};
    MemoryFile file;
    encodeRgbe(picture.store, file);
    picture.bytes.assign(file.span().begin(), file.span().end());
    picture.bytes.push_back(0);
    return picture;
}

void usePictures(const std::vector<std::string>& files) {
    for (const std::string& path : files) {
        try {
            chosen().push_back(fromFile(path));
        } catch (const Error&) {
            throw std::runtime_error(path + ": not a Radiance picture that is read");
        } catch (const std::exception& failure) {
            throw std::runtime_error(path + ": " + failure.what());
        }
    }
}

const std::vector<HdrPicture>& hdrPictures() {
    if (chosen().empty()) {
        for (unsigned number = 1; number <= 4; ++number) {
            chosen().push_back(builtInPicture("built-in " + std::to_string(number), 1024, 512, number));
        }
    }
    return chosen();
}

}  // namespace vrx::bench
