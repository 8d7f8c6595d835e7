// Speed of the HDR engine on one thread; bench_hdr_peers.cpp puts other libraries beside it.
#include "benchmarks.h"
#include "hdr/engine/rgbe_header.h"
#include "hdr/engine/rgbe_reader.h"
#include "hdr/engine/rgbe_writer.h"
#include "hdr/engine/tone_painter.h"
#include "hdr_works.h"
#include "report.h"

namespace vrx::bench {
namespace {

constexpr float kMultiplier = 128.0F;
constexpr float kInverseGamma = 1.0F / 2.2F;

/// From the file's bytes to a picture that was loaded before, as a viewer goes on to the next file.
void decode(benchmark::State& state) {
    RgbeStore store;
    inTurn(state, [&](const HdrPicture& picture) { decodeInto(store, picture); });
}

/// From the file's bytes to a new picture: the system's price for new pages is in it.
void decodeNew(benchmark::State& state) {
    inTurn(state, [](const HdrPicture& picture) {
        RgbeStore store;
        decodeInto(store, picture);
        benchmark::DoNotOptimize(store.data());
    });
}

/// The same and a new 24-bit bitmap, tables included.
void decodeAndToneMap(benchmark::State& state) {
    ToneTables tables;
    inTurn(state, [&](const HdrPicture& picture) {
        RgbeStore store;
        decodeInto(store, picture);
        tables.build(kMultiplier, kInverseGamma, ToneParts::Bytes);
        Bitmap24 bitmap(static_cast<std::uint32_t>(store.dimX()), static_cast<std::uint32_t>(store.dimY()));
        paintStore(tables, nullptr, store, bitmap);
        benchmark::DoNotOptimize(bitmap.data());
    });
}

void encode(benchmark::State& state) {
    MemoryFile file;
    inTurn(state, [&](const HdrPicture& picture) {
        file.clear();
        encodeRgbe(picture.store, file);
        benchmark::DoNotOptimize(file.span().data());
    });
}

/// Into a bitmap that is there already.
template <class Paint>
void paint(benchmark::State& state, Paint paint) {
    ToneTables tables;
    tables.build(kMultiplier, kInverseGamma);
    Bitmap24 bitmap;
    const auto makeSize = [&](const HdrPicture& picture) {
        bitmap.reset(static_cast<std::uint32_t>(picture.store.dimX()),
                     static_cast<std::uint32_t>(picture.store.dimY()));
    };
    inTurn(state, hdrPictures(), makeSize, [&](const HdrPicture& picture) {
        paint(tables, picture.store, bitmap);
        benchmark::DoNotOptimize(bitmap.data());
    });
}

void paintPlain(benchmark::State& state) {
    paint(state, [](const ToneTables& tables, const RgbeStore& store, Bitmap24& bitmap) {
        paintStore(tables, nullptr, store, bitmap);
    });
}

/// Statistics and painting.
void paintExposed(benchmark::State& state, ExpositionType type) {
    paint(state, [type](const ToneTables& tables, const RgbeStore& store, Bitmap24& bitmap) {
        const RowExposition exposition = expositionOf(type, measureLuminance(tables, store));
        paintStore(tables, &exposition, store, bitmap);
    });
}

/// Nanoseconds per entry: what a change of exposure costs before a pixel is painted.
void buildTables(benchmark::State& state) {
    ToneTables tables;
    for (auto _ : state) {
        tables.build(kMultiplier, kInverseGamma);
        benchmark::DoNotOptimize(tables.bytes());
    }
    state.counters["gamma 2.2"] = benchmark::Counter(
        65536.0 / 1e9, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void addOurs(const char* work, void (*function)(benchmark::State&)) { add(work, "vrx", function); }

}  // namespace

void decodeInto(RgbeStore& store, const HdrPicture& picture) {
    RgbeCursor cursor(picture.bytes, 1);
    const Resolution size = readResolution(cursor);
    store.reset(size.dimX, size.dimY);
    for (int y = 0; y < store.dimY(); ++y) benchmark::DoNotOptimize(readScanline(cursor, store, y));
}

void PaintingWork::paint(const RgbeStore& store, std::optional<ExpositionType> type) {
    tables_.build(kMultiplier, kInverseGamma, type ? ToneParts::BytesAndSingles : ToneParts::Bytes);
    RowExposition exposition{};
    if (type) exposition = expositionOf(*type, measureLuminance(tables_, store));
    bitmap_.reset(static_cast<std::uint32_t>(store.dimX()), static_cast<std::uint32_t>(store.dimY()));
    paintStore(tables_, type ? &exposition : nullptr, store, bitmap_);
    benchmark::DoNotOptimize(bitmap_.data());
}

void addHdrBenchmarks() {
    addOurs("decode", decode);
    addOurs("decode new", decodeNew);
    addOurs("decode + tone map", decodeAndToneMap);
    addOurs("write", encode);
    addOurs("plain painting", paintPlain);
    addOurs("auto exposition", [](benchmark::State& state) { paintExposed(state, ExpositionType::Max); });
    addOurs("auto exposition, range",
            [](benchmark::State& state) { paintExposed(state, ExpositionType::MinMax); });
    addOurs("tone table, per entry", buildTables);
}

}  // namespace vrx::bench
