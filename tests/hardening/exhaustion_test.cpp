// Small worlds, gone through whole: every value of 16 bits, every varint of one to three bytes,
// every message of up to two bytes of fields. Of the larger ones, 32-bit values and three bytes of
// fields, an even sample; `./dev exhaust` takes all of them.
#include <gtest/gtest.h>

#include "tests/hardening/exhaustion/sweeps.h"

namespace zrp_test {

TEST(Exhaustion, Every16BitValueGoesThroughEveryWriterAndReader) {
    const Sample all{0, 1, 1 << 16};
    EXPECT_EQ(65536u, all.count());
    EXPECT_EQ("", sweep16BitValues(all));
}

TEST(Exhaustion, AnEvenSampleOf32BitValuesGoesThroughEveryWriterAndReader) {
    constexpr uint64_t limit = uint64_t{1} << 32;
    // A little less than a power of 2, and odd: the low bytes come in every combination.
#if defined(ZRP_SLOW_BUILD)
    const Sample sample{0, 4095, limit};
    EXPECT_LE(uint64_t{1} << 20, sample.count());
#else
    const Sample sample{0, 255, limit};
    EXPECT_LE(uint64_t{1} << 24, sample.count());
#endif
    EXPECT_EQ("", sweep32BitValues(sample));
    EXPECT_EQ("", sweep32BitValues({limit - 1000, 1, limit}));
    for (uint64_t power = 1; power < limit; power *= 2) {
        EXPECT_EQ("", sweep32BitValues({power - 1, 1, power + 2}));
    }
}

TEST(Exhaustion, EveryVarintOfOneToThreeBytesIsReadByEveryReader) {
    for (size_t length = 1; length <= 3; ++length) {
        EXPECT_EQ("", sweepVarintInputs(length, {0, 1, stringsOf(length)}));
    }
}

namespace {

class ShortBodies : public testing::TestWithParam<TypePair> {};

}  // namespace

TEST_P(ShortBodies, OfUpToTwoBytesAllDecodeLikeTheOracle) {
    for (const bool varint : {true, false}) {
        for (size_t length = 0; length <= 2; ++length) {
            EXPECT_EQ("", sweepBodies(GetParam(), varint, length, {0, 1, stringsOf(length)}));
        }
    }
}

TEST_P(ShortBodies, OfThreeBytesDecodeLikeTheOracle) {
    for (const bool varint : {true, false}) {
        // A prime: every byte takes every value.
        EXPECT_EQ("", sweepBodies(GetParam(), varint, 3, {0, 509, stringsOf(3)}));
    }
}

INSTANTIATE_TEST_SUITE_P(Of, ShortBodies, testing::ValuesIn(typePairs()),
                         testing::PrintToStringParamName());

}  // namespace zrp_test
