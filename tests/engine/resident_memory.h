// How much of the process is in memory, as the kernel counts it.
#pragma once

#include <fstream>
#include <string>

namespace vrx::test {

inline long residentMegabytes() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == "VmRSS:") {
            long kilobytes = 0;
            status >> kilobytes;
            return kilobytes / 1024;
        }
    }
    return 0;
}

}  // namespace vrx::test
