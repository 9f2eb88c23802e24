// Field tags, and stepping over values by their wire type id.
#include <gtest/gtest.h>
#include <limits.h>

#include <ostream>
#include <string>
#include <type_traits>

#include "tests/brx/guarded_output.h"

namespace zrp_test {

using Quorva::BrxReadBuf;
using Quorva::BrxTLVUtil;

// --- Tags ---------------------------------------------------------------------------------------

TEST(Tag, IsTheFieldNumberTimesSixteenPlusTheTypeId) {
    static_assert(std::is_same_v<decltype(BrxTLVUtil::makeTag(1, 0)), uint32_t>);
    EXPECT_EQ(BrxTLVUtil::makeTag(0, 0), 0U);
    EXPECT_EQ(BrxTLVUtil::makeTag(0, 1), 0x01U);
    EXPECT_EQ(BrxTLVUtil::makeTag(1, 0), 0x10U);
    EXPECT_EQ(BrxTLVUtil::makeTag(6, 1), 0x61U);
    EXPECT_EQ(BrxTLVUtil::makeTag(9, 3), 0x93U);
    EXPECT_EQ(BrxTLVUtil::makeTag(4097, 5), 65557U);
    EXPECT_EQ(BrxTLVUtil::makeTag(32770, 5), 524325U);
}

// Deliberate: a type id outside 0 to 15 reaches into the field number.
TEST(Tag, IsASumThatMasksNothing) {
    EXPECT_EQ(BrxTLVUtil::makeTag(1, 16), 32U);
    EXPECT_EQ(BrxTLVUtil::makeTag(1, 0x1F), 47U);
    EXPECT_EQ(BrxTLVUtil::makeTag(1, -1), 15U);
    EXPECT_EQ(BrxTLVUtil::makeTag(0, -1), 0xFFFFFFFFU);
    EXPECT_EQ(BrxTLVUtil::makeTag(-1, 0), 0xFFFFFFF0U);
}

TEST(Tag, GivesBackItsFieldNumberAndItsTypeId) {
    static_assert(std::is_same_v<decltype(BrxTLVUtil::getFieldId(0)), uint32_t>);
    static_assert(std::is_same_v<decltype(BrxTLVUtil::getTypeId(0)), uint32_t>);
    static const struct {
        uint32_t tag;
        uint32_t fieldId;
        uint32_t typeId;
    } rows[] = {
        {0, 0, 0},          {0x01, 0, 1},
        {0x0F, 0, 15},      {0x10, 1, 0},
        {0x61, 6, 1},       {0x93, 9, 3},
        {32, 2, 0},         {65557, 4097, 5},
        {524325, 32770, 5}, {0xFFFFFFFF, 0x0FFFFFFF, 15},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.tag);
        EXPECT_EQ(BrxTLVUtil::getFieldId(row.tag), row.fieldId);
        EXPECT_EQ(BrxTLVUtil::getTypeId(row.tag), row.typeId);
    }
}

TEST(Tag, TravelsAsAVarint) {
    static const struct {
        int fieldId;
        int typeId;
        const char* bytes;
    } rows[] = {
        {7, 15, "7F"},         {8, 0, "80 01"},       {9, 3, "93 01"},       {1023, 15, "FF 7F"},
        {1024, 0, "80 80 01"}, {4097, 5, "95 80 04"}, {8193, 1, "91 80 08"}, {32770, 5, "A5 80 20"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.bytes);
        GuardedOutput out(hex(row.bytes).size());
        EXPECT_EQ(out.buf.writeVarUInt32(BrxTLVUtil::makeTag(row.fieldId, row.typeId)), 0);
        EXPECT_EQ(out.bytes(), row.bytes);
    }
}

// --- Stepping over values -----------------------------------------------------------------------

struct Skip {
    const char* name;
    int typeId;
    const char* bytes;
    int32_t result;
    size_t moved;

    friend void PrintTo(const Skip& row, std::ostream* out) { *out << row.name; }
};

