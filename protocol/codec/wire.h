// Unchecked stores and loads of fields: the caller has made sure of the room or the input.
//
// Stores write exactly the bytes of the field, never beyond, so that an encoding leaves the memory
// behind it alone; a tag and a short value still go out in one or two stores.
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include <bit>

#include "Common/Source/Core/BRX/BrxBuf.h"
#include "protocol/codec/row.h"

namespace quorva_zrp::codec::wire {

// --- Byte order ---------------------------------------------------------------------------------
// Values are put into the order of the stream in a register and stored whole. Stored byte by byte
// they come out as well until a compiler joins the ends of several such stores, and then takes
// three times the instructions.

/// `value` with its bytes in reverse.
template <class Unsigned>
ZRP_INLINE constexpr Unsigned swapBytes(Unsigned value) {
    if constexpr (sizeof(Unsigned) == 1) {
        return value;
    } else {
        using Half =
            std::conditional_t<sizeof(Unsigned) == 2, uint8_t,
                               std::conditional_t<sizeof(Unsigned) == 4, uint16_t, uint32_t>>;
        constexpr unsigned bits = sizeof(Half) * 8;
        const Unsigned low = swapBytes(static_cast<Half>(value));
        const Unsigned high = swapBytes(static_cast<Half>(value >> bits));
        return static_cast<Unsigned>(low << bits | high);
    }
}

/// Stores with the most significant byte first, as fixed integers and lengths travel.
template <class Unsigned>
ZRP_INLINE void storeHighFirst(char* to, Unsigned value) {
    store(to, std::endian::native == std::endian::little ? swapBytes(value) : value);
}

/// Loads what storeHighFirst stores.
template <class Unsigned>
ZRP_INLINE Unsigned loadHighFirst(const char* from) {
    const Unsigned value = load<Unsigned>(from);
    return std::endian::native == std::endian::little ? swapBytes(value) : value;
}

/// The unsigned integer of `Size` bytes.
template <size_t Size>
using UnsignedOf = std::conditional_t<
    Size == 1, uint8_t,
    std::conditional_t<Size == 2, uint16_t, std::conditional_t<Size == 4, uint32_t, uint64_t>>>;

/// Stores the low `Size` bytes of `bytes`, lowest first: the order in which varint groups travel.
/// `Slack` bytes behind them may be overwritten: what is written there comes later.
template <size_t Size, size_t Slack = 0>
ZRP_INLINE void storeLowFirst(char* to, uint64_t bytes) {
    static_assert(Size >= 1 && Size <= 8);
    constexpr size_t whole = std::bit_ceil(Size);
    if constexpr (whole - Size <= Slack) {
        using Word = UnsignedOf<whole>;
        const Word word = static_cast<Word>(bytes);
        store(to, std::endian::native == std::endian::little ? word : swapBytes(word));
    } else {
        constexpr size_t head = whole / 2;
        storeLowFirst<head>(to, bytes);
        storeLowFirst<Size - head>(to + head, bytes >> (head * 8));
    }
}

/// The `Size` bytes at `from` as a number, the first one lowest. `Slack` bytes behind them may be
/// read, enough to make it one load.
template <size_t Size, size_t Slack = 0>
ZRP_INLINE uint64_t loadLowFirst(const char* from) {
    constexpr size_t whole = std::bit_ceil(Size);
    static_assert(Size >= 1 && whole <= 8 && whole - Size <= Slack);
    using Word = UnsignedOf<whole>;
    const Word word = load<Word>(from);
    return (std::endian::native == std::endian::little ? word : swapBytes(word)) &
           UINT64_MAX >> (64 - Size * 8);
}

// --- Tags ---------------------------------------------------------------------------------------

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

    /// Stores the tag; `Slack` as for storeLowFirst.
    template <size_t Slack>
    ZRP_INLINE static void store(char* to) {
        storeLowFirst<size, Slack>(to, packed());
    }

    /// Whether the bytes at `from` are this tag; `Value` more are there.
    template <size_t Value>
    ZRP_INLINE static bool isAt(const char* from) {
        return loadLowFirst<size, Value>(from) == packed();
    }
};

// --- Varints ------------------------------------------------------------------------------------

// Varints of more than one group are stored out of line where they are long, as most are not, or
// where code is to be small. Return the end.
char* storeLongVarint(char* to, uint16_t value);
char* storeLongVarint(char* to, uint32_t value);
char* storeLongVarint(char* to, uint64_t value);

