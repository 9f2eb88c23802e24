// Samples of the relay and route records.
#pragma once

#include "tests/messages/sample.h"

namespace zrp_test {

template <>
struct Sample<quorva_zrp::TZRPRelay> {
    using Type = quorva_zrp::TZRPRelay;
    static constexpr const char* name = "TZRPRelay";
    static constexpr uint32_t presence = 0x3F;
    static constexpr size_t maxVarint = 213;
    static constexpr size_t maxFixed = 208;
    static constexpr size_t uint64Field = 2;

    static void fields(auto& object, const auto& with) {
        with(object.dwPosition, 70000);
        with(object.szIdentity, counting(0x10, 16));
        with(object.ullServerID, 0x1122334455667788);
        with(object.llSessionID, -2);
        with(object.bServerType, 0x81);
        with(object.szStartServiceName, "lobby");
    }
    static Encoding withVarint() {
        return {
            "AA 00 00 00 36",
            {"10 F0 A2 04", "25 00 00 00 10 10 11 12 13 14 15 16 17 18 19 1A 1B 1C 1D 1E 1F",
             "30 88 EF 99 AB C5 E8 8C 91 11", "40 03", "51 81", "65 00 00 00 05 6C 6F 62 62 79"}};
    }
    static Encoding withFixed() {
        return {"99 00 00 00 3D",
                {"13 00 01 11 70", "25 00 00 00 10 10 11 12 13 14 15 16 17 18 19 1A 1B 1C 1D 1E 1F",
                 "34 11 22 33 44 55 66 77 88", "44 FF FF FF FF FF FF FF FE", "51 81",
                 "65 00 00 00 05 6C 6F 62 62 79"}};
    }
    static Calls dump() {
        return join({unsigned32("[dwPosition]", "70000"), bytes("[szIdentity]", 16),
                     unsigned64("[ullServerID]", "1234605616436508552"),
                     signed64("[llSessionID]", "-2"), byte("[bServerType]", "0x81"),
                     characters("[szStartServiceName]", "lobby")});
    }
    static void expectDefaults(const Type& object) {
        expectZero(object.dwPosition, object.ullServerID, object.llSessionID, object.bServerType,
                   object.presence);
        expectZeroed(object.szIdentity);
        expectOnlyFirstCharacterCleared(object.szStartServiceName);
    }
    static std::vector<Accessors<Type>> accessors() {
        return {ZRP_TEST_ACCESSORS(Type, Position),   ZRP_TEST_ACCESSORS(Type, Identity),
                ZRP_TEST_ACCESSORS(Type, ServerID),   ZRP_TEST_ACCESSORS(Type, SessionID),
                ZRP_TEST_ACCESSORS(Type, ServerType), ZRP_TEST_ACCESSORS(Type, StartServiceName)};
    }
};

template <>
struct Sample<quorva_zrp::TZRPRelayReqBody> {
    using Type = quorva_zrp::TZRPRelayReqBody;
    static constexpr const char* name = "TZRPRelayReqBody";
    static constexpr uint32_t presence = 0x3;
    static constexpr size_t maxVarint = 232;
    static constexpr size_t maxFixed = 226;

    static void fields(auto& object, const auto& with) {
        with(object.iRelayType, -300);
        with.nested(object.stRelayInfo);
    }
    static Encoding withVarint() {
        return {"AA 00 00 00 3E",
                {"10 D7 04",
                 "25 00 00 00 31" + Sample<quorva_zrp::TZRPRelay>::withVarint().fieldBytes()}};
    }
    static Encoding withFixed() {
        return {"99 00 00 00 47",
                {"13 FF FF FE D4",
                 "25 00 00 00 38" + Sample<quorva_zrp::TZRPRelay>::withFixed().fieldBytes()}};
    }
    static Calls dump() {
        return join({decimal("[iRelayType]", "-300"),
                     under("[stRelayInfo]", {Sample<quorva_zrp::TZRPRelay>::dump()})});
    }
    static void expectDefaults(const Type& object) {
        expectZero(object.iRelayType, object.presence);
        Sample<quorva_zrp::TZRPRelay>::expectDefaults(object.stRelayInfo);
    }
    static std::vector<Accessors<Type>> accessors() {
        return {ZRP_TEST_ACCESSORS(Type, RelayType), ZRP_TEST_ACCESSORS(Type, RelayInfo)};
    }
};

template <>
struct Sample<quorva_zrp::SpecifyZoneRouteInfo> {
    using Type = quorva_zrp::SpecifyZoneRouteInfo;
    static constexpr const char* name = "SpecifyZoneRouteInfo";
    static constexpr uint32_t presence = 0x3;
    static constexpr size_t maxVarint = 25;
    static constexpr size_t maxFixed = 23;

