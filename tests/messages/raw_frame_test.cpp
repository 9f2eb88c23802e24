// The frame whose body is already encoded: the sender's form, which takes its body bytes from the
// memory behind the record and never reads any back.
#include <new>

#include "tests/messages/make.h"

namespace zrp_test {
namespace {

using namespace quorva_zrp;

const std::string hole = " A5 A5 A5 A5 ";

/// A fresh frame with room for a body behind it.
class FrameAndBody {
  public:
    static constexpr size_t room = 4096;

    FrameAndBody() {
        memset(memory_, untouched, sizeof(memory_));
        EXPECT_EQ(frame.construct(), 0);
    }
    explicit FrameAndBody(const std::string& digits) : FrameAndBody() {
        const Bytes bytes = hex(digits);
        memcpy(memory_ + sizeof(TZRPFrame), bytes.data(), bytes.size());
        frame.stHead.stBase.dwBodyLen = static_cast<uint32_t>(bytes.size());
    }
    FrameAndBody(const FrameAndBody&) = delete;
    FrameAndBody& operator=(const FrameAndBody&) = delete;

    std::string body() const { return toHex(memory_ + sizeof(TZRPFrame), room); }

  private:
    alignas(TZRPFrame) unsigned char memory_[sizeof(TZRPFrame) + room];

