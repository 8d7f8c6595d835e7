#include "leaks.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <psapi.h>

#include <sstream>

#include "gdi_handles.h"
#include "kernel_handles.h"
#include "window_driver.h"

namespace host {
namespace {

constexpr int kFirstTimes = 5;
constexpr int kTimes = 200;
constexpr int kRounds = 3;

// Memory that one time may cost: the heap is not filled evenly.
constexpr std::size_t kMemoryEachTime = 1024;

std::size_t ownMemory() {
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PagefileUsage;
}

/// What a process can have less of, and what it has more of, when something is lost.
struct Holdings {
    std::size_t freeDrawing = freeGdiHandles();
    std::size_t freeUser = freeUserHandles();
    std::size_t kernel = kernelHandles();
    int windows = ownWindowCount();
    std::size_t memory = ownMemory();

    [[nodiscard]] bool hasLost(const Holdings& before) const {
        return freeDrawing < before.freeDrawing || freeUser < before.freeUser || kernel > before.kernel ||
               windows > before.windows || memory > before.memory + kTimes * kMemoryEachTime;
    }
};

std::ostream& operator<<(std::ostream& out, const Holdings& held) {
    return out << held.freeDrawing << " and " << held.freeUser << " free, " << held.kernel
               << " kernel handles, " << held.windows << " windows, " << held.memory << " bytes\n";
}

}  // namespace

void expectNothingLeft(const std::function<void()>& action) {
    for (int i = 0; i < kFirstTimes; ++i) action();
    std::ostringstream history;
    Holdings before;
    history << before;
    for (int round = 0; round < kRounds; ++round) {
        for (int i = 0; i < kTimes; ++i) action();
        const Holdings after;
        history << after;
        if (!after.hasLost(before)) return;
        before = after;
    }
    ADD_FAILURE() << history.str();
}

}  // namespace host
