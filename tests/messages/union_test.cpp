// Unions on their own: the selector travels as the field number of the one member that is written.
#include "tests/messages/make.h"

namespace zrp_test {
namespace {

using namespace quorva_zrp;

TEST(Union, EncodesTheMemberThatTheSelectorNames) {
    TVESKIDValue value = made<TVESKIDValue>(0);
    EXPECT_EQ(encode(0, value, varint), written(0, "AA 00 00 00 07 01 00"));
    EXPECT_EQ(encode(0, value, fixed), written(0, "99 00 00 00 07 01 00"));
    value.dwUINT32 = 300;
    EXPECT_EQ(encode(1, value, varint), written(0, "AA 00 00 00 08 10 AC 02"));
    EXPECT_EQ(encode(1, value, fixed), written(0, "99 00 00 00 0A 13 00 00 01 2C"));
    put(value.szSTRING, "ab");
    EXPECT_EQ(encode(3, value, varint), written(0, "AA 00 00 00 0C 35 00 00 00 02 61 62"));
    EXPECT_EQ(encode(3, value, fixed), written(0, "99 00 00 00 0C 35 00 00 00 02 61 62"));
}

TEST(Union, DecodesTheMemberItFindsAndReportsItsNumber) {
    TVESKIDValue value = made<TVESKIDValue>();
    long long selector = 3;
    EXPECT_EQ(decode(value, selector, "AA 00 00 00 07 01 80"), (Read{0, 7}));
    EXPECT_EQ(selector, 0);
    EXPECT_EQ(value.chNull, -128);
    EXPECT_EQ(decode(value, selector, "AA 00 00 00 08 10 AC 02"), (Read{0, 8}));
    EXPECT_EQ(selector, 1);
    EXPECT_EQ(value.dwUINT32, 300u);
    EXPECT_EQ(decode(value, selector, "99 00 00 00 0A 13 00 00 01 2D"), (Read{0, 10}));
    EXPECT_EQ(selector, 1);
    EXPECT_EQ(value.dwUINT32, 301u);
    EXPECT_EQ(decode(value, selector, "99 00 00 00 0C 35 00 00 00 02 61 62"), (Read{0, 12}));
    EXPECT_EQ(selector, 3);
    EXPECT_STREQ(value.szSTRING, "ab");
}

TEST(Union, RefusesASelectorThatNamesNoMember) {
    const TVESKIDValue value = made<TVESKIDValue>();
    // 259 and 2^32 + 1 name a member when cut to 8 or 32 bits; a selector is not cut.
    for (const long long selector : {-1LL, 4LL, 259LL, 1LL << 32, (1LL << 32) + 1, LLONG_MIN}) {
        EXPECT_EQ(encode(selector, value, varint), written(-33, "AA 00 00 00 05"));
        EXPECT_EQ(encode(selector, value, fixed), written(-33, "99 00 00 00 05"));
    }
    const TZRPExtHead extension = made<TZRPExtHead>();
    for (const long long selector :
         {1LL, 16LL, 4096LL, 4099LL, 8192LL, 65536LL + 4097, 1048576LL}) {
        EXPECT_EQ(encode(selector, extension, varint), written(-33, "AA 00 00 00 05"));
    }
}

TEST(Union, RefusesTheSelectorsThatAreGapsInItsTable) {
    const TZRPKeyReq request = made<TZRPKeyReq>();
    const TZRPKeyRsp answer = made<TZRPKeyRsp>();
    const TZRPRouteInfo route = made<TZRPRouteInfo>();
    for (const bool flavour : {varint, fixed}) {
        for (const long long selector : {1LL, 2LL, 5LL, -3LL}) {
            EXPECT_EQ(encodeFields(selector, request, flavour), written(-33, "")) << selector;
        }
        for (const long long selector : {1LL, 5LL, -2LL}) {
            EXPECT_EQ(encodeFields(selector, answer, flavour), written(-33, "")) << selector;
        }
        for (const long long selector : {5LL, -1LL}) {
            EXPECT_EQ(encodeFields(selector, route, flavour), written(-33, "")) << selector;
        }
    }
}

TEST(Union, RefusesToEncodeATextWithoutNul) {
    TVESKIDValue value = made<TVESKIDValue>();
    putWithoutNul(value.szSTRING, 's');
    EXPECT_EQ(encode(3, value, varint), written(-3, "AA 00 00 00 0A 35 A5 A5 A5 A5"));
    EXPECT_EQ(encode(3, value, fixed), written(-3, "99 00 00 00 0A 35 A5 A5 A5 A5"));
    // The error of the text comes before the missing place of its length.
    EXPECT_EQ(encodeFields(3, value, varint, 1), written(-3, "35"));
    EXPECT_EQ(encodeFields(3, value, varint, 4), written(-3, "35"));
    EXPECT_EQ(encodeFields(3, value, varint, 0), written(-1, ""));
    value.szSTRING[255] = '\0';
    EXPECT_EQ(encodeFields(3, value, varint), written(0, "35 00 00 00 FF" + repeated('s', 255)));
}

TEST(Union, PutsATextWhereItsLengthHasNoRoom) {
    TVESKIDValue value = made<TVESKIDValue>();
    put(value.szSTRING, "ab");
    EXPECT_EQ(encodeFields(3, value, varint, 2), written(-1, "35"));
    EXPECT_EQ(encodeFields(3, value, varint, 3), written(-1, "35 61 62"));
    EXPECT_EQ(encodeFields(3, value, varint, 4), written(-1, "35 61 62"));
    EXPECT_EQ(encodeFields(3, value, varint, 5), written(-1, "35 A5 A5 A5 A5"));
    EXPECT_EQ(encodeFields(3, value, varint, 6), written(-1, "35 A5 A5 A5 A5"));
    EXPECT_EQ(encodeFields(3, value, varint, 7), written(0, "35 00 00 00 02 61 62"));
}

TEST(Union, WritesLongTagsForLargeSelectors) {
    const TZRPExtHead extension = made<TZRPExtHead>(4097);
    EXPECT_EQ(encodeFields(4097, extension, varint, 3), written(-1, "95 80 04"));
    TZRPBody body = made<TZRPBody>(0);
    body.chSyn = 1;
    EXPECT_EQ(encodeFields(4097, body, varint), written(0, "91 80 04 01"));
    EXPECT_EQ(encodeFields(4097, body, varint, 3), written(-1, "91 80 04"));
    EXPECT_EQ(encodeFields(4097, body, fixed, 2), (Written{-1, 0, "", "91 80"}));
}

// --- Decoding -----------------------------------------------------------------------------------

TEST(Union, RefusesATextAtOrAboveItsCapacity) {
    TVESKIDValue value = made<TVESKIDValue>();
    put(value.szSTRING, "former");
    long long selector = noSelector;
    for (const std::string length : {"00 00 01 00", "00 00 01 01", "FF FF FF FF"}) {
        EXPECT_EQ(decodeFields(value, selector, "35 " + length + repeated('s', 260), varint),
                  (Read{-3, 5}));
    }
    EXPECT_EQ(selector, noSelector);
    EXPECT_STREQ(value.szSTRING, "former");
    EXPECT_EQ(decodeFields(value, selector, "35 00 00 00 FF" + repeated('s', 255), varint),
              (Read{0, 260}));
    EXPECT_EQ(selector, 3);
    EXPECT_EQ(head(value.szSTRING, 256), repeated('s', 255) + " 00");
}

TEST(Union, DeliberatelyTakesAnUnknownNumberAsItsSelector) {
    struct Case {
        const char* field;
        size_t size;
        long long selector;
    };
    for (const Case& c : {Case{"70 05", 2, 7}, Case{"71 05", 2, 7}, Case{"72 00 05", 3, 7},
                          Case{"73 00 00 00 05", 5, 7}, Case{"74 00 00 00 00 00 00 00 05", 9, 7},
                          Case{"75 00 00 00 02 01 02", 7, 7}, Case{"91 02 05", 3, 17},
                          Case{"B1 20 05", 3, 259}, Case{"F1 FF FF FF 0F 05", 6, 268435455}}) {
        for (const bool flavour : {varint, fixed}) {
            TVESKIDValue value = made<TVESKIDValue>();
            long long selector = noSelector;
            EXPECT_EQ(decodeFields(value, selector, c.field, flavour), (Read{0, c.size}))
                << c.field;
            EXPECT_EQ(selector, c.selector);
            EXPECT_EQ(image(value), repeated(0, 256)) << "a skipped value is stored nowhere";
            EXPECT_EQ(encodeFields(selector, value, flavour), written(-33, ""));
            EXPECT_EQ(dumpMember(selector, value).text, "");
        }
    }
}

TEST(Union, KeepsTheSelectorWhenAnUnknownFieldFails) {
    struct Case {
        const char* field;
        Read expected;
    };
    for (const Case& c : {Case{"76", {-35, 1}}, Case{"7F 00", {-35, 1}}, Case{"71", {-2, 1}},
                          Case{"72 00", {-2, 1}}, Case{"73 00 00 00", {-2, 1}},
                          Case{"74 00 00 00 00 00 00 00", {-2, 1}}, Case{"75 00 00 00", {-2, 1}},
                          Case{"75 00 00 00 03 01 02", {-2, 5}}, Case{"", {-2, 0}},
                          Case{"F0", {-2, 0}}, Case{"FF FF FF FF 1F 00", {-2, 0}}}) {
        for (const bool flavour : {varint, fixed}) {
            TVESKIDValue value = made<TVESKIDValue>();
            long long selector = noSelector;
            EXPECT_EQ(decodeFields(value, selector, c.field, flavour), c.expected) << c.field;
            EXPECT_EQ(selector, noSelector);
        }
    }
}

TEST(Union, DeliberatelyPassesOverACutVarintOfUnknownNumber) {
    TVESKIDValue value = made<TVESKIDValue>();
    long long selector = noSelector;
    EXPECT_EQ(decodeFields(value, selector, "70 80", varint), (Read{0, 1}));
    EXPECT_EQ(selector, 7);
}

TEST(Union, DeliberatelyReadsOneFieldAndLeavesTheRest) {
    TVESKIDValue value = made<TVESKIDValue>();
    long long selector = noSelector;
    EXPECT_EQ(decode(value, selector, "AA 00 00 00 0A 10 05 20 06 00"), (Read{0, 7}));
    EXPECT_EQ(selector, 1);
    EXPECT_EQ(value.dwUINT32, 5u);
    EXPECT_EQ(decode(value, selector, "99 00 00 00 09 01 33 FF FF"), (Read{0, 7}));
    EXPECT_EQ(selector, 0);
    EXPECT_EQ(value.chNull, 0x33);
}

TEST(Union, DeliberatelyReadsAFieldEvenFromNothing) {
    TVESKIDValue value = made<TVESKIDValue>();
    long long selector = noSelector;
    EXPECT_EQ(decodeFields(value, selector, "10 05", varint, 0), (Read{-34, 2}));
    EXPECT_EQ(value.dwUINT32, 5u);
    EXPECT_EQ(decodeFields(value, selector, "", varint, 0), (Read{-2, 0}));
    EXPECT_EQ(decodeFields(value, selector, "76", varint, 0), (Read{-35, 1}));
    EXPECT_EQ(decodeFields(value, selector, "71 05", fixed, 0), (Read{-34, 2}));
    EXPECT_EQ(decodeFields(value, selector, "13 00 00", fixed, 0), (Read{-2, 1}));
    EXPECT_EQ(decode(value, selector, "AA 00 00 00 05"), (Read{-2, 5}));
    EXPECT_EQ(decode(value, selector, "AA 00 00 00 05 10 06"), (Read{-34, 7}));
    EXPECT_EQ(value.dwUINT32, 6u);
    EXPECT_EQ(selector, noSelector);
}

TEST(Union, DeliberatelyReadsAFieldWhereTheDeclaredLengthIsBelowFive) {
    for (const std::string declared : {"00", "01", "02", "03", "04"}) {
        TVESKIDValue value = made<TVESKIDValue>();
        long long selector = noSelector;
        const std::string start = "AA 00 00 00" + declared;
        EXPECT_EQ(decode(value, selector, start + "10 05"), (Read{-34, 7}));
        EXPECT_EQ(value.dwUINT32, 5u);
        EXPECT_EQ(decode(value, selector, start), (Read{-2, 5}));
        EXPECT_EQ(decode(value, selector, start + "76"), (Read{-35, 6}));
        EXPECT_EQ(decode(value, selector, start + "35 00 00 01 00"), (Read{-3, 10}));
        EXPECT_EQ(selector, noSelector);
    }
}

TEST(Union, EndsWhereThePositionPlusTheLengthWrapsTo) {
    if (sizeof(size_t) < sizeof(uint64_t)) {
        GTEST_SKIP() << "ends have 64 bits, which a 32-bit length does not make wrap";
    }
    const Bytes bytes = hex("77 77 77 77 77 10 05");
    TVESKIDValue value = made<TVESKIDValue>();
    long long selector = noSelector;
    Quorva::BrxReadBuf behind(bytes.data(), bytes.size());
    EXPECT_EQ(behind.skipForward(5), 0);
    EXPECT_EQ(value.unpackTLVWithVarint(selector, behind, SIZE_MAX), -34);
    EXPECT_EQ(behind.getUsedSize(), 7u);
    EXPECT_EQ(selector, noSelector);
    Quorva::BrxReadBuf far(bytes.data() + 5, 2);
    EXPECT_EQ(value.unpackTLVWithVarint(selector, far, SIZE_MAX), 0);
    EXPECT_EQ(selector, 1);
}

TEST(Union, KeepsWhatAMemberThatFailsGathered) {
    TVESKIDValue value = made<TVESKIDValue>();
    long long selector = noSelector;
    EXPECT_EQ(decodeFields(value, selector, "10 AC 82", varint), (Read{-2, 1}));
    EXPECT_EQ(value.dwUINT32, 300u);
    EXPECT_EQ(decodeFields(value, selector, "13 01 02 03", fixed), (Read{-2, 1}));
    EXPECT_EQ(value.dwUINT32, 300u);
    EXPECT_EQ(decodeFields(value, selector, "24 01 02 03 04 05 06 07", fixed), (Read{-2, 1}));
    EXPECT_EQ(decodeFields(value, selector, "01", fixed), (Read{-2, 1}));
    EXPECT_EQ(selector, noSelector);
    TZRPRouteInfo route = made<TZRPRouteInfo>(1);
    EXPECT_EQ(decodeFields(route, selector, "15 00 00 00 05 10 07 20", varint), (Read{-2, 8}));
    EXPECT_EQ(route.stSpecifyZone.dwTypeID, 7u);
    EXPECT_EQ(route.stSpecifyZone.presence, 0x3u);
    EXPECT_EQ(selector, noSelector);
}

TEST(Union, ChangesNoMoreThanTheMemberItReads) {
    struct Case {
        const char* field;
        const char* bytes;
        size_t size;
    };
    for (const Case& c : {Case{"01 07", "07", 1}, Case{"35 00 00 00 02 61 62", "61 62 00", 3},
                          Case{"35 00 00 00 00", "00", 1}, Case{"71 05", "", 0}}) {
        TVESKIDValue value = dirty<TVESKIDValue>();
        long long selector = noSelector;
        EXPECT_EQ(decodeFields(value, selector, c.field, varint).result, 0);
        EXPECT_EQ(image(value),
                  toHex(hex(c.bytes + std::string(" ") + repeated(untouched, 256 - c.size))));
    }
    TVESKIDValue value = dirty<TVESKIDValue>();
    long long selector = noSelector;
    EXPECT_EQ(decodeFields(value, selector, "10 AC 02", varint), (Read{0, 3}));
    EXPECT_EQ(value.dwUINT32, 300u);
    EXPECT_EQ(head(value.szSTRING, 256).substr(12), repeated(untouched, 252));
    EXPECT_EQ(decodeFields(value, selector, "20 AC 02", varint), (Read{0, 3}));
    EXPECT_EQ(value.ullUINT64, 300u);
    EXPECT_EQ(head(value.szSTRING, 256).substr(24), repeated(untouched, 248));
}

TEST(Union, AcceptsAStructureOfLengthZeroAndClearsItsPresenceBits) {
    TZRPRouteInfo route = made<TZRPRouteInfo>(1);
    route.stSpecifyZone.dwTypeID = 7;
    route.stSpecifyZone.presence = 0x3;
    long long selector = noSelector;
    EXPECT_EQ(decodeFields(route, selector, "15 00 00 00 00", varint), (Read{0, 5}));
    EXPECT_EQ(selector, 1);
    EXPECT_EQ(route.stSpecifyZone.dwTypeID, 7u);
    EXPECT_EQ(route.stSpecifyZone.presence, 0u);
}

TEST(Union, FailsWhereAStructureOverrunsItsOwnLength) {
    TZRPRouteInfo route = made<TZRPRouteInfo>(1);
    long long selector = noSelector;
    EXPECT_EQ(decodeFields(route, selector, "15 00 00 00 01 10 07", varint), (Read{-34, 7}));
    EXPECT_EQ(route.stSpecifyZone.dwTypeID, 7u);
    EXPECT_EQ(selector, noSelector);
}

// --- Construction -------------------------------------------------------------------------------

TEST(Union, ClearsNoMoreThanTheSelectedMember) {
    EXPECT_EQ(image(made<TVESKIDValue>(0)), repeated(0, 1) + ' ' + repeated(untouched, 255));
    EXPECT_EQ(image(made<TVESKIDValue>(1)), repeated(0, 4) + ' ' + repeated(untouched, 252));
    EXPECT_EQ(image(made<TVESKIDValue>(2)), repeated(0, 8) + ' ' + repeated(untouched, 248));
    EXPECT_EQ(image(made<TVESKIDValue>(3)), repeated(0, 1) + ' ' + repeated(untouched, 255));
    EXPECT_EQ(image(made<TVESKIDValue>(4)), repeated(untouched, 256));
    EXPECT_EQ(image(made<TVESKIDValue>(-1)), repeated(untouched, 256));
    EXPECT_EQ(image(made<TVESKIDValue>(256)), repeated(untouched, 256));
    EXPECT_EQ(image(made<TVESKIDValue>()), repeated(0, 256));
}

TEST(Union, ConstructsTheStructureThatIsSelected) {
    const TZRPRouteInfo route = made<TZRPRouteInfo>(4);
    EXPECT_EQ(route.stSpecifyName.szServiceName[0], '\0');
    EXPECT_EQ(static_cast<unsigned char>(route.stSpecifyName.szServiceName[1]), untouched);
    EXPECT_EQ(route.stSpecifyName.presence, 0u);
    const TZRPExtHead extension = made<TZRPExtHead>(4098);
    EXPECT_EQ(extension.stAck.dwCompressLimit, 1024u);
    const TZRPBody body = made<TZRPBody>(8193);
    EXPECT_STREQ(body.stAuthReq.szXQuorvaTokenVersion, "V1");
}

}  // namespace
}  // namespace zrp_test
