#include "hdr/engine/hdr_loader.h"

#include <utility>

#include "ground/blanks.h"
#include "ground/error.h"
#include "hdr/engine/rgbe_header.h"
#include "hdr/engine/rgbe_reader.h"

namespace vrx {
namespace {

// The read position starts behind the file's first byte; the header's magic is not looked at.
constexpr std::size_t kFirstPosition = 1;
constexpr std::int32_t kRowsPerRefresh = 80;
constexpr std::uint32_t kRunsPerCheck = 50;

}  // namespace

void HdrLoader::cancel() {
    loading_ = false;
    restart_ = false;
    stop_ = true;
}

void HdrLoader::setFileName(std::u16string name) {
    fileName_ = std::move(name);
    parameterChanged();
}

/// The end of every run; whether another is wanted. After a load inside another one's event nothing counts as
/// running any more: the outer one finds itself stopped at its next check.
bool HdrLoader::settle() {
    stop_ = true;
    loading_ = false;
    return std::exchange(restart_, false);
}

HdrLoad::~HdrLoad() {
    if (running_) loader_.cancel();
}

void HdrLoad::load(bool invert) {
    loader_.cancel();
    loader_.preview_ = false;
    loader_.invert_ = invert;
    runWhileWanted();
}

void HdrLoad::preview() {
    loader_.preview_ = true;
    loader_.invert_ = false;
    runWhileWanted();
}

void HdrLoad::runWhileWanted() {
    while (!isBlank(name_)) {
        try {
            runOnce();
            if (!settle()) return;
        } catch (...) {
            if (!settle()) throw;
        }
        name_ = loader_.fileName_;
    }
}

bool HdrLoad::settle() {
    running_ = false;
    filling_.reset();
    bytes_ = {};
    return loader_.settle();
}

void HdrLoad::runOnce() {
    if (name_ == kErrorName) throw wrongFileType();
    loader_.fileName_ = name_;
    loader_.stop_ = false;
    loader_.loading_ = true;
    loader_.restart_ = false;
    running_ = true;

    LoadHost& host = loader_.host_;
    if (loader_.preview_) loader_.picture_.buildTables();
    bytes_ = host.readFile(name_);
    if (bytes_.size() <= 1) throw wrongFileType();
    file_ = RgbeCursor(bytes_.span(), kFirstPosition);
    const Resolution sizes = readResolution(file_);
    filling_.emplace(loader_.picture_, sizes);

    host.headerLoaded(sizes.dimX, sizes.dimY);
    if (filling_->holds()) readRows();

    if (loader_.preview_) host.refresh();
    host.finished();
}

void HdrLoad::readRows() {
    HdrPicture& picture = loader_.picture_;
    picture.makeRoom(loader_.preview_);
    const std::int32_t rows = picture.dimY();
    for (std::int32_t y = 0; y < rows; ++y) {
        if (!readRow(y)) return;
        if (loader_.preview_ && !showRow(y)) return;
    }
}

/// Whether the row was read. A load that is to stop leaves a scanline after 50 runs; what is left of the
/// scanline stays undecoded, and no further row can be found in the file.
bool HdrLoad::readRow(std::int32_t y) {
    HdrPicture& picture = loader_.picture_;
    const std::int32_t row = loader_.invert_ ? picture.dimY() - y : y;
    const std::uint32_t maxRuns = shouldLeave() ? kRunsPerCheck : kAllRuns;
    switch (readScanline(file_, picture.store(), row, maxRuns)) {
        case ScanlineResult::Decoded:
            return true;
        case ScanlineResult::NotRunLength:
            throw wrongFileType();
        case ScanlineResult::OutOfRuns:
            loader_.host_.yield();
            return false;
    }
    return false;
}

/// Whether the next row is wanted.
bool HdrLoad::showRow(std::int32_t y) {
    LoadHost& host = loader_.host_;
    loader_.picture_.previewRow(y);
    if (shouldLeave()) return false;
    host.yield();
    if (shouldLeave()) return false;
    if (y % kRowsPerRefresh == 0) host.refresh();
    if (shouldLeave()) return false;
    host.yield();
    return !shouldLeave();
}

bool HdrLoad::shouldLeave() const { return loader_.stop_ || loader_.restart_ || !filling_->holds(); }

}  // namespace vrx