/// Stores a tag and a varint; returns the end. One and two groups, which most values take, and all
/// that 16 bits can take go out together with the tag. `Slack` as for storeLowFirst.
template <uint32_t Tag, size_t Slack, class Unsigned>
ZRP_INLINE char* storeVarintField(char* to, Unsigned value) {
    using Bytes = TagBytes<Tag>;
    constexpr size_t tagBits = Bytes::size * 8;
    if (value < 0x80) {
        storeLowFirst<Bytes::size + 1, Slack>(to, Bytes::packed() | static_cast<uint64_t>(value)
                                                                        << tagBits);
        return to + Bytes::size + 1;
    }
    if constexpr (keepsCodeSmall) {
        Bytes::template store<2>(to);
        return storeLongVarint(to + Bytes::size, value);
    }
    // What is added once more moves by one bit: to where its group begins.
    if (value < 0x4000) {
        const uint64_t groups = value + (value & 0x3F80u);
        storeLowFirst<Bytes::size + 2, Slack>(
            to, (Bytes::packed() | uint64_t{0x80} << tagBits) + (groups << tagBits));
        return to + Bytes::size + 2;
    }
    if constexpr (sizeof(Unsigned) == 2) {
        uint64_t groups = value + (value & 0xFF80u);
        groups += groups & 0x18000;
        storeLowFirst<Bytes::size + 3, Slack>(
            to, (Bytes::packed() | uint64_t{0x8080} << tagBits) + (groups << tagBits));
        return to + Bytes::size + 3;
    } else {
        Bytes::template store<2>(to);
        return storeLongVarint(to + Bytes::size, value);
    }
}

/// A varint that was read: its value, and where it ends. `end` is null for one that is longer than
/// its width needs or exceeds it: what that means is for BrxReadBuf to say.
struct LoadedVarint {
    const char* end;
    uint64_t value;
};

// A varint that is loaded has its end in the input, or ten bytes are there: it begins no later than
// `lastVarint`, where either is so. Values of more than two groups go on out of line: most are
// shorter.

/// Goes on after two groups that gave `two`, for up to 32 bits.
LoadedVarint loadLongVarint(const char* from, uint32_t two);
/// Starts again, for up to 64 bits: eight groups at once where the input is long enough.
LoadedVarint loadLongVarint(const char* from, const char* lastVarint);

/// The groups of `so` and the one in `byte`, which comes `shift` bits higher. The continuation bit
/// of the group before stands where this one begins: it is taken out.
inline uint32_t addGroup(uint32_t so, uint32_t byte, unsigned shift) {
    return so + (byte << shift) - (uint32_t{1} << shift);
}

/// Loads a varint of `Bits` bits that has more than one group. Two, and all that 16 bits can take,
/// are read here.
template <unsigned Bits>
ZRP_INLINE LoadedVarint loadGroups(const char* from, const char* lastVarint) {
    using Quorva::brx_detail::byteAt;
    const uint32_t second = byteAt(from, 1);
    const uint32_t two = addGroup(byteAt(from, 0), second, 7);
    if (second < 0x80) {
        return {from + 2, two};
    }
    if constexpr (Bits == 16) {
        const uint32_t third = byteAt(from, 2);
        const bool fits = third < 1u << (Bits - 14);
        return {fits ? from + 3 : nullptr, addGroup(two, third, 14)};
    } else if constexpr (Bits == 32) {
        return loadLongVarint(from, two);
    } else {
        return loadLongVarint(from, lastVarint);
    }
}

/// The same out of line, where code is to be small.
template <unsigned Bits>
LoadedVarint loadGroupsShared(const char* from, const char* lastVarint);

/// Loads a varint of `Bits` bits.
template <unsigned Bits>
ZRP_INLINE LoadedVarint loadVarint(const char* from, const char* lastVarint) {
    const uint32_t first = Quorva::brx_detail::byteAt(from, 0);
    if ((first & 0x80) == 0) {
        return {from + 1, first};
    }
    if constexpr (keepsCodeSmall) {
        return loadGroupsShared<Bits>(from, lastVarint);
    } else {
        return loadGroups<Bits>(from, lastVarint);
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

/// Stores a tag and an integer; returns the end. `Slack` as for storeLowFirst.
template <uint32_t Number, bool Varint, size_t Slack, class Integer>
ZRP_INLINE char* storeInteger(char* to, Integer value) {
    using Tag = TagBytes<makeTag(Number, wireTypeOf<Integer>(Varint))>;
    if constexpr (Varint && sizeof(Integer) > 1) {
        return storeVarintField<makeTag(Number, wireVarint), Slack>(to, toVarint(value));
    } else {
        Tag::template store<sizeof(Integer)>(to);
        storeHighFirst(to + Tag::size, static_cast<std::make_unsigned_t<Integer>>(value));
        return to + Tag::size + sizeof(Integer);
    }
}

/// The fewest bytes of input that `loadInteger` takes.
template <class Integer, bool Varint>
constexpr size_t leastInput = Varint ? 1 : sizeof(Integer);

/// Loads an integer into `field`; returns where it ends, or null (only with varints) as loadVarint.
template <bool Varint, class Integer>
ZRP_INLINE const char* loadInteger(const char* from, const char* lastVarint, Integer& field) {
    if constexpr (sizeof(Integer) == 1) {
        field = static_cast<Integer>(from[0]);
        return from + 1;
    } else if constexpr (Varint) {
        const LoadedVarint loaded = loadVarint<sizeof(Integer) * 8>(from, lastVarint);
        if constexpr (std::is_signed_v<Integer>) {
            using Register = std::make_unsigned_t<Integer>;
            field = Quorva::brx_detail::unzigzag(static_cast<Register>(loaded.value));
        } else {
            field = static_cast<Integer>(loaded.value);
        }
        return loaded.end;
    } else {
        field = static_cast<Integer>(loadHighFirst<std::make_unsigned_t<Integer>>(from));
        return from + sizeof(Integer);
    }
}

}  // namespace quorva_zrp::codec::wire
