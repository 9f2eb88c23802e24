// Input, output and records right between pages that may not be touched, at every alignment: no
// access leaves them, nothing is written to what is read, and the outcome is that of ordinary
// memory.
#include <gtest/gtest.h>

#if defined(_WIN32)

TEST(GuardPages, BoundEverything) {
    GTEST_SKIP() << "maps pages through POSIX calls, which this platform lacks";
}

#else

#include <string.h>

#include "protocol/quorva_zrp.h"
#include "tests/differential/effort.h"
#include "tests/differential/subject.h"
#include "tests/differential/wire_generator.h"
#include "tests/hardening/guarded_memory.h"
#include "tests/oracle/oracle.h"
#include "tests/support/bytes.h"

namespace zrp_test {

namespace {

constexpr size_t alignments = 16;

struct Outcome {
    int result = 0;
    size_t used = 77;
    long long selector = 0;

    bool operator==(const Outcome& other) const = default;
};

std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
    return out << "result " << outcome.result << ", used " << outcome.used << ", selector "
               << outcome.selector;
}

class GuardPages : public testing::TestWithParam<TypePair> {
  protected:
    size_t largest(bool varint) const {
        return zrp_oracle::largestSize(*GetParam().oracle, varint) + 200;
    }

    Outcome encode(const void* record, long long selector, char* to, size_t size,
                   bool varint) const {
        Outcome outcome;
        outcome.result =
            GetParam().library->pack(record, selector, to, size, &outcome.used, varint);
        return outcome;
    }

    Outcome decode(void* record, const char* from, size_t size) const {
        Outcome outcome;
        outcome.result =
            GetParam().library->unpack(record, &outcome.selector, from, size, &outcome.used);
        return outcome;
    }

    Bytes encoding(const Subject& subject, bool varint) const {
        Bytes bytes(largest(varint));
        bytes.resize(
            encode(subject.record.data(), subject.selector, bytes.data(), bytes.size(), varint)
                .used);
        return bytes;
    }

    /// Runs `check(subject, encoding, varint)` for every live member in both flavours.
    template <class Check>
    void forEachEncoding(Check check) const {
        for (size_t variant = 0; variant < variantCount(*GetParam().oracle); ++variant) {
            for (const bool varint : {true, false}) {
                SCOPED_TRACE(testing::Message()
                             << "variant " << variant << (varint ? " varint" : " fixed"));
                Random random(variant);
                const Subject subject =
                    randomSubject(GetParam(), random, variant, Soundness::sound);
                check(subject, encoding(subject, varint), varint);
                if (HasFatalFailure()) {
                    return;
                }
            }
        }
    }

    /// Runs `check(gap, atEnd)` for every alignment at either end of guarded memory.
    template <class Check>
    void forEachPlace(Check check) const {
        for (size_t gap = 0; gap < alignments && !HasFatalFailure(); ++gap) {
            check(gap, true);
            check(gap, false);
        }
    }
};

}  // namespace

// The last group has all its bits, the sign of a varint's end aside, and nothing lies behind it:
// the field that follows was left out.
TEST(GuardPagesBehind, AVarintWhoseLastGroupIsFullAreNotRead) {
    const Bytes bytes =
        hex("AA 00 00 00 40"
            "15 00 00 00 16 10 00 20 00 30 00 40 93 80 01 50 00 61 00 70 00 80 01 00 90 01 00"
            "25 00 00 00 1B B5 82 10 00 00 00 14 11 00 21 00 31 02 45 00 00 00 09"
            "25 00 00 00 04 10 FF FF 7F");
    const GuardedMemory memory(bytes.size(), GuardedMemory::Access::readOnly);
    quorva_zrp::TZRPHead head = quorva_zrp::TZRPHead();
    size_t used = 0;
    EXPECT_EQ(head.unpackTLV(memory.placeAtEnd(bytes), bytes.size(), &used), 0);
    EXPECT_EQ(used, bytes.size());
    EXPECT_EQ(head.stExtend.stData.stRouteInfo.stSpecifyServer.ullServerID, 2097151u);
}

namespace {

/// A tag, the length of `value`, and `value`.
Bytes delimited(const char* tag, const Bytes& value) {
    Bytes bytes = hex(tag);
    bytes.resize(bytes.size() + 4);
    putLength(bytes, bytes.size() - 4, value.size());
    bytes.insert(bytes.end(), value.begin(), value.end());
    return bytes;
}

}  // namespace

