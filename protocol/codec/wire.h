// Unchecked stores and loads of fields: the caller has made sure of the room or the input.
//
// Stores write exactly the bytes of the field, never beyond, so that an encoding leaves the memory
// behind it alone; a tag and a short value still go out in one or two stores.
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include "Common/Source/Core/BRX/BrxBuf.h"
#include "protocol/codec/row.h"

namespace quorva_zrp::codec::wire {

// --- Bytes in stream order ----------------------------------------------------------------------

/// Stores the low `Size` bytes of `bytes`, lowest first: the order in which varint groups travel.
template <size_t Size>
inline void storeLowFirst(char* to, uint64_t bytes) {
    static_assert(Size >= 1 && Size <= 8);
    if constexpr (Size == 1) {
        to[0] = static_cast<char>(bytes & 0xFF);
    } else if constexpr (Size == 2 || Size == 4 || Size == 8) {
        // Two halves: compilers join them, down to one store where the machine allows it.
        storeLowFirst<Size / 2>(to, bytes);
        storeLowFirst<Size / 2>(to + Size / 2, bytes >> (Size * 4));
    } else {
        constexpr size_t head = Size > 4 ? 4 : 2;
        storeLowFirst<head>(to, bytes);
        storeLowFirst<Size - head>(to + head, bytes >> (head * 8));
    }
}

/// The `Size` bytes at `from` as a number, the first one lowest.
template <size_t Size>
inline uint64_t loadLowFirst(const char* from) {
    static_assert(Size >= 1 && Size <= 8);
    if constexpr (Size == 1) {
        return Quorva::brx_detail::byteAt(from, 0);
    } else {
        constexpr size_t head = Size > 4 ? 4 : Size > 2 ? 2 : 1;
        return loadLowFirst<head>(from) | loadLowFirst<Size - head>(from + head) << (head * 8);
    }
}

/// A tag known when this is compiled, as the bytes it travels as.
template <uint32_t Tag>
struct TagBytes {
    static constexpr size_t size = varintSize(Tag);
    static_assert(size <= 4);

    /// The bytes as a number, the first one lowest.
    static constexpr uint64_t packed() {
        uint64_t bytes = 0;
        for (size_t i = 0; i < size; ++i) {
            const uint64_t group = (Tag >> (7 * i)) & 0x7F;
            bytes |= (i + 1 < size ? group | 0x80 : group) << (8 * i);
        }
        return bytes;
    }

    static void store(char* to) { storeLowFirst<size>(to, packed()); }

