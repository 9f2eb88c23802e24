// Variable-length integers with more groups than their width has room for. Deliberate: the shift of
// a group is reduced modulo the register's width, so such groups are folded in, not refused.
#include <gtest/gtest.h>

#include <string>

#include "tests/brx/integer_kinds.h"
#include "tests/support/bytes.h"

namespace zrp_test {

using Quorva::BrxReadBuf;

namespace {

/// A value of one group at index `index`, all groups before it zero.
struct Folding {
    size_t index;
    uint8_t group;
    bool accepted;
    uint64_t value;  ///< 0 when refused: nothing was gathered before the group
};

Bytes encode(const Folding& row) {
    Bytes bytes(row.index, static_cast<char>(0x80));
    bytes.push_back(static_cast<char>(row.group));
    return bytes;
}

std::string describe(const Folding& row) {
    return "group " + std::to_string(row.index) + " of " + std::to_string(row.group);
}

template <class Kind, size_t count>
void expectFolding(const Folding (&rows)[count]) {
    for (const Folding& row : rows) {
        SCOPED_TRACE(describe(row));
        const Bytes input = encode(row);
        BrxReadBuf buf(input.data(), input.size());
        typename Kind::Value read = 99;
        EXPECT_EQ(Kind::read(buf, read), row.accepted ? 0 : -2);
        EXPECT_EQ(read, static_cast<typename Kind::Value>(row.value));
        EXPECT_EQ(buf.position, row.accepted ? row.index + 1 : 0);
    }
}

}  // namespace

// 16 bits are gathered in a register of 32: shifts 0 7 14 21 28 3 10 17 24 31 6 13 20 27 2 9 ...
TEST(Folding, Of16BitValuesShiftsModulo32) {
    expectFolding<VarUInt16>({
        {1, 0x7F, true, 0x3F80},  {2, 0x03, true, 0xC000}, {2, 0x04, false, 0},
        {3, 0x00, true, 0},       {3, 0x01, false, 0},     {4, 0x00, true, 0},
        {4, 0x01, false, 0},      {5, 0x01, true, 8},      {5, 0x7F, true, 0x3F8},
        {6, 0x3F, true, 0xFC00},  {6, 0x40, false, 0},     {7, 0x00, true, 0},
        {7, 0x01, false, 0},      {8, 0x00, true, 0},      {8, 0x01, false, 0},
        {9, 0x00, true, 0},       {9, 0x01, false, 0},     {10, 0x7F, true, 0x1FC0},
        {11, 0x07, true, 0xE000}, {11, 0x08, false, 0},    {12, 0x01, false, 0},
        {13, 0x01, false, 0},     {14, 0x7F, true, 0x1FC}, {15, 0x7F, true, 0xFE00},
        {32, 0x05, true, 5},
    });
}

TEST(Folding, Of32BitValuesShiftsModulo32) {
    expectFolding<VarUInt32>({
        {3, 0x7F, true, 0x0FE00000},
        {4, 0x0F, true, 0xF0000000},
        {4, 0x10, false, 0},
        {5, 0x01, true, 8},
        {5, 0x7F, true, 0x3F8},
        {6, 0x7F, true, 0x1FC00},
        {7, 0x7F, true, 0xFE0000},
        {8, 0x7F, true, 0x7F000000},
        {9, 0x01, true, 0x80000000},
        {9, 0x02, false, 0},
        {10, 0x7F, true, 0x1FC0},
        {13, 0x1F, true, 0xF8000000},
        {13, 0x20, false, 0},
        {32, 0x7F, true, 0x7F},
    });
}

TEST(Folding, Of64BitSignedValuesShiftsModulo64) {
    // The raw values 64, 2^63, 127 x 2^55 and 3 x 2^62, mapped back.
    expectFolding<VarInt64>({
        {10, 0x01, true, 32},
        {9, 0x01, true, UINT64_C(0x4000000000000000)},
        {9, 0x02, false, 0},
        {17, 0x7F, true, UINT64_C(0x1FC0000000000000)},
        {18, 0x03, true, UINT64_C(0x6000000000000000)},
        {18, 0x04, false, 0},
        {64, 0x02, true, 1},
    });
}

TEST(Folding, Of32BitSignedValuesShiftsModulo32) {
    expectFolding<VarInt32>({
        {5, 0x01, true, 4},
        {9, 0x01, true, 0x40000000},
        {9, 0x02, false, 0},
        {32, 0x03, true, UINT64_C(0xFFFFFFFFFFFFFFFE)},
    });
}

// Deliberate: a group that is too large shows in the position only.
TEST(Folding, Of64BitUnsignedValuesShiftsModulo64) {
    static const struct {
        Folding read;
        size_t position;
    } rows[] = {
        {{9, 0x01, true, UINT64_C(0x8000000000000000)}, 10},
        {{9, 0x02, true, 0}, 0},
        {{10, 0x01, true, 64}, 11},
        {{10, 0x7F, true, 0x1FC0}, 11},
        {{18, 0x03, true, UINT64_C(0xC000000000000000)}, 19},
        {{18, 0x04, true, 0}, 0},
        {{64, 0x05, true, 5}, 65},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(describe(row.read));
        const Bytes input = encode(row.read);
        BrxReadBuf buf(input.data(), input.size());
        uint64_t read = 99;
        EXPECT_EQ(buf.readVarUInt64(read), 0);
        EXPECT_EQ(read, row.read.value);
        EXPECT_EQ(buf.position, row.position);
    }
}

TEST(Folding, SetsBitsInWhatWasGatheredAndNeverAdds) {
    const Bytes input = hex("88 80 80 80 80 01");
    BrxReadBuf buf(input.data(), input.size());
    uint32_t read = 99;
    EXPECT_EQ(buf.readVarUInt32(read), 0);
    EXPECT_EQ(read, 8U);
    buf.position = 0;
    uint16_t narrow = 99;
    EXPECT_EQ(buf.readVarUInt16(narrow), 0);
    EXPECT_EQ(narrow, 8U);
}

TEST(Folding, OfGroupFiveLandsAtBitThree) {
    const Bytes input = hex("80 80 80 80 8F 01");
    BrxReadBuf buf(input.data(), input.size());
    uint32_t read = 99;
    EXPECT_EQ(buf.readVarUInt32(read), 0);
    EXPECT_EQ(read, 0xF0000008);
    EXPECT_EQ(buf.position, 6U);
}

// --- The decoding step of readVarUInt64 ---------------------------------------------------------

TEST(Decode64Var, IsAStaticFunctionThatReturnsNothing) {
    static_assert(std::is_same_v<decltype(&BrxReadBuf::decode_64_var),
                                 void (*)(const char*, size_t, size_t&, uint64_t&, int)>);
}

TEST(Decode64Var, TellsHowManyBytesTheValueTook) {
    const Bytes input = hex("AC 02 FF");
    size_t used = 99;
    uint64_t value = 99;
    BrxReadBuf::decode_64_var(input.data(), input.size(), used, value, 0);
    EXPECT_EQ(used, 2U);
    EXPECT_EQ(value, 300U);
}

TEST(Decode64Var, TellsOfAFailureByHavingTakenNothing) {
    for (const char* bytes : {"AC", "AC 80 80 80 80 80 80 80 80 02"}) {
        SCOPED_TRACE(bytes);
        const Bytes input = hex(bytes);
        size_t used = 99;
        uint64_t value = 99;
        BrxReadBuf::decode_64_var(input.data(), input.size(), used, value, 0);
        EXPECT_EQ(used, 0U);
        EXPECT_EQ(value, 0x2CU);
    }
}

TEST(Decode64Var, TakesNothingFromNothing) {
    size_t used = 99;
    uint64_t value = 99;
    BrxReadBuf::decode_64_var(nullptr, 0, used, value, 0);
    EXPECT_EQ(used, 0U);
    EXPECT_EQ(value, 0U);
}

TEST(Decode64Var, DoesNotDependOnTheStatusItIsGiven) {
    const Bytes input = hex("AC 02");
    size_t used = 99;
    uint64_t value = 99;
    BrxReadBuf::decode_64_var(input.data(), input.size(), used, value, -2);
    EXPECT_EQ(used, 2U);
    EXPECT_EQ(value, 300U);
}

}  // namespace zrp_test