// Numbers of every length end the input: none is loaded in one go with bytes that are not there.
TEST(GuardPagesBehind, AVarintThatEndsTheInputAreNotRead) {
    for (size_t groups = 1; groups <= 10; ++groups) {
        SCOPED_TRACE(groups);
        Bytes number = hex("10");
        number.insert(number.end(), groups - 1, '\xFF');
        number.push_back('\x01');
        const Bytes route = delimited("45", delimited("25", number));
        Bytes head = hex("AA 00 00 00 00 15 00 00 00 04 10 00 40 00");
        const Bytes extend = delimited("25", delimited("B5 82 10", route));
        head.insert(head.end(), extend.begin(), extend.end());
        putLength(head, 1, head.size());

        const GuardedMemory memory(head.size(), GuardedMemory::Access::readOnly);
        quorva_zrp::TZRPHead decoded = quorva_zrp::TZRPHead();
        size_t used = 0;
        EXPECT_EQ(decoded.unpackTLV(memory.placeAtEnd(head), head.size(), &used), 0);
        EXPECT_EQ(used, head.size());
        const uint64_t lastGroup = uint64_t{1} << (7 * (groups - 1));
        EXPECT_EQ(decoded.stExtend.stData.stRouteInfo.stSpecifyServer.ullServerID,
                  lastGroup | (lastGroup - 1));
    }
}

// Fields without an envelope: what is behind a varint that is cut short is no part of it.
TEST(GuardPagesBehind, AVarintThatIsCutShortAreNotRead) {
    const Bytes bytes = hex("10 80");
    const GuardedMemory memory(bytes.size(), GuardedMemory::Access::readOnly);
    Quorva::BrxReadBuf input(memory.placeAtEnd(bytes), bytes.size());
    quorva_zrp::TZRPBase decoded = quorva_zrp::TZRPBase();
    EXPECT_EQ(decoded.unpackTLVWithVarint(input, bytes.size()), Quorva::BRX_ERR_NO_DATA);
}

// Only what is declared has to be there, whatever the size of the input is said to be.
TEST_P(GuardPages, BoundAMessageInAnInputThatIsSaidToBeLarger) {
    forEachEncoding([&](const Subject&, const Bytes& bytes, bool) {
        Bytes expected(recordSize(GetParam()), '\xA5');
        const Outcome outcome = decode(expected.data(), bytes.data(), bytes.size());
        const GuardedMemory memory(bytes.size(), GuardedMemory::Access::readOnly);
        for (const size_t size : {bytes.size() + 4096, SIZE_MAX}) {
            for (const char* const from : {memory.placeAtEnd(bytes), memory.placeAtBegin(bytes)}) {
                Bytes record(recordSize(GetParam()), '\xA5');
                ASSERT_EQ(outcome, decode(record.data(), from, size));
                ASSERT_EQ(expected, record);
            }
        }
    });
}

TEST_P(GuardPages, BoundUnknownFieldsThatAreCutShort) {
    const Bytes unknown[] = {
        hex("F1 01 2A"),                 // a tag of two bytes
        hex("81 80 04 2A"),              // a tag of three
        hex("80 80 04 FF FF FF FF 01"),  // a varint
        hex("84 80 04 01 02 03 04 05 06 07 08"),
        hex("85 80 04 00 00 00 02 61 62"),
    };
    forEachEncoding([&](const Subject&, const Bytes& bytes, bool) {
        for (const Bytes& field : unknown) {
            Bytes longer = bytes;
            longer.insert(longer.end(), field.begin(), field.end());
            const GuardedMemory memory(longer.size(), GuardedMemory::Access::readOnly);
            for (size_t size = bytes.size(); size <= longer.size(); ++size) {
                putLength(longer, 1, size);
                Bytes expected(recordSize(GetParam()), '\xA5');
                Bytes record = expected;
                const Outcome outcome = decode(expected.data(), longer.data(), size);
                const char* const from = memory.placeAtEnd({longer.data(), size});
                ASSERT_EQ(outcome, decode(record.data(), from, size)) << toHex(field);
                ASSERT_EQ(expected, record) << toHex(field);
            }
        }
    });
}

