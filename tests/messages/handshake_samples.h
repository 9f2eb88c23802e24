// Samples of the handshake heads and the completion body.
#pragma once

#include "tests/messages/account_samples.h"
#include "tests/messages/key_samples.h"
#include "tests/messages/route_samples.h"

namespace zrp_test {

template <>
struct Sample<quorva_zrp::TZRPSynHead> {
    using Type = quorva_zrp::TZRPSynHead;
    using Account = Sample<quorva_zrp::TVESKAccount>;
    using RelayRequest = Sample<quorva_zrp::TZRPRelayReqBody>;
    using AuthRequest = Sample<quorva_zrp::TZRPAuthReqBody>;
    static constexpr const char* name = "TZRPSynHead";
    static constexpr uint32_t presence = 0x7FFF;
    static constexpr size_t maxVarint = 2702;
    static constexpr size_t maxFixed = 2685;

    static void fields(auto& object, const auto& with) {
        with(object.bKeyMethod, 4);
        with.member(object.stKeyInfo, 4);
        with.nested(object.stKeyInfo.stReqByEncDH);
        with(object.bEncMethod, 0x11);
        with(object.llGameID, -1234567890123);
        with(object.iUnitID, 77);
        with(object.iClientType, -2147483648LL);
        with.nested(object.stAccount);
        with(object.bHasRelayInfo, 1);
        with.nested(object.stRelayReqInfo);
        with(object.bHasAuthInfo, 1);
        with.nested(object.stAuthReqInfo);
        with(object.bSupportCompressMethodList, 0x0F);
        with(object.bRouteFlag, 2);
        with.member(object.stRouteInfo, 2);
        with.nested(object.stRouteInfo.stSpecifyServer);
        with(object.dwReserved, 4000000000);
    }
    static Encoding withVarint() {
        return {
            "AA 00 00 00 EB",
            {"11 04", "25 00 00 00 12 45 00 00 00 0D 11 85 20 04 35 00 00 00 04 E0 E1 E2 E3",
             "31 11", "40 95 93 D8 9F EE 47", "50 9A 01", "60 FF FF FF FF 0F",
             "75 00 00 00 18" + Account::withVarint().fieldBytes(), "81 01 01",
             "95 01 00 00 00 39" + RelayRequest::withVarint().fieldBytes(), "A1 01 01",
             "B5 01 00 00 00 2E" + AuthRequest::withVarint().fieldBytes(), "C1 01 0F", "D1 01 02",
             "E5 01 00 00 00 12 25 00 00 00 0D 10 80 80 80 80 80 80 80 80 80 01 21 42",
             "F0 01 80 D0 AC F3 0E"}};
    }
    static Encoding withFixed() {
        return {"99 00 00 00 F7",
                {"11 04", "25 00 00 00 13 45 00 00 00 0E 11 85 22 00 04 35 00 00 00 04 E0 E1 E2 E3",
                 "31 11", "44 FF FF FE E0 8E 04 FB 35", "53 00 00 00 4D", "63 80 00 00 00",
                 "75 00 00 00 1B" + Account::withFixed().fieldBytes(), "81 01 01",
                 "95 01 00 00 00 42" + RelayRequest::withFixed().fieldBytes(), "A1 01 01",
                 "B5 01 00 00 00 2D" + AuthRequest::withFixed().fieldBytes(), "C1 01 0F",
                 "D1 01 02", "E5 01 00 00 00 10 25 00 00 00 0B 14 80 00 00 00 00 00 00 00 21 42",
                 "F3 01 EE 6B 28 00"}};
    }
    static Calls dump() {
        return join(
            {byte("[bKeyMethod]", "0x04"),
             under("[stKeyInfo]",
                   {under("[stReqByEncDH]", {Sample<quorva_zrp::TVESKEncDHInfo>::dump()})}),
             byte("[bEncMethod]", "0x11"), signed64("[llGameID]", "-1234567890123"),
             decimal("[iUnitID]", "77"), decimal("[iClientType]", "-2147483648"),
             under("[stAccount]", {Account::dump()}), byte("[bHasRelayInfo]", "0x01"),
             under("[stRelayReqInfo]", {RelayRequest::dump()}), byte("[bHasAuthInfo]", "0x01"),
             under("[stAuthReqInfo]", {AuthRequest::dump()}),
             byte("[bSupportCompressMethodList]", "0x0f"), byte("[bRouteFlag]", "0x02"),
             under("[stRouteInfo]", {under("[stSpecifyServer]",
                                           {Sample<quorva_zrp::SpecifyServerRouteInfo>::dump()})}),
             unsigned32("[dwReserved]", "4000000000")});
    }
    static void expectDefaults(const Type& object) {
        expectZero(object.bKeyMethod, object.bEncMethod, object.llGameID, object.iUnitID,
                   object.iClientType, object.bHasRelayInfo, object.bHasAuthInfo,
                   object.bSupportCompressMethodList, object.bRouteFlag, object.dwReserved,
                   object.presence);
        expectOnlyPlaceholderCleared(object.stKeyInfo);
        Account::expectDefaults(object.stAccount);
        RelayRequest::expectDefaults(object.stRelayReqInfo);
        AuthRequest::expectDefaults(object.stAuthReqInfo);
        expectOnlyPlaceholderCleared(object.stRouteInfo);
    }
    static std::vector<Accessors<Type>> accessors() {
        return {ZRP_TEST_ACCESSORS(Type, KeyMethod),
                ZRP_TEST_ACCESSORS(Type, KeyInfo),
                ZRP_TEST_ACCESSORS(Type, EncMethod),
                ZRP_TEST_ACCESSORS(Type, GameID),
                ZRP_TEST_ACCESSORS(Type, UnitID),
                ZRP_TEST_ACCESSORS(Type, ClientType),
                ZRP_TEST_ACCESSORS(Type, Account),
                ZRP_TEST_ACCESSORS(Type, HasRelayInfo),
                ZRP_TEST_ACCESSORS(Type, RelayReqInfo),
                ZRP_TEST_ACCESSORS(Type, HasAuthInfo),
                ZRP_TEST_ACCESSORS(Type, AuthReqInfo),
                ZRP_TEST_ACCESSORS(Type, SupportCompressMethodList),
                ZRP_TEST_ACCESSORS(Type, RouteFlag),
                ZRP_TEST_ACCESSORS(Type, RouteInfo),
                ZRP_TEST_ACCESSORS(Type, Reserved)};
    }
};

template <>
struct Sample<quorva_zrp::TZRPAckHead> {
    using Type = quorva_zrp::TZRPAckHead;
    static constexpr const char* name = "TZRPAckHead";
    static constexpr uint32_t presence = 0x3F;
    static constexpr size_t maxVarint = 1108;
    static constexpr size_t maxFixed = 1105;

