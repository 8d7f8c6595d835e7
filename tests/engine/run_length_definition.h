// The run-length codes of a plane from the scheme's definition, with a plane's positions as it names them.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

namespace vrx::test {

inline std::vector<std::uint8_t> definedCodes(std::span<const std::uint8_t> plane) {
    const int n = static_cast<int>(plane.size());
    const auto at = [&plane](int i) { return plane[static_cast<std::size_t>(i)]; };
    std::vector<std::uint8_t> codes;
    const auto add = [&codes](int code) { codes.push_back(static_cast<std::uint8_t>(code)); };
    for (int cur = 0; cur < n;) {
        int beg = cur;
        int run = 0;
        int oldrun = 0;
        while (run < 4 && beg < n) {
            beg += run;
            oldrun = run;
            run = 1;
            while (beg + run < n && run < 127 && at(beg) == at(beg + run)) ++run;
        }
        if (oldrun > 1 && oldrun == beg - cur) {
            add(128 + oldrun);
            add(at(cur));
            cur = beg;
        }
        while (cur < beg) {
            const int k = std::min(beg - cur, 128);
            add(k);
            for (int i = 0; i < k; ++i) add(at(cur + i));
            cur += k;
        }
        if (run >= 4) {
            add(128 + run);
            add(at(beg));
            cur += run;
        }
    }
    return codes;
}

}  // namespace vrx::test
