// The commands of encoded frames, case by case.
#include <gtest/gtest.h>

#include "protocol/quorva_zrp_validate.h"
#include "tests/support/bytes.h"

namespace zrp_test {

using namespace quorva_zrp;

namespace {

// Pieces of an encoded frame with varints. Each is a field: tag, length, value.

/// A base header in which only the command is there.
const std::string baseSyn = "15 00 00 00 03  40 81 20";      // 81 20 is 4097
const std::string baseAuthReq = "15 00 00 00 03  40 81 40";  // 81 40 is 8193
const std::string baseWithoutCommand = "15 00 00 00 02  10 07";
/// Extensions: 91 80 08 is member 8193 as one byte, A1 80 0C member 12290.
const std::string extensionAuthReq = "25 00 00 00 04  91 80 08 00";
const std::string extensionWait = "25 00 00 00 04  A1 80 0C 00";
/// Bodies: 95 80 08 is member 8193 as a structure, A5 80 0C member 12290; both empty.
const std::string bodyAuthReq = "25 00 00 00 07  95 80 08 00 00 00 00";
const std::string bodyWait = "25 00 00 00 07  A5 80 0C 00 00 00 00";

/// A field of this number around some bytes.
Bytes field(const char* tag, const Bytes& content) {
    Bytes bytes = hex(tag);
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes.push_back(static_cast<char>(content.size() >> shift));
    }
    bytes.insert(bytes.end(), content.begin(), content.end());
    return bytes;
}

/// Envelope and fields.
Bytes message(const char* magic, const Bytes& fields) {
    Bytes bytes = field(magic, fields);
    bytes[4] = static_cast<char>(bytes[4] + 5);  // the envelope counts itself; all here is short
    return bytes;
}

Bytes frame(const std::string& head, const std::string& rest, const char* magic = "AA") {
    Bytes fields = field("15", hex(head));
    const Bytes more = hex(rest);
    fields.insert(fields.end(), more.begin(), more.end());
    return message(magic, fields);
}

int inFrame(const Bytes& bytes, ZRPCommands* commands = nullptr) {
    return commandsOfInFrame(bytes.data(), bytes.size(), commands);
}

}  // namespace

TEST(CommandsOfInFrame, AgreeWhereAllPartsStateOne) {
    ZRPCommands commands{};
    EXPECT_EQ(0, inFrame(frame(baseAuthReq + extensionAuthReq, bodyAuthReq), &commands));
    EXPECT_TRUE(commands.hasBase && commands.hasExtension && commands.hasBody);
    EXPECT_EQ(8193u, commands.base);
    EXPECT_EQ(8193u, commands.extension);
    EXPECT_EQ(8193u, commands.body);
}

TEST(CommandsOfInFrame, SayWhichPartsDiffer) {
    ZRPCommands commands{};
    EXPECT_EQ(ZRP_DIFFER_BASE_BODY + ZRP_DIFFER_EXTENSION_BODY,
              inFrame(frame(baseAuthReq + extensionAuthReq, bodyWait), &commands));
    EXPECT_EQ(8193u, commands.base);
    EXPECT_EQ(8193u, commands.extension);
    EXPECT_EQ(12290u, commands.body);
    EXPECT_EQ(ZRP_DIFFER_BASE_EXTENSION + ZRP_DIFFER_EXTENSION_BODY,
              inFrame(frame(baseAuthReq + extensionWait, bodyAuthReq)));
    EXPECT_EQ(ZRP_DIFFER_BASE_EXTENSION + ZRP_DIFFER_BASE_BODY,
              inFrame(frame(baseSyn + extensionAuthReq, bodyAuthReq)));
    EXPECT_EQ(ZRP_DIFFER_BASE_EXTENSION + ZRP_DIFFER_BASE_BODY + ZRP_DIFFER_EXTENSION_BODY,
              inFrame(frame(baseSyn + extensionAuthReq, bodyWait)));
}