    static void fields(auto& object, const auto& with) {
        with(object.bEncMethod, 0x22);
        with(object.bKeyMethod, 2);
        with.member(object.stKeyInfo, 2);
        with.nested(object.stKeyInfo.stKey);
        with(object.bCompressMethod, 3);
        with(object.dwCompressLimit, 2048);
        with(object.dwReserved, 9);
    }
    static Encoding withVarint() {
        return {
            "AA 00 00 00 26",
            {"11 22", "21 02", "35 00 00 00 11 25 00 00 00 0C 11 05 25 00 00 00 05 51 52 53 54 55",
             "41 03", "50 80 10", "60 09"}};
    }
    static Encoding withFixed() {
        return {
            "99 00 00 00 2B",
            {"11 22", "21 02", "35 00 00 00 11 25 00 00 00 0C 11 05 25 00 00 00 05 51 52 53 54 55",
             "41 03", "53 00 00 08 00", "63 00 00 00 09"}};
    }
    static Calls dump() {
        return join(
            {byte("[bEncMethod]", "0x22"), byte("[bKeyMethod]", "0x02"),
             under("[stKeyInfo]", {under("[stKey]", {Sample<quorva_zrp::TVESKKey>::dump()})}),
             byte("[bCompressMethod]", "0x03"), unsigned32("[dwCompressLimit]", "2048"),
             unsigned32("[dwReserved]", "9")});
    }
    static void expectDefaults(const Type& object) {
        expectZero(object.bEncMethod, object.bKeyMethod, object.bCompressMethod, object.dwReserved,
                   object.presence);
        expectOnlyPlaceholderCleared(object.stKeyInfo);
        EXPECT_EQ(object.dwCompressLimit, 1024u);
    }
    static std::vector<Accessors<Type>> accessors() {
        return {ZRP_TEST_ACCESSORS(Type, EncMethod),     ZRP_TEST_ACCESSORS(Type, KeyMethod),
                ZRP_TEST_ACCESSORS(Type, KeyInfo),       ZRP_TEST_ACCESSORS(Type, CompressMethod),
                ZRP_TEST_ACCESSORS(Type, CompressLimit), ZRP_TEST_ACCESSORS(Type, Reserved)};
    }
};

template <>
struct Sample<quorva_zrp::TZRPBingoBody> {
    using Type = quorva_zrp::TZRPBingoBody;
    using Relay = Sample<quorva_zrp::TZRPRelay>;
    static constexpr const char* name = "TZRPBingoBody";
    static constexpr uint32_t presence = 0x7;
    static constexpr size_t maxVarint = 238;
    static constexpr size_t maxFixed = 232;

    static void fields(auto& object, const auto& with) {
        with.nested(object.stRelayInfo);
        with(object.bCompressMethod, 7);
        with(object.dwCompressLimit, 512);
    }
    static Encoding withVarint() {
        return {"AA 00 00 00 40",
                {"15 00 00 00 31" + Relay::withVarint().fieldBytes(), "21 07", "30 80 04"}};
    }
    static Encoding withFixed() {
        return {"99 00 00 00 49",
                {"15 00 00 00 38" + Relay::withFixed().fieldBytes(), "21 07", "33 00 00 02 00"}};
    }
    static Calls dump() {
        return join({under("[stRelayInfo]", {Relay::dump()}), byte("[bCompressMethod]", "0x07"),
                     unsigned32("[dwCompressLimit]", "512")});
    }
    static void expectDefaults(const Type& object) {
        Relay::expectDefaults(object.stRelayInfo);
        expectZero(object.bCompressMethod, object.presence);
        EXPECT_EQ(object.dwCompressLimit, 1024u);
    }
    static std::vector<Accessors<Type>> accessors() {
        return {ZRP_TEST_ACCESSORS(Type, RelayInfo), ZRP_TEST_ACCESSORS(Type, CompressMethod),
                ZRP_TEST_ACCESSORS(Type, CompressLimit)};
    }
};

}  // namespace zrp_test
