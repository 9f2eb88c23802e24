// Writing integers of fixed width, bytes at given places, and runs of bytes.
#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "tests/brx/guarded_output.h"
#include "tests/brx/integer_kinds.h"

namespace zrp_test {

using Quorva::BrxWriteBuf;

// --- At the position ----------------------------------------------------------------------------

template <class Kind>
class FixedWriter : public testing::Test {};
TYPED_TEST_SUITE(FixedWriter, FixedKinds, KindName);

TYPED_TEST(FixedWriter, FillsExactlyTheRoomItNeedsMostSignificantByteFirst) {
    for (const auto& [value, bytes] : TypeParam::vectors) {
        SCOPED_TRACE(bytes);
        const size_t width = hex(bytes).size();
        GuardedOutput out(width);
        EXPECT_EQ(TypeParam::write(out.buf, value), 0);
        EXPECT_EQ(out.bytes(), bytes);
        EXPECT_EQ(out.buf.position, width);
    }
}

TYPED_TEST(FixedWriter, WritesInTheMiddleAndNowhereElse) {
    for (const auto& [value, bytes] : TypeParam::vectors) {
        SCOPED_TRACE(bytes);
        const size_t width = hex(bytes).size();
        GuardedOutput out(3 + width + 2, 3);
        EXPECT_EQ(TypeParam::write(out.buf, value), 0);
        EXPECT_EQ(out.bytes(), "CC CC CC " + std::string(bytes) + " CC CC");
        EXPECT_EQ(out.buf.position, 3 + width);
    }
}

TYPED_TEST(FixedWriter, FailsOneByteShortAndTouchesNothing) {
    for (const auto& [value, bytes] : TypeParam::vectors) {
        SCOPED_TRACE(bytes);
        const size_t width = hex(bytes).size();
        GuardedOutput out(3 + width - 1, 3);
        EXPECT_EQ(TypeParam::write(out.buf, value), -1);
        EXPECT_EQ(out.buf.position, 3U);
        EXPECT_TRUE(out.untouched());
    }
}

TYPED_TEST(FixedWriter, FailsInAFullBuffer) {
    GuardedOutput out(4, 4);
    EXPECT_EQ(TypeParam::write(out.buf, 1), -1);
    EXPECT_EQ(out.buf.position, 4U);
    EXPECT_TRUE(out.untouched());
}

TYPED_TEST(FixedWriter, FailsOverANullPointer) {
    BrxWriteBuf buf(nullptr, 100);
    EXPECT_EQ(TypeParam::write(buf, 1), -1);
    EXPECT_EQ(buf.position, 0U);
    EXPECT_EQ(buf.length, 0U);
}

TEST(FixedWriters, FollowOneAnotherWithoutGaps) {
    GuardedOutput out(16);
    EXPECT_EQ(out.buf.writeUInt8(0x01), 0);
    EXPECT_EQ(out.buf.writeUInt16(0x0203), 0);
    EXPECT_EQ(out.buf.writeUInt32(0x04050607), 0);
    EXPECT_EQ(out.buf.writeUInt64(UINT64_C(0x08090A0B0C0D0E0F)), 0);
    EXPECT_EQ(out.bytes(), "01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F CC");
    EXPECT_EQ(out.buf.position, 15U);
}

// --- At a given place ---------------------------------------------------------------------------

struct PositionalWriter {
    const char* name;
    int32_t (*write)(BrxWriteBuf& buf, size_t pos);
    const char* bytes;

