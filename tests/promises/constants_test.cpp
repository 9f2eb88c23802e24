// The constants of the wire and of the catalogue, as numbers: other programs have them compiled in.
#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "tests/brx/any_message.h"

namespace zrp_test {

using namespace quorva_zrp;

namespace {

struct Constant {
    const char* name;
    long long value;
    long long expected;

    friend void PrintTo(const Constant& row, std::ostream* out) { *out << row.name; }
};

std::string constantName(const testing::TestParamInfo<Constant>& row) {
    return row.param.name;
}

#define CONSTANT(name, expected) \
    { #name, static_cast < long long>(Quorva::name), expected }
constexpr Constant resultCodes[] = {
    CONSTANT(BRX_ERR_NO_ROOM, -1),           CONSTANT(BRX_ERR_NO_DATA, -2),
    CONSTANT(BRX_ERR_TEXT_TOO_LONG, -3),     CONSTANT(BRX_ERR_REFER_TOO_BIG, -7),
    CONSTANT(BRX_ERR_NULL_BYTES, -8),        CONSTANT(BRX_ERR_NULL_ARG, -19),
    CONSTANT(BRX_ERR_BAD_MAGIC, -32),        CONSTANT(BRX_ERR_BAD_SELECTOR, -33),
    CONSTANT(BRX_ERR_LENGTH_MISMATCH, -34),  CONSTANT(BRX_ERR_BAD_TYPE_ID, -35),
    CONSTANT(BRX_ERR_MISSING_REQUIRED, -36), CONSTANT(BRX_ERR_ZERO_LENGTH, -37),
};
#undef CONSTANT

#define CONSTANT(name, expected) \
    { #name, static_cast < long long>(name), expected }
constexpr Constant catalogueConstants[] = {
    CONSTANT(ZRP_CMD_NULL, 0),
    CONSTANT(ZRP_CMD_SYN, 4097),
    CONSTANT(ZRP_CMD_ACK, 4098),
    CONSTANT(ZRP_CMD_AUTH_REQ, 8193),
    CONSTANT(ZRP_CMD_AUTH_RSP, 8194),
    CONSTANT(ZRP_CMD_WAIT, 12290),
    CONSTANT(ZRP_CMD_DATA, 16403),
    CONSTANT(ZRP_CMD_CSTOP, 20481),
    CONSTANT(ZRP_CMD_SSTOP, 20482),
    CONSTANT(ZRP_CMD_BINGO, 24578),
    CONSTANT(ZRP_CMD_AUTH_REFRESH_REQ, 28673),
    CONSTANT(ZRP_CMD_AUTH_REFRESH_NOTIFY, 28674),
    CONSTANT(ZRP_CMD_ROUTE_CHANGE, 32770),
    CONSTANT(ZRP_KEY_NONE, 0),
    CONSTANT(ZRP_KEY_VALUE, 2),
    CONSTANT(ZRP_KEY_RAW_DH, 3),
    CONSTANT(ZRP_KEY_ENC_DH, 4),
    CONSTANT(ZRP_FORMAT_NULL, 0),
    CONSTANT(ZRP_FORMAT_UINT32, 1),
    CONSTANT(ZRP_FORMAT_UINT64, 2),
    CONSTANT(ZRP_FORMAT_STRING, 3),
    CONSTANT(ZRP_ROUTE_NONE, 0),
    CONSTANT(ZRP_ROUTE_ZONE, 1),
    CONSTANT(ZRP_ROUTE_SERVER, 2),
    CONSTANT(ZRP_ROUTE_LOGIN_POSITION, 3),
    CONSTANT(ZRP_ROUTE_NAME, 4),
    CONSTANT(ZRP_CAP_DH_VALUE, 64),
    CONSTANT(ZRP_CAP_KEY_VALUE, 128),
    CONSTANT(ZRP_CAP_ENC_INFO, 1024),
    CONSTANT(ZRP_CAP_AUTH_INFO, 1024),
    CONSTANT(ZRP_CAP_ATK, 1024),
    CONSTANT(ZRP_CAP_IDENTITY, 16),
    CONSTANT(ZRP_CAP_ACCOUNT_TEXT, 256),
    CONSTANT(ZRP_CAP_TOKEN_TEXT, 256),
    CONSTANT(ZRP_CAP_TOKEN_VERSION, 8),
    CONSTANT(ZRP_CAP_SERVICE_NAME, 128),
};
#undef CONSTANT

struct LargestSize {
    const char* name;
    size_t varint;
    size_t fixed;
    size_t expectedVarint;
    size_t expectedFixed;

    friend void PrintTo(const LargestSize& row, std::ostream* out) { *out << row.name; }
};

#define SIZE(Type, varint, fixed) \
    { #Type, Type##_MAX_VARINT, Type##_MAX_FIXED, varint, fixed }
constexpr LargestSize largestSizes[] = {
    SIZE(TZRPBase, 83, 75),
    SIZE(TVESKRawDHReq, 159, 158),
    SIZE(TVESKRawDHRsp, 86, 85),
    SIZE(TVESKEncDHInfo, 1052, 1051),
    SIZE(TVESKKey, 148, 148),
    SIZE(TVESKAccount, 308, 305),
    SIZE(TVESKAuthData, 1046, 1045),
    SIZE(O2AuthData, 535, 535),
    SIZE(TZRPAuthReqBody, 844, 842),
    SIZE(TZRPAuthRspBody, 855, 851),
    SIZE(TZRPAckBody, 870, 866),
    SIZE(TZRPAuthRefreshReq, 15, 14),
    SIZE(TZRPAuthRefreshNotifyBody, 1064, 1061),
    SIZE(TZRPRelay, 213, 208),
    SIZE(TZRPRelayReqBody, 232, 226),
    SIZE(SpecifyZoneRouteInfo, 25, 23),
    SIZE(SpecifyServerRouteInfo, 26, 24),
    SIZE(SpecifyNameRouteInfo, 142, 142),
    SIZE(TZRPRouteChangeBody, 20, 18),
    SIZE(TZRPSynHead, 2702, 2685),
    SIZE(TZRPAckHead, 1108, 1105),
    SIZE(TZRPBingoBody, 238, 232),
    SIZE(TZRPDataHead, 178, 178),
    SIZE(TZRPWaitBody, 35, 32),
    SIZE(TZRPCStopBody, 15, 14),
    SIZE(TZRPSStopBody, 25, 23),
    SIZE(TZRPHead, 2807, 2782),
    SIZE(TZRPFrame, 2825, 2800),
    SIZE(TZRPInFrame, 3893, 3865),
    SIZE(TZRPKeyReq, 1061, 1060),
    SIZE(TZRPKeyRsp, 1061, 1060),
    SIZE(TVESKIDValue, 270, 270),
    SIZE(TZRPRouteInfo, 151, 151),
    SIZE(TZRPExtHead, 2711, 2694),
    SIZE(TZRPBody, 1073, 1070),
};
#undef SIZE

std::string sizeName(const testing::TestParamInfo<LargestSize>& row) {
    return row.param.name;
}

}  // namespace

class ConstantValue : public testing::TestWithParam<Constant> {};
INSTANTIATE_TEST_SUITE_P(ResultCodes, ConstantValue, testing::ValuesIn(resultCodes), constantName);
INSTANTIATE_TEST_SUITE_P(Catalogue, ConstantValue, testing::ValuesIn(catalogueConstants),
                         constantName);

TEST_P(ConstantValue, IsThisNumber) {
    EXPECT_EQ(GetParam().value, GetParam().expected);
}

class LargestSizeOf : public testing::TestWithParam<LargestSize> {};
INSTANTIATE_TEST_SUITE_P(All, LargestSizeOf, testing::ValuesIn(largestSizes), sizeName);

TEST_P(LargestSizeOf, IsThisNumberInBothFlavours) {
    EXPECT_EQ(GetParam().varint, GetParam().expectedVarint);
    EXPECT_EQ(GetParam().fixed, GetParam().expectedFixed);
}

TEST_P(LargestSizeOf, IsWhatTheTypeReports) {
    const MessageType& type = messageType(GetParam().name);
    AnyMessage message(type);
    size_t size = 0;
    EXPECT_EQ(type.maxPackedSize(message.record(), &size, true), 0);
    EXPECT_EQ(size, GetParam().expectedVarint);
    EXPECT_EQ(type.maxPackedSize(message.record(), &size, false), 0);
    EXPECT_EQ(size, GetParam().expectedFixed);
}

TEST_P(LargestSizeOf, NeedsAPlaceToBeStored) {
    const MessageType& type = messageType(GetParam().name);
    AnyMessage message(type);
    EXPECT_EQ(type.maxPackedSize(message.record(), nullptr, true), -19);
    EXPECT_EQ(type.maxPackedSize(message.record(), nullptr, false), -19);
}

TEST(Constants, CoverEveryMessageType) {
    EXPECT_EQ(std::size(largestSizes), messageTypes().size());
}

// --- Where constant expressions are needed ------------------------------------------------------

TEST(Constants, ServeAsArrayBounds) {
    char frame[TZRPInFrame_MAX_VARINT];
    char base[TZRPBase_MAX_FIXED];
    char text[ZRP_CAP_TOKEN_TEXT];
    EXPECT_EQ(sizeof(frame), 3893U);
    EXPECT_EQ(sizeof(base), 75U);
    EXPECT_EQ(sizeof(text), 256U);
}

namespace {

constexpr int groupOf(uint16_t command) {
    switch (command) {
        case ZRP_CMD_SYN:
        case ZRP_CMD_ACK:
            return 1;
        case ZRP_CMD_ROUTE_CHANGE:
            return 8;
        default:
            return 0;
    }
}

constexpr bool isSuccess(int32_t result) {
    return result != Quorva::BRX_ERR_NO_ROOM && result != Quorva::BRX_ERR_ZERO_LENGTH;
}

}  // namespace

TEST(Constants, ServeAsCaseLabelsAndTemplateArguments) {
    static_assert(groupOf(0x1002) == 1);
    static_assert(groupOf(0x8002) == 8);
    static_assert(!isSuccess(-1) && !isSuccess(-37) && isSuccess(0));
    EXPECT_EQ((std::integral_constant<uint16_t, ZRP_CMD_DATA>::value), 0x4013);
    EXPECT_EQ((std::integral_constant<int32_t, Quorva::BRX_ERR_BAD_MAGIC>::value), -32);
}

TEST(Constants, HaveTheWidthOfWhatTheyAreStoredIn) {
    TZRPBase base{};
    base.wCommand = ZRP_CMD_ROUTE_CHANGE;
    EXPECT_EQ(base.wCommand, 0x8002);
    EXPECT_EQ(sizeof(ZRP_CMD_ROUTE_CHANGE), sizeof(base.wCommand));
    EXPECT_EQ(sizeof(ZRP_KEY_ENC_DH), sizeof(TZRPSynHead::bKeyMethod));
    EXPECT_EQ(sizeof(ZRP_FORMAT_STRING), sizeof(TVESKAccount::bFormat));
    EXPECT_EQ(sizeof(ZRP_ROUTE_NAME), sizeof(TZRPDataHead::bRouteFlag));
}

}  // namespace zrp_test
