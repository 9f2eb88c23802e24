// Which frames are encoded by code apart: nothing else can tell, since the bytes are the same.
#include "protocol/codec/hot.h"

#include <gtest/gtest.h>

#include "protocol/fields/frames.h"

namespace zrp_test {

using namespace quorva_zrp;

namespace {

bool choosesHot(const TZRPInFrame& frame) {
    return codec::choosesHot<TZRPInFrame>(reinterpret_cast<const char*>(&frame));
}

/// Where the library is compiled to be small nothing is hot.
constexpr bool isAnyHot = !codec::keepsCodeSmall;

}  // namespace

TEST(Hot, FramesOfDataAreThoseToAZoneOrAServer) {
    TZRPInFrame frame = TZRPInFrame();
    frame.stHead.stBase.wCommand = ZRP_CMD_DATA;
    for (unsigned route = 0; route <= UINT8_MAX; ++route) {
        frame.stHead.stExtend.stData.bRouteFlag = static_cast<uint8_t>(route);
        const bool isHot = route == ZRP_ROUTE_ZONE || route == ZRP_ROUTE_SERVER;
        EXPECT_EQ(choosesHot(frame), isHot && isAnyHot) << route;
    }
}

TEST(Hot, FramesOfOtherCommandsAreNot) {
    TZRPInFrame frame = TZRPInFrame();
    frame.stHead.stExtend.stData.bRouteFlag = ZRP_ROUTE_SERVER;
    for (unsigned command = 0; command <= UINT16_MAX; ++command) {
        frame.stHead.stBase.wCommand = static_cast<uint16_t>(command);
        EXPECT_EQ(choosesHot(frame), command == ZRP_CMD_DATA && isAnyHot) << command;
    }
}

}  // namespace zrp_test
