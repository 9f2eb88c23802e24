// Which frames get code apart: nothing else can tell, since bytes and records are the same.
#include "protocol/codec/hot.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "protocol/codec/operations.h"
#include "protocol/fields/frames.h"
#include "tests/support/bytes.h"

namespace zrp_test {

using namespace quorva_zrp;

namespace {

bool choosesHot(const TZRPInFrame& frame) {
    return codec::choosesHot<TZRPInFrame>(reinterpret_cast<const char*>(&frame));
}

/// Where the library is compiled to be small nothing is hot.
constexpr bool isAnyHot = !codec::keepsCodeSmall;
constexpr bool isAnyRun = codec::isOnePiece<TZRPInFrame>;

TZRPInFrame dataFrame(uint8_t route) {
    TZRPInFrame frame = TZRPInFrame();
    frame.stHead.stBase.wCommand = ZRP_CMD_DATA;
    frame.stHead.stExtend.stData.bRouteFlag = route;
    return frame;
}

Bytes encoded(const TZRPInFrame& frame, bool varint = false) {
    Bytes bytes(varint ? TZRPInFrame_MAX_VARINT : TZRPInFrame_MAX_FIXED);
    size_t used = 0;
    EXPECT_EQ(0, frame.packTLV(bytes.data(), bytes.size(), &used, varint));
    bytes.resize(used);
    return bytes;
}

/// Whether the message is read at once.
bool isRun(const Bytes& bytes) {
    using Choices = codec::RunChoices<TZRPInFrame>;
    if constexpr (Choices::size() != 0) {
        TZRPInFrame frame = TZRPInFrame();
        return codec::unpackAnyRun<TZRPInFrame>(reinterpret_cast<char*>(&frame), bytes.data(),
                                                bytes.size(), nullptr, Choices{});
    } else {
        return false;
    }
}

/// Whether the message, with varints, is read by its outline.
bool isOutlined(const Bytes& bytes) {
    if constexpr (codec::hasOutline<TZRPInFrame>()) {
        return codec::isOutlineAt<TZRPInFrame>(bytes.data() + codec::envelopeSize,
                                               bytes.data() + bytes.size());
    } else {
        return false;
    }
}

/// Calls `check(changed, i)` with every other byte in place `i` behind the envelope, for all
/// places.
template <class Check>
void forEachChange(const Bytes& bytes, Check check) {
    for (size_t i = 0; codec::envelopeSize + i < bytes.size(); ++i) {
        for (int change = 1; change <= UINT8_MAX; ++change) {
            Bytes changed = bytes;
            char& byte = changed[codec::envelopeSize + i];
            byte = static_cast<char>(byte ^ change);
            check(changed, i);
        }
    }
}

/// What the bytes of a frame of data behind the envelope are: values are `#`, tags and lengths `-`.
std::string pictureOf(const std::string& route) {
    return "----- -----"
           " -## -## -## -## -#### -# -#### --#### --####"
           " ----- -------"
           " -# -# -#"
           " ----- ----- " +
           route + " ----- ---#";
}

}  // namespace

TEST(Hot, FramesOfDataAreThoseToAZoneOrAServer) {
    for (unsigned route = 0; route <= UINT8_MAX; ++route) {
        const bool isHot = route == ZRP_ROUTE_ZONE || route == ZRP_ROUTE_SERVER;
        EXPECT_EQ(choosesHot(dataFrame(static_cast<uint8_t>(route))), isHot && isAnyHot) << route;
    }
}

TEST(Hot, FramesOfOtherCommandsAreNot) {
    TZRPInFrame frame = dataFrame(ZRP_ROUTE_SERVER);
    for (unsigned command = 0; command <= UINT16_MAX; ++command) {
        frame.stHead.stBase.wCommand = static_cast<uint16_t>(command);
        EXPECT_EQ(choosesHot(frame), command == ZRP_CMD_DATA && isAnyHot) << command;
    }
}

TEST(Hot, RunsAreFramesOfDataToAZoneOrAServer) {
    EXPECT_EQ(isAnyRun, isRun(encoded(dataFrame(ZRP_ROUTE_ZONE))));
    EXPECT_EQ(isAnyRun, isRun(encoded(dataFrame(ZRP_ROUTE_SERVER))));
    EXPECT_FALSE(isRun(encoded(dataFrame(ZRP_ROUTE_NONE))));
    EXPECT_FALSE(isRun(encoded(dataFrame(ZRP_ROUTE_LOGIN_POSITION))));
    EXPECT_FALSE(isRun(encoded(dataFrame(ZRP_ROUTE_NAME))));
}

TEST(Hot, RunsHaveAnyValuesButNoOtherTagsAndLengths) {
    const std::pair<uint8_t, std::string> frames[] = {
        {ZRP_ROUTE_ZONE, pictureOf("-#### -####")}, {ZRP_ROUTE_SERVER, pictureOf("-######## -#")}};
    for (const auto& frame : frames) {
        std::string picture = frame.second;
        std::erase(picture, ' ');
        const Bytes bytes = encoded(dataFrame(frame.first));
        ASSERT_EQ(codec::envelopeSize + picture.size(), bytes.size());
        forEachChange(bytes, [&](const Bytes& changed, size_t i) {
            ASSERT_EQ(picture[i] == '#' && isAnyRun, isRun(changed)) << i;
        });
    }
}

TEST(Hot, RunsHaveTheirOwnSize) {
    for (const uint8_t route : {ZRP_ROUTE_ZONE, ZRP_ROUTE_SERVER}) {
        Bytes bytes = encoded(dataFrame(route));
        bytes.push_back('\0');
        EXPECT_FALSE(isRun(bytes));
        bytes.resize(bytes.size() - 2);
        EXPECT_FALSE(isRun(bytes));
    }
}

TEST(Hot, OutlinesAreThoseOfFramesOfDataToAZoneOrAServer) {
    EXPECT_EQ(isAnyRun, isOutlined(encoded(dataFrame(ZRP_ROUTE_ZONE), true)));
    EXPECT_EQ(isAnyRun, isOutlined(encoded(dataFrame(ZRP_ROUTE_SERVER), true)));
    EXPECT_FALSE(isOutlined(encoded(dataFrame(ZRP_ROUTE_NONE), true)));
    EXPECT_FALSE(isOutlined(encoded(dataFrame(ZRP_ROUTE_LOGIN_POSITION), true)));
    EXPECT_FALSE(isOutlined(encoded(dataFrame(ZRP_ROUTE_NAME), true)));
}

TEST(Hot, OutlinesHaveAnyValuesAndLeavesButNoOtherTagsAndLengths) {
    // As above, but what is in a leaf is `#` as a whole. Where the zone's tag is, `?`, may be the
    // server's as well, and the other way round.
    std::string picture =
        "----- -----"
        " #### #### #### #### ######"
        " ----- -------"
        " -# -# -#"
        " ----- ?---- #### ----- ---#";
    std::erase(picture, ' ');
    constexpr char tags[] = {0x15, 0x25};
    for (const uint8_t route : {ZRP_ROUTE_ZONE, ZRP_ROUTE_SERVER}) {
        const Bytes bytes = encoded(dataFrame(route), true);
        ASSERT_EQ(codec::envelopeSize + picture.size(), bytes.size());
        forEachChange(bytes, [&](const Bytes& changed, size_t i) {
            const char byte = changed[codec::envelopeSize + i];
            const bool fits =
                picture[i] == '#' || (picture[i] == '?' && (byte == tags[0] || byte == tags[1]));
            ASSERT_EQ(fits && isAnyRun, isOutlined(changed)) << i;
        });
    }
}

TEST(Hot, OutlinesEndWhereTheyShould) {
    for (const uint8_t route : {ZRP_ROUTE_ZONE, ZRP_ROUTE_SERVER}) {
        const Bytes whole = encoded(dataFrame(route), true);
        for (size_t size = codec::envelopeSize; size < whole.size(); ++size) {
            const Bytes bytes(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(size));
            EXPECT_FALSE(isOutlined(bytes)) << size;
        }
        Bytes longer = whole;
        longer.push_back('\0');
        EXPECT_FALSE(isOutlined(longer));
    }
}

}  // namespace zrp_test
