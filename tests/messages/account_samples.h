// Samples of the account records and the authentication messages.
#pragma once

#include "tests/messages/sample.h"

namespace zrp_test {

template <>
struct UnionSample<quorva_zrp::TVESKIDValue> {
    using Type = quorva_zrp::TVESKIDValue;
    static constexpr const char* name = "TVESKIDValue";
    static constexpr size_t maxVarint = 270;
    static constexpr size_t maxFixed = 270;

    static std::vector<Member<Type>> members() {
        return {
            placeholderMember(0, &Type::chNull, "[chNull]", -7, "0xfffffff9", "00 00 00 07",
                              "01 F9"),
            member<Type>(
                1, [](auto& object, const auto& with) { with(object.dwUINT32, 300); },
                {"AA 00 00 00 08", {"10 AC 02"}}, {"99 00 00 00 0A", {"13 00 00 01 2C"}},
                unsigned32("[dwUINT32]", "300"), 4),
            member<Type>(
                2,
                [](auto& object, const auto& with) { with(object.ullUINT64, 0x0102030405060708); },
                {"AA 00 00 00 0F", {"20 88 8E 98 A8 C0 E0 80 81 01"}},
                {"99 00 00 00 0E", {"24 01 02 03 04 05 06 07 08"}},
                unsigned64("[ullUINT64]", "72623859790382856"), 8),
            member<Type>(
                3, [](auto& object, const auto& with) { with(object.szSTRING, "abc"); },
                {"AA 00 00 00 0D", {"35 00 00 00 03 61 62 63"}},
                {"99 00 00 00 0D", {"35 00 00 00 03 61 62 63"}}, characters("[szSTRING]", "abc"),
                1)};
    }
};

template <>
struct Sample<quorva_zrp::TVESKAccount> {
    using Type = quorva_zrp::TVESKAccount;
    static constexpr const char* name = "TVESKAccount";
    static constexpr uint32_t presence = 0xF;
    static constexpr size_t maxVarint = 308;
    static constexpr size_t maxFixed = 305;
    static constexpr size_t uint64Field = 3;

    static void fields(auto& object, const auto& with) {
        with(object.wType, 0x1234);
        with(object.bFormat, 3);
        with.member(object.stValue, 3);
        with(object.stValue.szSTRING, "abc");
        with(object.ullUid, 9000000000);
    }
    static Encoding withVarint() {
        return {
            "AA 00 00 00 1D",
            {"10 B4 24", "21 03", "35 00 00 00 08 35 00 00 00 03 61 62 63", "40 80 B4 C4 C3 21"}};
    }
    static Encoding withFixed() {
        return {"99 00 00 00 20",
                {"12 12 34", "21 03", "35 00 00 00 08 35 00 00 00 03 61 62 63",
                 "44 00 00 00 02 18 71 1A 00"}};
    }
    static Calls dump() {
        return join({decimal("[wType]", "4660"), byte("[bFormat]", "0x03"),
                     under("[stValue]", {characters("[szSTRING]", "abc")}),
                     unsigned64("[ullUid]", "9000000000")});
    }
    static void expectDefaults(const Type& object) {
        expectZero(object.wType, object.bFormat, object.ullUid, object.presence);
        expectOnlyPlaceholderCleared(object.stValue);
    }
    static std::vector<Accessors<Type>> accessors() {
        return {ZRP_TEST_ACCESSORS(Type, Type), ZRP_TEST_ACCESSORS(Type, Format),
                ZRP_TEST_ACCESSORS(Type, Value), ZRP_TEST_ACCESSORS(Type, Uid)};
    }
};

template <>
struct Sample<quorva_zrp::TVESKAuthData> {
    using Type = quorva_zrp::TVESKAuthData;
    static constexpr const char* name = "TVESKAuthData";
    static constexpr uint32_t presence = 0x3;
    static constexpr size_t maxVarint = 1046;
    static constexpr size_t maxFixed = 1045;

