// Decoding: the library against the oracle, over sound, cut, changed and invented input.
#include <gtest/gtest.h>
#include <stdint.h>

#include "tests/differential/agreement.h"
#include "tests/differential/effort.h"
#include "tests/differential/wire_generator.h"
#include "tests/oracle/oracle.h"

namespace zrp_test {

namespace {

class DecodingDifference : public testing::TestWithParam<TypePair> {
  protected:
    /// The oracle's encoding of a record, as far as it got.
    Bytes encoding(const Subject& subject, bool varint) const {
        Bytes bytes(zrp_oracle::largestSize(*GetParam().oracle, varint) + subject.record.size());
        size_t used = 0;
        zrp_oracle::pack(*GetParam().oracle, subject.record.data(), subject.selector, bytes.data(),
                         bytes.size(), &used, varint);
        bytes.resize(used);
        return bytes;
    }

    Bytes randomEncoding(Random& random, bool varint) const {
        const size_t variant = random.below(variantCount(*GetParam().oracle));
        return encoding(randomSubject(GetParam(), random, variant, Soundness::sound), varint);
    }

    /// Runs `check(random, varint)` for as many seeds as asked for, the flavours in turn.
    template <class Check>
    void forEachSeed(size_t seeds, Check check) {
        for (uint64_t seed = 0; seed < seeds; ++seed) {
            SCOPED_TRACE(testing::Message() << "seed " << seed);
            Random random(seed);
            check(random, seed % 2 == 0);
            if (HasFatalFailure()) {
                return;
            }
        }
    }

