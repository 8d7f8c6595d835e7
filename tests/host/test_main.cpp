// Runs the tests in a single-threaded apartment against the component beside the program, and ends a test
// that hangs.

#include <gtest/gtest.h>
#include <windows.h>

#include <objbase.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <thread>

#include "host.h"
#include "watchdog.h"

namespace {

constexpr std::chrono::seconds kLongestTest(180);

std::atomic<int> signsOfLife = 0;

class Watchdog : public testing::EmptyTestEventListener {
  public:
    Watchdog() {
        std::thread([this] { watch(); }).detach();
    }

    void OnTestStart(const testing::TestInfo&) override { host::noteProgress(); }

  private:
    void watch() {
        for (;;) {
            const int seen = signsOfLife;
            std::this_thread::sleep_for(kLongestTest);
            if (seen != 0 && seen == signsOfLife) endProcess();
        }
    }

    [[noreturn]] static void endProcess() {
        std::printf("Watchdog: the test has been running for more than %d seconds.\n",
                    static_cast<int>(kLongestTest.count()));
        std::fflush(stdout);
        TerminateProcess(GetCurrentProcess(), 3);
        std::abort();
    }
};

}  // namespace

void host::noteProgress() { ++signsOfLife; }

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new Watchdog);
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 2;
    if (FAILED(host::component().registerMachine())) {
        std::puts("The component cannot be registered.");
        return 2;
    }
    const int status = RUN_ALL_TESTS();
    CoUninitialize();
    return status;
}
