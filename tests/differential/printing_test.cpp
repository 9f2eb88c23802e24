// The text dump: the library against the oracle.
#include <gtest/gtest.h>
#include <limits.h>

#include "tests/differential/agreement.h"
#include "tests/differential/effort.h"
#include "tests/oracle/oracle.h"

namespace zrp_test {

namespace {

class PrintingDifference : public testing::TestWithParam<TypePair> {
  protected:
    static constexpr size_t plenty = 40000;

    /// The bytes a dump takes with all the room it wants.
    size_t dumpedSize(const Subject& subject) const {
        Bytes buffer(plenty);
        size_t used = 0;
        zrp_oracle::PrintLog log;
        zrp_oracle::visualizeInto(*GetParam().oracle, subject.record.data(), subject.selector,
                                  buffer.data(), buffer.size(), &used, 0, ' ', log);
        return used;
    }

    /// Runs `check(subject, random)` for every live member.
    template <class Check>
    void forEachVariant(size_t rounds, Soundness soundness, Check check) {
        for (size_t round = 0; round < rounds; ++round) {
            for (size_t variant = 0; variant < variantCount(*GetParam().oracle); ++variant) {
                const uint64_t seed = round * 64 + variant;
                SCOPED_TRACE(testing::Message() << "seed " << seed);
                Random random(seed);
                check(randomSubject(GetParam(), random, variant, soundness), random);
                if (HasFatalFailure()) {
                    return;
                }
            }
        }
    }
};

DumpStyle styleOfSize(size_t size, Random& random) {
    return {random.pick({-1, 0, 3, INT_MAX, INT_MIN, INT_MAX - 1}),
            random.pick({'\n', ' ', '\x80', '\0'}), size};
}

}  // namespace

TEST_P(PrintingDifference, EveryStyleMakesTheSameCallsAndText) {
    forEachVariant(
        6 * differentialRounds(), Soundness::sound, [&](const Subject& subject, Random&) {
            const size_t size = dumpedSize(subject) + 1;
            for (const int indent : {-1, 0, 3, INT_MAX}) {
                for (const char separator : {'\n', ' ', '\x80'}) {
                    ASSERT_TRUE(
                        agree(compareVisualize(GetParam(), subject, {indent, separator, size})));
                }
            }
        });
}

TEST_P(PrintingDifference, EveryBufferSizeStopsTheDumpAlike) {
    forEachVariant(
        3 * differentialRounds(), Soundness::sound, [&](const Subject& subject, Random& random) {
            const size_t used = dumpedSize(subject);
            for (const size_t size : sizesUpTo(used + 16, 250, random)) {
                ASSERT_TRUE(
                    agree(compareVisualize(GetParam(), subject, styleOfSize(size, random))));
            }
        });
}

TEST_P(PrintingDifference, DoubtfulRecordsStopTheDumpAlike) {
    forEachVariant(
        60 * differentialRounds(), Soundness::doubtful,
        [&](const Subject& subject, Random& random) {
            const size_t used = dumpedSize(subject);
            const size_t start = random.below(30);
            ASSERT_TRUE(
                agree(compareVisualize(GetParam(), subject, styleOfSize(used + 1, random))));
            ASSERT_TRUE(agree(compareVisualize(GetParam(), subject,
                                               styleOfSize(random.below(used + 2), random))));
            ASSERT_TRUE(agree(compareVisualizeFrom(
                GetParam(), subject, start, styleOfSize(start + random.below(used + 2), random))));
        });
}

TEST(FramePrintingDifference, ABodyLongerThanTheOutputIsPrintedAsFarAsItFits) {
    const TypePair pair{&messageType("TZRPFrame"), &zrp_oracle::typeTZRPFrame};
    Random random(1);
    Subject frame = randomSubject(pair, random, 0, Soundness::sound);
    zrp_oracle::setValueAt(frame.record.data(), pair.oracle->fields[1].governor, 0xFFFFFFFF);
    const size_t bodyRoom = frame.record.size() - pair.library->objectSize;
    // Every element takes 5 bytes of text.
    for (size_t size = 0; size < 5 * bodyRoom; size += 7) {
        ASSERT_TRUE(agree(compareVisualize(pair, frame, {0, '\n', size})));
    }
}

TEST_P(PrintingDifference, AFailingFormattingFunctionEndsTheDumpAlike) {
    forEachVariant(5 * differentialRounds(), Soundness::sound,
                   [&](const Subject& subject, Random& random) {
                       for (size_t index = 0; index < 8; ++index) {
                           DumpStyle style = styleOfSize(dumpedSize(subject) + 1, random);
                           style.failingCall = index < 4 ? index : random.below(80);
                           ASSERT_TRUE(agree(compareVisualize(GetParam(), subject, style)));
                       }
                   });
}

TEST_P(PrintingDifference, ANullArrayIsRefused) {
    const Bytes record(recordSize(GetParam()));
    size_t used = 77;
    EXPECT_EQ(-19, GetParam().library->visualizeInto(record.data(), 0, nullptr, 10, &used, 0, ' '));
    EXPECT_EQ(77u, used);
}

INSTANTIATE_TEST_SUITE_P(Of, PrintingDifference, testing::ValuesIn(typePairs()),
                         testing::PrintToStringParamName());

}  // namespace zrp_test
