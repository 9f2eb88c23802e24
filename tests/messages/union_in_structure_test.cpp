// Unions as fields: the structure's selector field chooses the member, and decoding writes the
// number that was found back into it.
#include "tests/messages/make.h"

namespace zrp_test {
namespace {

using namespace quorva_zrp;

TEST(UnionField, TravelsAsALengthAndOneField) {
    TVESKAccount account = made<TVESKAccount>();
    EXPECT_EQ(encode(account, varint),
              written(0, "AA 00 00 00 12 10 00 21 00 35 00 00 00 02 01 00 40 00"));
    account.bFormat = 1;
    account.stValue.dwUINT32 = 300;
    EXPECT_EQ(encodeFields(account, varint),
              written(0, "10 00 21 01 35 00 00 00 03 10 AC 02 40 00"));
    EXPECT_EQ(encodeFields(account, fixed), written(0,
                                                    "12 00 00 21 01 35 00 00 00 05 13 00 00 01 2C"
                                                    " 44 00 00 00 00 00 00 00 00"));
}

TEST(UnionField, DeliberatelyOverridesTheSelectorField) {
    TVESKAccount account = made<TVESKAccount>();
    EXPECT_EQ(decodeFields(account, "21 01 35 00 00 00 07 35 00 00 00 02 61 62", varint),
              (Read{0, 14}));
    EXPECT_EQ(account.bFormat, 3);
    EXPECT_STREQ(account.stValue.szSTRING, "ab");
    EXPECT_EQ(decodeFields(account, "21 01 35 00 00 00 02 20 07", varint), (Read{0, 9}));
    EXPECT_EQ(account.bFormat, 2);
    EXPECT_EQ(account.stValue.ullUINT64, 7u);
}

TEST(UnionField, DeliberatelyMayDeclareMoreThanTheStructureHolds) {
    // 16 bytes for a member of two; the structure ends before 40 07, field 4, all the same.
    TVESKAccount account = dirty<TVESKAccount>();
    const Bytes bytes = hex("35 00 00 00 10 01 00 10 05 40 07");
    Quorva::BrxReadBuf buf(bytes.data(), bytes.size());
    EXPECT_EQ(account.unpackTLVWithVarint(buf, 9), 0);
    EXPECT_EQ(buf.getUsedSize(), 9u);
    EXPECT_EQ(account.presence, 0x5u);
    EXPECT_EQ(account.ullUid, 0xA5A5A5A5A5A5A5A5u);
}

TEST(UnionField, LetsASelectorFieldBehindItWin) {
    TVESKAccount account = made<TVESKAccount>();
    EXPECT_EQ(decodeFields(account, "35 00 00 00 02 20 07 21 01", varint), (Read{0, 9}));
    EXPECT_EQ(account.bFormat, 1);
    EXPECT_EQ(account.presence, 0x6u);
}

TEST(UnionField, SetsNoPresenceBitForTheSelectorField) {
    TVESKAccount account = made<TVESKAccount>();
    EXPECT_EQ(decodeFields(account, "35 00 00 00 02 10 07", varint), (Read{0, 7}));
    EXPECT_EQ(account.bFormat, 1);
    EXPECT_FALSE(account.has_Format());
    EXPECT_TRUE(account.has_Value());
}

TEST(UnionField, DeliberatelyCutsTheSelectorToItsField) {
    struct Case {
        const char* field;
        int format;
    };
    // Unknown numbers 9, 256, 259 and 4097.
    for (const Case& c :
         {Case{"35 00 00 00 03 90 01 05", 9}, Case{"35 00 00 00 03 80 20 05", 0},
          Case{"35 00 00 00 03 B0 20 05", 3}, Case{"35 00 00 00 04 91 80 04 05", 1}}) {
        TVESKAccount account = made<TVESKAccount>();
        account.bFormat = 2;
        EXPECT_EQ(decodeFields(account, c.field, varint), (Read{0, hex(c.field).size()}));
        EXPECT_EQ(account.bFormat, c.format) << c.field;
    }
}

TEST(UnionField, RefusesToEncodeTheUnknownNumberItFound) {
    TVESKAccount account = made<TVESKAccount>();
    EXPECT_EQ(decodeFields(account, "35 00 00 00 03 91 01 05", varint), (Read{0, 8}));
    EXPECT_EQ(account.bFormat, 9);
    EXPECT_EQ(encodeFields(account, varint), written(-33, "10 00 21 09 35 A5 A5 A5 A5"));
    EXPECT_EQ(encodeFields(account, fixed), written(-33, "12 00 00 21 09 35 A5 A5 A5 A5"));
}

TEST(UnionField, CutsTheSelectorOfAFrameHeadTo16Bits) {
    TZRPHead head = made<TZRPHead>();
    // Field number 65536 + 8193, an unknown byte field: its tag is 73729 * 16 + 1.
    EXPECT_EQ(decodeFields(head, "25 00 00 00 04 91 80 48 05", varint), (Read{0, 9}));
    EXPECT_EQ(head.stBase.wCommand, 8193);
}

TEST(UnionField, LeavesTheSelectorFieldAloneWhenTheUnionFails) {
    struct Case {
        const char* field;
        Read expected;
    };
    for (const Case& c :
         {Case{"35 00 00 00 01 10 07", {-34, 7}}, Case{"35 00 00 00 02 16", {-2, 6}},
          Case{"35 00 00 00 02 96 01", {-35, 7}}, Case{"35 00 00 00 05 35 00 00 01 00", {-3, 10}},
          Case{"35 00 00", {-2, 1}}}) {
        TVESKAccount account = made<TVESKAccount>();
        account.bFormat = 3;
        EXPECT_EQ(decodeFields(account, c.field, varint), c.expected) << c.field;
        EXPECT_EQ(account.bFormat, 3);
        EXPECT_EQ(account.presence, 0x4u) << "the bit is set before the value is read";
    }
}

TEST(UnionField, DeliberatelyReadsAFieldBehindALengthOfZero) {
    TVESKAccount account = made<TVESKAccount>();
    account.bFormat = 3;
    EXPECT_EQ(decodeFields(account, "35 00 00 00 00", varint), (Read{-2, 5}));
    EXPECT_EQ(decodeFields(account, "35 00 00 00 00 40 05", varint), (Read{-34, 7}));
    EXPECT_EQ(account.ullUid, 0u) << "the field behind was taken for the union's";
    EXPECT_EQ(decodeFields(account, "35 00 00 00 00 10 05", varint), (Read{-34, 7}));
    EXPECT_EQ(account.stValue.dwUINT32, 5u);
    EXPECT_EQ(decodeFields(account, "35 00 00 00 00 46", varint), (Read{-35, 6}));
    EXPECT_EQ(account.bFormat, 3);
}

TEST(UnionField, DeliberatelyLeavesASecondMemberToTheStructure) {
    // The union holds members 1 and 2; the second is read as field 2 of the account.
    TVESKAccount account = made<TVESKAccount>();
    EXPECT_EQ(decodeFields(account, "35 00 00 00 04 10 07 20 05", varint), (Read{0, 9}));
    EXPECT_EQ(account.stValue.dwUINT32, 7u);
    EXPECT_EQ(account.bFormat, 5) << "field 2 of the account, behind the union";
    EXPECT_EQ(account.presence, 0x6u);
}

TEST(UnionField, DeliberatelyAcceptsA64BitVarintCutShortByTheEndOfTheInput) {
    TVESKAccount account = made<TVESKAccount>();
    EXPECT_EQ(decodeFields(account, "35 00 00 00 0B 20", varint), (Read{0, 6}));
    EXPECT_EQ(account.bFormat, 2);
    EXPECT_EQ(account.stValue.ullUINT64, 0u);
    EXPECT_EQ(decodeFields(account, "35 00 00 00 0B 24", fixed), (Read{-2, 6}));
}

TEST(UnionField, IsConstructedForItsFreshSelectorField) {
    TVESKAccount account = dirty<TVESKAccount>();
    EXPECT_EQ(account.construct(), 0);
    EXPECT_EQ(account.bFormat, 0);
    EXPECT_EQ(image(account.stValue), "00 " + repeated(untouched, 255));
}

TEST(UnionField, KeepsItsStorageWhereTheInputHasNone) {
    TVESKAccount account = made<TVESKAccount>();
    account.bFormat = 3;
    put(account.stValue.szSTRING, "kept");
    EXPECT_EQ(decodeFields(account, "10 05", varint), (Read{0, 2}));
    EXPECT_EQ(account.bFormat, 3);
    EXPECT_STREQ(account.stValue.szSTRING, "kept");
}

TEST(UnionField, TakesTheLastOfTwoOccurrences) {
    TVESKAccount account = made<TVESKAccount>();
    EXPECT_EQ(
        decodeFields(account, "35 00 00 00 02 10 07 35 00 00 00 06 35 00 00 00 01 7A", varint),
        (Read{0, 18}));
    EXPECT_EQ(account.bFormat, 3);
    EXPECT_STREQ(account.stValue.szSTRING, "z");
}

}  // namespace
}  // namespace zrp_test
