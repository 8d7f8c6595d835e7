// Whole calls through COM, from file to file, beside stb_image on the same files and beside what the engine
// alone needs for the pixels in them. The component must be registered.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include "benchmarks.h"
#include "hdr/engine/rgbe_writer.h"
#include "hdr_pictures.h"
#include "hdr_works.h"
#include "report.h"
#include "sample.h"
#include "sample_picture.h"

#ifdef VRX_BENCH_STB
#include <stb_image.h>
#include <stb_image_write.h>
#endif

namespace vrx::bench {
namespace {

constexpr float kExposure = 7.0F;
constexpr float kGamma = 2.2F;

/// A folder for the files that the calls read and write; gone at the end.
class WorkFolder {
  public:
    WorkFolder() : path_(std::filesystem::temp_directory_path() / "vrx_bench") {
        std::filesystem::create_directories(path_);
    }
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;
    ~WorkFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    [[nodiscard]] std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

  private:
    std::filesystem::path path_;
};

const WorkFolder& workFolder() {
    static const WorkFolder folder;
    return folder;
}

/// Where a picture is written: over the file of the time before.
std::filesystem::path targetOf(const HdrPicture& picture) { return workFolder() / ("saved " + picture.name); }

HdrPicture copyOf(const HdrPicture& picture) {
    HdrPicture copy{picture.name, workFolder() / picture.name, picture.bytes, RgbeStore()};
    decodeInto(copy.store, picture);
    std::ofstream file(copy.path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(picture.file().data()),
               static_cast<std::streamsize>(picture.file().size()));
    return copy;
}

/// The pictures and a large one, as files.
const std::vector<HdrPicture>& pictureFiles() {
    static const std::vector<HdrPicture> files = [] {
        std::vector<HdrPicture> result;
        for (const HdrPicture& picture : hdrPictures()) result.push_back(copyOf(picture));
        result.push_back(copyOf(builtInPicture("built-in 4096 x 2048", 4096, 2048, 5)));
        return result;
    }();
    return files;
}

/// An object of the component in an apartment of its own.
class Component {
  public:
    Component() {
        check(CoInitialize(nullptr));
        check(CoCreateInstance(CLSID_CVrxHDR, nullptr, CLSCTX_INPROC_SERVER, IID__CVrxHDR,
                               reinterpret_cast<void**>(hdr_.put())));
        check(hdr_->put_Gamma(kGamma));
        check(hdr_->put_Exposure(kExposure));
    }
    Component(const Component&) = delete;
    Component& operator=(const Component&) = delete;
    ~Component() {
        hdr_.reset();
        CoUninitialize();
    }
    _CVrxHDR* operator->() const { return hdr_.get(); }

    void load(const HdrPicture& picture) const {
        VARIANT_BOOL invert = VARIANT_FALSE;
        check(hdr_->Load_HDR(Text(picture.path.c_str()).get(), &invert));
    }