    static void fields(auto& object, const auto& with) {
        with(object.dwTypeID, 150);
        with(object.dwZoneID, 0x89ABCDEF);
    }
    static Encoding withVarint() { return {"AA 00 00 00 0E", {"10 96 01", "20 EF 9B AF CD 08"}}; }
    static Encoding withFixed() { return {"99 00 00 00 0F", {"13 00 00 00 96", "23 89 AB CD EF"}}; }
    static Calls dump() {
        return join({unsigned32("[dwTypeID]", "150"), unsigned32("[dwZoneID]", "2309737967")});
    }
    static void expectDefaults(const Type& object) {
        expectZero(object.dwTypeID, object.dwZoneID, object.presence);
    }
    static std::vector<Accessors<Type>> accessors() {
        return {ZRP_TEST_ACCESSORS(Type, TypeID), ZRP_TEST_ACCESSORS(Type, ZoneID)};
    }
};

template <>
struct Sample<quorva_zrp::SpecifyServerRouteInfo> {
    using Type = quorva_zrp::SpecifyServerRouteInfo;
    static constexpr const char* name = "SpecifyServerRouteInfo";
    static constexpr uint32_t presence = 0x3;
    static constexpr size_t maxVarint = 26;
    static constexpr size_t maxFixed = 24;
    static constexpr size_t uint64Field = 0;

    static void fields(auto& object, const auto& with) {
        with(object.ullServerID, 0x8000000000000000);
        with(object.bServerType, 0x42);
    }
    static Encoding withVarint() {
        return {"AA 00 00 00 12", {"10 80 80 80 80 80 80 80 80 80 01", "21 42"}};
    }
    static Encoding withFixed() {
        return {"99 00 00 00 10", {"14 80 00 00 00 00 00 00 00", "21 42"}};
    }
    static Calls dump() {
        return join(
            {unsigned64("[ullServerID]", "9223372036854775808"), byte("[bServerType]", "0x42")});
    }
    static void expectDefaults(const Type& object) {
        expectZero(object.ullServerID, object.bServerType, object.presence);
    }
    static std::vector<Accessors<Type>> accessors() {
        return {ZRP_TEST_ACCESSORS(Type, ServerID), ZRP_TEST_ACCESSORS(Type, ServerType)};
    }
};

template <>
struct Sample<quorva_zrp::SpecifyNameRouteInfo> {
    using Type = quorva_zrp::SpecifyNameRouteInfo;
    static constexpr const char* name = "SpecifyNameRouteInfo";
    static constexpr uint32_t presence = 0x1;
    static constexpr size_t maxVarint = 142;
    static constexpr size_t maxFixed = 142;

    static void fields(auto& object, const auto& with) { with(object.szServiceName, "zone-1"); }
    static Encoding withVarint() {
        return {"AA 00 00 00 10", {"15 00 00 00 06 7A 6F 6E 65 2D 31"}};
    }
    static Encoding withFixed() { return {"99 00 00 00 10", {"15 00 00 00 06 7A 6F 6E 65 2D 31"}}; }
    static Calls dump() { return characters("[szServiceName]", "zone-1"); }
    static void expectDefaults(const Type& object) {
        expectOnlyFirstCharacterCleared(object.szServiceName);
        expectZero(object.presence);
    }
    static std::vector<Accessors<Type>> accessors() {
        return {ZRP_TEST_ACCESSORS(Type, ServiceName)};
    }
};

template <>
struct Sample<quorva_zrp::TZRPRouteChangeBody> {
    using Type = quorva_zrp::TZRPRouteChangeBody;
    static constexpr const char* name = "TZRPRouteChangeBody";
    static constexpr uint32_t presence = 0x1;
    static constexpr size_t maxVarint = 20;
    static constexpr size_t maxFixed = 18;
    static constexpr size_t uint64Field = 0;

