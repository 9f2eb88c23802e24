// The text dump with a host whose formatting functions write nothing. Its own program, since it
// brings its own definition of those functions: only with such a host does a dump into a buffer
// whose position lies past its length get as far as a write of this library.
#include <gtest/gtest.h>

#include "Common/Source/Core/BRX/BrxBufUtil.h"
#include "protocol/quorva_zrp.h"
#include "tests/brx/invariant_report.h"

namespace Quorva {

int32_t BrxBufUtil::printVariable(BrxWriteBuf&, int, char, const char*, const char*, ...) {
    return 0;
}

int32_t BrxBufUtil::printVariable(BrxWriteBuf&, int, char, const char*, bool) {
    return 0;
}

int32_t BrxBufUtil::printArray(BrxWriteBuf&, int, char, const char*, long long) {
    return 0;
}

int32_t BrxBufUtil::printString(BrxWriteBuf&, int, char, const char*, const char*) {
    return 0;
}

}  // namespace Quorva

namespace zrp_test {

using Quorva::BrxWriteBuf;

namespace {

class BrokenOutput {
    char memory_[8] = {};

  public:
    BrxWriteBuf buf{memory_, 4};

    BrokenOutput() { buf.position = 5; }
};

}  // namespace

TEST(SilentHostDeathTest, TheSeparatorOfAnEmptyArrayReportsABrokenBuffer) {
    const quorva_zrp::TVESKKey key{};
    BrokenOutput out;
    EXPECT_BROKEN_INVARIANT(key.visualize(out.buf, 0, '\n'), "writeCharWithNull", 203);
}

TEST(SilentHost, TheElementsOfAnArrayFailInABrokenBuffer) {
    quorva_zrp::TVESKKey key{};
    key.bLength = 1;
    BrokenOutput out;
    EXPECT_EQ(key.visualize(out.buf, 0, '\n'), -1);
    EXPECT_EQ(out.buf.position, 5U);
}

TEST(SilentHost, AMessageWithoutArraysPrintsNothingIntoABrokenBuffer) {
    const quorva_zrp::TZRPInFrame frame{};
    BrokenOutput out;
    EXPECT_EQ(frame.visualize(out.buf, 0, '\n'), 0);
    EXPECT_EQ(out.buf.position, 5U);
}

TEST(SilentHost, AnArrayIsItsElementsAndItsSeparator) {
    quorva_zrp::TVESKKey key{};
    key.bLength = 2;
    key.szValue[0] = 0x01;
    key.szValue[1] = 0xFF;
    char text[32] = {};
    size_t used = 0;
    EXPECT_EQ(key.visualize(text, sizeof(text), &used, 0, ';'), 0);
    EXPECT_STREQ(text, " 0x01 0xff;");
    EXPECT_EQ(used, 11U);
}

}  // namespace zrp_test
