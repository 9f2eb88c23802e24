// Cutting frames out of a stream that arrives in pieces of any size.
#include "examples/conversation/framing.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/bytes.h"

namespace zrp_test {
namespace {

using conversation::FrameCutter;
using Step = FrameCutter::Step;

constexpr size_t limit = 1000;

/// A frame of `size` bytes in all whose content is `fill`.
Bytes frameOfSize(size_t size, char fill, char magic = '\xAA') {
    Bytes frame(size, fill);
    frame[0] = magic;
    frame[1] = static_cast<char>(size >> 24);
    frame[2] = static_cast<char>(size >> 16);
    frame[3] = static_cast<char>(size >> 8);
    frame[4] = static_cast<char>(size);
    return frame;
}

/// Appends `stream` in pieces of `piece` bytes and takes every frame that is there in between.
std::vector<Bytes> cut(const Bytes& stream, size_t piece, Step& last) {
    FrameCutter cutter(limit);
    std::vector<Bytes> frames;
    for (size_t begin = 0; begin < stream.size(); begin += piece) {
        cutter.append(std::span(stream).subspan(begin, std::min(piece, stream.size() - begin)));
        std::span<const char> frame;
        while ((last = cutter.next(frame)) == Step::frame) {
            frames.emplace_back(frame.begin(), frame.end());
        }
    }
    return frames;
}

TEST(Framing, GivesTheSameFramesHoweverTheStreamIsCutUp) {
    const std::vector<Bytes> sent = {frameOfSize(5, 0), frameOfSize(6, 'a', '\x99'),
                                     frameOfSize(limit, 'b'), frameOfSize(5, 0, '\x99'),
                                     frameOfSize(300, '\xAA')};
    Bytes stream;
    for (const Bytes& frame : sent) {
        stream.insert(stream.end(), frame.begin(), frame.end());
    }
    for (size_t piece = 1; piece <= stream.size(); ++piece) {
        Step last = Step::frame;
        EXPECT_EQ(cut(stream, piece, last), sent) << "pieces of " << piece;
        EXPECT_EQ(last, Step::needMore) << "pieces of " << piece;
    }
}

TEST(Framing, WantsMoreForEveryBeginningOfAFrame) {
    const Bytes whole = frameOfSize(40, 'x');
    for (size_t size = 0; size < whole.size(); ++size) {
        FrameCutter cutter(limit);
        cutter.append(std::span(whole).first(size));
        std::span<const char> frame;
        EXPECT_EQ(cutter.next(frame), Step::needMore) << size;
        EXPECT_TRUE(frame.empty());
        EXPECT_EQ(cutter.pending(), size);
        EXPECT_EQ(cutter.announcedLength(), size < 5 ? 0u : 40u);
    }
}

TEST(Framing, RefusesEveryOtherFirstByteAtOnce) {
    for (int byte = 0; byte < 256; ++byte) {
        FrameCutter cutter(limit);
        const char first = static_cast<char>(byte);
        cutter.append(std::span(&first, 1));
        std::span<const char> frame;
        EXPECT_EQ(cutter.next(frame),
                  byte == 0xAA || byte == 0x99 ? Step::needMore : Step::notAFrame)
            << byte;
        EXPECT_EQ(cutter.firstByte(), byte);
    }
}

TEST(Framing, RefusesHostileLengthsAsSoonAsTheyAreThere) {
    struct Case {
        const char* envelope;
        Step step;
    };
    const Case cases[] = {
        {"AA 00 00 00 00", Step::tooShort}, {"AA 00 00 00 04", Step::tooShort},
        {"AA 00 00 00 05", Step::frame},    {"AA 00 00 03 E8", Step::needMore},  // 1000
        {"AA 00 00 03 E9", Step::tooLarge}, {"99 00 01 00 00", Step::tooLarge},
        {"99 7F FF FF FF", Step::tooLarge}, {"99 80 00 00 00", Step::tooLarge},
        {"99 FF FF FF FF", Step::tooLarge},
    };
    for (const Case& c : cases) {
        FrameCutter cutter(limit);
        cutter.append(hex(c.envelope));
        std::span<const char> frame;
        EXPECT_EQ(cutter.next(frame), c.step) << c.envelope;
    }
}

TEST(Framing, StaysLostOnceTheBoundariesAreLost) {
    for (const char* const broken : {"55", "AA 00 00 00 04", "AA FF FF FF FF"}) {
        FrameCutter cutter(limit);
        cutter.append(hex("AA 00 00 00 05"));
        cutter.append(hex(broken));
        std::span<const char> frame;
        ASSERT_EQ(cutter.next(frame), Step::frame);
        const Step verdict = cutter.next(frame);
        EXPECT_NE(verdict, Step::frame) << broken;
        EXPECT_NE(verdict, Step::needMore) << broken;
        cutter.append(hex("AA 00 00 00 05"));
        EXPECT_EQ(cutter.next(frame), verdict) << broken;
        EXPECT_EQ(cutter.streamPosition(), 5u) << broken;
    }
}

TEST(Framing, KeepsAFrameValidUntilMoreArrives) {
    const Bytes first = frameOfSize(20, 'a');
    const Bytes second = frameOfSize(30, 'b', '\x99');
    Bytes both = first;
    both.insert(both.end(), second.begin(), second.end());
    FrameCutter cutter(limit);
    cutter.append(both);
    std::span<const char> one;
    std::span<const char> two;
    ASSERT_EQ(cutter.next(one), Step::frame);
    ASSERT_EQ(cutter.next(two), Step::frame);
    std::span<const char> none;
    ASSERT_EQ(cutter.next(none), Step::needMore);
    EXPECT_EQ(Bytes(one.begin(), one.end()), first);
    EXPECT_EQ(Bytes(two.begin(), two.end()), second);
}

TEST(Framing, CountsTheStream) {
    FrameCutter cutter(limit);
    std::span<const char> frame;
    EXPECT_EQ(cutter.streamPosition(), 0u);
    cutter.append(frameOfSize(20, 'a'));
    cutter.append(hex("99 00"));
    ASSERT_EQ(cutter.next(frame), Step::frame);
    EXPECT_EQ(cutter.streamPosition(), 20u);
    EXPECT_EQ(cutter.pending(), 2u);
    EXPECT_EQ(cutter.firstByte(), 0x99);
}

}  // namespace
}  // namespace zrp_test
