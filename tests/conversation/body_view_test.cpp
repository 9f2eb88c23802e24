// Finding head and body of an encoded frame, for inputs of every kind.
#include "examples/conversation/body_view.h"

#include <gtest/gtest.h>

#include <string>

#include "examples/conversation/frames.h"
#include "tests/support/bytes.h"

namespace zrp_test {
namespace {

using namespace conversation;
using namespace quorva_zrp;
using namespace Quorva;

std::string textOfBytes(std::span<const char> bytes) {
    return std::string(bytes.begin(), bytes.end());
}

/// A result and nothing found: what every failure has to look like.
void expectRefused(const Bytes& encoded, int result, const std::string& what) {
    FrameView view;
    view.hasHead = view.hasBody = view.varint = true;
    EXPECT_EQ(viewFrame(encoded, view), result) << what;
    EXPECT_FALSE(view.hasHead || view.hasBody || view.varint) << what;
    EXPECT_TRUE(view.head.empty() && view.body.empty()) << what;
}

void setDeclaredLength(Bytes& encoded, size_t length) {
    encoded[1] = static_cast<char>(length >> 24);
    encoded[2] = static_cast<char>(length >> 16);
    encoded[3] = static_cast<char>(length >> 8);
    encoded[4] = static_cast<char>(length);
}

/// An envelope with the right length around fields.
Bytes frameOf(const std::string& fields, const char* magic = "AA") {
    Bytes encoded = hex(std::string(magic) + " 00 00 00 00 " + fields);
    setDeclaredLength(encoded, encoded.size());
    return encoded;
}

// A head that holds a base header with command 16403 and the data extension's placeholder fields,
// then a body of three bytes. Head: 2 nested fields of 5 + 4 and 5 + 7 bytes.
const char* const smallHead = "15 00 00 00 09 15 00 00 00 04 40 93 80 01";
const char* const smallBody = "25 00 00 00 03 61 62 63";

Bytes smallFrame() {
    return frameOf(std::string(smallHead) + smallBody);
}

TEST(BodyView, FindsHeadAndBodyWhereTheyLie) {
    const Bytes encoded = smallFrame();
    FrameView view;
    ASSERT_EQ(viewFrame(encoded, view), 0);
    EXPECT_TRUE(view.varint);
    ASSERT_TRUE(view.hasHead);
    EXPECT_EQ(view.head.data(), encoded.data() + 10);
    EXPECT_EQ(view.head.size(), 9u);
    ASSERT_TRUE(view.hasBody);
    EXPECT_EQ(view.body.data(), encoded.data() + 24);
    EXPECT_EQ(textOfBytes(view.body), "abc");
}

TEST(BodyView, TellsTheFlavourByTheFirstByte) {
    FrameView view;
    Bytes encoded = frameOf("", "99");
    ASSERT_EQ(viewFrame(encoded, view), 0);
    EXPECT_FALSE(view.varint);
    encoded = frameOf("", "AA");
    ASSERT_EQ(viewFrame(encoded, view), 0);
    EXPECT_TRUE(view.varint);
    for (int magic = 0; magic < 256; ++magic) {
        if (magic != 0xAA && magic != 0x99) {
            Bytes damaged = smallFrame();
            damaged[0] = static_cast<char>(magic);
            expectRefused(damaged, BRX_ERR_BAD_MAGIC, "magic " + std::to_string(magic));
        }
    }
}

TEST(BodyView, AFrameWithoutFieldsHasNeitherHeadNorBody) {
    FrameView view;
    const Bytes encoded = hex("AA 00 00 00 05");
    ASSERT_EQ(viewFrame(encoded, view), 0);
    EXPECT_FALSE(view.hasHead);
    EXPECT_FALSE(view.hasBody);
}

TEST(BodyView, EveryTruncationIsRefused) {
    const Bytes whole = smallFrame();
    for (size_t size = 0; size < whole.size(); ++size) {
        expectRefused(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)),
                      BRX_ERR_NO_DATA, "first " + std::to_string(size) + " bytes");
    }
}

TEST(BodyView, EveryShorterDeclaredLengthIsRefusedExceptBetweenFields) {
    const Bytes whole = smallFrame();
    for (size_t size = 0; size < whole.size(); ++size) {
        Bytes shorter = whole;  // the bytes stay, but no longer belong to the frame
        setDeclaredLength(shorter, size);
        FrameView view;
        if (size < 5) {
            expectRefused(shorter, BRX_ERR_LENGTH_MISMATCH, "declared " + std::to_string(size));
        } else if (size == 5 || size == 19) {
            ASSERT_EQ(viewFrame(shorter, view), 0) << size;
            EXPECT_EQ(view.hasHead, size == 19);
            EXPECT_FALSE(view.hasBody);
        } else {
            expectRefused(shorter, BRX_ERR_NO_DATA, "declared " + std::to_string(size));
        }
    }
}

