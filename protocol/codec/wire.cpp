#include "protocol/codec/wire.h"

#include <bit>

namespace quorva_zrp::codec::wire {

char* storeLongVarint(char* to, uint64_t value) {
    while (value >= UINT64_C(1) << 28) {
        storeLowFirst<4>(to, fourGroups(value));
        to += 4;
        value >>= 28;
    }
    const uint32_t groups = fourGroups(value);
    if (value < 0x80) {
        storeLowFirst<1>(to, value);
        return to + 1;
    }
    if (value < 0x4000) {
        storeLowFirst<2>(to, groups & 0x7FFF);
        return to + 2;
    }
    if (value < 0x200000) {
        storeLowFirst<3>(to, groups & 0x7FFFFF);
        return to + 3;
    }
    storeLowFirst<4>(to, groups & 0x7FFFFFFF);
    return to + 4;
}

namespace {

/// The 7-bit groups of 8 bytes, put together: pairs, then pairs of pairs, then the two halves.
uint64_t joinGroups(uint64_t bytes) {
    bytes = (bytes & 0x007F007F007F007F) | (bytes & 0x7F007F007F007F00) >> 1;
    bytes = (bytes & 0x00003FFF00003FFF) | (bytes & 0x3FFF00003FFF0000) >> 2;
    return (bytes & 0x000000000FFFFFFF) | (bytes & 0x0FFFFFFF00000000) >> 4;
}

/// The varint among 8 bytes of input, `from` and on; its end is null when it goes on past them.
LoadedVarint loadAmong8(const char* from, uint64_t bytes) {
    const uint64_t ends = ~bytes & 0x8080808080808080;
    if (ends == 0) {
        return {nullptr, joinGroups(bytes)};
    }
    const unsigned lastBit = static_cast<unsigned>(std::countr_zero(ends));
    return {from + lastBit / 8 + 1, joinGroups(bytes & (UINT64_MAX >> (63 - lastBit)))};
}

}  // namespace

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
    return {fifth <= 0xF ? from + 5 : nullptr, addGroup(four, fifth, 28)};
}

LoadedVarint loadLongVarint(const char* from, const char* inputEnd) {
    const size_t remaining = static_cast<size_t>(inputEnd - from);
    if (remaining < 8) {
        // The end of the varint is among these bytes; what is behind them does not matter.
        uint64_t bytes = 0;
        for (size_t i = 0; i < remaining; ++i) {
            bytes |= loadLowFirst<1>(from + i) << (8 * i);
        }
        return loadAmong8(from, bytes);
    }
    LoadedVarint loaded = loadAmong8(from, loadLowFirst<8>(from));
    if (loaded.end == nullptr) {
        const uint64_t ninth = loadLowFirst<1>(from + 8);
        loaded.value |= (ninth & 0x7F) << 56;
        loaded.end = from + 9;
        if (ninth >= 0x80) {
            const uint64_t tenth = loadLowFirst<1>(from + 9);
            loaded.value |= tenth << 63;
            loaded.end = tenth <= 1 ? from + 10 : nullptr;
        }
    }
    return loaded;
}

}  // namespace quorva_zrp::codec::wire
