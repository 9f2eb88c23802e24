// An output buffer over memory whose every byte is known before the test begins.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "Common/Source/Core/BRX/BrxBuf.h"
#include "tests/support/bytes.h"

namespace zrp_test {

/// A BrxWriteBuf over `room` bytes of 0xCC between guard bytes of 0xCC. The test fails when a guard
/// byte has changed by the time this object goes.
class GuardedOutput {
  private:
    static constexpr char fill = static_cast<char>(0xCC);
    static constexpr size_t guard = 16;
    size_t room_;
    Bytes memory_;

  public:
    Quorva::BrxWriteBuf buf;

    explicit GuardedOutput(size_t room, size_t position = 0)
        : room_(room), memory_(room + 2 * guard, fill), buf(begin(), room) {
        buf.position = position;
    }
    ~GuardedOutput() {
        EXPECT_TRUE(isFilled(memory_.data(), guard)) << "written before the buffer";
        EXPECT_TRUE(isFilled(begin() + room_, guard)) << "written behind the buffer";
    }
    GuardedOutput(const GuardedOutput&) = delete;
    GuardedOutput& operator=(const GuardedOutput&) = delete;

    char* begin() { return memory_.data() + guard; }
    /// All bytes of the room, written or not, as hexadecimal text.
    std::string bytes() const { return toHex(memory_.data() + guard, room_); }
    bool untouched() const { return isFilled(memory_.data() + guard, room_); }

  private:
    static bool isFilled(const char* from, size_t count) {
        return std::all_of(from, from + count, [](char byte) { return byte == fill; });
    }
};

}  // namespace zrp_test
