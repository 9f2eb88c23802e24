// Encoding, construction and sizes: the library against the oracle.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/differential/agreement.h"
#include "tests/differential/effort.h"
#include "tests/oracle/oracle.h"

namespace zrp_test {

namespace {

/// The bytes a record's fields and envelope take.
size_t encodedSize(const TypePair& pair, const Subject& subject, bool varint) {
    Bytes buffer(zrp_oracle::largestSize(*pair.oracle, varint) + subject.record.size());
    size_t used = 0;
    zrp_oracle::pack(*pair.oracle, subject.record.data(), subject.selector, buffer.data(),
                     buffer.size(), &used, varint);
    return used;
}

class EncodingDifference : public testing::TestWithParam<TypePair> {
  protected:
    size_t largest(bool varint) const {
        return zrp_oracle::largestSize(*GetParam().oracle, varint);
    }

    /// Runs `check(subject, varint, random)` for every live member and both flavours.
    template <class Check>
    void forEachVariant(size_t rounds, Soundness soundness, Check check) {
        for (size_t round = 0; round < rounds; ++round) {
            for (size_t variant = 0; variant < variantCount(*GetParam().oracle); ++variant) {
                for (const bool varint : {true, false}) {
                    const uint64_t seed = (round * 64 + variant) * 2 + (varint ? 1 : 0);
                    SCOPED_TRACE(testing::Message() << "seed " << seed);
                    Random random(seed);
                    const Subject subject = randomSubject(GetParam(), random, variant, soundness);
                    check(subject, varint, random);
                    if (HasFatalFailure()) {
                        return;
                    }
                }
            }
        }
    }
};

}  // namespace

TEST_P(EncodingDifference, SoundRecordsEncodeAlikeIntoEveryBufferSize) {
    forEachVariant(3 * differentialRounds(), Soundness::sound,
                   [&](const Subject& subject, bool varint, Random&) {
                       const size_t last =
                           std::max(largest(varint), encodedSize(GetParam(), subject, varint)) + 16;
                       for (size_t size = 0; size <= last; ++size) {
                           ASSERT_TRUE(agree(comparePack(GetParam(), subject, size, varint)));
                       }
                   });
}

TEST_P(EncodingDifference, DoubtfulRecordsEncodeAlikeIntoManyBufferSizes) {
    forEachVariant(40 * differentialRounds(), Soundness::doubtful,
                   [&](const Subject& subject, bool varint, Random& random) {
                       const size_t used = encodedSize(GetParam(), subject, varint);
                       for (const size_t size : sizesUpTo(used + 16, 100, random)) {
                           ASSERT_TRUE(agree(comparePack(GetParam(), subject, size, varint)));
                       }
                       ASSERT_TRUE(agree(comparePack(GetParam(), subject, used + 4000, varint)));
                   });
}

TEST_P(EncodingDifference, FieldsEncodeAlikeFromAnyPosition) {
    forEachVariant(20 * differentialRounds(), Soundness::doubtful,
                   [&](const Subject& subject, bool varint, Random& random) {
                       const size_t start = 1 + random.below(40);
                       const size_t used = encodedSize(GetParam(), subject, varint) - 5;
                       for (const size_t free : sizesUpTo(used + 8, 60, random)) {
                           ASSERT_TRUE(agree(comparePackFields(GetParam(), subject, start,
                                                               start + free, varint)));
                       }
                       const size_t most = largest(varint) - 5;
                       for (const size_t free : {most - 1, most, most + 1, most + 5000}) {
                           ASSERT_TRUE(agree(comparePackFields(GetParam(), subject, start,
                                                               start + free, varint)));
                       }
                   });
}

TEST_P(EncodingDifference, NullArgumentsAreRefusedAlike) {
    Random random(1);
    const Subject subject = randomSubject(GetParam(), random, 0, Soundness::sound);
    const MessageType& library = *GetParam().library;
    Bytes bytes(largest(true), 'x');
    const Bytes before = bytes;
    size_t used = 77;
    const void* record = subject.record.data();
    EXPECT_EQ(-19, library.pack(record, subject.selector, nullptr, 100, &used, true));
    EXPECT_EQ(-19, library.pack(record, subject.selector, bytes.data(), 0, &used, true));
    EXPECT_EQ(77u, used);
    EXPECT_EQ(before, bytes);
    Bytes expected = before;
    const int result = zrp_oracle::pack(*GetParam().oracle, record, subject.selector,
                                        expected.data(), expected.size(), nullptr, true);
    EXPECT_EQ(result,
              library.pack(record, subject.selector, bytes.data(), bytes.size(), nullptr, true));
    EXPECT_EQ(expected, bytes);
}

TEST_P(EncodingDifference, TheLargestSizesAreThoseOfTheRule) {
    const MessageType& library = *GetParam().library;
    const Bytes record(recordSize(GetParam()));
    for (const bool varint : {true, false}) {
        size_t size = 0;
        EXPECT_EQ(0, library.maxPackedSize(record.data(), &size, varint));
        EXPECT_EQ(largest(varint), size);
        EXPECT_EQ(-19, library.maxPackedSize(record.data(), nullptr, varint));
    }
    EXPECT_EQ(largest(true), library.maxVarint);
    EXPECT_EQ(largest(false), library.maxFixed);
}

TEST_P(EncodingDifference, RecordsAreConstructedAlikeOverAnyMemory) {
    for (size_t seed = 0; seed < 200 * differentialRounds(); ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        Random random(seed);
        Subject target = randomTarget(GetParam(), random);
        target.selector = random.oneIn(3) ? strangeSelector(*GetParam().oracle, random)
                                          : random.pick(GetParam().oracle->fields).number;
        ASSERT_TRUE(agree(compareConstruct(GetParam(), target)));
    }
}

// The caller owes a frame as many body bytes as it counts; what the output has no room for is not
// looked at.
TEST(FrameEncodingDifference, ABodyLongerThanTheOutputIsWrittenAsFarAsItFits) {
    const TypePair pair{&messageType("TZRPFrame"), &zrp_oracle::typeTZRPFrame};
    Random random(1);
    Subject frame = randomSubject(pair, random, 0, Soundness::sound);
    const size_t bodyRoom = frame.record.size() - pair.library->objectSize;
    for (const bool varint : {true, false}) {
        for (const uint64_t count : {UINT64_C(0xFFFFFFFF), UINT64_C(0x80000000)}) {
            zrp_oracle::setValueAt(frame.record.data(), pair.oracle->fields[1].governor, 0);
            const size_t headSize = encodedSize(pair, frame, varint);
            zrp_oracle::setValueAt(frame.record.data(), pair.oracle->fields[1].governor, count);
            for (size_t size = headSize; size < headSize + bodyRoom; ++size) {
                ASSERT_TRUE(agree(comparePack(pair, frame, size, varint)));
            }
        }
    }
}

TEST_P(EncodingDifference, BuffersWithoutMemoryAreTreatedAlike) {
    forEachVariant(differentialRounds(), Soundness::doubtful,
                   [&](const Subject& subject, bool varint, Random&) {
                       ASSERT_TRUE(agree(compareWithoutMemory(GetParam(), subject, varint)));
                   });
}

INSTANTIATE_TEST_SUITE_P(Of, EncodingDifference, testing::ValuesIn(typePairs()),
                         testing::PrintToStringParamName());

}  // namespace zrp_test
