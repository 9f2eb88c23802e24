// Repeatable noise: the same seed gives the same run on every platform.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <initializer_list>
#include <random>
#include <span>

#include "tests/support/bytes.h"

namespace zrp_test {

class Random {
  public:
    explicit Random(uint64_t seed) : engine_(seed) {}

    uint64_t next() { return engine_(); }
    /// 0 to limit - 1.
    uint64_t below(uint64_t limit) { return engine_() % limit; }
    bool oneIn(uint64_t chances) { return below(chances) == 0; }
    char byte() { return static_cast<char>(engine_() >> 56); }

    template <class T>
    T pick(std::initializer_list<T> choices) {
        return choices.begin()[below(choices.size())];
    }
    template <class T>
    const T& pick(std::span<const T> choices) {
        return choices[below(choices.size())];
    }

    void fill(Bytes& bytes) {
        for (char& one : bytes) {
            one = byte();
        }
    }

    /// A value that is likely to sit at a boundary of a varint or of an integer width.
    uint64_t interestingInteger() {
        switch (below(6)) {
            case 0:
                return 0;
            case 1:
                return UINT64_MAX - below(3);
            case 2:
                return next();
            case 3:
                return below(200);
            default: {
                // Two statements: within one, compilers choose which draw comes first.
                const uint64_t power = UINT64_C(1) << below(64);
                return power + below(3) - 1;
            }
        }
    }

  private:
    std::mt19937_64 engine_;
};

}  // namespace zrp_test
