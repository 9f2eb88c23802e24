#include "tests/oracle/cursor.h"

namespace zrp_oracle {

namespace {

constexpr int noRoom = -1;
constexpr int noData = -2;

}  // namespace

int OutputCursor::putByte(uint8_t value) {
    if (used == size) {
        return noRoom;
    }
    bytes[used] = static_cast<char>(value);
    used = used + 1;
    return 0;
}

int OutputCursor::putBigEndian(uint64_t value, size_t width) {
    if (size - used < width) {
        return noRoom;
    }
    for (size_t left = width; left > 0; --left) {
        putByte(static_cast<uint8_t>(value >> (8 * (left - 1))));
    }
    return 0;
}

int OutputCursor::putVarint(uint64_t value) {
    size_t at = used;
    while (at < size) {
        const uint64_t group = value % 128;
        value = value / 128;
        const bool isLast = value == 0;
        bytes[at] = static_cast<char>(isLast ? group : group + 128);
        at = at + 1;
        if (isLast) {
            used = at;
            return 0;
        }
    }
    return noRoom;
}

int OutputCursor::putRun(const char* from, size_t count) {
    if (size - used < count) {
        return noRoom;
    }
    for (size_t i = 0; i < count; ++i) {
        putByte(static_cast<uint8_t>(from[i]));
    }
    return 0;
}

int OutputCursor::skip(size_t count) {
    if (size - used < count) {
        return noRoom;
    }
    used = used + count;
    return 0;
}

int OutputCursor::putLengthAt(size_t place, size_t value) {
    if (place > size || size - place < 4) {
        return noRoom;
    }
    OutputCursor hole(bytes + place, 4);
    return hole.putBigEndian(value % 0x100000000, 4);
}

int OutputCursor::putText(const std::string& text) {
    const size_t room = size - used;
    for (size_t i = 0; i < text.size() && i + 1 < room; ++i) {
        bytes[used + i] = text[i];
    }
    if (text.size() >= room) {
        if (room > 0) {
            bytes[size - 1] = '\0';
        }
        return noRoom;
    }
    used = used + text.size();
    bytes[used] = '\0';
    return 0;
}

int OutputCursor::putCharAndNul(char value) {
    if (size - used < 2) {
        return noRoom;
    }
    bytes[used] = value;
    used = used + 1;
    bytes[used] = '\0';
    return 0;
}

int InputCursor::takeBigEndian(uint64_t& value, size_t width) {
    if (size - used < width) {
        return noData;
    }
    value = 0;
    for (size_t i = 0; i < width; ++i) {
        value = value * 256 + static_cast<uint8_t>(bytes[used]);
        used = used + 1;
    }
    return 0;
}

int InputCursor::takeVarint(uint64_t& value, unsigned bits) {
    // The shift of a group is reduced modulo the register it is computed in, and 16-bit values are
    // computed in 32 bits: groups past the width come back at the low end.
    const unsigned registerBits = bits == 64 ? 64 : 32;
    const uint64_t largest = bits == 64 ? UINT64_MAX : (UINT64_C(1) << bits) - 1;
    value = 0;
    for (size_t i = 0; i < size - used; ++i) {
        const uint8_t byte = static_cast<uint8_t>(bytes[used + i]);
        const uint64_t group = byte % 128;
        const unsigned shift = static_cast<unsigned>((7 * i) % registerBits);
        if (group > (largest >> shift)) {
            return noData;
        }
        value = value | (group << shift);
        if (byte < 128) {
            used = used + i + 1;
            return 0;
        }
    }
    return noData;
}

int InputCursor::takeRun(char* to, size_t count) {
    if (size - used < count) {
        return noData;
    }
    for (size_t i = 0; i < count; ++i) {
        to[i] = bytes[used];
        used = used + 1;
    }
    return 0;
}

int InputCursor::skip(size_t count) {
    if (size - used < count) {
        return noData;
    }
    used = used + count;
    return 0;
}

}  // namespace zrp_oracle