TEST(BodyView, BytesAfterTheFrameAreLeftAlone) {
    Bytes encoded = smallFrame();
    for (const char byte : hex("25 00 00 00 01 7A")) {
        encoded.push_back(byte);
    }
    FrameView view;
    ASSERT_EQ(viewFrame(encoded, view), 0);
    EXPECT_EQ(textOfBytes(view.body), "abc");
}

TEST(BodyView, HostileLengthsAreRefused) {
    struct Case {
        const char* what;
        Bytes encoded;
        int result;
    };
    const std::string head = smallHead;
    Bytes declaresMore = smallFrame();
    setDeclaredLength(declaresMore, declaresMore.size() + 1);
    Bytes declaresMost = smallFrame();
    setDeclaredLength(declaresMost, 0xFFFFFFFF);
    Bytes bodyReachesPastTheFrame = frameOf(head + "25 00 00 00 04 61 62 63");
    bodyReachesPastTheFrame.push_back('d');  // is there, but is not the frame's

    const Case cases[] = {
        {"declared length one too many", declaresMore, BRX_ERR_NO_DATA},
        {"declared length 2^32 - 1", declaresMost, BRX_ERR_NO_DATA},
        {"body of 2^32 - 1", frameOf(head + "25 FF FF FF FF 61"), BRX_ERR_NO_DATA},
        {"body of 2^31", frameOf(head + "25 80 00 00 00 61"), BRX_ERR_NO_DATA},
        {"body one too long", frameOf(head + "25 00 00 00 02 61"), BRX_ERR_NO_DATA},
        {"body past the frame", bodyReachesPastTheFrame, BRX_ERR_NO_DATA},
        {"body of length 0", frameOf(head + "25 00 00 00 00"), BRX_ERR_ZERO_LENGTH},
        {"head of 2^32 - 1", frameOf("15 FF FF FF FF 40"), BRX_ERR_NO_DATA},
        {"head one too long", frameOf("15 00 00 00 02 40"), BRX_ERR_NO_DATA},
        {"length of 3 bytes", frameOf(head + "25 00 00 00"), BRX_ERR_NO_DATA},
        {"tag without end", frameOf(head + "A5"), BRX_ERR_NO_DATA},
        {"tag above 32 bits", frameOf(head + "FF FF FF FF 7F"), BRX_ERR_NO_DATA},
        {"unknown field of 2^32 - 1", frameOf("35 FF FF FF FF 00"), BRX_ERR_NO_DATA},
        {"unknown field of 8 bytes in 7", frameOf("34 01 02 03 04 05 06 07"), BRX_ERR_NO_DATA},
        {"unknown varint without end", frameOf("30 80 80"), BRX_ERR_NO_DATA},
    };
    for (const Case& c : cases) {
        expectRefused(c.encoded, c.result, c.what);
    }
}

TEST(BodyView, UnknownFieldsAreSteppedOver) {
    const char* const values[] = {"30 81 01",                    // varint
                                  "31 7F",                       // 1 byte
                                  "32 25 25",                    // 2 bytes
                                  "33 25 25 25 25",              // 4 bytes
                                  "34 25 25 25 25 25 25 25 25",  // 8 bytes
                                  "35 00 00 00 02 25 25",        // delimited
                                  "05 00 00 00 00",              // field number 0
                                  "95 80 04 00 00 00 00"};       // field number 4097
    for (const char* const value : values) {
        for (const std::string& fields : {value + std::string(" ") + smallHead + smallBody,
                                          smallHead + std::string(" ") + value + smallBody,
                                          std::string(smallHead) + smallBody + " " + value}) {
            FrameView view;
            const Bytes encoded = frameOf(fields);
            ASSERT_EQ(viewFrame(encoded, view), 0) << fields;
            EXPECT_EQ(view.head.size(), 9u) << fields;
            EXPECT_EQ(textOfBytes(view.body), "abc") << fields;
        }
    }
}

