#include "protocol/codec/wire.h"

namespace quorva_zrp::codec::wire {

namespace {

// Groups of 7 bits, eight at a time: halves, then pairs of pairs, then pairs. A part is moved by
// two bits by adding it three times more, and by one bit by adding it once more; back by
// subtracting.

/// The low 56 bits of `value` as 8 groups, one a byte.
uint64_t splitGroups(uint64_t value) {
    value = (value & 0x000000000FFFFFFF) | (value & 0x00FFFFFFF0000000) << 4;
    value += (value & 0x0FFFC0000FFFC000) * 3;
    return value + (value & 0x3F803F803F803F80);
}

/// Four groups as they travel, each with the continuation bit: the low 28 bits of `value`.
uint32_t fourGroups(uint32_t value) {
    return (value & 0x7F) | (value << 1 & 0x7F00) | (value << 2 & 0x7F0000) |
           (value << 3 & 0x7F000000) | 0x80808080;
}

/// The groups of 8 bytes put together again; the continuation bits do not matter.
uint64_t joinGroups(uint64_t bytes) {
    bytes &= 0x7F7F7F7F7F7F7F7F;
    bytes -= (bytes & 0x7F007F007F007F00) >> 1;
    bytes -= ((bytes & 0x3FFF00003FFF0000) >> 2) * 3;
    return static_cast<uint32_t>(bytes) | bytes >> 32 << 28;
}

/// The bytes of a varint that ends among 8, or 8 of a longer one: without looking past its end.
uint64_t bytesOfVarint(const char* from) {
    uint64_t bytes = 0;
    for (unsigned i = 0; i < 8; ++i) {
        const uint64_t byte = loadLowFirst<1>(from + i);
        bytes |= byte << (8 * i);
        if (byte < 0x80) {
            break;
        }
    }
    return bytes;
}

}  // namespace

char* storeLongVarint(char* to, uint16_t value) {
    return storeLongVarint(to, uint32_t{value});
}

char* storeLongVarint(char* to, uint32_t value) {
    const uint32_t groups = fourGroups(value);
    if (keepsCodeSmall && value < UINT32_C(1) << 14) {
        storeLowFirst<2>(to, groups & 0x7FFF);
        return to + 2;
    }
    if (value < UINT32_C(1) << 21) {
        storeLowFirst<3>(to, groups & 0x7FFFFF);
        return to + 3;
    }
    if (value < UINT32_C(1) << 28) {
        storeLowFirst<4>(to, groups & 0x7FFFFFFF);
        return to + 4;
    }
    storeLowFirst<4>(to, groups);
    storeLowFirst<1>(to + 4, value >> 28);
    return to + 5;
}

char* storeLongVarint(char* to, uint64_t value) {
    if (value <= UINT32_MAX) {
        return storeLongVarint(to, static_cast<uint32_t>(value));
    }
    const uint64_t groups = splitGroups(value) | 0x8080808080808080;
    if (value >= UINT64_C(1) << 56) {
        const uint64_t rest = value >> 56;
        storeLowFirst<8>(to, groups);
        if (rest < 0x80) {
            storeLowFirst<1>(to + 8, rest);
            return to + 9;
        }
        storeLowFirst<2>(to + 8, rest | 0x100);
        return to + 10;
    }
    // 5 to 8 groups, in two halves that may overlap. 9/64 is near enough to 1/7.
    const unsigned size = (static_cast<unsigned>(std::bit_width(value)) * 9 + 64) / 64;
    const uint64_t ended = groups & ~(UINT64_C(0x80) << (size * 8 - 8));
    storeLowFirst<4>(to, ended);
    storeLowFirst<4>(to + size - 4, ended >> (size * 8 - 32));
    return to + size;
}

template <unsigned Bits>
LoadedVarint loadGroupsShared(const char* from, const char* lastVarint) {
    return loadGroups<Bits>(from, lastVarint);
}
template LoadedVarint loadGroupsShared<16>(const char*, const char*);
template LoadedVarint loadGroupsShared<32>(const char*, const char*);
template LoadedVarint loadGroupsShared<64>(const char*, const char*);

LoadedVarint loadLongVarint(const char* from, uint32_t two) {
    using Quorva::brx_detail::byteAt;
    const uint32_t third = byteAt(from, 2);
    const uint32_t three = addGroup(two, third, 14);
    if (third < 0x80) {
        return {from + 3, three};
    }
    const uint32_t fourth = byteAt(from, 3);
    const uint32_t four = addGroup(three, fourth, 21);
    if (fourth < 0x80) {
        return {from + 4, four};
    }
    const uint32_t fifth = byteAt(from, 4);
    if (fifth > 0xF) [[unlikely]] {
        return {nullptr, 0};
    }
    return {from + 5, addGroup(four, fifth, 28)};
}

LoadedVarint loadLongVarint(const char* from, const char* lastVarint) {
    const uint64_t bytes = lastVarint - from >= 7 ? loadLowFirst<8>(from) : bytesOfVarint(from);
    const uint64_t ends = ~bytes & 0x8080808080808080;
    if (ends != 0) {
        const unsigned lastBit = static_cast<unsigned>(std::countr_zero(ends));
        return {from + lastBit / 8 + 1, joinGroups(bytes & (UINT64_MAX >> (63 - lastBit)))};
    }
    const uint64_t ninth = loadLowFirst<1>(from + 8);
    const uint64_t value = joinGroups(bytes) | (ninth & 0x7F) << 56;
    if (ninth < 0x80) {
        return {from + 9, value};
    }
    const uint64_t tenth = loadLowFirst<1>(from + 9);
    return {tenth <= 1 ? from + 10 : nullptr, value | tenth << 63};
}

}  // namespace quorva_zrp::codec::wire
