// The same pictures through other libraries, where they are installed. These decode to three floats a pixel
// and encode from them; the engine keeps the file's RGBE bytes.
#include <cstddef>
#include <vector>

#include "hdr_sample.h"

#ifdef VRX_BENCH_STB
#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STBI_ONLY_HDR
#define STBI_NO_STDIO
#include <stb_image.h>
#include <stb_image_write.h>
#endif

#ifdef VRX_BENCH_FREEIMAGE
#include <FreeImage.h>

#include <memory>
#endif

namespace vrx::bench {
namespace {

#ifdef VRX_BENCH_STB

template <class Value>
void decodeByStb(benchmark::State& state, Value* (*decoder)(const stbi_uc*, int, int*, int*, int*, int)) {
    const std::span<const std::uint8_t> file = sampleOf(state).file.span();
    for (auto _ : state) {
        int width = 0, height = 0, channels = 0;
        Value* pixels = decoder(file.data(), static_cast<int>(file.size()), &width, &height, &channels, 3);
        if (pixels == nullptr) return state.SkipWithError(stbi_failure_reason());
        benchmark::DoNotOptimize(pixels);
        stbi_image_free(pixels);
    }
    reportPerPixel(state);
}

void stbDecodeToFloat(benchmark::State& state) { decodeByStb(state, stbi_loadf_from_memory); }

/// With the library's own gamma of 2.2.
void stbDecodeTo8Bit(benchmark::State& state) { decodeByStb(state, stbi_load_from_memory); }

void stbEncode(benchmark::State& state) {
    const std::span<const std::uint8_t> sample = sampleOf(state).file.span();
    int width = 0, height = 0, channels = 0;
    float* pixels =
        stbi_loadf_from_memory(sample.data(), static_cast<int>(sample.size()), &width, &height, &channels, 3);
    const auto write = [](void* file, void* data, int size) {
        static_cast<MemoryFile*>(file)->write(
            {static_cast<const std::uint8_t*>(data), static_cast<std::size_t>(size)});
    };
    MemoryFile file;
    for (auto _ : state) {
        file.clear();
        stbi_write_hdr_to_func(write, &file, width, height, 3, pixels);
        benchmark::DoNotOptimize(file.span().data());
    }
    stbi_image_free(pixels);
    reportPerPixel(state);
}

BENCHMARK(stbDecodeToFloat)->VRX_PICTURE_SIZES;
BENCHMARK(stbDecodeTo8Bit)->VRX_PICTURE_SIZES;
BENCHMARK(stbEncode)->VRX_PICTURE_SIZES;

#endif

#ifdef VRX_BENCH_FREEIMAGE

using Memory = std::unique_ptr<FIMEMORY, decltype(&FreeImage_CloseMemory)>;
using Dib = std::unique_ptr<FIBITMAP, decltype(&FreeImage_Unload)>;

Dib loadByFreeImage(std::span<const std::uint8_t> file) {
    const Memory memory(
        FreeImage_OpenMemory(const_cast<std::uint8_t*>(file.data()), static_cast<DWORD>(file.size())),
        FreeImage_CloseMemory);
    return {FreeImage_LoadFromMemory(FIF_HDR, memory.get(), 0), FreeImage_Unload};
}

void freeImageDecodeToFloat(benchmark::State& state) {
    const std::span<const std::uint8_t> file = sampleOf(state).file.span();
    for (auto _ : state) {
        const Dib dib = loadByFreeImage(file);
        if (!dib || FreeImage_GetImageType(dib.get()) != FIT_RGBF) return state.SkipWithError("not decoded");
        benchmark::DoNotOptimize(FreeImage_GetBits(dib.get()));
    }
    reportPerPixel(state);
}

void freeImageEncode(benchmark::State& state) {
    const Dib dib = loadByFreeImage(sampleOf(state).file.span());
    for (auto _ : state) {
        const Memory memory(FreeImage_OpenMemory(nullptr, 0), FreeImage_CloseMemory);
        if (!FreeImage_SaveToMemory(FIF_HDR, dib.get(), memory.get(), 0)) {
            return state.SkipWithError("not encoded");
        }
        benchmark::DoNotOptimize(memory.get());
    }
    reportPerPixel(state);
}

BENCHMARK(freeImageDecodeToFloat)->VRX_PICTURE_SIZES;
BENCHMARK(freeImageEncode)->VRX_PICTURE_SIZES;

#endif

}  // namespace
}  // namespace vrx::bench
