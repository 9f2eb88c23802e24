// Samples of the base header, the queue and stop notices.
#pragma once

#include "tests/messages/sample.h"

namespace zrp_test {

template <>
struct Sample<quorva_zrp::TZRPBase> {
    using Type = quorva_zrp::TZRPBase;
    static constexpr const char* name = "TZRPBase";
    static constexpr uint32_t presence = 0x1FF;
    static constexpr size_t maxVarint = 83;
    static constexpr size_t maxFixed = 75;

    static void fields(auto& object, const auto& with) {
        with(object.wMagic, 0x1234);
        with(object.wHeadVersion, 7);
        with(object.wBodyVersion, 128);
        with(object.wCommand, 16403);
        with(object.dwTimeStamp, 1700000000);
        with(object.bEncrypted, 0x9C);
        with(object.dwSequence, 300);
        with(object.dwHeadLen, 0xFFFFFFFF);
        with(object.dwBodyLen, 65536);
    }
    static Encoding withVarint() {
        return {"AA 00 00 00 28",
                {"10 B4 24", "20 07", "30 80 01", "40 93 80 01", "50 80 E2 CF AA 06", "61 9C",
                 "70 AC 02", "80 01 FF FF FF FF 0F", "90 01 80 80 04"}};
    }
    static Encoding withFixed() {
        return {"99 00 00 00 29",
                {"12 12 34", "22 00 07", "32 00 80", "42 40 13", "53 65 53 F1 00", "61 9C",
                 "73 00 00 01 2C", "83 01 FF FF FF FF", "93 01 00 01 00 00"}};
    }
    static Calls dump() {
        return join({decimal("[wMagic]", "4660"), decimal("[wHeadVersion]", "7"),
                     decimal("[wBodyVersion]", "128"), decimal("[wCommand]", "16403"),
                     unsigned32("[dwTimeStamp]", "1700000000"), byte("[bEncrypted]", "0x9c"),
                     unsigned32("[dwSequence]", "300"), unsigned32("[dwHeadLen]", "4294967295"),
                     unsigned32("[dwBodyLen]", "65536")});
    }
    static void expectDefaults(const Type& object) {
        expectZero(object.wMagic, object.wHeadVersion, object.wBodyVersion, object.wCommand,
                   object.dwTimeStamp, object.bEncrypted, object.dwSequence, object.dwHeadLen,
                   object.dwBodyLen, object.presence);
    }
    static std::vector<Accessors<Type>> accessors() {
        return {ZRP_TEST_ACCESSORS(Type, Magic),       ZRP_TEST_ACCESSORS(Type, HeadVersion),
                ZRP_TEST_ACCESSORS(Type, BodyVersion), ZRP_TEST_ACCESSORS(Type, Command),
                ZRP_TEST_ACCESSORS(Type, TimeStamp),   ZRP_TEST_ACCESSORS(Type, Encrypted),
                ZRP_TEST_ACCESSORS(Type, Sequence),    ZRP_TEST_ACCESSORS(Type, HeadLen),
                ZRP_TEST_ACCESSORS(Type, BodyLen)};
    }
};

template <>
struct Sample<quorva_zrp::TZRPWaitBody> {
    using Type = quorva_zrp::TZRPWaitBody;
    static constexpr const char* name = "TZRPWaitBody";
    static constexpr uint32_t presence = 0x7;
    static constexpr size_t maxVarint = 35;
    static constexpr size_t maxFixed = 32;

    static void fields(auto& object, const auto& with) {
        with(object.dwPosition, 5);
        with(object.dwTotal, 1000);
        with(object.dwRoughTime, 90000);
    }
    static Encoding withVarint() {
        return {"AA 00 00 00 0E", {"10 05", "20 E8 07", "30 90 BF 05"}};
    }
    static Encoding withFixed() {
        return {"99 00 00 00 14", {"13 00 00 00 05", "23 00 00 03 E8", "33 00 01 5F 90"}};
    }
    static Calls dump() {
        return join({unsigned32("[dwPosition]", "5"), unsigned32("[dwTotal]", "1000"),
                     unsigned32("[dwRoughTime]", "90000")});
    }
    static void expectDefaults(const Type& object) {
        expectZero(object.dwPosition, object.dwTotal, object.dwRoughTime, object.presence);
    }
    static std::vector<Accessors<Type>> accessors() {
        return {ZRP_TEST_ACCESSORS(Type, Position), ZRP_TEST_ACCESSORS(Type, Total),
                ZRP_TEST_ACCESSORS(Type, RoughTime)};
    }
};

template <>
struct Sample<quorva_zrp::TZRPCStopBody> {
    using Type = quorva_zrp::TZRPCStopBody;
    static constexpr const char* name = "TZRPCStopBody";
    static constexpr uint32_t presence = 0x1;
    static constexpr size_t maxVarint = 15;
    static constexpr size_t maxFixed = 14;

    static void fields(auto& object, const auto& with) { with(object.dwReserved, 0xDEADBEEF); }
    static Encoding withVarint() { return {"AA 00 00 00 0B", {"10 EF FD B6 F5 0D"}}; }
    static Encoding withFixed() { return {"99 00 00 00 0A", {"13 DE AD BE EF"}}; }
    static Calls dump() { return unsigned32("[dwReserved]", "3735928559"); }
    static void expectDefaults(const Type& object) {
        expectZero(object.dwReserved, object.presence);
    }
    static std::vector<Accessors<Type>> accessors() { return {ZRP_TEST_ACCESSORS(Type, Reserved)}; }
};

template <>
struct Sample<quorva_zrp::TZRPSStopBody> {
    using Type = quorva_zrp::TZRPSStopBody;
    static constexpr const char* name = "TZRPSStopBody";
    static constexpr uint32_t presence = 0x3;
    static constexpr size_t maxVarint = 25;
    static constexpr size_t maxFixed = 23;

    static void fields(auto& object, const auto& with) {
        with(object.dwCode, 300);
        with(object.dwExErrCode, 70000);
    }
    static Encoding withVarint() { return {"AA 00 00 00 0C", {"10 AC 02", "20 F0 A2 04"}}; }
    static Encoding withFixed() { return {"99 00 00 00 0F", {"13 00 00 01 2C", "23 00 01 11 70"}}; }
    static Calls dump() {
        return join({unsigned32("[dwCode]", "300"), unsigned32("[dwExErrCode]", "70000")});
    }
    static void expectDefaults(const Type& object) {
        expectZero(object.dwCode, object.dwExErrCode, object.presence);
    }
    static std::vector<Accessors<Type>> accessors() {
        return {ZRP_TEST_ACCESSORS(Type, Code), ZRP_TEST_ACCESSORS(Type, ExErrCode)};
    }
};

}  // namespace zrp_test
