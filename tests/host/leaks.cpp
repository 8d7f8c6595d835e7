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
// What the system itself takes now and then is not taken in each of these rounds.
constexpr int kRounds[] = {200, 50, 50};

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

    [[nodiscard]] bool hasLost(const Holdings& before, int times) const {
        return freeDrawing < before.freeDrawing || freeUser < before.freeUser || kernel > before.kernel ||
               windows > before.windows ||
               memory > before.memory + static_cast<std::size_t>(times) * kMemoryEachTime;
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
    for (const int times : kRounds) {
        for (int i = 0; i < times; ++i) action();
        const Holdings after;
        history << after;
        if (!after.hasLost(before, times)) return;
        before = after;
    }
    ADD_FAILURE() << history.str();
}

}  // namespace host