const Skip skips[] = {
    {"VarintOfOneByte", 0, "7F 01", 0, 1},
    {"VarintOfTwoBytes", 0, "AC 02 01", 0, 2},
    {"VarintOfTenBytes", 0, "FF FF FF FF FF FF FF FF FF 01 01", 0, 10},
    {"VarintWithFoldedGroups", 0, "80 80 80 80 80 80 80 80 80 80 01 01", 0, 11},
    // Deliberate: these three succeed without moving.
    {"VarintThatIsMissing", 0, "", 0, 0},
    {"VarintThatIsCutShort", 0, "80", 0, 0},
    {"VarintThatOverflows", 0, "FF FF FF FF FF FF FF FF FF 02", 0, 0},
    {"OneByte", 1, "80 01", 0, 1},
    {"OneByteExactly", 1, "80", 0, 1},
    {"OneByteMissing", 1, "", -2, 0},
    {"TwoBytes", 2, "80 80 01", 0, 2},
    {"TwoBytesExactly", 2, "80 80", 0, 2},
    {"TwoBytesCutShort", 2, "80", -2, 0},
    {"FourBytes", 3, "01 02 03 04 05", 0, 4},
    {"FourBytesExactly", 3, "01 02 03 04", 0, 4},
    {"FourBytesCutShort", 3, "01 02 03", -2, 0},
    {"EightBytes", 4, "01 02 03 04 05 06 07 08 09", 0, 8},
    {"EightBytesExactly", 4, "01 02 03 04 05 06 07 08", 0, 8},
    {"EightBytesCutShort", 4, "01 02 03 04 05 06 07", -2, 0},
    {"LengthAndNothing", 5, "00 00 00 00 01", 0, 4},
    {"LengthAndBytes", 5, "00 00 00 03 01 02 03 04", 0, 7},
    {"LengthAndBytesExactly", 5, "00 00 00 03 01 02 03", 0, 7},
    {"LengthMissing", 5, "", -2, 0},
    {"LengthCutShort", 5, "00 00 00", -2, 0},
    {"LengthBeyondTheInput", 5, "00 00 00 04 01 02 03", -2, 4},
    {"LengthOfTheLargestSize", 5, "FF FF FF FF 01", -2, 4},
    {"TypeSix", 6, "01 02 03 04 05 06 07 08", -35, 0},
    {"TypeSeven", 7, "01 02 03 04 05 06 07 08", -35, 0},
    {"TypeFifteen", 15, "01 02 03 04 05 06 07 08", -35, 0},
    {"TypeSixteen", 16, "01 02 03 04 05 06 07 08", -35, 0},
    {"TypeMinusOne", -1, "01 02 03 04 05 06 07 08", -35, 0},
    {"TypeMinusFive", -5, "01 02 03 04 05 06 07 08", -35, 0},
    {"LargestType", INT_MAX, "01 02 03 04 05 06 07 08", -35, 0},
    {"SmallestType", INT_MIN, "01 02 03 04 05 06 07 08", -35, 0},
};

class SkipUnknownFields : public testing::TestWithParam<Skip> {};

INSTANTIATE_TEST_SUITE_P(All, SkipUnknownFields, testing::ValuesIn(skips),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_P(SkipUnknownFields, MovesOverExactlyOneValue) {
    const Bytes input = hex(GetParam().bytes);
    BrxReadBuf buf(input.data(), input.size());
    EXPECT_EQ(BrxTLVUtil::skipUnknownFields(buf, GetParam().typeId), GetParam().result);
    EXPECT_EQ(buf.position, GetParam().moved);
}

TEST_P(SkipUnknownFields, MovesAlikeFromTheMiddle) {
    const Bytes input = hex("FF FF FF " + std::string(GetParam().bytes));
    BrxReadBuf buf(input.data(), input.size());
    buf.position = 3;
    EXPECT_EQ(BrxTLVUtil::skipUnknownFields(buf, GetParam().typeId), GetParam().result);
    EXPECT_EQ(buf.position, 3 + GetParam().moved);
    EXPECT_EQ(buf.length, input.size());
}

TEST(SkipUnknownField, OverANullPointerFailsUnlessItIsAVarint) {
    BrxReadBuf buf(nullptr, 10);
    EXPECT_EQ(BrxTLVUtil::skipUnknownFields(buf, 0), 0);
    for (const int typeId : {1, 2, 3, 4, 5}) {
        SCOPED_TRACE(typeId);
        EXPECT_EQ(BrxTLVUtil::skipUnknownFields(buf, typeId), -2);
    }
    EXPECT_EQ(BrxTLVUtil::skipUnknownFields(buf, 6), -35);
    EXPECT_EQ(buf.position, 0U);
}

}  // namespace zrp_test
