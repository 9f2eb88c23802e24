// Reading integers of fixed width.
#include <gtest/gtest.h>

#include "tests/brx/integer_kinds.h"
#include "tests/support/bytes.h"

namespace zrp_test {

using Quorva::BrxReadBuf;

template <class Kind>
class FixedReader : public testing::Test {
  protected:
    using Value = typename Kind::Value;
    /// What a result holds before a read that is not to touch it.
    static constexpr Value before = static_cast<Value>(0x5A5A5A5A5A5A5A5A);
};
TYPED_TEST_SUITE(FixedReader, FixedKinds, KindName);

TYPED_TEST(FixedReader, TakesExactlyTheBytesOfItsWidth) {
    for (const auto& [value, bytes] : TypeParam::vectors) {
        SCOPED_TRACE(bytes);
        const Bytes input = hex(bytes);
        BrxReadBuf buf(input.data(), input.size());
        auto read = this->before;
        EXPECT_EQ(TypeParam::read(buf, read), 0);
        EXPECT_EQ(read, value);
        EXPECT_EQ(buf.position, input.size());
    }
}

TYPED_TEST(FixedReader, ReadsFromTheMiddle) {
    for (const auto& [value, bytes] : TypeParam::vectors) {
        SCOPED_TRACE(bytes);
        const Bytes input = hex("11 22 33 " + std::string(bytes) + " 44 55 66 77 88 99 AA BB");
        BrxReadBuf buf(input.data(), input.size());
        buf.position = 3;
        auto read = this->before;
        EXPECT_EQ(TypeParam::read(buf, read), 0);
        EXPECT_EQ(read, value);
        EXPECT_EQ(buf.position, 3 + hex(bytes).size());
    }
}

TYPED_TEST(FixedReader, FailsOneByteShortAndLeavesResultAndPosition) {
    for (const auto& [value, bytes] : TypeParam::vectors) {
        SCOPED_TRACE(bytes);
        Bytes input = hex("11 22 33 " + std::string(bytes));
        input.pop_back();
        BrxReadBuf buf(input.data(), input.size());
        buf.position = 3;
        auto read = this->before;
        EXPECT_EQ(TypeParam::read(buf, read), -2);
        EXPECT_EQ(read, this->before);
        EXPECT_EQ(buf.position, 3U);
    }
}

TYPED_TEST(FixedReader, FailsAtTheEndOfTheInput) {
    const Bytes input = hex("01 02 03 04 05 06 07 08");
    BrxReadBuf buf(input.data(), input.size());
    buf.position = 8;
    auto read = this->before;
    EXPECT_EQ(TypeParam::read(buf, read), -2);
    EXPECT_EQ(read, this->before);
    EXPECT_EQ(buf.position, 8U);
}

TYPED_TEST(FixedReader, FailsOverANullPointer) {
    BrxReadBuf buf(nullptr, 100);
    auto read = this->before;
    EXPECT_EQ(TypeParam::read(buf, read), -2);
    EXPECT_EQ(read, this->before);
    EXPECT_EQ(buf.position, 0U);
}

TEST(FixedReaders, FollowOneAnotherWithoutGaps) {
    const Bytes input = hex("01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F");
    BrxReadBuf buf(input.data(), input.size());
    uint8_t byte = 0;
    uint16_t word = 0;
    uint32_t doubleWord = 0;
    uint64_t quadWord = 0;
    EXPECT_EQ(buf.readUInt8(byte), 0);
    EXPECT_EQ(buf.readUInt16(word), 0);
    EXPECT_EQ(buf.readUInt32(doubleWord), 0);
    EXPECT_EQ(buf.readUInt64(quadWord), 0);
    EXPECT_EQ(byte, 0x01);
    EXPECT_EQ(word, 0x0203);
    EXPECT_EQ(doubleWord, 0x04050607U);
    EXPECT_EQ(quadWord, UINT64_C(0x08090A0B0C0D0E0F));
    EXPECT_EQ(buf.position, 15U);
}

}  // namespace zrp_test
