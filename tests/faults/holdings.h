// What the process holds, and whether it got more.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <psapi.h>

#include <cstddef>
#include <cstdio>
#include <string>

#include "faults.h"
#include "gdi_handles.h"
#include "kernel_handles.h"
#include "window_driver.h"

namespace faults {

inline std::size_t committedMemory() {
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PagefileUsage;
}

/// What can be counted quickly.
struct Holdings {
    std::size_t kernel = host::kernelHandles();
    std::size_t drawing = host::gdiObjects();
    int windows = host::ownWindowCount();
    long blocks = liveBlocks();
    std::size_t memory = committedMemory();

    /// Objects and blocks that are counted one by one.
    [[nodiscard]] bool hasLost(const Holdings& before) const {
        return kernel > before.kernel || drawing > before.drawing || windows > before.windows ||
               blocks > before.blocks;
    }
};

/// For tables and messages.
inline std::string describe(const Holdings& before, const Holdings& after) {
    const auto change = [](auto from, auto to) {
        return std::to_string(static_cast<long long>(to) - static_cast<long long>(from));
    };
    return "kernel handles " + change(before.kernel, after.kernel) + ", GDI " +
           change(before.drawing, after.drawing) + ", windows " + change(before.windows, after.windows) +
           ", blocks " + change(before.blocks, after.blocks) + ", bytes committed " +
           change(before.memory, after.memory);
}

/// Objects of the window system can only be counted by making as many more as there can be, which takes its
/// time.
class UserObjectsOfSuite {
  public:
    void begin() { before_ = host::freeUserHandles(); }
    /// What is lost until the suite goes on does not count.
    void pause() { paused_ = host::freeUserHandles(); }
    void goOn() { before_ -= paused_ - host::freeUserHandles(); }
    void end() const {
        // The system keeps some of its own from first windows on.
        constexpr std::size_t kKept = 300;
        const std::size_t free = host::freeUserHandles();
        std::printf("USER handles fewer: %ld\n", static_cast<long>(before_ - free));
        EXPECT_GE(free + kKept, before_) << "free USER handles";
    }

  private:
    std::size_t before_ = 0;
    std::size_t paused_ = 0;
};

}  // namespace faults
