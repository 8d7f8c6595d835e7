// Radiance files made by hand, byte by byte, without the engine's own writer.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "hdr/engine/rgbe_cursor.h"
#include "hdr/engine/rgbe_store.h"

namespace vrx::test {

using FileBytes = std::vector<std::uint8_t>;

inline void append(FileBytes& file, std::string_view text) {
    file.insert(file.end(), text.begin(), text.end());
}

inline void append(FileBytes& file, std::initializer_list<int> bytes) {
    for (const int byte : bytes) file.push_back(static_cast<std::uint8_t>(byte));
}

inline FileBytes bytesOf(std::string_view text) { return {text.begin(), text.end()}; }

/// Magic, FORMAT, the empty line and the resolution line.
inline FileBytes headerFile(std::string_view resolution) {
    FileBytes file = bytesOf("#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n");
    append(file, resolution);
    append(file, "\n");
    return file;
}

inline FileBytes headerFile(int dimX, int dimY) {
    return headerFile("-Y " + std::to_string(dimY) + " +X " + std::to_string(dimX));
}

/// The byte that every column of a row of pictureFile() has; never 0.
inline int valueOf(int y, int c) { return 1 + (50 * c + y) % 255; }

inline void appendRun(FileBytes& file, int length, int value) {
    for (; length > 127; length -= 127) append(file, {255, value});
    if (length > 0) append(file, {128 + length, value});
}

inline void appendRow(FileBytes& file, int dimX, int y) {
    append(file, {2, 2, dimX >> 8, dimX & 255});
    for (int c = 0; c < kRgbeComponents; ++c) appendRun(file, dimX, valueOf(y, c));
}

/// A picture whose rows all differ.
inline FileBytes pictureFile(int dimX, int dimY) {
    FileBytes file = headerFile(dimX, dimY);
    for (int y = 0; y < dimY; ++y) appendRow(file, dimX, y);
    return file;
}

/// Whether a row of the store holds scanline y of pictureFile().
inline bool holdsScanline(const RgbeStore& store, int row, int y) {
    for (int c = 0; c < kRgbeComponents; ++c) {
        for (int x = 0; x < store.dimX(); ++x) {
            if (store.row(c, row)[x] != valueOf(y, c)) return false;
        }
    }
    return true;
}

/// Whether all of a row of the store is zero, its extra column included.
inline bool isZeroRow(const RgbeStore& store, int row) {
    for (int c = 0; c < kRgbeComponents; ++c) {
        for (int x = 0; x <= store.dimX(); ++x) {
            if (store.row(c, row)[x] != 0) return false;
        }
    }
    return true;
}

inline FileBytes withZeroByte(FileBytes file) {
    file.push_back(0);
    return file;
}

/// A file with the zero byte that stands behind it in memory, and a cursor over both.
struct OpenFile {
    FileBytes bytes;
    RgbeCursor cursor;

    explicit OpenFile(FileBytes file, std::size_t position = 0)
        : bytes(withZeroByte(std::move(file))), cursor(bytes, position) {}
    explicit OpenFile(std::string_view text, std::size_t position = 0) : OpenFile(bytesOf(text), position) {}
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
};

}  // namespace vrx::test
