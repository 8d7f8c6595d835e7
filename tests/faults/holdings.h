// What the process holds, and whether it got more.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <psapi.h>

#include <cstddef>
#include <cstdlib>
#include <optional>
#include <string>

#include "faults.h"
#include "gdi_handles.h"
#include "kernel_handles.h"
#include "window_driver.h"

namespace faults {

/// Whether the program was asked for everything, not for the fast selection.
inline bool everything() {
    const char* const wish = std::getenv("VRX_FAULTS");
    return wish && std::string(wish) == "all";
}

inline std::size_t committedMemory() {
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PagefileUsage;
}

/// What can be counted quickly.
struct Holdings {
    std::size_t kernel = host::kernelHandles();
    int windows = host::ownWindowCount();
    long blocks = liveBlocks();
    std::size_t memory = committedMemory();

    /// Objects and blocks that are counted one by one.
    [[nodiscard]] bool hasLost(const Holdings& before) const {
        return kernel > before.kernel || windows > before.windows || blocks > before.blocks;
    }
};

/// For tables and messages.
inline std::string describe(const Holdings& before, const Holdings& after) {
    const auto change = [](auto from, auto to) {
        return std::to_string(static_cast<long long>(to) - static_cast<long long>(from));
    };
    return "kernel handles " + change(before.kernel, after.kernel) + ", windows " +
           change(before.windows, after.windows) + ", blocks " + change(before.blocks, after.blocks) +
           ", bytes committed " + change(before.memory, after.memory);
}

/// Objects of the drawing and window system, which can only be counted by making as many more as the system
/// allows.
struct Objects {
    std::size_t freeDrawing = host::freeGdiHandles();
    std::size_t freeUser = host::freeUserHandles();
};

/// Compares what the process held before a suite of tests and holds after it.
class ObjectsOfSuite {
  public:
    void begin() { before_.emplace(); }
    void end() {
        const Objects after;
        // The system keeps some of its own from first windows and pictures on.
        constexpr std::size_t kKept = 40;
        EXPECT_GE(after.freeDrawing + kKept, before_->freeDrawing) << "free GDI handles";
        EXPECT_GE(after.freeUser + kKept, before_->freeUser) << "free USER handles";
    }

  private:
    std::optional<Objects> before_;
};

}  // namespace faults
