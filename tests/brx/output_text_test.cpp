// Writing text: formatted, and characters kept NUL-terminated.
#include <gtest/gtest.h>
#include <stdarg.h>
#include <stdio.h>
#include <wchar.h>

#include "tests/brx/guarded_output.h"

namespace zrp_test {

using Quorva::BrxWriteBuf;

namespace {

int32_t callVtextize(BrxWriteBuf& buf, const char* format, ...) BRX_PRINTF_LIKE(2, 3);

int32_t callVtextize(BrxWriteBuf& buf, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int32_t result = buf.vtextize(format, arguments);
    va_end(arguments);
    return result;
}

// A lone surrogate: no encoding has bytes for it, so formatting it as multibyte text fails.
const wchar_t unencodable[] = {0xD800, 0};

/// MinGW's formatter leaves out what it cannot encode, and fails at nothing else either.
bool formatterCanFail() {
    char text[8];
    return snprintf(text, sizeof(text), "%ls", unencodable) < 0;
}

}  // namespace

// --- Formatted text -----------------------------------------------------------------------------

TEST(Textize, AdvancesPastTheTextAndLeavesItsNulUncounted) {
    GuardedOutput out(12, 2);
    EXPECT_EQ(out.buf.textize("[%s] %d", "ab", -7), 0);
    EXPECT_EQ(out.bytes(), "CC CC 5B 61 62 5D 20 2D 37 00 CC CC");
    EXPECT_EQ(out.buf.position, 9U);
}

TEST(Textize, NeedsRoomForItsNul) {
    GuardedOutput exact(6);
    EXPECT_EQ(exact.buf.textize("%d", 12345), 0);
    EXPECT_EQ(exact.buf.position, 5U);
    EXPECT_EQ(exact.bytes(), "31 32 33 34 35 00");

    GuardedOutput oneShort(5);
    EXPECT_EQ(oneShort.buf.textize("%d", 12345), -1);
    EXPECT_EQ(oneShort.buf.position, 0U);
    EXPECT_EQ(oneShort.bytes(), "31 32 33 34 00");
}

TEST(Textize, ThatLacksRoomLeavesWhatFitsAndANul) {
    static const struct {
        size_t room;
        const char* left;
    } rows[] = {
        {1, "00"}, {2, "31 00"}, {3, "31 32 00"}, {4, "31 32 33 00"}, {5, "31 32 33 34 00"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.room);
        GuardedOutput out(3 + row.room, 3);
        EXPECT_EQ(out.buf.textize("%d", 12345), -1);
        EXPECT_EQ(out.buf.position, 3U);
        EXPECT_EQ(out.bytes(), "CC CC CC " + std::string(row.left));
    }
}

TEST(Textize, FailsInAFullBufferAndTouchesNothing) {
    GuardedOutput out(4, 4);
    EXPECT_EQ(out.buf.textize("%d", 1), -1);
    EXPECT_EQ(out.buf.position, 4U);
    EXPECT_TRUE(out.untouched());
}

TEST(Textize, FailsForAnEmptyTextWithoutRoomForItsNul) {
    GuardedOutput out(4, 4);
    EXPECT_EQ(out.buf.textize("%s", ""), -1);
    EXPECT_TRUE(out.untouched());
}

TEST(Textize, WritesAnEmptyTextAsANulThatIsNotCounted) {
    GuardedOutput out(4, 3);
    EXPECT_EQ(out.buf.textize("%s", ""), 0);
    EXPECT_EQ(out.buf.position, 3U);
    EXPECT_EQ(out.bytes(), "CC CC CC 00");
}

TEST(Textize, FailsOverANullPointer) {
    BrxWriteBuf buf(nullptr, 100);
    EXPECT_EQ(buf.textize("%d", 1), -1);
    EXPECT_EQ(buf.textize("%s", ""), -1);
    EXPECT_EQ(buf.position, 0U);
}

TEST(Textize, ReplacesTheNulOfTheTextBefore) {
    GuardedOutput out(8);
    EXPECT_EQ(out.buf.textize("%s", "ab"), 0);
    EXPECT_EQ(out.buf.textize("%c", 'c'), 0);
    EXPECT_EQ(out.bytes(), "61 62 63 00 CC CC CC CC");
    EXPECT_EQ(out.buf.position, 3U);
}

TEST(Textize, FailsWhenTheFormatterFails) {
    if (!formatterCanFail()) {
        GTEST_SKIP() << "the formatter of this platform does not fail";
    }
    GuardedOutput out(20, 2);
    EXPECT_EQ(out.buf.textize("%ls", unencodable), -1);
    EXPECT_EQ(out.buf.position, 2U);
    EXPECT_EQ(out.bytes().substr(0, 5), "CC CC");
    EXPECT_EQ(out.buf.textize("%d", 7), 0);
    EXPECT_EQ(out.buf.position, 3U);
}

// Deliberate: every other writer ends the program here.
TEST(Textize, OnABrokenBufferFailsAndTouchesNothing) {
    GuardedOutput out(4, 5);
    EXPECT_EQ(out.buf.textize("%d", 1), -1);
    EXPECT_EQ(out.buf.position, 5U);
    EXPECT_TRUE(out.untouched());
}

TEST(Vtextize, FormatsAsTextizeDoes) {
    GuardedOutput out(12, 2);
    EXPECT_EQ(callVtextize(out.buf, "[%s] %d", "ab", -7), 0);
    EXPECT_EQ(out.bytes(), "CC CC 5B 61 62 5D 20 2D 37 00 CC CC");
    EXPECT_EQ(out.buf.position, 9U);
}

TEST(Vtextize, FailsWhenTextAndNulDoNotFit) {
    GuardedOutput out(5);
    EXPECT_EQ(callVtextize(out.buf, "%d", 12345), -1);
    EXPECT_EQ(out.buf.position, 0U);
    EXPECT_EQ(out.bytes(), "31 32 33 34 00");
}

TEST(Vtextize, FailsWhenTheFormatterFails) {
    if (!formatterCanFail()) {
        GTEST_SKIP() << "the formatter of this platform does not fail";
    }
    GuardedOutput out(20, 2);
    EXPECT_EQ(callVtextize(out.buf, "%ls", unencodable), -1);
    EXPECT_EQ(out.buf.position, 2U);
}

TEST(Vtextize, OnABrokenBufferFailsAndTouchesNothing) {
    for (const size_t position : {size_t{5}, size_t{100}, SIZE_MAX}) {
        SCOPED_TRACE(position);
        GuardedOutput out(4, position);
        EXPECT_EQ(callVtextize(out.buf, "%d", 1), -1);
        EXPECT_EQ(callVtextize(out.buf, "%s", ""), -1);
        EXPECT_EQ(out.buf.position, position);
        EXPECT_TRUE(out.untouched());
    }
    BrxWriteBuf null(nullptr, 0);
    null.position = 1;
    EXPECT_EQ(callVtextize(null, "%d", 1), -1);
    EXPECT_EQ(null.position, 1U);
}

// --- Characters ---------------------------------------------------------------------------------

TEST(WriteCharWithNull, CountsTheCharacterAndNotTheNul) {
    GuardedOutput out(5, 1);
    EXPECT_EQ(out.buf.writeCharWithNull('x'), 0);
    EXPECT_EQ(out.bytes(), "CC 78 00 CC CC");
    EXPECT_EQ(out.buf.position, 2U);
}

TEST(WriteCharWithNull, FillsTheLastTwoBytes) {
    GuardedOutput out(3, 1);
    EXPECT_EQ(out.buf.writeCharWithNull('\xFF'), 0);
    EXPECT_EQ(out.bytes(), "CC FF 00");
    EXPECT_EQ(out.buf.position, 2U);
}

TEST(WriteCharWithNull, FailsWithRoomForTheCharacterAlone) {
    GuardedOutput out(3, 2);
    EXPECT_EQ(out.buf.writeCharWithNull('x'), -1);
    EXPECT_EQ(out.buf.position, 2U);
    EXPECT_TRUE(out.untouched());
}

TEST(WriteCharWithNull, FailsInAFullBuffer) {
    GuardedOutput out(3, 3);
    EXPECT_EQ(out.buf.writeCharWithNull('x'), -1);
    EXPECT_EQ(out.buf.position, 3U);
    EXPECT_TRUE(out.untouched());
}

TEST(WriteCharWithNull, FailsOverANullPointer) {
    BrxWriteBuf buf(nullptr, 100);
    EXPECT_EQ(buf.writeCharWithNull('x'), -1);
    EXPECT_EQ(buf.position, 0U);
}

TEST(WriteCharWithNull, LeavesANulThatTheNextWriteReplaces) {
    GuardedOutput out(5);
    EXPECT_EQ(out.buf.writeCharWithNull('a'), 0);
    EXPECT_EQ(out.buf.writeCharWithNull('b'), 0);
    EXPECT_EQ(out.bytes(), "61 62 00 CC CC");
    EXPECT_EQ(out.buf.writeUInt8(0x63), 0);
    EXPECT_EQ(out.bytes(), "61 62 63 CC CC");
    EXPECT_EQ(out.buf.position, 3U);
}

}  // namespace zrp_test
