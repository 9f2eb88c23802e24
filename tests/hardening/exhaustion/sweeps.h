// Sweeps over everything there is: all values of an integer, all short inputs. Each stops at the
// first disagreement and returns what it was; an empty text says that there was none.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <string>

#include "tests/differential/subject.h"

namespace zrp_test {

/// Some of the numbers below a limit: `first`, and every `step`-th after it.
struct Sample {
    uint64_t first = 0;
    uint64_t step = 1;
    uint64_t limit = 0;

    uint64_t count() const { return first < limit ? (limit - first - 1) / step + 1 : 0; }
};

/// Every 16-bit value through every writer and reader of 16 bits, there and back.
std::string sweep16BitValues(Sample values);

/// 32-bit values through every writer and reader of 32 and 64 bits, there and back.
std::string sweep32BitValues(Sample values);

/// Byte strings of one length, 1 to 3, into every varint reader. Strings are counted by the number
/// that their bytes make, the first one most significant.
std::string sweepVarintInputs(size_t length, Sample strings);

/// Byte strings of one length, 0 to 3, as the fields of a message, decoded by the library and by
/// the oracle: result, used size, selector and every byte of the record.
std::string sweepBodies(const TypePair& pair, bool varint, size_t length, Sample strings);

/// How many byte strings of a length there are.
constexpr uint64_t stringsOf(size_t length) {
    return uint64_t{1} << (8 * length);
}

}  // namespace zrp_test
