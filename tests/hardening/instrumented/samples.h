// What the instrumented programs run every type on. They stand alone, without the test framework,
// whose own code is not instrumented.
#pragma once

#include <stdint.h>

#include <vector>

#include "tests/differential/random.h"
#include "tests/differential/subject.h"

namespace zrp_test {

/// Something to encode.
struct SampleRecord {
    TypePair pair;
    Subject subject;
    bool isSound;
};

/// Something to decode.
struct SampleInput {
    TypePair pair;
    Bytes bytes;
};

/// Records of a type with every live member, sound ones and doubtful ones, `rounds` of each.
std::vector<SampleRecord> sampleRecords(const TypePair& pair, uint64_t rounds);

/// Encodings of such records in both flavours: whole, cut at some places, with bytes changed, their
/// fields in reverse; and messages put together from fields at random.
std::vector<SampleInput> sampleInputs(const TypePair& pair, uint64_t rounds);

/// The library's encoding of a record, as far as it got.
Bytes encoded(const TypePair& pair, const Subject& subject, bool varint);

/// Room for a dump of any sample.
constexpr size_t dumpRoom = 40000;

}  // namespace zrp_test
