// Samples of the key-exchange records and unions.
#pragma once

#include "tests/messages/sample.h"

namespace zrp_test {

template <>
struct Sample<quorva_zrp::TVESKRawDHReq> {
    using Type = quorva_zrp::TVESKRawDHReq;
    static constexpr const char* name = "TVESKRawDHReq";
    static constexpr uint32_t presence = 0x7;
    static constexpr size_t maxVarint = 159;
    static constexpr size_t maxFixed = 158;

    static void fields(auto& object, const auto& with) {
        with(object.wA_size, 3);
        with(object.szDH_A, "A1 A2 A3");
        with(object.szDH_p, counting(0x40, 64));
    }
    static Encoding withVarint() {
        return {"AA 00 00 00 54",
                {"10 03", "25 00 00 00 03 A1 A2 A3", "35 00 00 00 40 " + counting(0x40, 64)}};
    }
    static Encoding withFixed() {
        return {"99 00 00 00 55",
                {"12 00 03", "25 00 00 00 03 A1 A2 A3", "35 00 00 00 40 " + counting(0x40, 64)}};
    }
    static Calls dump() {
        return join({decimal("[wA_size]", "3"), bytes("[szDH_A]", 3), bytes("[szDH_p]", 64)});
    }
    static void expectDefaults(const Type& object) {
        expectZero(object.wA_size, object.presence);
        expectZeroed(object.szDH_A);
        expectZeroed(object.szDH_p);
    }
    static std::vector<Accessors<Type>> accessors() {
        return {ZRP_TEST_ACCESSORS(Type, A_size), ZRP_TEST_ACCESSORS(Type, DH_A),
                ZRP_TEST_ACCESSORS(Type, DH_p)};
    }
};

template <>
struct Sample<quorva_zrp::TVESKRawDHRsp> {
    using Type = quorva_zrp::TVESKRawDHRsp;
    static constexpr const char* name = "TVESKRawDHRsp";
    static constexpr uint32_t presence = 0x3;
    static constexpr size_t maxVarint = 86;
    static constexpr size_t maxFixed = 85;

    static void fields(auto& object, const auto& with) {
        with(object.wB_size, 2);
        with(object.szDH_B, "B1 B2");
    }
    static Encoding withVarint() { return {"AA 00 00 00 0E", {"10 02", "25 00 00 00 02 B1 B2"}}; }
    static Encoding withFixed() { return {"99 00 00 00 0F", {"12 00 02", "25 00 00 00 02 B1 B2"}}; }
    static Calls dump() { return join({decimal("[wB_size]", "2"), bytes("[szDH_B]", 2)}); }
    static void expectDefaults(const Type& object) {
        expectZero(object.wB_size, object.presence);
        expectZeroed(object.szDH_B);
    }
    static std::vector<Accessors<Type>> accessors() {
        return {ZRP_TEST_ACCESSORS(Type, B_size), ZRP_TEST_ACCESSORS(Type, DH_B)};
    }
};

template <>
struct Sample<quorva_zrp::TVESKEncDHInfo> {
    using Type = quorva_zrp::TVESKEncDHInfo;
    static constexpr const char* name = "TVESKEncDHInfo";
    static constexpr uint32_t presence = 0x7;
    static constexpr size_t maxVarint = 1052;
    static constexpr size_t maxFixed = 1051;