    static void fields(auto& object, const auto& with) { with(object.ullServerID, 1234567890123); }
    static Encoding withVarint() { return {"AA 00 00 00 0C", {"10 CB 89 EC 8F F7 23"}}; }
    static Encoding withFixed() { return {"99 00 00 00 0E", {"14 00 00 01 1F 71 FB 04 CB"}}; }
    static Calls dump() { return unsigned64("[ullServerID]", "1234567890123"); }
    static void expectDefaults(const Type& object) {
        expectZero(object.ullServerID, object.presence);
    }
    static std::vector<Accessors<Type>> accessors() { return {ZRP_TEST_ACCESSORS(Type, ServerID)}; }
};

template <>
struct UnionSample<quorva_zrp::TZRPRouteInfo> {
    using Type = quorva_zrp::TZRPRouteInfo;
    static constexpr const char* name = "TZRPRouteInfo";
    static constexpr size_t maxVarint = 151;
    static constexpr size_t maxFixed = 151;

    static std::vector<Member<Type>> members() {
        return {placeholderMember(0, &Type::chNull, "[chNull]", 1, "0x01", "00 00 00 07", "01 01"),
                structureMember(1, &Type::stSpecifyZone, "[stSpecifyZone]", "AA 00 00 00 13",
                                "15 00 00 00 09", "99 00 00 00 14", "15 00 00 00 0A"),
                structureMember(2, &Type::stSpecifyServer, "[stSpecifyServer]", "AA 00 00 00 17",
                                "25 00 00 00 0D", "99 00 00 00 15", "25 00 00 00 0B"),
                placeholderMember(3, &Type::chLOGINPOSITION, "[chLOGINPOSITION]", -128,
                                  "0xffffff80", "00 00 00 07", "31 80"),
                structureMember(4, &Type::stSpecifyName, "[stSpecifyName]", "AA 00 00 00 15",
                                "45 00 00 00 0B", "99 00 00 00 15", "45 00 00 00 0B")};
    }
};

/// The data head, which holds a route.
template <>
struct Sample<quorva_zrp::TZRPDataHead> {
    using Type = quorva_zrp::TZRPDataHead;
    static constexpr const char* name = "TZRPDataHead";
    static constexpr uint32_t presence = 0xF;
    static constexpr size_t maxVarint = 178;
    static constexpr size_t maxFixed = 178;

    static void fields(auto& object, const auto& with) {
        with(object.bCompressFlag, 1);
        with(object.bAllowLost, 0xFE);
        with(object.bRouteFlag, 1);
        with.member(object.stRouteInfo, 1);
        with.nested(object.stRouteInfo.stSpecifyZone);
    }
    static Encoding withVarint() {
        return {"AA 00 00 00 1E",
                {"11 01", "21 FE", "31 01",
                 "45 00 00 00 0E 15 00 00 00 09 10 96 01 20 EF 9B AF CD 08"}};
    }
    static Encoding withFixed() {
        return {"99 00 00 00 1F",
                {"11 01", "21 FE", "31 01",
                 "45 00 00 00 0F 15 00 00 00 0A 13 00 00 00 96 23 89 AB CD EF"}};
    }
    static Calls dump() {
        return join(
            {byte("[bCompressFlag]", "0x01"), byte("[bAllowLost]", "0xfe"),
             byte("[bRouteFlag]", "0x01"),
             under("[stRouteInfo]", {under("[stSpecifyZone]",
                                           {Sample<quorva_zrp::SpecifyZoneRouteInfo>::dump()})})});
    }
    static void expectDefaults(const Type& object) {
        expectZero(object.bCompressFlag, object.bAllowLost, object.bRouteFlag, object.presence);
        expectOnlyPlaceholderCleared(object.stRouteInfo);
    }
    static std::vector<Accessors<Type>> accessors() {
        return {ZRP_TEST_ACCESSORS(Type, CompressFlag), ZRP_TEST_ACCESSORS(Type, AllowLost),
                ZRP_TEST_ACCESSORS(Type, RouteFlag), ZRP_TEST_ACCESSORS(Type, RouteInfo)};
    }
};

}  // namespace zrp_test
