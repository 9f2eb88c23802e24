// Samples of the head extension, the body, the frame head and the received frame. The frame with
// raw body bytes has tests of its own: its encodings do not decode back.
#pragma once

#include "tests/messages/handshake_samples.h"
#include "tests/messages/notice_samples.h"

namespace zrp_test {

template <>
struct UnionSample<quorva_zrp::TZRPExtHead> {
    using Type = quorva_zrp::TZRPExtHead;
    static constexpr const char* name = "TZRPExtHead";
    static constexpr size_t maxVarint = 2711;
    static constexpr size_t maxFixed = 2694;

    static Member<Type> placeholder(long long selector, int8_t Type::*field, const char* label,
                                    int held, const char* printed, const std::string& bytes) {
        return placeholderMember(selector, field, label, held, printed, "00 00 00 09", bytes);
    }
    static std::vector<Member<Type>> members() {
        return {placeholderMember(0, &Type::chNull, "[chNull]", 2, "0x02", "00 00 00 07", "01 02"),
                structureMember(4097, &Type::stSyn, "[stSyn]", "AA 00 00 00 F2",
                                "95 80 04 00 00 00 E6", "99 00 00 00 FE", "95 80 04 00 00 00 F2"),
                structureMember(4098, &Type::stAck, "[stAck]", "AA 00 00 00 2D",
                                "A5 80 04 00 00 00 21", "99 00 00 00 32", "A5 80 04 00 00 00 26"),
                placeholder(8193, &Type::chAuthReq, "[chAuthReq]", 3, "0x03", "91 80 08 03"),
                placeholder(8194, &Type::chAuthRsp, "[chAuthRsp]", -4, "0xfffffffc", "A1 80 08 FC"),
                placeholder(12290, &Type::chWait, "[chWait]", 5, "0x05", "A1 80 0C 05"),
                structureMember(16403, &Type::stData, "[stData]", "AA 00 00 00 25",
                                "B5 82 10 00 00 00 19", "99 00 00 00 26", "B5 82 10 00 00 00 1A"),
                placeholder(20481, &Type::chCStop, "[chCStop]", 6, "0x06", "91 80 14 06"),
                placeholder(20482, &Type::chSStop, "[chSStop]", 7, "0x07", "A1 80 14 07"),
                placeholder(24578, &Type::chBingo, "[chBingo]", 8, "0x08", "A1 80 18 08"),
                placeholder(28673, &Type::chAuthRefreshReq, "[chAuthRefreshReq]", 9, "0x09",
                            "91 80 1C 09"),
                placeholder(28674, &Type::chAuthRefreshNotify, "[chAuthRefreshNotify]", 127, "0x7f",
                            "A1 80 1C 7F"),
                placeholder(32770, &Type::chRouteChange, "[chRouteChange]", -128, "0xffffff80",
                            "A1 80 20 80")};
    }
};

template <>
struct UnionSample<quorva_zrp::TZRPBody> {
    using Type = quorva_zrp::TZRPBody;
    static constexpr const char* name = "TZRPBody";
    static constexpr size_t maxVarint = 1073;
    static constexpr size_t maxFixed = 1070;

