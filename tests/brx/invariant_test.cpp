// A position past the length is a broken caller, not a result: every operation of the buffers that
// moves or stores bytes ends the program, with its own name and line.
#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "Common/Source/Core/BRX/BrxBuf.h"
#include "tests/brx/invariant_report.h"

namespace zrp_test {

using Quorva::BrxReadBuf;
using Quorva::BrxTLVUtil;
using Quorva::BrxWriteBuf;

namespace {

template <class Buffer>
struct Operation {
    const char* name;
    const char* reportedName;
    int reportedLine;
    void (*run)(Buffer& buf);

    friend void PrintTo(const Operation& row, std::ostream* out) { *out << row.name; }
};

template <class Buffer>
std::string operationName(const testing::TestParamInfo<Operation<Buffer>>& row) {
    return row.param.name;
}

template <class T>
void read(BrxReadBuf& buf, int32_t (BrxReadBuf::*reader)(T&)) {
    T value{};
    (buf.*reader)(value);
}

const Operation<BrxWriteBuf> outputOperations[] = {
    {"Reserve", "reserve", 153, [](auto& buf) { buf.reserve(1); }},
    {"ReserveNothing", "reserve", 153, [](auto& buf) { buf.reserve(0); }},
    {"WriteCharWithNull", "writeCharWithNull", 203, [](auto& buf) { buf.writeCharWithNull('x'); }},
    {"WriteUInt8", "writeUInt8", 231, [](auto& buf) { buf.writeUInt8(1); }},
    {"WriteUInt16", "writeUInt16", 251, [](auto& buf) { buf.writeUInt16(1); }},
    {"WriteUInt32", "writeUInt32", 271, [](auto& buf) { buf.writeUInt32(1); }},
    {"WriteUInt64", "writeUInt64", 291, [](auto& buf) { buf.writeUInt64(1); }},
    {"WriteBytes", "writeBytes", 325, [](auto& buf) { buf.writeBytes("x", 1); }},
    {"WriteNoBytes", "writeBytes", 325, [](auto& buf) { buf.writeBytes("x", 0); }},
    {"WriteUInt8AtPosition", "writeUInt8", 356, [](auto& buf) { buf.writeUInt8(1, 0); }},
    {"WriteUInt32AtPosition", "writeUInt32", 404, [](auto& buf) { buf.writeUInt32(1, 0); }},
    {"WriteVarUInt16", "writeVarUInt16", 497, [](auto& buf) { buf.writeVarUInt16(1); }},
    {"WriteVarInt32", "writeVarInt32", 513, [](auto& buf) { buf.writeVarInt32(1); }},
    {"WriteVarUInt32", "writeVarUInt32", 529, [](auto& buf) { buf.writeVarUInt32(1); }},
    {"WriteVarInt64", "writeVarInt64", 545, [](auto& buf) { buf.writeVarInt64(1); }},
    {"WriteVarUInt64", "writeVarUInt64", 561, [](auto& buf) { buf.writeVarUInt64(1); }},
    // These report as the operation they forward to.
    {"WriteInt8", "writeUInt8", 231, [](auto& buf) { buf.writeInt8(1); }},
    {"WriteInt32", "writeUInt32", 271, [](auto& buf) { buf.writeInt32(1); }},
    {"WriteInt64", "writeUInt64", 291, [](auto& buf) { buf.writeInt64(1); }},
    {"WriteCharAtPosition", "writeUInt8", 356, [](auto& buf) { buf.writeChar('x', 0); }},
};

const Operation<BrxReadBuf> inputOperations[] = {
    {"ReadUInt8", "readUInt8", 663, [](auto& buf) { read(buf, &BrxReadBuf::readUInt8); }},
    {"ReadUInt16", "readUInt16", 683, [](auto& buf) { read(buf, &BrxReadBuf::readUInt16); }},
    {"ReadUInt32", "readUInt32", 703, [](auto& buf) { read(buf, &BrxReadBuf::readUInt32); }},
    {"ReadUInt64", "readUInt64", 723, [](auto& buf) { read(buf, &BrxReadBuf::readUInt64); }},
    {"ReadBytes", "readBytes", 767,
     [](auto& buf) {
         char byte = 0;
         buf.readBytes(&byte, 1);
     }},
    {"ReadNoBytes", "readBytes", 767,
     [](auto& buf) {
         char byte = 0;
         buf.readBytes(&byte, 0);
     }},
    {"ReadVarUInt16", "readVarUInt16", 948,
     [](auto& buf) { read(buf, &BrxReadBuf::readVarUInt16); }},
    {"ReadVarInt32", "readVarInt32", 964, [](auto& buf) { read(buf, &BrxReadBuf::readVarInt32); }},
    {"ReadVarUInt32", "readVarUInt32", 980,
     [](auto& buf) { read(buf, &BrxReadBuf::readVarUInt32); }},
    {"ReadVarInt64", "readVarInt64", 996, [](auto& buf) { read(buf, &BrxReadBuf::readVarInt64); }},
    {"ReadVarUInt64", "readVarUInt64", 1043,
     [](auto& buf) { read(buf, &BrxReadBuf::readVarUInt64); }},
    {"SkipForward", "skipForward", 1059, [](auto& buf) { buf.skipForward(1); }},
    {"SkipNothing", "skipForward", 1059, [](auto& buf) { buf.skipForward(0); }},
    // These report as the operation they forward to.
    {"ReadInt8", "readUInt8", 663, [](auto& buf) { read(buf, &BrxReadBuf::readInt8); }},
    {"ReadInt32", "readUInt32", 703, [](auto& buf) { read(buf, &BrxReadBuf::readInt32); }},
    {"ReadInt64", "readUInt64", 723, [](auto& buf) { read(buf, &BrxReadBuf::readInt64); }},
    {"SkipVarint", "readVarUInt64", 1043, [](auto& buf) { BrxTLVUtil::skipUnknownFields(buf, 0); }},
    {"SkipOneByte", "skipForward", 1059, [](auto& buf) { BrxTLVUtil::skipUnknownFields(buf, 1); }},
    {"SkipTwoBytes", "skipForward", 1059, [](auto& buf) { BrxTLVUtil::skipUnknownFields(buf, 2); }},
    {"SkipFourBytes", "skipForward", 1059,
     [](auto& buf) { BrxTLVUtil::skipUnknownFields(buf, 3); }},
    {"SkipEightBytes", "skipForward", 1059,
     [](auto& buf) { BrxTLVUtil::skipUnknownFields(buf, 4); }},
    {"SkipLengthAndBytes", "readUInt32", 703,
     [](auto& buf) { BrxTLVUtil::skipUnknownFields(buf, 5); }},
};

}  // namespace

class BrokenOutputDeathTest : public testing::TestWithParam<Operation<BrxWriteBuf>> {};
INSTANTIATE_TEST_SUITE_P(All, BrokenOutputDeathTest, testing::ValuesIn(outputOperations),
                         operationName<BrxWriteBuf>);

TEST_P(BrokenOutputDeathTest, EndsTheProgram) {
    char memory[32] = {};
    BrxWriteBuf buf(memory, 16);
    buf.position = 17;
    EXPECT_BROKEN_INVARIANT(GetParam().run(buf), GetParam().reportedName, GetParam().reportedLine);
}

TEST_P(BrokenOutputDeathTest, EndsTheProgramOverANullPointerToo) {
    BrxWriteBuf buf(nullptr, 0);
    buf.position = SIZE_MAX;
    EXPECT_BROKEN_INVARIANT(GetParam().run(buf), GetParam().reportedName, GetParam().reportedLine);
}

class BrokenInputDeathTest : public testing::TestWithParam<Operation<BrxReadBuf>> {};
INSTANTIATE_TEST_SUITE_P(All, BrokenInputDeathTest, testing::ValuesIn(inputOperations),
                         operationName<BrxReadBuf>);

TEST_P(BrokenInputDeathTest, EndsTheProgram) {
    const char memory[32] = {};
    BrxReadBuf buf(memory, 16);
    buf.position = 17;
    EXPECT_BROKEN_INVARIANT(GetParam().run(buf), GetParam().reportedName, GetParam().reportedLine);
}

TEST_P(BrokenInputDeathTest, EndsTheProgramOverANullPointerToo) {
    BrxReadBuf buf(nullptr, 0);
    buf.position = SIZE_MAX;
    EXPECT_BROKEN_INVARIANT(GetParam().run(buf), GetParam().reportedName, GetParam().reportedLine);
}

// --- What goes on all the same ------------------------------------------------------------------

TEST(BrokenOutput, StillRefusesANullSource) {
    char memory[4] = {};
    BrxWriteBuf buf(memory, sizeof(memory));
    buf.position = 5;
    EXPECT_EQ(buf.writeBytes(nullptr, 1), -8);
    EXPECT_EQ(buf.writeBytes(nullptr, 0), -8);
    EXPECT_EQ(buf.position, 5U);
}

TEST(BrokenInput, StillRefusesANullDestination) {
    const char memory[4] = {};
    BrxReadBuf buf(memory, sizeof(memory));
    buf.position = 5;
    EXPECT_EQ(buf.readBytes(nullptr, 1), -8);
    EXPECT_EQ(buf.readBytes(nullptr, 0), -8);
    EXPECT_EQ(buf.position, 5U);
}

TEST(BrokenInput, StillRefusesATypeIdThatCannotBeSkipped) {
    const char memory[4] = {};
    BrxReadBuf buf(memory, sizeof(memory));
    buf.position = 5;
    EXPECT_EQ(BrxTLVUtil::skipUnknownFields(buf, 6), -35);
    EXPECT_EQ(BrxTLVUtil::skipUnknownFields(buf, -1), -35);
    EXPECT_EQ(buf.position, 5U);
}

TEST(BrokenOutput, IsMendedBySet) {
    char memory[4] = {};
    BrxWriteBuf buf(memory, sizeof(memory));
    buf.position = 5;
    EXPECT_EQ(buf.getUsedSize(), 5U);
    EXPECT_EQ(buf.getTotalSize(), 4U);
    buf._set(memory, sizeof(memory));
    EXPECT_EQ(buf.writeUInt32(1), 0);
}

TEST(BrokenInput, IsMendedBySet) {
    const char memory[4] = {};
    BrxReadBuf buf(memory, sizeof(memory));
    buf.position = 5;
    EXPECT_EQ(buf.getUsedSize(), 5U);
    buf.set(memory, sizeof(memory));
    EXPECT_EQ(buf.skipForward(4), 0);
}

}  // namespace zrp_test
