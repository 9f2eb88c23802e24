// Writing variable-length integers.
#include <gtest/gtest.h>

#include "tests/brx/guarded_output.h"
#include "tests/brx/integer_kinds.h"

namespace zrp_test {

using Quorva::BrxWriteBuf;

template <class Kind>
class VarintWriter : public testing::Test {};
TYPED_TEST_SUITE(VarintWriter, VarintKinds, KindName);

TYPED_TEST(VarintWriter, WritesAsManyGroupsAsTheValueNeedsLowestFirst) {
    for (const auto& [value, bytes] : TypeParam::vectors) {
        SCOPED_TRACE(bytes);
        const size_t width = hex(bytes).size();
        GuardedOutput out(width);
        EXPECT_EQ(TypeParam::write(out.buf, value), 0);
        EXPECT_EQ(out.bytes(), bytes);
        EXPECT_EQ(out.buf.position, width);
    }
}

TYPED_TEST(VarintWriter, WritesInTheMiddleAndNowhereElse) {
    for (const auto& [value, bytes] : TypeParam::vectors) {
        SCOPED_TRACE(bytes);
        const size_t width = hex(bytes).size();
        GuardedOutput out(3 + width + 12, 3);
        EXPECT_EQ(TypeParam::write(out.buf, value), 0);
        EXPECT_EQ(out.bytes(),
                  "CC CC CC " + std::string(bytes) + " CC CC CC CC CC CC CC CC CC CC CC CC");
        EXPECT_EQ(out.buf.position, 3 + width);
    }
}

TYPED_TEST(VarintWriter, ThatLacksRoomLeavesTheLeadingGroupsInTheFreeBytes) {
    for (const auto& [value, bytes] : TypeParam::vectors) {
        const size_t width = hex(bytes).size();
        for (size_t room = 0; room < width; ++room) {
            SCOPED_TRACE(std::string(bytes) + " in " + std::to_string(room));
            GuardedOutput out(2 + room, 2);
            EXPECT_EQ(TypeParam::write(out.buf, value), -1);
            EXPECT_EQ(out.buf.position, 2U);
            // Two digits and a blank per byte: the leading groups read as the text's beginning.
            std::string leading = "CC CC " + std::string(bytes, 3 * room);
            leading.pop_back();
            EXPECT_EQ(out.bytes(), leading);
        }
    }
}

TYPED_TEST(VarintWriter, FailsForZeroInAFullBuffer) {
    GuardedOutput out(4, 4);
    EXPECT_EQ(TypeParam::write(out.buf, 0), -1);
    EXPECT_EQ(out.buf.position, 4U);
    EXPECT_TRUE(out.untouched());
}

TYPED_TEST(VarintWriter, WritesZeroIntoTheLastByte) {
    GuardedOutput out(4, 3);
    EXPECT_EQ(TypeParam::write(out.buf, 0), 0);
    EXPECT_EQ(out.bytes(), "CC CC CC 00");
    EXPECT_EQ(out.buf.position, 4U);
}

TYPED_TEST(VarintWriter, FailsOverANullPointer) {
    BrxWriteBuf buf(nullptr, 100);
    EXPECT_EQ(TypeParam::write(buf, 0), -1);
    EXPECT_EQ(TypeParam::write(buf, 300), -1);
    EXPECT_EQ(buf.position, 0U);
}

TEST(VarintWriters, LeaveOneGroupOf300InOneFreeByte) {
    GuardedOutput out(1);
    EXPECT_EQ(out.buf.writeVarUInt32(300), -1);
    EXPECT_EQ(out.buf.position, 0U);
    EXPECT_EQ(out.bytes(), "AC");
}

TEST(VarintWriters, LeaveNineGroupsOfTheLargestValueInNineFreeBytes) {
    GuardedOutput out(9);
    EXPECT_EQ(out.buf.writeVarUInt64(UINT64_MAX), -1);
    EXPECT_EQ(out.buf.position, 0U);
    EXPECT_EQ(out.bytes(), "FF FF FF FF FF FF FF FF FF");
}

TEST(VarintWriters, LeaveBytesThatTheNextWriteReplaces) {
    GuardedOutput out(2);
    EXPECT_EQ(out.buf.writeVarUInt32(0xFFFFFFFF), -1);
    EXPECT_EQ(out.bytes(), "FF FF");
    EXPECT_EQ(out.buf.writeVarUInt32(5), 0);
    EXPECT_EQ(out.bytes(), "05 FF");
    EXPECT_EQ(out.buf.position, 1U);
}

}  // namespace zrp_test
