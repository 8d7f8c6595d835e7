// Every call of the system fails once in every scenario, and once more with all later ones of its kind: the
// component comes out whole.

#include <gtest/gtest.h>
#include <windows.h>

#include <olectl.h>

#include <cstdio>
#include <map>
#include <set>
#include <tuple>

#include "faults.h"
#include "holdings.h"
#include "scenarios.h"
#include "watchdog.h"

using faults::Answer;
using faults::Injection;
using faults::Kind;
using faults::Scenario;
using faults::Stage;
using faults::User;

namespace {

/// What a host may get when a call of this kind failed, by the published table of errors.
const std::set<long>& numbersOf(Kind kind) {
    static const std::set<long> files = {1, 52, 53, 57, 58, 61, 70, 71, 75, 76, 123, 7};
    static const std::map<Kind, std::set<long>> all = {
        {Kind::Memory, {7, 1, 123, E_OUTOFMEMORY}},
        {Kind::Automation, {7, 1, 123, E_OUTOFMEMORY}},
        {Kind::Drawing, {7, 1, 123, 481}},
        {Kind::Windows, {7}},
        {Kind::Files, files},
        {Kind::Registry, {7, SELFREG_E_CLASS, E_ACCESSDENIED, HRESULT_FROM_WIN32(ERROR_DISK_FULL)}},
        {Kind::Pictures, {7, 481, 123}},
        {Kind::Libraries, {7, 53, 453, 123, E_OUTOFMEMORY, SELFREG_E_TYPELIB, SELFREG_E_CLASS}},
    };
    return all.at(kind);
}

/// In the fast selection, the first calls and then fewer and fewer of the later ones; fewest of dialogs,
/// which take their time.
int following(int nth, const Scenario& scenario) {
    if (faults::everything()) return nth + 1;
    if (!scenario.user.empty()) return nth * 4;
    return nth < 12 ? nth + 1 : nth + nth / 4;
}

class Sweep : public testing::TestWithParam<std::tuple<Scenario, Kind>> {
  protected:
    const Scenario& scenario_ = std::get<0>(GetParam());
    const Kind kind_ = std::get<1>(GetParam());
    static inline faults::UserObjectsOfSuite userObjects_;
    Stage stage_;
    Answer right_;
    std::vector<host::FileBytes> rightFiles_;
    std::vector<std::wstring> rightNames_;

    static void SetUpTestSuite() { userObjects_.begin(); }
    static void TearDownTestSuite() { userObjects_.end(); }

    void SetUp() override {
        faults::install();
        // How many the system leaves is told by the test of the slope.
        if (scenario_.ofSystem) userObjects_.pause();
        // What the component makes once and keeps.
        for (int i = 0; i < 2; ++i) {
            prepare();
            right_ = act();
            rightFiles_ = stage_.files();
            rightNames_ = stage_.folder.names();
            stage_.object = {};
        }
        ASSERT_EQ(right_.number, 0) << "without a fault";
    }

    void TearDown() override {
        if (scenario_.ofSystem) userObjects_.goOn();
    }

    void prepare() {
        stage_.resetFiles();
        if (scenario_.classId) stage_.object = host::createDirectly(*scenario_.classId);
        scenario_.prepare(stage_);
    }

    Answer act() {
        stage_.answer = {};
        const User user(scenario_.user);
        scenario_.act(stage_);
        return stage_.answer;
    }

    void sweep() {
        for (const bool lasting : {false, true}) {
            for (int nth = 1; survives(nth, lasting) && !HasFailure(); nth = following(nth, scenario_)) {
            }
        }
        stage_.object = {};
    }

    /// False when the scenario ran to its end without a fault.
    bool survives(int nth, bool lasting) {
        prepare();
        const long blocks = faults::liveBlocks();
        Injection injection(kind_, nth, lasting);
        const Answer answer = act();
        injection.end();
        if (injection.count() == 0) return false;
        SCOPED_TRACE("call " + std::to_string(nth) + (lasting ? " and later ones, " : ", ") +
                     injection.first());
        host::noteProgress();
        expectDocumented(answer);
        expectWholeFiles(answer);
        expectWorks();
        if (!scenario_.classId) {
            EXPECT_LE(faults::liveBlocks(), blocks);
        }
        return true;
    }

    void expectDocumented(const Answer& answer) const {
        if (answer.number != 0) {
            EXPECT_TRUE(numbersOf(kind_).contains(answer.number)) << "error " << answer.number;
        } else if (!scenario_.neverFails) {
            EXPECT_EQ(answer.value, right_.value);
        }
    }

    void expectWholeFiles(const Answer& answer) const {
        const std::vector<host::FileBytes> files = stage_.files();
        const host::FileBytes old = {'o', 'l', 'd'};
        const bool mayFail = answer.number != 0 || scenario_.neverFails;
        for (std::size_t i = 0; i < files.size(); ++i) {
            const bool isOld = files[i] == old && (mayFail || rightFiles_[i] == old);
            EXPECT_TRUE(files[i] == rightFiles_[i] || isOld)
                << "file " << i << " has " << files[i].size() << " bytes";
        }
        EXPECT_EQ(stage_.folder.names(), rightNames_);
    }

    /// The object does the same work, now right.
    void expectWorks() {
        scenario_.prepare(stage_);
        EXPECT_EQ(act(), right_) << "the same object afterwards";
        EXPECT_EQ(stage_.files(), rightFiles_);
    }
};

TEST_P(Sweep, ComesOutWhole) {
    faults::Holdings before;
    faults::Holdings after;
    const auto hasLost = [&] {
        // How many it may be is told by the test of its slope.
        if (scenario_.ofSystem) after.kernel = before.kernel;
        return after.hasLost(before);
    };
    sweep();
    after = {};
    // What the system takes once is not taken again in the second round.
    if (hasLost() && !HasFailure()) {
        before = after;
        sweep();
        after = {};
    }
    EXPECT_FALSE(hasLost()) << describe(before, after);
}

std::string nameOfTest(const testing::TestParamInfo<std::tuple<Scenario, Kind>>& info) {
    return std::string(std::get<0>(info.param).name) + "_" + faults::nameOf(std::get<1>(info.param));
}

INSTANTIATE_TEST_SUITE_P(Methods, Sweep,
                         testing::Combine(testing::ValuesIn(faults::methods()),
                                          testing::ValuesIn(faults::kKinds)),
                         nameOfTest);
INSTANTIATE_TEST_SUITE_P(Dialogs, Sweep,
                         testing::Combine(testing::ValuesIn(faults::selected(faults::dialogs(), 3)),
                                          testing::ValuesIn(faults::kKinds)),
                         nameOfTest);
INSTANTIATE_TEST_SUITE_P(Controls, Sweep,
                         testing::Combine(testing::ValuesIn(faults::controls()),
                                          testing::ValuesIn(faults::kKinds)),
                         nameOfTest);

class ReportOfFaults : public testing::Environment {
    void TearDown() override {
        long all = 0;
        for (const Kind kind : faults::kKinds) {
            all += faults::total(kind);
            std::printf("%-10s %6ld faults\n", faults::nameOf(kind), faults::total(kind));
        }
        std::printf("Faults injected: %ld\n", all);
    }
};

const auto* const report = testing::AddGlobalTestEnvironment(new ReportOfFaults);

}  // namespace
