// The text dump: what is handed to the formatting functions, and what the messages write
// themselves.
#include "tests/messages/make.h"

namespace zrp_test {
namespace {

using namespace quorva_zrp;

/// The calls that a dump at indent 0 made before it ended with `result`.
template <class T>
void expectStopped(const T& object, int result, const Calls& calls) {
    const Dump stopped = dump(object);
    EXPECT_EQ(stopped.result, result);
    EXPECT_EQ(stopped.calls, calls);
}

TEST(Dump, PrintsTheBaseHeaderFieldByField) {
    TZRPBase base = made<TZRPBase>();
    base.wMagic = 65535;
    base.wCommand = 4097;
    base.dwTimeStamp = 4294967295;
    base.bEncrypted = 5;
    const Calls expected = {value(3, ' ', "[wMagic]", "%d", "65535"),
                            value(3, ' ', "[wHeadVersion]", "%d", "0"),
                            value(3, ' ', "[wBodyVersion]", "%d", "0"),
                            value(3, ' ', "[wCommand]", "%d", "4097"),
                            value(3, ' ', "[dwTimeStamp]", "%u", "4294967295"),
                            value(3, ' ', "[bEncrypted]", "0x%02x", "0x05"),
                            value(3, ' ', "[dwSequence]", "%u", "0"),
                            value(3, ' ', "[dwHeadLen]", "%u", "0"),
                            value(3, ' ', "[dwBodyLen]", "%u", "0")};
    const Dump printed = dump(base, 3, ' ');
    EXPECT_EQ(printed.result, 0);
    EXPECT_EQ(printed.calls, expected);
}

// --- Indents and separators ---------------------------------------------------------------------

/// The calls of a fresh route head with one level per nesting.
Calls routeAt(int fields, int member, int memberFields, char separator) {
    return {value(fields, separator, "[bCompressFlag]", "0x%02x", "0x00"),
            value(fields, separator, "[bAllowLost]", "0x%02x", "0x00"),
            value(fields, separator, "[bRouteFlag]", "0x%02x", "0x01"),
            heading(fields, separator, "[stRouteInfo]"),
            heading(member, separator, "[stSpecifyZone]"),
            value(memberFields, separator, "[dwTypeID]", "%u", "0"),
            value(memberFields, separator, "[dwZoneID]", "%u", "0")};
}

TEST(Dump, PrintsNestedFieldsOneLevelDeeper) {
    TZRPDataHead data = made<TZRPDataHead>();
    data.bRouteFlag = 1;
    EXPECT_EQ(data.stRouteInfo.construct(1), 0);
    EXPECT_EQ(dump(data, 0, '\n').calls, routeAt(0, 1, 2, '\n'));
    EXPECT_EQ(dump(data, 3, '|').calls, routeAt(3, 4, 5, '|'));
}

TEST(Dump, PrintsEverythingAtANegativeIndent) {
    TZRPDataHead data = made<TZRPDataHead>();
    data.bRouteFlag = 1;
    EXPECT_EQ(data.stRouteInfo.construct(1), 0);
    EXPECT_EQ(dump(data, -1).calls, routeAt(-1, -1, -1, '\n'));
    EXPECT_EQ(dump(data, -7).calls, routeAt(-7, -7, -7, '\n'));
    EXPECT_EQ(dump(data, INT_MIN).calls, routeAt(INT_MIN, INT_MIN, INT_MIN, '\n'));
}

TEST(Dump, StopsIndentingAtTheLargestInt) {
    TZRPDataHead data = made<TZRPDataHead>();
    data.bRouteFlag = 1;
    EXPECT_EQ(data.stRouteInfo.construct(1), 0);
    EXPECT_EQ(dump(data, INT_MAX).calls, routeAt(INT_MAX, INT_MAX, INT_MAX, '\n'));
    EXPECT_EQ(dump(data, INT_MAX - 1).calls, routeAt(INT_MAX - 1, INT_MAX, INT_MAX, '\n'));
}

// --- Byte arrays --------------------------------------------------------------------------------

TEST(Dump, WritesTheElementsOfAnArrayItself) {
    TVESKAuthData data = made<TVESKAuthData>();
    data.wAuthLen = 4;
    put(data.szAuthInfo, "00 0F 80 FF EE");
    const Dump printed = dump(data, 2, ';');
    EXPECT_EQ(printed.result, 0);
    EXPECT_EQ(printed.calls,
              (Calls{value(2, ';', "[wAuthLen]", "%d", "4"), array(2, ';', "[szAuthInfo]", 4)}));
    EXPECT_EQ(printed.text, "[wAuthLen]4;[szAuthInfo]4 0x00 0x0f 0x80 0xff;");
}

TEST(Dump, WritesOnlyTheSeparatorForAnEmptyArray) {
    const TVESKAuthData data = made<TVESKAuthData>();
    const Dump printed = dump(data, 0, '\x80');
    EXPECT_EQ(printed.calls, (Calls{value(0, '\x80', "[wAuthLen]", "%d", "0"),
                                    array(0, '\x80', "[szAuthInfo]", 0)}));
    EXPECT_EQ(printed.text, "[wAuthLen]0\x80[szAuthInfo]0\x80");
}

TEST(Dump, EndsAnArrayWithTheSeparatorAndANulThatIsNotCounted) {
    const TVESKAuthData data = made<TVESKAuthData>();
    Bytes memory(64, static_cast<char>(untouched));
    size_t used = notStored;
    EXPECT_EQ(data.visualize(memory.data(), memory.size(), &used, 0, ','), 0);
    EXPECT_EQ(std::string(memory.data(), used), "[wAuthLen]0,[szAuthInfo]0,");
    EXPECT_EQ(toHex(memory.data() + used, 2), "00 A5");
}

TEST(Dump, PrintsArraysThatAreFull) {
    TVESKRawDHReq request = made<TVESKRawDHReq>();
    request.wA_size = 64;
    std::string ones;
    std::string zeros;
    for (int i = 0; i < 64; ++i) {
        request.szDH_A[i] = 0x11;
        ones += " 0x11";
        zeros += " 0x00";
    }
    const Dump printed = dump(request);
    EXPECT_EQ(printed.result, 0);
    EXPECT_EQ(printed.text, "[wA_size]64\n[szDH_A]64" + ones + "\n[szDH_p]64" + zeros + "\n");
}

TEST(Dump, PrintsAFixedArrayWhole) {
    TZRPRelay relay = made<TZRPRelay>();
    put(relay.szIdentity, "01 02 03");
    EXPECT_EQ(dump(relay, 0, ' ').text,
              "[dwPosition]0 [szIdentity]16 0x01 0x02 0x03 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00"
              " 0x00 0x00 0x00 0x00 0x00 [ullServerID]0 [llSessionID]0 [bServerType]0x00"
              " [szStartServiceName] ");
}

TEST(Dump, SaysReferTooBigBehindTheCount) {
    TVESKRawDHReq request = made<TVESKRawDHReq>();
    request.wA_size = 65;
    expectStopped(request, -7, decimal("[wA_size]", "65"));
    TVESKRawDHRsp answer = made<TVESKRawDHRsp>();
    answer.wB_size = 65535;
    expectStopped(answer, -7, decimal("[wB_size]", "65535"));
    TVESKKey key = made<TVESKKey>();
    key.bLength = 129;
    expectStopped(key, -7, byte("[bLength]", "0x81"));
    TVESKEncDHInfo info = made<TVESKEncDHInfo>();
    info.wEncInfoLen = 1025;
    expectStopped(info, -7, join({byte("[bEncMethod]", "0x00"), decimal("[wEncInfoLen]", "1025")}));
    TVESKAuthData data = made<TVESKAuthData>();
    data.wAuthLen = 1025;
    expectStopped(data, -7, decimal("[wAuthLen]", "1025"));
    TZRPAuthRefreshNotifyBody notice = made<TZRPAuthRefreshNotifyBody>();
    notice.wAtkLen = 1025;
    expectStopped(notice, -7, join({decimal("[wAuthType]", "0"), decimal("[wAtkLen]", "1025")}));
}

TEST(Dump, PrintsAnOptionalElementForAFlagOfOneAlone) {
    TZRPAckBody body = made<TZRPAckBody>();
    EXPECT_EQ(dump(body).calls, byte("[bHasAuthInfo]", "0x00"));
    body.bHasAuthInfo = 2;
    expectStopped(body, -7, byte("[bHasAuthInfo]", "0x02"));
    body.bHasAuthInfo = 1;
    EXPECT_EQ(dump(body).calls,
              join({byte("[bHasAuthInfo]", "0x01"),
                    under("[stAuthResInfo]",
                          {under("[stAccount]", {decimal("[wType]", "0"), byte("[bFormat]", "0x00"),
                                                 under("[stValue]", {byte("[chNull]", "0x00")}),
                                                 unsigned64("[ullUid]", "0")}),
                           decimal("[wAuthType]", "0"), characters("[szAtk]", ""),
                           characters("[szExtend]", "")})}));
}

TEST(Dump, SaysReferTooBigForTheFlagsOfTheHandshakeRequest) {
    TZRPSynHead request = made<TZRPSynHead>();
    request.bHasAuthInfo = 2;
    const Dump atAuthInfo = dump(request);
    EXPECT_EQ(atAuthInfo.result, -7);
    EXPECT_EQ(atAuthInfo.calls.back(), value(0, '\n', "[bHasAuthInfo]", "0x%02x", "0x02"));
    request.bHasRelayInfo = 255;
    const Dump atRelayInfo = dump(request);
    EXPECT_EQ(atRelayInfo.result, -7);
    EXPECT_EQ(atRelayInfo.calls.back(), value(0, '\n', "[bHasRelayInfo]", "0x%02x", "0xff"));
}

// --- Scalars and texts --------------------------------------------------------------------------

TEST(Dump, DeliberatelyPrintsAPlaceholderByteWithItsSign) {
    TVESKIDValue identifier = made<TVESKIDValue>();
    struct Case {
        int held;
        const char* printed;
    };
    for (const Case& c :
         {Case{0, "0x00"}, Case{127, "0x7f"}, Case{-1, "0xffffffff"}, Case{-128, "0xffffff80"}}) {
        identifier.chNull = static_cast<int8_t>(c.held);
        EXPECT_EQ(dumpMember(0, identifier).calls, byte("[chNull]", c.printed));
    }
    TZRPRouteInfo route = made<TZRPRouteInfo>();
    route.chLOGINPOSITION = -128;
    EXPECT_EQ(dumpMember(3, route).calls, byte("[chLOGINPOSITION]", "0xffffff80"));
}

TEST(Dump, PrintsUnsignedBytesWithoutSign) {
    TZRPDataHead data = made<TZRPDataHead>();
    data.bAllowLost = 255;
    data.bCompressFlag = 128;
    EXPECT_EQ(dump(data).text,
              "[bCompressFlag]0x80\n[bAllowLost]0xff\n[bRouteFlag]0x00\n"
              "[stRouteInfo]\n[chNull]0x00\n");
}

TEST(Dump, PrintsTheLimitsOfWideIntegers) {
    TZRPRelay relay = made<TZRPRelay>();
    relay.ullServerID = UINT64_MAX;
    relay.llSessionID = INT64_MIN;
    relay.dwPosition = UINT32_MAX;
    const Calls calls = dump(relay).calls;
    ASSERT_EQ(calls.size(), 6u);
    EXPECT_EQ(calls[0], value(0, '\n', "[dwPosition]", "%u", "4294967295"));
    EXPECT_EQ(calls[2], value(0, '\n', "[ullServerID]", formatOfUInt64, "18446744073709551615"));
    EXPECT_EQ(calls[3], value(0, '\n', "[llSessionID]", formatOfInt64, "-9223372036854775808"));
    TZRPRelayReqBody request = made<TZRPRelayReqBody>();
    request.iRelayType = INT32_MIN;
    EXPECT_EQ(dump(request).calls[0], value(0, '\n', "[iRelayType]", "%d", "-2147483648"));
}

TEST(Dump, SaysTextTooLongBeforeThePrinterSeesATextWithoutNul) {
    SpecifyNameRouteInfo name = made<SpecifyNameRouteInfo>();
    putWithoutNul(name.szServiceName, 'n');
    expectStopped(name, -3, {});
    O2AuthData tokens = made<O2AuthData>();
    putWithoutNul(tokens.szExtend, 'n');
    expectStopped(tokens, -3, characters("[szAccessToken]", ""));
    putWithoutNul(tokens.szAccessToken, 'n');
    expectStopped(tokens, -3, {});
    TVESKIDValue identifier = made<TVESKIDValue>();
    putWithoutNul(identifier.szSTRING, 'n');
    EXPECT_EQ(dumpMember(3, identifier).result, -3);
    EXPECT_EQ(dumpMember(3, identifier).calls, Calls{});
    TZRPRelay relay = made<TZRPRelay>();
    putWithoutNul(relay.szStartServiceName, 'n');
    EXPECT_EQ(dump(relay).result, -3);
    EXPECT_EQ(dump(relay).calls.back().label, "[bServerType]");
    TZRPAuthReqBody request = made<TZRPAuthReqBody>();
    putWithoutNul(request.szXQuorvaTokenVersion, 'n');
    EXPECT_EQ(dump(request).result, -3);
    EXPECT_EQ(dump(request).calls.back().label, "[dwXQuorvaTimestamp]");
    putWithoutNul(request.szGameToken, 'n');
    expectStopped(request, -3, decimal("[wAuthType]", "0"));
    TZRPAuthRspBody answer = made<TZRPAuthRspBody>();
    putWithoutNul(answer.szExtend, 'n');
    EXPECT_EQ(dump(answer).result, -3);
    EXPECT_EQ(dump(answer).calls.back().label, "[szAtk]");
    putWithoutNul(answer.szAtk, 'n');
    EXPECT_EQ(dump(answer).result, -3);
    EXPECT_EQ(dump(answer).calls.back().label, "[wAuthType]");
}

TEST(Dump, PrintsATextThatFillsItsCapacity) {
    TZRPAuthReqBody request = made<TZRPAuthReqBody>();
    put(request.szXQuorvaTokenVersion, "V123456");
    EXPECT_EQ(dump(request).calls[3], text(0, '\n', "[szXQuorvaTokenVersion]", "V123456"));
    SpecifyNameRouteInfo name = made<SpecifyNameRouteInfo>();
    put(name.szServiceName, std::string(127, 'n'));
    EXPECT_EQ(dump(name).calls, Calls{text(0, '\n', "[szServiceName]", std::string(127, 'n'))});
}

// --- Unions -------------------------------------------------------------------------------------

TEST(Dump, PrintsTheMemberThatTheSelectorFieldNames) {
    TVESKAccount account = made<TVESKAccount>();
    account.wType = 5;
    account.bFormat = 2;
    account.stValue.ullUINT64 = 6;
    account.ullUid = 7;
    EXPECT_EQ(
        dump(account).calls,
        (Calls{value(0, '\n', "[wType]", "%d", "5"), value(0, '\n', "[bFormat]", "0x%02x", "0x02"),
               heading(0, '\n', "[stValue]"), value(1, '\n', "[ullUINT64]", formatOfUInt64, "6"),
               value(0, '\n', "[ullUid]", formatOfUInt64, "7")}));
}

TEST(Dump, PrintsNothingUnderTheHeadingForASelectorWithoutMember) {
    TVESKAccount account = made<TVESKAccount>();
    account.bFormat = 9;
    const Dump printed = dump(account);
    EXPECT_EQ(printed.result, 0);
    EXPECT_EQ(printed.calls, join({decimal("[wType]", "0"), byte("[bFormat]", "0x09"),
                                   under("[stValue]", {}), unsigned64("[ullUid]", "0")}));
    TZRPHead head = made<TZRPHead>();
    head.stBase.wCommand = 1;
    EXPECT_EQ(dump(head).result, 0);
    EXPECT_EQ(dump(head).calls.back(), heading(0, '\n', "[stExtend]"));
}

}  // namespace
}  // namespace zrp_test