    Difference compareDecode(const Bytes& input, Random& random) const {
        return compareUnpack(GetParam(), randomTarget(GetParam(), random), input);
    }
};

}  // namespace

TEST_P(DecodingDifference, SoundEncodingsComeBackAsTheyWere) {
    const size_t variants = variantCount(*GetParam().oracle);
    forEachSeed(20 * variants * differentialRounds(), [&](Random& random, bool varint) {
        const Subject sent =
            randomSubject(GetParam(), random, random.below(variants), Soundness::sound);
        const Bytes bytes = encoding(sent, varint);
        Subject received;
        ASSERT_TRUE(
            agree(compareUnpack(GetParam(), randomTarget(GetParam(), random), bytes, &received)));
        if (GetParam().library->name != std::string("TZRPFrame")) {
            ASSERT_TRUE(!GetParam().oracle->isUnion || sent.selector == received.selector);
            ASSERT_EQ(toHex(bytes), toHex(encoding(received, varint)));
        }
    });
}

TEST_P(DecodingDifference, CutEncodingsDecodeAlike) {
    forEachSeed(6 * variantCount(*GetParam().oracle) * differentialRounds(),
                [&](Random& random, bool varint) {
                    const Bytes bytes = randomEncoding(random, varint);
                    for (const size_t size : sizesUpTo(bytes.size(), 1500, random)) {
                        Bytes cut(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
                        ASSERT_TRUE(agree(compareDecode(cut, random)));
                        if (size >= 5) {
                            putLength(cut, 1, size);
                            ASSERT_TRUE(agree(compareDecode(cut, random)));
                        }
                    }
                });
}

TEST_P(DecodingDifference, AnyDeclaredLengthIsTakenAlike) {
    forEachSeed(6 * variantCount(*GetParam().oracle) * differentialRounds(),
                [&](Random& random, bool varint) {
                    Bytes bytes = randomEncoding(random, varint);
                    for (const size_t size : sizesUpTo(bytes.size() + 3, 1500, random)) {
                        putLength(bytes, 1, size);
                        ASSERT_TRUE(agree(compareDecode(bytes, random)));
                    }
                    putLength(bytes, 1, random.next());
                    ASSERT_TRUE(agree(compareDecode(bytes, random)));
                });
}

TEST_P(DecodingDifference, ChangedEncodingsDecodeAlike) {
    forEachSeed(3000 * differentialRounds(), [&](Random& random, bool varint) {
        Bytes bytes = randomEncoding(random, varint);
        if (random.oneIn(3)) {
            bytes = spliced(bytes, randomEncoding(random, varint), random);
        }
        if (!random.oneIn(5)) {
            bytes = mutated(bytes, random);
        }
        if (bytes.size() >= 5 && !random.oneIn(10)) {
            bytes[0] = static_cast<char>(varint ? 0xAA : 0x99);
            putLength(bytes, 1, bytes.size());
        }
        ASSERT_TRUE(agree(compareDecode(withTail(bytes, random), random)));
    });
}

TEST_P(DecodingDifference, EncodingsWithOneByteChangedDecodeAlike) {
    forEachSeed(6 * variantCount(*GetParam().oracle) * differentialRounds(),
                [&](Random& random, bool varint) {
                    const Bytes encoded = randomEncoding(random, varint);
                    const Bytes bytes = withTail(encoded, random);
                    for (const size_t place : sizesUpTo(encoded.size() - 1, 150, random)) {
                        for (const int change : {1, -1, 0x80}) {
                            Bytes changed = bytes;
                            changed[place] = static_cast<char>(changed[place] + change);
                            ASSERT_TRUE(agree(compareDecode(changed, random)));
                        }
                    }
                });
}

TEST_P(DecodingDifference, InventedFieldsDecodeAlikeAndWhatTheyLeaveEncodesAndPrintsAlike) {
    forEachSeed(5000 * differentialRounds(), [&](Random& random, bool varint) {
        WireGenerator generator(random, varint);
        Bytes bytes = generator.message(*GetParam().oracle);
        if (random.oneIn(8)) {
            bytes = mutated(bytes, random);
        }
        const size_t size = bytes.size() + random.below(100);
        bytes = withTail(bytes, random);
        Subject received;
        ASSERT_TRUE(
            agree(compareUnpack(GetParam(), randomTarget(GetParam(), random), bytes, &received)));
        limitTrailingBody(*GetParam().oracle, received.record.data());
        ASSERT_TRUE(agree(comparePack(GetParam(), received, size, varint)));
        ASSERT_TRUE(agree(compareVisualize(GetParam(), received, {0, '\n', 10 * size})));
    });
}

TEST_P(DecodingDifference, FieldsDecodeAlikeFromAnyPositionOverAnyLength) {
    forEachSeed(4000 * differentialRounds(), [&](Random& random, bool varint) {
        WireGenerator generator(random, varint);
        const size_t start = random.oneIn(4) ? 0 : random.below(20);
        Bytes bytes(start, 'x');
        const Bytes fields = generator.fields(*GetParam().oracle);
        bytes.insert(bytes.end(), fields.begin(), fields.end());
        bytes = withTail(bytes, random);
        const size_t length = random.pick<size_t>(
            {fields.size(), fields.size() - 1, fields.size() + 1,
             static_cast<size_t>(random.below(fields.size() + 8)), 0, SIZE_MAX, SIZE_MAX - start,
             SIZE_MAX - start + 1, static_cast<size_t>(random.next())});
        ASSERT_TRUE(agree(compareUnpackFields(GetParam(), randomTarget(GetParam(), random), bytes,
                                              start, length, varint)));
    });
}

TEST_P(DecodingDifference, NoiseDecodesAlike) {
    forEachSeed(2000 * differentialRounds(), [&](Random& random, bool varint) {
        Bytes bytes(random.below(64));
        random.fill(bytes);
        if (bytes.size() >= 5 && !random.oneIn(20)) {
            bytes[0] = static_cast<char>(varint ? 0xAA : 0x99);
            putLength(bytes, 1, bytes.size());
            // A tag that the type knows, more often than chance would have it.
            if (bytes.size() > 5 && random.oneIn(2)) {
                bytes[5] = static_cast<char>(random.pick(GetParam().oracle->fields).number * 16);
            }
        }
        ASSERT_TRUE(agree(compareDecode(bytes, random)));
    });
}

TEST_P(DecodingDifference, ABadEnvelopeTouchesNothing) {
    const MessageType& library = *GetParam().library;
    Random random(1);
    const struct {
        const char* input;
        int result;
    } cases[] = {
        {"AA 00 00 00", -2}, {"AB", -2}, {"AB 00 00 00 05", -32}, {"AA 00 00 00 06", -2}, {"", -2},
    };
    for (const auto& [input, expected] : cases) {
        Subject target{Bytes(recordSize(GetParam())), 5};
        random.fill(target.record);
        const Bytes before = target.record;
        const Bytes bytes = hex(input);
        size_t used = 77;
        const char* begin = bytes.empty() ? "" : bytes.data();
        EXPECT_EQ(expected, library.unpack(target.record.data(), &target.selector, begin,
                                           bytes.size(), &used))
            << input;
        EXPECT_EQ(-19, library.unpack(target.record.data(), &target.selector, nullptr, 5, &used));
        EXPECT_EQ(77u, used);
        EXPECT_EQ(5, target.selector);
        EXPECT_EQ(before, target.record);
    }
}

INSTANTIATE_TEST_SUITE_P(Of, DecodingDifference, testing::ValuesIn(typePairs()),
                         testing::PrintToStringParamName());

}  // namespace zrp_test
