// The operations of the messages on a buffer whose position lies past its length: the first read or
// write reports, and an operation that needs neither goes through.
#include <gtest/gtest.h>

#include "tests/brx/any_message.h"
#include "tests/brx/invariant_report.h"
#include "tests/support/bytes.h"
#include "tests/support/recorder.h"

namespace zrp_test {

using Quorva::BrxReadBuf;
using Quorva::BrxWriteBuf;

namespace {

constexpr size_t room = 4096;  // enough for the largest encoding, were the position in it
constexpr long long noMember = 1234567;

class BrokenOutput {
    std::vector<char> memory_ = std::vector<char>(2 * room);

  public:
    BrxWriteBuf buf;

    BrokenOutput() : buf(memory_.data(), room) { buf.position = room + 1; }
    bool untouched() const { return memory_ == std::vector<char>(2 * room); }
};

class BrokenInput {
    std::vector<char> memory_ = std::vector<char>(2 * room);

  public:
    BrxReadBuf buf;

    BrokenInput() : buf(memory_.data(), room) { buf.position = room + 1; }
};

}  // namespace

class BrokenBufferDeathTest : public testing::TestWithParam<MessageType> {};
INSTANTIATE_TEST_SUITE_P(All, BrokenBufferDeathTest,
                         testing::ValuesIn(messageTypes().begin(), messageTypes().end()),
                         messageTypeName);

// Every encoding begins with a tag.
TEST_P(BrokenBufferDeathTest, EncodingReportsTheWriteOfTheFirstTag) {
    AnyMessage message(GetParam());
    BrokenOutput out;
    for (const bool varint : {true, false}) {
        EXPECT_BROKEN_INVARIANT(GetParam().packFields(message.record(), 0, out.buf, varint),
                                "writeVarUInt32", 529);
    }
}

TEST_P(BrokenBufferDeathTest, DecodingReportsTheReadOfTheFirstTag) {
    AnyMessage message(GetParam());
    BrokenInput in;
    long long selector = 0;
    for (const bool varint : {true, false}) {
        for (const size_t length : {size_t{1}, size_t{5}, room}) {
            EXPECT_BROKEN_INVARIANT(
                GetParam().unpackFields(message.record(), &selector, in.buf, length, varint),
                "readVarUInt32", 980);
        }
    }
}

// Straight-line code takes fields without looking at the buffer again.
TEST(BrokenBaseHeaderDeathTest, DecodingTakesNoFieldsFromBehindTheLength) {
    const Bytes bytes = hex("00 10 05 20 06 30 07 12 00 05 22 00 06 32 00 07");
    quorva_zrp::TZRPBase base{};
    BrxReadBuf varints(bytes.data(), 0);
    varints.position = 1;
    EXPECT_BROKEN_INVARIANT(base.unpackTLVWithVarint(varints, 6), "readVarUInt32", 980);
    BrxReadBuf fixed(bytes.data(), 0);
    fixed.position = 7;
    EXPECT_BROKEN_INVARIANT(base.unpackTLVNoVarint(fixed, 9), "readVarUInt32", 980);
}

// As a pointer such a position would lie in front of the buffer, where fields are.
TEST(BrokenBaseHeaderDeathTest, DecodingTakesNoFieldsFromInFrontOfTheBuffer) {
    const Bytes bytes = hex("10 05");
    quorva_zrp::TZRPBase base{};
    BrxReadBuf buf(bytes.data() + 2, 0);
    buf.position = SIZE_MAX - 1;
    EXPECT_BROKEN_INVARIANT(base.unpackTLVWithVarint(buf, 1), "readVarUInt32", 980);
}

class BrokenBuffer : public testing::TestWithParam<MessageType> {};
INSTANTIATE_TEST_SUITE_P(All, BrokenBuffer,
                         testing::ValuesIn(messageTypes().begin(), messageTypes().end()),
                         messageTypeName);

// Formatted text makes no assertion, so a host that prints with it fails instead.
TEST_P(BrokenBuffer, PrintingFailsWithTheFirstEntry) {
    AnyMessage message(GetParam());
    BrokenOutput out;
    const Recorder recorder;
    EXPECT_EQ(GetParam().visualize(message.record(), 0, out.buf, 0, '\n'), -1);
    EXPECT_EQ(recorder.calls().size(), 1U);
    EXPECT_EQ(out.buf.position, room + 1);
    EXPECT_TRUE(out.untouched());
}

// --- Structures: a length of 0 asks for no field ------------------------------------------------

class BrokenStructureInput : public testing::TestWithParam<MessageType> {};
INSTANTIATE_TEST_SUITE_P(All, BrokenStructureInput,
                         testing::ValuesIn(messageTypes().begin(), messageTypes().begin() + 29),
                         messageTypeName);

TEST_P(BrokenStructureInput, IsNotReadForALengthOfZero) {
    ASSERT_FALSE(GetParam().isUnion);
    AnyMessage message(GetParam());
    BrokenInput in;
    for (const bool varint : {true, false}) {
        SCOPED_TRACE(varint);
        EXPECT_EQ(GetParam().unpackFields(message.record(), nullptr, in.buf, 0, varint), 0);
        EXPECT_EQ(in.buf.position, room + 1);
    }
}

TEST_P(BrokenStructureInput, IsNotReadForALengthThatWrapsToAnEndBeforeThePosition) {
    if constexpr (sizeof(size_t) < sizeof(uint64_t)) {
        GTEST_SKIP() << "no length of this platform wraps";
    }
    AnyMessage message(GetParam());
    BrokenInput in;
    for (const bool varint : {true, false}) {
        SCOPED_TRACE(varint);
        EXPECT_EQ(GetParam().unpackFields(message.record(), nullptr, in.buf, SIZE_MAX, varint),
                  -34);
        EXPECT_EQ(in.buf.position, room + 1);
    }
}

TEST(BrokenStructureInputs, ClearThePresenceWordWithoutReading) {
    quorva_zrp::TZRPCStopBody stop{};
    stop.presence = 1;
    BrokenInput in;
    EXPECT_EQ(stop.unpackTLVWithVarint(in.buf, 0), 0);
    EXPECT_EQ(stop.presence, 0U);
}

TEST(BrokenStructureOutput, YieldsATextThatEndsInTheLastByte) {
    const quorva_zrp::TZRPCStopBody stop{};
    char memory[8] = {'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h'};
    BrxWriteBuf buf(memory, 6);
    buf.position = 7;
    EXPECT_EQ(stop.visualize_ex(buf, 0, '\n'), memory);
    EXPECT_EQ(std::string(memory, sizeof(memory)), std::string("abcde\0gh", 8));
    EXPECT_EQ(buf.position, 7U);
}

// --- Unions: a tag is always read, and a selector without a member writes nothing ----------------

class BrokenUnionBuffer : public testing::TestWithParam<MessageType> {};
INSTANTIATE_TEST_SUITE_P(All, BrokenUnionBuffer,
                         testing::ValuesIn(messageTypes().begin() + 29, messageTypes().end()),
                         messageTypeName);
using BrokenUnionBufferDeathTest = BrokenUnionBuffer;
INSTANTIATE_TEST_SUITE_P(All, BrokenUnionBufferDeathTest,
                         testing::ValuesIn(messageTypes().begin() + 29, messageTypes().end()),
                         messageTypeName);

TEST_P(BrokenUnionBufferDeathTest, DecodingReportsTheReadOfTheTagForALengthOfZeroToo) {
    ASSERT_TRUE(GetParam().isUnion);
    AnyMessage message(GetParam());
    BrokenInput in;
    long long selector = 0;
    for (const bool varint : {true, false}) {
        EXPECT_BROKEN_INVARIANT(
            GetParam().unpackFields(message.record(), &selector, in.buf, 0, varint),
            "readVarUInt32", 980);
    }
}

TEST_P(BrokenUnionBuffer, IsNotWrittenForASelectorWithoutAMember) {
    AnyMessage message(GetParam());
    BrokenOutput out;
    for (const bool varint : {true, false}) {
        SCOPED_TRACE(varint);
        EXPECT_EQ(GetParam().packFields(message.record(), noMember, out.buf, varint), -33);
    }
    EXPECT_EQ(GetParam().visualize(message.record(), noMember, out.buf, 0, '\n'), 0);
    EXPECT_EQ(out.buf.position, room + 1);
    EXPECT_TRUE(out.untouched());
}

TEST(MessageTypes, Are29StructuresAnd6UnionsInThisOrder) {
    ASSERT_EQ(messageTypes().size(), 35U);
    for (size_t i = 0; i < 35; ++i) {
        SCOPED_TRACE(messageTypes()[i].name);
        EXPECT_EQ(messageTypes()[i].isUnion, i >= 29);
    }
}

}  // namespace zrp_test
