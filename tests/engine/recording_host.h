// A host of loads that keeps its files in memory, writes down every call and acts at calls that a test
// chooses.
#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "ground/error.h"
#include "hdr/engine/hdr_loader.h"
#include "radiance_file.h"

namespace vrx::test {

class RecordingHost final : public LoadHost {
  public:
    using Action = std::function<void()>;

    std::map<std::u16string, FileBytes> files;
    /// "read NAME", "header WxH", "refresh", "finished" and "yield", in order.
    std::vector<std::string> calls;

    /// Does something at the nth call of a kind, counted from 1: "read", "header", "refresh", "finished" or
    /// "yield".
    void at(const std::string& kind, int nth, Action action) { actions_[{kind, nth}] = std::move(action); }
    void at(const std::string& kind, Action action) { at(kind, 1, std::move(action)); }

    /// The calls without those that only yield.
    [[nodiscard]] std::vector<std::string> events() const {
        std::vector<std::string> events;
        std::copy_if(calls.begin(), calls.end(), std::back_inserter(events),
                     [](const std::string& call) { return call != "yield"; });
        return events;
    }
    [[nodiscard]] int count(const std::string& call) const {
        return static_cast<int>(std::count(calls.begin(), calls.end(), call));
    }

    Bytes readFile(const std::u16string& name) override {
        record("read", "read " + std::string(name.begin(), name.end()));
        const auto found = files.find(name);
        if (found == files.end()) throw platformError(Platform::FileNotFound);
        Bytes bytes(found->second.size() + 1);
        std::copy(found->second.begin(), found->second.end(), bytes.data());
        bytes.data()[found->second.size()] = 0;
        return bytes;
    }
    void headerLoaded(std::int32_t dimX, std::int32_t dimY) override {
        record("header", "header " + std::to_string(dimX) + "x" + std::to_string(dimY));
    }
    void refresh() override { record("refresh", "refresh"); }
    void finished() override { record("finished", "finished"); }
    void yield() override { record("yield", "yield"); }

  private:
    void record(const std::string& kind, std::string call) {
        calls.push_back(std::move(call));
        const auto found = actions_.find({kind, ++counts_[kind]});
        if (found != actions_.end()) found->second();
    }

    std::map<std::pair<std::string, int>, Action> actions_;
    std::map<std::string, int> counts_;
};

/// A picture, its loader and its host, as an object of the HDR class holds them.
struct LoadingObject {
    HdrPicture picture;
    RecordingHost host;
    HdrLoader loader{picture, host};

    void load(const std::u16string& name, bool invert = false) { HdrLoad(loader, name).load(invert); }
    void preview(const std::u16string& name) { HdrLoad(loader, name).preview(); }
};

}  // namespace vrx::test
