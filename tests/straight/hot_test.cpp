// Which frames get code apart: nothing else can tell, since bytes and records are the same.
#include "protocol/codec/hot.h"

#include <gtest/gtest.h>

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

TZRPInFrame dataFrame(uint8_t route) {
    TZRPInFrame frame = TZRPInFrame();
    frame.stHead.stBase.wCommand = ZRP_CMD_DATA;
    frame.stHead.stExtend.stData.bRouteFlag = route;
    return frame;
}

Bytes encoded(const TZRPInFrame& frame) {
    Bytes bytes(TZRPInFrame_MAX_FIXED);
    size_t used = 0;
    EXPECT_EQ(0, frame.packTLV(bytes.data(), bytes.size(), &used, false));
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

/// The places in a frame of data whose bytes are values: behind the envelope the head, 5 bytes of
/// tag and length; in it the base header with as many, 5 one-byte tags in front of integers of 2,
/// 2, 2, 2 and 4 bytes, then one of 1 byte, one of 4, and two more of 4 behind tags of 2 bytes; the
/// extension with tag, length, tag of 3 bytes and length; 3 bytes, each behind a tag; the route
/// with tag and length twice and its two integers; the body with tag, length and tag of 3 bytes.
std::vector<bool> valuesOf(size_t first, size_t second) {
    std::vector<bool> places;
    const auto add = [&](size_t tags, size_t value) {
        places.insert(places.end(), tags, false);
        places.insert(places.end(), value, true);
    };
    add(5 + 5 + 5, 0);
    add(1, 2), add(1, 2), add(1, 2), add(1, 2), add(1, 4), add(1, 1), add(1, 4), add(2, 4);
    add(2, 4);
    add(5 + 7, 0);
    add(1, 1), add(1, 1), add(1, 1);
    add(5 + 5, 0);
    add(1, first), add(1, second);
    add(5 + 3, 1);
    return places;
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
    EXPECT_EQ(isAnyHot, isRun(encoded(dataFrame(ZRP_ROUTE_ZONE))));
    EXPECT_EQ(isAnyHot, isRun(encoded(dataFrame(ZRP_ROUTE_SERVER))));
    EXPECT_FALSE(isRun(encoded(dataFrame(ZRP_ROUTE_NONE))));
    EXPECT_FALSE(isRun(encoded(dataFrame(ZRP_ROUTE_LOGIN_POSITION))));
    EXPECT_FALSE(isRun(encoded(dataFrame(ZRP_ROUTE_NAME))));
}

TEST(Hot, RunsHaveAnyValuesButNoOtherTagsAndLengths) {
    const struct {
        uint8_t route;
        std::vector<bool> isValue;
    } frames[] = {{ZRP_ROUTE_ZONE, valuesOf(4, 4)}, {ZRP_ROUTE_SERVER, valuesOf(8, 1)}};
    for (const auto& [route, isValue] : frames) {
        const Bytes bytes = encoded(dataFrame(route));
        ASSERT_EQ(isValue.size(), bytes.size());
        for (size_t place = codec::envelopeSize; place < bytes.size(); ++place) {
            for (int change = 1; change <= UINT8_MAX; ++change) {
                Bytes changed = bytes;
                changed[place] = static_cast<char>(changed[place] ^ change);
                ASSERT_EQ(isValue[place] && isAnyHot, isRun(changed)) << place;
            }
        }
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

}  // namespace zrp_test
