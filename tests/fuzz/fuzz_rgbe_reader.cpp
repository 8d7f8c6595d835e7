// Loads of any bytes by hosts that do anything: the first bytes say how the file is loaded and what the host
// does at each of its calls, the rest is the file.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <span>
#include <string>

#include "hdr/engine/hdr_loader.h"

namespace {

using namespace vrx;

void require(bool condition) {
    if (!condition) std::abort();
}

/// Takes what an encoder writes and keeps nothing.
class NullSink final : public ByteSink {
  public:
    void write(std::span<const std::uint8_t>) override {}
};

constexpr auto kGoodFile =
    std::to_array<std::uint8_t>({'#', '\n', '-', 'Y', ' ', '1', ' ', '+', 'X', ' ', '2', '\n',
                                 2,   2,    0,   2,   130, 10,  130, 20,  130, 30,  130, 136});

Bytes withZeroByte(std::span<const std::uint8_t> file) {
    Bytes bytes(file.size() + 1);
    std::copy(file.begin(), file.end(), bytes.data());
    bytes.data()[file.size()] = 0;
    return bytes;
}

/// Each call of the loader takes the next control byte and does what it says, until none is left.
class FuzzHost final : public LoadHost {
  public:
    FuzzHost(std::span<const std::uint8_t> controls, std::span<const std::uint8_t> file)
        : controls_(controls), file_(file) {
        picture_.setExposure(0.0F);
        picture_.setGamma(1.0F);
    }

    void load(const char16_t* name, bool preview, bool invert) {
        try {
            HdrLoad load(loader_, name);
            if (preview) return load.preview();
            load.load(invert);
        } catch (const Error&) {
        }
    }

    /// Whatever happened, the object is idle afterwards and loads the next file.
    void checkThatItGoesOn() {
        require(!loader_.loading());
        require(hasSaneSizes());
        controls_ = {};
        HdrLoad(loader_, u"good").load(false);
        require(picture_.dimX() == 2 && picture_.dimY() == 1 && picture_.component(1, 0, 1) == 20.5F);
    }

    Bytes readFile(const std::u16string& name) override {
        act();
        if (name == u"good") return withZeroByte(kGoodFile);
        if (name == u"file") return withZeroByte(file_);
        if (name == u"half") return withZeroByte(file_.first(file_.size() / 2));
        throw platformError(Platform::FileNotFound);
    }
    void headerLoaded(std::int32_t dimX, std::int32_t dimY) override {
        require(dimX >= 0 && dimY >= 0 && dimX == picture_.dimX() && dimY == picture_.dimY());
        act();
    }
    void refresh() override { act(); }
    void finished() override { act(); }
    void yield() override { act(); }

  private:
    [[nodiscard]] bool hasSaneSizes() const {
        const RgbeStore& store = picture_.store();
        return picture_.dimX() >= 0 && picture_.dimY() >= 0 &&
               store.size() ==
                   (store.empty() ? 0 : 4 * store.stride() * (static_cast<std::size_t>(store.dimY()) + 1));
    }

    void act() {
        if (controls_.empty()) return;
        const int control = controls_.front();
        controls_ = controls_.subspan(1);
        if (control < 64) return;
        if (control < 160) return steer(control % 8);
        usePicture(control % 8);
    }

    void steer(int control) {
        switch (control) {
            case 0:
                return loader_.end();
            case 1:
                return loader_.cancel();
            case 2:
                return loader_.parameterChanged();
            case 3:
                return loader_.setFileName(u"half");
            case 4:
                return loader_.setFileName(u"Error");
            case 5:
                return load(u"half", true, false);
            case 6:
                return load(u"good", false, true);
            default:
                throw platformError(Platform::InternalError);
        }
    }

    void usePicture(int control) {
        switch (control) {
            case 0:
                return picture_.clear();
            case 1:
                return picture_.setStore(RgbeStore(3, 2));
            case 2:
                static_cast<void>(picture_.component(picture_.dimX(), picture_.dimY(), 2));
                static_cast<void>(picture_.percentAt(picture_.dimX(), picture_.dimY()));
                return;
            case 3:
                return picture_.setAutoExposition(true);
            case 4:
                return picture_.setExpositionType(ExpositionType::MinMax);
            case 5:
                return load(u" ", true, false);
            default:
                return paintAndSave();
        }
    }

    /// Only pictures that a host can wait for: what a file claims to be may take minutes to paint.
    void paintAndSave() {
        if (picture_.store().size() > 1 << 20) return;
        try {
            picture_.paint();
            static_cast<void>(picture_.convert(1.0F, 1.0F));
            NullSink sink;
            picture_.encode(sink);
        } catch (const Error&) {
        }
    }

    std::span<const std::uint8_t> controls_;
    std::span<const std::uint8_t> file_;
    HdrPicture picture_;
    HdrLoader loader_{picture_, *this};
};

}  // namespace

/// Blocks above 64 MB are not to be had, as in a process that is short of memory: what a sanitizer does for
/// one that stays untouched takes longer than a thousand other inputs.
extern "C" const char*
__asan_default_options() {  // NOLINT(bugprone-reserved-identifier): the sanitizer's name
    return "max_allocation_size_mb=64:allocator_may_return_null=1";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span<const std::uint8_t> input(data, size);
    if (input.size() < 2) return 0;
    const std::size_t controls = std::min<std::size_t>(input[1] % 32, input.size() - 2);
    static std::optional<FuzzHost> host;  // too large for the stack
    host.emplace(input.subspan(2, controls), input.subspan(2 + controls));
    host->load(u"file", input[0] % 4 == 1, input[0] % 4 == 2);
    host->checkThatItGoesOn();
    return 0;
}