TEST(BodyView, UnknownWireTypesAreRefused) {
    for (int type = 6; type < 16; ++type) {
        Bytes encoded = frameOf("30 00 00 00 00");
        encoded[5] = static_cast<char>(0x30 | type);
        expectRefused(encoded, BRX_ERR_BAD_TYPE_ID, "wire type " + std::to_string(type));
    }
}

TEST(BodyView, GoesByFieldNumbersAloneInAnyOrderAndTheLastWins) {
    FrameView view;
    const Bytes encoded =
        frameOf("20 00 00 00 01 78 " + std::string(smallBody) + "1F 00 00 00 01 40 " + smallHead);
    ASSERT_EQ(viewFrame(encoded, view), 0);
    EXPECT_EQ(view.head.size(), 9u);
    EXPECT_EQ(textOfBytes(view.body), "abc");
}

TEST(BodyView, ABodyThatLooksLikeFieldsIsStillABody) {
    // As fields these bytes would be a body of their own, and one that nothing can step over. This
    // is what a decoder of the whole frame meets, and why bodies are cut out instead.
    const Bytes body = hex("25 00 00 00 01 7A 7F");
    for (const bool varint : {true, false}) {
        const Bytes encoded = encodeWithBody(makeDataHead(), body, varint);

        TZRPFrame whole;
        ASSERT_EQ(whole.construct(), 0);
        EXPECT_EQ(whole.unpackTLV(encoded.data(), encoded.size(), nullptr), BRX_ERR_BAD_TYPE_ID);

        FrameView view;
        ASSERT_EQ(viewFrame(encoded, view), 0);
        EXPECT_EQ(view.varint, varint);
        EXPECT_EQ(Bytes(view.body.begin(), view.body.end()), body);
    }
}

TEST(BodyView, DecodesTheHeadAndNothingElse) {
    FrameView view;
    const Bytes encoded = smallFrame();
    ASSERT_EQ(viewFrame(encoded, view), 0);
    TZRPHead head = TZRPHead();
    ASSERT_EQ(decodeHead(view, head), 0);
    EXPECT_TRUE(head.has_Base());
    EXPECT_FALSE(head.has_Extend());
    EXPECT_EQ(head.stBase.wCommand, ZRP_CMD_DATA);
}

TEST(BodyView, DecodesTheHeadInTheFlavourOfTheFrame) {
    TZRPHead sent = makeDataHead();
    sent.stBase.dwSequence = 0x12345678;
    routeToZone(sent, 300, 400);
    for (const bool varint : {true, false}) {
        const Bytes encoded = encodeWithBody(sent, hex("01"), varint);
        FrameView view;
        ASSERT_EQ(viewFrame(encoded, view), 0);
        TZRPHead head = TZRPHead();
        ASSERT_EQ(decodeHead(view, head), 0);
        EXPECT_EQ(head.stBase.dwSequence, 0x12345678u);
        EXPECT_EQ(head.stBase.dwBodyLen, 1u);
        EXPECT_EQ(head.stExtend.stData.bRouteFlag, ZRP_ROUTE_ZONE);
        EXPECT_EQ(head.stExtend.stData.stRouteInfo.stSpecifyZone.dwTypeID, 300u);
        EXPECT_EQ(head.stExtend.stData.stRouteInfo.stSpecifyZone.dwZoneID, 400u);
    }
}

TEST(BodyView, ADamagedHeadDoesNotReadIntoTheBody) {
    // The base header announces two bytes more than the head has. The two bytes that follow, of the
    // body's field, would pass for a wHeadVersion of 0.
    const Bytes encoded =
        frameOf("15 00 00 00 09 15 00 00 00 06 40 93 80 01 " + std::string(smallBody));
    FrameView view;
    ASSERT_EQ(viewFrame(encoded, view), 0);
    TZRPHead head = TZRPHead();
    EXPECT_EQ(decodeHead(view, head), BRX_ERR_NO_DATA);
    EXPECT_TRUE(head.stBase.has_Command());
    EXPECT_FALSE(head.stBase.has_HeadVersion());
}

TEST(BodyView, AFrameWithoutHeadGivesAHeadAtItsDefaults) {
    FrameView view;
    const Bytes encoded = frameOf(smallBody);
    ASSERT_EQ(viewFrame(encoded, view), 0);
    TZRPHead head;
    memset(static_cast<void*>(&head), 0xEE, sizeof head);
    ASSERT_EQ(decodeHead(view, head), 0);
    EXPECT_EQ(head.stBase.wCommand, ZRP_CMD_NULL);
    EXPECT_FALSE(head.has_Base());
}

}  // namespace
}  // namespace zrp_test
