// The frame base header and the command codes.
#include "tests/messages/make.h"

namespace zrp_test {
namespace {

using namespace quorva_zrp;

TEST(BaseHeader, EncodesAllNineFieldsEvenWhenTheyAreZero) {
    const TZRPBase base = made<TZRPBase>();
    EXPECT_EQ(encode(base, varint),
              written(0,
                      "AA 00 00 00 19 10 00 20 00 30 00 40 00 50 00 61 00 70 00 80 01 00"
                      " 90 01 00"));
    EXPECT_EQ(encode(base, fixed),
              written(0,
                      "99 00 00 00 29 12 00 00 22 00 00 32 00 00 42 00 00 53 00 00 00 00 61 00"
                      " 73 00 00 00 00 83 01 00 00 00 00 93 01 00 00 00 00"));
}

const std::string synVarint =
    "AA 00 00 00 1A 10 00 20 00 30 00 40 81 20 50 00 61 00 70 00 80 01 00 90 01 00";
const std::string synFixed =
    "99 00 00 00 29 12 00 00 22 00 00 32 00 00 42 10 01 53 00 00 00 00 61 00 73 00 00 00 00"
    " 83 01 00 00 00 00 93 01 00 00 00 00";

TEST(BaseHeader, EncodesACommand) {
    TZRPBase base = made<TZRPBase>();
    base.wCommand = ZRP_CMD_SYN;
    EXPECT_EQ(encode(base, varint), written(0, synVarint));
    EXPECT_EQ(encode(base, fixed), written(0, synFixed));
}

TEST(BaseHeader, DecodesACommandFromEitherFlavour) {
    for (const std::string& encoding : {synVarint, synFixed}) {
        TZRPBase base = dirty<TZRPBase>();
        EXPECT_EQ(decode(base, encoding), (Read{0, hex(encoding).size()}));
        EXPECT_EQ(base.wMagic, 0);
        EXPECT_EQ(base.wHeadVersion, 0);
        EXPECT_EQ(base.wBodyVersion, 0);
        EXPECT_EQ(base.wCommand, 4097);
        EXPECT_EQ(base.dwTimeStamp, 0u);
        EXPECT_EQ(base.bEncrypted, 0);
        EXPECT_EQ(base.dwSequence, 0u);
        EXPECT_EQ(base.dwHeadLen, 0u);
        EXPECT_EQ(base.dwBodyLen, 0u);
        EXPECT_EQ(base.presence, 0x1FFu);
    }
}

TEST(BaseHeader, EncodesTheLargestValuesWithinItsLargestSize) {
    TZRPBase base = made<TZRPBase>();
    base.wMagic = base.wHeadVersion = base.wBodyVersion = base.wCommand = 65535;
    base.dwTimeStamp = base.dwSequence = base.dwHeadLen = base.dwBodyLen = 0xFFFFFFFF;
    base.bEncrypted = 255;
    EXPECT_EQ(encodeFields(base, varint),
              written(0,
                      "10 FF FF 03 20 FF FF 03 30 FF FF 03 40 FF FF 03 50 FF FF FF FF 0F 61 FF"
                      " 70 FF FF FF FF 0F 80 01 FF FF FF FF 0F 90 01 FF FF FF FF 0F"));
    EXPECT_EQ(encodeFields(base, fixed),
              written(0,
                      "12 FF FF 22 FF FF 32 FF FF 42 FF FF 53 FF FF FF FF 61 FF"
                      " 73 FF FF FF FF 83 01 FF FF FF FF 93 01 FF FF FF FF"));
    EXPECT_LE(encode(base, varint).used, 83u);
    EXPECT_LE(encode(base, fixed).used, 75u);
}

TEST(BaseHeader, DecodesAFieldAloneAndLeavesTheOthers) {
    TZRPBase base = dirty<TZRPBase>();
    EXPECT_EQ(decode(base, "AA 00 00 00 08 40 81 20"), (Read{0, 8}));
    EXPECT_EQ(base.wCommand, 4097);
    EXPECT_TRUE(base.has_Command());
    EXPECT_EQ(base.presence, 0x8u);
    EXPECT_EQ(base.wMagic, 0xA5A5);
    EXPECT_EQ(base.wHeadVersion, 0xA5A5);
    EXPECT_EQ(base.wBodyVersion, 0xA5A5);
    EXPECT_EQ(base.dwTimeStamp, 0xA5A5A5A5u);
    EXPECT_EQ(base.bEncrypted, 0xA5);
    EXPECT_EQ(base.dwSequence, 0xA5A5A5A5u);
    EXPECT_EQ(base.dwHeadLen, 0xA5A5A5A5u);
    EXPECT_EQ(base.dwBodyLen, 0xA5A5A5A5u);
}

TEST(BaseHeader, StepsOverTheNumbersAroundItsOwn) {
    // Field numbers 0, 10 and 11.
    for (const bool flavour : {varint, fixed}) {
        TZRPBase base = made<TZRPBase>();
        EXPECT_EQ(decodeFields(base, "00 05 01 05 A0 01 05 A1 01 05 B5 01 00 00 00 01 05", flavour),
                  (Read{0, 17}));
        EXPECT_EQ(base.presence, 0u);
        EXPECT_EQ(decodeFields(base, "06", flavour), (Read{-35, 1}));
        EXPECT_EQ(decodeFields(base, "07 00", flavour), (Read{-35, 1}));
        EXPECT_EQ(decodeFields(base, "A6 01", flavour), (Read{-35, 2}));
        EXPECT_EQ(decodeFields(base, "A7 01 00", flavour), (Read{-35, 2}));
    }
}

TEST(BaseHeader, DeliberatelyReadsItsMagicWhateverTheTagSays) {
    TZRPBase base = made<TZRPBase>();
    EXPECT_EQ(decode(base, "AA 00 00 00 08 12 B4 24"), (Read{0, 8}));
    EXPECT_EQ(base.wMagic, 0x1234);
    EXPECT_EQ(decode(base, "99 00 00 00 08 10 12 35"), (Read{0, 8}));
    EXPECT_EQ(base.wMagic, 0x1235);
}

TEST(BaseHeader, KeepsItsValuesWhereTheEnvelopeIsEmpty) {
    TZRPBase base = made<TZRPBase>();
    base.wMagic = 7;
    base.presence = 0x1FF;
    EXPECT_EQ(decode(base, "AA 00 00 00 05"), (Read{0, 5}));
    EXPECT_EQ(base.wMagic, 7);
    EXPECT_EQ(base.presence, 0u);
}

TEST(BaseHeader, FitsItsFieldsIntoADeclaredLengthShorterThanTheInput) {
    TZRPBase base = made<TZRPBase>();
    EXPECT_EQ(decode(base, "AA 00 00 00 07 10 05 20 06 30"), (Read{0, 7}));
    EXPECT_EQ(base.wMagic, 5);
    EXPECT_EQ(base.wHeadVersion, 0);
    EXPECT_EQ(decode(base, "AA 00 00 00 06 10 05 20 06 30"), (Read{-34, 7}));
}

TEST(BaseHeader, WritesAnEmptyListOfLostFields) {
    const TZRPBase base = made<TZRPBase>();
    char names[10];
    memset(names, 'x', sizeof(names));
    EXPECT_EQ(base.getLastLostRequiredFields(names, 1), names);
    EXPECT_EQ(toHex(names, 2), "00 78");
    EXPECT_EQ(base.getLastLostRequiredFields(nullptr, 10), nullptr);
    EXPECT_EQ(base.getLastLostRequiredFields(names, 0), nullptr);
}

TEST(CommandCodes, HaveTheirValues) {
    EXPECT_EQ(ZRP_CMD_NULL, 0);
    EXPECT_EQ(ZRP_CMD_SYN, 4097);
    EXPECT_EQ(ZRP_CMD_ACK, 4098);
    EXPECT_EQ(ZRP_CMD_AUTH_REQ, 8193);
    EXPECT_EQ(ZRP_CMD_AUTH_RSP, 8194);
    EXPECT_EQ(ZRP_CMD_WAIT, 12290);
    EXPECT_EQ(ZRP_CMD_DATA, 16403);
    EXPECT_EQ(ZRP_CMD_CSTOP, 20481);
    EXPECT_EQ(ZRP_CMD_SSTOP, 20482);
    EXPECT_EQ(ZRP_CMD_BINGO, 24578);
    EXPECT_EQ(ZRP_CMD_AUTH_REFRESH_REQ, 28673);
    EXPECT_EQ(ZRP_CMD_AUTH_REFRESH_NOTIFY, 28674);
    EXPECT_EQ(ZRP_CMD_ROUTE_CHANGE, 32770);
}

TEST(ResultCodes, HaveTheirValues) {
    EXPECT_EQ(Quorva::BRX_ERR_NO_ROOM, -1);
    EXPECT_EQ(Quorva::BRX_ERR_NO_DATA, -2);
    EXPECT_EQ(Quorva::BRX_ERR_TEXT_TOO_LONG, -3);
    EXPECT_EQ(Quorva::BRX_ERR_REFER_TOO_BIG, -7);
    EXPECT_EQ(Quorva::BRX_ERR_NULL_BYTES, -8);
    EXPECT_EQ(Quorva::BRX_ERR_NULL_ARG, -19);
    EXPECT_EQ(Quorva::BRX_ERR_BAD_MAGIC, -32);
    EXPECT_EQ(Quorva::BRX_ERR_BAD_SELECTOR, -33);
    EXPECT_EQ(Quorva::BRX_ERR_LENGTH_MISMATCH, -34);
    EXPECT_EQ(Quorva::BRX_ERR_BAD_TYPE_ID, -35);
    EXPECT_EQ(Quorva::BRX_ERR_MISSING_REQUIRED, -36);
    EXPECT_EQ(Quorva::BRX_ERR_ZERO_LENGTH, -37);
}

}  // namespace
}  // namespace zrp_test
