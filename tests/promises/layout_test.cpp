// What callers may rely on about the records in memory.
#include <gtest/gtest.h>

#include <algorithm>
#include <type_traits>
#include <vector>

#include "tests/promises/field_list.h"

namespace zrp_test {

namespace {

size_t roundUp(size_t offset, size_t alignment) {
    return (offset + alignment - 1) / alignment * alignment;
}

/// A plain record: C can read it, bytes can copy it, nothing runs when it comes or goes.
template <class T>
void expectPlainRecord() {
    EXPECT_TRUE(std::is_standard_layout_v<T>);
    EXPECT_TRUE(std::is_trivially_copyable_v<T>);
    EXPECT_TRUE(std::is_trivially_default_constructible_v<T>);
    EXPECT_TRUE(std::is_trivially_destructible_v<T>);
    EXPECT_TRUE(std::is_trivially_copy_assignable_v<T>);
    EXPECT_FALSE(std::is_polymorphic_v<T>);
}

}  // namespace

// --- Structures ---------------------------------------------------------------------------------

template <class T>
class StructureLayout : public testing::Test {};
TYPED_TEST_SUITE(StructureLayout, Structures, StructureName);

TYPED_TEST(StructureLayout, IsThatOfAPlainRecord) {
    expectPlainRecord<TypeParam>();
}

TYPED_TEST(StructureLayout, IsTheFieldsInOrderAtNaturalAlignmentThenThePresenceWord) {
    size_t end = 0;
    size_t largestAlignment = memberAlignment<uint32_t>;
    for (const auto& field : FieldsOf<TypeParam>::fields) {
        SCOPED_TRACE(field.name);
        EXPECT_TRUE(field.typeMatches);
        if (field.size == 0) {
            EXPECT_EQ(field.offset, sizeof(TypeParam)) << "a trailing field lies behind the record";
            continue;
        }
        EXPECT_EQ(field.offset, roundUp(end, field.alignment));
        end = field.offset + field.size;
        largestAlignment = std::max(largestAlignment, field.alignment);
    }
    const size_t presence = roundUp(end, memberAlignment<uint32_t>);
    EXPECT_EQ(offsetof(TypeParam, presence), presence);
    EXPECT_EQ(sizeof(TypeParam), roundUp(presence + sizeof(uint32_t), largestAlignment));
}

TYPED_TEST(StructureLayout, EndsInAPresenceWordThatChangesInConstantRecordsToo) {
    EXPECT_TRUE((std::is_same_v<decltype(TypeParam::presence), uint32_t>));
    const TypeParam record{};
    EXPECT_EQ(record.presence, 0U);
    record.presence = 5;
    EXPECT_EQ(record.presence, 5U);
}

TEST(StructureLayouts, OfABaseHeaderAreTheseOffsets) {
    EXPECT_EQ(offsetof(TZRPBase, wMagic), 0U);
    EXPECT_EQ(offsetof(TZRPBase, wHeadVersion), 2U);
    EXPECT_EQ(offsetof(TZRPBase, wBodyVersion), 4U);
    EXPECT_EQ(offsetof(TZRPBase, wCommand), 6U);
    EXPECT_EQ(offsetof(TZRPBase, dwTimeStamp), 8U);
    EXPECT_EQ(offsetof(TZRPBase, bEncrypted), 12U);
    EXPECT_EQ(offsetof(TZRPBase, dwSequence), 16U);
    EXPECT_EQ(offsetof(TZRPBase, dwHeadLen), 20U);
    EXPECT_EQ(offsetof(TZRPBase, dwBodyLen), 24U);
    EXPECT_EQ(offsetof(TZRPBase, presence), 28U);
    EXPECT_EQ(sizeof(TZRPBase), 32U);
}

// --- The body of a frame ------------------------------------------------------------------------

TEST(FrameLayout, PutsTheBodyDirectlyBehindTheRecord) {
    std::vector<TZRPFrame> frames(2);
    TZRPFrame* const frame = frames.data();
    const void* const behind = reinterpret_cast<uint8_t*>(frame + 1);
    const void* const body = frame->szBody;
    EXPECT_EQ(body, behind);
    EXPECT_EQ(offsetof(TZRPFrame, szBody), sizeof(TZRPFrame));
}

TEST(FrameLayout, CountsNoBytesForTheBody) {
    EXPECT_EQ(sizeof(TZRPFrame),
              roundUp(sizeof(TZRPHead) + sizeof(uint32_t), memberAlignment<TZRPHead>));
    EXPECT_EQ(alignof(TZRPFrame), alignof(TZRPHead));
}

// --- Unions -------------------------------------------------------------------------------------

template <class T>
class UnionLayout : public testing::Test {};
using Unions =
    testing::Types<TZRPKeyReq, TZRPKeyRsp, TVESKIDValue, TZRPRouteInfo, TZRPExtHead, TZRPBody>;

struct UnionName {
    template <class T>
    static std::string GetName(int index) {
        static const char* const names[] = {"TZRPKeyReq",    "TZRPKeyRsp",  "TVESKIDValue",
                                            "TZRPRouteInfo", "TZRPExtHead", "TZRPBody"};
        return names[index];
    }
};
TYPED_TEST_SUITE(UnionLayout, Unions, UnionName);

TYPED_TEST(UnionLayout, IsThatOfAPlainRecord) {
    EXPECT_TRUE(std::is_union_v<TypeParam>);
    expectPlainRecord<TypeParam>();
}

TEST(UnionLayouts, AreAsLargeAsTheLargestMember) {
    EXPECT_EQ(sizeof(TZRPKeyReq), sizeof(TVESKEncDHInfo));
    EXPECT_EQ(sizeof(TZRPKeyRsp), sizeof(TVESKEncDHInfo));
    EXPECT_EQ(sizeof(TVESKIDValue), 256U);
    EXPECT_EQ(sizeof(TZRPExtHead), sizeof(TZRPSynHead));
    EXPECT_EQ(sizeof(TZRPBody),
              roundUp(std::max({sizeof(TZRPAuthRefreshNotifyBody), sizeof(TZRPAckBody),
                                sizeof(TZRPAuthReqBody), sizeof(TZRPBingoBody)}),
                      memberAlignment<uint64_t>));
}

TEST(UnionLayouts, OfARouteTake136BytesAtNaturalAlignment) {
    if (memberAlignment<uint64_t> != 8) {
        GTEST_SKIP() << "64-bit members are not aligned to 8 bytes here";
    }
    EXPECT_EQ(sizeof(SpecifyNameRouteInfo), 132U);
    EXPECT_EQ(sizeof(TZRPRouteInfo), 136U);
}

/// A member of a union: the type it is to have and the type it has.
#define EXPECT_MEMBER(Type, Union, member) \
    EXPECT_TRUE((std::is_same_v<decltype(Union::member), Type>)) << #Union "::" #member

TEST(UnionMembers, OfTheKeyExchangeHaveTheseTypes) {
    EXPECT_MEMBER(int8_t, TZRPKeyReq, chNull);
    EXPECT_MEMBER(TVESKRawDHReq, TZRPKeyReq, stReqByRawDH);
    EXPECT_MEMBER(TVESKEncDHInfo, TZRPKeyReq, stReqByEncDH);
    EXPECT_MEMBER(int8_t, TZRPKeyRsp, chNull);
    EXPECT_MEMBER(TVESKKey, TZRPKeyRsp, stKey);
    EXPECT_MEMBER(TVESKRawDHRsp, TZRPKeyRsp, stRspByRawDH);
    EXPECT_MEMBER(TVESKEncDHInfo, TZRPKeyRsp, stRspByEncDH);
}

TEST(UnionMembers, OfAccountsAndRoutesHaveTheseTypes) {
    EXPECT_MEMBER(int8_t, TVESKIDValue, chNull);
    EXPECT_MEMBER(uint32_t, TVESKIDValue, dwUINT32);
    EXPECT_MEMBER(uint64_t, TVESKIDValue, ullUINT64);
    EXPECT_MEMBER(char[256], TVESKIDValue, szSTRING);
    EXPECT_MEMBER(int8_t, TZRPRouteInfo, chNull);
    EXPECT_MEMBER(SpecifyZoneRouteInfo, TZRPRouteInfo, stSpecifyZone);
    EXPECT_MEMBER(SpecifyServerRouteInfo, TZRPRouteInfo, stSpecifyServer);
    EXPECT_MEMBER(int8_t, TZRPRouteInfo, chLOGINPOSITION);
    EXPECT_MEMBER(SpecifyNameRouteInfo, TZRPRouteInfo, stSpecifyName);
}

TEST(UnionMembers, OfTheHeadExtensionHaveTheseTypes) {
    EXPECT_MEMBER(int8_t, TZRPExtHead, chNull);
    EXPECT_MEMBER(TZRPSynHead, TZRPExtHead, stSyn);
    EXPECT_MEMBER(TZRPAckHead, TZRPExtHead, stAck);
    EXPECT_MEMBER(int8_t, TZRPExtHead, chAuthReq);
    EXPECT_MEMBER(int8_t, TZRPExtHead, chAuthRsp);
    EXPECT_MEMBER(int8_t, TZRPExtHead, chWait);
    EXPECT_MEMBER(TZRPDataHead, TZRPExtHead, stData);
    EXPECT_MEMBER(int8_t, TZRPExtHead, chCStop);
    EXPECT_MEMBER(int8_t, TZRPExtHead, chSStop);
    EXPECT_MEMBER(int8_t, TZRPExtHead, chBingo);
    EXPECT_MEMBER(int8_t, TZRPExtHead, chAuthRefreshReq);
    EXPECT_MEMBER(int8_t, TZRPExtHead, chAuthRefreshNotify);
    EXPECT_MEMBER(int8_t, TZRPExtHead, chRouteChange);
}

TEST(UnionMembers, OfTheBodyHaveTheseTypes) {
    EXPECT_MEMBER(int8_t, TZRPBody, chNull);
    EXPECT_MEMBER(int8_t, TZRPBody, chSyn);
    EXPECT_MEMBER(TZRPAckBody, TZRPBody, stAck);
    EXPECT_MEMBER(TZRPAuthReqBody, TZRPBody, stAuthReq);
    EXPECT_MEMBER(TZRPAuthRspBody, TZRPBody, stAuthRsp);
    EXPECT_MEMBER(TZRPWaitBody, TZRPBody, stWait);
    EXPECT_MEMBER(int8_t, TZRPBody, chData);
    EXPECT_MEMBER(TZRPCStopBody, TZRPBody, stCStop);
    EXPECT_MEMBER(TZRPSStopBody, TZRPBody, stSStop);
    EXPECT_MEMBER(TZRPBingoBody, TZRPBody, stBingo);
    EXPECT_MEMBER(TZRPAuthRefreshReq, TZRPBody, stAuthRefreshReq);
    EXPECT_MEMBER(TZRPAuthRefreshNotifyBody, TZRPBody, stAuthRefreshNotify);
    EXPECT_MEMBER(TZRPRouteChangeBody, TZRPBody, stRouteChange);
}

#undef EXPECT_MEMBER

}  // namespace zrp_test
