// Each member over and over: what the process holds does not grow.

#include <gtest/gtest.h>

#include <cstdio>

#include "holdings.h"
#include "scenarios.h"

using faults::Holdings;
using faults::Scenario;
using faults::Stage;

namespace {

// The heap is not filled evenly, and the system takes memory of its own now and then, but not in each round.
constexpr std::size_t kUnevenness = 64 * 1024;
constexpr int kRounds = 4;

class Slopes : public testing::TestWithParam<Scenario> {
  protected:
    static inline faults::ObjectsOfSuite objects_;
    Stage stage_;

    static void SetUpTestSuite() { objects_.begin(); }
    static void TearDownTestSuite() { objects_.end(); }

    void repeat(int times) {
        for (int i = 0; i < times; ++i) {
            stage_.answer = {};
            if (GetParam().classId) stage_.object = host::createDirectly(*GetParam().classId);
            GetParam().prepare(stage_);
            GetParam().act(stage_);
            ASSERT_EQ(stage_.answer.number, 0);
        }
        stage_.object = {};
        stage_.answer = {};
    }
};

TEST_P(Slopes, AreFlat) {
    faults::install();
    const int times = faults::everything() ? 2000 : 100;
    repeat(times / 10);
    std::string history;
    for (int round = 0; round < kRounds; ++round) {
        const Holdings before;
        repeat(times);
        const Holdings after;
        history = describe(before, after);
        if (!after.hasLost(before) && after.memory <= before.memory + kUnevenness) {
            std::printf("%-28s %d times: %s\n", GetParam().name, times, history.c_str());
            return;
        }
    }
    ADD_FAILURE() << history;
}

std::string nameOfTest(const testing::TestParamInfo<Scenario>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(Methods, Slopes, testing::ValuesIn(faults::methods()), nameOfTest);

}  // namespace
