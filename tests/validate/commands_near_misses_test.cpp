// Frames that are as an encoder writes them up to one place, where something follows that states
// another command: what tells the usual frame at once must not overlook it.
#include <gtest/gtest.h>

#include <memory>

#include "protocol/quorva_zrp_validate.h"
#include "tests/support/bytes.h"

namespace zrp_test {

using namespace quorva_zrp;

namespace {

std::string delimited(const std::string& tag, const std::string& content) {
    const size_t size = hex(content).size();
    const char length[] = {0, 0, static_cast<char>(size >> 8), static_cast<char>(size)};
    return tag + toHex(length, sizeof(length)) + content;
}

// 91 80 08 and 95 80 08 are the tags of member 8193 as a byte and as a structure; A1 80 0C and
// A5 80 0C those of 12290.
const std::string otherExtension = "25 00 00 00 04 A1 80 0C 00";
const std::string otherBody = "25 00 00 00 07 A5 80 0C 00 00 00 00";

/// A whole authentication request. What is left empty is as an encoder writes it.
struct Frame {
    std::string stamp{};        ///< instead of the timestamp in the base header
    std::string headLength{};   ///< instead of the length of the head there, with varints
    std::string inBase{};       ///< behind the fields of the base header
    std::string inExtension{};  ///< behind the member of the extension
    std::string inHead{};       ///< behind the extension
    std::string inMember{};     ///< behind the member of the body
    std::string inFrame{};      ///< behind the body
    std::string body{};         ///< instead of the body's member

    Bytes encoded(bool varint) const {
        const std::string before =
            varint ? "10 00 20 00 30 00 40 81 40" : "12 00 00 22 00 00 32 00 00 42 20 01";
        const std::string usual = varint ? "50 00" : "53 00 00 00 00";
        const std::string length = headLength.empty() ? "80 01 00" : headLength;
        const std::string after = varint
                                      ? "61 00 70 00" + length + "90 01 00"
                                      : "61 00 73 00 00 00 00 83 01 00 00 00 00 93 01 00 00 00 00";
        const std::string base =
            delimited("15", before + (stamp.empty() ? usual : stamp) + after + inBase);
        const std::string extension = delimited("25", "91 80 08 00" + inExtension);
        const std::string unknown = delimited("F5 07", std::string(60, '0'));
        const std::string member = body.empty() ? delimited("95 80 08", unknown) : body;
        const std::string bodyField = delimited("25", member + inMember);
        Bytes bytes =
            hex(delimited(varint ? "AA" : "99",
                          delimited("15", base + extension + inHead) + bodyField + inFrame));
        bytes[4] = static_cast<char>(bytes[4] + 5);  // the envelope counts itself, too
        return bytes;
    }

    int commands(bool varint) const {
        const Bytes bytes = encoded(varint);
        return commandsOfInFrame(bytes.data(), bytes.size(), nullptr);
    }
    int commandsWithRawBody(bool varint) const {
        const Bytes bytes = encoded(varint);
        return commandsOfFrame(bytes.data(), bytes.size(), nullptr);
    }
};

class CommandsOfNearMisses : public testing::TestWithParam<bool> {
  protected:
    bool varint() const { return GetParam(); }
};

}  // namespace

TEST_P(CommandsOfNearMisses, AgreeInTheUsualFrame) {
    EXPECT_EQ(0, Frame{}.commands(varint()));
    EXPECT_EQ(0, Frame{}.commandsWithRawBody(varint()));
}

TEST_P(CommandsOfNearMisses, CountASecondCommandInTheBaseHeader) {
    Frame frame;
    frame.inBase = varint() ? "40 81 20" : "42 10 01";
    EXPECT_EQ(ZRP_DIFFER_BASE_EXTENSION + ZRP_DIFFER_BASE_BODY, frame.commands(varint()));
}

TEST_P(CommandsOfNearMisses, CountASecondExtensionInTheHead) {
    Frame frame;
    frame.inHead = otherExtension;
    EXPECT_EQ(ZRP_DIFFER_BASE_EXTENSION + ZRP_DIFFER_EXTENSION_BODY, frame.commands(varint()));
}

TEST_P(CommandsOfNearMisses, CountASecondExtensionInsideTheExtension) {
    Frame frame;
    frame.inExtension = otherExtension;
    EXPECT_EQ(ZRP_DIFFER_BASE_EXTENSION + ZRP_DIFFER_EXTENSION_BODY, frame.commands(varint()));
}

TEST_P(CommandsOfNearMisses, CountASecondBodyInsideTheBody) {
    Frame frame;
    frame.inMember = otherBody;
    EXPECT_EQ(ZRP_DIFFER_BASE_BODY + ZRP_DIFFER_EXTENSION_BODY, frame.commands(varint()));
}

TEST_P(CommandsOfNearMisses, CountASecondBodyBehindTheBody) {
    Frame frame;
    frame.inFrame = otherBody;
    EXPECT_EQ(ZRP_DIFFER_BASE_BODY + ZRP_DIFFER_EXTENSION_BODY, frame.commands(varint()));
}

TEST_P(CommandsOfNearMisses, CountASecondHeadBehindARawBody) {
    Frame frame;
    frame.inFrame = delimited("15", otherExtension);
    EXPECT_EQ(ZRP_DIFFER_BASE_EXTENSION, frame.commandsWithRawBody(varint()));
}

TEST(CommandsOfOverlargeIntegers, FailWhereAnIntegerOfTheBaseHeaderIsTooLarge) {
    Frame frame;
    frame.stamp = "50 FF FF FF FF 0F";
    EXPECT_EQ(0, frame.commands(true));
    for (const char* const tooLarge : {"50 FF FF FF FF 1F", "50 80 80 80 80 10"}) {
        frame.stamp = tooLarge;
        EXPECT_EQ(-2, frame.commands(true)) << tooLarge;
    }
}

// Five groups of 32 bits that go on: the next tag, 61, is the last group. From there on all is read
// one byte too late: four fields of number 0, the last of which ends behind the base header.
TEST(CommandsOfOverlongIntegers, FailWhereTheLastGroupIsWhatWasTheNextTag) {
    Frame frame;
    frame.stamp = "50 80 80 80 80 80";
    EXPECT_EQ(-34, frame.commands(true));
}

// 80 84 00 is a tag, that of a field 32 whose value is 90 01; the 00 behind is a tag, too, whose
// value lies behind the base header.
TEST(CommandsOfOverlongTags, FailWhereATagGoesOnAfterTwoBytes) {
    Frame frame;
    frame.headLength = "80 84 00";
    EXPECT_EQ(-34, frame.commands(true));
}

// In memory that ends where the frame ends: a sanitizer sees what is read behind it.
TEST_P(CommandsOfNearMisses, AreNotLookedForBehindTheEnd) {
    Frame frame;
    frame.body = "95 80 08";
    for (int more = 0; more < 4; ++more) {
        const Bytes bytes = frame.encoded(varint());
        const std::unique_ptr<char[]> exact(new char[bytes.size()]);
        std::copy(bytes.begin(), bytes.end(), exact.get());
        EXPECT_EQ(-2, commandsOfInFrame(exact.get(), bytes.size(), nullptr)) << more;
        frame.body += " 00";
    }
}

INSTANTIATE_TEST_SUITE_P(Flavour, CommandsOfNearMisses, testing::Values(true, false),
                         [](const auto& flavour) { return flavour.param ? "Varint" : "Fixed"; });

}  // namespace zrp_test