TEST(CommandsOfInFrame, AgreeWithPartsThatAreMissing) {
    ZRPCommands commands{};
    EXPECT_EQ(0, inFrame(frame("", ""), &commands));
    EXPECT_FALSE(commands.hasBase || commands.hasExtension || commands.hasBody);
    EXPECT_EQ(0, inFrame(frame(baseSyn, ""), &commands));
    EXPECT_TRUE(commands.hasBase && !commands.hasExtension && !commands.hasBody);
    EXPECT_EQ(0, inFrame(frame(extensionWait, bodyWait), &commands));
    EXPECT_FALSE(commands.hasBase);
    EXPECT_EQ(0, inFrame(frame(baseWithoutCommand + extensionWait, bodyWait), &commands));
    EXPECT_FALSE(commands.hasBase);
    EXPECT_EQ(0u, commands.base);
    EXPECT_EQ(ZRP_DIFFER_EXTENSION_BODY,
              inFrame(frame(baseWithoutCommand + extensionWait, bodyAuthReq)));
    EXPECT_EQ(0, inFrame(hex("AA 00 00 00 05")));
}

TEST(CommandsOfInFrame, AreFoundInAnyOrderAmongUnknownFields) {
    const std::string unknown = "35 00 00 00 02 FF FF 41 00 F0 FF 01";
    EXPECT_EQ(0, inFrame(frame(extensionAuthReq + unknown + baseAuthReq, unknown + bodyAuthReq)));
    Bytes fields = hex(bodyWait);
    const Bytes head = field("15", hex(extensionAuthReq + baseAuthReq));
    fields.insert(fields.end(), head.begin(), head.end());
    EXPECT_EQ(ZRP_DIFFER_BASE_BODY + ZRP_DIFFER_EXTENSION_BODY, inFrame(message("AA", fields)));
}

TEST(CommandsOfInFrame, AreTheLastOfSeveral) {
    ZRPCommands commands{};
    EXPECT_EQ(0, inFrame(frame(baseSyn + extensionWait + baseAuthReq + extensionAuthReq,
                               bodyWait + bodyAuthReq),
                         &commands));
    EXPECT_EQ(8193u, commands.base);
    EXPECT_EQ(8193u, commands.extension);
    EXPECT_EQ(8193u, commands.body);
    // Two commands in one base header, and a second base header without any.
    EXPECT_EQ(
        0, inFrame(frame("15 00 00 00 06 40 81 20 40 81 40" + baseWithoutCommand + extensionAuthReq,
                         bodyAuthReq)));
}

TEST(CommandsOfInFrame, AreReadWithoutVarintsToo) {
    // 42 20 01 is field 4 as two bytes, 8193.
    EXPECT_EQ(0, inFrame(frame("15 00 00 00 03 42 20 01" + extensionAuthReq, bodyAuthReq, "99")));
    EXPECT_EQ(ZRP_DIFFER_BASE_BODY + ZRP_DIFFER_EXTENSION_BODY,
              inFrame(frame("15 00 00 00 03 42 20 01" + extensionAuthReq, bodyWait, "99")));
}

// wCommand cannot hold such a number: decoding leaves its low 16 bits, here those of 8193.
TEST(CommandsOfInFrame, DifferFromNumbersPast16Bits) {
    // 91 80 48 is member 73729 = 65536 + 8193 as one byte; no decoder knows it.
    const std::string far = "25 00 00 00 04  91 80 48 00";
    ZRPCommands commands{};
    EXPECT_EQ(ZRP_DIFFER_BASE_EXTENSION + ZRP_DIFFER_BASE_BODY,
              inFrame(frame(baseAuthReq + far, far), &commands));
    EXPECT_EQ(73729u, commands.extension);
    EXPECT_EQ(73729u, commands.body);
    EXPECT_EQ(ZRP_DIFFER_BASE_EXTENSION + ZRP_DIFFER_BASE_BODY, inFrame(frame(far, far)));
    EXPECT_EQ(ZRP_DIFFER_BASE_EXTENSION, inFrame(frame(far, "")));
}

