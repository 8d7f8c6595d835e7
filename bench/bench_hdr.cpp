// Speed of the HDR engine, in nanoseconds per pixel on one thread; bench_hdr_peers.cpp puts other libraries
// beside it.
#include "hdr/engine/rgbe_header.h"
#include "hdr/engine/rgbe_reader.h"
#include "hdr/engine/tone_painter.h"
#include "hdr_sample.h"

namespace vrx::bench {
namespace {

void readRows(RgbeCursor& cursor, RgbeStore& store) {
    for (int y = 0; y < store.dimY(); ++y) benchmark::DoNotOptimize(readScanline(cursor, store, y));
}

/// From the file's bytes to a picture that was loaded before, as a viewer goes on to the next file.
void decodeAgain(benchmark::State& state) {
    const MemoryFile& file = sampleOf(state).file;
    RgbeStore store;
    for (auto _ : state) {
        RgbeCursor cursor(file.span(), 1);
        const Resolution size = readResolution(cursor);
        store.reset(size.dimX, size.dimY);
        readRows(cursor, store);
    }
    reportPerPixel(state);
}

/// From the file's bytes to a new picture: the system's price for new pages is in it.
void decodeNew(benchmark::State& state) {
    const MemoryFile& file = sampleOf(state).file;
    for (auto _ : state) {
        RgbeCursor cursor(file.span(), 1);
        const Resolution size = readResolution(cursor);
        RgbeStore store(size.dimX, size.dimY);
        readRows(cursor, store);
        benchmark::DoNotOptimize(store.data());
    }
    reportPerPixel(state);
}

/// The same and a 24-bit bitmap, tables included.
void decodeAndToneMapNew(benchmark::State& state) {
    const MemoryFile& file = sampleOf(state).file;
    ToneTables tables;
    for (auto _ : state) {
        RgbeCursor cursor(file.span(), 1);
        const Resolution size = readResolution(cursor);
        RgbeStore store(size.dimX, size.dimY);
        readRows(cursor, store);
        tables.build(128.0F, 1.0F / 2.2F);
        Bitmap24 bitmap(static_cast<std::uint32_t>(size.dimX), static_cast<std::uint32_t>(size.dimY));
        paintStore(tables, nullptr, store, bitmap);
        benchmark::DoNotOptimize(bitmap.data());
    }
    reportPerPixel(state);
}

void buildTables(benchmark::State& state) {
    ToneTables tables;
    const float inverseGamma = 1.0F / static_cast<float>(state.range(0)) * 10.0F;
    for (auto _ : state) {
        tables.build(65536.0F, inverseGamma);
        benchmark::DoNotOptimize(tables.allBytes());
    }
}

void paint(benchmark::State& state, bool autoExposition) {
    const RgbeStore& store = sampleOf(state).store;
    ToneTables tables;
    tables.build(128.0F, 1.0F / 2.2F);
    Bitmap24 bitmap(static_cast<std::uint32_t>(store.dimX()), static_cast<std::uint32_t>(store.dimY()));
    for (auto _ : state) {
        RowExposition exposition{};
        if (autoExposition) {
            exposition = expositionOf(ExpositionType::Max, measureLuminance(tables, store));
        }
        paintStore(tables, autoExposition ? &exposition : nullptr, store, bitmap);
        benchmark::DoNotOptimize(bitmap.data());
    }
    reportPerPixel(state);
}

void paintPlain(benchmark::State& state) { paint(state, false); }

void paintAutoExposition(benchmark::State& state) { paint(state, true); }

void encode(benchmark::State& state) {
    const RgbeStore& store = sampleOf(state).store;
    MemoryFile file;
    for (auto _ : state) {
        file.clear();
        encodeRgbe(store, store.dimX(), store.dimY(), file);
        benchmark::DoNotOptimize(file.span().data());
    }
    reportPerPixel(state);
}

BENCHMARK(decodeAgain)->VRX_PICTURE_SIZES;
BENCHMARK(decodeNew)->VRX_PICTURE_SIZES;
BENCHMARK(decodeAndToneMapNew)->VRX_PICTURE_SIZES;
BENCHMARK(paintPlain)->VRX_PICTURE_SIZES;
BENCHMARK(paintAutoExposition)->VRX_PICTURE_SIZES;
BENCHMARK(encode)->VRX_PICTURE_SIZES;
BENCHMARK(buildTables)->ArgName("gamma*10")->Arg(10)->Arg(22)->Arg(60)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace vrx::bench

BENCHMARK_MAIN();
