// Reading variable-length integers: what every width shares, and the ends of each width.
#include <gtest/gtest.h>

#include <string>

#include "tests/brx/integer_kinds.h"
#include "tests/support/bytes.h"

namespace zrp_test {

using Quorva::BrxReadBuf;

template <class Kind>
class VarintReader : public testing::Test {};
TYPED_TEST_SUITE(VarintReader, VarintKinds, KindName);

TYPED_TEST(VarintReader, TakesExactlyTheBytesOfTheValue) {
    for (const auto& [value, bytes] : TypeParam::vectors) {
        SCOPED_TRACE(bytes);
        const Bytes input = hex(bytes);
        BrxReadBuf buf(input.data(), input.size());
        typename TypeParam::Value read = 99;
        EXPECT_EQ(TypeParam::read(buf, read), 0);
        EXPECT_EQ(read, value);
        EXPECT_EQ(buf.position, input.size());
    }
}

TYPED_TEST(VarintReader, ReadsFromTheMiddle) {
    for (const auto& [value, bytes] : TypeParam::vectors) {
        SCOPED_TRACE(bytes);
        const Bytes input =
            hex("81 82 83 " + std::string(bytes) + " FF FF FF FF FF FF FF FF FF FF");
        BrxReadBuf buf(input.data(), input.size());
        buf.position = 3;
        typename TypeParam::Value read = 99;
        EXPECT_EQ(TypeParam::read(buf, read), 0);
        EXPECT_EQ(read, value);
        EXPECT_EQ(buf.position, 3 + hex(bytes).size());
    }
}

TYPED_TEST(VarintReader, AcceptsGroupsThatAddNothing) {
    for (const char* bytes :
         {"80 00", "80 80 00", "80 80 80 80 00", "80 80 80 80 80 80 80 80 00"}) {
        SCOPED_TRACE(bytes);
        const Bytes input = hex(bytes);
        BrxReadBuf buf(input.data(), input.size());
        typename TypeParam::Value read = 99;
        EXPECT_EQ(TypeParam::read(buf, read), 0);
        EXPECT_EQ(read, 0);
        EXPECT_EQ(buf.position, input.size());
    }
}

/// One read: the bytes, what it returns, what it leaves in its result and how far it moves.
template <class T>
struct VarintRead {
    const char* bytes;
    int32_t result;
    T value;
    size_t position;
};

template <class Kind, size_t count>
void expectReads(const VarintRead<typename Kind::Value> (&rows)[count]) {
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(Kind::name) + " of " + row.bytes);
        const Bytes input = hex(row.bytes);
        BrxReadBuf buf(input.data(), input.size());
        typename Kind::Value read = 99;
        EXPECT_EQ(Kind::read(buf, read), row.result);
        EXPECT_EQ(read, row.value);
        EXPECT_EQ(buf.position, row.position);
    }
}

TEST(VarintReaders, ThatMeetTheEndOfTheInputFailWithWhatTheyGathered) {
    expectReads<VarUInt16>({
        {"", -2, 0, 0},
        {"80", -2, 0, 0},
        {"AC", -2, 0x2C, 0},
        {"FF FF", -2, 0x3FFF, 0},
        {"FF FF 83", -2, 0xFFFF, 0},
    });
    expectReads<VarUInt32>({
        {"", -2, 0, 0},
        {"80", -2, 0, 0},
        {"AC", -2, 0x2C, 0},
        {"FF FF", -2, 0x3FFF, 0},
        {"FF FF FF FF", -2, 0x0FFFFFFF, 0},
        {"FF FF FF FF 8F", -2, 0xFFFFFFFF, 0},
    });
}

TEST(VarintReaders, OfSignedValuesMapWhatTheyGatheredBeforeFailing) {
    expectReads<VarInt32>({
        {"", -2, 0, 0},
        {"80", -2, 0, 0},
        {"81", -2, -1, 0},
        {"AC", -2, 22, 0},
        {"FF FF FF FF", -2, -134217728, 0},
        {"FF FF FF FF 1F", -2, -134217728, 0},
        {"FE FF FF FF 10", -2, 134217727, 0},
    });
    expectReads<VarInt64>({
        {"", -2, 0, 0},
        {"80", -2, 0, 0},
        {"81", -2, -1, 0},
        {"AC", -2, 22, 0},
        {"FF FF FF FF FF FF FF FF FF", -2, INT64_C(-0x4000000000000000), 0},
        {"FF FF FF FF FF FF FF FF FF 02", -2, INT64_C(-0x4000000000000000), 0},
        {"FE FF FF FF FF FF FF FF FF 7F", -2, INT64_C(0x3FFFFFFFFFFFFFFF), 0},
    });
}

