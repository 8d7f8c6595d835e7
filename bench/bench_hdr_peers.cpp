// The same works by other libraries, where they are installed. The picture libraries decode to three floats a
// pixel and encode from them; the engine keeps the file's RGBE bytes. LZ4's decompressor and memcpy make the
// engine's own planes, from a compressed copy and from a plain one.
#include <cstddef>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <vector>

#include "benchmarks.h"
#include "hdr_pictures.h"
#include "report.h"

#ifdef VRX_BENCH_STB
#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STBI_ONLY_HDR
#include <stb_image.h>
#include <stb_image_write.h>
#endif

#ifdef VRX_BENCH_FREEIMAGE
#include <FreeImage.h>
#endif

#ifdef VRX_BENCH_LZ4
#include <lz4.h>
#endif

namespace vrx::bench {
namespace {

template <class Value>
void need(const Value& value) {
    if (!value) throw std::runtime_error("a library did not do its work");
}

// Planes.

void copyPlanes(benchmark::State& state) {
    std::vector<std::uint8_t> planes;
    const auto makeRoom = [&](const HdrPicture& picture) { planes.resize(picture.store.size()); };
    inTurn(state, hdrPictures(), makeRoom, [&](const HdrPicture& picture) {
        std::memcpy(planes.data(), picture.store.data(), planes.size());
        benchmark::DoNotOptimize(planes.data());
    });
}

#ifdef VRX_BENCH_LZ4

std::vector<char> compressed(const RgbeStore& store) {
    const int size = static_cast<int>(store.size());
    std::vector<char> bytes(static_cast<std::size_t>(LZ4_compressBound(size)));
    const int written = LZ4_compress_default(reinterpret_cast<const char*>(store.data()), bytes.data(), size,
                                             static_cast<int>(bytes.size()));
    need(written > 0);
    bytes.resize(static_cast<std::size_t>(written));
    return bytes;
}

void decompressPlanes(benchmark::State& state) {
    std::vector<std::vector<char>> packed;
    for (const HdrPicture& picture : hdrPictures()) packed.push_back(compressed(picture.store));
    std::vector<char> planes;
    const auto makeRoom = [&](const HdrPicture& picture) { planes.resize(picture.store.size()); };
    inTurn(state, hdrPictures(), makeRoom, [&](const HdrPicture& picture) {
        const std::vector<char>& bytes = packed[static_cast<std::size_t>(&picture - hdrPictures().data())];
        const int size = LZ4_decompress_safe(bytes.data(), planes.data(), static_cast<int>(bytes.size()),
                                             static_cast<int>(planes.size()));
        need(size == static_cast<int>(planes.size()));
        benchmark::DoNotOptimize(planes.data());
    });
}

#endif

#ifdef VRX_BENCH_STB

using StbPixels = std::unique_ptr<float, void (*)(void*)>;

StbPixels stbPixelsOf(const HdrPicture& picture) {
    int width = 0, height = 0, channels = 0;
    StbPixels pixels(stbi_loadf_from_memory(picture.file().data(), static_cast<int>(picture.file().size()),
                                            &width, &height, &channels, 3),
                     stbi_image_free);
    need(pixels);
    return pixels;
}

void stbDecode(benchmark::State& state) {
    inTurn(state, [](const HdrPicture& picture) { benchmark::DoNotOptimize(stbPixelsOf(picture).get()); });
}

/// With the library's own gamma of 2.2.
void stbDecodeTo8Bit(benchmark::State& state) {
    inTurn(state, [](const HdrPicture& picture) {
        int width = 0, height = 0, channels = 0;
        stbi_uc* pixels = stbi_load_from_memory(
            picture.file().data(), static_cast<int>(picture.file().size()), &width, &height, &channels, 3);
        need(pixels);
        benchmark::DoNotOptimize(pixels);
        stbi_image_free(pixels);
    });
}

void stbWrite(benchmark::State& state) {
    StbPixels pixels(nullptr, stbi_image_free);
    const auto load = [&](const HdrPicture& picture) { pixels = stbPixelsOf(picture); };
    const auto append = [](void* file, void* data, int size) {
        static_cast<MemoryFile*>(file)->write(
            {static_cast<const std::uint8_t*>(data), static_cast<std::size_t>(size)});
    };
    MemoryFile file;
    inTurn(state, hdrPictures(), load, [&](const HdrPicture& picture) {
        file.clear();
        need(stbi_write_hdr_to_func(append, &file, picture.store.dimX(), picture.store.dimY(), 3,
                                    pixels.get()));
        benchmark::DoNotOptimize(file.span().data());
    });
}

#endif

#ifdef VRX_BENCH_FREEIMAGE

using Memory = std::unique_ptr<FIMEMORY, decltype(&FreeImage_CloseMemory)>;
using Dib = std::unique_ptr<FIBITMAP, decltype(&FreeImage_Unload)>;

Dib freeImagePixelsOf(const HdrPicture& picture) {
    const Memory memory(FreeImage_OpenMemory(const_cast<std::uint8_t*>(picture.file().data()),
                                             static_cast<DWORD>(picture.file().size())),
                        FreeImage_CloseMemory);
    Dib dib{FreeImage_LoadFromMemory(FIF_HDR, memory.get(), 0), FreeImage_Unload};
    need(dib && FreeImage_GetImageType(dib.get()) == FIT_RGBF);
    return dib;
}

void freeImageDecode(benchmark::State& state) {
    inTurn(state,
           [](const HdrPicture& picture) { benchmark::DoNotOptimize(freeImagePixelsOf(picture).get()); });
}

/// `action(dib)` on each picture's floats, which were decoded before.
template <class Action>
void onFreeImagePixels(benchmark::State& state, Action action) {
    Dib dib(nullptr, FreeImage_Unload);
    const auto load = [&](const HdrPicture& picture) { dib = freeImagePixelsOf(picture); };
    inTurn(state, hdrPictures(), load, [&](const HdrPicture&) { action(dib.get()); });
}

void freeImageWrite(benchmark::State& state) {
    onFreeImagePixels(state, [](FIBITMAP* dib) {
        const Memory memory(FreeImage_OpenMemory(nullptr, 0), FreeImage_CloseMemory);
        need(FreeImage_SaveToMemory(FIF_HDR, dib, memory.get(), 0));
        benchmark::DoNotOptimize(memory.get());
    });
}

/// Reinhard's operator with the library's own parameters.
void freeImageReinhard(benchmark::State& state) {
    onFreeImagePixels(state, [](FIBITMAP* dib) {
        const Dib mapped{FreeImage_TmoReinhard05(dib, 0, 0), FreeImage_Unload};
        need(mapped);
        benchmark::DoNotOptimize(mapped.get());
    });
}

#endif

}  // namespace

void addHdrPeers() {
#ifdef VRX_BENCH_STB
    add("decode", "stb_image", stbDecode);
    add("decode new", "stb_image", stbDecode);
    add("decode + tone map", "stb_image", stbDecodeTo8Bit);
    add("write", "stb_image_write", stbWrite);
#endif
#ifdef VRX_BENCH_FREEIMAGE
    add("decode", "FreeImage", freeImageDecode);
    add("write", "FreeImage", freeImageWrite);
    add("auto exposition", "FreeImage Reinhard", freeImageReinhard);
#endif
#ifdef VRX_BENCH_LZ4
    add("decode", "LZ4", decompressPlanes);
#endif
    add("decode", "memcpy", copyPlanes);
}

}  // namespace vrx::bench
