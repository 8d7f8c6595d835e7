#include "hdr/engine/tone_painter.h"

#include <cstring>

namespace vrx {
namespace {

constexpr std::size_t kBlock = 8;

/// A row's four planes and the table that they are looked up in.
struct PlainRow {
    const std::uint8_t* table;
    const std::uint8_t* r;
    const std::uint8_t* g;
    const std::uint8_t* b;
    const std::uint8_t* e;

    [[nodiscard]] const std::uint8_t* entriesAt(std::size_t x) const {
        return table + (std::size_t{e[x]} << 8);
    }

    /// Blue, green and red in the low 24 bits.
    [[nodiscard]] std::uint32_t pixel(const std::uint8_t* entries, std::size_t x) const {
        return entries[b[x]] | std::uint32_t{entries[g[x]]} << 8 | std::uint32_t{entries[r[x]]} << 16;
    }

    [[nodiscard]] bool blockHasOneExponent(std::size_t x) const {
        std::uint64_t exponents;
        std::memcpy(&exponents, e + x, kBlock);
        return exponents == e[x] * 0x0101010101010101U;
    }
};

/// Writes 4 bytes, of which the next pixel overwrites the last.
inline void put(std::uint8_t* bgr, std::uint32_t pixel) { std::memcpy(bgr, &pixel, sizeof pixel); }

}  // namespace

void paintPlainRow(const ToneTables& tables, const RgbeStore& store, std::int32_t y, std::uint8_t* bgr) {
    const PlainRow row{tables.allBytes(), store.row(0, y), store.row(1, y), store.row(2, y), store.row(3, y)};
    const auto width = static_cast<std::size_t>(store.dimX());
    std::size_t x = 0;
    for (; x + kBlock < width; x += kBlock) {
        const std::uint8_t* entries = row.entriesAt(x);
        const bool oneExponent = row.blockHasOneExponent(x);
        for (std::size_t i = x; i < x + kBlock; ++i, bgr += 3) {
            put(bgr, row.pixel(oneExponent ? entries : row.entriesAt(i), i));
        }
    }
    for (; x < width; ++x, bgr += 3) {
        const std::uint32_t pixel = row.pixel(row.entriesAt(x), x);
        std::memcpy(bgr, &pixel, 3);
    }
}

void paintStore(const ToneTables& tables, const Exposition* exposition, const RgbeStore& store,
                Bitmap24& bitmap) {
    for (std::int32_t y = 0; y < store.dimY(); ++y) {
        std::uint8_t* bgr = bitmap.rowFromTop(static_cast<std::uint32_t>(y));
        if (exposition != nullptr) {
            paintExposedRow(tables, *exposition, store, y, bgr);
        } else {
            paintPlainRow(tables, store, y, bgr);
        }
    }
}

}  // namespace vrx