  private:
    Pointer<_CVrxHDR> hdr_;
};

/// `call(object, picture)` on each file's picture, loaded before where wanted.
template <class Call>
void calls(benchmark::State& state, bool loaded, Call call) {
    try {
        const Component hdr;
        const auto prepare = [&](const HdrPicture& picture) {
            if (loaded) hdr.load(picture);
        };
        inTurn(state, pictureFiles(), prepare, [&](const HdrPicture& picture) { call(hdr, picture); });
    } catch (const Failure& failure) {
        std::fprintf(stderr, "%ls\n", failure.description.c_str());
        state.SkipWithError("a call failed");
    }
}

void loadHdr(benchmark::State& state) {
    calls(state, false, [](const Component& hdr, const HdrPicture& picture) { hdr.load(picture); });
}

void saveHdr(benchmark::State& state) {
    calls(state, true, [](const Component& hdr, const HdrPicture& picture) {
        Text written;
        check(hdr->Save_HDR(Text(targetOf(picture).c_str()).get(), written.put()));
    });
}

void getPreview(benchmark::State& state) {
    calls(state, false, [](const Component& hdr, const HdrPicture& picture) {
        check(hdr->Get_Preview(Text(picture.path.c_str()).get()));
    });
}

void getBmp(benchmark::State& state) {
    calls(state, true, [](const Component& hdr, const HdrPicture&) { check(hdr->Get_BMP()); });
}

void convertToBmp(benchmark::State& state) {
    calls(state, true, [](const Component& hdr, const HdrPicture& picture) {
        check(hdr->Convert_HDR_to_BMP(Text(targetOf(picture).c_str()).get(), -1, -1));
    });
}

void drawInto(HDC target, IPictureDisp& picture) {
    Pointer<IPicture> drawable;
    check(picture.QueryInterface(IID_IPicture, reinterpret_cast<void**>(drawable.put())));
    OLE_XSIZE_HIMETRIC width = 0;
    OLE_YSIZE_HIMETRIC height = 0;
    check(drawable->get_Width(&width));
    check(drawable->get_Height(&height));
    check(drawable->Render(target, 0, 0, 1024, 512, 0, height, width, -height, nullptr));
}

/// What a viewer does when its slider moves: a new exposure, the bitmap, the picture, drawn into a window's
/// room.
void moveSlider(benchmark::State& state, VARIANT_BOOL autoExposition) {
    const HDC screen = GetDC(nullptr);
    const HDC window = CreateCompatibleDC(screen);
    const HBITMAP room = CreateCompatibleBitmap(screen, 1024, 512);
    const HGDIOBJ before = SelectObject(window, room);
    float exposure = kExposure;
    calls(state, true, [&](const Component& hdr, const HdrPicture&) {
        exposure = exposure < kExposure + 1 ? exposure + 0.125F : kExposure;
        check(hdr->put_AutoExposition(autoExposition));
        check(hdr->put_Exposure(exposure));
        check(hdr->Get_BMP());
        Pointer<IPictureDisp> picture;
        check(hdr->Get_Picture(-1, 0, 0, 0, -1, 0, 0, 0, picture.put()));
        drawInto(window, *picture.get());
    });
    SelectObject(window, before);
    DeleteObject(room);
    DeleteDC(window);
    ReleaseDC(nullptr, screen);
}

// The engine's part of them.

template <class Action>
void engineAlone(benchmark::State& state, Action&& action) {
    inTurn(
        state, pictureFiles(), [](const HdrPicture&) {}, action);
}

void decodeAlone(benchmark::State& state) {
    engineAlone(state,
                [store = RgbeStore()](const HdrPicture& picture) mutable { decodeInto(store, picture); });
}

void encodeAlone(benchmark::State& state) {
    engineAlone(state, [file = MemoryFile()](const HdrPicture& picture) mutable {
        file.clear();
        encodeRgbe(picture.store, file);
    });
}

void previewAlone(benchmark::State& state) {
    engineAlone(state, [work = PaintingWork(), store = RgbeStore()](const HdrPicture& picture) mutable {
        decodeInto(store, picture);
        work.paint(store, std::nullopt);
    });
}

void paintAlone(benchmark::State& state, std::optional<ExpositionType> type) {
    engineAlone(state, [work = PaintingWork(), type](const HdrPicture& picture) mutable {
        work.paint(picture.store, type);
    });
}

// stb_image on the same files.

#ifdef VRX_BENCH_STB

void stbLoad(benchmark::State& state) {
    inTurn(
        state, pictureFiles(), [](const HdrPicture&) {},
        [&](const HdrPicture& picture) {
            int width = 0, height = 0, channels = 0;
            float* pixels = stbi_loadf(picture.path.string().c_str(), &width, &height, &channels, 3);
            if (pixels == nullptr) state.SkipWithError(stbi_failure_reason());
            stbi_image_free(pixels);
        });
}

void stbSave(benchmark::State& state) {
    float* pixels = nullptr;
    int width = 0, height = 0, channels = 0;
    const auto load = [&](const HdrPicture& picture) {
        stbi_image_free(pixels);
        pixels = stbi_loadf(picture.path.string().c_str(), &width, &height, &channels, 3);
    };
    inTurn(state, pictureFiles(), load, [&](const HdrPicture& picture) {
        const std::string target = targetOf(picture).string();
        if (stbi_write_hdr(target.c_str(), width, height, 3, pixels) == 0) state.SkipWithError("not written");
    });
    stbi_image_free(pixels);
}

#endif

template <class Function>
void addPair(const char* work, Function call, Function alone) {
    add(work, "vrx", call);
    add(work, "engine alone", alone);
}

}  // namespace

void addCallBenchmarks() {
    addPair("Load_HDR", loadHdr, decodeAlone);
    addPair("Save_HDR", saveHdr, encodeAlone);
#ifdef VRX_BENCH_STB
    add("Load_HDR", "stb_image", stbLoad);
    add("Save_HDR", "stb_image_write", stbSave);
#endif
    addPair("Get_Preview", getPreview, previewAlone);
    const auto plain = [](benchmark::State& state) { paintAlone(state, std::nullopt); };
    add("Get_BMP", "vrx", getBmp);
    add("Get_BMP", "engine alone", plain);
    add("Convert_HDR_to_BMP", "vrx", convertToBmp);
    add("Convert_HDR_to_BMP", "engine alone", plain);
    add("slider, plain", "vrx", [](benchmark::State& state) { moveSlider(state, VARIANT_FALSE); });
    add("slider, plain", "engine alone", plain);
    add("slider, auto", "vrx", [](benchmark::State& state) { moveSlider(state, VARIANT_TRUE); });
    add("slider, auto", "engine alone",
        [](benchmark::State& state) { paintAlone(state, ExpositionType::Max); });
}

}  // namespace vrx::bench
