// The commands of frames in memory that ends where they end, at a page that may not be touched.
#include <gtest/gtest.h>

#if defined(_WIN32)

TEST(GuardedCommands, AreReadFromTheFrameAlone) {
    GTEST_SKIP() << "maps pages through POSIX calls, which this platform lacks";
}

#else

#include "protocol/quorva_zrp_validate.h"
#include "tests/differential/wire_generator.h"
#include "tests/hardening/guarded_memory.h"
#include "tests/support/bytes.h"

namespace zrp_test {

namespace {

class GuardedCommands : public testing::Test {
  protected:
    using CommandsOf = int (*)(const char*, size_t, quorva_zrp::ZRPCommands*);

    /// The commands of bytes that end at a page that may not be touched.
    int commands(CommandsOf commandsOf, const Bytes& bytes) {
        return commandsOf(memory_.placeAtEnd(bytes), bytes.size(), nullptr);
    }

    /// A head in the fixed flavour, but for the extension: a base header with command 8193.
    const std::string base_ =
        "15 00 00 00 24 12 00 00 22 00 00 32 00 00 42 20 01 53 00 00 00 00 61 00 73 00 00 00 00 "
        "83 01 00 00 00 00 93 01 00 00 00 00";

  private:
    GuardedMemory memory_{1000, GuardedMemory::Access::readOnly};
};

}  // namespace

TEST_F(GuardedCommands, OfEveryTruncationAreReadFromItAlone) {
    const Bytes whole = hex("99 00 00 00 48 15 00 00 00 32" + base_ +
                            "25 00 00 00 04 91 80 08 00 25 00 00 00 07 95 80 08 00 00 00 00");
    ASSERT_EQ(0x48U, whole.size());
    EXPECT_EQ(0, commands(quorva_zrp::commandsOfInFrame, whole));
    for (size_t size = 5; size < whole.size(); ++size) {
        Bytes bytes(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(size));
        putLength(bytes, 1, size);
        // Nothing at all, or a head without a body, is whole as far as it goes.
        const int expected = size == 5 || size == 60 ? 0 : -2;
        EXPECT_EQ(expected, commands(quorva_zrp::commandsOfInFrame, bytes)) << size;
    }
}

TEST_F(GuardedCommands, OfUnionsThatEndInTheirTagCannotBeRead) {
    const std::string tag = "95 80 08";
    for (size_t size = 0; size <= 3; ++size) {
        const std::string member = tag.substr(0, 3 * size);
        const std::string number(1, static_cast<char>('0' + size));
        const Bytes inHead = hex("99 00 00 00 3" + std::to_string(3 + size) + base_ +
                                 "25 00 00 00 0" + number + member);
        EXPECT_EQ(-2, commands(quorva_zrp::commandsOfHead, inHead)) << size;
        const Bytes inFrame =
            hex("99 00 00 00 4" + std::to_string(1 + size) + "15 00 00 00 32" + base_ +
                "25 00 00 00 04 91 80 08 00 25 00 00 00 0" + number + member);
        EXPECT_EQ(-2, commands(quorva_zrp::commandsOfInFrame, inFrame)) << size;
    }
}

TEST_F(GuardedCommands, OfABaseHeaderThatEndsInItsFirstTagCannotBeRead) {
    EXPECT_EQ(-2, commands(quorva_zrp::commandsOfHead, hex("AA 00 00 00 0B 15 00 00 00 01 10")));
    EXPECT_EQ(-2, commands(quorva_zrp::commandsOfHead, hex("99 00 00 00 0B 15 00 00 00 01 12")));
}

}  // namespace zrp_test

#endif
