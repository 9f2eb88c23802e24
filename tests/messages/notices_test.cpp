// The data head, the queue notice and the stop notices.
#include "tests/messages/make.h"

namespace zrp_test {
namespace {

using namespace quorva_zrp;

TEST(StopNotices, EncodeAsTheyAre) {
    const TZRPCStopBody client = made<TZRPCStopBody>();
    EXPECT_EQ(encode(client, varint), written(0, "AA 00 00 00 07 10 00"));
    EXPECT_EQ(encode(client, fixed), written(0, "99 00 00 00 0A 13 00 00 00 00"));
    TZRPSStopBody server = made<TZRPSStopBody>();
    server.dwCode = 300;
    server.dwExErrCode = 1;
    EXPECT_EQ(encode(server, varint), written(0, "AA 00 00 00 0A 10 AC 02 20 01"));
    EXPECT_EQ(encode(server, fixed), written(0, "99 00 00 00 0F 13 00 00 01 2C 23 00 00 00 01"));
}

TEST(StopNotices, DecodeAsTheyAre) {
    TZRPSStopBody server = made<TZRPSStopBody>();
    EXPECT_EQ(decode(server, "AA 00 00 00 0A 10 AC 02 20 01"), (Read{0, 10}));
    EXPECT_EQ(server.dwCode, 300u);
    EXPECT_EQ(server.dwExErrCode, 1u);
    EXPECT_EQ(server.presence, 0x3u);
    EXPECT_EQ(decode(server, "AA 00 00 00 08 10 AC 02"), (Read{0, 8}));
    EXPECT_EQ(server.presence, 0x1u);
    EXPECT_EQ(server.dwExErrCode, 1u);
}

TEST(QueueNotice, KeepsTheTotalThatDoesNotArrive) {
    TZRPWaitBody notice = made<TZRPWaitBody>();
    notice.dwTotal = 77;
    EXPECT_EQ(decode(notice, "AA 00 00 00 09 10 05 30 06"), (Read{0, 9}));
    EXPECT_EQ(notice.dwPosition, 5u);
    EXPECT_EQ(notice.dwTotal, 77u);
    EXPECT_EQ(notice.dwRoughTime, 6u);
    EXPECT_TRUE(notice.has_Position());
    EXPECT_FALSE(notice.has_Total());
    EXPECT_TRUE(notice.has_RoughTime());
}

TEST(QueueNotice, CarriesTheLargestValues) {
    TZRPWaitBody notice = made<TZRPWaitBody>();
    notice.dwPosition = notice.dwTotal = notice.dwRoughTime = UINT32_MAX;
    EXPECT_EQ(encode(notice, varint),
              written(0, "AA 00 00 00 17 10 FF FF FF FF 0F 20 FF FF FF FF 0F 30 FF FF FF FF 0F"));
    EXPECT_EQ(encode(notice, fixed),
              written(0, "99 00 00 00 14 13 FF FF FF FF 23 FF FF FF FF 33 FF FF FF FF"));
}

// --- The data head ------------------------------------------------------------------------------

TEST(DataHead, EncodesItsDefaults) {
    const TZRPDataHead data = made<TZRPDataHead>();
    EXPECT_EQ(encode(data, varint),
              written(0, "AA 00 00 00 12 11 00 21 00 31 00 45 00 00 00 02 01 00"));
    EXPECT_EQ(encode(data, fixed),
              written(0, "99 00 00 00 12 11 00 21 00 31 00 45 00 00 00 02 01 00"));
}

TEST(DataHead, CarriesTheMemberThatItsRouteFlagNames) {
    TZRPDataHead data = made<TZRPDataHead>();
    data.bRouteFlag = ZRP_ROUTE_LOGIN_POSITION;
    EXPECT_EQ(encodeFields(data, varint), written(0, "11 00 21 00 31 03 45 00 00 00 02 31 00"));
    data.bRouteFlag = ZRP_ROUTE_NAME;
    EXPECT_EQ(data.stRouteInfo.construct(ZRP_ROUTE_NAME), 0);
    put(data.stRouteInfo.stSpecifyName.szServiceName, "n");
    EXPECT_EQ(encodeFields(data, fixed),
              written(0, "11 00 21 00 31 04 45 00 00 00 0B 45 00 00 00 06 15 00 00 00 01 6E"));
}

TEST(DataHead, RefusesARouteFlagWithoutMember) {
    TZRPDataHead data = made<TZRPDataHead>();
    for (const uint8_t flag : {uint8_t{5}, uint8_t{255}}) {
        data.bRouteFlag = flag;
        const std::string bytes = "11 00 21 00 31 " + toHex(&flag, 1) + " 45 A5 A5 A5 A5";
        EXPECT_EQ(encodeFields(data, varint), written(-33, bytes));
        EXPECT_EQ(encodeFields(data, fixed), written(-33, bytes));
    }
}

TEST(DataHead, DeliberatelyNamesTheMemberThatWasOnTheWire) {
    TZRPDataHead data = made<TZRPDataHead>();
    EXPECT_EQ(decodeFields(data, "31 01 45 00 00 00 02 31 07", varint), (Read{0, 9}));
    EXPECT_EQ(data.bRouteFlag, 3);
    EXPECT_EQ(data.stRouteInfo.chLOGINPOSITION, 7);
    EXPECT_EQ(data.presence, 0xCu);
    // Without field 3 the previous value is replaced all the same.
    EXPECT_EQ(decodeFields(data, "45 00 00 00 07 25 00 00 00 02 21 09", varint), (Read{0, 12}));
    EXPECT_EQ(data.bRouteFlag, 2);
    EXPECT_EQ(data.stRouteInfo.stSpecifyServer.bServerType, 9);
    EXPECT_EQ(data.presence, 0x8u);
    // Field 3 behind the union has the last word.
    EXPECT_EQ(decodeFields(data, "45 00 00 00 02 31 07 31 01", varint), (Read{0, 9}));
    EXPECT_EQ(data.bRouteFlag, 1);
}

TEST(DataHead, KeepsItsRouteFlagWhenTheRouteFails) {
    TZRPDataHead data = made<TZRPDataHead>();
    EXPECT_EQ(decodeFields(data, "31 04 45 00 00 00 01 31 07", varint), (Read{-34, 9}));
    EXPECT_EQ(data.bRouteFlag, 4);
    EXPECT_EQ(decodeFields(data, "31 04 45 00 00 00 00", varint), (Read{-2, 7}));
    EXPECT_EQ(decodeFields(data, "31 04 45 00 00 00 01 56", varint), (Read{-35, 8}));
    EXPECT_EQ(data.bRouteFlag, 4);
    EXPECT_EQ(data.presence, 0xCu);
}

TEST(DataHead, PrintsTheMemberThatItsRouteFlagNames) {
    TZRPDataHead data = made<TZRPDataHead>();
    data.bCompressFlag = 1;
    data.bAllowLost = 2;
    data.bRouteFlag = 3;
    EXPECT_EQ(dump(data, 0, ' ').text,
              "[bCompressFlag]0x01 [bAllowLost]0x02 [bRouteFlag]0x03"
              " [stRouteInfo] [chLOGINPOSITION]0x00 ");
    data.bRouteFlag = 9;
    EXPECT_EQ(dump(data, 0, ' ').text,
              "[bCompressFlag]0x01 [bAllowLost]0x02 [bRouteFlag]0x09 [stRouteInfo] ");
}

}  // namespace
}  // namespace zrp_test
