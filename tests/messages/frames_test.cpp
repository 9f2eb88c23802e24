// The frame head and the received frame: one command selects the head extension and the body.
#include "tests/messages/frame_samples.h"

namespace zrp_test {
namespace {

using namespace quorva_zrp;

const std::string hole = " A5 A5 A5 A5 ";

/// The base header with nothing but a command, given as its bytes.
std::string baseVarint(const std::string& command) {
    return "10 00 20 00 30 00 40 " + command + " 50 00 61 00 70 00 80 01 00 90 01 00 ";
}

TEST(FrameHead, EncodesTheExtensionOfItsCommand) {
    TZRPHead head = made<TZRPHead>();
    head.stBase.wCommand = ZRP_CMD_AUTH_REQ;
    EXPECT_EQ(head.stExtend.construct(ZRP_CMD_AUTH_REQ), 0);
    EXPECT_EQ(encode(head, varint),
              written(0,
                      "AA 00 00 00 28 15 00 00 00 15 10 00 20 00 30 00 40 81 40 50 00 61 00"
                      " 70 00 80 01 00 90 01 00 25 00 00 00 04 91 80 08 00"));
    EXPECT_EQ(encode(head, fixed),
              written(0,
                      "99 00 00 00 37 15 00 00 00 24 12 00 00 22 00 00 32 00 00 42 20 01"
                      " 53 00 00 00 00 61 00 73 00 00 00 00 83 01 00 00 00 00"
                      " 93 01 00 00 00 00 25 00 00 00 04 91 80 08 00"));
}

TEST(FrameHead, EncodesThePlaceholderOfAFreshHead) {
    const TZRPHead head = made<TZRPHead>();
    EXPECT_EQ(encodeFields(head, varint),
              written(0, "15 00 00 00 14 " + baseVarint("00") + "25 00 00 00 02 01 00"));
}

TEST(FrameHead, RefusesACommandThatIsNotListed) {
    TZRPHead head = made<TZRPHead>();
    head.stBase.wCommand = 1;
    EXPECT_EQ(encode(head, varint),
              written(-33, "AA 00 00 00 23 15 00 00 00 14 " + baseVarint("01") + "25" + hole));
    EXPECT_EQ(encode(head, fixed),
              written(-33,
                      "99 00 00 00 33 15 00 00 00 24 12 00 00 22 00 00 32 00 00 42 00 01"
                      " 53 00 00 00 00 61 00 73 00 00 00 00 83 01 00 00 00 00"
                      " 93 01 00 00 00 00 25" +
                          hole));
    for (const uint16_t command :
         {uint16_t{4096}, uint16_t{4099}, uint16_t{12289}, uint16_t{65535}}) {
        head.stBase.wCommand = command;
        EXPECT_EQ(encode(head, varint).result, -33) << command;
    }
}

TEST(FrameHead, DeliberatelyTakesItsCommandFromTheExtension) {
    TZRPHead head = made<TZRPHead>();
    EXPECT_EQ(decodeFields(head, "15 00 00 00 03 40 81 20 25 00 00 00 04 91 80 08 05", varint),
              (Read{0, 17}));
    EXPECT_EQ(head.stBase.wCommand, 8193);
    EXPECT_EQ(head.stExtend.chAuthReq, 5);
    EXPECT_EQ(head.presence, 0x3u);
    // Behind the extension the base header has the last word.
    EXPECT_EQ(decodeFields(head, "25 00 00 00 04 91 80 08 05 15 00 00 00 03 40 81 20", varint),
              (Read{0, 17}));
    EXPECT_EQ(head.stBase.wCommand, 4097);
    // Without a base header the command is written back all the same.
    EXPECT_EQ(decodeFields(head, "25 00 00 00 04 A1 80 0C 05", fixed), (Read{0, 9}));
    EXPECT_EQ(head.stBase.wCommand, 12290);
    EXPECT_EQ(head.presence, 0x2u);
}

TEST(FrameHead, DeliberatelyTakesAnUnknownExtensionAsItsCommand) {
    TZRPHead head = made<TZRPHead>();
    EXPECT_EQ(decodeFields(head, "25 00 00 00 02 11 05", varint), (Read{0, 7}));
    EXPECT_EQ(head.stBase.wCommand, 1);
    EXPECT_EQ(encode(head, varint).result, -33);
    // Only 16 bits fit: field number 65536 + 4097 is skipped and becomes 4097.
    EXPECT_EQ(decodeFields(head, "25 00 00 00 04 91 80 44 05", varint), (Read{0, 9}));
    EXPECT_EQ(head.stBase.wCommand, 4097);
}

TEST(FrameHead, KeepsItsCommandWhereTheExtensionFails) {
    TZRPHead head = made<TZRPHead>();
    head.stBase.wCommand = 4097;
    EXPECT_EQ(decodeFields(head, "25 00 00 00 03 91 80 08 05", varint), (Read{-34, 9}));
    EXPECT_EQ(decodeFields(head, "25 00 00 00 00", varint), (Read{-2, 5}));
    EXPECT_EQ(decodeFields(head, "25 00 00 00 02 16 00", varint), (Read{-35, 6}));
    EXPECT_EQ(head.stBase.wCommand, 4097);
    EXPECT_EQ(head.presence, 0x2u);
}

TEST(FrameHead, PassesTheFailuresOfItsExtensionUp) {
    TZRPHead head = made<TZRPHead>();
    head.stBase.wCommand = ZRP_CMD_SYN;
    EXPECT_EQ(head.stExtend.construct(ZRP_CMD_SYN), 0);
    head.stExtend.stSyn.bHasRelayInfo = 2;
    EXPECT_EQ(encode(head, varint).result, -7);
    EXPECT_EQ(dump(head).result, -7);
    head.stExtend.stSyn.bKeyMethod = 2;
    EXPECT_EQ(encodeFields(head, varint),
              written(-33, "15 00 00 00 15 " + baseVarint("81 20") + "25" + hole + "95 80 04" +
                               hole + "11 02 25" + hole));
}

// --- The received frame -------------------------------------------------------------------------

std::string lengthOf(const std::string& digits) {
    const size_t size = hex(digits).size();
    const Bytes length = {0, 0, static_cast<char>(size >> 8), static_cast<char>(size & 0xFF)};
    return ' ' + toHex(length) + ' ';
}

struct Command {
    const char* asVarint;
    const char* asFixed;
};
const Command commands[] = {{"00", "00 00"},       {"81 20", "10 01"},    {"82 20", "10 02"},
                            {"81 40", "20 01"},    {"82 40", "20 02"},    {"82 60", "30 02"},
                            {"93 80 01", "40 13"}, {"81 A0 01", "50 01"}, {"82 A0 01", "50 02"},
                            {"82 C0 01", "60 02"}, {"81 E0 01", "70 01"}, {"82 E0 01", "70 02"},
                            {"82 80 02", "80 02"}};

/// The fields of a frame of the command numbered `index`, its members being the samples.
std::string frameFields(size_t index, bool flavour) {
    const auto extension = UnionSample<TZRPExtHead>::members()[index];
    const auto body = UnionSample<TZRPBody>::members()[index];
    const std::string base = flavour == varint
                                 ? baseVarint(commands[index].asVarint)
                                 : "12 00 00 22 00 00 32 00 00 42 " +
                                       std::string(commands[index].asFixed) +
                                       " 53 00 00 00 00 61 00 73 00 00 00 00 83 01 00 00 00 00"
                                       " 93 01 00 00 00 00";
    const Encoding& extensionBytes = flavour == varint ? extension.withVarint : extension.withFixed;
    const Encoding& bodyBytes = flavour == varint ? body.withVarint : body.withFixed;
    const std::string head = "15" + lengthOf(base) + base + "25" +
                             lengthOf(extensionBytes.fieldBytes()) + extensionBytes.fieldBytes();
    return "15" + lengthOf(head) + head + " 25" + lengthOf(bodyBytes.fieldBytes()) +
           bodyBytes.fieldBytes();
}

TEST(ReceivedFrame, CarriesTheMembersOfEveryCommand) {
    const auto extensions = UnionSample<TZRPExtHead>::members();
    const auto bodies = UnionSample<TZRPBody>::members();
    ASSERT_EQ(extensions.size(), std::size(commands));
    ASSERT_EQ(bodies.size(), std::size(commands));
    for (size_t i = 0; i < std::size(commands); ++i) {
        const long long command = extensions[i].selector;
        ASSERT_EQ(bodies[i].selector, command);
        TZRPInFrame frame = made<TZRPInFrame>();
        frame.stHead.stBase.wCommand = static_cast<uint16_t>(command);
        EXPECT_EQ(frame.stHead.stExtend.construct(command), 0);
        EXPECT_EQ(frame.stBody.construct(command), 0);
        extensions[i].set(frame.stHead.stExtend);
        bodies[i].set(frame.stBody);
        for (const bool flavour : {varint, fixed}) {
            const std::string expected = frameFields(i, flavour);
            EXPECT_EQ(encodeFields(frame, flavour), written(0, expected)) << command;
            EXPECT_EQ(encode(frame, flavour).bytes.substr(15), toHex(hex(expected)));

            TZRPInFrame decoded = made<TZRPInFrame>();
            EXPECT_EQ(decodeFields(decoded, expected, flavour), (Read{0, hex(expected).size()}));
            EXPECT_EQ(decoded.stHead.stBase.wCommand, command);
            extensions[i].expect(decoded.stHead.stExtend);
            bodies[i].expect(decoded.stBody);
            EXPECT_EQ(decoded.presence, 0x3u);
            EXPECT_EQ(decoded.stHead.presence, 0x3u);
        }
        const Calls calls = dump(frame).calls;
        EXPECT_EQ(calls.front(), heading(0, '\n', "[stHead]"));
        EXPECT_EQ(
            Calls(calls.end() - static_cast<ptrdiff_t>(bodies[i].dump.size()) - 1, calls.end()),
            under("[stBody]", {bodies[i].dump}));
    }
}

TEST(ReceivedFrame, CarriesAStructureInBothUnionsForTheAnswer) {
    TZRPInFrame frame = made<TZRPInFrame>();
    frame.stHead.stBase.wCommand = ZRP_CMD_ACK;
    EXPECT_EQ(frame.stHead.stExtend.construct(ZRP_CMD_ACK), 0);
    EXPECT_EQ(frame.stBody.construct(ZRP_CMD_ACK), 0);
    const std::string bytes =
        "AA 00 00 00 50 15 00 00 00 38 15 00 00 00 15 " + baseVarint("82 20") +
        "25 00 00 00 19 A5 80 04 00 00 00 12 11 00 21 00 35 00 00 00 02 01 00 41 00 50 80 08 60 00"
        " 25 00 00 00 09 A5 80 04 00 00 00 02 11 00";
    EXPECT_EQ(encode(frame, varint), written(0, bytes));
    TZRPInFrame decoded = made<TZRPInFrame>();
    EXPECT_EQ(decode(decoded, bytes), (Read{0, 80}));
    EXPECT_EQ(decoded.stHead.stBase.wCommand, ZRP_CMD_ACK);
    EXPECT_EQ(decoded.stHead.stExtend.stAck.dwCompressLimit, 1024u);
    EXPECT_EQ(decoded.stBody.stAck.bHasAuthInfo, 0);
}

TEST(ReceivedFrame, DeliberatelyTakesItsCommandFromItsBody) {
    TZRPInFrame frame = made<TZRPInFrame>();
    EXPECT_EQ(decodeFields(frame,
                           "15 00 00 00 09 25 00 00 00 04 91 80 08 05"
                           " 25 00 00 00 09 A5 80 0C 00 00 00 02 10 07",
                           varint),
              (Read{0, 28}));
    EXPECT_EQ(frame.stHead.stBase.wCommand, 12290);
    EXPECT_EQ(frame.stHead.stExtend.chAuthReq, 5);
    EXPECT_EQ(frame.stBody.stWait.dwPosition, 7u);
    // In the other order the head has the last word.
    EXPECT_EQ(decodeFields(frame,
                           "25 00 00 00 09 A5 80 0C 00 00 00 02 10 07"
                           " 15 00 00 00 09 25 00 00 00 04 91 80 08 05",
                           varint),
              (Read{0, 28}));
    EXPECT_EQ(frame.stHead.stBase.wCommand, 8193);
}

TEST(ReceivedFrame, DeliberatelyTakesAnUnknownBodyAsItsCommand) {
    TZRPInFrame frame = made<TZRPInFrame>();
    EXPECT_EQ(decodeFields(frame, "25 00 00 00 02 11 05", varint), (Read{0, 7}));
    EXPECT_EQ(frame.stHead.stBase.wCommand, 1);
    EXPECT_EQ(frame.presence, 0x2u);
    EXPECT_EQ(encodeFields(frame, varint),
              written(-33, "15" + hole + "15 00 00 00 14 " + baseVarint("01") + "25" + hole));
}

TEST(ReceivedFrame, KeepsItsCommandWhereItsBodyFails) {
    TZRPInFrame frame = made<TZRPInFrame>();
    frame.stHead.stBase.wCommand = 4097;
    EXPECT_EQ(decodeFields(frame, "25 00 00 00 03 91 80 04 05", varint), (Read{-34, 9}));
    EXPECT_EQ(decodeFields(frame, "25 00 00 00 00", varint), (Read{-2, 5}));
    EXPECT_EQ(decodeFields(frame, "25 00 00 00 01 16", varint), (Read{-35, 6}));
    EXPECT_EQ(frame.stHead.stBase.wCommand, 4097);
}

TEST(ReceivedFrame, PassesTheFailureOfItsBodyUp) {
    TZRPInFrame frame = made<TZRPInFrame>();
    frame.stHead.stBase.wCommand = ZRP_CMD_AUTH_REFRESH_NOTIFY;
    EXPECT_EQ(frame.stHead.stExtend.construct(ZRP_CMD_AUTH_REFRESH_NOTIFY), 0);
    EXPECT_EQ(frame.stBody.construct(ZRP_CMD_AUTH_REFRESH_NOTIFY), 0);
    frame.stBody.stAuthRefreshNotify.wAtkLen = 1025;
    EXPECT_EQ(encodeFields(frame, varint),
              written(-7, "15 00 00 00 24 15 00 00 00 16 " + baseVarint("82 E0 01") +
                              "25 00 00 00 04 A1 80 1C 00 25" + hole + "A5 80 1C" + hole +
                              "10 00 20 81 08"));
    EXPECT_EQ(dump(frame).result, -7);
}

TEST(ReceivedFrame, PrintsHeadAndBodyOneLevelDeeper) {
    TZRPInFrame frame = made<TZRPInFrame>();
    frame.stHead.stBase.wCommand = ZRP_CMD_CSTOP;
    EXPECT_EQ(frame.stHead.stExtend.construct(ZRP_CMD_CSTOP), 0);
    EXPECT_EQ(frame.stBody.construct(ZRP_CMD_CSTOP), 0);
    const Calls calls = dump(frame, 2, ' ').calls;
    ASSERT_EQ(calls.size(), 16u);
    EXPECT_EQ(calls[0], heading(2, ' ', "[stHead]"));
    EXPECT_EQ(calls[1], heading(3, ' ', "[stBase]"));
    EXPECT_EQ(calls[2], value(4, ' ', "[wMagic]", "%d", "0"));
    EXPECT_EQ(calls[5], value(4, ' ', "[wCommand]", "%d", "20481"));
    EXPECT_EQ(calls[10], value(4, ' ', "[dwBodyLen]", "%u", "0"));
    EXPECT_EQ(calls[11], heading(3, ' ', "[stExtend]"));
    EXPECT_EQ(calls[12], value(4, ' ', "[chCStop]", "0x%02x", "0x00"));
    EXPECT_EQ(calls[13], heading(2, ' ', "[stBody]"));
    EXPECT_EQ(calls[14], heading(3, ' ', "[stCStop]"));
    EXPECT_EQ(calls[15], value(4, ' ', "[dwReserved]", "%u", "0"));
}

}  // namespace
}  // namespace zrp_test
