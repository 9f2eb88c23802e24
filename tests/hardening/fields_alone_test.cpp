// What is written and printed depends on the fields of a record alone, never on what else is in its
// memory: padding, presence bits, dead union members, bytes behind texts and counts.
#include <gtest/gtest.h>

#include <string>

#include "tests/differential/subject.h"
#include "tests/hardening/copied_fields.h"
#include "tests/oracle/oracle.h"

namespace zrp_test {

namespace {

struct Written {
    int result;
    size_t used;
    std::string bytes;

    bool operator==(const Written& other) const = default;
};

std::ostream& operator<<(std::ostream& out, const Written& written) {
    return out << "result " << written.result << ", used " << written.used << ", " << written.bytes;
}

/// Runs `write(buffer, size, &used)` over `size` bytes.
template <class Write>
Written writtenBy(size_t size, Write write) {
    Bytes buffer(size, '\xC7');
    Written written{0, 0, ""};
    written.result = write(buffer.data(), size, &written.used);
    written.bytes = toHex(buffer);
    return written;
}

class FieldsAlone : public testing::TestWithParam<TypePair> {
  protected:
    Written encoded(const Subject& subject, size_t size, bool varint) const {
        return writtenBy(size, [&](char* buffer, size_t room, size_t* used) {
            return GetParam().library->pack(subject.record.data(), subject.selector, buffer, room,
                                            used, varint);
        });
    }

    Written printed(const Subject& subject) const {
        return writtenBy(24000, [&](char* buffer, size_t room, size_t* used) {
            return GetParam().library->visualizeInto(subject.record.data(), subject.selector,
                                                     buffer, room, used, 0, ';');
        });
    }

    Subject withFieldsOver(char filling, const Subject& subject) const {
        Subject copy{Bytes(subject.record.size(), filling), subject.selector};
        copyFields(*GetParam().oracle, subject.record.data(), subject.selector, copy.record.data());
        return copy;
    }

    /// Runs `check(original, copy, random)` for records with every live member, over each filling.
    template <class Check>
    void forEachCopy(Soundness soundness, Check check) const {
        for (size_t variant = 0; variant < variantCount(*GetParam().oracle); ++variant) {
            for (uint64_t round = 0; round < 3; ++round) {
                Random random(variant * 16 + round);
                const Subject original = randomSubject(GetParam(), random, variant, soundness);
                for (const char filling : {'\x00', '\xFF', '\xA5'}) {
                    SCOPED_TRACE(testing::Message() << "variant " << variant << ", round " << round
                                                    << ", over " << static_cast<int>(filling));
                    check(original, withFieldsOver(filling, original), random);
                    if (HasFatalFailure()) {
                        return;
                    }
                }
            }
        }
    }
};

}  // namespace

TEST_P(FieldsAlone, DecideTheBytesOfAnEncoding) {
    for (const Soundness soundness : {Soundness::sound, Soundness::doubtful}) {
        forEachCopy(soundness, [&](const Subject& original, const Subject& copy, Random& random) {
            for (const bool varint : {true, false}) {
                const size_t full =
                    zrp_oracle::largestSize(*GetParam().oracle, varint) + original.record.size();
                const size_t cut = 1 + static_cast<size_t>(random.below(full));
                for (const size_t size : {full, cut, size_t{9}}) {
                    ASSERT_EQ(encoded(original, size, varint), encoded(copy, size, varint));
                }
            }
        });
    }
}

TEST_P(FieldsAlone, DecideTheDump) {
    for (const Soundness soundness : {Soundness::sound, Soundness::doubtful}) {
        forEachCopy(soundness, [&](const Subject& original, const Subject& copy, Random&) {
            ASSERT_EQ(printed(original), printed(copy));
        });
    }
}

INSTANTIATE_TEST_SUITE_P(Of, FieldsAlone, testing::ValuesIn(typePairs()),
                         testing::PrintToStringParamName());

}  // namespace zrp_test
