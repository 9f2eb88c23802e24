// Every kind of failure, each at its boundary, and the path to it.
#include <gtest/gtest.h>
#include <limits.h>

#include "tests/validate/verdict.h"

namespace zrp_test {

using namespace quorva_zrp;

// --- Counts -------------------------------------------------------------------------------------

TEST(ValidateCounts, UpToTheCapacityAreSound) {
    TVESKRawDHReq request = constructed<TVESKRawDHReq>();
    EXPECT_EQ(isSound, verdictOn(request));
    request.wA_size = 64;
    EXPECT_EQ(isSound, verdictOn(request));
    request.wA_size = 65;
    EXPECT_EQ(tooBig("szDH_A"), verdictOn(request));
    request.wA_size = 0xFFFF;
    EXPECT_EQ(tooBig("szDH_A"), verdictOn(request));
}

TEST(ValidateCounts, OfEveryByteArrayAreLookedAt) {
    TVESKRawDHRsp answer = constructed<TVESKRawDHRsp>();
    answer.wB_size = 65;
    EXPECT_EQ(tooBig("szDH_B"), verdictOn(answer));

    TVESKEncDHInfo enciphered = constructed<TVESKEncDHInfo>();
    enciphered.wEncInfoLen = 1024;
    EXPECT_EQ(isSound, verdictOn(enciphered));
    enciphered.wEncInfoLen = 1025;
    EXPECT_EQ(tooBig("szEncryptedInfo"), verdictOn(enciphered));

    TVESKKey key = constructed<TVESKKey>();
    key.bLength = 128;
    EXPECT_EQ(isSound, verdictOn(key));
    key.bLength = 129;
    EXPECT_EQ(tooBig("szValue"), verdictOn(key));

    TVESKAuthData data = constructed<TVESKAuthData>();
    data.wAuthLen = 1024;
    EXPECT_EQ(isSound, verdictOn(data));
    data.wAuthLen = 1025;
    EXPECT_EQ(tooBig("szAuthInfo"), verdictOn(data));

    TZRPAuthRefreshNotifyBody notice = constructed<TZRPAuthRefreshNotifyBody>();
    notice.wAtkLen = 1024;
    EXPECT_EQ(isSound, verdictOn(notice));
    notice.wAtkLen = 1025;
    EXPECT_EQ(tooBig("szAtk"), verdictOn(notice));
}

// --- Flags --------------------------------------------------------------------------------------

TEST(ValidateFlags, AreZeroOrOne) {
    TZRPSynHead syn = constructed<TZRPSynHead>();
    for (const uint8_t flag : {uint8_t{0}, uint8_t{1}}) {
        syn.bHasRelayInfo = flag;
        syn.bHasAuthInfo = flag;
        EXPECT_EQ(isSound, verdictOn(syn));
    }
    syn.bHasAuthInfo = 2;
    EXPECT_EQ(tooBig("stAuthReqInfo"), verdictOn(syn));
    syn.bHasRelayInfo = 255;
    EXPECT_EQ(tooBig("stRelayReqInfo"), verdictOn(syn));

    TZRPAckBody ack = constructed<TZRPAckBody>();
    ack.bHasAuthInfo = 1;
    EXPECT_EQ(isSound, verdictOn(ack));
    ack.bHasAuthInfo = 2;
    EXPECT_EQ(tooBig("stAuthResInfo"), verdictOn(ack));
}

TEST(ValidateFlags, DecideWhetherTheStructureIsLookedAt) {
    TZRPAckBody ack = constructed<TZRPAckBody>();
    overfill(ack.stAuthResInfo.szAtk);
    EXPECT_EQ(isSound, verdictOn(ack));
    ack.bHasAuthInfo = 1;
    EXPECT_EQ(unterminated("stAuthResInfo.szAtk"), verdictOn(ack));
}

// --- Texts --------------------------------------------------------------------------------------

TEST(ValidateTexts, NeedANulAnywhereWithinTheirCapacity) {
    SpecifyNameRouteInfo route = constructed<SpecifyNameRouteInfo>();
    fillUp(route.szServiceName);
    EXPECT_EQ(isSound, verdictOn(route));
    overfill(route.szServiceName);
    EXPECT_EQ(unterminated("szServiceName"), verdictOn(route));
    for (size_t i = 0; i < sizeof(route.szServiceName); ++i) {
        overfill(route.szServiceName);
        route.szServiceName[i] = '\0';
        EXPECT_EQ(isSound, verdictOn(route)) << i;
    }
}

TEST(ValidateTexts, NeedANulWhateverElseTheyHold) {
    SpecifyNameRouteInfo route = constructed<SpecifyNameRouteInfo>();
    for (int character = 1; character < 256; ++character) {
        memset(route.szServiceName, character, sizeof(route.szServiceName));
        EXPECT_EQ(unterminated("szServiceName"), verdictOn(route)) << character;
    }
}

TEST(ValidateTexts, AreLookedAtInTheOrderOfTheirFields) {
    TZRPAuthReqBody request = constructed<TZRPAuthReqBody>();
    overfill(request.stOAuthData.szExtend);
    EXPECT_EQ(unterminated("stOAuthData.szExtend"), verdictOn(request));
    overfill(request.stOAuthData.szAccessToken);
    EXPECT_EQ(unterminated("stOAuthData.szAccessToken"), verdictOn(request));
    overfill(request.szXQuorvaTokenVersion);
    EXPECT_EQ(unterminated("szXQuorvaTokenVersion"), verdictOn(request));
    overfill(request.szGameToken);
    EXPECT_EQ(unterminated("szGameToken"), verdictOn(request));
}

TEST(ValidateTexts, MayHoldAnythingWhereNoSelectorChoosesThem) {
    TVESKAccount account = constructed<TVESKAccount>();
    overfill(account.stValue.szSTRING);
    for (const uint8_t format : {ZRP_FORMAT_NULL, ZRP_FORMAT_UINT32, ZRP_FORMAT_UINT64}) {
        account.bFormat = format;
        EXPECT_EQ(isSound, verdictOn(account));
    }
    account.bFormat = ZRP_FORMAT_STRING;
    EXPECT_EQ(unterminated("stValue.szSTRING"), verdictOn(account));
}

// --- Selectors ----------------------------------------------------------------------------------

TEST(ValidateSelectors, NameAMember) {
    TVESKAccount account = constructed<TVESKAccount>();
    account.bFormat = 4;
    EXPECT_EQ(badSelector("stValue"), verdictOn(account));

    TZRPSynHead syn = constructed<TZRPSynHead>();
    syn.bKeyMethod = ZRP_KEY_VALUE;  // a member of the answer only
    EXPECT_EQ(badSelector("stKeyInfo"), verdictOn(syn));
    syn.bKeyMethod = ZRP_KEY_NONE;
    syn.bRouteFlag = 5;
    EXPECT_EQ(badSelector("stRouteInfo"), verdictOn(syn));

    TZRPAckHead ack = constructed<TZRPAckHead>();
    ack.bKeyMethod = ZRP_KEY_VALUE;
    EXPECT_EQ(isSound, verdictOn(ack));
    ack.bKeyMethod = 1;
    EXPECT_EQ(badSelector("stKeyInfo"), verdictOn(ack));
}

TEST(ValidateSelectors, OfAUnionOnItsOwnAreNotFoundOnAPath) {
    const TVESKIDValue value = constructed<TVESKIDValue>();
    for (const long long selector : {0, 1, 2, 3}) {
        EXPECT_EQ(isSound, verdictOn(value, selector));
    }
    for (const long long selector : {-1LL, 4LL, 0x100000000LL, 0x100000001LL, LLONG_MIN}) {
        EXPECT_EQ(badSelector(""), verdictOn(value, selector)) << selector;
    }
    for (long long selector = 0xFFFFFFE0; selector <= 0xFFFFFFFF; ++selector) {
        EXPECT_EQ(badSelector(""), verdictOn(value, selector)) << selector;
    }
}

TEST(ValidateSelectors, LeadThePathIntoTheMemberTheyName) {
    TZRPKeyReq request = constructed<TZRPKeyReq>();
    request.construct(ZRP_KEY_RAW_DH);
    request.stReqByRawDH.wA_size = 65;
    EXPECT_EQ(tooBig("stReqByRawDH.szDH_A"), verdictOn(request, ZRP_KEY_RAW_DH));
    EXPECT_EQ(isSound, verdictOn(request, ZRP_KEY_NONE));
}

// --- Frames -------------------------------------------------------------------------------------

TEST(ValidateFrames, AreSoundForEveryCommandAndNoOther) {
    for (const uint16_t command :
         {ZRP_CMD_NULL, ZRP_CMD_SYN, ZRP_CMD_ACK, ZRP_CMD_AUTH_REQ, ZRP_CMD_AUTH_RSP, ZRP_CMD_WAIT,
          ZRP_CMD_DATA, ZRP_CMD_CSTOP, ZRP_CMD_SSTOP, ZRP_CMD_BINGO, ZRP_CMD_AUTH_REFRESH_REQ,
          ZRP_CMD_AUTH_REFRESH_NOTIFY, ZRP_CMD_ROUTE_CHANGE}) {
        EXPECT_EQ(isSound, verdictOn(frameOf(command))) << command;
        TZRPInFrame next = frameOf(command);
        ++next.stHead.stBase.wCommand;
        if (command != ZRP_CMD_SYN && command != ZRP_CMD_AUTH_REQ && command != ZRP_CMD_CSTOP &&
            command != ZRP_CMD_AUTH_REFRESH_REQ) {
            EXPECT_EQ(badSelector("stHead.stExtend"), verdictOn(next)) << command;
        }
    }
}

TEST(ValidateFrames, GiveThePathThroughAllNesting) {
    TZRPInFrame frame = frameOf(ZRP_CMD_SYN);
    TZRPSynHead& syn = frame.stHead.stExtend.stSyn;
    syn.stAccount.bFormat = 9;
    EXPECT_EQ(badSelector("stHead.stExtend.stSyn.stAccount.stValue"), verdictOn(frame));
    syn.stAccount.bFormat = ZRP_FORMAT_STRING;
    overfill(syn.stAccount.stValue.szSTRING);
    EXPECT_EQ(unterminated("stHead.stExtend.stSyn.stAccount.stValue.szSTRING"), verdictOn(frame));
    syn.stAccount.bFormat = ZRP_FORMAT_NULL;
    syn.bHasRelayInfo = 1;
    overfill(syn.stRelayReqInfo.stRelayInfo.szStartServiceName);
    EXPECT_EQ(unterminated("stHead.stExtend.stSyn.stRelayReqInfo.stRelayInfo.szStartServiceName"),
              verdictOn(frame));
}

TEST(ValidateFrames, AreLookedAtHeadFirst) {
    TZRPInFrame frame = frameOf(ZRP_CMD_ACK);
    frame.stBody.stAck.bHasAuthInfo = 2;
    EXPECT_EQ(tooBig("stBody.stAck.stAuthResInfo"), verdictOn(frame));
    frame.stHead.stExtend.stAck.bKeyMethod = ZRP_KEY_VALUE;
    frame.stHead.stExtend.stAck.stKeyInfo.stKey.bLength = 200;
    EXPECT_EQ(tooBig("stHead.stExtend.stAck.stKeyInfo.stKey.szValue"), verdictOn(frame));
}

TEST(ValidateFrames, CarryRoutedData) {
    TZRPHead head = frameOf(ZRP_CMD_DATA).stHead;
    head.stExtend.stData.bRouteFlag = ZRP_ROUTE_NAME;
    EXPECT_EQ(isSound, verdictOn(head));
    overfill(head.stExtend.stData.stRouteInfo.stSpecifyName.szServiceName);
    EXPECT_EQ(unterminated("stExtend.stData.stRouteInfo.stSpecifyName.szServiceName"),
              verdictOn(head));
}

// Deliberate: only the caller knows what lies behind the record.
TEST(ValidateFrames, TakeAnyCountOfRawBodyBytes) {
    TZRPFrame frame = constructed<TZRPFrame>();
    frame.stHead.stBase.dwBodyLen = 0xFFFFFFFF;
    EXPECT_EQ(isSound, verdictOn(frame));
}

TEST(ValidateFrames, AreHeldToTheBodyBytesThatTheCallerHas) {
    TZRPFrame frame = constructed<TZRPFrame>();
    char path[ZRP_PATH_SIZE];
    frame.stHead.stBase.dwBodyLen = 10;
    EXPECT_EQ(0, validateWithBody(frame, 10, path, sizeof(path)));
    EXPECT_STREQ("", path);
    EXPECT_EQ(0, validateWithBody(frame, SIZE_MAX));
    EXPECT_EQ(-7, validateWithBody(frame, 9, path, sizeof(path)));
    EXPECT_STREQ("szBody", path);
    EXPECT_EQ(-7, validateWithBody(frame, 0));
    frame.stHead.stBase.wCommand = 1;
    EXPECT_EQ(-33, validateWithBody(frame, 9, path, sizeof(path)));
    EXPECT_STREQ("stHead.stExtend", path);
}

// --- Types that are always sound ----------------------------------------------------------------

TEST(ValidateIntegers, MayBeAnything) {
    TZRPBase base;
    memset(static_cast<void*>(&base), 0xFF, sizeof(base));
    EXPECT_EQ(isSound, verdictOn(base));
    SpecifyServerRouteInfo route;
    memset(static_cast<void*>(&route), 0xFF, sizeof(route));
    EXPECT_EQ(isSound, verdictOn(route));
}

}  // namespace zrp_test