TEST_P(GuardPages, BoundEveryTruncationOfAReadOnlyInput) {
    const Bytes before(recordSize(GetParam()), '\xA5');
    const GuardedMemory memory(largest(true) + alignments, GuardedMemory::Access::readOnly);
    Bytes record = before;
    forEachEncoding([&](const Subject&, Bytes bytes, bool) {
        for (size_t size = 0; size <= bytes.size(); ++size) {
            if (size >= 5) {
                putLength(bytes, 1, size);
            }
            Bytes expected = before;
            const Outcome outcome = decode(expected.data(), bytes.data(), size);
            forEachPlace([&](size_t gap, bool atEnd) {
                const std::span<const char> input(bytes.data(), size);
                const char* const from =
                    atEnd ? memory.placeAtEnd(input, gap) : memory.placeAtBegin(input, gap);
                record = before;
                ASSERT_EQ(outcome, decode(record.data(), from, size));
                ASSERT_EQ(expected, record) << size << " bytes, " << gap << " from the page";
            });
        }
    });
}

TEST_P(GuardPages, BoundEveryOutputSize) {
    const GuardedMemory memory(largest(true) + alignments, GuardedMemory::Access::readWrite);
    forEachEncoding([&](const Subject& subject, const Bytes& whole, bool varint) {
        const void* const record = subject.record.data();
        for (size_t size = 0; size <= whole.size() + 3; ++size) {
            Bytes expected(size + 1, '\xC7');
            const Outcome outcome = encode(record, subject.selector, expected.data(), size, varint);
            forEachPlace([&](size_t gap, bool atEnd) {
                char* const to = atEnd ? memory.atEnd(size, gap) : memory.atBegin(gap);
                memset(to, '\xC7', size);
                ASSERT_EQ(outcome, encode(record, subject.selector, to, size, varint));
                ASSERT_EQ(0, memcmp(to, expected.data(), size))
                    << size << " bytes, " << gap << " from the page";
            });
        }
    });
}

TEST_P(GuardPages, BoundARecordThatIsOnlyRead) {
    const GuardedMemory memory(recordSize(GetParam()), GuardedMemory::Access::readOnly);
    forEachEncoding([&](const Subject& subject, const Bytes& whole, bool varint) {
        // Records lie where their type may: a size is a multiple of its alignment.
        for (const bool atEnd : {true, false}) {
            const char* const record =
                atEnd ? memory.placeAtEnd(subject.record) : memory.placeAtBegin(subject.record);
            Bytes again(largest(varint));
            again.resize(encode(record, subject.selector, again.data(), again.size(), varint).used);
            Bytes tooShort(whole.size() - 1);
            ASSERT_EQ(
                -1,
                encode(record, subject.selector, tooShort.data(), tooShort.size(), varint).result);
            ASSERT_EQ(whole, again);
        }
    });
}

TEST_P(GuardPages, BoundARecordThatIsDecodedInto) {
    const Bytes before(recordSize(GetParam()), '\xA5');
    const GuardedMemory memory(before.size(), GuardedMemory::Access::readWrite);
    forEachEncoding([&](const Subject&, const Bytes& whole, bool) {
        Bytes expected = before;
        const Outcome outcome = decode(expected.data(), whole.data(), whole.size());
        for (const bool atEnd : {true, false}) {
            char* const record = atEnd ? memory.placeAtEnd(before) : memory.placeAtBegin(before);
            ASSERT_EQ(outcome, decode(record, whole.data(), whole.size()));
            ASSERT_EQ(0, memcmp(record, expected.data(), expected.size()));
        }
    });
}

TEST_P(GuardPages, BoundEveryDump) {
    forEachEncoding([&](const Subject& subject, const Bytes&, bool varint) {
        if (!varint) {
            return;
        }
        Bytes dump(24000, '\xC7');
        size_t whole = 0;
        ASSERT_EQ(0, GetParam().library->visualizeInto(subject.record.data(), subject.selector,
                                                       dump.data(), dump.size(), &whole, 0, ' '));
        const GuardedMemory memory(whole + alignments, GuardedMemory::Access::readWrite);
        Random random(whole);
        for (const size_t size : sizesUpTo(whole + 2, 40, random)) {
            char* const to = memory.atEnd(size);
            size_t used = 0;
            const int result = GetParam().library->visualizeInto(
                subject.record.data(), subject.selector, to, size, &used, 0, ' ');
            ASSERT_EQ(size > whole ? 0 : -1, result) << size << " of " << whole;
            ASSERT_EQ(0, memcmp(to, dump.data(), used));
        }
    });
}

