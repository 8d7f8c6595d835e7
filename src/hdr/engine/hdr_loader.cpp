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

/// One pass over one file, from its resolution line on.
struct HdrLoader::Run {
    PictureFilling filling;
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

void HdrLoader::load(std::u16string name, bool invert) {
    init();
    preview_ = false;
    invert_ = invert;
    runWhileWanted(std::move(name));
}

void HdrLoader::preview(std::u16string name) {
    preview_ = true;
    invert_ = false;
    runWhileWanted(std::move(name));
}

void HdrLoader::runWhileWanted(std::u16string name) {
    while (!isBlank(name)) {
        try {
            runOnce(name);
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

void HdrLoader::runOnce(const std::u16string& name) {
    if (name == kErrorName) throw wrongFileType();
    fileName_ = name;
    stop_ = false;
    loading_ = true;
    restart_ = false;

    if (preview_) picture_.buildTables();
    const Bytes bytes = host_.readFile(name);
    if (bytes.size() <= 1) throw wrongFileType();
    RgbeCursor file(bytes.span(), kFirstPosition);
    const Resolution sizes = readResolution(file);
    Run run{PictureFilling(picture_, sizes), file};

    host_.headerLoaded(sizes.dimX, sizes.dimY);
    if (run.filling.holds()) readRows(run);

    if (preview_) host_.refresh();
    host_.finished();
}

void HdrLoader::readRows(Run& run) {
    picture_.makeRoom(preview_);
    const std::int32_t rows = picture_.dimY();
    for (std::int32_t y = 0; y < rows; ++y) {
        if (!readRow(run, y)) return;
        if (preview_ && !showRow(run, y)) return;
    }
}

/// Whether the row was read. A load that is to stop leaves a scanline after 50 runs; what is left of the
/// scanline stays undecoded, and no further row can be found in the file.
bool HdrLoader::readRow(Run& run, std::int32_t y) {
    const std::int32_t row = invert_ ? picture_.dimY() - y : y;
    const std::uint32_t maxRuns = shouldLeave(run) ? kRunsPerCheck : kAllRuns;
    switch (readScanline(run.file, picture_.store(), row, maxRuns)) {
        case ScanlineResult::Decoded:
            return true;
        case ScanlineResult::NotRunLength:
            throw wrongFileType();
        case ScanlineResult::OutOfRuns:
            host_.yield();
            return false;
    }
    return false;
}

/// Whether the next row is wanted.
bool HdrLoader::showRow(const Run& run, std::int32_t y) {
    picture_.previewRow(y);
    if (shouldLeave(run)) return false;
    host_.yield();
    if (shouldLeave(run)) return false;
    if (y % kRowsPerRefresh == 0) host_.refresh();
    if (shouldLeave(run)) return false;
    host_.yield();
    return !shouldLeave(run);
}

bool HdrLoader::shouldLeave(const Run& run) const { return stop_ || restart_ || !run.filling.holds(); }

}  // namespace vrx
