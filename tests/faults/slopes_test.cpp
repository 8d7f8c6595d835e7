// Each member, dialog and control over and over: what the process holds does not grow.

#include <gtest/gtest.h>

#include <cstdio>

#include "faults.h"
#include "holdings.h"
#include "scenarios.h"
#include "watchdog.h"

using faults::Holdings;
using faults::Scenario;
using faults::Stage;

namespace {

// The heap is not filled evenly, and the system takes memory of its own now and then, but not in each round.
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

    /// What the system itself leaves behind in as many times.
    static std::size_t handlesOfSystem(int times) {
        const auto alone = GetParam().ofSystem;
        if (!alone) return 0;
        const std::size_t before = host::kernelHandles();
        for (int i = 0; i < times; ++i) {
            const faults::User user(GetParam().user);
            alone();
            host::noteProgress();
        }
        return host::kernelHandles() - before;
    }
};

TEST_P(Slopes, AreFlat) {
    faults::install();
    const bool opensDialog = !GetParam().user.empty();
    const int times = faults::everything() ? (opensDialog ? 500 : 2000) : (opensDialog ? 10 : 100);
    repeat(times / 10);
    std::string history;
    for (int round = 0; round < kRounds; ++round) {
        const std::size_t userBefore = freeUserHandles();
        Holdings before;
        repeat(times);
        const Holdings after;
        const auto userObjects = static_cast<long>(userBefore - freeUserHandles());
        before.kernel += handlesOfSystem(times);
        history = describe(before, after) + ", USER " + std::to_string(userObjects);
        if (!after.hasLost(before) && userObjects <= 0 && after.memory <= before.memory + kUnevenness) {
            std::printf("%-28s %d times: %s\n", GetParam().name, times, history.c_str());
            return;
        }
    }
    ADD_FAILURE() << history;
}

std::string nameOfTest(const testing::TestParamInfo<Scenario>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(Methods, Slopes, testing::ValuesIn(faults::methods()), nameOfTest);
INSTANTIATE_TEST_SUITE_P(Dialogs, Slopes, testing::ValuesIn(faults::dialogs()), nameOfTest);
INSTANTIATE_TEST_SUITE_P(Controls, Slopes, testing::ValuesIn(faults::controls()), nameOfTest);

}  // namespace