    static void fields(auto& object, const auto& with) {
        with(object.bEncMethod, 0x85);
        with(object.wEncInfoLen, 4);
        with(object.szEncryptedInfo, "E0 E1 E2 E3");
    }
    static Encoding withVarint() {
        return {"AA 00 00 00 12", {"11 85", "20 04", "35 00 00 00 04 E0 E1 E2 E3"}};
    }
    static Encoding withFixed() {
        return {"99 00 00 00 13", {"11 85", "22 00 04", "35 00 00 00 04 E0 E1 E2 E3"}};
    }
    static Calls dump() {
        return join({byte("[bEncMethod]", "0x85"), decimal("[wEncInfoLen]", "4"),
                     bytes("[szEncryptedInfo]", 4)});
    }
    static void expectDefaults(const Type& object) {
        expectZero(object.bEncMethod, object.wEncInfoLen, object.presence);
        expectZeroed(object.szEncryptedInfo);
    }
    static std::vector<Accessors<Type>> accessors() {
        return {ZRP_TEST_ACCESSORS(Type, EncMethod), ZRP_TEST_ACCESSORS(Type, EncInfoLen),
                ZRP_TEST_ACCESSORS(Type, EncryptedInfo)};
    }
};

template <>
struct Sample<quorva_zrp::TVESKKey> {
    using Type = quorva_zrp::TVESKKey;
    static constexpr const char* name = "TVESKKey";
    static constexpr uint32_t presence = 0x3;
    static constexpr size_t maxVarint = 148;
    static constexpr size_t maxFixed = 148;

    static void fields(auto& object, const auto& with) {
        with(object.bLength, 5);
        with(object.szValue, "51 52 53 54 55");
    }
    static Encoding withVarint() {
        return {"AA 00 00 00 11", {"11 05", "25 00 00 00 05 51 52 53 54 55"}};
    }
    static Encoding withFixed() {
        return {"99 00 00 00 11", {"11 05", "25 00 00 00 05 51 52 53 54 55"}};
    }
    static Calls dump() { return join({byte("[bLength]", "0x05"), bytes("[szValue]", 5)}); }
    static void expectDefaults(const Type& object) {
        expectZero(object.bLength, object.presence);
        expectZeroed(object.szValue);
    }
    static std::vector<Accessors<Type>> accessors() {
        return {ZRP_TEST_ACCESSORS(Type, Length), ZRP_TEST_ACCESSORS(Type, Value)};
    }
};

template <>
struct UnionSample<quorva_zrp::TZRPKeyReq> {
    using Type = quorva_zrp::TZRPKeyReq;
    static constexpr const char* name = "TZRPKeyReq";
    static constexpr size_t maxVarint = 1061;
    static constexpr size_t maxFixed = 1060;

    static std::vector<Member<Type>> members() {
        return {placeholderMember(0, &Type::chNull, "[chNull]", -1, "0xffffffff", "00 00 00 07",
                                  "01 FF"),
                structureMember(3, &Type::stReqByRawDH, "[stReqByRawDH]", "AA 00 00 00 59",
                                "35 00 00 00 4F", "99 00 00 00 5A", "35 00 00 00 50"),
                structureMember(4, &Type::stReqByEncDH, "[stReqByEncDH]", "AA 00 00 00 17",
                                "45 00 00 00 0D", "99 00 00 00 18", "45 00 00 00 0E")};
    }
};

template <>
struct UnionSample<quorva_zrp::TZRPKeyRsp> {
    using Type = quorva_zrp::TZRPKeyRsp;
    static constexpr const char* name = "TZRPKeyRsp";
    static constexpr size_t maxVarint = 1061;
    static constexpr size_t maxFixed = 1060;

    static std::vector<Member<Type>> members() {
        return {
            placeholderMember(0, &Type::chNull, "[chNull]", 0x41, "0x41", "00 00 00 07", "01 41"),
            structureMember(2, &Type::stKey, "[stKey]", "AA 00 00 00 16", "25 00 00 00 0C",
                            "99 00 00 00 16", "25 00 00 00 0C"),
            structureMember(3, &Type::stRspByRawDH, "[stRspByRawDH]", "AA 00 00 00 13",
                            "35 00 00 00 09", "99 00 00 00 14", "35 00 00 00 0A"),
            structureMember(4, &Type::stRspByEncDH, "[stRspByEncDH]", "AA 00 00 00 17",
                            "45 00 00 00 0D", "99 00 00 00 18", "45 00 00 00 0E")};
    }
};

}  // namespace zrp_test