TEST(CommandsOfInFrame, MayBeNumbersThatAreNoCommand) {
    // 40 05 in the base header, 51 00 in both unions: number 5.
    EXPECT_EQ(0,
              inFrame(frame("15 00 00 00 02 40 05 25 00 00 00 02 51 00", "25 00 00 00 02 51 00")));
}

TEST(CommandsOfInFrame, MayBeTheLargestNumber) {
    // 40 FF FF 03 in the base header, F1 FF 3F 00 in both unions: number 65,535.
    const std::string largest = "25 00 00 00 04 F1 FF 3F 00";
    ZRPCommands commands{};
    EXPECT_EQ(0, inFrame(frame("15 00 00 00 04 40 FF FF 03" + largest, largest), &commands));
    EXPECT_EQ(65535u, commands.base);
    EXPECT_EQ(65535u, commands.extension);
    EXPECT_EQ(65535u, commands.body);
}

// The rest of a union is read by what holds it, as its own fields: here a second extension.
TEST(CommandsOfInFrame, AreFollowedThroughUnionsThatHoldMore) {
    ZRPCommands commands{};
    EXPECT_EQ(
        ZRP_DIFFER_BASE_EXTENSION + ZRP_DIFFER_EXTENSION_BODY,
        inFrame(frame(baseAuthReq + "25 00 00 00 0D 91 80 08 00" + extensionWait, bodyAuthReq),
                &commands));
    EXPECT_EQ(12290u, commands.extension);
}

TEST(CommandsOfInFrame, AreReadByTheNumberOfAMemberWhateverItsWireType) {
    // 95 80 08 says that a length follows; member 8193 of the extension is one byte all the same,
    // and what follows, 03 fields of type 0, belongs to the head.
    EXPECT_EQ(0,
              inFrame(frame(baseAuthReq + "25 00 00 00 08 95 80 08 00 30 00 30 00", bodyAuthReq)));
}

TEST(CommandsOfFrame, StepOverTheBody) {
    const Bytes bytes = frame(baseAuthReq + extensionAuthReq, bodyWait);
    ZRPCommands commands{};
    EXPECT_EQ(0, commandsOfFrame(bytes.data(), bytes.size(), &commands));
    EXPECT_FALSE(commands.hasBody);
    EXPECT_EQ(0u, commands.body);
    const Bytes differing = frame(baseSyn + extensionAuthReq, "25 00 00 00 01 FF");
    EXPECT_EQ(ZRP_DIFFER_BASE_EXTENSION,
              commandsOfFrame(differing.data(), differing.size(), nullptr));
}

TEST(CommandsOfHead, CompareBaseHeaderAndExtension) {
    const Bytes same = message("AA", hex(baseAuthReq + extensionAuthReq));
    EXPECT_EQ(0, commandsOfHead(same.data(), same.size(), nullptr));
    const Bytes different = message("AA", hex(baseSyn + extensionAuthReq));
    ZRPCommands commands{};
    EXPECT_EQ(ZRP_DIFFER_BASE_EXTENSION,
              commandsOfHead(different.data(), different.size(), &commands));
    EXPECT_EQ(4097u, commands.base);
    EXPECT_EQ(8193u, commands.extension);
    EXPECT_FALSE(commands.hasBody);
}

// 81 80 00 is the tag of member 0 in as many bytes as those of the other members.
const std::string extensionNull = "25 00 00 00 04  81 80 00 00";

TEST(CommandsOfHead, AreNoneInABaseHeaderThatIsMissing) {
    const Bytes missing = message("AA", hex(extensionNull));
    ZRPCommands commands{};
    EXPECT_EQ(0, commandsOfHead(missing.data(), missing.size(), &commands));
    EXPECT_FALSE(commands.hasBase);
    EXPECT_TRUE(commands.hasExtension);
    EXPECT_EQ(0u, commands.extension);
}

