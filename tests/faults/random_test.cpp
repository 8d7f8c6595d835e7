// Members of all classes called at random, by two apartments at the same time: every call succeeds or fails
// with a documented number, and nothing is left behind.

#include <gtest/gtest.h>
#include <windows.h>

#include <objbase.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <iterator>
#include <map>
#include <set>
#include <thread>

#include "dialogs/resource.h"
#include "faults.h"
#include "hdr_host.h"
#include "holdings.h"
#include "random_values.h"
#include "sink.h"
#include "user.h"
#include "watchdog.h"

using faults::Holdings;
using faults::Member;
using faults::RandomValues;
using faults::User;

namespace {

/// Numbers of the published table, and the codes with which late binding refuses arguments.
bool isDocumented(const host::Outcome& outcome) {
    static const std::set<long> numbers = {1,  5,  6,  7,  9,  10, 11, 13, 28, 52,  53,  57,
                                           58, 61, 70, 71, 75, 76, 79, 91, 94, 123, 453, 481};
    static const std::set<HRESULT> codes = {S_OK,
                                            DISP_E_MEMBERNOTFOUND,
                                            DISP_E_PARAMNOTFOUND,
                                            DISP_E_TYPEMISMATCH,
                                            DISP_E_BADPARAMCOUNT,
                                            DISP_E_OVERFLOW,
                                            DISP_E_PARAMNOTOPTIONAL,
                                            DISP_E_BADVARTYPE,
                                            DISP_E_NONAMEDARGS,
                                            DISP_E_ARRAYISLOCKED,
                                            E_INVALIDARG,
                                            E_POINTER,
                                            E_OUTOFMEMORY};
    if (outcome.code != DISP_E_EXCEPTION) return codes.contains(outcome.code);
    return (outcome.scode & ~0xFFFF) == static_cast<HRESULT>(0x800A0000) &&
           numbers.contains(outcome.scode & 0xFFFF);
}

constexpr int kCallsToADialog = 20;

/// A host of one thread with two objects of each class, which calls their members at random. Its user does
/// something with each second dialog before it is closed.
class Driver {
  public:
    Driver(unsigned seed, const std::wstring& folder) : values_(seed, folder) {
        for (const CLSID* classId : {&CLSID_CVrxHDR, &CLSID_CVrxImage, &CLSID_ImageFX, &CLSID_CVrxPattern,
                                     &CLSID_CVrxFun, &CLSID_CVrxHDR, &CLSID_CVrxImage}) {
            objects_.push_back(host::createDirectly(*classId));
            members_.push_back(faults::membersOf(*objects_.back()));
            values_.add(objects_.back());
            listen(*objects_.back());
        }
    }
    Driver(const Driver&) = delete;
    Driver& operator=(const Driver&) = delete;
    ~Driver() {
        values_.forget();
        for (auto& [point, cookie] : connections_) point->Unadvise(cookie);
        hideMessages();
    }

    void run(int calls) {
        for (int i = 0; i < calls; ++i) {
            callOne();
            host::noteProgress();
        }
    }

    std::string undocumented;  ///< the first such failure

  private:
    void callOne() {
        const std::size_t which = values_.below(objects_.size());
        const Member& member = nextMember(members_[which]);
        // The object may go while it runs; the host keeps it in another variable then.
        const vrx::ComPtr<IDispatch> object = objects_[which];
        faults::Arguments arguments = values_.arguments(member);
        const User user(member.opensDialog ? steps() : std::vector<faults::UserStep>());
        const host::Outcome outcome =
            host::invoke(*object, member.id, arguments.flags, arguments.parameters());
        if (!isDocumented(outcome) && undocumented.empty()) {
            char text[200];
            std::snprintf(text, sizeof text, "%ls: code %08lx, scode %08lx", member.name.c_str(),
                          outcome.code, outcome.scode);
            undocumented = text;
        }
    }

    /// Of those that open dialogs, which take their time, fewer than of the others.
    const Member& nextMember(const std::vector<Member>& members) {
        for (;;) {
            const Member& member = members[values_.below(members.size())];
            if (!member.opensDialog || values_.below(kCallsToADialog) == 0) return member;
        }
    }

    std::vector<faults::UserStep> steps() {
        return std::vector<faults::UserStep>(values_.below(4), [this](HWND dialog) { useAtRandom(dialog); });
    }

