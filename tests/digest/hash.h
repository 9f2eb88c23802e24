// A 128-bit hash that gives the same value on every platform. It is no secret and no defence: it
// only has to differ where rows differ.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <string>

#include "tests/support/bytes.h"

namespace zrp_test {

class Hash {
  public:
    void put(uint64_t word) {
        low_ = mixed(low_ ^ word, UINT64_C(0xD6E8FEB86659FD93));
        high_ = mixed(high_ + word, UINT64_C(0xA0761D6478BD642F));
    }

    void put(const Bytes& bytes) {
        put(bytes.size());
        for (size_t place = 0; place < bytes.size(); place += 8) {
            put(wordAt(bytes, place));
        }
    }

    std::string text() const { return digits(high_) + digits(low_); }

  private:
    static uint64_t mixed(uint64_t state, uint64_t factor) {
        state *= factor;
        return state ^ (state >> 29);
    }

    /// Up to eight bytes, the first one lowest, whatever the order of the machine.
    static uint64_t wordAt(const Bytes& bytes, size_t place) {
        uint64_t word = 0;
        for (size_t i = 0; i < 8 && place + i < bytes.size(); ++i) {
            word |= uint64_t{static_cast<unsigned char>(bytes[place + i])} << (8 * i);
        }
        return word;
    }

    static std::string digits(uint64_t word) {
        std::string text;
        for (unsigned shift = 64; shift > 0;) {
            shift -= 4;
            text += "0123456789abcdef"[(word >> shift) & 0xF];
        }
        return text;
    }

    uint64_t low_ = UINT64_C(0x243F6A8885A308D3);
    uint64_t high_ = UINT64_C(0x13198A2E03707344);
};

}  // namespace zrp_test
