// What holds for every member of every union, shown on the samples.
#include "tests/messages/all_types.h"

namespace zrp_test {
namespace {

template <class U>
class EveryUnion : public testing::Test {};
TYPED_TEST_SUITE(EveryUnion, Unions, UnionName);

/// Selectors that name no member of any union; the last ones name one when cut to 32 or 16 bits.
constexpr long long withoutMember[] = {-1,
                                       5,
                                       7,
                                       4096,
                                       4099,
                                       32771,
                                       65536,
                                       65536 + 4,
                                       LLONG_MIN,
                                       LLONG_MAX,
                                       -(1LL << 32),
                                       (1LL << 32),
                                       (1LL << 32) + 4,
                                       (1LL << 32) + 4098};

template <class U>
const Encoding& encodingOf(const Member<U>& member, bool flavour) {
    return flavour == varint ? member.withVarint : member.withFixed;
}

/// The sample of one member, over dirty memory.
template <class U>
U sampleOf(const Member<U>& member) {
    U object = made<U>(member.selector);
    member.set(object);
    return object;
}

TYPED_TEST(EveryUnion, EncodesItsMembersInBothFlavours) {
    for (const Member<TypeParam>& member : UnionSample<TypeParam>::members()) {
        const TypeParam object = sampleOf(member);
        for (const bool flavour : {varint, fixed}) {
            const Encoding& expected = encodingOf(member, flavour);
            EXPECT_EQ(encode(member.selector, object, flavour), written(0, expected.all()));
            EXPECT_EQ(encodeFields(member.selector, object, flavour),
                      written(0, expected.fieldBytes()));
            EXPECT_EQ(encode(member.selector, object, flavour, hex(expected.all()).size()),
                      written(0, expected.all()));
        }
    }
}

TYPED_TEST(EveryUnion, DecodesItsMembersAndFindsTheirSelectors) {
    for (const Member<TypeParam>& member : UnionSample<TypeParam>::members()) {
        for (const bool flavour : {varint, fixed}) {
            const Encoding& encoding = encodingOf(member, flavour);
            const size_t size = hex(encoding.all()).size();

            TypeParam object = made<TypeParam>();
            long long selector = noSelector;
            EXPECT_EQ(decode(object, selector, encoding.all()), (Read{0, size}));
            EXPECT_EQ(selector, member.selector);
            member.expect(object);

            TypeParam bare = made<TypeParam>();
            selector = noSelector;
            EXPECT_EQ(decodeFields(bare, selector, encoding.fieldBytes(), flavour),
                      (Read{0, size - 5}));
            EXPECT_EQ(selector, member.selector);
            member.expect(bare);
        }
    }
}

TYPED_TEST(EveryUnion, DeliberatelyReadsAMemberWhateverTypeIdItsTagCarries) {
    for (const Member<TypeParam>& member : UnionSample<TypeParam>::members()) {
        for (const bool flavour : {varint, fixed}) {
            for (const int typeId : {0, 1, 2, 3, 4, 5, 6, 15}) {
                Bytes bytes = hex(encodingOf(member, flavour).fieldBytes());
                bytes[0] = static_cast<char>((bytes[0] & 0xF0) | typeId);
                TypeParam object = made<TypeParam>();
                long long selector = noSelector;
                EXPECT_EQ(decodeFields(object, selector, toHex(bytes), flavour),
                          (Read{0, bytes.size()}));
                EXPECT_EQ(selector, member.selector);
                member.expect(object);
            }
        }
    }
}

TYPED_TEST(EveryUnion, RefusesToEncodeASelectorWithoutMember) {
    const TypeParam object = made<TypeParam>();
    for (const long long selector : withoutMember) {
        EXPECT_EQ(encode(selector, object, varint), written(-33, "AA 00 00 00 05")) << selector;
        EXPECT_EQ(encode(selector, object, fixed), written(-33, "99 00 00 00 05")) << selector;
        EXPECT_EQ(encodeFields(selector, object, varint), written(-33, "")) << selector;
        EXPECT_EQ(encodeFields(selector, object, fixed), written(-33, "")) << selector;
    }
}

// Deliberate: a 64-bit unsigned varint that is cut short reads as a success without moving; a union
// reads nothing behind it that would notice.
TYPED_TEST(EveryUnion, SaysNoDataWhereTheInputEndsInsideTheMember) {
    for (const Member<TypeParam>& member : UnionSample<TypeParam>::members()) {
        for (const bool flavour : {varint, fixed}) {
            const std::string whole = encodingOf(member, flavour).fieldBytes();
            const size_t size = hex(whole).size();
            const bool isVarUInt64 = flavour == varint && member.constructed == 8;
            for (size_t length = 0; length < size; ++length) {
                TypeParam object = made<TypeParam>();
                long long selector = noSelector;
                const Read read =
                    decodeFields(object, selector, toHex(hex(whole).data(), length), flavour);
                if (isVarUInt64 && length >= 1) {
                    EXPECT_EQ(read, (Read{0, 1})) << length;
                    EXPECT_EQ(selector, member.selector);
                } else {
                    EXPECT_EQ(read.result, -2) << member.selector << " at " << length;
                    EXPECT_LE(read.used, length);
                    EXPECT_EQ(selector, noSelector);
                }
            }
        }
    }
}

TYPED_TEST(EveryUnion, SaysLengthMismatchWhereTheMemberGoesPastTheDeclaredLength) {
    for (const Member<TypeParam>& member : UnionSample<TypeParam>::members()) {
        for (const bool flavour : {varint, fixed}) {
            const std::string whole = encodingOf(member, flavour).fieldBytes();
            const size_t size = hex(whole).size();
            for (size_t declared = 0; declared < size; ++declared) {
                TypeParam object = made<TypeParam>();
                long long selector = noSelector;
                EXPECT_EQ(decodeFields(object, selector, whole + repeated(0xFF, declared), flavour,
                                       declared),
                          (Read{-34, size}));
                EXPECT_EQ(selector, noSelector);
                member.expect(object);
            }
        }
    }
}

TYPED_TEST(EveryUnion, ReadsAMemberAndSaysLengthMismatchWhereTheDeclaredLengthIsBelowFive) {
    for (const Member<TypeParam>& member : UnionSample<TypeParam>::members()) {
        for (const bool flavour : {varint, fixed}) {
            const std::string fields = encodingOf(member, flavour).fieldBytes();
            const std::string magic = flavour == varint ? "AA" : "99";
            for (const std::string declared : {"00", "01", "02", "03", "04"}) {
                TypeParam object = made<TypeParam>();
                long long selector = noSelector;
                EXPECT_EQ(decode(object, selector, magic + " 00 00 00 " + declared + fields),
                          (Read{-34, 5 + hex(fields).size()}));
                EXPECT_EQ(selector, noSelector);
                member.expect(object);
            }
        }
    }
}

TYPED_TEST(EveryUnion, LeavesEverythingAloneWhereTheEnvelopeFails) {
    for (const Member<TypeParam>& member : UnionSample<TypeParam>::members()) {
        for (const bool flavour : {varint, fixed}) {
            TypeParam object = dirty<TypeParam>();
            const std::string before = image(object);
            long long selector = noSelector;
            const std::string whole = encodingOf(member, flavour).all();
            for (size_t size = 0; size < hex(whole).size(); ++size) {
                EXPECT_EQ(decode(object, selector, toHex(hex(whole).data(), size)),
                          (Read{-2, notStored}));
            }
            EXPECT_EQ(decode(object, selector, "9A" + whole.substr(2)), (Read{-32, notStored}));
            size_t used = notStored;
            EXPECT_EQ(object.unpackTLV(selector, nullptr, 100, &used), -19);
            EXPECT_EQ(used, notStored);
            EXPECT_EQ(selector, noSelector);
            EXPECT_EQ(image(object), before);
        }
    }
}

TYPED_TEST(EveryUnion, SaysNoRoomInEverySmallerBufferAndStillWritesTheHeader) {
    for (const Member<TypeParam>& member : UnionSample<TypeParam>::members()) {
        const TypeParam object = sampleOf(member);
        for (const bool flavour : {varint, fixed}) {
            const size_t whole = hex(encodingOf(member, flavour).all()).size();
            for (size_t room = 5; room < whole; ++room) {
                const Written result = encode(member.selector, object, flavour, room);
                EXPECT_EQ(result.result, -1) << member.selector << " in " << room;
                ASSERT_LE(result.used, room);
                const Bytes header = {static_cast<char>(flavour == varint ? 0xAA : 0x99), 0, 0, 0,
                                      static_cast<char>(result.used)};
                EXPECT_EQ(result.bytes.substr(0, 14), toHex(header)) << room;
            }
        }
    }
}

TYPED_TEST(EveryUnion, RefusesToEncodeIntoNothing) {
    const TypeParam object = made<TypeParam>();
    for (const bool flavour : {varint, fixed}) {
        for (const long long selector : {0LL, -1LL}) {
            size_t used = notStored;
            EXPECT_EQ(object.packTLV(selector, nullptr, 4096, &used, flavour), -19);
            char buffer[1] = {'\x5A'};
            EXPECT_EQ(object.packTLV(selector, buffer, 0, &used, flavour), -19);
            EXPECT_EQ(buffer[0], '\x5A');
            EXPECT_EQ(used, notStored);
        }
    }
}

TYPED_TEST(EveryUnion, NeedsNoPlaceForTheUsedSize) {
    for (const Member<TypeParam>& member : UnionSample<TypeParam>::members()) {
        const TypeParam object = sampleOf(member);
        const Bytes expected = hex(member.withVarint.all());
        Bytes bytes(expected.size());
        EXPECT_EQ(object.packTLV(member.selector, bytes.data(), bytes.size(), nullptr, varint), 0);
        EXPECT_EQ(toHex(bytes), toHex(expected));
        TypeParam decoded = made<TypeParam>();
        long long selector = noSelector;
        EXPECT_EQ(decoded.unpackTLV(selector, bytes.data(), bytes.size(), nullptr), 0);
        EXPECT_EQ(selector, member.selector);
        member.expect(decoded);
    }
}

TYPED_TEST(EveryUnion, ZeroesItsWholeStorageWithoutSelector) {
    EXPECT_EQ(image(made<TypeParam>()), repeated(0, sizeof(TypeParam)));
}

TYPED_TEST(EveryUnion, PreparesTheSelectedMemberAlone) {
    for (const Member<TypeParam>& member : UnionSample<TypeParam>::members()) {
        const TypeParam object = made<TypeParam>(member.selector);
        if (member.expectDefaults != nullptr) {
            member.expectDefaults(object);
        } else {
            EXPECT_EQ(image(object), repeated(0, member.constructed) + ' ' +
                                         repeated(untouched, sizeof(object) - member.constructed))
                << member.selector;
        }
    }
}

TYPED_TEST(EveryUnion, ChangesNothingWhenConstructedForASelectorWithoutMember) {
    for (const long long selector : withoutMember) {
        EXPECT_EQ(image(made<TypeParam>(selector)), repeated(untouched, sizeof(TypeParam)));
    }
}

TYPED_TEST(EveryUnion, ReportsItsLargestEncoding) {
    const TypeParam object = made<TypeParam>();
    size_t size = 0;
    EXPECT_EQ(object.getTLVMaxPackedSize(&size, varint), 0);
    EXPECT_EQ(size, UnionSample<TypeParam>::maxVarint);
    EXPECT_EQ(object.getTLVMaxPackedSize(&size, fixed), 0);
    EXPECT_EQ(size, UnionSample<TypeParam>::maxFixed);
    EXPECT_EQ(object.getTLVMaxPackedSize(nullptr, varint), -19);
    EXPECT_EQ(object.getTLVMaxPackedSize(nullptr, fixed), -19);
}

}  // namespace
}  // namespace zrp_test