  public:
    TZRPFrame& frame = *std::launder(reinterpret_cast<TZRPFrame*>(memory_));
};

/// The head of a frame with nothing but a body length, given as its varint, one byte long.
std::string headVarint(const std::string& bodyLength) {
    return "15 00 00 00 20 15 00 00 00 14 10 00 20 00 30 00 40 00 50 00 61 00 70 00 80 01 00 90 "
           "01 " +
           bodyLength + " 25 00 00 00 02 01 00 ";
}
const std::string headDump =
    "[stHead] [stBase] [wMagic]0 [wHeadVersion]0 [wBodyVersion]0 [wCommand]0 [dwTimeStamp]0"
    " [bEncrypted]0x00 [dwSequence]0 [dwHeadLen]0 ";

TEST(RawFrame, ConstructsItsHeadAndLeavesTheBodyBytesAlone) {
    FrameAndBody memory;
    EXPECT_EQ(memory.frame.stHead.stBase.wCommand, 0);
    EXPECT_EQ(memory.frame.stHead.stBase.dwBodyLen, 0u);
    EXPECT_EQ(memory.frame.stHead.stBase.presence, 0u);
    EXPECT_EQ(memory.frame.stHead.stExtend.chNull, 0);
    EXPECT_EQ(memory.frame.stHead.presence, 0u);
    EXPECT_EQ(memory.frame.presence, 0u);
    EXPECT_EQ(memory.body(), repeated(untouched, FrameAndBody::room));
}

TEST(RawFrame, LeavesOutABodyOfLengthZero) {
    const FrameAndBody memory;
    EXPECT_EQ(encode(memory.frame, varint), written(0, "AA 00 00 00 2A " + headVarint("00")));
    EXPECT_EQ(encode(memory.frame, fixed),
              written(0,
                      "99 00 00 00 3A 15 00 00 00 30 15 00 00 00 24 12 00 00 22 00 00 32 00 00"
                      " 42 00 00 53 00 00 00 00 61 00 73 00 00 00 00 83 01 00 00 00 00"
                      " 93 01 00 00 00 00 25 00 00 00 02 01 00"));
}

TEST(RawFrame, CarriesTheBytesBehindIt) {
    const FrameAndBody memory("B1 B2 B3");
    EXPECT_EQ(encode(memory.frame, varint),
              written(0, "AA 00 00 00 32 " + headVarint("03") + "25 00 00 00 03 B1 B2 B3"));
    EXPECT_EQ(encode(memory.frame, fixed),
              written(0,
                      "99 00 00 00 42 15 00 00 00 30 15 00 00 00 24 12 00 00 22 00 00 32 00 00"
                      " 42 00 00 53 00 00 00 00 61 00 73 00 00 00 00 83 01 00 00 00 00"
                      " 93 01 00 00 00 03 25 00 00 00 02 01 00 25 00 00 00 03 B1 B2 B3"));
}

TEST(RawFrame, DeliberatelyChecksItsBodyAgainstNoCapacity) {
    const FrameAndBody memory(counting(0x00, 4000));
    const Written result = encodeFields(memory.frame, fixed);
    EXPECT_EQ(result.result, 0);
    EXPECT_EQ(result.used, 53u + 5 + 4000);
    EXPECT_EQ(result.bytes.substr(3 * 53), toHex(hex("25 00 00 0F A0" + counting(0x00, 4000))));
    const Dump printed = dump(memory.frame);
    EXPECT_EQ(printed.result, 0);
    EXPECT_EQ(printed.calls.back(), array(0, '\n', "[szBody]", 4000));
}

TEST(RawFrame, WritesABodyThatDoesNotFitAsFarAsItFits) {
    const FrameAndBody memory("B1 B2 B3");
    const std::string head = headVarint("03");
    const std::vector<std::string> bodies = {"",
                                             "25",
                                             "25 B1",
                                             "25 B1 B2",
                                             "25 B1 B2 B3",
                                             "25" + hole,
                                             "25" + hole + "B1",
                                             "25" + hole + "B1 B2"};
    for (size_t room = 0; room < bodies.size(); ++room) {
        EXPECT_EQ(encodeFields(memory.frame, varint, 37 + room), written(-1, head + bodies[room]))
            << room;
    }
    EXPECT_EQ(encodeFields(memory.frame, varint, 45), written(0, head + "25 00 00 00 03 B1 B2 B3"));
}

TEST(RawFrame, RefusesACommandThatIsNotListed) {
    FrameAndBody memory("B1");
    memory.frame.stHead.stBase.wCommand = 1;
    EXPECT_EQ(encodeFields(memory.frame, varint),
              written(-33, "15" + hole +
                               "15 00 00 00 14 10 00 20 00 30 00 40 01 50 00 61 00 70 00"
                               " 80 01 00 90 01 01 25" +
                               hole));
}

// --- Decoding -----------------------------------------------------------------------------------

TEST(RawFrame, DecodesAFrameWithoutBody) {
    FrameAndBody memory;
    EXPECT_EQ(decode(memory.frame, "AA 00 00 00 2A " + headVarint("00")), (Read{0, 42}));
    EXPECT_TRUE(memory.frame.has_Head());
    EXPECT_FALSE(memory.frame.has_Body());
    EXPECT_EQ(memory.frame.stHead.presence, 0x3u);
}

TEST(RawFrame, SaysNoDataWhereTheInputEndsInsideItsHead) {
    const Bytes whole = hex(headVarint("00"));
    for (size_t size = 1; size < whole.size(); ++size) {
        FrameAndBody memory;
        const std::string start = toHex(whole.data(), size);
        EXPECT_EQ(decodeFields(memory.frame, start, varint).result, -2) << size;
        EXPECT_EQ(memory.frame.presence, 0x1u);
        FrameAndBody other;
        EXPECT_EQ(decodeFields(other.frame, headVarint("00"), varint, size),
                  (Read{-34, whole.size()}));
    }
}

TEST(RawFrame, DeliberatelyReadsTheBytesOfABodyAsFields) {
    FrameAndBody memory;
    memory.frame.stHead.stBase.dwBodyLen = 77;
    const std::string before = memory.body();
    for (const bool flavour : {varint, fixed}) {
        // Two unknown fields.
        EXPECT_EQ(decodeFields(memory.frame, "25 00 00 00 05 01 07 32 08 09", flavour),
                  (Read{0, 10}));
        EXPECT_TRUE(memory.frame.has_Body());
        EXPECT_FALSE(memory.frame.has_Head());
        // A head of length zero.
        EXPECT_EQ(decodeFields(memory.frame, "25 00 00 00 05 15 00 00 00 00", flavour),
                  (Read{0, 10}));
        EXPECT_TRUE(memory.frame.has_Head());
        // No field at all.
        EXPECT_EQ(decodeFields(memory.frame, "25 00 00 00 01 06", flavour), (Read{-35, 6}));
        EXPECT_EQ(decodeFields(memory.frame, "25 00 00 00 03 B1 B2 B3", flavour), (Read{-2, 5}));
        // The declared length of the body plays no part.
        EXPECT_EQ(decodeFields(memory.frame, "25 FF FF FF FF", flavour), (Read{0, 5}));
        EXPECT_EQ(decodeFields(memory.frame, "25 00 00 00 01 01 07", flavour), (Read{0, 7}));
    }
    EXPECT_EQ(memory.frame.stHead.stBase.dwBodyLen, 77u);
    EXPECT_EQ(memory.body(), before);
}

TEST(RawFrame, RefusesABodyOfLengthZero) {
    FrameAndBody memory;
    for (const bool flavour : {varint, fixed}) {
        EXPECT_EQ(decodeFields(memory.frame, "25 00 00 00 00", flavour), (Read{-37, 5}));
        EXPECT_EQ(decodeFields(memory.frame, "25 00 00 00 00 01 07", flavour), (Read{-37, 5}));
        EXPECT_EQ(decodeFields(memory.frame, "25 00 00 00", flavour), (Read{-2, 1}));
        EXPECT_TRUE(memory.frame.has_Body());
    }
}

// --- Printing -----------------------------------------------------------------------------------

TEST(RawFrame, PrintsItsBodyBytesAtItsOwnIndent) {
    const FrameAndBody memory("0A FF");
    EXPECT_EQ(dump(memory.frame, 0, ' ').text,
              headDump + "[dwBodyLen]2 [stExtend] [chNull]0x00 [szBody]2 0x0a 0xff ");
    for (const int indent : {-1, 0, 3}) {
        const Calls calls = dump(memory.frame, indent, '|').calls;
        ASSERT_EQ(calls.size(), 14u);
        EXPECT_EQ(
            calls,
            at(join({under("[stHead]",
                           {under("[stBase]",
                                  {decimal("[wMagic]", "0"), decimal("[wHeadVersion]", "0"),
                                   decimal("[wBodyVersion]", "0"), decimal("[wCommand]", "0"),
                                   unsigned32("[dwTimeStamp]", "0"), byte("[bEncrypted]", "0x00"),
                                   unsigned32("[dwSequence]", "0"), unsigned32("[dwHeadLen]", "0"),
                                   unsigned32("[dwBodyLen]", "2")}),
                            under("[stExtend]", {byte("[chNull]", "0x00")})}),
                     bytes("[szBody]", 2)}),
               indent, '|'));
    }
}

TEST(RawFrame, PrintsAnEmptyBodyAsTheSeparatorAlone) {
    const FrameAndBody memory;
    EXPECT_EQ(dump(memory.frame, 0, ' ').text,
              headDump + "[dwBodyLen]0 [stExtend] [chNull]0x00 [szBody]0 ");
}

TEST(RawFrame, EndsItsDumpWhereTheBufferIsFull) {
    const FrameAndBody memory("0A FF");
    const std::string whole = dump(memory.frame, 0, ' ').text;
    for (size_t room = 0; room <= whole.size(); ++room) {
        Bytes printed(room + 1, static_cast<char>(untouched));
        size_t used = notStored;
        EXPECT_EQ(memory.frame.visualize(printed.data(), room, &used, 0, ' '), -1) << room;
        EXPECT_EQ(std::string(printed.data(), used), whole.substr(0, used));
        EXPECT_EQ(static_cast<unsigned char>(printed[room]), untouched);
    }
    Bytes printed(whole.size() + 1);
    EXPECT_STREQ(memory.frame.visualize_ex(printed.data(), printed.size(), nullptr, 0, ' '),
                 whole.c_str());
}

TEST(RawFrame, EndsItsDumpWithTheFailureOfAFormatter) {
    const FrameAndBody memory("0A FF");
    for (size_t failing = 0; failing < 14; ++failing) {
        const Dump stopped = captureDump(
            [&](Quorva::BrxWriteBuf& buf) { return memory.frame.visualize(buf, 0, '\n'); }, failing,
            -77);
        EXPECT_EQ(stopped.result, -77);
        EXPECT_EQ(stopped.calls.size(), failing + 1);
    }
}

// --- The rest of the contract -------------------------------------------------------------------

TEST(RawFrame, CountsNoBodyBytesInItsLargestEncoding) {
    const FrameAndBody memory("B1 B2 B3");
    size_t size = 0;
    EXPECT_EQ(memory.frame.getTLVMaxPackedSize(&size, varint), 0);
    EXPECT_EQ(size, 2825u);
    EXPECT_EQ(memory.frame.getTLVMaxPackedSize(&size, fixed), 0);
    EXPECT_EQ(size, 2800u);
    EXPECT_EQ(memory.frame.getTLVMaxPackedSize(nullptr, varint), -19);
    EXPECT_EQ(memory.frame.getTLVMaxPackedSize(nullptr, fixed), -19);
}

TEST(RawFrame, RefusesNothingToWorkOn) {
    FrameAndBody memory;
    size_t used = notStored;
    char bytes[1] = {};
    EXPECT_EQ(memory.frame.packTLV(nullptr, 100, &used, varint), -19);
    EXPECT_EQ(memory.frame.packTLV(bytes, 0, &used, fixed), -19);
    EXPECT_EQ(memory.frame.unpackTLV(nullptr, 100, &used), -19);
    EXPECT_EQ(memory.frame.visualize(nullptr, 100, &used, 0, ' '), -19);
    EXPECT_EQ(used, notStored);
    EXPECT_STREQ(memory.frame.visualize_ex(nullptr, 100, &used, 0, ' '), "");
    EXPECT_EQ(decode(memory.frame, "AB 00 00 00 05"), (Read{-32, notStored}));
    EXPECT_EQ(decode(memory.frame, "AA 00 00 00 06"), (Read{-2, notStored}));
    EXPECT_EQ(decode(memory.frame, "AA 00 00 00 04"), (Read{-34, 5}));
    EXPECT_EQ(decode(memory.frame, "AA 00 00 00 05"), (Read{0, 5}));
}

TEST(RawFrame, HasTwoPresenceBitsAndNoRequiredField) {
    const FrameAndBody memory;
    EXPECT_EQ(memory.frame.requiredFieldNum(), 0);
    char names[] = {'x', 'x'};
    EXPECT_EQ(memory.frame.getLastLostRequiredFields(names, 2), names);
    EXPECT_EQ(toHex(names, 2), "00 78");
    EXPECT_EQ(memory.frame.getLastLostRequiredFields(nullptr, 2), nullptr);
    EXPECT_EQ(memory.frame.getLastLostRequiredFields(names, 0), nullptr);
    memory.frame.set_has_Body();
    EXPECT_EQ(memory.frame.presence, 0x2u);
    EXPECT_TRUE(memory.frame.has_Body());
    EXPECT_FALSE(memory.frame.has_Head());
    memory.frame.set_has_Head();
    EXPECT_EQ(memory.frame.presence, 0x3u);
}

TEST(RawFrame, WritesNothingBehindABufferThatHoldsAnyHeadButNotTheBody) {
    FrameAndBody whole;
    whole.frame.stHead.stBase.dwBodyLen = FrameAndBody::room;
    for (const bool isVarint : {varint, fixed}) {
        const size_t size = isVarint ? TZRPFrame_MAX_VARINT : TZRPFrame_MAX_FIXED;
        Bytes memory(size + 2 * FrameAndBody::room, '\x5A');
        size_t used = 0;
        EXPECT_EQ(whole.frame.packTLV(memory.data(), size, &used, isVarint), -1);
        EXPECT_EQ(used, size);
        EXPECT_EQ(Bytes(2 * FrameAndBody::room, '\x5A'),
                  Bytes(memory.data() + size, memory.data() + memory.size()));
    }
}

}  // namespace
}  // namespace zrp_test
