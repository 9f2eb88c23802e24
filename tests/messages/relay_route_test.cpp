// Relay targets and the three ways to name a route.
#include "tests/messages/make.h"

namespace zrp_test {
namespace {

using namespace quorva_zrp;

// --- The relay target ---------------------------------------------------------------------------

TEST(Relay, EncodesItsDefaults) {
    const TZRPRelay relay = made<TZRPRelay>();
    EXPECT_EQ(encode(relay, varint),
              written(0, "AA 00 00 00 27 10 00 25 00 00 00 10" + repeated(0, 16) +
                             "30 00 40 00 51 00 65 00 00 00 00"));
    EXPECT_EQ(encode(relay, fixed),
              written(0, "99 00 00 00 38 13 00 00 00 00 25 00 00 00 10" + repeated(0, 16) +
                             "34 00 00 00 00 00 00 00 00 44 00 00 00 00 00 00 00 00 51 00"
                             " 65 00 00 00 00"));
}

TEST(Relay, MapsItsSessionIdBackAndForth) {
    struct Case {
        int64_t session;
        const char* asVarint;
        const char* asFixed;
    };
    for (const Case& c :
         {Case{0, "40 00", "44 00 00 00 00 00 00 00 00"},
          Case{-1, "40 01", "44 FF FF FF FF FF FF FF FF"},
          Case{1, "40 02", "44 00 00 00 00 00 00 00 01"},
          Case{INT64_MAX, "40 FE FF FF FF FF FF FF FF FF 01", "44 7F FF FF FF FF FF FF FF"},
          Case{INT64_MIN, "40 FF FF FF FF FF FF FF FF FF 01", "44 80 00 00 00 00 00 00 00"}}) {
        TZRPRelay relay = made<TZRPRelay>();
        relay.llSessionID = c.session;
        const std::string identity = "25 00 00 00 10" + repeated(0, 16);
        EXPECT_EQ(encodeFields(relay, varint),
                  written(0, "10 00" + identity + "30 00" + c.asVarint + "51 00 65 00 00 00 00"));
        EXPECT_EQ(encodeFields(relay, fixed),
                  written(0, "13 00 00 00 00" + identity + "34 00 00 00 00 00 00 00 00" +
                                 c.asFixed + "51 00 65 00 00 00 00"));
        relay.llSessionID = 77;
        EXPECT_EQ(decodeFields(relay, c.asVarint, varint).result, 0);
        EXPECT_EQ(relay.llSessionID, c.session);
        relay.llSessionID = 77;
        EXPECT_EQ(decodeFields(relay, c.asFixed, fixed).result, 0);
        EXPECT_EQ(relay.llSessionID, c.session);
    }
}

TEST(Relay, FillsAsMuchOfItsIdentityAsArrives) {
    TZRPRelay relay = made<TZRPRelay>();
    put(relay.szIdentity, repeated(0x77, 16));
    EXPECT_EQ(decodeFields(relay, "25 00 00 00 04 01 02 03 04", varint), (Read{0, 9}));
    EXPECT_EQ(head(relay.szIdentity, 16), "01 02 03 04 " + repeated(0x77, 12));
    EXPECT_TRUE(relay.has_Identity());
    EXPECT_EQ(relay.presence, 0x2u);
}

TEST(Relay, RefusesAnIdentityOfLengthZero) {
    TZRPRelay relay = made<TZRPRelay>();
    EXPECT_EQ(decodeFields(relay, "25 00 00 00 00", varint), (Read{-37, 5}));
    EXPECT_EQ(decodeFields(relay, "25 00 00 00 00 01 02", fixed), (Read{-37, 5}));
    EXPECT_TRUE(relay.has_Identity());
}

TEST(Relay, StoresAnIdentityThatIsCutShortAsFarAsItCame) {
    TZRPRelay relay = made<TZRPRelay>();
    put(relay.szIdentity, repeated(0x77, 16));
    EXPECT_EQ(decodeFields(relay, "25 00 00 00 10 01 02", varint), (Read{-2, 7}));
    EXPECT_EQ(head(relay.szIdentity, 16), "01 02 " + repeated(0x77, 14));
}

TEST(Relay, DeliberatelyReadsWhatExceedsItsIdentityAsFields) {
    TZRPRelay relay = made<TZRPRelay>();
    EXPECT_EQ(decodeFields(relay, "25 00 00 00 12" + counting(0x10, 16) + "51 09", varint),
              (Read{0, 23}));
    EXPECT_EQ(head(relay.szIdentity, 16), counting(0x10, 16));
    EXPECT_EQ(relay.bServerType, 9);
    EXPECT_EQ(relay.dwPosition, 0u);
    EXPECT_EQ(decodeFields(relay, "25 00 00 00 11" + counting(0x10, 16) + "0F", varint),
              (Read{-35, 22}));
    EXPECT_EQ(decodeFields(relay, "25 00 00 00 11" + counting(0x10, 16), varint), (Read{0, 21}))
        << "the seventeenth byte is never asked for";
}

TEST(Relay, BoundsTheNameOfItsService) {
    TZRPRelay relay = made<TZRPRelay>();
    put(relay.szStartServiceName, std::string(127, 's'));
    EXPECT_EQ(encodeFields(relay, varint),
              written(0, "10 00 25 00 00 00 10" + repeated(0, 16) + "30 00 40 00 51 00" +
                             "65 00 00 00 7F" + repeated('s', 127)));
    putWithoutNul(relay.szStartServiceName, 's');
    EXPECT_EQ(encodeFields(relay, varint), written(-3, "10 00 25 00 00 00 10" + repeated(0, 16) +
                                                           "30 00 40 00 51 00 65 A5 A5 A5 A5"));
    EXPECT_EQ(decodeFields(relay, "65 00 00 00 80" + repeated('s', 128), varint), (Read{-3, 5}));
    EXPECT_EQ(decodeFields(relay, "65 00 00 00 7F" + repeated('t', 127), varint), (Read{0, 132}));
    EXPECT_EQ(head(relay.szStartServiceName, 128), repeated('t', 127) + " 00");
}

TEST(RelayRequest, AlwaysCarriesItsRelay) {
    TZRPRelayReqBody request = made<TZRPRelayReqBody>();
    const std::string relay = "25 00 00 00 22 10 00 25 00 00 00 10" + repeated(0, 16) +
                              "30 00 40 00 51 00 65 00 00 00 00";
    EXPECT_EQ(encodeFields(request, varint), written(0, "10 00" + relay));
    request.iRelayType = -1;
    EXPECT_EQ(encodeFields(request, varint), written(0, "10 01" + relay));
    request.iRelayType = INT32_MAX;
    EXPECT_EQ(encodeFields(request, varint), written(0, "10 FE FF FF FF 0F" + relay));
}

TEST(RelayRequest, MapsItsTypeBackAndForth) {
    TZRPRelayReqBody request = made<TZRPRelayReqBody>();
    EXPECT_EQ(decodeFields(request, "10 FF FF FF FF 0F", varint), (Read{0, 6}));
    EXPECT_EQ(request.iRelayType, INT32_MIN);
    EXPECT_EQ(decodeFields(request, "10 03", varint), (Read{0, 2}));
    EXPECT_EQ(request.iRelayType, -2);
    EXPECT_EQ(decodeFields(request, "13 FF FF FF FE", fixed), (Read{0, 5}));
    EXPECT_EQ(request.iRelayType, -2);
}

// --- Routes -------------------------------------------------------------------------------------

TEST(Route, EncodesTheFreshMemberOfEachSelector) {
    struct Case {
        long long selector;
        const char* asVarint;
        const char* asFixed;
    };
    for (const Case& c :
         {Case{ZRP_ROUTE_NONE, "01 00", "01 00"},
          Case{ZRP_ROUTE_ZONE, "15 00 00 00 04 10 00 20 00",
               "15 00 00 00 0A 13 00 00 00 00 23 00 00 00 00"},
          Case{ZRP_ROUTE_SERVER, "25 00 00 00 04 10 00 21 00",
               "25 00 00 00 0B 14 00 00 00 00 00 00 00 00 21 00"},
          Case{ZRP_ROUTE_LOGIN_POSITION, "31 00", "31 00"},
          Case{ZRP_ROUTE_NAME, "45 00 00 00 05 15 00 00 00 00", "45 00 00 00 05 15 00 00 00 00"}}) {
        const TZRPRouteInfo route = made<TZRPRouteInfo>(c.selector);
        EXPECT_EQ(encodeFields(c.selector, route, varint), written(0, c.asVarint));
        EXPECT_EQ(encodeFields(c.selector, route, fixed), written(0, c.asFixed));
    }
}

TEST(Route, RefusesSelectorsOutsideItsTable) {
    const TZRPRouteInfo route = made<TZRPRouteInfo>();
    for (const long long selector : {5LL, -1LL, 256LL, 4294967296LL}) {
        EXPECT_EQ(encode(selector, route, varint), written(-33, "AA 00 00 00 05"));
        EXPECT_EQ(encode(selector, route, fixed), written(-33, "99 00 00 00 05"));
    }
}

TEST(Route, DecodesAZone) {
    TZRPRouteInfo route = made<TZRPRouteInfo>();
    long long selector = noSelector;
    EXPECT_EQ(decode(route, selector, "AA 00 00 00 0E 15 00 00 00 04 10 07 20 08"), (Read{0, 14}));
    EXPECT_EQ(selector, 1);
    EXPECT_EQ(route.stSpecifyZone.dwTypeID, 7u);
    EXPECT_EQ(route.stSpecifyZone.dwZoneID, 8u);
}

TEST(Route, TakesAnUnknownWayItCannotEncodeAgain) {
    TZRPRouteInfo route = made<TZRPRouteInfo>();
    long long selector = noSelector;
    EXPECT_EQ(decode(route, selector, "AA 00 00 00 08 70 AC 02"), (Read{0, 8}));
    EXPECT_EQ(selector, 7);
    EXPECT_EQ(encode(selector, route, varint), written(-33, "AA 00 00 00 05"));
    EXPECT_EQ(dumpMember(selector, route).text, "");
}

TEST(Route, BoundsTheNameOfTheService) {
    TZRPRouteInfo route = made<TZRPRouteInfo>(ZRP_ROUTE_NAME);
    putWithoutNul(route.stSpecifyName.szServiceName, 'n');
    EXPECT_EQ(encode(ZRP_ROUTE_NAME, route, varint),
              written(-3, "AA 00 00 00 0F 45 A5 A5 A5 A5 15 A5 A5 A5 A5"));
    EXPECT_EQ(dumpMember(ZRP_ROUTE_NAME, route).result, -3);
    long long selector = noSelector;
    EXPECT_EQ(
        decodeFields(route, selector, "45 00 00 00 85 15 00 00 00 80" + repeated('n', 128), varint),
        (Read{-3, 10}));
    EXPECT_EQ(selector, noSelector);
}

TEST(Route, PrintsEachMember) {
    TZRPRouteInfo route = made<TZRPRouteInfo>();
    EXPECT_EQ(dumpMember(0, route, 0, ' ').text, "[chNull]0x00 ");
    EXPECT_EQ(dumpMember(1, route, 0, ' ').text, "[stSpecifyZone] [dwTypeID]0 [dwZoneID]0 ");
    EXPECT_EQ(dumpMember(2, route, 0, ' ').text,
              "[stSpecifyServer] [ullServerID]0 [bServerType]0x00 ");
    EXPECT_EQ(dumpMember(3, route, 0, ' ').text, "[chLOGINPOSITION]0x00 ");
    EXPECT_EQ(dumpMember(4, route, 0, ' ').text, "[stSpecifyName] [szServiceName] ");
    EXPECT_EQ(dumpMember(5, route, 0, ' ').text, "");
}

TEST(RouteChange, CarriesTheLargestServerId) {
    TZRPRouteChangeBody change = made<TZRPRouteChangeBody>();
    change.ullServerID = UINT64_MAX;
    EXPECT_EQ(encode(change, varint),
              written(0, "AA 00 00 00 10 10 FF FF FF FF FF FF FF FF FF 01"));
    EXPECT_EQ(encode(change, fixed), written(0, "99 00 00 00 0E 14 FF FF FF FF FF FF FF FF"));
    TZRPRouteChangeBody decoded = made<TZRPRouteChangeBody>();
    EXPECT_EQ(decodeFields(decoded, "10 FF FF FF FF FF FF FF FF FF 01", varint), (Read{0, 11}));
    EXPECT_EQ(decoded.ullServerID, UINT64_MAX);
}

TEST(RouteChange, DeliberatelyDecodesAServerIdThatIsMissing) {
    TZRPRouteChangeBody change = made<TZRPRouteChangeBody>();
    change.ullServerID = 77;
    EXPECT_EQ(decode(change, "AA 00 00 00 06 10"), (Read{0, 6}));
    EXPECT_EQ(change.ullServerID, 0u);
    EXPECT_TRUE(change.has_ServerID());
}

}  // namespace
}  // namespace zrp_test
