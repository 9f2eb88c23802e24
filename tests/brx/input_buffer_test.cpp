// The input buffer as an object, and stepping over and copying runs of bytes.
#include <gtest/gtest.h>
#include <stddef.h>

#include <type_traits>

#include "Common/Source/Core/BRX/BrxBuf.h"
#include "tests/support/bytes.h"

namespace zrp_test {

using Quorva::BrxReadBuf;

TEST(InputBuffer, IsAPlainRecordOfThreeMembersInOrder) {
    static_assert(std::is_standard_layout_v<BrxReadBuf>);
    static_assert(!std::is_polymorphic_v<BrxReadBuf>);
    static_assert(std::is_same_v<decltype(BrxReadBuf::beginPtr), const char*>);
    static_assert(std::is_same_v<decltype(BrxReadBuf::position), size_t>);
    static_assert(std::is_same_v<decltype(BrxReadBuf::length), size_t>);
    EXPECT_EQ(offsetof(BrxReadBuf, beginPtr), 0U);
    EXPECT_EQ(offsetof(BrxReadBuf, position), sizeof(const char*));
    EXPECT_EQ(offsetof(BrxReadBuf, length), sizeof(const char*) + sizeof(size_t));
    EXPECT_EQ(sizeof(BrxReadBuf), sizeof(const char*) + 2 * sizeof(size_t));
}

TEST(InputBuffer, StartsAtTheBeginningOfItsBytes) {
    const Bytes bytes = hex("01 02 03");
    const BrxReadBuf buf(bytes.data(), bytes.size());
    EXPECT_EQ(buf.beginPtr, bytes.data());
    EXPECT_EQ(buf.position, 0U);
    EXPECT_EQ(buf.length, 3U);
    EXPECT_EQ(buf.getUsedSize(), 0U);
}

TEST(InputBuffer, HasNoLengthOverANullPointerWhateverLengthWasPassed) {
    const BrxReadBuf buf(nullptr, 100);
    EXPECT_EQ(buf.beginPtr, nullptr);
    EXPECT_EQ(buf.position, 0U);
    EXPECT_EQ(buf.length, 0U);
}

TEST(InputBuffer, SetAimsAtOtherBytesFromTheirBeginning) {
    const Bytes first = hex("01 02");
    const Bytes second = hex("03 04 05");
    BrxReadBuf buf(first.data(), first.size());
    ASSERT_EQ(buf.skipForward(2), 0);
    EXPECT_EQ(buf.getUsedSize(), 2U);
    buf.set(second.data(), second.size());
    EXPECT_EQ(buf.beginPtr, second.data());
    EXPECT_EQ(buf.position, 0U);
    EXPECT_EQ(buf.length, 3U);
    buf.set(nullptr, 3);
    EXPECT_EQ(buf.beginPtr, nullptr);
    EXPECT_EQ(buf.position, 0U);
    EXPECT_EQ(buf.length, 0U);
}

// --- skipForward --------------------------------------------------------------------------------

TEST(SkipForward, StepsOverBytes) {
    const Bytes bytes = hex("01 02 03 04");
    BrxReadBuf buf(bytes.data(), bytes.size());
    EXPECT_EQ(buf.skipForward(1), 0);
    EXPECT_EQ(buf.skipForward(2), 0);
    EXPECT_EQ(buf.position, 3U);
}

TEST(SkipForward, TakesExactlyWhatIsLeft) {
    const Bytes bytes = hex("01 02 03 04");
    BrxReadBuf buf(bytes.data(), bytes.size());
    ASSERT_EQ(buf.skipForward(1), 0);
    EXPECT_EQ(buf.skipForward(3), 0);
    EXPECT_EQ(buf.position, 4U);
    uint8_t value = 0;
    EXPECT_EQ(buf.readUInt8(value), -2);
}

TEST(SkipForward, FailsForMoreThanIsLeft) {
    const Bytes bytes = hex("01 02 03 04");
    BrxReadBuf buf(bytes.data(), bytes.size());
    ASSERT_EQ(buf.skipForward(1), 0);
    for (const size_t count : {size_t{4}, SIZE_MAX - 1, SIZE_MAX}) {
        SCOPED_TRACE(count);
        EXPECT_EQ(buf.skipForward(count), -2);
        EXPECT_EQ(buf.position, 1U);
    }
}

TEST(SkipForward, OfNothingAlwaysSucceeds) {
    const Bytes bytes = hex("01");
    BrxReadBuf buf(bytes.data(), bytes.size());
    EXPECT_EQ(buf.skipForward(0), 0);
    EXPECT_EQ(buf.position, 0U);
    ASSERT_EQ(buf.skipForward(1), 0);
    EXPECT_EQ(buf.skipForward(0), 0);
    EXPECT_EQ(buf.position, 1U);
    BrxReadBuf null(nullptr, 10);
    EXPECT_EQ(null.skipForward(0), 0);
    EXPECT_EQ(null.position, 0U);
}

TEST(SkipForward, OfOneByteFailsOverANullPointer) {
    BrxReadBuf null(nullptr, 10);
    EXPECT_EQ(null.skipForward(1), -2);
}

// --- readBytes ----------------------------------------------------------------------------------

TEST(ReadBytes, CopiesAndAdvances) {
    const Bytes bytes = hex("01 02 00 80 05");
    BrxReadBuf buf(bytes.data(), bytes.size());
    ASSERT_EQ(buf.skipForward(1), 0);
    Bytes copy = hex("CC CC CC CC");
    EXPECT_EQ(buf.readBytes(copy.data(), 3), 0);
    EXPECT_EQ(toHex(copy), "02 00 80 CC");
    EXPECT_EQ(buf.position, 4U);
}

TEST(ReadBytes, TakesExactlyWhatIsLeft) {
    const Bytes bytes = hex("01 02 03");
    BrxReadBuf buf(bytes.data(), bytes.size());
    Bytes copy = hex("CC CC CC");
    EXPECT_EQ(buf.readBytes(copy.data(), 3), 0);
    EXPECT_EQ(toHex(copy), "01 02 03");
    EXPECT_EQ(buf.position, 3U);
}

TEST(ReadBytes, FailsForMoreThanIsLeftAndCopiesNothing) {
    const Bytes bytes = hex("01 02 03 04");
    BrxReadBuf buf(bytes.data(), bytes.size());
    ASSERT_EQ(buf.skipForward(2), 0);
    Bytes copy = hex("CC CC CC");
    volatile const size_t largest = SIZE_MAX;  // unknown to compilers, which would refuse the call
    for (const size_t count : {size_t{3}, largest - 1, size_t{largest}}) {
        SCOPED_TRACE(count);
        EXPECT_EQ(buf.readBytes(copy.data(), count), -2);
        EXPECT_EQ(buf.position, 2U);
        EXPECT_EQ(toHex(copy), "CC CC CC");
    }
}

TEST(ReadBytes, OfNothingSucceedsAtTheEndAndOverANullPointer) {
    const Bytes bytes = hex("01");
    char copy = 'c';
    BrxReadBuf buf(bytes.data(), bytes.size());
    ASSERT_EQ(buf.skipForward(1), 0);
    EXPECT_EQ(buf.readBytes(&copy, 0), 0);
    EXPECT_EQ(buf.position, 1U);
    BrxReadBuf null(nullptr, 10);
    EXPECT_EQ(null.readBytes(&copy, 0), 0);
    EXPECT_EQ(null.position, 0U);
    EXPECT_EQ(copy, 'c');
}

TEST(ReadBytes, FailsOverANullPointer) {
    BrxReadBuf null(nullptr, 10);
    char copy = 'c';
    EXPECT_EQ(null.readBytes(&copy, 1), -2);
    EXPECT_EQ(copy, 'c');
}

TEST(ReadBytes, RefusesANullDestinationWhateverTheCountAndTheInput) {
    const Bytes bytes = hex("01 02 03");
    BrxReadBuf buf(bytes.data(), bytes.size());
    EXPECT_EQ(buf.readBytes(nullptr, 0), -8);
    EXPECT_EQ(buf.readBytes(nullptr, 2), -8);
    EXPECT_EQ(buf.readBytes(nullptr, 4), -8);
    EXPECT_EQ(buf.position, 0U);
    BrxReadBuf null(nullptr, 10);
    EXPECT_EQ(null.readBytes(nullptr, 1), -8);
}

// Known at run time only: where compilers unfold a copy themselves, sanitizers cannot tell a copy
// that may overlap from one that may not.
static volatile const size_t overlap = 4;

TEST(ReadBytes, CopiesIntoOverlappingMemoryBehind) {
    char memory[6] = {1, 2, 3, 4, 5, 6};
    BrxReadBuf buf(memory, sizeof(memory));
    EXPECT_EQ(buf.readBytes(memory + 2, overlap), 0);
    EXPECT_EQ(toHex(memory, 6), "01 02 01 02 03 04");
    EXPECT_EQ(buf.position, 4U);
}

TEST(ReadBytes, CopiesIntoOverlappingMemoryBefore) {
    char memory[6] = {1, 2, 3, 4, 5, 6};
    BrxReadBuf buf(memory, sizeof(memory));
    ASSERT_EQ(buf.skipForward(2), 0);
    EXPECT_EQ(buf.readBytes(memory, overlap), 0);
    EXPECT_EQ(toHex(memory, 6), "03 04 05 06 05 06");
    EXPECT_EQ(buf.position, 6U);
}

}  // namespace zrp_test
