// A base header, whose code stores several fields at once, written behind what a buffer holds and
// into buffers that are too small.
#include "tests/messages/make.h"

namespace zrp_test {
namespace {

using namespace quorva_zrp;

TZRPBase largestBase() {
    TZRPBase base = made<TZRPBase>();
    base.wMagic = base.wHeadVersion = base.wBodyVersion = base.wCommand = 0xFFFF;
    base.bEncrypted = 0xFF;
    base.dwTimeStamp = base.dwSequence = base.dwHeadLen = base.dwBodyLen = 0xFFFFFFFF;
    return base;
}

const std::string largestVarint =
    "10 FF FF 03 20 FF FF 03 30 FF FF 03 40 FF FF 03 50 FF FF FF FF 0F 61 FF "
    "70 FF FF FF FF 0F 80 01 FF FF FF FF 0F 90 01 FF FF FF FF 0F";
const std::string largestFixed =
    "12 FF FF 22 FF FF 32 FF FF 42 FF FF 53 FF FF FF FF 61 FF "
    "73 FF FF FF FF 83 01 FF FF FF FF 93 01 FF FF FF FF";

/// Encodes the largest base header behind `start` bytes of a buffer that holds `size`.
struct BaseInABuffer {
    int result = 0;
    Bytes memory;
    size_t used = 0;

    BaseInABuffer(bool isVarint, size_t start, size_t size) : memory(80, '\xA5') {
        Quorva::BrxWriteBuf buf(memory.data(), size);
        EXPECT_EQ(0, buf.reserve(start));
        const TZRPBase base = largestBase();
        result = isVarint ? base.packTLVWithVarint(buf) : base.packTLVNoVarint(buf);
        used = buf.getUsedSize();
    }
};

class StraightBuffers : public testing::TestWithParam<bool> {
  protected:
    std::string largest() const { return GetParam() == varint ? largestVarint : largestFixed; }
};

TEST_P(StraightBuffers, HoldAnEncodingBehindWhatTheyHeld) {
    const Bytes expected = hex(largest());
    for (size_t start = 0; start < 4; ++start) {
        const size_t size = start + expected.size();
        const BaseInABuffer base(GetParam(), start, size);
        EXPECT_EQ(0, base.result);
        EXPECT_EQ(size, base.used);
        EXPECT_EQ(toHex(expected), toHex(base.memory.data() + start, expected.size()));
        EXPECT_EQ(Bytes(start, '\xA5'), Bytes(base.memory.data(), base.memory.data() + start));
        EXPECT_EQ('\xA5', base.memory[size]);
    }
}

TEST_P(StraightBuffers, AreNotWrittenBehindTheirEnd) {
    const size_t whole = hex(largest()).size();
    for (size_t start = 0; start < 4; ++start) {
        for (size_t size = start; size < start + whole; ++size) {
            const BaseInABuffer base(GetParam(), start, size);
            EXPECT_EQ(-1, base.result) << size;
            EXPECT_LE(base.used, size);
            const Bytes behind(base.memory.data() + size, base.memory.data() + base.memory.size());
            EXPECT_EQ(Bytes(behind.size(), '\xA5'), behind) << size;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Flavour, StraightBuffers, testing::Values(varint, fixed),
                         [](const auto& flavour) { return flavour.param ? "Varint" : "Fixed"; });

}  // namespace
}  // namespace zrp_test
