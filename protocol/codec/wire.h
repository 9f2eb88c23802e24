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
inline uint32_t loadLowFirst(const char* from) {
    static_assert(Size >= 1 && Size <= 4);
    if constexpr (Size == 1) {
        return Quorva::brx_detail::byteAt(from, 0);
    } else {
        constexpr size_t head = Size > 2 ? 2 : 1;
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

/// Stores a value of more than two groups; returns the end. Out of line: most values are shorter.
char* storeLongVarint(char* to, uint32_t value);
char* storeLongVarint(char* to, uint64_t value);

/// Stores a tag and a varint; returns the end. One and two groups, which most values take, go out
/// together with the tag.
template <uint32_t Tag, class Unsigned>
inline char* storeVarintField(char* to, Unsigned value) {
    using Bytes = TagBytes<Tag>;
    constexpr size_t tagBits = Bytes::size * 8;
    if (value < 0x80) {
        storeLowFirst<Bytes::size + 1>(to, Bytes::packed() | static_cast<uint64_t>(value)
                                                                 << tagBits);
        return to + Bytes::size + 1;
    }
    if (value < 0x4000) {
        const uint64_t groups = (value & 0x7F) | 0x80 | static_cast<uint64_t>(value >> 7) << 8;
        storeLowFirst<Bytes::size + 2>(to, Bytes::packed() | groups << tagBits);
        return to + Bytes::size + 2;
    }
    Bytes::store(to);
    using Register = std::conditional_t<sizeof(Unsigned) == 8, uint64_t, uint32_t>;
    return storeLongVarint(to + Bytes::size, static_cast<Register>(value));
}

/// Loads a varint of `Bits` bits from input that holds its end or 10 more bytes. Returns where the
/// value ends, or null for one that is longer than its width needs or exceeds it: what that means
/// is for BrxReadBuf to say.
template <unsigned Bits, class Register>
inline const char* loadVarint(const char* from, Register& value) {
    constexpr unsigned last = (Bits + 6) / 7 - 1;
    constexpr uint32_t lastLargest = (1u << (Bits - 7 * last)) - 1;
    Register gathered = Quorva::brx_detail::byteAt(from, 0);
    if (gathered < 0x80) {
        value = gathered;
        return from + 1;
    }
    for (unsigned i = 1; i <= last; ++i) {
        const uint32_t byte = Quorva::brx_detail::byteAt(from, i);
        if (i == last && byte > lastLargest) {
            return nullptr;
        }
        // The continuation bit of the byte before stands where this group begins: take it out.
        gathered += (static_cast<Register>(byte) - 1) << (7 * i);
        if (byte < 0x80) {
            value = gathered;
            return from + i + 1;
        }
    }
    return nullptr;
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
inline char* storeInteger(char* to, Integer value) {
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
inline const char* loadInteger(const char* from, Integer& field) {
    using Unsigned = std::make_unsigned_t<Integer>;
    if constexpr (sizeof(Integer) == 1) {
        field = static_cast<Integer>(from[0]);
        return from + 1;
    } else if constexpr (Varint) {
        using Register = std::conditional_t<sizeof(Integer) == 8, uint64_t, uint32_t>;
        Register raw = 0;
        const char* const end = loadVarint<sizeof(Integer) * 8>(from, raw);
        if (end != nullptr) {
            if constexpr (std::is_signed_v<Integer>) {
                field = Quorva::brx_detail::unzigzag(raw);
            } else {
                field = static_cast<Integer>(raw);
            }
        }
        return end;
    } else {
        Unsigned bits = 0;
        Quorva::brx_detail::loadBigEndian(from, bits);
        field = static_cast<Integer>(bits);
        return from + sizeof(Integer);
    }
}

}  // namespace quorva_zrp::codec::wire