    /// Whether the bytes at `from`, at least `size` of them, are this tag.
    static bool isAt(const char* from) { return loadLowFirst<size>(from) == packed(); }
};

// --- Varints ------------------------------------------------------------------------------------

/// Four groups as they travel, each with the continuation bit: the low 28 bits of `value`.
inline uint32_t fourGroups(uint64_t value) {
    const uint32_t low = static_cast<uint32_t>(value);
    return (low & 0x7F) | (low << 1 & 0x7F00) | (low << 2 & 0x7F0000) | (low << 3 & 0x7F000000) |
           0x80808080;
}

/// Stores a varint of more than two groups; returns the end. Out of line: most values are shorter.
char* storeLongVarint(char* to, uint64_t value);

/// Stores a tag and a varint; returns the end. One and two groups, which most values take, and all
/// that 16 bits can take go out together with the tag.
template <uint32_t Tag, class Unsigned>
ZRP_INLINE char* storeVarintField(char* to, Unsigned value) {
    using Bytes = TagBytes<Tag>;
    constexpr size_t tagBits = Bytes::size * 8;
    if (value < 0x80) {
        storeLowFirst<Bytes::size + 1>(to, Bytes::packed() | static_cast<uint64_t>(value)
                                                                 << tagBits);
        return to + Bytes::size + 1;
    }
    const uint64_t groups = fourGroups(value);
    if (value < 0x4000) {
        storeLowFirst<Bytes::size + 2>(to, Bytes::packed() | (groups & 0x7FFF) << tagBits);
        return to + Bytes::size + 2;
    }
    if constexpr (sizeof(Unsigned) == 2) {
        storeLowFirst<Bytes::size + 3>(to, Bytes::packed() | (groups & 0x7FFFFF) << tagBits);
        return to + Bytes::size + 3;
    } else {
        Bytes::store(to);
        return storeLongVarint(to + Bytes::size, value);
    }
}

/// A varint that was read: its value, and where it ends. `end` is null for one that is longer than
/// its width needs or exceeds it: what that means is for BrxReadBuf to say.
struct LoadedVarint {
    const char* end;
    uint64_t value;
};

// Loading a varint takes input that holds its end or 10 more bytes from `from` on, and ends at
// `inputEnd`. Values of more than two groups go on out of line: most are shorter.

/// Goes on after two groups that gave `two`, for up to 32 bits.
LoadedVarint loadLongVarint(const char* from, uint32_t two);
/// Starts again, for up to 64 bits: eight groups at once where the input is long enough.
LoadedVarint loadLongVarint(const char* from, const char* inputEnd);

/// The groups of `so` and the one in `byte`, which comes `shift` bits higher. The continuation bit
/// of the group before stands where this one begins: it is taken out.
inline uint32_t addGroup(uint32_t so, uint32_t byte, unsigned shift) {
    return so + ((byte - 1) << shift);
}

/// Loads a varint of `Bits` bits. One and two groups, and all that 16 or 21 bits can take, are read
/// here.
template <unsigned Bits>
ZRP_INLINE LoadedVarint loadVarint(const char* from, const char* inputEnd) {
    using Quorva::brx_detail::byteAt;
    const uint32_t first = byteAt(from, 0);
    if (first < 0x80) {
        return {from + 1, first};
    }
    const uint32_t second = byteAt(from, 1);
    const uint32_t two = addGroup(first, second, 7);
    if (second < 0x80) {
        return {from + 2, two};
    }
    if constexpr (Bits <= 21) {
        const uint32_t third = byteAt(from, 2);
        const bool fits = third < 1u << (Bits - 14);
        return {fits ? from + 3 : nullptr, addGroup(two, third, 14)};
    } else if constexpr (Bits == 32) {
        return loadLongVarint(from, two);
    } else {
        return loadLongVarint(from, inputEnd);
    }
}

// --- Integers by flavour ------------------------------------------------------------------------

/// The unsigned integer that a varint of `Integer` carries.
template <class Integer>
inline auto toVarint(Integer value) {
    if constexpr (std::is_signed_v<Integer>) {
        return Quorva::brx_detail::zigzag(value);
    } else {
        return value;
    }
}

template <uint32_t Number, bool Varint, class Integer>
ZRP_INLINE char* storeInteger(char* to, Integer value) {
    constexpr uint32_t tag = makeTag(Number, wireTypeOf<Integer>(Varint));
    if constexpr (sizeof(Integer) == 1) {
        constexpr size_t tagSize = TagBytes<tag>::size;
        storeLowFirst<tagSize + 1>(
            to, TagBytes<tag>::packed() | static_cast<uint64_t>(static_cast<uint8_t>(value))
                                              << (tagSize * 8));
        return to + tagSize + 1;
    } else if constexpr (Varint) {
        return storeVarintField<tag>(to, toVarint(value));
    } else {
        TagBytes<tag>::store(to);
        to += TagBytes<tag>::size;
        Quorva::brx_detail::storeBigEndian(to, static_cast<std::make_unsigned_t<Integer>>(value));
        return to + sizeof(Integer);
    }
}

/// The fewest bytes of input that make `loadInteger` safe: a varint needs one before the point up
/// to which varints are known to end.
template <class Integer, bool Varint>
constexpr size_t leastInput = Varint ? 1 : sizeof(Integer);

/// Loads an integer into `field`; returns where it ends, or null (only with varints) as loadVarint.
template <bool Varint, class Integer>
ZRP_INLINE const char* loadInteger(const char* from, const char* inputEnd, Integer& field) {
    if constexpr (sizeof(Integer) == 1) {
        field = static_cast<Integer>(from[0]);
        return from + 1;
    } else if constexpr (Varint) {
        const LoadedVarint loaded = loadVarint<sizeof(Integer) * 8>(from, inputEnd);
        if constexpr (std::is_signed_v<Integer>) {
            using Register = std::make_unsigned_t<Integer>;
            field = Quorva::brx_detail::unzigzag(static_cast<Register>(loaded.value));
        } else {
            field = static_cast<Integer>(loaded.value);
        }
        return loaded.end;
    } else {
        std::make_unsigned_t<Integer> bits = 0;
        Quorva::brx_detail::loadBigEndian(from, bits);
        field = static_cast<Integer>(bits);
        return from + sizeof(Integer);
    }
}

}  // namespace quorva_zrp::codec::wire
