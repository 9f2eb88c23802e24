// What an encode that fails leaves in the buffer: everything before the failure, holes where a
// length was to come, and nothing behind the used size but the start of a varint.
#include "tests/messages/make.h"

namespace zrp_test {
namespace {

using namespace quorva_zrp;

// A hole is a place kept for a length that never came: it holds what the buffer held.
const std::string hole = " A5 A5 A5 A5 ";

/// The result and the bytes in buffers of 0, 1, 2, ... bytes.
template <class T>
void expectInEveryRoom(const T& object, bool flavour, const std::vector<Written>& expected) {
    for (size_t room = 0; room < expected.size(); ++room) {
        EXPECT_EQ(encodeFields(object, flavour, room), expected[room]) << "in " << room << " bytes";
    }
}

TEST(FailedEncode, StopsBeforeATextThatDoesNotFit) {
    O2AuthData tokens = made<O2AuthData>();
    put(tokens.szAccessToken, "ab");
    const std::string first = "15 00 00 00 02 61 62";
    // Deliberate: with fewer than 4 bytes left for the length the text lands in their place, and
    // only then the length has no room.
    expectInEveryRoom(tokens, varint,
                      {written(-1, ""), written(-1, "15"), written(-1, "15"),
                       written(-1, "15 61 62"), written(-1, "15 61 62"), written(-1, "15" + hole),
                       written(-1, "15" + hole), written(-1, first), written(-1, first + "25"),
                       written(-1, first + "25"), written(-1, first + "25"),
                       written(-1, first + "25"), written(0, first + "25 00 00 00 00")});
}

TEST(FailedEncode, SaysTextTooLongBeforeNoRoom) {
    O2AuthData tokens = made<O2AuthData>();
    putWithoutNul(tokens.szAccessToken, 't');
    expectInEveryRoom(tokens, fixed,
                      {written(-1, ""), written(-3, "15"), written(-3, "15"), written(-3, "15"),
                       written(-3, "15"), written(-3, "15" + hole), written(-3, "15" + hole)});
    EXPECT_EQ(encode(tokens, fixed), written(-3, "99 00 00 00 0A 15" + hole));
    EXPECT_EQ(encode(tokens, varint), written(-3, "AA 00 00 00 0A 15" + hole));
}

TEST(FailedEncode, SaysTextTooLongForALaterText) {
    O2AuthData tokens = made<O2AuthData>();
    putWithoutNul(tokens.szExtend, 't');
    EXPECT_EQ(encodeFields(tokens, varint), written(-3, "15 00 00 00 00 25" + hole));
}

TEST(FailedEncode, WritesAnArrayThatDoesNotFitAsFarAsItFits) {
    TVESKAuthData data = made<TVESKAuthData>();
    data.wAuthLen = 3;
    put(data.szAuthInfo, "D1 D2 D3");
    const std::string start = "10 03 25 ";
    expectInEveryRoom(
        data, varint,
        {written(-1, ""), written(-1, "10"), written(-1, "10 03"), written(-1, start),
         written(-1, start + "D1"), written(-1, start + "D1 D2"), written(-1, start + "D1 D2 D3"),
         written(-1, start + hole), written(-1, start + hole + "D1"),
         written(-1, start + hole + "D1 D2"), written(0, start + "00 00 00 03 D1 D2 D3")});
}

TEST(FailedEncode, WritesAFixedArrayThatDoesNotFitAsFarAsItFits) {
    TVESKRawDHReq request = made<TVESKRawDHReq>();
    put(request.szDH_p, counting(0x01, 64));
    const std::string start = "12 00 00 35 ";
    for (size_t elements = 0; elements < 4; ++elements) {
        EXPECT_EQ(encodeFields(request, fixed, 4 + elements),
                  written(-1, start + counting(0x01, elements)));
    }
    for (size_t elements = 0; elements < 64; ++elements) {
        EXPECT_EQ(encodeFields(request, fixed, 8 + elements),
                  written(-1, start + hole + counting(0x01, elements)));
    }
    EXPECT_EQ(encodeFields(request, fixed, 72),
              written(0, start + "00 00 00 40" + counting(0x01, 64)));
}

TEST(FailedEncode, SaysReferTooBigBehindTheCount) {
    TVESKAuthData data = made<TVESKAuthData>();
    data.wAuthLen = 1025;
    EXPECT_EQ(encode(data, varint), written(-7, "AA 00 00 00 08 10 81 08"));
    EXPECT_EQ(encode(data, fixed), written(-7, "99 00 00 00 08 12 04 01"));
    data.wAuthLen = 65535;
    EXPECT_EQ(encodeFields(data, varint), written(-7, "10 FF FF 03"));
    // A count that does not fit is no room first.
    EXPECT_EQ(encodeFields(data, varint, 3), (Written{-1, 1, "10", "FF FF"}));
    EXPECT_EQ(encodeFields(data, varint, 4), written(-7, "10 FF FF 03"));
}

TEST(FailedEncode, SaysReferTooBigBehindTheCountOfAnOptionalElement) {
    TZRPAckBody body = made<TZRPAckBody>();
    for (const uint8_t count : {uint8_t{2}, uint8_t{128}, uint8_t{255}}) {
        body.bHasAuthInfo = count;
        const std::string bytes = "11 " + toHex(&count, 1);
        EXPECT_EQ(encodeFields(body, varint), written(-7, bytes));
        EXPECT_EQ(encodeFields(body, fixed), written(-7, bytes));
        EXPECT_EQ(encodeFields(body, fixed, 1), written(-1, "11"));
        EXPECT_EQ(encodeFields(body, fixed, 2), written(-7, bytes));
    }
}

TEST(FailedEncode, StopsInsideANestedUnion) {
    const TZRPDataHead data = made<TZRPDataHead>();
    const std::string start = "11 00 21 00 31 00 45 ";
    const std::vector<Written> expected = {written(-1, ""),
                                           written(-1, "11"),
                                           written(-1, "11 00"),
                                           written(-1, "11 00 21"),
                                           written(-1, "11 00 21 00"),
                                           written(-1, "11 00 21 00 31"),
                                           written(-1, "11 00 21 00 31 00"),
                                           written(-1, start),
                                           written(-1, start + "01"),
                                           written(-1, start + "01 00"),
                                           written(-1, start + "01 00"),
                                           written(-1, start + hole),
                                           written(-1, start + hole + "01"),
                                           written(0, start + "00 00 00 02 01 00")};
    expectInEveryRoom(data, varint, expected);
    expectInEveryRoom(data, fixed, expected);
}

TEST(FailedEncode, SaysBadSelectorBeforeNoRoom) {
    TZRPDataHead data = made<TZRPDataHead>();
    data.bRouteFlag = 9;
    const std::string start = "11 00 21 00 31 09 45 ";
    for (const bool flavour : {varint, fixed}) {
        EXPECT_EQ(encodeFields(data, flavour, 6), written(-1, "11 00 21 00 31 09"));
        for (const size_t room : {size_t{7}, size_t{8}, size_t{9}, size_t{10}}) {
            EXPECT_EQ(encodeFields(data, flavour, room), written(-33, start)) << room;
        }
        EXPECT_EQ(encodeFields(data, flavour, 11), written(-33, start + hole));
        EXPECT_EQ(encodeFields(data, flavour), written(-33, start + hole));
    }
}

TEST(FailedEncode, StopsInsideANestedStructure) {
    TZRPAckBody body = made<TZRPAckBody>();
    body.bHasAuthInfo = 1;
    const std::string outer = "11 01 25" + hole;
    EXPECT_EQ(encodeFields(body, varint, 3), written(-1, "11 01 25"));
    // Deliberate: the start of the nested fields lands where the length was to come.
    EXPECT_EQ(encodeFields(body, varint, 4), written(-1, "11 01 25 15"));
    EXPECT_EQ(encodeFields(body, varint, 6), written(-1, "11 01 25 15 10 00"));
    EXPECT_EQ(encodeFields(body, varint, 7), written(-1, outer));
    EXPECT_EQ(encodeFields(body, varint, 8), written(-1, outer + "15"));
    EXPECT_EQ(encodeFields(body, varint, 10), written(-1, outer + "15 10 00"));
    EXPECT_EQ(encodeFields(body, varint, 12), written(-1, outer + "15" + hole));
    EXPECT_EQ(encodeFields(body, varint, 13), written(-1, outer + "15" + hole + "10"));
    // The account is complete and has its length; the answer around it has not.
    EXPECT_EQ(encodeFields(body, varint, 25),
              written(-1, outer + "15 00 00 00 0D 10 00 21 00 35 00 00 00 02 01 00 40 00"));
}

TEST(FailedEncode, PassesTheResultOfANestedFieldUp) {
    TZRPAckBody body = made<TZRPAckBody>();
    body.bHasAuthInfo = 1;
    body.stAuthResInfo.stAccount.bFormat = 4;
    EXPECT_EQ(encodeFields(body, fixed),
              written(-33, "11 01 25" + hole + "15" + hole + "12 00 00 21 04 35" + hole));
    body.stAuthResInfo.stAccount.bFormat = 3;
    putWithoutNul(body.stAuthResInfo.stAccount.stValue.szSTRING, 's');
    EXPECT_EQ(encodeFields(body, fixed), written(-3, "11 01 25" + hole + "15" + hole +
                                                         "12 00 00 21 03 35" + hole + "35" + hole));
}

TEST(FailedEncode, LeavesTheStartOfATagOrVarintInTheFreeBytes) {
    const TZRPBase base = made<TZRPBase>();
    const std::string seven = "10 00 20 00 30 00 40 00 50 00 61 00 70 00";
    EXPECT_EQ(encodeFields(base, varint, 15), (Written{-1, 14, toHex(hex(seven)), "80"}));
    TZRPCStopBody notice = made<TZRPCStopBody>();
    notice.dwReserved = 0xFFFFFFFF;
    EXPECT_EQ(encodeFields(notice, varint, 5), (Written{-1, 1, "10", "FF FF FF FF"}));
    EXPECT_EQ(encodeFields(notice, fixed, 4), written(-1, "13"));
    TZRPRelayReqBody request = made<TZRPRelayReqBody>();
    request.iRelayType = INT32_MIN;
    EXPECT_EQ(encodeFields(request, varint, 3), (Written{-1, 1, "10", "FF FF"}));
    TZRPRouteChangeBody change = made<TZRPRouteChangeBody>();
    change.ullServerID = 300;
    EXPECT_EQ(encodeFields(change, varint, 2), (Written{-1, 1, "10", "AC"}));
    EXPECT_EQ(encodeFields(change, fixed, 8), written(-1, "14"));
}

}  // namespace
}  // namespace zrp_test
