// Writing the envelope: magic byte, total length, and what is left of them when room is short.
#include <gtest/gtest.h>
#include <string.h>

#include <string>

#include "protocol/quorva_zrp.h"
#include "tests/brx/guarded_output.h"

namespace zrp_test {

using quorva_zrp::TVESKIDValue;
using quorva_zrp::TZRPBase;
using quorva_zrp::TZRPCStopBody;

namespace {

constexpr size_t unset = 12345;

TZRPCStopBody stopOf(uint32_t reserved) {
    TZRPCStopBody stop{};
    stop.construct();
    stop.dwReserved = reserved;
    return stop;
}

TVESKIDValue identifierOf(uint32_t value) {
    TVESKIDValue identifier{};
    identifier.dwUINT32 = value;
    return identifier;
}

/// Expects `pack(begin, size, used)` to give `result` and to write `bytes` and nothing behind them:
/// into a room of their size, into one more, and into one that any encoding of the type would fit.
template <class Pack>
void expectPacked(Pack pack, int result, const std::string& bytes) {
    constexpr size_t roomForAny = 300;
    const size_t width = hex(bytes).size();
    for (const size_t size : {width, width + 1, roomForAny}) {
        SCOPED_TRACE(bytes + " in " + std::to_string(size));
        GuardedOutput out(size);
        size_t used = unset;
        EXPECT_EQ(pack(out.begin(), size, &used), result);
        EXPECT_EQ(used, width);
        std::string expected = bytes;
        for (size_t i = width; i < size; ++i) {
            expected += " CC";
        }
        EXPECT_EQ(out.bytes(), expected);
        EXPECT_EQ(pack(out.begin(), size, nullptr), result);
        EXPECT_EQ(out.bytes(), expected);
    }
}

}  // namespace

// --- Arguments ----------------------------------------------------------------------------------

TEST(PackEnvelope, RefusesANullBufferWithoutTouchingUsedSize) {
    for (const bool varint : {true, false}) {
        SCOPED_TRACE(varint);
        size_t used = unset;
        EXPECT_EQ(TZRPBase{}.packTLV(nullptr, 100, &used, varint), -19);
        EXPECT_EQ(TZRPBase{}.packTLV(nullptr, 0, &used, varint), -19);
        EXPECT_EQ(TZRPCStopBody{}.packTLV(nullptr, 100, &used, varint), -19);
        EXPECT_EQ(TVESKIDValue{}.packTLV(0, nullptr, 100, &used, varint), -19);
        EXPECT_EQ(used, unset);
        EXPECT_EQ(TZRPCStopBody{}.packTLV(nullptr, 100, nullptr, varint), -19);
    }
}

TEST(PackEnvelope, RefusesASizeOfZeroWithoutTouchingAnything) {
    for (const bool varint : {true, false}) {
        SCOPED_TRACE(varint);
        GuardedOutput out(8);
        size_t used = unset;
        EXPECT_EQ(TZRPBase{}.packTLV(out.begin(), 0, &used, varint), -19);
        EXPECT_EQ(TZRPCStopBody{}.packTLV(out.begin(), 0, &used, varint), -19);
        EXPECT_EQ(TVESKIDValue{}.packTLV(0, out.begin(), 0, &used, varint), -19);
        EXPECT_EQ(TVESKIDValue{}.packTLV(4, out.begin(), 0, &used, varint), -19);
        EXPECT_EQ(used, unset);
        EXPECT_TRUE(out.untouched());
    }
}

// --- Whole encodings, with and without a place for the used size --------------------------------

TEST(PackEnvelope, NamesTheFlavourAndCountsItself) {
    const TZRPCStopBody stop = stopOf(5);
    expectPacked(
        [&](char* to, size_t size, size_t* used) { return stop.packTLV(to, size, used, true); }, 0,
        "AA 00 00 00 07 10 05");
    expectPacked(
        [&](char* to, size_t size, size_t* used) { return stop.packTLV(to, size, used, false); }, 0,
        "99 00 00 00 0A 13 00 00 00 05");
}

TEST(PackEnvelope, SurroundsTheNineFieldsOfABaseHeader) {
    TZRPBase base{};
    base.construct();
    base.wCommand = quorva_zrp::ZRP_CMD_SYN;
    expectPacked(
        [&](char* to, size_t size, size_t* used) { return base.packTLV(to, size, used, true); }, 0,
        "AA 00 00 00 1A 10 00 20 00 30 00 40 81 20 50 00 61 00 70 00 80 01 00 90 01 00");
    expectPacked(
        [&](char* to, size_t size, size_t* used) { return base.packTLV(to, size, used, false); }, 0,
        "99 00 00 00 29 12 00 00 22 00 00 32 00 00 42 10 01 53 00 00 00 00 61 00 "
        "73 00 00 00 00 83 01 00 00 00 00 93 01 00 00 00 00");
}

TEST(PackEnvelope, SurroundsTheOneFieldOfAUnion) {
    static const struct {
        long long selector;
        bool varint;
        const char* bytes;
    } rows[] = {
        {0, true, "AA 00 00 00 07 01 2C"},
        {0, false, "99 00 00 00 07 01 2C"},
        {1, true, "AA 00 00 00 08 10 AC 02"},
        {1, false, "99 00 00 00 0A 13 00 00 01 2C"},
    };
    for (const auto& row : rows) {
        TVESKIDValue identifier{};
        if (row.selector == 0) {
            identifier.chNull = 0x2C;
        } else {
            identifier.dwUINT32 = 300;
        }
        expectPacked(
            [&](char* to, size_t size, size_t* used) {
                return identifier.packTLV(row.selector, to, size, used, row.varint);
            },
            0, row.bytes);
    }
}

// --- Failures: header and used size tell how far it came ----------------------------------------

TEST(PackEnvelope, IsFiveBytesAroundNoField) {
    const TVESKIDValue identifier = identifierOf(1);
    for (const bool varint : {true, false}) {
        for (const long long selector : {4LL, -1LL, 257LL}) {
            expectPacked(
                [&](char* to, size_t size, size_t* used) {
                    return identifier.packTLV(selector, to, size, used, varint);
                },
                -33, varint ? "AA 00 00 00 05" : "99 00 00 00 05");
        }
    }
}

TEST(PackEnvelope, CountsTheBytesBeforeAFailureThatRoomCannotHelp) {
    TVESKIDValue identifier;
    memset(&identifier, 'x', sizeof(identifier));
    for (const size_t size : {size_t{10}, size_t{11}, size_t{300}}) {
        SCOPED_TRACE(size);
        GuardedOutput out(size);
        size_t used = unset;
        EXPECT_EQ(identifier.packTLV(3, out.begin(), size, &used, true), -3);
        // The tag of the text and the hole for its length, which is never filled.
        EXPECT_EQ(used, 10U);
        EXPECT_EQ(out.bytes().substr(0, 29), "AA 00 00 00 0A 35 CC CC CC CC");
    }
}

/// An encoding of the stop notice with dwReserved 300 that finds too little room behind the header.
struct ShortRoom {
    bool varint;
    size_t size;
    size_t used;
    const char* bytes;
};

TEST(PackEnvelope, IsCompleteAroundAnEncodingThatFailed) {
    static const ShortRoom rows[] = {
        {true, 5, 5, "AA 00 00 00 05"},       {true, 6, 6, "AA 00 00 00 06 10"},
        {true, 7, 6, "AA 00 00 00 06 10 AC"}, {false, 5, 5, "99 00 00 00 05"},
        {false, 6, 6, "99 00 00 00 06 13"},   {false, 9, 6, "99 00 00 00 06 13 CC CC CC"},
    };
    for (const ShortRoom& row : rows) {
        SCOPED_TRACE(row.bytes);
        GuardedOutput out(row.size);
        size_t used = unset;
        EXPECT_EQ(stopOf(300).packTLV(out.begin(), row.size, &used, row.varint), -1);
        EXPECT_EQ(out.bytes(), row.bytes);
        EXPECT_EQ(used, row.used);
    }
}

TEST(PackEnvelope, SurroundsTheLongestTextInItsExactSizeAndInNoSmallerOne) {
    TVESKIDValue identifier{};
    memset(identifier.szSTRING, 'x', 255);
    for (size_t size = 10; size < 265; ++size) {
        SCOPED_TRACE(size);
        GuardedOutput out(size);
        size_t used = unset;
        EXPECT_EQ(identifier.packTLV(3, out.begin(), size, &used, true), -1);
        EXPECT_EQ(used, 10U);
        EXPECT_EQ(out.bytes().substr(0, 17), "AA 00 00 00 0A 35");
    }
    GuardedOutput out(265);
    size_t used = unset;
    EXPECT_EQ(identifier.packTLV(3, out.begin(), 265, &used, true), 0);
    EXPECT_EQ(used, 265U);
    EXPECT_EQ(out.bytes().substr(0, 35), "AA 00 00 01 09 35 00 00 00 FF 78 78");
}

// --- Rooms of 1 to 4 bytes ----------------------------------------------------------------------
// Deliberate: the length neither finds its place nor is missed; the fields follow the magic byte.

struct TinyRoom {
    bool varint;
    size_t size;
    int result;
    size_t used;
    const char* bytes;
};

TEST(PackEnvelope, IsAMagicByteInARoomTooSmallForALength) {
    static const TinyRoom rows[] = {
        {true, 1, -1, 1, "AA"},        {true, 2, -1, 2, "AA 10"},
        {true, 3, 0, 3, "AA 10 00"},   {true, 4, 0, 3, "AA 10 00 CC"},
        {false, 1, -1, 1, "99"},       {false, 2, -1, 2, "99 13"},
        {false, 3, -1, 2, "99 13 CC"}, {false, 4, -1, 2, "99 13 CC CC"},
    };
    for (const TinyRoom& row : rows) {
        SCOPED_TRACE(row.bytes);
        GuardedOutput out(row.size);
        size_t used = unset;
        EXPECT_EQ(stopOf(0).packTLV(out.begin(), row.size, &used, row.varint), row.result);
        EXPECT_EQ(out.bytes(), row.bytes);
        EXPECT_EQ(used, row.used);
    }
}

TEST(PackEnvelope, LeavesThePartOfAVarintThatFitsATinyRoom) {
    static const TinyRoom rows[] = {
        {true, 2, -1, 2, "AA 10"},
        {true, 3, -1, 2, "AA 10 AC"},
        {true, 4, 0, 4, "AA 10 AC 02"},
    };
    for (const TinyRoom& row : rows) {
        SCOPED_TRACE(row.bytes);
        GuardedOutput out(row.size);
        size_t used = unset;
        EXPECT_EQ(stopOf(300).packTLV(out.begin(), row.size, &used, row.varint), row.result);
        EXPECT_EQ(out.bytes(), row.bytes);
        EXPECT_EQ(used, row.used);
    }
}

TEST(PackEnvelope, LeavesTheFirstFieldsOfABaseHeaderInATinyRoom) {
    static const TinyRoom rows[] = {
        {true, 1, -1, 1, "AA"},        {true, 2, -1, 2, "AA 10"},
        {true, 3, -1, 3, "AA 10 00"},  {true, 4, -1, 4, "AA 10 00 20"},
        {false, 3, -1, 2, "99 12 CC"}, {false, 4, -1, 4, "99 12 00 00"},
    };
    for (const TinyRoom& row : rows) {
        SCOPED_TRACE(row.bytes);
        GuardedOutput out(row.size);
        size_t used = unset;
        EXPECT_EQ(TZRPBase{}.packTLV(out.begin(), row.size, &used, row.varint), row.result);
        EXPECT_EQ(out.bytes(), row.bytes);
        EXPECT_EQ(used, row.used);
    }
}

TEST(PackEnvelope, LeavesAUnionsFieldInATinyRoom) {
    static const TinyRoom rows[] = {
        {true, 1, -1, 1, "AA"},         {true, 2, -1, 2, "AA 01"},  {true, 3, 0, 3, "AA 01 00"},
        {true, 4, 0, 3, "AA 01 00 CC"}, {false, 2, -1, 2, "99 01"}, {false, 3, 0, 3, "99 01 00"},
    };
    for (const TinyRoom& row : rows) {
        SCOPED_TRACE(row.bytes);
        GuardedOutput out(row.size);
        size_t used = unset;
        EXPECT_EQ(TVESKIDValue{}.packTLV(0, out.begin(), row.size, &used, row.varint), row.result);
        EXPECT_EQ(out.bytes(), row.bytes);
        EXPECT_EQ(used, row.used);
    }
}

TEST(PackEnvelope, IsAloneInATinyRoomForASelectorWithoutAMember) {
    GuardedOutput out(3);
    size_t used = unset;
    EXPECT_EQ(TVESKIDValue{}.packTLV(-1, out.begin(), 3, &used, true), -33);
    EXPECT_EQ(out.bytes(), "AA CC CC");
    EXPECT_EQ(used, 1U);
}

}  // namespace zrp_test
