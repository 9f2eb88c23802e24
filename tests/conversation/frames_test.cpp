// Frames as the example decodes them: what the decoder of the message layer leaves to its caller.
#include "examples/conversation/frames.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "examples/conversation/commands.h"
#include "examples/conversation/describe.h"
#include "examples/conversation/outcome.h"
#include "tests/support/bytes.h"

namespace zrp_test {
namespace {

using namespace conversation;
using namespace quorva_zrp;

/// How decoding ended: `complete` when it succeeded.
Outcome outcomeOf(std::span<const char> encoded, ReceivedFrame& received) {
    try {
        decode(encoded, received);
        return Outcome::complete;
    } catch (const Failure& failure) {
        return failure.outcome();
    }
}

Outcome outcomeOf(std::span<const char> encoded) {
    ReceivedFrame received = {};
    return outcomeOf(encoded, received);
}

/// A frame with the base header and head extension of `head` and the body of `body`.
Bytes frameWith(uint16_t head, uint16_t body) {
    TZRPInFrame frame = makeFrame(head);
    Bytes fields(TZRPInFrame_MAX_VARINT);
    Quorva::BrxWriteBuf buffer(fields.data(), fields.size());
    EXPECT_EQ(buffer.writeUInt8(0xAA), 0);
    EXPECT_EQ(buffer.reserve(4), 0);
    EXPECT_EQ(buffer.writeVarUInt32(0x15), 0);
    EXPECT_EQ(buffer.reserve(4), 0);
    EXPECT_EQ(frame.stHead.packTLVWithVarint(buffer), 0);
    EXPECT_EQ(buffer.writeUInt32(static_cast<uint32_t>(buffer.position - 10), 6), 0);
    EXPECT_EQ(buffer.writeVarUInt32(0x25), 0);
    const size_t hole = buffer.position;
    EXPECT_EQ(buffer.reserve(4), 0);
    EXPECT_EQ(frame.stBody.construct(body), 0);
    EXPECT_EQ(frame.stBody.packTLVWithVarint(body, buffer), 0);
    EXPECT_EQ(buffer.writeUInt32(static_cast<uint32_t>(buffer.position - hole - 4), hole), 0);
    EXPECT_EQ(buffer.writeUInt32(static_cast<uint32_t>(buffer.position), 1), 0);
    fields.resize(buffer.position);
    return fields;
}

TEST(Frames, EveryCommandMakesARoundTripInBothFlavours) {
    for (const Command& command : commands) {
        if (command.code == ZRP_CMD_DATA) {
            continue;
        }
        for (const bool varint : {true, false}) {
            const Bytes encoded = encode(makeFrame(command.code), varint);
            ReceivedFrame received = {};
            ASSERT_EQ(outcomeOf(encoded, received), Outcome::complete) << command.name;
            EXPECT_EQ(received.command(), command.code);
            EXPECT_EQ(received.varint, varint);
            EXPECT_EQ(received.size, encoded.size());
            EXPECT_TRUE(received.body.empty());
            EXPECT_EQ(encode(received.frame, varint), encoded) << command.name;
        }
    }
}

TEST(Frames, BodiesOfEverySizeMakeARoundTripInBothFlavours) {
    for (const size_t size : {size_t{0}, size_t{1}, size_t{127}, size_t{128}, largestBody}) {
        Bytes body(size);
        for (size_t i = 0; i < size; ++i) {
            body[i] = static_cast<char>(i * 37);
        }
        for (const bool varint : {true, false}) {
            TZRPHead head = makeDataHead();
            routeToServer(head, 77, 3);
            const Bytes encoded = encodeWithBody(head, body, varint);
            EXPECT_LE(encoded.size(), largestFrame);
            ReceivedFrame received = {};
            ASSERT_EQ(outcomeOf(encoded, received), Outcome::complete) << size;
            EXPECT_EQ(Bytes(received.body.begin(), received.body.end()), body) << size;
            EXPECT_EQ(received.frame.stHead.stExtend.stData.bRouteFlag, ZRP_ROUTE_SERVER);
        }
    }
    EXPECT_THROW((void)encodeWithBody(makeDataHead(), Bytes(largestBody + 1), true), Failure);
}

TEST(Frames, EveryTruncationIsUndecodable) {
    for (const Command& command : commands) {
        const Bytes whole = command.code == ZRP_CMD_DATA
                                ? encodeWithBody(makeDataHead(), hex("01 02 03"), true)
                                : encode(makeFrame(command.code), true);
        for (size_t size = 0; size < whole.size(); ++size) {
            EXPECT_EQ(outcomeOf(std::span(whole).first(size)), Outcome::undecodable)
                << command.name << ", first " << size;
        }
    }
}

TEST(Frames, AHeadAndABodyThatDisagreeAreRefused) {
    ASSERT_EQ(outcomeOf(frameWith(ZRP_CMD_WAIT, ZRP_CMD_WAIT)), Outcome::complete);
    EXPECT_EQ(outcomeOf(frameWith(ZRP_CMD_AUTH_REQ, ZRP_CMD_WAIT)), Outcome::unexpectedFrame);
}

TEST(Frames, AFrameWithoutHeadBaseExtensionOrBodyIsRefused) {
    // WAIT is command 12290, as a varint 82 60; its placeholder's tag is A1 80 0C, that of its
    // body structure A5 80 0C.
    const std::string base = " 15 00 00 00 03 40 82 60";
    const std::string extension = " 25 00 00 00 04 A1 80 0C 00";
    const std::string body = " 25 00 00 00 07 A5 80 0C 00 00 00 00";
    EXPECT_EQ(outcomeOf(hex("AA 00 00 00 27 15 00 00 00 11" + base + extension + body)),
              Outcome::complete);
    EXPECT_EQ(outcomeOf(hex("AA 00 00 00 11" + body)), Outcome::unexpectedFrame);
    EXPECT_EQ(outcomeOf(hex("AA 00 00 00 1F 15 00 00 00 09" + extension + body)),
              Outcome::unexpectedFrame);
    EXPECT_EQ(outcomeOf(hex("AA 00 00 00 1E 15 00 00 00 08" + base + body)),
              Outcome::unexpectedFrame);
    EXPECT_EQ(outcomeOf(hex("AA 00 00 00 1B 15 00 00 00 11" + base + extension)),
              Outcome::unexpectedFrame);
    EXPECT_EQ(outcomeOf(hex("AA 00 00 00 05")), Outcome::unexpectedFrame);
}

TEST(Frames, ACommandThatIsNoneIsRefusedThoughItDecodes) {
    // Base header: empty. Extension: member 7 of one byte, which no command has; it is stepped
    // over and leaves 7 in wCommand.
    const Bytes encoded = hex("AA 00 00 00 16 15 00 00 00 0C 15 00 00 00 00 25 00 00 00 02 71 00");
    TZRPInFrame frame = makeFrame(ZRP_CMD_NULL);
    ASSERT_EQ(frame.unpackTLV(encoded.data(), encoded.size(), nullptr), 0);
    ASSERT_EQ(frame.stHead.stBase.wCommand, 7);
    EXPECT_EQ(outcomeOf(encoded), Outcome::unexpectedFrame);
}

TEST(Frames, ABodyOfAnotherSizeThanAnnouncedIsRefused) {
    TZRPHead head = makeDataHead();
    Bytes encoded = encodeWithBody(head, hex("61"), false);
    ASSERT_EQ(outcomeOf(encoded), Outcome::complete);
    // The body is the last field: one byte more of it, and the lengths around it put right.
    encoded.push_back('b');
    ASSERT_EQ(encoded[encoded.size() - 3], 1);
    encoded[encoded.size() - 3] = 2;
    ++encoded[4];
    EXPECT_EQ(outcomeOf(encoded), Outcome::undecodable);
}

TEST(Frames, NothingOfTheFrameBeforeShowsInTheNext) {
    ReceivedFrame received = {};
    memset(static_cast<void*>(&received.frame), 'x', sizeof received.frame);
    // AUTH_REQ with an empty body structure: all its fields are absent. Extension and body are
    // member 8193: tag 91 80 08 for the placeholder byte, 95 80 08 and a length for the structure.
    const Bytes encoded =
        hex("AA 00 00 00 24"
            " 15 00 00 00 0E 15 00 00 00 00 25 00 00 00 04 91 80 08 00"
            " 25 00 00 00 07 95 80 08 00 00 00 00");
    ASSERT_EQ(outcomeOf(encoded, received), Outcome::complete);
    ASSERT_EQ(received.command(), ZRP_CMD_AUTH_REQ);
    const TZRPAuthReqBody& request = received.frame.stBody.stAuthReq;
    EXPECT_FALSE(request.has_GameToken());
    EXPECT_EQ(textOf(request.szGameToken), "");
    EXPECT_EQ(textOf(request.szXQuorvaTokenVersion), "V1");
    EXPECT_EQ(textOf(request.stOAuthData.szExtend), "");
    EXPECT_EQ(request.dwXQuorvaTimestamp, 0u);
}

TEST(Frames, NothingOfTheFrameBeforeShowsInTheHeadOfADataFrame) {
    ReceivedFrame received = {};
    memset(static_cast<void*>(&received.frame), 4, sizeof received.frame);
    // The data extension is there, with tag B5 82 10 of member 16403, and holds no field.
    const Bytes encoded =
        hex("AA 00 00 00 1B"
            " 15 00 00 00 11 15 00 00 00 00 25 00 00 00 07 B5 82 10 00 00 00 00");
    ASSERT_EQ(outcomeOf(encoded, received), Outcome::complete);
    ASSERT_EQ(received.command(), ZRP_CMD_DATA);
    EXPECT_EQ(received.frame.stHead.stExtend.stData.bRouteFlag, ZRP_ROUTE_NONE);
    EXPECT_EQ(received.frame.stHead.stExtend.stData.bCompressFlag, 0);
    EXPECT_EQ(describe(received), "body of 0 bytes");
}

TEST(Frames, TextIsReadNoFurtherThanItsField) {
    char field[4] = {'a', 'b', 'c', 'd'};  // no NUL
    EXPECT_EQ(textOf(field), "abcd");
    field[2] = '\0';
    EXPECT_EQ(textOf(field), "ab");
}

TEST(Frames, TextThatDoesNotFitItsFieldIsRefused) {
    char field[4] = "";
    setText(field, "abc", "field");
    EXPECT_STREQ(field, "abc");
    EXPECT_THROW(setText(field, "abcd", "field"), Failure);
    EXPECT_STREQ(field, "abc");
}

TEST(Frames, TextForPeopleHoldsNothingThatATerminalActsOn) {
    EXPECT_EQ(printable("plain text~"), "plain text~");
    EXPECT_EQ(printable("a\x1B[2J\n\x7F\x9B\xC2"), "a?[2J????");
}

TEST(Frames, DamagedFramesAreDecodedOrRefusedAndCanAlwaysBeShown) {
    std::mt19937 random(20240607);
    const auto below = [&random](size_t bound) { return random() % bound; };
    size_t decoded = 0;
    size_t refused = 0;
    ReceivedFrame received = {};
    for (int round = 0; round < 20000; ++round) {
        const Command& command = commands[below(commands.size())];
        const bool varint = below(2) == 0;
        Bytes encoded = command.code == ZRP_CMD_DATA
                            ? encodeWithBody(makeDataHead(), hex("01 02 03 04"), varint)
                            : encode(makeFrame(command.code), varint);
        for (size_t changes = 1 + below(3); changes > 0; --changes) {
            // The length of the whole stays right, or most rounds would end there.
            encoded[5 + below(encoded.size() - 5)] = static_cast<char>(random());
        }
        const Outcome outcome = outcomeOf(encoded, received);
        if (outcome == Outcome::complete) {
            ++decoded;
            EXPECT_NE(commandName(received.command()), nullptr);
            EXPECT_FALSE(describe(received).empty());
            EXPECT_FALSE(dump(received).empty());
        } else {
            ++refused;
            EXPECT_TRUE(outcome == Outcome::undecodable || outcome == Outcome::unexpectedFrame);
        }
    }
    EXPECT_GT(decoded, 1000u);
    EXPECT_GT(refused, 1000u);
}

}  // namespace
}  // namespace zrp_test
