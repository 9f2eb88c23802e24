// The bytes that the fuzzer made up, taken apart from the front: choices first, then what is left.
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include <algorithm>

#include "tests/support/bytes.h"

namespace zrp_fuzz {

using zrp_test::Bytes;

/// Reads from the front; past the end everything is 0, so every input means something.
class Input {
  public:
    Input(const uint8_t* bytes, size_t count) : at_(bytes), left_(count) {}

    uint8_t byte() {
        if (left_ == 0) {
            return 0;
        }
        --left_;
        return *at_++;
    }

    bool flag() { return (byte() & 1) != 0; }

    /// `width` bytes, most significant first.
    uint64_t number(size_t width) {
        uint64_t value = 0;
        for (size_t i = 0; i < width; ++i) {
            value = value << 8 | byte();
        }
        return value;
    }

    /// One of `count` things, by one byte.
    size_t choice(size_t count) { return byte() % count; }

    /// A 64-bit value that is often at a boundary of an integer or varint: one byte says a small
    /// value, a power of two, one less, or that its bytes follow.
    uint64_t integer() {
        const uint8_t form = byte();
        const unsigned low = form % 64;
        switch (form / 64) {
            case 0:
                return low;
            case 1:
                return UINT64_C(1) << low;
            case 2:
                return UINT64_MAX >> low;
            default:
                return number(low % 8 + 1);
        }
    }

    /// A count up to `most`, often at one of its ends.
    uint64_t count(uint64_t most) {
        const uint8_t form = byte();
        return form < 0xF0 ? form % (most + 1) : most - std::min<uint64_t>(most, 0xFF - form);
    }

    bool isEmpty() const { return left_ == 0; }
    const uint8_t* rest() const { return at_; }
    size_t restSize() const { return left_; }

    Bytes takeRest() {
        Bytes rest(left_);
        if (left_ != 0) {
            memcpy(rest.data(), at_, left_);
        }
        left_ = 0;
        return rest;
    }

  private:
    const uint8_t* at_;
    size_t left_;
};

}  // namespace zrp_fuzz