    /// Something that a control or a menu tells its dialog.
    void useAtRandom(HWND dialog) {
        std::vector<HWND> controls;
        for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
            controls.push_back(child);
        const HWND control = controls.empty() ? nullptr : controls[values_.below(controls.size())];
        switch (values_.below(5)) {
            case 0:
                PostMessageW(control, WM_KEYDOWN, 1 + values_.below(VK_HELP), 1);
                break;
            case 1:
                host::click(control, static_cast<int>(values_.below(200)),
                            static_cast<int>(values_.below(50)));
                break;
            case 2:
                SetWindowPos(dialog, nullptr, 0, 0, static_cast<int>(values_.below(900)),
                             static_cast<int>(values_.below(700)), SWP_NOMOVE | SWP_NOZORDER);
                break;
            case 3:
                PostMessageW(dialog, WM_COMMAND, IDM_ITEMLOAD + values_.below(3), 0);
                break;
            default:
                PostMessageW(dialog, WM_COMMAND,
                             static_cast<WPARAM>(MAKELONG(GetDlgCtrlID(control), values_.below(10))),
                             reinterpret_cast<LPARAM>(control));
                break;
        }
    }

    /// Each third event calls something else.
    void listen(IDispatch& object) {
        const auto point = host::connectionPoint(object, DIID___CVrxHDR);
        if (!point) return;
        const auto sink = host::Sink::make(DIID___CVrxHDR, [this](DISPID, const DISPPARAMS&) {
            if (depth_ < 3 && values_.below(3) == 0) {
                ++depth_;
                callOne();
                --depth_;
            }
            return values_.below(20) == 0 ? DISP_E_EXCEPTION : S_OK;
        });
        DWORD cookie = 0;
        if (SUCCEEDED(point->Advise(sink.get(), &cookie))) connections_.emplace_back(point, cookie);
    }

    void hideMessages() const {
        const auto fun = host::createDirectly(CLSID_CVrxFun);
        for (int i = 0; i < 100000; ++i) {
            host::Outcome hidden = host::call(*fun, L"Hide_ShortMessage");
            if (V_VT(&hidden.result.get()) != VT_BOOL || V_BOOL(&hidden.result.get()) != VARIANT_FALSE)
                return;
        }
    }

    RandomValues values_;
    const User user_;  // closes what any call may show
    std::vector<vrx::ComPtr<IDispatch>> objects_;
    std::vector<std::vector<Member>> members_;
    std::vector<std::pair<vrx::ComPtr<IConnectionPoint>, DWORD>> connections_;
    int depth_ = 0;
};

std::string drive(unsigned seed, const std::wstring& folder, int calls) {
    Driver driver(seed, folder);
    driver.run(calls);
    return driver.undocumented;
}

/// Half of the calls by this thread, half by another apartment.
void driveTwo(unsigned seed, int calls) {
    const host::ThrowawayFolder folder;
    folder.write(L"in.hdr", host::RgbePicture(16, 12).file());
    const host::ThrowawayFolder otherFolder;
    otherFolder.write(L"in.hdr", host::RgbePicture(5, 100).file());
    std::string other;
    std::thread thread([&] {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        other = drive(seed + 1, otherFolder.path(), calls / 2);
        CoUninitialize();
    });
    EXPECT_EQ(drive(seed, folder.path(), calls / 2), "");
    thread.join();
    EXPECT_EQ(other, "");
}

unsigned chosenSeed() {
    const char* const wish = std::getenv("VRX_SEED");
    return wish ? static_cast<unsigned>(std::strtoul(wish, nullptr, 10))
                : static_cast<unsigned>(std::time(nullptr));
}

// A test stays within the time of the watchdog.
constexpr int kCalls = 10000;
constexpr std::size_t kEventsOfLocks = 8;
constexpr int kTestsOfAll = 50;
constexpr unsigned kRounds = 5;

/// Each has a seed of its own.
class RandomAutomation : public testing::TestWithParam<int> {};

TEST_P(RandomAutomation, NeitherBreaksNorLeavesAnythingBehind) {
    faults::install();
    const unsigned seed = chosenSeed() + 10 * static_cast<unsigned>(GetParam());
    driveTwo(seed, 1000);
    // What the system takes once is taken less and less: a picture of the visual style when a part of it is
    // first drawn, for example. What leaks is lost in every round.
    Holdings before;
    Holdings after = before;
    for (unsigned round = 1; round <= kRounds && (round == 1 || after.hasLost(before)); ++round) {
        before = {};
        driveTwo(seed + 2 * round, 2 * kCalls);
        after = {};
        std::printf("VRX_SEED=%u: %d calls, %s\n", seed, 2 * kCalls, describe(before, after).c_str());
        // The system makes an event for a lock when two threads first meet there.
        before.kernel += kEventsOfLocks;
    }
    EXPECT_FALSE(after.hasLost(before)) << describe(before, after);
    EXPECT_LT(after.memory, before.memory + 4 * 1024 * 1024);
}

INSTANTIATE_TEST_SUITE_P(Calls, RandomAutomation, testing::Range(0, faults::everything() ? kTestsOfAll : 1));

}  // namespace
