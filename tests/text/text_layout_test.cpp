// The default layout of a text dump: quorva_zrp_text.

#include <gtest/gtest.h>
#include <limits.h>

#include <string>

#include "Common/Source/Core/BRX/BrxBufUtil.h"
#include "protocol/quorva_zrp.h"

namespace {

using Quorva::BRX_ERR_NO_ROOM;
using Quorva::BrxBufUtil;
using Quorva::BrxWriteBuf;

/// What `print` writes into a buffer that is large enough, and into every smaller one: there it
/// fails, leaves the position where it was and nothing beyond the buffer touched.
template <class Print>
std::string printed(Print print) {
    char memory[256];
    memset(memory, '#', sizeof(memory));
    BrxWriteBuf whole(memory, sizeof(memory));
    EXPECT_EQ(print(whole), 0);
    const std::string text(memory, whole.getUsedSize());
    for (size_t size = 0; size <= text.size(); ++size) {
        char small[sizeof(memory)];
        memset(small, '#', sizeof(small));
        BrxWriteBuf buf(small, size);
        EXPECT_EQ(print(buf), BRX_ERR_NO_ROOM) << "room for " << size;
        EXPECT_EQ(buf.getUsedSize(), 0u) << "room for " << size;
        EXPECT_EQ(small[size], '#') << "room for " << size;
    }
    return text;
}

std::string printedText(const char* text) {
    return printed(
        [&](BrxWriteBuf& buf) { return BrxBufUtil::printString(buf, 0, '\n', "[szText]", text); });
}

TEST(TextLayout, AScalarIsItsLabelAndItsValue) {
    EXPECT_EQ(printed([](BrxWriteBuf& buf) {
                  return BrxBufUtil::printVariable(buf, 0, '\n', "[wCommand]", "%d", 4097);
              }),
              "[wCommand] 4097\n");
}

TEST(TextLayout, AHeadingIsItsLabel) {
    EXPECT_EQ(printed([](BrxWriteBuf& buf) {
                  return BrxBufUtil::printVariable(buf, 0, '\n', "[stBase]", true);
              }),
              "[stBase]\n");
}

TEST(TextLayout, AnArrayOpensWithItsCountAndNoSeparator) {
    EXPECT_EQ(printed([](BrxWriteBuf& buf) {
                  return BrxBufUtil::printArray(buf, 0, '\n', "[szDH_A]", 64);
              }),
              "[szDH_A] 64:");
}

TEST(TextLayout, ALevelIsFourBlanksAndANegativeOneNone) {
    const auto at = [](int indent) {
        return printed([=](BrxWriteBuf& buf) {
            return BrxBufUtil::printVariable(buf, indent, '\n', "[b]", "0x%02x", 7u);
        });
    };
    EXPECT_EQ(at(0), "[b] 0x07\n");
    EXPECT_EQ(at(1), "    [b] 0x07\n");
    EXPECT_EQ(at(3), "            [b] 0x07\n");
    EXPECT_EQ(at(-1), "[b] 0x07\n");
    EXPECT_EQ(at(INT_MIN), "[b] 0x07\n");
}

TEST(TextLayout, AnIndentBeyondTheBufferDoesNotFit) {
    char memory[64];
    BrxWriteBuf buf(memory, sizeof(memory));
    EXPECT_EQ(BrxBufUtil::printVariable(buf, INT_MAX, '\n', "[b]", true), BRX_ERR_NO_ROOM);
    EXPECT_EQ(buf.getUsedSize(), 0u);
}

TEST(TextLayout, AnEntryThatDoesNotFitLeavesTheOnesBeforeItATextOfTheirOwn) {
    char memory[24];
    BrxWriteBuf buf(memory, sizeof(memory));
    ASSERT_EQ(BrxBufUtil::printVariable(buf, 0, '\n', "[wType]", "%d", 5), 0);
    EXPECT_EQ(BrxBufUtil::printString(buf, 0, '\n', "[szAtk]", "longer than the rest"),
              BRX_ERR_NO_ROOM);
    EXPECT_STREQ(memory, "[wType] 5\n");
}

TEST(TextLayout, TheSeparatorEndsAnEntryAndAnUncountedNulFollows) {
    char memory[16];
    memset(memory, '#', sizeof(memory));
    BrxWriteBuf buf(memory, sizeof(memory));
    ASSERT_EQ(BrxBufUtil::printVariable(buf, 0, ';', "[w]", "%d", 5), 0);
    EXPECT_EQ(buf.getUsedSize(), 6u);
    EXPECT_EQ(std::string(memory, 8), std::string("[w] 5;\0#", 8));
}

TEST(TextLayout, ATextIsQuoted) {
    EXPECT_EQ(printedText(""), "[szText] \"\"\n");
    EXPECT_EQ(printedText("lobby 7"), "[szText] \"lobby 7\"\n");
}

TEST(TextLayout, ATextCannotForgeLinesOrQuotes) {
    EXPECT_EQ(printedText("a\nb\x1b[0m\x7f"), "[szText] \"a\\x0ab\\x1b[0m\\x7f\"\n");
    EXPECT_EQ(printedText("say \"hi\" \\"), "[szText] \"say \\\"hi\\\" \\\\\"\n");
}

TEST(TextLayout, ATextKeepsWellFormedUtf8) {
    const char* const texts[] = {"\xc2\xa0",         "\xdf\xbf",        "\xe0\xa0\x80",
                                 "\xe4\xbd\xa0",     "\xed\x9f\xbf",    "\xee\x80\x80",
                                 "\xf0\x90\x80\x80", "\xf4\x8f\xbf\xbf"};
    for (const char* const text : texts) {
        EXPECT_EQ(printedText(text), std::string("[szText] \"") + text + "\"\n");
    }
}

TEST(TextLayout, ATextCannotSmuggleControlsAsUtf8) {
    EXPECT_EQ(printedText("\xc2\x9b"), "[szText] \"\\xc2\\x9b\"\n");           // U+009B
    EXPECT_EQ(printedText("\x9b"), "[szText] \"\\x9b\"\n");                    // bare
    EXPECT_EQ(printedText("\xc0\x8a"), "[szText] \"\\xc0\\x8a\"\n");           // overlong
    EXPECT_EQ(printedText("\xe0\x9f\xbf"), "[szText] \"\\xe0\\x9f\\xbf\"\n");  // overlong
    EXPECT_EQ(printedText("\xed\xa0\x80"), "[szText] \"\\xed\\xa0\\x80\"\n");  // surrogate
    EXPECT_EQ(printedText("\xf4\x90\x80\x80"), "[szText] \"\\xf4\\x90\\x80\\x80\"\n");
    EXPECT_EQ(printedText("\xfc\x80\x80\x80"), "[szText] \"\\xfc\\x80\\x80\\x80\"\n");
    EXPECT_EQ(printedText("\xff"), "[szText] \"\\xff\"\n");
    EXPECT_EQ(printedText("\xe4\xbd"), "[szText] \"\\xe4\\xbd\"\n");  // cut short
}

TEST(TextLayout, AMessagePrintsOneEntryALineAndNestedContentDeeper) {
    quorva_zrp::TZRPRelayReqBody request;
    request.construct();
    request.iRelayType = -2;
    request.stRelayInfo.szIdentity[0] = 0x1F;
    request.stRelayInfo.ullServerID = 18446744073709551615u;
    request.stRelayInfo.llSessionID = -5;
    request.stRelayInfo.bServerType = 0x80;
    strcpy(request.stRelayInfo.szStartServiceName, "lobby");
    char text[1024];
    EXPECT_STREQ(request.visualize_ex(text, sizeof(text), nullptr, 0, '\n'),
                 "[iRelayType] -2\n"
                 "[stRelayInfo]\n"
                 "    [dwPosition] 0\n"
                 "    [szIdentity] 16: 0x1f 0x00 0x00 0x00 0x00 0x00 0x00 0x00"
                 " 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00\n"
                 "    [ullServerID] 18446744073709551615\n"
                 "    [llSessionID] -5\n"
                 "    [bServerType] 0x80\n"
                 "    [szStartServiceName] \"lobby\"\n");
}

TEST(TextLayout, AMessagePrintsOnOneLineWithABlankAndNoIndent) {
    quorva_zrp::TZRPHead head;
    head.construct();
    head.stBase.wCommand = quorva_zrp::ZRP_CMD_DATA;
    head.stExtend.construct(quorva_zrp::ZRP_CMD_DATA);
    char text[512];
    EXPECT_STREQ(head.visualize_ex(text, sizeof(text), nullptr, -1, ' '),
                 "[stBase] [wMagic] 0 [wHeadVersion] 0 [wBodyVersion] 0 [wCommand] 16403 "
                 "[dwTimeStamp] 0 [bEncrypted] 0x00 [dwSequence] 0 [dwHeadLen] 0 [dwBodyLen] 0 "
                 "[stExtend] [stData] [bCompressFlag] 0x00 [bAllowLost] 0x00 [bRouteFlag] 0x00 "
                 "[stRouteInfo] [chNull] 0x00 ");
}

}  // namespace
