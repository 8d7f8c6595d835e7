// Loading an HDR picture as a host sees it: states, stopping, restarting, progress. Everything runs on one
// thread; calls that arrive while a load runs only set flags, which the load looks at.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "ground/bytes.h"
#include "hdr/engine/hdr_picture.h"
#include "hdr/engine/rgbe_cursor.h"

namespace vrx {

/// What a load needs of its surroundings. Each call may come back into the loader and the picture in any
/// way.
class LoadHost {
  public:
    /// The whole file followed by one zero byte.
    virtual Bytes readFile(const std::u16string& name) = 0;
    /// The sizes are known, no pixel is read yet.
    virtual void headerLoaded(std::int32_t dimX, std::int32_t dimY) = 0;
    /// The preview bitmap has new rows to show.
    virtual void refresh() = 0;
    /// The rows are done, all of them or as many as were wanted.
    virtual void finished() = 0;
    /// Lets what waits on this thread happen.
    virtual void yield() = 0;

  protected:
    ~LoadHost() = default;
};

/// What a host sets and asks, also while a load runs.
class HdrLoader {
  public:
    HdrLoader(HdrPicture& picture, LoadHost& host) : picture_(picture), host_(host) {}

    /// Ends a running load at its next check.
    void end() { stop_ = true; }
    /// Nothing counts as running and nothing is to run again; a load that runs ends at its next check.
    void cancel();
    /// A parameter has changed that a running load must begin again for.
    void parameterChanged() { restart_ = restart_ || loading_; }
    /// The file to show next: a running load begins again with it.
    void setFileName(std::u16string name);

    [[nodiscard]] const std::u16string& fileName() const { return fileName_; }
    [[nodiscard]] bool loading() const { return loading_; }

  private:
    friend class HdrLoad;

    [[nodiscard]] bool settle();

    HdrPicture& picture_;
    LoadHost& host_;

    // The object's, not a load's: the last call that concerns loading has set them, be it from inside an
    // event of a load that runs.
    std::u16string fileName_;
    bool preview_ = false;
    bool invert_ = false;
    bool stop_ = true;
    bool restart_ = false;
    bool loading_ = false;
};

/// One load with all that it holds. Where it goes before its end, the loader is idle again.
class HdrLoad {
  public:
    HdrLoad(HdrLoader& loader, std::u16string name) : loader_(loader), name_(std::move(name)) {}
    HdrLoad(const HdrLoad&) = delete;
    HdrLoad& operator=(const HdrLoad&) = delete;
    ~HdrLoad();

    /// Reads the file into the picture. With `invert` scanline y goes to row dimY - y, so that row 0 stays
    /// zero: hosts count on it. A load that runs already ends at its next check. A blank name reads nothing.
    /// Runs again as long as a restart is asked for while it runs; only the last run's failure leaves.
    void load(bool invert);
    /// The same, never inverted, and into the preview bitmap as well, with a refresh every 80 rows and a last
    /// one.
    void preview();

  private:
    void runWhileWanted();
    void runOnce();
    void readRows();
    [[nodiscard]] bool readRow(std::int32_t y);
    [[nodiscard]] bool showRow(std::int32_t y);
    [[nodiscard]] bool shouldLeave() const;
    [[nodiscard]] bool settle();

    HdrLoader& loader_;
    std::u16string name_;
    bool running_ = false;

    // Of one pass over one file.
    Bytes bytes_;
    RgbeCursor file_{{}, 0};
    std::optional<PictureFilling> filling_;
};

}  // namespace vrx
