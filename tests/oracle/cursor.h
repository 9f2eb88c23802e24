// The oracle's own output and input cursors, one byte at a time. They share nothing with the
// library's buffers.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <string>

namespace zrp_oracle {

/// A bounded place to write to. Each operation returns 0, or -1 when its bytes do not fit.
struct OutputCursor {
    OutputCursor(char* memory, size_t room)
        : bytes(memory), used(0), size(memory != nullptr ? room : 0) {}

    char* bytes;
    size_t used;
    size_t size;

    int putByte(uint8_t value);
    /// `width` bytes, most significant first; nothing is written when they do not fit.
    int putBigEndian(uint64_t value, size_t width);
    /// Groups of 7 bits, low group first. What does not fit still fills the free bytes.
    int putVarint(uint64_t value);
    /// All `count` bytes or none.
    int putRun(const char* from, size_t count);
    /// Leaves `count` bytes as they are.
    int skip(size_t count);
    /// Four bytes at `place`, wherever the cursor stands.
    int putLengthAt(size_t place, size_t value);
    /// The text and a NUL that does not count; text that does not fit is cut off with a NUL.
    int putText(const std::string& text);
    /// The character and a NUL that does not count.
    int putCharAndNul(char value);
};

/// A bounded place to read from. Each operation returns 0, or -2 when the input ends too early; a
/// failing operation does not move `used`.
struct InputCursor {
    InputCursor(const char* memory, size_t count)
        : bytes(memory), used(0), size(memory != nullptr ? count : 0) {}

    const char* bytes;
    size_t used;
    size_t size;

    /// `value` is left alone on failure.
    int takeBigEndian(uint64_t& value, size_t width);
    /// A varint of 16, 32 or 64 bits; on failure `value` holds the groups gathered before it.
    int takeVarint(uint64_t& value, unsigned bits);
    /// All `count` bytes or none.
    int takeRun(char* to, size_t count);
    int skip(size_t count);
};

}  // namespace zrp_oracle
