// What `validate` promises of encoding and printing, over random records and random wire bytes.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/differential/effort.h"
#include "tests/differential/subject.h"
#include "tests/differential/wire_generator.h"
#include "tests/oracle/oracle.h"
#include "tests/validate/validators.h"

namespace zrp_test {

namespace {

class ValidatePromises : public testing::TestWithParam<TypePair> {
  protected:
    int validate(const Subject& subject) const {
        return validatorOf(library().name)(subject.record.data(), subject.selector, nullptr, 0);
    }

    /// Into a buffer of the published largest size and room for a body behind the record.
    int encode(const Subject& subject, bool varint) const {
        Bytes out((varint ? library().maxVarint : library().maxFixed) + subject.record.size());
        return library().pack(subject.record.data(), subject.selector, out.data(), out.size(),
                              nullptr, varint);
    }

    int print(const Subject& subject) const {
        Bytes out(60000);
        return library().visualizeInto(subject.record.data(), subject.selector, out.data(),
                                       out.size(), nullptr, 0, '\n');
    }

    const MessageType& library() const { return *GetParam().library; }

    void expectPromisesKept(const Subject& subject) {
        const int verdict = validate(subject);
        ++(verdict == 0 ? soundCount_ : failedCount_);
        ASSERT_EQ(encode(subject, true), verdict);
        ASSERT_EQ(encode(subject, false), verdict);
        if (verdict == 0) {
            ASSERT_EQ(0, print(subject));
        } else {
            char path[100] = "";
            ASSERT_EQ(verdict, validatorOf(library().name)(subject.record.data(), subject.selector,
                                                           path, sizeof(path)));
            // A union's own selector is to blame where there is no path.
            ASSERT_TRUE(path[0] != '\0' || (library().isUnion && verdict == -33));
        }
    }

    size_t soundCount_ = 0;
    size_t failedCount_ = 0;
};

}  // namespace

TEST_P(ValidatePromises, RandomRecordsEncodeExactlyWhenTheyAreSound) {
    const size_t rounds = 150 * differentialRounds();
    for (size_t seed = 0; seed < rounds; ++seed) {
        for (size_t variant = 0; variant < variantCount(*GetParam().oracle); ++variant) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << " variant " << variant);
            Random random(seed * 64 + variant);
            const Soundness soundness = random.oneIn(3) ? Soundness::sound : Soundness::doubtful;
            const Subject subject = randomSubject(GetParam(), random, variant, soundness);
            ASSERT_NO_FATAL_FAILURE(expectPromisesKept(subject));
            if (soundness == Soundness::sound) {
                ASSERT_EQ(0, validate(subject));
            }
        }
    }
    EXPECT_GE(soundCount_, rounds / 4);
}

TEST_P(ValidatePromises, WhatDecodedFromWildBytesIsJudgedAsItEncodesAndPrints) {
    const size_t rounds = 600 * differentialRounds();
    size_t decoded = 0;
    for (size_t seed = 0; seed < rounds; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        Random random(seed);
        WireGenerator generator(random, seed % 2 == 0);
        Bytes input = generator.message(*GetParam().oracle);
        if (random.oneIn(2)) {
            input = mutated(input, random);
        }
        Subject target = randomTarget(GetParam(), random);
        const int result = library().unpack(target.record.data(), &target.selector, input.data(),
                                            input.size(), nullptr);
        // After a failure, too: what was read so far stays in the record.
        decoded += result == 0 ? 1 : 0;
        limitTrailingBody(*GetParam().oracle, target.record.data());
        ASSERT_NO_FATAL_FAILURE(expectPromisesKept(target));
    }
    EXPECT_GE(decoded, rounds / 20);
    EXPECT_GE(soundCount_, rounds / 20);
}

INSTANTIATE_TEST_SUITE_P(Of, ValidatePromises, testing::ValuesIn(typePairs()),
                         testing::PrintToStringParamName());

}  // namespace zrp_test
