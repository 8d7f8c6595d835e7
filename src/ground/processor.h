// What the processor can do beyond the instructions that every build takes for granted.
#pragma once

namespace vrx {

[[nodiscard]] inline bool hasAvx2() {
#if defined(__x86_64__) || defined(__i386__)
    static const bool answer = __builtin_cpu_supports("avx2") != 0;
    return answer;
#else
    return false;
#endif
}

}  // namespace vrx
