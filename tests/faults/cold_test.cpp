// Processes that have no memory from the component's first call on.

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "com/win_resource.h"
#include "scenarios.h"

using faults::Scenario;

namespace {

constexpr DWORD kLongest = 60'000;

/// The exit status of the host that does this; that of one which hangs is the waiting's.
DWORD runHost(const char* scenario) {
    std::wstring command = L"\"" + host::programFolder() + L"\\cold_host.exe\" ";
    for (const char* c = scenario; *c; ++c) command += static_cast<wchar_t>(*c);
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION made{};
    std::fflush(stdout);
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &made))
        return GetLastError();
    const vrx::KernelHandle process(made.hProcess);
    const vrx::KernelHandle thread(made.hThread);
    if (WaitForSingleObject(process.get(), kLongest) != WAIT_OBJECT_0)
        TerminateProcess(process.get(), WAIT_TIMEOUT);
    WaitForSingleObject(process.get(), kLongest);
    DWORD status = 0;
    GetExitCodeProcess(process.get(), &status);
    return status;
}

class ColdProcess : public testing::TestWithParam<Scenario> {};

TEST_P(ColdProcess, FailsWithOutOfMemoryAndWorksWithMemory) { EXPECT_EQ(runHost(GetParam().name), 0u); }

std::string nameOfTest(const testing::TestParamInfo<Scenario>& info) { return info.param.name; }

constexpr std::size_t kStep = 8;

INSTANTIATE_TEST_SUITE_P(Methods, ColdProcess, testing::ValuesIn(faults::selected(faults::methods(), kStep)),
                         nameOfTest);
INSTANTIATE_TEST_SUITE_P(Dialogs, ColdProcess, testing::ValuesIn(faults::selected(faults::dialogs(), kStep)),
                         nameOfTest);
INSTANTIATE_TEST_SUITE_P(Controls, ColdProcess,
                         testing::ValuesIn(faults::selected(faults::controls(), kStep)), nameOfTest);

}  // namespace
