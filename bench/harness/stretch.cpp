#include "bench/harness/stretch.h"

#include <stdint.h>

#include <chrono>

namespace zrp_bench {

double timeStretch() {
    constexpr uint32_t rounds = 250'000;
    using Clock = std::chrono::steady_clock;
    uint64_t a = 0;
    uint64_t b = 0;
    uint64_t c = 0;
    uint64_t d = 0;
    const Clock::time_point start = Clock::now();
    for (uint32_t i = 0; i != rounds; ++i) {
        a += i;
        b += i;
        c += i;
        d += i;
        // Every sum is needed in every round, each in a register of its own.
        asm volatile("" : "+r"(a), "+r"(b), "+r"(c), "+r"(d));
    }
    return std::chrono::duration<double, std::nano>(Clock::now() - start).count();
}

}  // namespace zrp_bench
