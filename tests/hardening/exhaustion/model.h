// The integer encodings once more, in plain arithmetic: what the sweeps expect of every writer and
// reader. Shares nothing with the library.
#pragma once

#include <stddef.h>
#include <stdint.h>

namespace zrp_test {

/// The bytes of one integer.
struct Encoded {
    unsigned char bytes[10];
    size_t size = 0;

    void put(uint64_t byte) { bytes[size++] = static_cast<unsigned char>(byte); }
};

/// The last `width` digits of `value` to the base of 256, the first one most significant.
inline Encoded fixedModel(uint64_t value, size_t width) {
    Encoded encoded;
    encoded.size = width;
    for (size_t i = width; i > 0; --i) {
        encoded.bytes[i - 1] = static_cast<unsigned char>(value % 256);
        value /= 256;
    }
    return encoded;
}

/// The digits of `value` to the base of 128, the last one first; all but the last written get 128.
inline Encoded varintModel(uint64_t value) {
    Encoded encoded;
    for (; value >= 128; value /= 128) {
        encoded.put(128 + value % 128);
    }
    encoded.put(value);
    return encoded;
}

/// Values from 0 up become the even numbers, those from -1 down the odd ones.
inline Encoded signedVarintModel(int64_t value) {
    return varintModel(value >= 0 ? 2 * static_cast<uint64_t>(value)
                                  : 2 * static_cast<uint64_t>(-(value + 1)) + 1);
}

/// What a varint reader of up to three bytes of input is to find.
struct ReadVarint {
    uint64_t value;  ///< on failure what the groups before it gave
    size_t used;     ///< 0 on failure
};

/// Three groups of seven bits fit into 32 and 64 bits whatever they are; into 16 bits the third one
/// only goes up to 3.
inline ReadVarint readVarintModel(const unsigned char* input, size_t size, bool is16Bits) {
    uint64_t value = 0;
    uint64_t weight = 1;
    for (size_t i = 0; i < size; ++i) {
        const uint64_t group = input[i] % 128;
        if (is16Bits && i == 2 && group > 3) {
            return {value, 0};
        }
        value += group * weight;
        weight *= 128;
        if (input[i] < 128) {
            return {value, i + 1};
        }
    }
    return {value, 0};
}

/// What `signedVarintModel` made a number of.
inline int64_t signedOf(uint64_t number) {
    const int64_t half = static_cast<int64_t>(number / 2);
    return number % 2 == 0 ? half : -half - 1;
}

}  // namespace zrp_test
