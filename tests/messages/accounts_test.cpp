// Account records and authentication messages: defaults on the wire, bounds, and the numbers that
// are free on purpose.
#include "tests/messages/make.h"

namespace zrp_test {
namespace {

using namespace quorva_zrp;

// --- The account --------------------------------------------------------------------------------

TEST(Account, EncodesItsDefaults) {
    const TVESKAccount account = made<TVESKAccount>();
    EXPECT_EQ(encode(account, varint),
              written(0, "AA 00 00 00 12 10 00 21 00 35 00 00 00 02 01 00 40 00"));
    EXPECT_EQ(encode(account, fixed), written(0,
                                              "99 00 00 00 1A 12 00 00 21 00 35 00 00 00 02 01 00"
                                              " 44 00 00 00 00 00 00 00 00"));
}

TEST(Account, CarriesATextAsItsIdentifier) {
    TVESKAccount account = made<TVESKAccount>();
    account.bFormat = ZRP_FORMAT_STRING;
    put(account.stValue.szSTRING, "abc");
    EXPECT_EQ(encodeFields(account, varint),
              written(0, "10 00 21 03 35 00 00 00 08 35 00 00 00 03 61 62 63 40 00"));
    put(account.stValue.szSTRING, std::string(255, 'z'));
    EXPECT_EQ(encodeFields(account, fixed),
              written(0, "12 00 00 21 03 35 00 00 01 04 35 00 00 00 FF" + repeated('z', 255) +
                             "44 00 00 00 00 00 00 00 00"));
    putWithoutNul(account.stValue.szSTRING, 'z');
    EXPECT_EQ(encodeFields(account, fixed),
              written(-3, "12 00 00 21 03 35 A5 A5 A5 A5 35 A5 A5 A5 A5"));
}

TEST(Account, CarriesItsPlaceholderByte) {
    TVESKAccount account = made<TVESKAccount>();
    account.stValue.chNull = -1;
    EXPECT_EQ(encodeFields(account, varint), written(0, "10 00 21 00 35 00 00 00 02 01 FF 40 00"));
    TVESKAccount decoded = made<TVESKAccount>();
    EXPECT_EQ(decodeFields(decoded, "35 00 00 00 02 01 80", varint), (Read{0, 7}));
    EXPECT_EQ(decoded.stValue.chNull, -128);
}

TEST(Account, CarriesTheLargestUserId) {
    TVESKAccount account = made<TVESKAccount>();
    account.bFormat = ZRP_FORMAT_UINT64;
    account.stValue.ullUINT64 = UINT64_MAX;
    account.ullUid = UINT64_MAX;
    EXPECT_EQ(encodeFields(account, varint),
              written(0,
                      "10 00 21 02 35 00 00 00 0B 20 FF FF FF FF FF FF FF FF FF 01"
                      " 40 FF FF FF FF FF FF FF FF FF 01"));
    EXPECT_EQ(encodeFields(account, fixed),
              written(0,
                      "12 00 00 21 02 35 00 00 00 09 24 FF FF FF FF FF FF FF FF"
                      " 44 FF FF FF FF FF FF FF FF"));
}

TEST(Account, NamesTheMemberThatWasOnTheWire) {
    TVESKAccount account = made<TVESKAccount>();
    EXPECT_EQ(decode(account, "AA 00 00 00 0E 21 01 35 00 00 00 02 20 07"), (Read{0, 14}));
    EXPECT_EQ(account.bFormat, 2);
    EXPECT_EQ(account.stValue.ullUINT64, 7u);
    EXPECT_EQ(decode(account, "99 00 00 00 15 21 01 35 00 00 00 09 24 00 00 00 00 00 00 00 08"),
              (Read{0, 21}));
    EXPECT_EQ(account.bFormat, 2);
    EXPECT_EQ(account.stValue.ullUINT64, 8u);
}

TEST(Account, TakesAnUnknownIdentifierThatItCannotEncodeAgain) {
    TVESKAccount account = made<TVESKAccount>();
    EXPECT_EQ(decodeFields(account, "35 00 00 00 03 91 01 07", varint), (Read{0, 8}));
    EXPECT_EQ(account.bFormat, 9);
    EXPECT_EQ(encodeFields(account, varint), written(-33, "10 00 21 09 35 A5 A5 A5 A5"));
}

TEST(Account, RefusesFormatsAboveThree) {
    TVESKAccount account = made<TVESKAccount>();
    for (const uint8_t format : {uint8_t{4}, uint8_t{255}}) {
        account.bFormat = format;
        const std::string bytes = "10 00 21 " + toHex(&format, 1) + " 35 A5 A5 A5 A5";
        EXPECT_EQ(encodeFields(account, varint), written(-33, bytes));
    }
}

TEST(Account, FailsForAnIdentifierOfLengthZero) {
    TVESKAccount account = made<TVESKAccount>();
    EXPECT_EQ(decodeFields(account, "35 00 00 00 00", varint), (Read{-2, 5}));
    EXPECT_EQ(decodeFields(account, "35 00 00 00 00 40 07", varint), (Read{-34, 7}));
}

// --- Authentication data and the token pair -----------------------------------------------------

TEST(AuthData, IsItsLengthAloneWhenItIsEmpty) {
    const TVESKAuthData data = made<TVESKAuthData>();
    EXPECT_EQ(encodeFields(data, varint), written(0, "10 00"));
    EXPECT_EQ(encodeFields(data, fixed), written(0, "12 00 00"));
}

TEST(AuthData, RefusesMoreThan1024Bytes) {
    TVESKAuthData data = made<TVESKAuthData>();
    data.wAuthLen = 1024;
    EXPECT_EQ(encode(data, varint).result, 0);
    EXPECT_EQ(encode(data, varint).used, 1037u);
    EXPECT_EQ(dump(data).result, 0);
    data.wAuthLen = 1025;
    EXPECT_EQ(encodeFields(data, varint), written(-7, "10 81 08"));
    EXPECT_EQ(encodeFields(data, fixed), written(-7, "12 04 01"));
    EXPECT_EQ(dump(data).result, -7);
}

TEST(AuthData, TakesItsLengthFromTheBytesThatArrive) {
    TVESKAuthData data = made<TVESKAuthData>();
    EXPECT_EQ(decode(data, "99 00 00 00 10 12 00 0A 25 00 00 00 03 07 08 09"), (Read{0, 16}));
    EXPECT_EQ(data.wAuthLen, 3);
    EXPECT_EQ(head(data.szAuthInfo, 4), "07 08 09 00");
}

TEST(TokenPair, WritesBothTextsEvenWhenTheyAreEmpty) {
    const O2AuthData tokens = made<O2AuthData>();
    EXPECT_EQ(encodeFields(tokens, varint), written(0, "15 00 00 00 00 25 00 00 00 00"));
    EXPECT_EQ(encodeFields(tokens, fixed), written(0, "15 00 00 00 00 25 00 00 00 00"));
}

TEST(TokenPair, RefusesTextsOf256Bytes) {
    O2AuthData tokens = made<O2AuthData>();
    EXPECT_EQ(decodeFields(tokens, "15 00 00 00 FF" + repeated('t', 255), varint), (Read{0, 260}));
    EXPECT_EQ(decodeFields(tokens, "25 00 00 01 00" + repeated('t', 256), varint), (Read{-3, 5}));
    EXPECT_EQ(head(tokens.szAccessToken, 256), repeated('t', 255) + " 00");
    EXPECT_EQ(tokens.szExtend[0], '\0');
    putWithoutNul(tokens.szAccessToken, 't');
    EXPECT_EQ(encodeFields(tokens, varint).result, -3);
}

// --- The authentication request -----------------------------------------------------------------

const std::string defaultRequest =
    "10 00 25 00 00 00 00 40 00 55 00 00 00 02 56 31 65 00 00 00 0A 15 00 00 00 00 25 00 00 00 00";

TEST(AuthRequest, SaysV1WhenItIsFresh) {
    const TZRPAuthReqBody request = made<TZRPAuthReqBody>();
    EXPECT_EQ(encodeFields(request, varint), written(0, defaultRequest));
    EXPECT_EQ(encodeFields(request, fixed),
              written(0,
                      "12 00 00 25 00 00 00 00 43 00 00 00 00 55 00 00 00 02 56 31"
                      " 65 00 00 00 0A 15 00 00 00 00 25 00 00 00 00"));
}

TEST(AuthRequest, DeliberatelyLeavesFieldNumberThreeFree) {
    const std::vector<std::string> threes = {"35 00 00 00 02 61 62",
                                             "35 00 00 00 00",
                                             "30 AC 02",
                                             "31 05",
                                             "32 01 02",
                                             "33 01 02 03 04",
                                             "34 01 02 03 04 05 06 07 08"};
    for (const std::string& three : threes) {
        TZRPAuthReqBody request = made<TZRPAuthReqBody>();
        EXPECT_EQ(decodeFields(request, three + " 10 05", varint),
                  (Read{0, hex(three).size() + 2}));
        EXPECT_EQ(request.presence, 0x1u) << three;
        EXPECT_EQ(request.wAuthType, 5);
        EXPECT_EQ(request.dwXQuorvaTimestamp, 0u);
        EXPECT_EQ(request.szGameToken[0], '\0');
    }
    TZRPAuthReqBody request = made<TZRPAuthReqBody>();
    EXPECT_EQ(decodeFields(request, "36", varint), (Read{-35, 1}));
    EXPECT_EQ(decodeFields(request, "35 00 00 00 09", varint), (Read{-2, 5}));
}

TEST(AuthRequest, NumbersItsPresenceBitsByDeclarationNotByFieldNumber) {
    struct Case {
        const char* field;
        uint32_t presence;
    };
    for (const Case& c : {Case{"10 05", 0x01}, Case{"25 00 00 00 00", 0x02}, Case{"40 05", 0x04},
                          Case{"55 00 00 00 00", 0x08}, Case{"65 00 00 00 00", 0x10}}) {
        TZRPAuthReqBody request = made<TZRPAuthReqBody>();
        EXPECT_EQ(decodeFields(request, c.field, varint).result, 0);
        EXPECT_EQ(request.presence, c.presence) << c.field;
    }
}

TEST(AuthRequest, CarriesATokenVersionOfSevenCharacters) {
    TZRPAuthReqBody request = made<TZRPAuthReqBody>();
    put(request.szXQuorvaTokenVersion, "V123456");
    EXPECT_EQ(encodeFields(request, varint),
              written(0,
                      "10 00 25 00 00 00 00 40 00 55 00 00 00 07 56 31 32 33 34 35 36"
                      " 65 00 00 00 0A 15 00 00 00 00 25 00 00 00 00"));
    putWithoutNul(request.szXQuorvaTokenVersion, 'V');
    EXPECT_EQ(encodeFields(request, varint),
              written(-3, "10 00 25 00 00 00 00 40 00 55 A5 A5 A5 A5"));
    EXPECT_EQ(decodeFields(request, "55 00 00 00 08" + repeated('V', 8), varint), (Read{-3, 5}));
    EXPECT_EQ(decodeFields(request, "55 00 00 00 07" + repeated('W', 7), varint), (Read{0, 12}));
    EXPECT_EQ(head(request.szXQuorvaTokenVersion, 8), repeated('W', 7) + " 00");
}

TEST(AuthRequest, RefusesAGameTokenOf256Bytes) {
    TZRPAuthReqBody request = made<TZRPAuthReqBody>();
    EXPECT_EQ(decodeFields(request, "25 00 00 01 00" + repeated('g', 256), fixed), (Read{-3, 5}));
    EXPECT_EQ(decodeFields(request, "25 00 00 00 FF" + repeated('g', 255), fixed), (Read{0, 260}));
    putWithoutNul(request.szGameToken, 'g');
    EXPECT_EQ(encodeFields(request, fixed), written(-3, "12 00 00 25 A5 A5 A5 A5"));
}

// --- The authentication answer and the acknowledgement body -------------------------------------

TEST(AuthAnswer, CarriesItsTokenAsAText) {
    TZRPAuthRspBody answer = made<TZRPAuthRspBody>();
    put(answer.szAtk, "token");
    EXPECT_EQ(encodeFields(answer, varint),
              written(0,
                      "15 00 00 00 0D 10 00 21 00 35 00 00 00 02 01 00 40 00 20 00"
                      " 35 00 00 00 05 74 6F 6B 65 6E 45 00 00 00 00"));
    EXPECT_EQ(decodeFields(answer, "35 00 00 01 00" + repeated('t', 256), varint), (Read{-3, 5}));
    EXPECT_EQ(decodeFields(answer, "35 00 00 00 00", varint), (Read{0, 5}))
        << "an empty text, unlike an empty byte array, is fine";
    EXPECT_EQ(answer.szAtk[0], '\0');
    EXPECT_EQ(decodeFields(answer, "45 00 00 00 FF" + repeated('t', 255), varint), (Read{0, 260}));
    putWithoutNul(answer.szExtend, 'e');
    EXPECT_EQ(encodeFields(answer, varint).result, -3);
}

TEST(AckBody, LeavesTheAnswerOutEvenWhenItHoldsData) {
    TZRPAckBody body = made<TZRPAckBody>();
    put(body.stAuthResInfo.szAtk, "token");
    EXPECT_EQ(encode(body, varint), written(0, "AA 00 00 00 07 11 00"));
    EXPECT_EQ(encode(body, fixed), written(0, "99 00 00 00 07 11 00"));
    EXPECT_EQ(dump(body).text, "[bHasAuthInfo]0x00\n");
}

TEST(AckBody, RefusesACountOfTwo) {
    TZRPAckBody body = made<TZRPAckBody>();
    body.bHasAuthInfo = 2;
    EXPECT_EQ(encode(body, varint), written(-7, "AA 00 00 00 07 11 02"));
    EXPECT_EQ(encode(body, fixed), written(-7, "99 00 00 00 07 11 02"));
    EXPECT_EQ(dump(body).result, -7);
    EXPECT_EQ(dump(body).text, "[bHasAuthInfo]0x02\n");
    EXPECT_EQ(decodeFields(body, "11 02", varint), (Read{0, 2}));
    EXPECT_EQ(body.bHasAuthInfo, 2) << "decoding checks no bound";
}

// --- Token refresh ------------------------------------------------------------------------------

TEST(RefreshRequest, IsOneReservedNumber) {
    const TZRPAuthRefreshReq request = made<TZRPAuthRefreshReq>();
    EXPECT_EQ(encode(request, varint), written(0, "AA 00 00 00 07 10 00"));
    EXPECT_EQ(encode(request, fixed), written(0, "99 00 00 00 0A 13 00 00 00 00"));
}

TEST(RefreshNotice, CarriesItsTokenAsCountedBytes) {
    TZRPAuthRefreshNotifyBody notice = made<TZRPAuthRefreshNotifyBody>();
    EXPECT_EQ(encodeFields(notice, varint), written(0, "10 00 20 00 40 00"));
    EXPECT_EQ(encodeFields(notice, fixed), written(0, "12 00 00 22 00 00 43 00 00 00 00"));
    put(notice.szAtk, counting(0x00, 1024));
    notice.wAtkLen = 1024;
    EXPECT_EQ(encodeFields(notice, varint),
              written(0, "10 00 20 80 08 35 00 00 04 00" + counting(0x00, 1024) + "40 00"));
    notice.wAtkLen = 1025;
    EXPECT_EQ(encodeFields(notice, varint), written(-7, "10 00 20 81 08"));
    EXPECT_EQ(encodeFields(notice, fixed), written(-7, "12 00 00 22 04 01"));
}

TEST(RefreshNotice, CountsTheBytesThatArrive) {
    TZRPAuthRefreshNotifyBody notice = made<TZRPAuthRefreshNotifyBody>();
    EXPECT_EQ(decodeFields(notice, "20 0A 35 00 00 00 02 C1 C2", varint), (Read{0, 9}));
    EXPECT_EQ(notice.wAtkLen, 2);
    EXPECT_EQ(head(notice.szAtk, 3), "C1 C2 00");
    EXPECT_EQ(decodeFields(notice, "35 00 00 00 00", varint), (Read{-37, 5}));
}

TEST(RefreshNotice, DeliberatelyReadsWhatExceedsItsTokenAsFields) {
    TZRPAuthRefreshNotifyBody notice = made<TZRPAuthRefreshNotifyBody>();
    notice.wAtkLen = 7;
    EXPECT_EQ(decodeFields(notice, "35 00 00 04 02" + repeated(0x55, 1024) + "40 09", varint),
              (Read{0, 1031}));
    EXPECT_EQ(notice.wAtkLen, 7);
    EXPECT_EQ(notice.dwAtkExpireIn, 9u);
    EXPECT_EQ(notice.presence, 0xCu);
}

}  // namespace
}  // namespace zrp_test
