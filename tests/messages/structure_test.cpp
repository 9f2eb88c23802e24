// How structures are decoded: fields in any order, unknown ones stepped over, counts and nested
// values.
#include "tests/messages/make.h"

namespace zrp_test {
namespace {

using namespace quorva_zrp;

TEST(Structure, TakesTheLastOccurrenceOfAField) {
    TZRPWaitBody notice = made<TZRPWaitBody>();
    EXPECT_EQ(decodeFields(notice, "10 01 20 02 10 03", varint), (Read{0, 6}));
    EXPECT_EQ(notice.dwPosition, 3u);
    EXPECT_EQ(notice.dwTotal, 2u);
    EXPECT_EQ(notice.presence, 0x3u);
}

TEST(Structure, TakesItsFieldsInAnyOrder) {
    TZRPWaitBody notice = made<TZRPWaitBody>();
    EXPECT_EQ(decodeFields(notice, "33 00 00 00 09 13 00 00 00 07 23 00 00 00 08", fixed),
              (Read{0, 15}));
    EXPECT_EQ(notice.dwPosition, 7u);
    EXPECT_EQ(notice.dwTotal, 8u);
    EXPECT_EQ(notice.dwRoughTime, 9u);
}

TEST(Structure, DeliberatelyReadsAVarintBehindAFixedWidthTypeId) {
    TZRPBase base = made<TZRPBase>();
    EXPECT_EQ(decodeFields(base, "12 AC 02 53 05", varint), (Read{0, 5}));
    EXPECT_EQ(base.wMagic, 300);
    EXPECT_EQ(base.dwTimeStamp, 5u);
}

TEST(Structure, DeliberatelyReadsAFixedWidthBehindAVarintTypeId) {
    TZRPBase base = made<TZRPBase>();
    EXPECT_EQ(decodeFields(base, "10 01 2C 50 00 00 00 05", fixed), (Read{0, 8}));
    EXPECT_EQ(base.wMagic, 300);
    EXPECT_EQ(base.dwTimeStamp, 5u);
}

TEST(Structure, ForgetsThePresenceBitsOfAnEarlierDecode) {
    TZRPWaitBody notice = made<TZRPWaitBody>();
    EXPECT_EQ(decodeFields(notice, "10 01", varint), (Read{0, 2}));
    EXPECT_EQ(decodeFields(notice, "20 02", varint), (Read{0, 2}));
    EXPECT_EQ(notice.presence, 0x2u);
    EXPECT_EQ(notice.dwPosition, 1u) << "the value of the earlier decode stays";
}

// --- Unknown fields -----------------------------------------------------------------------------

TEST(Structure, FailsInsideAnUnknownFieldThatIsCutShort) {
    struct Case {
        const char* field;
        Read expected;
    };
    // Field number 2 does not exist in a client's stop notice.
    for (const Case& c : {Case{"21", {-2, 1}}, Case{"22 01", {-2, 1}}, Case{"23 01 02 03", {-2, 1}},
                          Case{"24 01 02 03 04 05 06 07", {-2, 1}}, Case{"25 00 00 00", {-2, 1}},
                          Case{"25 00 00 00 03 01 02", {-2, 5}}}) {
        for (const bool flavour : {varint, fixed}) {
            TZRPCStopBody notice = made<TZRPCStopBody>();
            EXPECT_EQ(decodeFields(notice, c.field, flavour), c.expected) << c.field;
            EXPECT_EQ(notice.presence, 0u);
        }
    }
}

TEST(Structure, DeliberatelyPassesOverACutVarintAndFailsOnItsBytesAsATag) {
    TZRPCStopBody notice = made<TZRPCStopBody>();
    EXPECT_EQ(decodeFields(notice, "20 80", varint), (Read{-2, 1}));
    EXPECT_EQ(decodeFields(notice, "20 80", fixed), (Read{-2, 1}));
    // With nothing behind its tag there is no next tag to fail on.
    EXPECT_EQ(decodeFields(notice, "20", varint), (Read{0, 1}));
    // Ten bytes that overflow 64 bits are passed over as well; read as a tag they overflow again.
    EXPECT_EQ(decodeFields(notice, "20 FF FF FF FF FF FF FF FF FF 02", varint), (Read{-2, 1}));
}

TEST(Structure, StepsOverAnUnknownFieldOfLengthZero) {
    TZRPCStopBody notice = made<TZRPCStopBody>();
    EXPECT_EQ(decodeFields(notice, "25 00 00 00 00 10 05", varint), (Read{0, 7}));
    EXPECT_EQ(notice.dwReserved, 5u);
}

TEST(Structure, SaysLengthMismatchWhereAnUnknownFieldGoesPastTheLength) {
    TZRPCStopBody notice = made<TZRPCStopBody>();
    EXPECT_EQ(decodeFields(notice, "25 00 00 00 02 01 02 10 05", varint, 6), (Read{-34, 7}));
}

TEST(Structure, KnowsFieldNumbersBeyondOneTagByte) {
    // Numbers that would be known ones if the tag were cut to 8 or 16 bits: 17 and 4097.
    TZRPCStopBody notice = made<TZRPCStopBody>();
    EXPECT_EQ(decodeFields(notice, "90 02 05 90 80 04 06", varint), (Read{0, 7}));
    EXPECT_EQ(notice.presence, 0u);
    EXPECT_EQ(notice.dwReserved, 0u);
    // The largest field number.
    EXPECT_EQ(decodeFields(notice, "F1 FF FF FF 0F 07", varint), (Read{0, 6}));
    EXPECT_EQ(notice.presence, 0u);
}

TEST(Structure, DeliberatelyFoldsTagsOfMoreThanFiveBytes) {
    // The sixth group of a 32-bit varint is shifted by 3: 2 << 3 is the tag 0x10 of field 1.
    TZRPCStopBody notice = made<TZRPCStopBody>();
    EXPECT_EQ(decodeFields(notice, "80 80 80 80 80 02 05", varint), (Read{0, 7}));
    EXPECT_EQ(notice.dwReserved, 5u);
}

// --- Counted arrays -----------------------------------------------------------------------------

TEST(Structure, LeavesOutAnArrayOfCountZero) {
    TVESKAuthData data = made<TVESKAuthData>();
    put(data.szAuthInfo, "D1 D2 D3");
    EXPECT_EQ(encode(data, varint), written(0, "AA 00 00 00 07 10 00"));
    EXPECT_EQ(encode(data, fixed), written(0, "99 00 00 00 08 12 00 00"));
}

TEST(Structure, LeavesAnAbsentArrayUntouched) {
    TVESKAuthData data = made<TVESKAuthData>();
    data.wAuthLen = 3;
    put(data.szAuthInfo, "D1 D2 D3");
    EXPECT_EQ(decode(data, "AA 00 00 00 07 10 00"), (Read{0, 7}));
    EXPECT_EQ(data.wAuthLen, 0);
    EXPECT_EQ(head(data.szAuthInfo, 4), "D1 D2 D3 00");
    EXPECT_EQ(data.presence, 0x1u);
}

TEST(Structure, CountsTheBytesOfAnArrayAsTheyArrive) {
    TVESKAuthData data = made<TVESKAuthData>();
    EXPECT_EQ(decodeFields(data, "10 0A 25 00 00 00 03 01 02 03", varint), (Read{0, 10}));
    EXPECT_EQ(data.wAuthLen, 3);
    EXPECT_EQ(decodeFields(data, "25 00 00 00 03 01 02 03 10 0A", varint), (Read{0, 10}));
    EXPECT_EQ(data.wAuthLen, 10) << "the count field came last";
}

TEST(Structure, StoresAShorterArrayOverTheStartOfTheOldOne) {
    TVESKAuthData data = made<TVESKAuthData>();
    put(data.szAuthInfo, "D1 D2 D3 D4");
    EXPECT_EQ(decodeFields(data, "25 00 00 00 02 01 02", fixed), (Read{0, 7}));
    EXPECT_EQ(data.wAuthLen, 2);
    EXPECT_EQ(head(data.szAuthInfo, 5), "01 02 D3 D4 00");
}

TEST(Structure, FillsAnArrayToItsCapacity) {
    TVESKAuthData data = made<TVESKAuthData>();
    const std::string content = counting(0x00, 1024);
    EXPECT_EQ(decodeFields(data, "25 00 00 04 00 " + content, varint), (Read{0, 1029}));
    EXPECT_EQ(data.wAuthLen, 1024);
    EXPECT_EQ(head(data.szAuthInfo, 1024), content);
    EXPECT_EQ(encode(data, varint), written(0, "AA 00 00 04 0D 10 80 08 25 00 00 04 00" + content));
    EXPECT_EQ(encode(data, fixed), written(0, "99 00 00 04 0D 12 04 00 25 00 00 04 00" + content));
}

TEST(Structure, DeliberatelyReadsWhatExceedsAnArrayAsFields) {
    TVESKAuthData data = made<TVESKAuthData>();
    data.wAuthLen = 77;
    // Six bytes too many: field 1 with value 9, an unknown byte field, an unknown varint.
    const std::string input = "25 00 00 04 06 " + counting(0x00, 1024) + " 10 09 31 7F 40 05";
    EXPECT_EQ(decodeFields(data, input, varint), (Read{0, 1035}));
    EXPECT_EQ(data.wAuthLen, 9);
    EXPECT_EQ(data.presence, 0x3u);

    TVESKAuthData alone = made<TVESKAuthData>();
    alone.wAuthLen = 77;
    EXPECT_EQ(decodeFields(alone, "25 00 00 04 02" + repeated(0x11, 1024) + "31 7F", varint),
              (Read{0, 1031}));
    EXPECT_EQ(alone.wAuthLen, 77) << "the count is only set at the declared end";

    TVESKAuthData broken = made<TVESKAuthData>();
    EXPECT_EQ(decodeFields(broken, "25 00 00 04 01" + repeated(0x11, 1024) + "36", varint),
              (Read{-35, 1030}));
}

TEST(Structure, DeliberatelyNeedsNoMoreInputThanAnArrayHolds) {
    // A declared length of 4 GiB with 1024 bytes to read: the array is full before the input ends.
    TVESKAuthData data = made<TVESKAuthData>();
    data.wAuthLen = 77;
    EXPECT_EQ(decodeFields(data, "25 FF FF FF FF " + repeated(0x22, 1024), varint),
              (Read{0, 1029}));
    EXPECT_EQ(data.wAuthLen, 77);
    EXPECT_EQ(head(data.szAuthInfo, 1024), repeated(0x22, 1024));
}

// --- Nested structures --------------------------------------------------------------------------

TEST(Structure, AcceptsANestedStructureOfLengthZero) {
    TZRPAuthRspBody answer = made<TZRPAuthRspBody>();
    answer.stAccount.wType = 5;
    answer.stAccount.presence = 0xF;
    EXPECT_EQ(decodeFields(answer, "15 00 00 00 00 20 07", varint), (Read{0, 7}));
    EXPECT_EQ(answer.stAccount.wType, 5);
    EXPECT_EQ(answer.stAccount.presence, 0u);
    EXPECT_EQ(answer.wAuthType, 7);
    EXPECT_EQ(answer.presence, 0x3u);
}

TEST(Structure, ContinuesBehindANestedStructure) {
    TZRPAuthRspBody answer = made<TZRPAuthRspBody>();
    EXPECT_EQ(decodeFields(answer, "15 00 00 00 02 10 05 20 07", varint), (Read{0, 9}));
    EXPECT_EQ(answer.stAccount.wType, 5);
    EXPECT_EQ(answer.stAccount.presence, 0x1u);
    EXPECT_EQ(answer.wAuthType, 7);
}

TEST(Structure, FailsWhereANestedStructureOverrunsItsLength) {
    TZRPAuthRspBody answer = made<TZRPAuthRspBody>();
    EXPECT_EQ(decodeFields(answer, "15 00 00 00 01 10 B4 24 20 07", varint), (Read{-34, 8}));
    EXPECT_EQ(answer.stAccount.wType, 4660);
    EXPECT_EQ(answer.stAccount.presence, 0x1u);
    EXPECT_EQ(answer.presence, 0x1u);
    EXPECT_EQ(answer.wAuthType, 0);
}

TEST(Structure, FailsWhereANestedStructureDeclaresMoreThanTheInputHolds) {
    TZRPAuthRspBody answer = made<TZRPAuthRspBody>();
    EXPECT_EQ(decodeFields(answer, "15 FF FF FF FF 10 05", varint), (Read{-2, 7}));
    EXPECT_EQ(answer.stAccount.wType, 5);
    EXPECT_EQ(decodeFields(answer, "15 00 00 00", varint), (Read{-2, 1}));
    EXPECT_EQ(answer.presence, 0x1u);
}

TEST(Structure, BoundsANestedStructureByItsOwnLengthAlone) {
    // The account ends inside its own length but behind the end of the answer.
    TZRPAuthRspBody answer = made<TZRPAuthRspBody>();
    EXPECT_EQ(decodeFields(answer, "15 00 00 00 02 10 05", varint, 6), (Read{-34, 7}));
    EXPECT_EQ(answer.stAccount.wType, 5);
}

// --- Optional elements --------------------------------------------------------------------------

TEST(Structure, WritesAnOptionalElementOnlyForACountOfOne) {
    TZRPAckBody body = made<TZRPAckBody>();
    body.stAuthResInfo.wAuthType = 9;
    EXPECT_EQ(encodeFields(body, varint), written(0, "11 00"));
    body.bHasAuthInfo = 1;
    EXPECT_EQ(encodeFields(body, varint),
              written(0,
                      "11 01 25 00 00 00 1E"
                      " 15 00 00 00 0D 10 00 21 00 35 00 00 00 02 01 00 40 00"
                      " 20 09 35 00 00 00 00 45 00 00 00 00"));
}

TEST(Structure, SetsTheCountOfAnOptionalElementThatArrives) {
    TZRPAckBody body = made<TZRPAckBody>();
    EXPECT_EQ(decodeFields(body, "25 00 00 00 02 20 09", varint), (Read{0, 7}));
    EXPECT_EQ(body.bHasAuthInfo, 1);
    EXPECT_EQ(body.presence, 0x2u) << "the count field itself did not arrive";
    EXPECT_EQ(decodeFields(body, "11 07 25 00 00 00 00", varint), (Read{0, 7}));
    EXPECT_EQ(body.bHasAuthInfo, 1);
    EXPECT_EQ(decodeFields(body, "25 00 00 00 00 11 07", varint), (Read{0, 7}));
    EXPECT_EQ(body.bHasAuthInfo, 7) << "the count field came last";
}

// --- Texts --------------------------------------------------------------------------------------

TEST(Structure, CarriesATextOneShorterThanItsCapacity) {
    SpecifyNameRouteInfo route = made<SpecifyNameRouteInfo>();
    put(route.szServiceName, std::string(127, 'n'));
    const std::string whole = "15 00 00 00 7F" + repeated('n', 127);
    EXPECT_EQ(encodeFields(route, varint), written(0, whole));
    EXPECT_EQ(encodeFields(route, fixed), written(0, whole));

    SpecifyNameRouteInfo decoded = made<SpecifyNameRouteInfo>();
    EXPECT_EQ(decodeFields(decoded, whole, varint), (Read{0, 132}));
    EXPECT_EQ(head(decoded.szServiceName, 128), repeated('n', 127) + " 00");
}

TEST(Structure, EndsAShorterTextBehindItsLastCharacter) {
    SpecifyNameRouteInfo route = made<SpecifyNameRouteInfo>();
    put(route.szServiceName, "former");
    EXPECT_EQ(decodeFields(route, "15 00 00 00 02 61 62", varint), (Read{0, 7}));
    EXPECT_EQ(head(route.szServiceName, 7), "61 62 00 6D 65 72 00");
    EXPECT_EQ(decodeFields(route, "15 00 00 00 00", varint), (Read{0, 5}));
    EXPECT_EQ(head(route.szServiceName, 3), "00 62 00");
}

TEST(Structure, KeepsANulInsideATextThatArrivesButEncodesUpToIt) {
    SpecifyNameRouteInfo route = made<SpecifyNameRouteInfo>();
    EXPECT_EQ(decodeFields(route, "15 00 00 00 03 61 00 62", fixed), (Read{0, 8}));
    EXPECT_EQ(head(route.szServiceName, 4), "61 00 62 00");
    EXPECT_EQ(encodeFields(route, fixed), written(0, "15 00 00 00 01 61"));
}

}  // namespace
}  // namespace zrp_test
