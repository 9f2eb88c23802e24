// The output buffer as an object: what it consists of, what it points at, whose memory it releases.
#include <gtest/gtest.h>
#include <stddef.h>
#include <stdlib.h>

#include <new>
#include <type_traits>

#include "tests/brx/guarded_output.h"

namespace {

// Array delete of this program, replaced so that a release is seen rather than assumed.
const void* watchedMemory = nullptr;
int releasesOfWatchedMemory = 0;

}  // namespace

// Out of line: where compilers see through to malloc they take the delete for a mismatch.
[[gnu::noinline]] void* operator new[](size_t size) {
    void* const memory = malloc(size != 0 ? size : 1);
    if (memory == nullptr) {
        abort();
    }
    return memory;
}

[[gnu::noinline]] void operator delete[](void* memory) noexcept {
    if (memory != nullptr && memory == watchedMemory) {
        ++releasesOfWatchedMemory;
    }
    free(memory);
}

void operator delete[](void* memory, size_t) noexcept {
    operator delete[](memory);
}

namespace zrp_test {

using Quorva::BrxWriteBuf;

namespace {

/// Eight bytes from array new whose release is counted.
class WatchedMemory {
  public:
    WatchedMemory() : begin(new char[8]{'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h'}) {
        watchedMemory = begin;
        releasesOfWatchedMemory = 0;
    }
    ~WatchedMemory() {
        if (releases() == 0) {
            delete[] begin;
        }
        watchedMemory = nullptr;
    }
    WatchedMemory(const WatchedMemory&) = delete;
    WatchedMemory& operator=(const WatchedMemory&) = delete;

    int releases() const { return releasesOfWatchedMemory; }

