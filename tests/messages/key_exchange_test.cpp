// The key-exchange records: counts and their capacities, the fixed modulus, oversized arrays, and
// the two unions.
#include "tests/messages/make.h"

namespace zrp_test {
namespace {

using namespace quorva_zrp;

// --- The raw Diffie-Hellman request -------------------------------------------------------------

TEST(RawDhRequest, AlwaysCarriesItsWholeModulus) {
    const TVESKRawDHReq request = made<TVESKRawDHReq>();
    EXPECT_EQ(encodeFields(request, varint), written(0, "10 00 35 00 00 00 40" + repeated(0, 64)));
    EXPECT_EQ(encodeFields(request, fixed),
              written(0, "12 00 00 35 00 00 00 40" + repeated(0, 64)));
}

TEST(RawDhRequest, CarriesUpTo64BytesOfThePublicValue) {
    TVESKRawDHReq request = made<TVESKRawDHReq>();
    put(request.szDH_A, counting(0x80, 64));
    request.wA_size = 64;
    EXPECT_EQ(encode(request, varint),
              written(0, "AA 00 00 00 91 10 40 25 00 00 00 40" + counting(0x80, 64) +
                             "35 00 00 00 40" + repeated(0, 64)));
    EXPECT_EQ(encode(request, fixed).used, 146u);
    request.wA_size = 1;
    EXPECT_EQ(encodeFields(request, varint),
              written(0, "10 01 25 00 00 00 01 80 35 00 00 00 40" + repeated(0, 64)));
    request.wA_size = 65;
    EXPECT_EQ(encodeFields(request, varint), written(-7, "10 41"));
    EXPECT_EQ(encodeFields(request, fixed), written(-7, "12 00 41"));
    EXPECT_EQ(dump(request).result, -7);
}

TEST(RawDhRequest, TakesTheCountFromTheLastOfCountAndArray) {
    TVESKRawDHReq request = made<TVESKRawDHReq>();
    EXPECT_EQ(decodeFields(request, "10 0A 25 00 00 00 05 01 02 03 04 05", varint), (Read{0, 12}));
    EXPECT_EQ(request.wA_size, 5);
    EXPECT_EQ(decodeFields(request, "25 00 00 00 05 01 02 03 04 05 10 0A", varint), (Read{0, 12}));
    EXPECT_EQ(request.wA_size, 10);
}

TEST(RawDhRequest, DecodesACountAboveItsCapacityAndThenRefusesToEncodeOrPrintIt) {
    TVESKRawDHReq request = made<TVESKRawDHReq>();
    EXPECT_EQ(decodeFields(request, "10 AC 02", varint), (Read{0, 3}));
    EXPECT_EQ(request.wA_size, 300);
    EXPECT_EQ(encodeFields(request, varint), written(-7, "10 AC 02"));
    EXPECT_EQ(dump(request).result, -7);
    EXPECT_EQ(dump(request).calls, decimal("[wA_size]", "300"));
}

TEST(RawDhRequest, DeliberatelyReadsWhatExceedsThePublicValueAsFields) {
    TVESKRawDHReq request = made<TVESKRawDHReq>();
    request.wA_size = 9;
    // 70 bytes for 64: the last six are an unknown field of number 4 and two of number 5.
    EXPECT_EQ(
        decodeFields(request, "25 00 00 00 46" + counting(0x10, 64) + "41 01 51 02 51 03", varint),
        (Read{0, 75}));
    EXPECT_EQ(request.wA_size, 9);
    EXPECT_EQ(head(request.szDH_A, 64), counting(0x10, 64));
    EXPECT_EQ(head(request.szDH_p, 64), repeated(0, 64));
    EXPECT_EQ(request.presence, 0x2u);
    // The same with bytes that are no field.
    EXPECT_EQ(
        decodeFields(request, "25 00 00 00 46" + counting(0x10, 64) + repeated(0xFF, 6), varint),
        (Read{-2, 69}));
    EXPECT_EQ(
        decodeFields(request, "25 00 00 00 46" + counting(0x10, 64) + "46 00 00 00 00 00", varint),
        (Read{-35, 70}));
}

TEST(RawDhRequest, StoresAShorterModulusOverTheStartOfTheOldOne) {
    TVESKRawDHReq request = made<TVESKRawDHReq>();
    put(request.szDH_p, repeated(0x77, 64));
    EXPECT_EQ(decodeFields(request, "35 00 00 00 02 01 02", fixed), (Read{0, 7}));
    EXPECT_EQ(head(request.szDH_p, 64), "01 02 " + repeated(0x77, 62));
    EXPECT_EQ(request.presence, 0x4u);
    EXPECT_EQ(decodeFields(request, "35 00 00 00 00", fixed), (Read{-37, 5}));
    EXPECT_EQ(decodeFields(request, "35 00 00 00 03 0A 0B", fixed), (Read{-2, 7}));
    EXPECT_EQ(head(request.szDH_p, 4), "0A 0B 77 77");
}

TEST(RawDhRequest, DeliberatelyReadsWhatExceedsTheModulusAsFields) {
    TVESKRawDHReq request = made<TVESKRawDHReq>();
    EXPECT_EQ(decodeFields(request, "35 00 00 00 42" + counting(0x10, 64) + "10 07", varint),
              (Read{0, 71}));
    EXPECT_EQ(head(request.szDH_p, 64), counting(0x10, 64));
    EXPECT_EQ(request.wA_size, 7);
}

// --- The other records --------------------------------------------------------------------------

TEST(RawDhAnswer, CarriesUpTo64Bytes) {
    TVESKRawDHRsp answer = made<TVESKRawDHRsp>();
    EXPECT_EQ(encodeFields(answer, varint), written(0, "10 00"));
    EXPECT_EQ(encodeFields(answer, fixed), written(0, "12 00 00"));
    put(answer.szDH_B, counting(0x01, 64));
    answer.wB_size = 64;
    EXPECT_EQ(encodeFields(answer, fixed),
              written(0, "12 00 40 25 00 00 00 40" + counting(0x01, 64)));
    answer.wB_size = 65;
    EXPECT_EQ(encodeFields(answer, varint), written(-7, "10 41"));
}

TEST(RawDhAnswer, RefusesAnEmptyArrayAndKeepsTheCountOfAnOversizedOne) {
    TVESKRawDHRsp answer = made<TVESKRawDHRsp>();
    answer.wB_size = 9;
    EXPECT_EQ(decodeFields(answer, "25 00 00 00 00", varint), (Read{-37, 5}));
    EXPECT_EQ(decodeFields(answer, "25 00 00 00 42" + repeated(0x33, 64) + "31 00", varint),
              (Read{0, 71}));
    EXPECT_EQ(answer.wB_size, 9);
}

TEST(KeyValue, CarriesUpTo128Bytes) {
    TVESKKey key = made<TVESKKey>();
    EXPECT_EQ(encodeFields(key, varint), written(0, "11 00"));
    put(key.szValue, counting(0x00, 128));
    key.bLength = 128;
    const std::string full = "11 80 25 00 00 00 80" + counting(0x00, 128);
    EXPECT_EQ(encodeFields(key, varint), written(0, full));
    EXPECT_EQ(encodeFields(key, fixed), written(0, full));
    EXPECT_EQ(dump(key).result, 0);
    key.bLength = 129;
    EXPECT_EQ(encodeFields(key, varint), written(-7, "11 81"));
    EXPECT_EQ(encodeFields(key, fixed), written(-7, "11 81"));
    EXPECT_EQ(dump(key).result, -7);
}

TEST(KeyValue, CountsWhatArrives) {
    TVESKKey key = made<TVESKKey>();
    EXPECT_EQ(decodeFields(key, "11 FF 25 00 00 00 80" + counting(0x00, 128), fixed),
              (Read{0, 135}));
    EXPECT_EQ(key.bLength, 128);
    EXPECT_EQ(decodeFields(key, "25 00 00 00 00", fixed), (Read{-37, 5}));
    EXPECT_EQ(decodeFields(key, "25 00 00 00 82" + counting(0x01, 128) + "31 00", fixed),
              (Read{0, 135}));
    EXPECT_EQ(key.bLength, 128) << "an oversized array sets no count";
    EXPECT_EQ(head(key.szValue, 2), "01 02");
}

TEST(EncipheredInfo, CarriesUpTo1024Bytes) {
    TVESKEncDHInfo info = made<TVESKEncDHInfo>();
    EXPECT_EQ(encodeFields(info, varint), written(0, "11 00 20 00"));
    put(info.szEncryptedInfo, counting(0x00, 1024));
    info.wEncInfoLen = 1024;
    EXPECT_EQ(encodeFields(info, varint),
              written(0, "11 00 20 80 08 35 00 00 04 00" + counting(0x00, 1024)));
    EXPECT_EQ(encodeFields(info, fixed),
              written(0, "11 00 22 04 00 35 00 00 04 00" + counting(0x00, 1024)));
    EXPECT_EQ(dump(info).result, 0);
    info.wEncInfoLen = 1025;
    EXPECT_EQ(encodeFields(info, varint), written(-7, "11 00 20 81 08"));
    EXPECT_EQ(encodeFields(info, fixed), written(-7, "11 00 22 04 01"));
    EXPECT_EQ(dump(info).result, -7);
}

TEST(EncipheredInfo, CountsWhatArrives) {
    TVESKEncDHInfo info = made<TVESKEncDHInfo>();
    EXPECT_EQ(decodeFields(info, "20 0A 35 00 00 00 02 01 02", varint), (Read{0, 9}));
    EXPECT_EQ(info.wEncInfoLen, 2);
    EXPECT_EQ(decodeFields(info, "35 00 00 00 00", varint), (Read{-37, 5}));
    EXPECT_EQ(decodeFields(info, "35 00 00 04 02" + repeated(0x44, 1024) + "11 06", varint),
              (Read{0, 1031}));
    EXPECT_EQ(info.wEncInfoLen, 2);
    EXPECT_EQ(info.bEncMethod, 6);
}

// --- The unions ---------------------------------------------------------------------------------

TEST(KeyUnions, ShareTheirSelectorsButForTheKeyValue) {
    TZRPKeyReq request = made<TZRPKeyReq>();
    TZRPKeyRsp answer = made<TZRPKeyRsp>();
    for (const bool flavour : {varint, fixed}) {
        EXPECT_EQ(encodeFields(2, request, flavour), written(-33, ""));
        EXPECT_EQ(encodeFields(2, answer, flavour), written(0, "25 00 00 00 02 11 00"));
        EXPECT_EQ(encodeFields(1, request, flavour), written(-33, ""));
        EXPECT_EQ(encodeFields(1, answer, flavour), written(-33, ""));
    }
    EXPECT_EQ(encodeFields(3, answer, varint), written(0, "35 00 00 00 02 10 00"));
    EXPECT_EQ(encodeFields(3, answer, fixed), written(0, "35 00 00 00 03 12 00 00"));
    EXPECT_EQ(encodeFields(4, request, varint), written(0, "45 00 00 00 04 11 00 20 00"));
    EXPECT_EQ(encodeFields(4, answer, fixed), written(0, "45 00 00 00 05 11 00 22 00 00"));
}

TEST(KeyUnions, PassTheFailureOfAMemberUp) {
    TZRPKeyReq request = made<TZRPKeyReq>(3);
    request.stReqByRawDH.wA_size = 65;
    EXPECT_EQ(encode(3, request, varint), written(-7, "AA 00 00 00 0C 35 A5 A5 A5 A5 10 41"));
    EXPECT_EQ(dumpMember(3, request).result, -7);
    long long selector = noSelector;
    EXPECT_EQ(decodeFields(request, selector, "35 00 00 00 05 25 00 00 00 00", varint),
              (Read{-37, 10}));
    EXPECT_EQ(selector, noSelector);
}

TEST(KeyUnions, DeliberatelyTakeANumberWithoutMember) {
    TZRPKeyReq request = made<TZRPKeyReq>();
    TZRPKeyRsp answer = made<TZRPKeyRsp>();
    for (const std::string magic : {"AA", "99"}) {
        long long selector = noSelector;
        EXPECT_EQ(decode(request, selector, magic + "00 00 00 07 71 05"), (Read{0, 7}));
        EXPECT_EQ(selector, 7);
        selector = noSelector;
        EXPECT_EQ(decode(request, selector, magic + "00 00 00 0A 25 00 00 00 00"), (Read{0, 10}));
        EXPECT_EQ(selector, 2) << "a request has no key value";
        selector = noSelector;
        EXPECT_EQ(decode(answer, selector, magic + "00 00 00 07 11 05"), (Read{0, 7}));
        EXPECT_EQ(selector, 1);
    }
    EXPECT_EQ(encodeFields(7, request, varint), written(-33, ""));
    EXPECT_EQ(dumpMember(7, request).calls, Calls{});
}

TEST(KeyUnions, FailForADeclaredLengthOfZero) {
    TZRPKeyReq request = made<TZRPKeyReq>();
    long long selector = noSelector;
    EXPECT_EQ(decodeFields(request, selector, "01 05", varint, 0), (Read{-34, 2}));
    EXPECT_EQ(request.chNull, 5);
    EXPECT_EQ(decodeFields(request, selector, "", varint, 0), (Read{-2, 0}));
    EXPECT_EQ(decodeFields(request, selector, "35", varint, 0), (Read{-2, 1}));
    EXPECT_EQ(selector, noSelector);
}

TEST(KeyUnions, LeaveAMemberOfLengthZeroAsItWas) {
    TZRPKeyRsp answer = made<TZRPKeyRsp>(2);
    answer.stKey.bLength = 3;
    answer.stKey.presence = 0x3;
    long long selector = noSelector;
    EXPECT_EQ(decodeFields(answer, selector, "25 00 00 00 00", fixed), (Read{0, 5}));
    EXPECT_EQ(selector, 2);
    EXPECT_EQ(answer.stKey.bLength, 3);
    EXPECT_EQ(answer.stKey.presence, 0u);
}

TEST(KeyUnions, PrintTheMemberUnderItsHeading) {
    TZRPKeyRsp answer = made<TZRPKeyRsp>(2);
    answer.stKey.bLength = 1;
    EXPECT_EQ(dumpMember(2, answer, 0, ' ').text, "[stKey] [bLength]0x01 [szValue]1 0x00 ");
    const Dump deeper = dumpMember(2, answer, 4);
    EXPECT_EQ(deeper.calls,
              (Calls{heading(4, '\n', "[stKey]"), value(5, '\n', "[bLength]", "0x%02x", "0x01"),
                     array(5, '\n', "[szValue]", 1)}));
    EXPECT_EQ(dumpMember(2, answer, -1).calls,
              (Calls{heading(-1, '\n', "[stKey]"), value(-1, '\n', "[bLength]", "0x%02x", "0x01"),
                     array(-1, '\n', "[szValue]", 1)}));
    answer.chNull = -1;
    EXPECT_EQ(dumpMember(0, answer, 0, ' ').text, "[chNull]0xffffffff ");
    EXPECT_EQ(dumpMember(1, answer).text, "");
}

}  // namespace
}  // namespace zrp_test
