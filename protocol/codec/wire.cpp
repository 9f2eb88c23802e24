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

/// The varint within the `size` bytes at `from`, read as one number; 8 bytes at most.
LoadedVarint loadWithin(const char* from, uint64_t bytes, size_t size) {
    const uint64_t ends = ~bytes & 0x8080808080808080;
    const unsigned lastBit = static_cast<unsigned>(std::countr_zero(ends));
    if (lastBit / 8 >= size) {
        return {nullptr, 0};
    }
    const uint64_t upToEnd = bytes & (UINT64_MAX >> (63 - lastBit));
    return {from + lastBit / 8 + 1, joinGroups(upToEnd)};
}

}  // namespace

LoadedVarint loadLongVarint(const char* from, const char* inputEnd, unsigned bits) {
    LoadedVarint loaded{};
    const size_t remaining = static_cast<size_t>(inputEnd - from);
    if (remaining < 8) {
        uint64_t bytes = 0;
        for (size_t i = 0; i < remaining; ++i) {
            bytes |= loadLowFirst<1>(from + i) << (8 * i);
        }
        loaded = loadWithin(from, bytes, remaining);
    } else {
        const uint64_t bytes = loadLowFirst<8>(from);
        loaded = loadWithin(from, bytes, 8);
        if (loaded.end == nullptr) {
            // Nine or ten groups; the conditions of the call make sure that they are there.
            const uint64_t ninth = loadLowFirst<1>(from + 8);
            const uint64_t tenth = ninth < 0x80 ? 0 : loadLowFirst<1>(from + 9);
            if (tenth > 1) {
                return loaded;
            }
            loaded.end = from + (ninth < 0x80 ? 9 : 10);
            loaded.value = joinGroups(bytes) | (ninth & 0x7F) << 56 | tenth << 63;
        }
    }
    if (bits == 32 && (loaded.value > UINT32_MAX || loaded.end - from > 5)) {
        loaded.end = nullptr;
    }
    return loaded;
}

}  // namespace quorva_zrp::codec::wire