    char* const begin;
};

}  // namespace

TEST(OutputBuffer, IsAPlainRecordOfFourMembersInOrder) {
    static_assert(std::is_standard_layout_v<BrxWriteBuf>);
    static_assert(!std::is_polymorphic_v<BrxWriteBuf>);
    static_assert(std::is_same_v<decltype(BrxWriteBuf::beginPtr), char*>);
    static_assert(std::is_same_v<decltype(BrxWriteBuf::position), size_t>);
    static_assert(std::is_same_v<decltype(BrxWriteBuf::length), size_t>);
    static_assert(std::is_same_v<decltype(BrxWriteBuf::ownsMemory), bool>);
    EXPECT_EQ(offsetof(BrxWriteBuf, beginPtr), 0U);
    EXPECT_EQ(offsetof(BrxWriteBuf, position), sizeof(char*));
    EXPECT_EQ(offsetof(BrxWriteBuf, length), sizeof(char*) + sizeof(size_t));
    EXPECT_EQ(offsetof(BrxWriteBuf, ownsMemory), sizeof(char*) + 2 * sizeof(size_t));
    EXPECT_EQ(sizeof(BrxWriteBuf), sizeof(char*) + 2 * sizeof(size_t) + alignof(size_t));
}

TEST(OutputBuffer, StartsAtTheBeginningOfBorrowedMemory) {
    char memory[5] = {};
    const BrxWriteBuf buf(memory, sizeof(memory));
    EXPECT_EQ(buf.beginPtr, memory);
    EXPECT_EQ(buf.position, 0U);
    EXPECT_EQ(buf.length, 5U);
    EXPECT_FALSE(buf.ownsMemory);
    EXPECT_EQ(buf.getBeginPtr(), memory);
    EXPECT_EQ(buf.getUsedSize(), 0U);
    EXPECT_EQ(buf.getTotalSize(), 5U);
}

TEST(OutputBuffer, HasNoLengthOverANullPointerWhateverLengthWasPassed) {
    const BrxWriteBuf buf(nullptr, 100);
    EXPECT_EQ(buf.beginPtr, nullptr);
    EXPECT_EQ(buf.position, 0U);
    EXPECT_EQ(buf.length, 0U);
    EXPECT_EQ(buf.getTotalSize(), 0U);
    EXPECT_EQ(buf.getBeginPtr(), nullptr);
}

TEST(OutputBuffer, AccessorsReportTheMembersAsTheyStand) {
    GuardedOutput out(9);
    out.buf.position = 4;
    EXPECT_EQ(out.buf.getUsedSize(), 4U);
    EXPECT_EQ(out.buf.getTotalSize(), 9U);
    EXPECT_EQ(out.buf.getBeginPtr(), out.begin());
}

TEST(OutputBuffer, SetAimsAtOtherMemoryFromItsBeginning) {
    char first[4] = {};
    char second[7] = {};
    BrxWriteBuf buf(first, sizeof(first));
    ASSERT_EQ(buf.writeUInt16(0xABCD), 0);
    buf._set(second, sizeof(second));
    EXPECT_EQ(buf.beginPtr, second);
    EXPECT_EQ(buf.position, 0U);
    EXPECT_EQ(buf.length, 7U);
    buf._set(nullptr, 7);
    EXPECT_EQ(buf.beginPtr, nullptr);
    EXPECT_EQ(buf.position, 0U);
    EXPECT_EQ(buf.length, 0U);
}

TEST(OutputBuffer, SetLeavesOwnershipAsItWasAndReleasesNothing) {
    WatchedMemory memory;
    char other[1] = {};
    BrxWriteBuf buf(memory.begin, 8);
    buf.ownsMemory = true;
    buf._set(other, sizeof(other));
    EXPECT_TRUE(buf.ownsMemory);
    EXPECT_EQ(memory.releases(), 0);
    buf.ownsMemory = false;
    buf._set(other, sizeof(other));
    EXPECT_FALSE(buf.ownsMemory);
}

TEST(OutputBuffer, LeavesBorrowedMemoryAloneWhenItGoes) {
    WatchedMemory memory;
    { const BrxWriteBuf buf(memory.begin, 8); }
    EXPECT_EQ(memory.releases(), 0);
    EXPECT_EQ(memory.begin[7], 'h');
}

TEST(OutputBuffer, ReleasesMemoryItWasMadeToOwnOnceWhenItGoes) {
    WatchedMemory memory;
    {
        BrxWriteBuf buf(memory.begin, 8);
        buf.ownsMemory = true;
    }
    EXPECT_EQ(memory.releases(), 1);
}

TEST(OutputBuffer, ReleasesNothingASecondTimeAfterFree) {
    WatchedMemory memory;
    {
        BrxWriteBuf buf(memory.begin, 8);
        buf.ownsMemory = true;
        buf._free();
        EXPECT_EQ(memory.releases(), 1);
        buf._free();
    }
    EXPECT_EQ(memory.releases(), 1);
}

TEST(OutputBuffer, FreeReleasesTheMemoryWhetherOwnedOrNotAndKeepsPositionAndLength) {
    WatchedMemory memory;
    BrxWriteBuf buf(memory.begin, 8);
    ASSERT_EQ(buf.writeUInt32(1), 0);
    buf._free();
    EXPECT_EQ(memory.releases(), 1);
    EXPECT_EQ(buf.beginPtr, nullptr);
    EXPECT_FALSE(buf.ownsMemory);
    EXPECT_EQ(buf.position, 4U);
    EXPECT_EQ(buf.length, 8U);
}

TEST(OutputBuffer, FreeGivesUpOwnershipEvenWithoutMemory) {
    BrxWriteBuf buf(nullptr, 0);
    buf.ownsMemory = true;
    buf._free();
    EXPECT_FALSE(buf.ownsMemory);
    EXPECT_EQ(buf.beginPtr, nullptr);
}

TEST(OutputBuffer, MayGoWhileOwningNothing) {
    WatchedMemory memory;
    {
        BrxWriteBuf buf(nullptr, 0);
        buf.ownsMemory = true;
    }
    EXPECT_EQ(memory.releases(), 0);
}

// --- reserve ------------------------------------------------------------------------------------

TEST(Reserve, StepsOverBytesWithoutWritingThem) {
    GuardedOutput out(6, 1);
    EXPECT_EQ(out.buf.reserve(4), 0);
    EXPECT_EQ(out.buf.position, 5U);
    EXPECT_TRUE(out.untouched());
}

TEST(Reserve, TakesExactlyTheRoomThatIsLeft) {
    GuardedOutput out(6, 2);
    EXPECT_EQ(out.buf.reserve(4), 0);
    EXPECT_EQ(out.buf.position, 6U);
}

TEST(Reserve, FailsForOneByteMoreThanIsLeft) {
    GuardedOutput out(6, 2);
    EXPECT_EQ(out.buf.reserve(5), -1);
    EXPECT_EQ(out.buf.position, 2U);
    EXPECT_TRUE(out.untouched());
}

TEST(Reserve, FailsForCountsThatWouldWrapThePosition) {
    GuardedOutput out(6, 2);
    EXPECT_EQ(out.buf.reserve(SIZE_MAX), -1);
    EXPECT_EQ(out.buf.reserve(SIZE_MAX - 1), -1);
    EXPECT_EQ(out.buf.position, 2U);
}

TEST(Reserve, OfNothingSucceedsInAFullBufferAndOverANullPointer) {
    GuardedOutput full(3, 3);
    EXPECT_EQ(full.buf.reserve(0), 0);
    EXPECT_EQ(full.buf.position, 3U);
    BrxWriteBuf null(nullptr, 10);
    EXPECT_EQ(null.reserve(0), 0);
    EXPECT_EQ(null.position, 0U);
}

TEST(Reserve, OfOneByteFailsOverANullPointer) {
    BrxWriteBuf null(nullptr, 10);
    EXPECT_EQ(null.reserve(1), -1);
    EXPECT_EQ(null.position, 0U);
}

TEST(Reserve, LeavesAHoleThatIsFilledLater) {
    GuardedOutput out(8);
    ASSERT_EQ(out.buf.writeUInt8(0xAA), 0);
    ASSERT_EQ(out.buf.reserve(4), 0);
    ASSERT_EQ(out.buf.writeUInt16(0xABCD), 0);
    ASSERT_EQ(out.buf.writeUInt32(static_cast<uint32_t>(out.buf.getUsedSize()), 1), 0);
    EXPECT_EQ(out.bytes(), "AA 00 00 00 07 AB CD CC");
    EXPECT_EQ(out.buf.position, 7U);
}

}  // namespace zrp_test