    static void fields(auto& object, const auto& with) {
        with(object.wAuthLen, 3);
        with(object.szAuthInfo, "D1 D2 D3");
    }
    static Encoding withVarint() {
        return {"AA 00 00 00 0F", {"10 03", "25 00 00 00 03 D1 D2 D3"}};
    }
    static Encoding withFixed() {
        return {"99 00 00 00 10", {"12 00 03", "25 00 00 00 03 D1 D2 D3"}};
    }
    static Calls dump() { return join({decimal("[wAuthLen]", "3"), bytes("[szAuthInfo]", 3)}); }
    static void expectDefaults(const Type& object) {
        expectZero(object.wAuthLen, object.presence);
        expectZeroed(object.szAuthInfo);
    }
    static std::vector<Accessors<Type>> accessors() {
        return {ZRP_TEST_ACCESSORS(Type, AuthLen), ZRP_TEST_ACCESSORS(Type, AuthInfo)};
    }
};

template <>
struct Sample<quorva_zrp::O2AuthData> {
    using Type = quorva_zrp::O2AuthData;
    static constexpr const char* name = "O2AuthData";
    static constexpr uint32_t presence = 0x3;
    static constexpr size_t maxVarint = 535;
    static constexpr size_t maxFixed = 535;

    static void fields(auto& object, const auto& with) {
        with(object.szAccessToken, "at");
        with(object.szExtend, "ext");
    }
    static Encoding withVarint() {
        return {"AA 00 00 00 14", {"15 00 00 00 02 61 74", "25 00 00 00 03 65 78 74"}};
    }
    static Encoding withFixed() {
        return {"99 00 00 00 14", {"15 00 00 00 02 61 74", "25 00 00 00 03 65 78 74"}};
    }
    static Calls dump() {
        return join({characters("[szAccessToken]", "at"), characters("[szExtend]", "ext")});
    }
    static void expectDefaults(const Type& object) {
        expectOnlyFirstCharacterCleared(object.szAccessToken);
        expectOnlyFirstCharacterCleared(object.szExtend);
        expectZero(object.presence);
    }
    static std::vector<Accessors<Type>> accessors() {
        return {ZRP_TEST_ACCESSORS(Type, AccessToken), ZRP_TEST_ACCESSORS(Type, Extend)};
    }
};

template <>
struct Sample<quorva_zrp::TZRPAuthReqBody> {
    using Type = quorva_zrp::TZRPAuthReqBody;
    static constexpr const char* name = "TZRPAuthReqBody";
    static constexpr uint32_t presence = 0x1F;
    static constexpr size_t maxVarint = 844;
    static constexpr size_t maxFixed = 842;

