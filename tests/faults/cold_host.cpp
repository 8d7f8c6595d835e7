// cold_host SCENARIO - a host that does one thing with the component, whose allocators give no memory from
// its first call on, and then the same again with memory. No exception has been thrown in this process
// before. Ends with 0 where that went well.

#include <windows.h>

#include <objbase.h>

#include <cstdio>
#include <cstring>

#include "faults.h"
#include "scenarios.h"

namespace {

const faults::Scenario* find(const char* name) {
    for (const auto* list : {&faults::methods(), &faults::dialogs(), &faults::controls()}) {
        for (const faults::Scenario& scenario : *list) {
            if (std::strcmp(scenario.name, name) == 0) return &scenario;
        }
    }
    return nullptr;
}

faults::Answer act(const faults::Scenario& scenario, faults::Stage& stage) {
    stage.answer = {};
    const faults::User user(scenario.user);
    scenario.act(stage);
    return stage.answer;
}

int run(const faults::Scenario& scenario) {
    faults::Stage stage;
    faults::install();
    if (scenario.classId) stage.object = host::createDirectly(*scenario.classId);
    scenario.prepare(stage);
    faults::Injection injection(faults::Kind::Memory, 1, true);
    const faults::Answer without = act(scenario, stage);
    injection.end();
    const faults::Answer with = act(scenario, stage);
    std::printf("%s: %ld without memory (%d requests), %ld with it\n", scenario.name, without.number,
                injection.count(), with.number);
    const bool isDocumented = without.number == 0 || without.number == 7 || without.number == E_OUTOFMEMORY;
    return isDocumented && with.number == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    const faults::Scenario* const scenario = argc == 2 ? find(argv[1]) : nullptr;
    if (!scenario || FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 2;
    const int status = run(*scenario);
    CoUninitialize();
    return status;
}