INSTANTIATE_TEST_SUITE_P(Of, GuardPages, testing::ValuesIn(typePairs()),
                         testing::PrintToStringParamName());

// --- Lengths that no encoder writes -------------------------------------------------------------

TEST(GuardPagesInFront, OfNoBytesOfFieldsAreNotRead) {
    const Bytes bytes = hex("10 05");
    const GuardedMemory memory(bytes.size(), GuardedMemory::Access::readOnly);
    for (const bool varint : {true, false}) {
        quorva_zrp::TZRPBase base = quorva_zrp::TZRPBase();
        base.presence = 1;
        Quorva::BrxReadBuf buf(memory.placeAtBegin(bytes), bytes.size());
        EXPECT_EQ(0, varint ? base.unpackTLVWithVarint(buf, 0) : base.unpackTLVNoVarint(buf, 0));
        EXPECT_EQ(0U, buf.getUsedSize());
        EXPECT_EQ(0U, base.presence);
    }
}

TEST(GuardPagesInFront, OfTheLargestLengthAreNotRead) {
    const Bytes bytes = hex("10 05");
    const GuardedMemory memory(bytes.size(), GuardedMemory::Access::readOnly);
    quorva_zrp::TZRPBase base = quorva_zrp::TZRPBase();
    Quorva::BrxReadBuf buf(memory.placeAtBegin(bytes), bytes.size());
    EXPECT_EQ(-2, base.unpackTLVWithVarint(buf, SIZE_MAX));  // nothing is left after a field
    EXPECT_EQ(2U, buf.getUsedSize());
    EXPECT_EQ(5, base.wMagic);
}

TEST(GuardPagesInFront, OfATotalBelowThatOfTheEnvelopeAreNotRead) {
    const GuardedMemory memory(16, GuardedMemory::Access::readOnly);
    for (const char* const magic : {"AA", "99"}) {
        for (const char* const total : {"00", "01", "02", "03", "04"}) {
            Bytes bytes = hex(std::string(magic) + "00 00 00" + total);
            for (; bytes.size() <= 16; bytes.push_back('\0')) {
                quorva_zrp::TZRPBase base = quorva_zrp::TZRPBase();
                size_t used = 0;
                EXPECT_EQ(-34, base.unpackTLV(memory.placeAtBegin(bytes), bytes.size(), &used));
                EXPECT_EQ(5U, used);
            }
        }
    }
}

// A union always has a field, whatever is declared.
TEST(GuardPagesBehind, AUnionWhoseTotalIsBelowThatOfTheEnvelopeAreNotRead) {
    const GuardedMemory memory(5, GuardedMemory::Access::readOnly);
    for (const char* const magic : {"AA", "99"}) {
        for (const char* const total : {"00", "01", "02", "03", "04"}) {
            const Bytes bytes = hex(std::string(magic) + "00 00 00" + total);
            quorva_zrp::TZRPKeyReq request = quorva_zrp::TZRPKeyReq();
            long long selector = 77;
            size_t used = 0;
            EXPECT_EQ(-2, request.unpackTLV(selector, memory.placeAtEnd(bytes), 5, &used));
            EXPECT_EQ(5U, used);
            EXPECT_EQ(77, selector);
        }
    }
}

// Only what is declared has to be there.
TEST(GuardPagesBehind, AMessageAreNotReadWhateverTheSizeOfTheInput) {
    const GuardedMemory memory(5, GuardedMemory::Access::readOnly);
    quorva_zrp::TZRPBase base = quorva_zrp::TZRPBase();
    size_t used = 0;
    EXPECT_EQ(0, base.unpackTLV(memory.placeAtEnd(hex("AA 00 00 00 05")), SIZE_MAX, &used));
    EXPECT_EQ(5U, used);
    EXPECT_EQ(-32, base.unpackTLV(memory.placeAtEnd(hex("00 AA 00 00 10")), SIZE_MAX, &used));
}

}  // namespace zrp_test

#endif
