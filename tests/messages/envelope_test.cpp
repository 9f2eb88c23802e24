// The envelope around an encoded message: magic byte, total length, and what becomes of them when
// the buffer or the input is not what it should be.
#include "tests/messages/make.h"

namespace zrp_test {
namespace {

using namespace quorva_zrp;

TEST(MessageEnvelope, CountsItselfInTheTotalLength) {
    const TZRPCStopBody notice = made<TZRPCStopBody>();
    EXPECT_EQ(encode(notice, varint), written(0, "AA 00 00 00 07 10 00"));
    EXPECT_EQ(encode(notice, fixed), written(0, "99 00 00 00 0A 13 00 00 00 00"));
}

TEST(MessageEnvelope, NamesTheFlavourInItsFirstByte) {
    TZRPCStopBody notice = made<TZRPCStopBody>();
    EXPECT_EQ(decode(notice, "AA 00 00 00 08 10 AC 02"), (Read{0, 8}));
    EXPECT_EQ(notice.dwReserved, 300u);
    EXPECT_EQ(decode(notice, "99 00 00 00 0A 10 00 00 01 2D"), (Read{0, 10}));
    EXPECT_EQ(notice.dwReserved, 301u);
}

TEST(MessageEnvelope, AcceptsTwoMagicBytesAndNoOther) {
    for (int magic = 0; magic < 256; ++magic) {
        const char first = static_cast<char>(magic);
        const char input[] = {first, 0, 0, 0, 5};
        TZRPCStopBody notice = made<TZRPCStopBody>();
        size_t used = notStored;
        const bool known = magic == 0xAA || magic == 0x99;
        EXPECT_EQ(notice.unpackTLV(input, sizeof(input), &used), known ? 0 : -32) << magic;
        EXPECT_EQ(used, known ? 5 : notStored) << magic;
    }
}

TEST(MessageEnvelope, ChecksNullThenSizeThenMagicThenLength) {
    TZRPCStopBody notice = made<TZRPCStopBody>();
    size_t used = notStored;
    for (const size_t size : {size_t{0}, size_t{4}, size_t{5}, size_t{100}}) {
        EXPECT_EQ(notice.unpackTLV(nullptr, size, &used), -19);
    }
    EXPECT_EQ(used, notStored);
    EXPECT_EQ(decode(notice, ""), (Read{-2, notStored}));
    EXPECT_EQ(decode(notice, "AB 00 00 00"), (Read{-2, notStored}));
    EXPECT_EQ(decode(notice, "AB 00 00 00 FF"), (Read{-32, notStored}));
    EXPECT_EQ(decode(notice, "AA 00 00 00 FF"), (Read{-2, notStored}));
    EXPECT_EQ(decode(notice, "AA 00 00 00 08 10 05"), (Read{-2, notStored}));
    EXPECT_EQ(decode(notice, "AA FF FF FF FF 10 05"), (Read{-2, notStored}));
    EXPECT_EQ(decode(notice, "99 80 00 00 0A 13 00 00 00 05"), (Read{-2, notStored}));
    EXPECT_EQ(notice.dwReserved, 0u);
}

TEST(MessageEnvelope, LeavesBytesBehindTheDeclaredLengthAlone) {
    TZRPCStopBody notice = made<TZRPCStopBody>();
    EXPECT_EQ(decode(notice, "AA 00 00 00 07 10 05 FF FF FF"), (Read{0, 7}));
    EXPECT_EQ(notice.dwReserved, 5u);
    EXPECT_EQ(decode(notice, "99 00 00 00 0A 13 00 00 00 06 06 06"), (Read{0, 10}));
    EXPECT_EQ(notice.dwReserved, 6u);
}

TEST(MessageEnvelope, ReportsAllThatAFieldConsumedPastTheDeclaredLength) {
    TZRPCStopBody notice = made<TZRPCStopBody>();
    EXPECT_EQ(decode(notice, "AA 00 00 00 07 10 AC 02 00 00"), (Read{-34, 8}));
    EXPECT_EQ(notice.dwReserved, 300u);
    EXPECT_TRUE(notice.has_Reserved());
    EXPECT_EQ(decode(notice, "99 00 00 00 06 13 00 00 00 07"), (Read{-34, 10}));
    EXPECT_EQ(notice.dwReserved, 7u);
}

TEST(MessageEnvelope, StoresTheUsedSizeWhenAFieldFails) {
    TZRPCStopBody notice = made<TZRPCStopBody>();
    EXPECT_EQ(decode(notice, "AA 00 00 00 06 90"), (Read{-2, 5}));
    EXPECT_EQ(decode(notice, "AA 00 00 00 07 10 AC"), (Read{-2, 6}));
    EXPECT_EQ(decode(notice, "99 00 00 00 08 13 00 00"), (Read{-2, 6}));
    EXPECT_EQ(decode(notice, "AA 00 00 00 09 10 01 26 00"), (Read{-35, 8}));
}

TEST(MessageEnvelope, OfADeclaredLengthBelowFiveHoldsNoField) {
    for (const std::string magic : {"AA", "99"}) {
        for (const std::string declared : {"00", "01", "02", "03", "04"}) {
            TZRPCStopBody notice = made<TZRPCStopBody>();
            notice.presence = 1;
            EXPECT_EQ(decode(notice, magic + "00 00 00" + declared), (Read{-34, 5}));
            EXPECT_EQ(notice.presence, 0u);
            notice.presence = 1;
            EXPECT_EQ(decode(notice, magic + "00 00 00" + declared + "10 00 00 00 05"),
                      (Read{-34, 5}));
            EXPECT_EQ(notice.presence, 0u);
            EXPECT_EQ(notice.dwReserved, 0u);
        }
    }
}

TEST(MessageEnvelope, DeliberatelyIsIncompleteInABufferOfOneToFourBytes) {
    // The length finds no place, and the fields start right behind the magic byte.
    const TZRPCStopBody notice = made<TZRPCStopBody>();
    EXPECT_EQ(encode(notice, varint, 1), written(-1, "AA"));
    EXPECT_EQ(encode(notice, varint, 2), written(-1, "AA 10"));
    EXPECT_EQ(encode(notice, varint, 3), written(0, "AA 10 00"));
    EXPECT_EQ(encode(notice, varint, 4), written(0, "AA 10 00"));
    EXPECT_EQ(encode(notice, varint, 5), written(-1, "AA 00 00 00 05"));
    EXPECT_EQ(encode(notice, varint, 6), written(-1, "AA 00 00 00 06 10"));
    EXPECT_EQ(encode(notice, varint, 7), written(0, "AA 00 00 00 07 10 00"));

    EXPECT_EQ(encode(notice, fixed, 1), written(-1, "99"));
    EXPECT_EQ(encode(notice, fixed, 2), written(-1, "99 13"));
    EXPECT_EQ(encode(notice, fixed, 3), written(-1, "99 13"));
    EXPECT_EQ(encode(notice, fixed, 4), written(-1, "99 13"));
    EXPECT_EQ(encode(notice, fixed, 5), written(-1, "99 00 00 00 05"));
    EXPECT_EQ(encode(notice, fixed, 6), written(-1, "99 00 00 00 06 13"));
    EXPECT_EQ(encode(notice, fixed, 9), written(-1, "99 00 00 00 06 13"));
    EXPECT_EQ(encode(notice, fixed, 10), written(0, "99 00 00 00 0A 13 00 00 00 00"));
}

TEST(MessageEnvelope, DeliberatelyIsIncompleteAroundAUnionInOneToFourBytes) {
    const TVESKIDValue value = made<TVESKIDValue>(0);
    EXPECT_EQ(encode(0, value, varint, 1), written(-1, "AA"));
    EXPECT_EQ(encode(0, value, varint, 2), written(-1, "AA 01"));
    EXPECT_EQ(encode(0, value, varint, 3), written(0, "AA 01 00"));
    EXPECT_EQ(encode(0, value, fixed, 4), written(0, "99 01 00"));
    EXPECT_EQ(encode(4, value, fixed, 4), written(-33, "99"));
    EXPECT_EQ(encode(4, value, varint, 1), written(-33, "AA"));
}

TEST(MessageEnvelope, DeclaresWhatWasWrittenBeforeAFailure) {
    TZRPWaitBody notice = made<TZRPWaitBody>();
    notice.dwPosition = 1;
    notice.dwTotal = 2;
    notice.dwRoughTime = 300;
    EXPECT_EQ(encode(notice, varint, 9), written(-1, "AA 00 00 00 09 10 01 20 02"));
    EXPECT_EQ(encode(notice, varint, 10), written(-1, "AA 00 00 00 0A 10 01 20 02 30"));
    // Deliberate: a varint that does not fit leaves its first groups in the free bytes.
    EXPECT_EQ(encode(notice, varint, 11), (Written{-1, 10, "AA 00 00 00 0A 10 01 20 02 30", "AC"}));
    EXPECT_EQ(encode(notice, varint, 12), written(0, "AA 00 00 00 0C 10 01 20 02 30 AC 02"));
    EXPECT_EQ(encode(notice, fixed, 13), written(-1, "99 00 00 00 0B 13 00 00 00 01 23"));
}

TEST(MessageEnvelope, IsLeftOutByTheFieldEncodersAndDecoders) {
    // Both continue at the position of the buffer they are given.
    TZRPCStopBody notice = made<TZRPCStopBody>();
    notice.dwReserved = 5;
    char bytes[16] = {};
    Quorva::BrxWriteBuf out(bytes, sizeof(bytes));
    EXPECT_EQ(out.writeUInt8(0x77), 0);
    EXPECT_EQ(notice.packTLVWithVarint(out), 0);
    EXPECT_EQ(notice.packTLVNoVarint(out), 0);
    EXPECT_EQ(toHex(bytes, out.getUsedSize()), "77 10 05 13 00 00 00 05");

    TZRPCStopBody decoded = made<TZRPCStopBody>();
    Quorva::BrxReadBuf in(bytes, sizeof(bytes));
    EXPECT_EQ(in.skipForward(1), 0);
    EXPECT_EQ(decoded.unpackTLVWithVarint(in, 2), 0);
    EXPECT_EQ(in.getUsedSize(), 3u);
    EXPECT_EQ(decoded.dwReserved, 5u);
    decoded.dwReserved = 0;
    EXPECT_EQ(decoded.unpackTLVNoVarint(in, 5), 0);
    EXPECT_EQ(in.getUsedSize(), 8u);
    EXPECT_EQ(decoded.dwReserved, 5u);
}

TEST(MessageEnvelope, EndsFieldsWhereThePositionPlusTheLengthWrapsTo) {
    if (sizeof(size_t) < sizeof(uint64_t)) {
        GTEST_SKIP() << "ends have 64 bits, which a 32-bit length does not make wrap";
    }
    const std::string input = "77 77 77 77 77 10 05";
    const Bytes bytes = hex(input);
    TZRPCStopBody notice = made<TZRPCStopBody>();
    // An end before the position: no field, and too much consumed.
    Quorva::BrxReadBuf behind(bytes.data(), bytes.size());
    EXPECT_EQ(behind.skipForward(5), 0);
    notice.presence = 1;
    EXPECT_EQ(notice.unpackTLVWithVarint(behind, SIZE_MAX), -34);
    EXPECT_EQ(behind.getUsedSize(), 5u);
    EXPECT_EQ(notice.presence, 0u);
    // An end far behind the input: the fields are read, then nothing is left to read.
    Quorva::BrxReadBuf far(bytes.data() + 5, 2);
    EXPECT_EQ(notice.unpackTLVWithVarint(far, SIZE_MAX), -2);
    EXPECT_EQ(far.getUsedSize(), 2u);
    EXPECT_EQ(notice.dwReserved, 5u);
}

}  // namespace
}  // namespace zrp_test