    static void fields(auto& object, const auto& with) {
        with(object.wAuthType, 513);
        with(object.szGameToken, "game");
        with(object.dwXQuorvaTimestamp, 1700000001);
        with(object.szXQuorvaTokenVersion, "V22");
        with.nested(object.stOAuthData);
    }
    static Encoding withVarint() {
        return {"AA 00 00 00 33",
                {"10 81 04", "25 00 00 00 04 67 61 6D 65", "40 81 E2 CF AA 06",
                 "55 00 00 00 03 56 32 32",
                 "65 00 00 00 0F 15 00 00 00 02 61 74 25 00 00 00 03 65 78 74"}};
    }
    static Encoding withFixed() {
        return {
            "99 00 00 00 32",
            {"12 02 01", "25 00 00 00 04 67 61 6D 65", "43 65 53 F1 01", "55 00 00 00 03 56 32 32",
             "65 00 00 00 0F 15 00 00 00 02 61 74 25 00 00 00 03 65 78 74"}};
    }
    static Calls dump() {
        return join({decimal("[wAuthType]", "513"), characters("[szGameToken]", "game"),
                     unsigned32("[dwXQuorvaTimestamp]", "1700000001"),
                     characters("[szXQuorvaTokenVersion]", "V22"),
                     under("[stOAuthData]", {Sample<quorva_zrp::O2AuthData>::dump()})});
    }
    static void expectDefaults(const Type& object) {
        expectZero(object.wAuthType, object.dwXQuorvaTimestamp, object.presence);
        expectOnlyFirstCharacterCleared(object.szGameToken);
        EXPECT_EQ(head(object.szXQuorvaTokenVersion, 8), "56 31 00 00 00 00 00 00");
        Sample<quorva_zrp::O2AuthData>::expectDefaults(object.stOAuthData);
    }
    static std::vector<Accessors<Type>> accessors() {
        return {ZRP_TEST_ACCESSORS(Type, AuthType), ZRP_TEST_ACCESSORS(Type, GameToken),
                ZRP_TEST_ACCESSORS(Type, XQuorvaTimestamp),
                ZRP_TEST_ACCESSORS(Type, XQuorvaTokenVersion), ZRP_TEST_ACCESSORS(Type, OAuthData)};
    }
};

template <>
struct Sample<quorva_zrp::TZRPAuthRspBody> {
    using Type = quorva_zrp::TZRPAuthRspBody;
    static constexpr const char* name = "TZRPAuthRspBody";
    static constexpr uint32_t presence = 0xF;
    static constexpr size_t maxVarint = 855;
    static constexpr size_t maxFixed = 851;

    static void fields(auto& object, const auto& with) {
        with.nested(object.stAccount);
        with(object.wAuthType, 770);
        with(object.szAtk, "atk");
        with(object.szExtend, "more");
    }
    static Encoding withVarint() {
        return {"AA 00 00 00 36",
                {"15 00 00 00 18 10 B4 24 21 03 35 00 00 00 08 35 00 00 00 03 61 62 63"
                 " 40 80 B4 C4 C3 21",
                 "20 82 06", "35 00 00 00 03 61 74 6B", "45 00 00 00 04 6D 6F 72 65"}};
    }
    static Encoding withFixed() {
        return {"99 00 00 00 39",
                {"15 00 00 00 1B 12 12 34 21 03 35 00 00 00 08 35 00 00 00 03 61 62 63"
                 " 44 00 00 00 02 18 71 1A 00",
                 "22 03 02", "35 00 00 00 03 61 74 6B", "45 00 00 00 04 6D 6F 72 65"}};
    }
    static Calls dump() {
        return join({under("[stAccount]", {Sample<quorva_zrp::TVESKAccount>::dump()}),
                     decimal("[wAuthType]", "770"), characters("[szAtk]", "atk"),
                     characters("[szExtend]", "more")});
    }
    static void expectDefaults(const Type& object) {
        Sample<quorva_zrp::TVESKAccount>::expectDefaults(object.stAccount);
        expectZero(object.wAuthType, object.presence);
        expectOnlyFirstCharacterCleared(object.szAtk);
        expectOnlyFirstCharacterCleared(object.szExtend);
    }
    static std::vector<Accessors<Type>> accessors() {
        return {ZRP_TEST_ACCESSORS(Type, Account), ZRP_TEST_ACCESSORS(Type, AuthType),
                ZRP_TEST_ACCESSORS(Type, Atk), ZRP_TEST_ACCESSORS(Type, Extend)};
    }
};

template <>
struct Sample<quorva_zrp::TZRPAckBody> {
    using Type = quorva_zrp::TZRPAckBody;
    static constexpr const char* name = "TZRPAckBody";
    static constexpr uint32_t presence = 0x3;
    static constexpr size_t maxVarint = 870;
    static constexpr size_t maxFixed = 866;

