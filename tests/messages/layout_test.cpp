// The messages as records: plain, in declaration order, usable through const references.
#include <stddef.h>

#include "tests/messages/all_types.h"

namespace zrp_test {
namespace {

using namespace quorva_zrp;
using Quorva::BrxReadBuf;
using Quorva::BrxWriteBuf;

template <class T>
constexpr bool isPlain = std::is_standard_layout_v<T>&& std::is_trivially_copyable_v<T>&&
    std::is_trivially_default_constructible_v<T>&& std::is_trivially_destructible_v<T>;

/// Whether everything that changes no field works on a const record.
template <class T>
constexpr bool isReadableWhenConst = requires(const T& object, char* memory, size_t* size,
                                              BrxWriteBuf& buf) {
    { object.packTLV(memory, 1, size, true) } -> std::same_as<int>;
    { object.packTLVWithVarint(buf) } -> std::same_as<int>;
    { object.packTLVNoVarint(buf) } -> std::same_as<int>;
    { object.getTLVMaxPackedSize(size, true) } -> std::same_as<int>;
    { object.requiredFieldNum() } -> std::same_as<int>;
    { object.getLastLostRequiredFields(memory, 1) } -> std::same_as<char*>;
    { object.visualize(buf, 0, ' ') } -> std::same_as<int>;
    { object.visualize(memory, 1, size, 0, ' ') } -> std::same_as<int>;
    { object.visualize_ex(buf, 0, ' ') } -> std::same_as<const char*>;
    { object.visualize_ex(memory, 1, size, 0, ' ') } -> std::same_as<const char*>;
};

template <class T>
constexpr bool isDecodable = requires(T& object, const char* bytes, size_t* size, BrxReadBuf& buf) {
    { object.construct() } -> std::same_as<int>;
    { object.unpackTLV(bytes, 1, size) } -> std::same_as<int>;
    { object.unpackTLVWithVarint(buf, 1) } -> std::same_as<int>;
    { object.unpackTLVNoVarint(buf, 1) } -> std::same_as<int>;
};

template <class U>
constexpr bool isReadableUnionWhenConst = requires(const U& object, long long selector,
                                                   char* memory, size_t* size, BrxWriteBuf& buf) {
    { object.packTLV(selector, memory, 1, size, true) } -> std::same_as<int>;
    { object.packTLVWithVarint(selector, buf) } -> std::same_as<int>;
    { object.packTLVNoVarint(selector, buf) } -> std::same_as<int>;
    { object.getTLVMaxPackedSize(size, true) } -> std::same_as<int>;
    { object.visualize(selector, buf, 0, ' ') } -> std::same_as<int>;
    { object.visualize(selector, memory, 1, size, 0, ' ') } -> std::same_as<int>;
};

template <class U>
constexpr bool isDecodableUnion = requires(U& object, long long& selector, const char* bytes,
                                           size_t* size, BrxReadBuf& buf) {
    { object.construct() } -> std::same_as<int>;
    { object.construct(selector) } -> std::same_as<int>;
    { object.unpackTLV(selector, bytes, 1, size) } -> std::same_as<int>;
    { object.unpackTLVWithVarint(selector, buf, 1) } -> std::same_as<int>;
    { object.unpackTLVNoVarint(selector, buf, 1) } -> std::same_as<int>;
};

/// Walks a sample and expects each field behind the one before it.
struct ExpectAscending {
    mutable uintptr_t last = 0;

