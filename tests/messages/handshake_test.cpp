// The handshake heads and the completion body: defaults on the wire, selectors, optional members.
#include "tests/messages/handshake_samples.h"

namespace zrp_test {
namespace {

using namespace quorva_zrp;

const std::string hole = " A5 A5 A5 A5 ";
const std::string freshKey = "25 00 00 00 02 01 00 ";
const std::string freshAccount = "75 00 00 00 0D 10 00 21 00 35 00 00 00 02 01 00 40 00 ";
const std::string freshRoute = "E5 01 00 00 00 02 01 00 ";

// --- The request --------------------------------------------------------------------------------

TEST(HandshakeRequest, LeavesOutItsOptionalMembersWhenItIsFresh) {
    const TZRPSynHead request = made<TZRPSynHead>();
    EXPECT_EQ(
        encode(request, varint),
        written(0, "AA 00 00 00 3F 11 00 " + freshKey + "31 00 40 00 50 00 60 00 " + freshAccount +
                       "81 01 00 A1 01 00 C1 01 00 D1 01 00 " + freshRoute + "F0 01 00"));
    EXPECT_EQ(encode(request, fixed),
              written(0, "99 00 00 00 57 11 00 " + freshKey +
                             "31 00 44 00 00 00 00 00 00 00 00 53 00 00 00 00 63 00 00 00 00"
                             " 75 00 00 00 15 12 00 00 21 00 35 00 00 00 02 01 00"
                             " 44 00 00 00 00 00 00 00 00"
                             " 81 01 00 A1 01 00 C1 01 00 D1 01 00 " +
                             freshRoute + "F3 01 00 00 00 00"));
}

TEST(HandshakeRequest, ConstructsItsOptionalMembersWhateverTheirFlags) {
    const TZRPSynHead request = made<TZRPSynHead>();
    EXPECT_EQ(request.stRelayReqInfo.iRelayType, 0);
    EXPECT_EQ(head(request.stRelayReqInfo.stRelayInfo.szIdentity, 16), repeated(0, 16));
    EXPECT_STREQ(request.stAuthReqInfo.szXQuorvaTokenVersion, "V1");
}

TEST(HandshakeRequest, CarriesTheLimitsOfItsSignedFields) {
    TZRPSynHead request = made<TZRPSynHead>();
    request.llGameID = INT64_MIN;
    request.iUnitID = INT32_MAX;
    request.iClientType = -1;
    EXPECT_EQ(encodeFields(request, varint),
              written(0, "11 00 " + freshKey +
                             "31 00 40 FF FF FF FF FF FF FF FF FF 01 50 FE FF FF FF 0F 60 01 " +
                             freshAccount + "81 01 00 A1 01 00 C1 01 00 D1 01 00 " + freshRoute +
                             "F0 01 00"));
    TZRPSynHead decoded = made<TZRPSynHead>();
    EXPECT_EQ(
        decodeFields(decoded, "44 80 00 00 00 00 00 00 00 53 7F FF FF FF 63 FF FF FF FF", fixed),
        (Read{0, 19}));
    EXPECT_EQ(decoded.llGameID, INT64_MIN);
    EXPECT_EQ(decoded.iUnitID, INT32_MAX);
    EXPECT_EQ(decoded.iClientType, -1);
}

TEST(HandshakeRequest, CarriesTheRelayRequestForAFlagOfOne) {
    TZRPSynHead request = made<TZRPSynHead>();
    request.bHasRelayInfo = 1;
    EXPECT_EQ(
        encodeFields(request, varint),
        written(0, "11 00 " + freshKey + "31 00 40 00 50 00 60 00 " + freshAccount +
                       "81 01 01 95 01 00 00 00 29 10 00 25 00 00 00 22 10 00 25 00 00 00 10" +
                       repeated(0, 16) +
                       "30 00 40 00 51 00 65 00 00 00 00 A1 01 00 C1 01 00 D1 01 00 " + freshRoute +
                       "F0 01 00"));
}

TEST(HandshakeRequest, CarriesTheAuthenticationRequestForAFlagOfOne) {
    TZRPSynHead request = made<TZRPSynHead>();
    request.bHasAuthInfo = 1;
    EXPECT_EQ(encodeFields(request, varint),
              written(0, "11 00 " + freshKey + "31 00 40 00 50 00 60 00 " + freshAccount +
                             "81 01 00 A1 01 01 B5 01 00 00 00 1F 10 00 25 00 00 00 00 40 00"
                             " 55 00 00 00 02 56 31 65 00 00 00 0A 15 00 00 00 00 25 00 00 00 00"
                             " C1 01 00 D1 01 00 " +
                             freshRoute + "F0 01 00"));
}

TEST(HandshakeRequest, RefusesFlagsAboveOne) {
    TZRPSynHead request = made<TZRPSynHead>();
    const std::string start = "11 00 " + freshKey + "31 00 40 00 50 00 60 00 " + freshAccount;
    request.bHasAuthInfo = 255;
    EXPECT_EQ(encodeFields(request, varint), written(-7, start + "81 01 00 A1 01 FF"));
    EXPECT_EQ(dump(request).result, -7);
    request.bHasRelayInfo = 2;
    EXPECT_EQ(encodeFields(request, varint), written(-7, start + "81 01 02"));
    EXPECT_EQ(dump(request).result, -7);
    EXPECT_EQ(dump(request).calls.back(), value(0, '\n', "[bHasRelayInfo]", "0x%02x", "0x02"));
}

TEST(HandshakeRequest, AcceptsAnyFlagThatArrives) {
    TZRPSynHead request = made<TZRPSynHead>();
    EXPECT_EQ(decodeFields(request, "81 01 02 A1 01 FF", varint), (Read{0, 6}));
    EXPECT_EQ(request.bHasRelayInfo, 2);
    EXPECT_EQ(request.bHasAuthInfo, 255);
    EXPECT_EQ(request.presence, 0x280u);
}

TEST(HandshakeRequest, SetsTheFlagOfAMemberThatArrivesWithoutIt) {
    TZRPSynHead request = made<TZRPSynHead>();
    EXPECT_EQ(decodeFields(request, "95 01 00 00 00 02 10 07 B5 01 00 00 00 02 10 09", varint),
              (Read{0, 16}));
    EXPECT_EQ(request.bHasRelayInfo, 1);
    EXPECT_EQ(request.stRelayReqInfo.iRelayType, -4);
    EXPECT_EQ(request.bHasAuthInfo, 1);
    EXPECT_EQ(request.stAuthReqInfo.wAuthType, 9);
    EXPECT_EQ(request.presence, 0x500u);
}

TEST(HandshakeRequest, KeepsTheFlagOfAMemberThatFails) {
    TZRPSynHead request = made<TZRPSynHead>();
    EXPECT_EQ(decodeFields(request, "95 01 00 00 00 02 10", varint), (Read{-2, 7}));
    EXPECT_EQ(request.bHasRelayInfo, 0);
    EXPECT_EQ(decodeFields(request, "B5 01 00 00 00 02 16 00 00", varint, 8), (Read{0, 8}))
        << "the type id of a known field plays no part";
    EXPECT_EQ(request.bHasAuthInfo, 1);
    EXPECT_EQ(decodeFields(request, "A1 01 00 B5 01 00 00 00 01 36", varint), (Read{-35, 10}));
    EXPECT_EQ(request.bHasAuthInfo, 0);
}

TEST(HandshakeRequest, AcceptsStructuresButNoUnionsOfLengthZero) {
    TZRPSynHead request = made<TZRPSynHead>();
    EXPECT_EQ(decodeFields(request, "75 00 00 00 00 95 01 00 00 00 00 B5 01 00 00 00 00", varint),
              (Read{0, 17}));
    EXPECT_EQ(request.bHasRelayInfo, 1);
    EXPECT_EQ(request.bHasAuthInfo, 1);
    EXPECT_EQ(decodeFields(request, "25 00 00 00 00 51 07", varint), (Read{-34, 7}));
    EXPECT_EQ(decodeFields(request, "25 00 00 00 00", varint), (Read{-2, 5}));
    EXPECT_EQ(decodeFields(request, "E5 01 00 00 00 00 31 07", varint), (Read{-34, 8}));
}

TEST(HandshakeRequest, HasNoKeyMethodTwo) {
    TZRPSynHead request = made<TZRPSynHead>();
    for (const uint8_t method : {uint8_t{1}, uint8_t{2}, uint8_t{5}, uint8_t{255}}) {
        request.bKeyMethod = method;
        const std::string bytes = "11 " + toHex(&method, 1) + " 25" + hole;
        EXPECT_EQ(encodeFields(request, varint), written(-33, bytes));
        EXPECT_EQ(encodeFields(request, fixed), written(-33, bytes));
    }
}

TEST(HandshakeRequest, RefusesARouteFlagWithoutMember) {
    TZRPSynHead request = made<TZRPSynHead>();
    request.bRouteFlag = 5;
    EXPECT_EQ(encodeFields(request, varint),
              written(-33, "11 00 " + freshKey + "31 00 40 00 50 00 60 00 " + freshAccount +
                               "81 01 00 A1 01 00 C1 01 00 D1 01 05 E5 01" + hole));
}

TEST(HandshakeRequest, DeliberatelyTakesItsSelectorsFromTheUnions) {
    TZRPSynHead request = made<TZRPSynHead>();
    EXPECT_EQ(decodeFields(request, "11 03 25 00 00 00 07 45 00 00 00 02 11 09", varint),
              (Read{0, 14}));
    EXPECT_EQ(request.bKeyMethod, 4);
    EXPECT_EQ(request.stKeyInfo.stReqByEncDH.bEncMethod, 9);
    EXPECT_EQ(decodeFields(request, "D1 01 01 E5 01 00 00 00 02 31 05", varint), (Read{0, 11}));
    EXPECT_EQ(request.bRouteFlag, 3);
    EXPECT_EQ(request.stRouteInfo.chLOGINPOSITION, 5);
    // Behind its union a selector field wins.
    EXPECT_EQ(decodeFields(request, "25 00 00 00 02 01 05 11 03", varint), (Read{0, 9}));
    EXPECT_EQ(request.bKeyMethod, 3);
    // Only the low 8 bits fit: field number 260.
    EXPECT_EQ(decodeFields(request, "25 00 00 00 03 C1 20 05", varint), (Read{0, 8}));
    EXPECT_EQ(request.bKeyMethod, 4);
}

TEST(HandshakeRequest, KeepsItsSelectorsWhereTheUnionsFail) {
    TZRPSynHead request = made<TZRPSynHead>();
    EXPECT_EQ(decodeFields(request, "11 03 25 00 00 00 05 45 00 00 00 02 11 09", varint),
              (Read{-34, 14}));
    EXPECT_EQ(request.bKeyMethod, 3);
    EXPECT_EQ(request.stKeyInfo.stReqByEncDH.bEncMethod, 9);
    EXPECT_EQ(decodeFields(request, "11 03 25 00 00 00 05 45 00 00 00", varint), (Read{-2, 8}));
    EXPECT_EQ(request.bKeyMethod, 3);
    EXPECT_EQ(request.presence, 0x3u);
}

TEST(HandshakeRequest, PrintsOptionalMembersForAFlagOfOneAlone) {
    const TZRPSynHead request = made<TZRPSynHead>();
    EXPECT_EQ(dump(request, 0, ' ').text,
              "[bKeyMethod]0x00 [stKeyInfo] [chNull]0x00 [bEncMethod]0x00 [llGameID]0 [iUnitID]0"
              " [iClientType]0 [stAccount] [wType]0 [bFormat]0x00 [stValue] [chNull]0x00 [ullUid]0"
              " [bHasRelayInfo]0x00 [bHasAuthInfo]0x00 [bSupportCompressMethodList]0x00"
              " [bRouteFlag]0x00 [stRouteInfo] [chNull]0x00 [dwReserved]0 ");
}

TEST(HandshakeRequest, PrintsNothingUnderAKeyMethodWithoutMember) {
    TZRPSynHead request = made<TZRPSynHead>();
    request.bKeyMethod = 2;
    const Dump printed = dump(request);
    EXPECT_EQ(printed.result, 0);
    EXPECT_EQ(printed.calls[1], heading(0, '\n', "[stKeyInfo]"));
    EXPECT_EQ(printed.calls[2], value(0, '\n', "[bEncMethod]", "0x%02x", "0x00"));
}

// --- The answer ---------------------------------------------------------------------------------

TEST(HandshakeAnswer, EncodesItsCompressLimitWhenItIsFresh) {
    const TZRPAckHead answer = made<TZRPAckHead>();
    EXPECT_EQ(answer.dwCompressLimit, 1024u);
    EXPECT_EQ(encode(answer, varint),
              written(0, "AA 00 00 00 17 11 00 21 00 35 00 00 00 02 01 00 41 00 50 80 08 60 00"));
    EXPECT_EQ(encode(answer, fixed),
              written(0,
                      "99 00 00 00 1C 11 00 21 00 35 00 00 00 02 01 00 41 00 53 00 00 04 00"
                      " 63 00 00 00 00"));
}

TEST(HandshakeAnswer, CarriesAKeyValueForKeyMethodTwo) {
    TZRPAckHead answer = made<TZRPAckHead>();
    answer.bKeyMethod = ZRP_KEY_VALUE;
    EXPECT_EQ(answer.stKeyInfo.construct(ZRP_KEY_VALUE), 0);
    EXPECT_EQ(encodeFields(answer, varint),
              written(0, "11 00 21 02 35 00 00 00 07 25 00 00 00 02 11 00 41 00 50 80 08 60 00"));
}

TEST(HandshakeAnswer, PutsItsEncryptionMethodBeforeItsKeyMethod) {
    TZRPAckHead answer = made<TZRPAckHead>();
    EXPECT_EQ(decodeFields(answer, "11 07 21 03", varint), (Read{0, 4}));
    EXPECT_EQ(answer.bEncMethod, 7);
    EXPECT_EQ(answer.bKeyMethod, 3);
}

TEST(HandshakeAnswer, RefusesKeyMethodsWithoutMember) {
    TZRPAckHead answer = made<TZRPAckHead>();
    for (const uint8_t method : {uint8_t{1}, uint8_t{5}, uint8_t{255}}) {
        answer.bKeyMethod = method;
        const std::string bytes = "11 00 21 " + toHex(&method, 1) + " 35" + hole;
        EXPECT_EQ(encodeFields(answer, varint), written(-33, bytes));
        EXPECT_EQ(encodeFields(answer, fixed), written(-33, bytes));
    }
}

TEST(HandshakeAnswer, DeliberatelyTakesItsKeyMethodFromTheUnion) {
    TZRPAckHead answer = made<TZRPAckHead>();
    EXPECT_EQ(decodeFields(answer, "21 00 35 00 00 00 07 35 00 00 00 02 10 05", varint),
              (Read{0, 14}));
    EXPECT_EQ(answer.bKeyMethod, 3);
    EXPECT_EQ(answer.stKeyInfo.stRspByRawDH.wB_size, 5);
    EXPECT_EQ(decodeFields(answer, "35 00 00 00 02 11 05", varint), (Read{0, 7}));
    EXPECT_EQ(answer.bKeyMethod, 1) << "no member, which a later encode refuses";
    EXPECT_EQ(encodeFields(answer, varint).result, -33);
}

// --- The completion -----------------------------------------------------------------------------

TEST(HandshakeCompletion, EncodesItsCompressLimitWhenItIsFresh) {
    const TZRPBingoBody completion = made<TZRPBingoBody>();
    EXPECT_EQ(completion.dwCompressLimit, 1024u);
    EXPECT_EQ(encode(completion, varint),
              written(0, "AA 00 00 00 31 15 00 00 00 22 10 00 25 00 00 00 10" + repeated(0, 16) +
                             "30 00 40 00 51 00 65 00 00 00 00 21 00 30 80 08"));
}

TEST(HandshakeCompletion, KeepsItsCompressLimitWhenNoneArrives) {
    TZRPBingoBody completion = made<TZRPBingoBody>();
    EXPECT_EQ(decodeFields(completion, "15 00 00 00 02 51 09 21 07", varint), (Read{0, 9}));
    EXPECT_EQ(completion.stRelayInfo.bServerType, 9);
    EXPECT_EQ(completion.stRelayInfo.presence, 0x10u);
    EXPECT_EQ(completion.bCompressMethod, 7);
    EXPECT_EQ(completion.dwCompressLimit, 1024u);
    EXPECT_EQ(completion.presence, 0x3u);
}

TEST(HandshakeCompletion, PassesTheFailureOfItsRelayUp) {
    TZRPBingoBody completion = made<TZRPBingoBody>();
    putWithoutNul(completion.stRelayInfo.szStartServiceName, 's');
    EXPECT_EQ(encodeFields(completion, varint),
              written(-3, "15" + hole + "10 00 25 00 00 00 10" + repeated(0, 16) +
                              "30 00 40 00 51 00 65" + hole));
    EXPECT_EQ(dump(completion).result, -3);
    EXPECT_EQ(decodeFields(completion, "15 00 00 00 05 25 00 00 00 00 21 07", varint),
              (Read{-37, 10}));
    EXPECT_EQ(completion.bCompressMethod, 0);
}

// --- Sizes --------------------------------------------------------------------------------------

template <class T>
void expectLargest(const T& object, size_t withVarint, size_t withFixed) {
    EXPECT_LE(encode(object, varint).used, withVarint);
    EXPECT_LE(encode(object, fixed).used, withFixed);
    EXPECT_EQ(encode(object, varint).result, 0);
    EXPECT_EQ(encode(object, fixed).result, 0);
}

TEST(HandshakeRequest, FitsItsLargestSizeWhenItIsFull) {
    TZRPSynHead request = sampleOf<TZRPSynHead>();
    request.stKeyInfo.stReqByEncDH.wEncInfoLen = 1024;
    put(request.stAccount.stValue.szSTRING, std::string(255, 'a'));
    request.stAccount.ullUid = UINT64_MAX;
    put(request.stRelayReqInfo.stRelayInfo.szStartServiceName, std::string(127, 'b'));
    request.stRelayReqInfo.stRelayInfo.llSessionID = INT64_MIN;
    put(request.stAuthReqInfo.szGameToken, std::string(255, 'c'));
    put(request.stAuthReqInfo.stOAuthData.szAccessToken, std::string(255, 'd'));
    put(request.stAuthReqInfo.stOAuthData.szExtend, std::string(255, 'e'));
    request.bRouteFlag = ZRP_ROUTE_NAME;
    EXPECT_EQ(request.stRouteInfo.construct(ZRP_ROUTE_NAME), 0);
    put(request.stRouteInfo.stSpecifyName.szServiceName, std::string(127, 'f'));
    expectLargest(request, 2702, 2685);
}

}  // namespace
}  // namespace zrp_test
