#include "hdr/engine/tone_painter.h"

#include <cstring>

namespace vrx {
namespace {

constexpr std::size_t kBlock = 64;

/// Where the components of a block of pixels stand in the table: 256 mantissas to an exponent. The loops over
/// a whole block become vector instructions, and the look-ups need few registers, of which 32-bit code is
/// short.
struct Offsets {
    std::uint16_t r[kBlock];
    std::uint16_t g[kBlock];
    std::uint16_t b[kBlock];
};

inline void putOffsets(const std::uint8_t* mantissas, const std::uint8_t* exponents, std::size_t size,
                       std::uint16_t* offsets) {
    for (std::size_t i = 0; i < size; ++i)
        offsets[i] = static_cast<std::uint16_t>(exponents[i] << 8 | mantissas[i]);
}

/// A row's four planes.
struct PlainRow {
    const std::uint8_t* r;
    const std::uint8_t* g;
    const std::uint8_t* b;
    const std::uint8_t* e;

    void putBlock(std::size_t x, std::size_t size, Offsets& offsets) const {
        putOffsets(r + x, e + x, size, offsets.r);
        putOffsets(g + x, e + x, size, offsets.g);
        putOffsets(b + x, e + x, size, offsets.b);
    }
};

/// Blue, green and red in the low 24 bits.
inline std::uint32_t pixel(const std::uint8_t* table, const Offsets& offsets, std::size_t i) {
    return table[offsets.b[i]] | std::uint32_t{table[offsets.g[i]]} << 8 |
           std::uint32_t{table[offsets.r[i]]} << 16;
}

/// Writes 4 bytes, of which the next pixel overwrites the last.
inline void put(std::uint8_t* bgr, std::uint32_t pixel) { std::memcpy(bgr, &pixel, sizeof pixel); }

}  // namespace

void paintPlainRow(const ToneTables& tables, const RgbeStore& store, std::int32_t y, std::uint8_t* bgr) {
    const std::uint8_t* table = tables.bytes();
    const PlainRow row{store.row(0, y), store.row(1, y), store.row(2, y), store.row(3, y)};
    const auto width = static_cast<std::size_t>(store.dimX());
    Offsets offsets;
    std::size_t x = 0;
    for (; x + kBlock < width; x += kBlock, bgr += 3 * kBlock) {
        row.putBlock(x, kBlock, offsets);
        for (std::size_t i = 0; i < kBlock; ++i) put(bgr + 3 * i, pixel(table, offsets, i));
    }
    row.putBlock(x, width - x, offsets);
    for (std::size_t i = 0; x < width; ++x, ++i, bgr += 3) {
        const std::uint32_t last = pixel(table, offsets, i);
        std::memcpy(bgr, &last, 3);
    }
}

void paintRow(const ToneTables& tables, const RowExposition* exposition, const RgbeStore& store,
              std::int32_t y, std::uint8_t* bgr) {
    if (exposition != nullptr) {
        paintExposedRow(tables, *exposition, store, y, bgr);
    } else {
        paintPlainRow(tables, store, y, bgr);
    }
}

void paintStore(const ToneTables& tables, const RowExposition* exposition, const RgbeStore& store,
                Bitmap24& bitmap) {
    for (std::int32_t y = 0; y < store.dimY(); ++y) {
        paintRow(tables, exposition, store, y, bitmap.rowFromTop(static_cast<std::uint32_t>(y)));
    }
}

}  // namespace vrx