TEST(VarintReaders, RefuseAGroupThatExceedsWhatIsLeftOfTheWidth) {
    expectReads<VarUInt16>({
        {"FF FF 03", 0, 0xFFFF, 3},
        {"FF FF 04", -2, 0x3FFF, 0},
        {"80 80 7F", -2, 0, 0},
    });
    expectReads<VarUInt32>({
        {"FF FF FF FF 0F", 0, 0xFFFFFFFF, 5},
        {"FF FF FF FF 10", -2, 0x0FFFFFFF, 0},
        {"FF FF FF FF 1F", -2, 0x0FFFFFFF, 0},
    });
}

TEST(VarintReaders, StopAtTheFirstGroupThatIsTooLargeWhateverFollows) {
    expectReads<VarUInt32>({{"85 80 80 80 90 00 00", -2, 5, 0}});
    expectReads<VarUInt64>({{"85 80 80 80 80 80 80 80 80 82 00", 0, 5, 0}});
}

// Deliberate: the other readers fail here.
TEST(VarintReaders, OfUnsigned64BitsSucceedWithoutMovingWhereTheOthersFail) {
    expectReads<VarUInt64>({
        {"", 0, 0, 0},
        {"80", 0, 0, 0},
        {"AC", 0, 0x2C, 0},
        {"FF FF FF FF FF FF FF FF FF", 0, UINT64_C(0x7FFFFFFFFFFFFFFF), 0},
        {"FF FF FF FF FF FF FF FF FF 01", 0, UINT64_MAX, 10},
        {"FF FF FF FF FF FF FF FF FF 02", 0, UINT64_C(0x7FFFFFFFFFFFFFFF), 0},
        {"FF FF FF FF FF FF FF FF FF 81", 0, UINT64_MAX, 0},
    });
}

TYPED_TEST(VarintReader, LeavesThePositionInTheMiddleWhenItFails) {
    const Bytes input = hex("01 02 AC");
    BrxReadBuf buf(input.data(), input.size());
    buf.position = 2;
    typename TypeParam::Value read = 99;
    TypeParam::read(buf, read);
    EXPECT_EQ(buf.position, 2U);
}

TYPED_TEST(VarintReader, FindsNothingOverANullPointer) {
    BrxReadBuf buf(nullptr, 100);
    typename TypeParam::Value read = 99;
    const int32_t nothing = std::string(TypeParam::name) == "VarUInt64" ? 0 : -2;
    EXPECT_EQ(TypeParam::read(buf, read), nothing);
    EXPECT_EQ(read, 0);
    EXPECT_EQ(buf.position, 0U);
}

TYPED_TEST(VarintReader, IsUnmovedByInputThatEndsInsideAValue) {
    for (const auto& [value, bytes] : TypeParam::vectors) {
        const Bytes input = hex(bytes);
        for (size_t length = 0; length < input.size(); ++length) {
            SCOPED_TRACE(std::string(bytes) + " cut to " + std::to_string(length));
            BrxReadBuf buf(input.data(), length);
            typename TypeParam::Value read = 99;
            const int32_t cut = std::string(TypeParam::name) == "VarUInt64" ? 0 : -2;
            EXPECT_EQ(TypeParam::read(buf, read), cut);
            EXPECT_EQ(buf.position, 0U);
        }
    }
}

TEST(VarintReaders, GiveBackEvery16BitValue) {
    for (uint32_t value = 0; value <= 0xFFFF; ++value) {
        char memory[3];
        Quorva::BrxWriteBuf out(memory, sizeof(memory));
        ASSERT_EQ(out.writeVarUInt16(static_cast<uint16_t>(value)), 0);
        BrxReadBuf in(memory, out.position);
        uint16_t read = 0;
        ASSERT_EQ(in.readVarUInt16(read), 0);
        ASSERT_EQ(read, value);
        ASSERT_EQ(in.position, out.position);
    }
}

}  // namespace zrp_test
