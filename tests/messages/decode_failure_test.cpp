// What a decode that fails leaves behind: the fields before the failure stay, the failing field has
// its presence bit set, the fields after it are as they were.
#include "tests/messages/make.h"

namespace zrp_test {
namespace {

using namespace quorva_zrp;

TEST(FailedDecode, KeepsTheFieldsBeforeTheFailureAndTheOthersAsTheyWere) {
    TZRPBase base = dirty<TZRPBase>();
    EXPECT_EQ(decode(base, "AA 00 00 00 0A 10 05 20 06 70"), (Read{-2, 10}));
    EXPECT_EQ(base.wMagic, 5);
    EXPECT_EQ(base.wHeadVersion, 6);
    EXPECT_EQ(base.presence, 0x43u) << "bits 0, 1 and, for the field that failed, 6";
    EXPECT_EQ(base.wBodyVersion, 0xA5A5);
    EXPECT_EQ(base.wCommand, 0xA5A5);
    EXPECT_EQ(base.dwTimeStamp, 0xA5A5A5A5u);
    EXPECT_EQ(base.bEncrypted, 0xA5);
    EXPECT_EQ(base.dwHeadLen, 0xA5A5A5A5u);
    EXPECT_EQ(base.dwBodyLen, 0xA5A5A5A5u);
}

TEST(FailedDecode, LeavesAFixedWidthFieldAsItWas) {
    TZRPBase base = dirty<TZRPBase>();
    EXPECT_EQ(decodeFields(base, "12 01", fixed), (Read{-2, 1}));
    EXPECT_EQ(base.wMagic, 0xA5A5);
    EXPECT_EQ(decodeFields(base, "53 01 02 03", fixed), (Read{-2, 1}));
    EXPECT_EQ(base.dwTimeStamp, 0xA5A5A5A5u);
    EXPECT_EQ(decodeFields(base, "61", fixed), (Read{-2, 1}));
    EXPECT_EQ(base.bEncrypted, 0xA5);
    TZRPRelay relay = dirty<TZRPRelay>();
    EXPECT_EQ(decodeFields(relay, "34 01 02 03 04 05 06 07", fixed), (Read{-2, 1}));
    EXPECT_EQ(relay.ullServerID, 0xA5A5A5A5A5A5A5A5u);
    EXPECT_EQ(decodeFields(relay, "44 01 02 03 04 05 06 07", fixed), (Read{-2, 1}));
    EXPECT_EQ(relay.llSessionID, static_cast<int64_t>(0xA5A5A5A5A5A5A5A5u));
    EXPECT_EQ(relay.presence, 0x8u);
}

TEST(FailedDecode, KeepsTheGroupsOfA16BitVarint) {
    TZRPBase base = dirty<TZRPBase>();
    EXPECT_EQ(decodeFields(base, "10", varint), (Read{-2, 1}));
    EXPECT_EQ(base.wMagic, 0);
    EXPECT_EQ(decodeFields(base, "10 AC", varint), (Read{-2, 1}));
    EXPECT_EQ(base.wMagic, 0x2C);
    EXPECT_EQ(decodeFields(base, "10 FF FF 04", varint), (Read{-2, 1}));
    EXPECT_EQ(base.wMagic, 0x3FFF);
    EXPECT_EQ(base.presence, 0x1u);
}

TEST(FailedDecode, KeepsTheGroupsOfA32BitVarint) {
    TZRPCStopBody notice = dirty<TZRPCStopBody>();
    EXPECT_EQ(decodeFields(notice, "10", varint), (Read{-2, 1}));
    EXPECT_EQ(notice.dwReserved, 0u);
    EXPECT_EQ(decodeFields(notice, "10 AC 82", varint), (Read{-2, 1}));
    EXPECT_EQ(notice.dwReserved, 300u);
    EXPECT_EQ(decodeFields(notice, "10 FF FF FF FF 1F", varint), (Read{-2, 1}));
    EXPECT_EQ(notice.dwReserved, 0x0FFFFFFFu);
    EXPECT_EQ(notice.presence, 0x1u);
}

TEST(FailedDecode, KeepsTheGroupsOfASignedVarintMappedBack) {
    TZRPRelayReqBody request = dirty<TZRPRelayReqBody>();
    EXPECT_EQ(decodeFields(request, "10", varint), (Read{-2, 1}));
    EXPECT_EQ(request.iRelayType, 0);
    EXPECT_EQ(decodeFields(request, "10 D7", varint), (Read{-2, 1}));
    EXPECT_EQ(request.iRelayType, -44) << "0x57 gathered";
    EXPECT_EQ(decodeFields(request, "10 D8 80", varint), (Read{-2, 1}));
    EXPECT_EQ(request.iRelayType, 44) << "0x58 gathered";
    TZRPRelay relay = dirty<TZRPRelay>();
    EXPECT_EQ(decodeFields(relay, "40 FF", varint), (Read{-2, 1}));
    EXPECT_EQ(relay.llSessionID, -64);
    EXPECT_EQ(decodeFields(relay, "40 FF FF FF FF FF FF FF FF FF 02", varint), (Read{-2, 1}));
    EXPECT_EQ(relay.llSessionID, INT64_MIN / 2) << "63 one bits gathered";
}

TEST(FailedDecode, DeliberatelyIsASuccessForA64BitUnsignedVarintAtTheEndOfTheInput) {
    TZRPRouteChangeBody change = dirty<TZRPRouteChangeBody>();
    EXPECT_EQ(decode(change, "AA 00 00 00 06 10"), (Read{0, 6}));
    EXPECT_EQ(change.ullServerID, 0u);
    EXPECT_TRUE(change.has_ServerID());
    // A varint that is cut short is passed over; its bytes then fail as a tag.
    EXPECT_EQ(decode(change, "AA 00 00 00 08 10 AC 82"), (Read{-2, 6}));
    EXPECT_EQ(change.ullServerID, 300u) << "the groups gathered stay";
    // So is one that overflows; what follows is read as a tag again.
    EXPECT_EQ(decodeFields(change, "10 80 80 80 80 80 80 80 80 80 02 05", varint), (Read{-2, 1}));
    EXPECT_EQ(change.ullServerID, 0u);
    // The signed varint says no data.
    TZRPRelay relay = made<TZRPRelay>();
    EXPECT_EQ(decodeFields(relay, "40", varint), (Read{-2, 1}));
    // The fixed width does so, too.
    EXPECT_EQ(decode(change, "99 00 00 00 06 14"), (Read{-2, 6}));
}

TEST(FailedDecode, DeliberatelyDoesNotHappenForVarintsWithMoreGroupsThanTheirWidth) {
    TZRPBase base = made<TZRPBase>();
    // 32 bits: the sixth group is folded in at bit 3.
    EXPECT_EQ(decodeFields(base, "50 80 80 80 80 8F 01", varint), (Read{0, 7}));
    EXPECT_EQ(base.dwTimeStamp, 0xF0000008u);
    // 16 bits: groups 3 and 4 accept only 0, group 5 is folded in at bit 3, group 6 at bit 10.
    EXPECT_EQ(decodeFields(base, "10 81 80 80 80 80 01", varint), (Read{0, 7}));
    EXPECT_EQ(base.wMagic, 9);
    EXPECT_EQ(decodeFields(base, "10 80 80 80 80 80 80 3F", varint), (Read{0, 8}));
    EXPECT_EQ(base.wMagic, 0xFC00);
    EXPECT_EQ(decodeFields(base, "10 80 80 80 80 80 80 40", varint), (Read{-2, 1}));
    EXPECT_EQ(decodeFields(base, "10 80 80 80 01", varint), (Read{-2, 1}));
}

TEST(FailedDecode, LeavesATextThatIsTooLongAsItWas) {
    SpecifyNameRouteInfo route = made<SpecifyNameRouteInfo>();
    put(route.szServiceName, "former");
    EXPECT_EQ(decodeFields(route, "15 00 00 00 80" + repeated('n', 128), varint), (Read{-3, 5}));
    EXPECT_EQ(decodeFields(route, "15 00 00 01 00", varint), (Read{-3, 5}));
    EXPECT_EQ(decodeFields(route, "15 FF FF FF FF", varint), (Read{-3, 5}));
    EXPECT_EQ(head(route.szServiceName, 7), "66 6F 72 6D 65 72 00");
    EXPECT_TRUE(route.has_ServiceName());
}

TEST(FailedDecode, LeavesATextThatIsCutShortAsItWas) {
    SpecifyNameRouteInfo route = made<SpecifyNameRouteInfo>();
    put(route.szServiceName, "former");
    EXPECT_EQ(decodeFields(route, "15 00 00 00 05 61 62", varint), (Read{-2, 5}));
    EXPECT_EQ(decodeFields(route, "15 00 00 00 7F", fixed), (Read{-2, 5}));
    EXPECT_EQ(decodeFields(route, "15 00 00 00", fixed), (Read{-2, 1}));
    EXPECT_EQ(head(route.szServiceName, 7), "66 6F 72 6D 65 72 00");
    EXPECT_TRUE(route.has_ServiceName());
}

TEST(FailedDecode, StoresAnArrayThatIsCutShortAsFarAsItCame) {
    TVESKAuthData data = made<TVESKAuthData>();
    data.wAuthLen = 77;
    put(data.szAuthInfo, "A1 A2 A3 A4");
    EXPECT_EQ(decodeFields(data, "25 00 00 00 05 D1 D2", varint), (Read{-2, 7}));
    EXPECT_EQ(head(data.szAuthInfo, 5), "D1 D2 A3 A4 00");
    EXPECT_EQ(data.wAuthLen, 77);
    EXPECT_EQ(data.presence, 0x2u);
    EXPECT_EQ(decodeFields(data, "25 FF FF FF FF E1", fixed), (Read{-2, 6}));
    EXPECT_EQ(head(data.szAuthInfo, 3), "E1 D2 A3");
}

TEST(FailedDecode, RefusesAnArrayOfLengthZero) {
    TVESKAuthData data = made<TVESKAuthData>();
    data.wAuthLen = 77;
    put(data.szAuthInfo, "A1");
    for (const bool flavour : {varint, fixed}) {
        EXPECT_EQ(decodeFields(data, "25 00 00 00 00", flavour), (Read{-37, 5}));
        EXPECT_EQ(decodeFields(data, "25 00 00 00 00 D1 D2", flavour), (Read{-37, 5}));
    }
    EXPECT_EQ(data.wAuthLen, 77);
    EXPECT_EQ(head(data.szAuthInfo, 1), "A1");
    EXPECT_EQ(data.presence, 0x2u);
}

TEST(FailedDecode, FailsWhereAnArrayGoesPastTheStructure) {
    TVESKAuthData data = made<TVESKAuthData>();
    EXPECT_EQ(decodeFields(data, "25 00 00 00 03 D1 D2 D3", varint, 7), (Read{-34, 8}));
    EXPECT_EQ(data.wAuthLen, 3) << "the array itself arrived whole";
    EXPECT_EQ(decodeFields(data, "25 00 00 00 03 D1 D2 D3", varint, 1), (Read{-34, 8}));
}

TEST(FailedDecode, KeepsAnOptionalElementAsFarAsItCameAndItsCountAsItWas) {
    TZRPAckBody body = made<TZRPAckBody>();
    EXPECT_EQ(decodeFields(body, "11 00 25 00 00 00 04 20 07", varint), (Read{-2, 9}));
    EXPECT_EQ(body.bHasAuthInfo, 0);
    EXPECT_EQ(body.stAuthResInfo.wAuthType, 7);
    EXPECT_EQ(body.stAuthResInfo.presence, 0x2u);
    EXPECT_EQ(body.presence, 0x3u);
    EXPECT_EQ(decodeFields(body, "25 00 00 00 01 20 08", varint), (Read{-34, 7}));
    EXPECT_EQ(body.bHasAuthInfo, 0);
    EXPECT_EQ(body.stAuthResInfo.wAuthType, 8);
}

TEST(FailedDecode, PassesTheResultOfANestedFieldUp) {
    TZRPAckBody body = made<TZRPAckBody>();
    // A text too long, an unknown wire type, and a union overrun, each two or three levels down.
    EXPECT_EQ(decodeFields(body, "25 00 00 00 05 35 00 00 01 00", varint), (Read{-3, 10}));
    EXPECT_EQ(decodeFields(body, "25 00 00 00 07 15 00 00 00 02 56 00", varint), (Read{-35, 11}));
    EXPECT_EQ(decodeFields(body, "25 00 00 00 0C 15 00 00 00 07 35 00 00 00 01 01 00", varint),
              (Read{-34, 17}));
    EXPECT_EQ(body.bHasAuthInfo, 0);
    EXPECT_EQ(body.presence, 0x2u);
    EXPECT_EQ(body.stAuthResInfo.presence, 0x1u);
    EXPECT_EQ(body.stAuthResInfo.stAccount.presence, 0x4u);
}

TEST(FailedDecode, DoesNotDependOnTheBytesBehindTheInput) {
    for (const std::string& behind : {repeated(0x00, 512), repeated(0x7F, 512)}) {
        for (const bool flavour : {varint, fixed}) {
            SpecifyNameRouteInfo name = made<SpecifyNameRouteInfo>();
            EXPECT_EQ(decodeFields(name, "15 00 00 00 80" + behind, flavour), (Read{-3, 5}));
            TVESKAuthData data = made<TVESKAuthData>();
            EXPECT_EQ(decodeFields(data, "25 00 00 00 00" + behind, flavour), (Read{-37, 5}));
            TZRPCStopBody notice = made<TZRPCStopBody>();
            EXPECT_EQ(decodeFields(notice, "26" + behind, flavour), (Read{-35, 1}));
            EXPECT_EQ(decodeFields(notice, "25 7F 00 00 00" + behind, flavour), (Read{-2, 5}));
            TZRPDataHead route = made<TZRPDataHead>();
            EXPECT_EQ(decodeFields(route, "45 00 00 00 01 31 05" + behind, flavour),
                      (Read{-34, 7}));
            EXPECT_EQ(decodeFields(route, "45 00 00 00 02 56" + behind, flavour), (Read{-35, 6}));
            TZRPAckBody body = made<TZRPAckBody>();
            EXPECT_EQ(decodeFields(body, "25 00 00 00 04 35 00 00 01 00" + behind, flavour),
                      (Read{-3, 10}));
        }
        TZRPAckBody body = made<TZRPAckBody>();
        EXPECT_EQ(decodeFields(body, "25 00 00 00 01 20 05" + behind, varint), (Read{-34, 7}));
        EXPECT_EQ(body.stAuthResInfo.wAuthType, 5);
    }
}

}  // namespace
}  // namespace zrp_test
