// Each member, dialog and control over and over: what the process holds does not grow.

#include <gtest/gtest.h>

#include <cstdio>

#include "faults.h"
#include "held_memory.h"
#include "holdings.h"
#include "scenarios.h"
#include "watchdog.h"

using faults::Holdings;
using faults::Scenario;
using faults::Stage;

namespace {

// Pages are not filled evenly, and the system takes memory of its own now and then, but not in each round.
constexpr std::size_t kUnevenness = 64 * 1024;
constexpr int kRounds = 4;

class Slopes : public testing::TestWithParam<Scenario> {
  protected:
    Stage stage_;

    void repeat(int times) {
        for (int i = 0; i < times; ++i) {
            stage_.answer = {};
            if (GetParam().classId) stage_.object = host::createDirectly(*GetParam().classId);
            GetParam().prepare(stage_);
            const faults::User user(GetParam().user);
            GetParam().act(stage_);
            host::noteProgress();
            ASSERT_EQ(stage_.answer.number, 0);
        }
        stage_.object = {};
        stage_.answer = {};
    }

    /// Counting them takes too long for the fast selection.
    static std::size_t freeUserHandles() { return faults::everything() ? host::freeUserHandles() : 0; }

    /// What the process holds more than before.
    struct Growth {
        long kernel = 0;
        long userObjects = 0;
        long memory = 0;
    };

    template <typename Action>
    static Growth growthBy(Action action) {
        const std::size_t freeHandles = freeUserHandles();
        const std::size_t kernel = host::kernelHandles();
        const std::size_t memory = faults::heldMemory();
        action();
        Growth growth;
        growth.memory = static_cast<long>(faults::heldMemory() - memory);
        growth.kernel = static_cast<long>(host::kernelHandles() - kernel);
        growth.userObjects = static_cast<long>(freeHandles - freeUserHandles());
        return growth;
    }

    static void useSystem() {
        const faults::User user(GetParam().user);
        if (GetParam().ofSystem) GetParam().ofSystem();
        if (GetParam().plainWindows) GetParam().plainWindows();
        host::noteProgress();
    }

    /// What the system itself leaves behind in as many times.
    static Growth growthOfSystem(int times) {
        if (!GetParam().ofSystem && !GetParam().plainWindows) return {};
        useSystem();
        return growthBy([times] {
            for (int i = 0; i < times; ++i) useSystem();
        });
    }

    /// Whether a round was flat; the history tells about it.
    bool isFlat(int times) {
        Holdings before;
        Holdings after;
        const Growth all = growthBy([&] {
            before = {};
            repeat(times);
            after = {};
        });
        const Growth ofSystem = growthOfSystem(times);
        before.kernel += static_cast<std::size_t>(ofSystem.kernel);
        const long userObjects = all.userObjects - ofSystem.userObjects;
        const long memory = all.memory - ofSystem.memory;
        history_ = describe(before, after) + ", USER " + std::to_string(userObjects) + ", bytes held " +
                   std::to_string(memory) + " and the system's " + std::to_string(ofSystem.memory);
        if (after.hasLost(before) || userObjects > 0 || memory >= times + doubt_) return false;
        // Blocks that the system keeps lie between freed ones, so that more pages stay in use than they need.
        return ofSystem.memory > 0 || after.memory <= before.memory + kUnevenness;
    }

    const long doubt_ = faults::heldMemoryDoubt();
    std::string history_;
};

TEST_P(Slopes, AreFlat) {
    faults::install();
    const bool opensDialog = !GetParam().user.empty();
    const int times = faults::everything() ? (opensDialog ? 500 : 2000) : (opensDialog ? 10 : 100);
    repeat(times / 10);
    for (int round = 0; round < kRounds; ++round) {
        if (isFlat(times)) {
            std::printf("%-28s %d times: %s\n", GetParam().name, times, history_.c_str());
            return;
        }
    }
    ADD_FAILURE() << history_;
}

std::string nameOfTest(const testing::TestParamInfo<Scenario>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(Methods, Slopes, testing::ValuesIn(faults::methods()), nameOfTest);
INSTANTIATE_TEST_SUITE_P(Dialogs, Slopes, testing::ValuesIn(faults::dialogs()), nameOfTest);
INSTANTIATE_TEST_SUITE_P(Controls, Slopes, testing::ValuesIn(faults::controls()), nameOfTest);

}  // namespace
