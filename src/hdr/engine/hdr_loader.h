// Loading an HDR picture as a host sees it: states, stopping, restarting, progress. Everything runs on one
// thread; calls that arrive while a load runs only set flags, which the load looks at.
#pragma once

#include <cstdint>
#include <string>

#include "common/engine/bytes.h"
#include "hdr/engine/hdr_picture.h"
#include "hdr/engine/rgbe_cursor.h"

namespace vrx {

/// What a load needs of its surroundings. Each call may come back into the loader and the picture in any way.
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

class HdrLoader {
  public:
    HdrLoader(HdrPicture& picture, LoadHost& host) : picture_(picture), host_(host) {}

    /// Reads the file into the picture; with `preview` also into its preview bitmap, with a refresh every 80
    /// rows and a last one. With `invert` scanline y goes to row dimY - y, so that row 0 stays zero: hosts
    /// count on it. A blank name does nothing. Runs again as long as a restart is asked for while it runs;
    /// only the last run's failure leaves.
    void load(std::u16string name, bool preview, bool invert);

    /// Ends a running load at its next check.
    void end() { stop_ = true; }
    /// Nothing runs and nothing is to run again; a running load ends at its next check.
    void init();
    /// A parameter has changed that a running load must begin again for.
    void parameterChanged() { restart_ = restart_ || loading_; }
    /// The file to show next: a running load begins again with it.
    void setFileName(std::u16string name);

    [[nodiscard]] const std::u16string& fileName() const { return fileName_; }
    [[nodiscard]] bool loading() const { return loading_; }

  private:
    struct Run;

    void loadOnce(const std::u16string& name, bool preview, bool invert);
    void readRows(Run& run);
    void readRow(Run& run, std::int32_t y);
    [[nodiscard]] bool showRow(const Run& run, std::int32_t y);
    [[nodiscard]] bool replaced(const Run& run) const;
    [[nodiscard]] bool shouldLeave(const Run& run) const;
    [[nodiscard]] bool settle();

    HdrPicture& picture_;
    LoadHost& host_;
    std::u16string fileName_;
    bool stop_ = true;
    bool restart_ = false;
    bool loading_ = false;
    std::uint32_t runs_ = 0;
};

}  // namespace vrx