// Fields of fixed widths, but their tags say varints: 00 is a tag, too, and none is that of a
// command.
TEST(CommandsOfHead, AreReadInTheFlavourOfTheMessage) {
    const std::string base =
        "15 00 00 00 24 10 00 00 20 00 00 30 00 00 40 20 01 50 00 00 00 00 61 00 70 00 00 00 00 "
        "80 01 00 00 00 00 90 01 00 00 00 00";
    const Bytes bytes = message("AA", hex(base + extensionAuthReq));
    ZRPCommands commands{};
    EXPECT_EQ(0, commandsOfHead(bytes.data(), bytes.size(), &commands));
    EXPECT_FALSE(commands.hasBase);
    EXPECT_EQ(8193u, commands.extension);
}

// B5 82 10 is the tag of member 16403, a structure: a length has to follow.
TEST(CommandsOfHead, CannotBeReadWhereAStructureIsCutShort) {
    const std::string base =
        "15 00 00 00 24 12 00 00 22 00 00 32 00 00 42 40 13 53 00 00 00 00 61 00 73 00 00 00 00 "
        "83 01 00 00 00 00 93 01 00 00 00 00";
    const Bytes cut = message("99", hex(base + "25 00 00 00 04 B5 82 10 00"));
    EXPECT_EQ(-2, commandsOfHead(cut.data(), cut.size(), nullptr));
    const Bytes whole = message("99", hex(base + "25 00 00 00 07 B5 82 10 00 00 00 00"));
    EXPECT_EQ(0, commandsOfHead(whole.data(), whole.size(), nullptr));
}

TEST(CommandsOfHead, DifferFromTheNullMemberOfAnExtension) {
    const Bytes different = message("AA", hex(baseSyn + extensionNull));
    EXPECT_EQ(ZRP_DIFFER_BASE_EXTENSION,
              commandsOfHead(different.data(), different.size(), nullptr));
}

// With as much behind it as the largest base header takes.
TEST(CommandsOfFrame, AreNoneInABaseHeaderWithoutFields) {
    ZRPCommands commands{};
    const Bytes empty = frame("15 00 00 00 00" + extensionNull,
                              "25 00 00 00 30" + std::string(size_t{2} * 0x30, '0'));
    EXPECT_EQ(0, commandsOfFrame(empty.data(), empty.size(), &commands));
    EXPECT_FALSE(commands.hasBase);
    EXPECT_TRUE(commands.hasExtension);
}

TEST(CommandsOfAnything, RefuseWhatCannotBeFollowed) {
    const auto result = [](const std::string& digits) { return inFrame(hex(digits)); };
    ZRPCommands commands{};
    commands.hasBody = true;
    EXPECT_EQ(-19, commandsOfInFrame(nullptr, 10, &commands));
    EXPECT_FALSE(commands.hasBody);
    EXPECT_EQ(-2, commandsOfInFrame("", 0, nullptr));
    EXPECT_EQ(-2, result("AA 00 00 00"));
    EXPECT_EQ(-2, result("AA 00 00 00 06"));
    EXPECT_EQ(-32, result("AB 00 00 00 05"));
    EXPECT_EQ(-34, result("AA 00 00 00 04"));
    EXPECT_EQ(-34, result("AA 00 00 00 00"));
    EXPECT_EQ(-2, result("AA 00 00 00 07 15 00"));                  // a length cut short
    EXPECT_EQ(-34, result("AA 00 00 00 0C 15 00 00 00 01 30 00"));  // past the head's length
    EXPECT_EQ(-35, result("AA 00 00 00 06 36"));                    // no such wire type
    EXPECT_EQ(-2, result("AA 00 00 00 0F 15 00 00 00 05 25 FF FF FF FF"));  // nothing behind
    EXPECT_EQ(-34, result("AA 00 00 00 0C 25 00 00 00 00 01 00"));          // past a union's length
}

}  // namespace zrp_test