    static std::vector<Member<Type>> members() {
        return {
            placeholderMember(0, &Type::chNull, "[chNull]", -1, "0xffffffff", "00 00 00 07",
                              "01 FF"),
            placeholderMember(4097, &Type::chSyn, "[chSyn]", 0x21, "0x21", "00 00 00 09",
                              "91 80 04 21"),
            structureMember(4098, &Type::stAck, "[stAck]", "AA 00 00 00 44", "A5 80 04 00 00 00 38",
                            "99 00 00 00 47", "A5 80 04 00 00 00 3B"),
            structureMember(8193, &Type::stAuthReq, "[stAuthReq]", "AA 00 00 00 3A",
                            "95 80 08 00 00 00 2E", "99 00 00 00 39", "95 80 08 00 00 00 2D"),
            structureMember(8194, &Type::stAuthRsp, "[stAuthRsp]", "AA 00 00 00 3D",
                            "A5 80 08 00 00 00 31", "99 00 00 00 40", "A5 80 08 00 00 00 34"),
            structureMember(12290, &Type::stWait, "[stWait]", "AA 00 00 00 15",
                            "A5 80 0C 00 00 00 09", "99 00 00 00 1B", "A5 80 0C 00 00 00 0F"),
            placeholderMember(16403, &Type::chData, "[chData]", 0x55, "0x55", "00 00 00 09",
                              "B1 82 10 55"),
            structureMember(20481, &Type::stCStop, "[stCStop]", "AA 00 00 00 12",
                            "95 80 14 00 00 00 06", "99 00 00 00 11", "95 80 14 00 00 00 05"),
            structureMember(20482, &Type::stSStop, "[stSStop]", "AA 00 00 00 13",
                            "A5 80 14 00 00 00 07", "99 00 00 00 16", "A5 80 14 00 00 00 0A"),
            structureMember(24578, &Type::stBingo, "[stBingo]", "AA 00 00 00 47",
                            "A5 80 18 00 00 00 3B", "99 00 00 00 50", "A5 80 18 00 00 00 44"),
            structureMember(28673, &Type::stAuthRefreshReq, "[stAuthRefreshReq]", "AA 00 00 00 11",
                            "95 80 1C 00 00 00 05", "99 00 00 00 11", "95 80 1C 00 00 00 05"),
            structureMember(28674, &Type::stAuthRefreshNotify, "[stAuthRefreshNotify]",
                            "AA 00 00 00 1B", "A5 80 1C 00 00 00 0F", "99 00 00 00 1E",
                            "A5 80 1C 00 00 00 12"),
            structureMember(32770, &Type::stRouteChange, "[stRouteChange]", "AA 00 00 00 13",
                            "A5 80 20 00 00 00 07", "99 00 00 00 15", "A5 80 20 00 00 00 09")};
    }
};

/// The head of a data frame.
template <>
struct Sample<quorva_zrp::TZRPHead> {
    using Type = quorva_zrp::TZRPHead;
    using Base = Sample<quorva_zrp::TZRPBase>;
    using Data = Sample<quorva_zrp::TZRPDataHead>;
    static constexpr const char* name = "TZRPHead";
    static constexpr uint32_t presence = 0x3;
    static constexpr size_t maxVarint = 2807;
    static constexpr size_t maxFixed = 2782;

    static void fields(auto& object, const auto& with) {
        with.nested(object.stBase);
        with.member(object.stExtend, 16403);
        with.nested(object.stExtend.stData);
    }
    static Encoding withVarint() {
        return {"AA 00 00 00 52",
                {"15 00 00 00 23" + Base::withVarint().fieldBytes(),
                 "25 00 00 00 20 B5 82 10 00 00 00 19" + Data::withVarint().fieldBytes()}};
    }
    static Encoding withFixed() {
        return {"99 00 00 00 54",
                {"15 00 00 00 24" + Base::withFixed().fieldBytes(),
                 "25 00 00 00 21 B5 82 10 00 00 00 1A" + Data::withFixed().fieldBytes()}};
    }
    static Calls dump() {
        return join({under("[stBase]", {Base::dump()}),
                     under("[stExtend]", {under("[stData]", {Data::dump()})})});
    }
    static void expectDefaults(const Type& object) {
        Base::expectDefaults(object.stBase);
        expectOnlyPlaceholderCleared(object.stExtend);
        expectZero(object.presence);
    }
    static std::vector<Accessors<Type>> accessors() {
        return {ZRP_TEST_ACCESSORS(Type, Base), ZRP_TEST_ACCESSORS(Type, Extend)};
    }
};

/// A received data frame.
template <>
struct Sample<quorva_zrp::TZRPInFrame> {
    using Type = quorva_zrp::TZRPInFrame;
    using Head = Sample<quorva_zrp::TZRPHead>;
    static constexpr const char* name = "TZRPInFrame";
    static constexpr uint32_t presence = 0x3;
    static constexpr size_t maxVarint = 3893;
    static constexpr size_t maxFixed = 3865;

    static void fields(auto& object, const auto& with) {
        with.nested(object.stHead);
        with.member(object.stBody, 16403);
        with(object.stBody.chData, 0x55);
    }
    static Encoding withVarint() {
        return {"AA 00 00 00 60",
                {"15 00 00 00 4D" + Head::withVarint().fieldBytes(), "25 00 00 00 04 B1 82 10 55"}};
    }
    static Encoding withFixed() {
        return {"99 00 00 00 62",
                {"15 00 00 00 4F" + Head::withFixed().fieldBytes(), "25 00 00 00 04 B1 82 10 55"}};
    }
    static Calls dump() {
        return join(
            {under("[stHead]", {Head::dump()}), under("[stBody]", {byte("[chData]", "0x55")})});
    }
    static void expectDefaults(const Type& object) {
        Head::expectDefaults(object.stHead);
        expectOnlyPlaceholderCleared(object.stBody);
        expectZero(object.presence);
    }
    static std::vector<Accessors<Type>> accessors() {
        return {ZRP_TEST_ACCESSORS(Type, Head), ZRP_TEST_ACCESSORS(Type, Body)};
    }
};

}  // namespace zrp_test
