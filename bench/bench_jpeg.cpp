// Speed of the JPEG codec, in nanoseconds per pixel, beside the JPEG library called without it.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>

#include "benchmarks.h"
#include "jpeg/engine/decoder.h"
#include "jpeg/engine/encoder.h"
#include "picture.h"
#include "report.h"

namespace vrx::bench {
namespace {

using jpeg::Color;
using test::HostPixels;

constexpr jpeg::JpegFormat kFormat{Color::YCbCr, jpeg::Subsampling::TwoByTwo, 90};

const HostPixels& samplePixels() {
    static const HostPixels pixels = test::hostPixels(test::landscape(1920, 1080), Color::Bgr, true);
    return pixels;
}

void reportPerPixel(benchmark::State& state) {
    const jpeg::PixelLayout& layout = samplePixels().layout;
    state.counters["landscape 1920 x 1080"] =
        benchmark::Counter(static_cast<double>(layout.width) * layout.height / 1e9,
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void writeByCodec(benchmark::State& state) {
    const HostPixels& pixels = samplePixels();
    for (auto _ : state) {
        jpeg::GrowingFile file;
        jpeg::encode(pixels.bytes, pixels.layout, kFormat, file);
        benchmark::DoNotOptimize(file.span().data());
    }
    reportPerPixel(state);
}

void writeByLibrary(benchmark::State& state) {
    const HostPixels& pixels = samplePixels();
    for (auto _ : state) {
        jpeg_compress_struct codec{};
        jpeg_error_mgr errors{};
        codec.err = jpeg_std_error(&errors);
        jpeg_create_compress(&codec);
        unsigned char* bytes = nullptr;
        unsigned long size = 0;
        jpeg_mem_dest(&codec, &bytes, &size);
        codec.image_width = pixels.layout.width;
        codec.image_height = pixels.layout.height;
        codec.input_components = 3;
        codec.in_color_space = JCS_EXT_BGR;
        jpeg_set_defaults(&codec);
        jpeg_set_quality(&codec, kFormat.quality, TRUE);
        jpeg_start_compress(&codec, TRUE);
        while (codec.next_scanline < codec.image_height) {
            auto* row =
                const_cast<JSAMPROW>(pixels.bytes.data() + pixels.layout.rowOffset(codec.next_scanline));
            jpeg_write_scanlines(&codec, &row, 1);
        }
        jpeg_finish_compress(&codec);
        benchmark::DoNotOptimize(bytes);
        jpeg_destroy_compress(&codec);
        std::free(bytes);
    }
    reportPerPixel(state);
}

void readByCodec(benchmark::State& state) {
    const HostPixels& pixels = samplePixels();
    jpeg::GrowingFile file;
    jpeg::encode(pixels.bytes, pixels.layout, kFormat, file);
    HostPixels room = test::hostRoom(pixels.layout.width, pixels.layout.height, Color::Bgr, true);
    for (auto _ : state) {
        jpeg::decode(file.span(), room.layout, room.bytes);
        benchmark::DoNotOptimize(room.bytes.data());
    }
    reportPerPixel(state);
}

}  // namespace

void addJpegBenchmarks() {
    add("JPEG write", "vrx", writeByCodec);
    add("JPEG write", "libjpeg-turbo", writeByLibrary);
    add("JPEG read", "vrx", readByCodec);
}

}  // namespace vrx::bench
