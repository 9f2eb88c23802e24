// The path as a text in the caller's buffer.
#include <gtest/gtest.h>

#include "tests/validate/verdict.h"

namespace zrp_test {

using namespace quorva_zrp;

namespace {

const std::string longest = "stHead.stExtend.stSyn.stRelayReqInfo.stRelayInfo.szStartServiceName";

TZRPInFrame frameWithTheLongestPath() {
    TZRPInFrame frame = frameOf(ZRP_CMD_SYN);
    frame.stHead.stExtend.stSyn.bHasRelayInfo = 1;
    overfill(frame.stHead.stExtend.stSyn.stRelayReqInfo.stRelayInfo.szStartServiceName);
    return frame;
}

}  // namespace

TEST(ValidatePath, FitsThePublishedSize) {
    EXPECT_EQ(ZRP_PATH_SIZE, longest.size() + 1);
    EXPECT_EQ(unterminated(longest), verdictOn(frameWithTheLongestPath()));
}

TEST(ValidatePath, IsCutToAnySizeAndEndedByANul) {
    const TZRPInFrame frame = frameWithTheLongestPath();
    for (size_t size = 1; size <= longest.size() + 5; ++size) {
        std::string buffer(longest.size() + 10, '#');
        EXPECT_EQ(-3, validate(frame, buffer.data(), size));
        const size_t kept = std::min(size - 1, longest.size());
        EXPECT_EQ(longest.substr(0, kept) + '\0', buffer.substr(0, kept + 1)) << size;
        EXPECT_EQ(std::string(buffer.size() - size, '#'), buffer.substr(size)) << size;
    }
}

TEST(ValidatePath, IsNotWrittenWithoutABuffer) {
    const TZRPInFrame frame = frameWithTheLongestPath();
    EXPECT_EQ(-3, validate(frame));
    EXPECT_EQ(-3, validate(frame, nullptr, 100));
    char one = '#';
    EXPECT_EQ(-3, validate(frame, &one, 0));
    EXPECT_EQ('#', one);
    EXPECT_EQ(0, validate(frameOf(ZRP_CMD_WAIT), &one, 0));
    EXPECT_EQ('#', one);
    EXPECT_EQ(-33, validate(frame.stHead.stExtend, 1));
    EXPECT_EQ(-33, validate(frame.stHead.stExtend, 1, nullptr, 7));
}

TEST(ValidatePath, IsEmptyWhereThereIsNothingToSay) {
    char path[2] = {'#', '#'};
    EXPECT_EQ(0, validate(frameOf(ZRP_CMD_WAIT), path, sizeof(path)));
    EXPECT_EQ('\0', path[0]);
    EXPECT_EQ('#', path[1]);
    // Types without anything to look at, too.
    path[0] = '#';
    EXPECT_EQ(0, validate(TZRPBase(), path, 1));
    EXPECT_EQ('\0', path[0]);
}

}  // namespace zrp_test