    static void fields(auto& object, const auto& with) {
        with(object.bHasAuthInfo, 1);
        with.nested(object.stAuthResInfo);
    }
    static Encoding withVarint() {
        return {"AA 00 00 00 3D",
                {"11 01", "25 00 00 00 31" +
                              Sample<quorva_zrp::TZRPAuthRspBody>::withVarint().fieldBytes()}};
    }
    static Encoding withFixed() {
        return {"99 00 00 00 40",
                {"11 01",
                 "25 00 00 00 34" + Sample<quorva_zrp::TZRPAuthRspBody>::withFixed().fieldBytes()}};
    }
    static Calls dump() {
        return join({byte("[bHasAuthInfo]", "0x01"),
                     under("[stAuthResInfo]", {Sample<quorva_zrp::TZRPAuthRspBody>::dump()})});
    }
    static void expectDefaults(const Type& object) {
        expectZero(object.bHasAuthInfo, object.presence);
        Sample<quorva_zrp::TZRPAuthRspBody>::expectDefaults(object.stAuthResInfo);
    }
    static std::vector<Accessors<Type>> accessors() {
        return {ZRP_TEST_ACCESSORS(Type, HasAuthInfo), ZRP_TEST_ACCESSORS(Type, AuthResInfo)};
    }
};

template <>
struct Sample<quorva_zrp::TZRPAuthRefreshReq> {
    using Type = quorva_zrp::TZRPAuthRefreshReq;
    static constexpr const char* name = "TZRPAuthRefreshReq";
    static constexpr uint32_t presence = 0x1;
    static constexpr size_t maxVarint = 15;
    static constexpr size_t maxFixed = 14;

    static void fields(auto& object, const auto& with) { with(object.dwReserve, 0x01020304); }
    static Encoding withVarint() { return {"AA 00 00 00 0A", {"10 84 86 88 08"}}; }
    static Encoding withFixed() { return {"99 00 00 00 0A", {"13 01 02 03 04"}}; }
    static Calls dump() { return unsigned32("[dwReserve]", "16909060"); }
    static void expectDefaults(const Type& object) {
        expectZero(object.dwReserve, object.presence);
    }
    static std::vector<Accessors<Type>> accessors() { return {ZRP_TEST_ACCESSORS(Type, Reserve)}; }
};

template <>
struct Sample<quorva_zrp::TZRPAuthRefreshNotifyBody> {
    using Type = quorva_zrp::TZRPAuthRefreshNotifyBody;
    static constexpr const char* name = "TZRPAuthRefreshNotifyBody";
    static constexpr uint32_t presence = 0xF;
    static constexpr size_t maxVarint = 1064;
    static constexpr size_t maxFixed = 1061;

    static void fields(auto& object, const auto& with) {
        with(object.wAuthType, 5);
        with(object.wAtkLen, 2);
        with(object.szAtk, "C1 C2");
        with(object.dwAtkExpireIn, 86400);
    }
    static Encoding withVarint() {
        return {"AA 00 00 00 14", {"10 05", "20 02", "35 00 00 00 02 C1 C2", "40 80 A3 05"}};
    }
    static Encoding withFixed() {
        return {"99 00 00 00 17",
                {"12 00 05", "22 00 02", "35 00 00 00 02 C1 C2", "43 00 01 51 80"}};
    }
    static Calls dump() {
        return join({decimal("[wAuthType]", "5"), decimal("[wAtkLen]", "2"), bytes("[szAtk]", 2),
                     unsigned32("[dwAtkExpireIn]", "86400")});
    }
    static void expectDefaults(const Type& object) {
        expectZero(object.wAuthType, object.wAtkLen, object.dwAtkExpireIn, object.presence);
        expectZeroed(object.szAtk);
    }
    static std::vector<Accessors<Type>> accessors() {
        return {ZRP_TEST_ACCESSORS(Type, AuthType), ZRP_TEST_ACCESSORS(Type, AtkLen),
                ZRP_TEST_ACCESSORS(Type, Atk), ZRP_TEST_ACCESSORS(Type, AtkExpireIn)};
    }
};

}  // namespace zrp_test
