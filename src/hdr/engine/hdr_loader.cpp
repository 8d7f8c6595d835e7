#include "hdr/engine/hdr_loader.h"

#include <utility>

#include "common/engine/blanks.h"
#include "common/engine/error.h"
#include "hdr/engine/rgbe_header.h"
#include "hdr/engine/rgbe_reader.h"

namespace vrx {
namespace {

// The read position starts behind the file's first byte; the header's magic is not looked at.
constexpr std::size_t kFirstPosition = 1;
constexpr std::int32_t kRowsPerRefresh = 80;
constexpr std::uint32_t kRunsPerCheck = 50;

}  // namespace

/// One pass over one file.
struct HdrLoader::Run {
    std::uint32_t number;
    std::uint32_t generation;
    bool preview;
    bool invert;
    bool left = false;
    RgbeCursor file;
};

void HdrLoader::init() {
    loading_ = false;
    restart_ = false;
    stop_ = true;
}

void HdrLoader::setFileName(std::u16string name) {
    fileName_ = std::move(name);
    parameterChanged();
}

void HdrLoader::load(std::u16string name, bool preview, bool invert) {
    while (!isBlank(name)) {
        try {
            loadOnce(name, preview, invert);
            if (!settle()) return;
        } catch (...) {
            if (!settle()) throw;
        }
        name = fileName_;
    }
}

/// The end of every run; whether another is wanted.
bool HdrLoader::settle() {
    stop_ = true;
    loading_ = false;
    return std::exchange(restart_, false);
}

void HdrLoader::loadOnce(const std::u16string& name, bool preview, bool invert) {
    if (name == kErrorName) throw wrongFileType();
    fileName_ = name;
    stop_ = false;
    loading_ = true;
    restart_ = false;
    const std::uint32_t number = ++runs_;

    if (preview) picture_.buildTables();
    const Bytes bytes = host_.readFile(name);
    if (bytes.size() <= 1) throw wrongFileType();
    Run run{number, picture_.generation(), preview, invert, false, RgbeCursor(bytes.span(), kFirstPosition)};

    const Resolution resolution = readResolution(run.file);
    picture_.setDimensions(resolution.dimX, resolution.dimY);
    host_.headerLoaded(resolution.dimX, resolution.dimY);
    if (!replaced(run)) readRows(run);

    if (preview) host_.refresh();
    host_.finished();
}

void HdrLoader::readRows(Run& run) {
    picture_.resetStore(run.preview);
    run.generation = picture_.generation();
    const std::int32_t rows = picture_.dimY();
    for (std::int32_t y = 0; y < rows; ++y) {
        readRow(run, y);
        if (run.left || (run.preview && !showRow(run, y))) return;
    }
}

/// A load that is to stop leaves a scanline after 50 runs; what is left of the scanline stays undecoded, and
/// no further row can be found in the file.
void HdrLoader::readRow(Run& run, std::int32_t y) {
    const std::int32_t row = run.invert ? picture_.dimY() - y : y;
    const std::uint32_t maxRuns = shouldLeave(run) ? kRunsPerCheck : kAllRuns;
    switch (readScanline(run.file, picture_.store(), row, maxRuns)) {
        case ScanlineResult::Decoded:
            break;
        case ScanlineResult::NotRunLength:
            throw wrongFileType();
        case ScanlineResult::OutOfRuns:
            run.left = true;
            host_.yield();
            break;
    }
}

/// Whether the next row is wanted.
bool HdrLoader::showRow(const Run& run, std::int32_t y) {
    if (replaced(run)) return false;
    picture_.previewRow(y);
    if (shouldLeave(run)) return false;
    host_.yield();
    if (shouldLeave(run)) return false;
    if (y % kRowsPerRefresh == 0) host_.refresh();
    if (shouldLeave(run)) return false;
    host_.yield();
    return !shouldLeave(run);
}

/// Whether the host has started another load, or exchanged or cleared the pixels, since this run began.
bool HdrLoader::replaced(const Run& run) const {
    return run.number != runs_ || run.generation != picture_.generation();
}

bool HdrLoader::shouldLeave(const Run& run) const { return stop_ || restart_ || replaced(run); }

}  // namespace vrx