    template <class Field, class Value>
    void operator()(const Field& field, const Value&) const {
        const uintptr_t here = reinterpret_cast<uintptr_t>(&field);
        EXPECT_GT(here, last);
        last = here;
    }
    template <class T>
    void nested(const T& object) const {
        Sample<T>::fields(object, *this);
        (*this)(object.presence, 0);
    }
    template <class U>
    void member(const U&, long long) const {}
};

template <class T>
class StructureLayout : public testing::Test {};
TYPED_TEST_SUITE(StructureLayout, Structures, StructureName);

TYPED_TEST(StructureLayout, IsPlainAndConstWhereNothingChanges) {
    EXPECT_TRUE(isPlain<TypeParam>);
    EXPECT_TRUE(isReadableWhenConst<TypeParam>);
    EXPECT_TRUE(isDecodable<TypeParam>);
}

TYPED_TEST(StructureLayout, HoldsItsFieldsInOrderAndThePresenceWordLast) {
    const TypeParam object = made<TypeParam>();
    ExpectAscending walk;
    walk.nested(object);
    const size_t end = offsetof(TypeParam, presence) + sizeof(uint32_t);
    EXPECT_LE(end, sizeof(TypeParam));
    EXPECT_LT(sizeof(TypeParam) - end, alignof(TypeParam)) << "nothing but padding behind it";
}

template <class U>
class UnionLayout : public testing::Test {};
TYPED_TEST_SUITE(UnionLayout, Unions, UnionName);

TYPED_TEST(UnionLayout, IsPlainAndConstWhereNothingChanges) {
    EXPECT_TRUE(isPlain<TypeParam>);
    EXPECT_TRUE(isReadableUnionWhenConst<TypeParam>);
    EXPECT_TRUE(isDecodableUnion<TypeParam>);
}

TEST(UnionStorage, IsAsLargeAsTheLargestMember) {
    EXPECT_EQ(sizeof(TVESKIDValue), 256u);
    // The largest member is 132 bytes, another one holds a 64-bit integer.
    struct Placed {
        char before;
        uint64_t integer;
    };
    EXPECT_EQ(sizeof(TZRPRouteInfo), offsetof(Placed, integer) == 8 ? 136u : 132u);
    EXPECT_EQ(sizeof(TZRPKeyReq), sizeof(TVESKEncDHInfo));
    EXPECT_EQ(sizeof(TZRPKeyRsp), sizeof(TVESKEncDHInfo));
    EXPECT_EQ(sizeof(TZRPExtHead), sizeof(TZRPSynHead));
}

TEST(PlaceholderBytes, AreSignedOnEveryPlatform) {
    EXPECT_TRUE((std::is_same_v<decltype(TVESKIDValue::chNull), int8_t>));
    EXPECT_TRUE((std::is_same_v<decltype(TZRPKeyReq::chNull), int8_t>));
    EXPECT_TRUE((std::is_same_v<decltype(TZRPKeyRsp::chNull), int8_t>));
    EXPECT_TRUE((std::is_same_v<decltype(TZRPRouteInfo::chLOGINPOSITION), int8_t>));
    EXPECT_TRUE((std::is_same_v<decltype(TZRPExtHead::chRouteChange), int8_t>));
    EXPECT_TRUE((std::is_same_v<decltype(TZRPBody::chData), int8_t>));
}

TEST(PlainRecords, AreCopiedAsBytes) {
    const TZRPInFrame original = sampleOf<TZRPInFrame>();
    TZRPInFrame copy;
    memcpy(static_cast<void*>(&copy), &original, sizeof(copy));
    EXPECT_EQ(encode(copy, varint), encode(original, varint));
    EXPECT_EQ(dump(copy).calls, dump(original).calls);
}

TEST(RawFrame, IsItsHeadAndAPresenceWordWithTheBodyBehind) {
    EXPECT_TRUE(isPlain<TZRPFrame>);
    EXPECT_TRUE(isReadableWhenConst<TZRPFrame>);
    EXPECT_TRUE(isDecodable<TZRPFrame>);
    TZRPFrame frame;
    EXPECT_EQ(static_cast<void*>(frame.szBody), static_cast<void*>(&frame + 1));
    EXPECT_EQ(static_cast<void*>(&frame.stHead), static_cast<void*>(&frame));
    EXPECT_EQ(offsetof(TZRPFrame, presence), sizeof(TZRPHead));
}

}  // namespace
}  // namespace zrp_test