    friend void PrintTo(const PositionalWriter& row, std::ostream* out) { *out << row.name; }
};

const PositionalWriter positionalWriters[] = {
    {"UInt8", [](BrxWriteBuf& buf, size_t pos) { return buf.writeUInt8(0xFE, pos); }, "FE"},
    {"Char", [](BrxWriteBuf& buf, size_t pos) { return buf.writeChar('\x80', pos); }, "80"},
    {"UInt32", [](BrxWriteBuf& buf, size_t pos) { return buf.writeUInt32(0x01020304, pos); },
     "01 02 03 04"},
};

class WriteAtPosition : public testing::TestWithParam<PositionalWriter> {
  protected:
    size_t width() const { return hex(GetParam().bytes).size(); }
};

INSTANTIATE_TEST_SUITE_P(All, WriteAtPosition, testing::ValuesIn(positionalWriters),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_P(WriteAtPosition, WritesThereWithoutMovingThePosition) {
    GuardedOutput out(2 + width() + 3, 1);
    EXPECT_EQ(GetParam().write(out.buf, 2), 0);
    EXPECT_EQ(out.bytes(), "CC CC " + std::string(GetParam().bytes) + " CC CC CC");
    EXPECT_EQ(out.buf.position, 1U);
}

TEST_P(WriteAtPosition, ReachesTheLastBytesFromAnyPosition) {
    for (const size_t position : {size_t{0}, size_t{1}, 5 + width()}) {
        SCOPED_TRACE(position);
        GuardedOutput out(5 + width(), position);
        EXPECT_EQ(GetParam().write(out.buf, 5), 0);
        EXPECT_EQ(out.bytes(), "CC CC CC CC CC " + std::string(GetParam().bytes));
        EXPECT_EQ(out.buf.position, position);
    }
}

TEST_P(WriteAtPosition, ReachesTheFirstBytes) {
    GuardedOutput out(width() + 1, width() + 1);
    EXPECT_EQ(GetParam().write(out.buf, 0), 0);
    EXPECT_EQ(out.bytes(), std::string(GetParam().bytes) + " CC");
}

TEST_P(WriteAtPosition, FailsOneByteTooFarBackAndTouchesNothing) {
    GuardedOutput out(5 + width(), 2);
    EXPECT_EQ(GetParam().write(out.buf, 6), -1);
    EXPECT_EQ(out.buf.position, 2U);
    EXPECT_TRUE(out.untouched());
}

TEST_P(WriteAtPosition, FailsAtAndBeyondTheEnd) {
    GuardedOutput out(8);
    for (const size_t pos : {size_t{8}, size_t{9}, SIZE_MAX - 3, SIZE_MAX}) {
        SCOPED_TRACE(pos);
        EXPECT_EQ(GetParam().write(out.buf, pos), -1);
    }
    EXPECT_TRUE(out.untouched());
}

TEST_P(WriteAtPosition, FailsInARoomThatIsTooSmall) {
    GuardedOutput out(width() - 1);
    EXPECT_EQ(GetParam().write(out.buf, 0), -1);
    EXPECT_TRUE(out.untouched());
}

TEST_P(WriteAtPosition, FailsOverANullPointer) {
    BrxWriteBuf buf(nullptr, 100);
    EXPECT_EQ(GetParam().write(buf, 0), -1);
}

// --- Runs of bytes ------------------------------------------------------------------------------

TEST(WriteBytes, CopiesAndAdvances) {
    GuardedOutput out(5, 1);
    EXPECT_EQ(out.buf.writeBytes("\x01\x00\x80", 3), 0);
    EXPECT_EQ(out.bytes(), "CC 01 00 80 CC");
    EXPECT_EQ(out.buf.position, 4U);
}

TEST(WriteBytes, FillsExactlyTheRoom) {
    GuardedOutput out(4, 1);
    EXPECT_EQ(out.buf.writeBytes("abc", 3), 0);
    EXPECT_EQ(out.bytes(), "CC 61 62 63");
    EXPECT_EQ(out.buf.position, 4U);
}

TEST(WriteBytes, FailsForOneByteTooManyAndTouchesNothing) {
    GuardedOutput out(4, 2);
    EXPECT_EQ(out.buf.writeBytes("abc", 3), -1);
    EXPECT_EQ(out.buf.position, 2U);
    EXPECT_TRUE(out.untouched());
}

TEST(WriteBytes, FailsForCountsThatWouldWrapThePosition) {
    GuardedOutput out(4, 2);
    volatile const size_t largest = SIZE_MAX;  // unknown to compilers, which would refuse the call
    EXPECT_EQ(out.buf.writeBytes("abc", largest), -1);
    EXPECT_EQ(out.buf.writeBytes("abc", largest - 1), -1);
    EXPECT_EQ(out.buf.position, 2U);
    EXPECT_TRUE(out.untouched());
}

TEST(WriteBytes, OfNothingSucceedsInAFullBufferAndOverANullPointer) {
    GuardedOutput full(3, 3);
    EXPECT_EQ(full.buf.writeBytes("x", 0), 0);
    EXPECT_EQ(full.buf.position, 3U);
    EXPECT_TRUE(full.untouched());
    BrxWriteBuf null(nullptr, 10);
    EXPECT_EQ(null.writeBytes("x", 0), 0);
    EXPECT_EQ(null.position, 0U);
}

TEST(WriteBytes, FailsOverANullPointer) {
    BrxWriteBuf null(nullptr, 10);
    EXPECT_EQ(null.writeBytes("x", 1), -1);
    EXPECT_EQ(null.position, 0U);
}

TEST(WriteBytes, RefusesANullSourceWhateverTheCountAndTheRoom) {
    GuardedOutput out(4, 1);
    EXPECT_EQ(out.buf.writeBytes(nullptr, 0), -8);
    EXPECT_EQ(out.buf.writeBytes(nullptr, 2), -8);
    EXPECT_EQ(out.buf.writeBytes(nullptr, 5), -8);
    EXPECT_EQ(out.buf.position, 1U);
    EXPECT_TRUE(out.untouched());
    BrxWriteBuf null(nullptr, 10);
    EXPECT_EQ(null.writeBytes(nullptr, 1), -8);
}

// Known at run time only: where compilers unfold a copy themselves, sanitizers cannot tell a copy
// that may overlap from one that may not.
static volatile const size_t overlap = 4;

TEST(WriteBytes, CopiesFromOverlappingMemoryBefore) {
    char memory[6] = {1, 2, 3, 4, 5, 6};
    BrxWriteBuf buf(memory, sizeof(memory));
    buf.position = 2;
    EXPECT_EQ(buf.writeBytes(memory, overlap), 0);
    EXPECT_EQ(toHex(memory, 6), "01 02 01 02 03 04");
    EXPECT_EQ(buf.position, 6U);
}

TEST(WriteBytes, CopiesFromOverlappingMemoryBehind) {
    char memory[6] = {1, 2, 3, 4, 5, 6};
    BrxWriteBuf buf(memory, sizeof(memory));
    EXPECT_EQ(buf.writeBytes(memory + 2, overlap), 0);
    EXPECT_EQ(toHex(memory, 6), "03 04 05 06 05 06");
    EXPECT_EQ(buf.position, 4U);
}

}  // namespace zrp_test
