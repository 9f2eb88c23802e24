// The command as the parts of an encoded frame state it. A frame as encoders write them, which
// states one command, is told at once, straight along; any other is read from tag to tag, as a
// decoder goes.
#pragma once

#include "protocol/codec/envelope.h"
#include "protocol/codec/table.h"
#include "protocol/fields/frames.h"
#include "protocol/quorva_zrp_validate.h"

namespace quorva_zrp::codec::commands {

/// What a message holds behind its head.
enum class Body { none, rawBytes, member };

using HeadField = Field<TZRPInFrame, 0>;
using BodyField = Field<TZRPInFrame, 1>;
using BaseField = Field<TZRPHead, 0>;
using ExtensionField = Field<TZRPHead, 1>;
constexpr size_t commandIndex = 3;
static_assert(Field<TZRPBase, commandIndex>::offset() == offsetof(TZRPBase, wCommand));
static_assert(HeadField::number() == Field<TZRPFrame, 0>::number() &&
                  BodyField::number() == Field<TZRPFrame, 1>::number(),
              "head and body have the same numbers in both frames");

// --- Any message --------------------------------------------------------------------------------

/// Compares the commands that a message states, and stores them; results as in the public header.
int readCommands(const char* buffer, size_t size, Body body, ZRPCommands& found);

// --- A message as encoders write it -------------------------------------------------------------

/// Bytes still to be read.
struct Span {
    const char* at;
    const char* end;

    ZRP_INLINE size_t size() const { return static_cast<size_t>(end - at); }
    ZRP_INLINE uint32_t byte(size_t index) const { return static_cast<uint8_t>(at[index]); }
    /// The first four bytes, the first one highest.
    ZRP_INLINE uint32_t fourBytes() const {
        uint32_t bytes = 0;
        Quorva::brx_detail::loadBigEndian(at, bytes);
        return bytes;
    }
};

// Each of these takes something off the front of `from` and says whether it was there.

/// A nested value, with its tag and length.
template <class Field>
ZRP_INLINE bool takeNested(Span& from, Span& value) {
    constexpr uint32_t tag = Field::tag(true);  // of both flavours
    static_assert(tag < 0x80, "a tag of one byte");
    if (from.size() < 1 + lengthSize || from.byte(0) != tag) {
        return false;
    }
    ++from.at;
    const uint32_t length = from.fourBytes();
    from.at += lengthSize;
    if (length > from.size()) {
        return false;
    }
    value = {from.at, from.at + length};
    from.at += length;
    return true;
}

/// A varint of at most `Bits` bits, from its group `Index` on; there is room for the longest. Not a
/// loop: most have one group.
template <size_t Bits, size_t Index = 0>
ZRP_INLINE bool takeVarint(Span& from, uint32_t& value) {
    constexpr size_t shift = 7 * Index;
    if constexpr (shift < Bits) {
        const uint32_t group = from.byte(0);
        ++from.at;
        value |= (group & 0x7F) << shift;
        if (group >= 0x80) {
            return takeVarint<Bits, Index + 1>(from, value);
        }
        return group < uint64_t{1} << (Bits - shift);
    } else {
        return false;
    }
}

/// An integer field of the base header; there is room for the largest.
template <class Field, bool Varint>
ZRP_INLINE bool takeInteger(Span& from, uint32_t& value) {
    using Integer = typename Field::type;
    constexpr uint32_t tag = Field::tag(Varint);
    constexpr size_t tagSize = varintSize(tag);
    static_assert(tagSize <= 2 && std::is_unsigned_v<Integer> && sizeof(Integer) <= 4);
    if (from.byte(0) != (tagSize == 1 ? tag : (tag & 0x7F) | 0x80) ||
        (tagSize == 2 && from.byte(1) != tag >> 7)) {
        return false;
    }
    from.at += tagSize;
    if constexpr (tag % 16 == wireVarint) {
        return takeVarint<sizeof(Integer) * 8>(from, value);
    } else {
        for (size_t i = 0; i < sizeof(Integer); ++i) {
            value = value << 8 | from.byte(i);
        }
        from.at += sizeof(Integer);
        return true;
    }
}

/// A base header with all its fields. `inputEnd` is where all input ends.
template <bool Varint, size_t... Index>
ZRP_INLINE bool takeBase(Span& from, const char* inputEnd, uint32_t& command,
                         std::index_sequence<Index...>) {
    constexpr size_t largest = Fields<TZRPBase>::largestBody(Varint);
    Span base{};
    if (!takeNested<BaseField>(from, base) || static_cast<size_t>(inputEnd - base.at) < largest) {
        return false;
    }
    uint32_t values[sizeof...(Index)]{};
    const bool taken = (takeInteger<Field<TZRPBase, Index>, Varint>(base, values[Index]) && ...);
    command = values[commandIndex];
    return taken && base.at == base.end;
}

/// A tag as three bytes, the first one highest, and a zero behind them: the size of the tags of all
/// commands but 0. That one is padded with groups of zero, which stand for the same number.
constexpr uint32_t threeBytes(uint32_t tag) {
    return ((tag & 0x7F) | 0x80) << 24 | ((tag >> 7 & 0x7F) | 0x80) << 16 | tag >> 14 << 8;
}

/// A union that holds the member of this command and nothing else.
template <class Field>
ZRP_INLINE bool takeUnion(Span& from, uint32_t command) {
    constexpr size_t tagSize = 3;
    Span value{};
    if (!takeNested<Field>(from, value) || value.size() <= tagSize) {
        return false;
    }
    const uint32_t tag = value.fourBytes() & 0xFFFFFF00;
    value.at += tagSize;
    return withField<typename Field::type>(
        command,
        [&](auto member) ZRP_INLINE_LAMBDA {
            using Member = decltype(member);
            if (tag != threeBytes(Member::tag(true))) {
                return false;
            }
            if constexpr (Member::kind() == Kind::structure) {
                return value.size() >= lengthSize && value.fourBytes() == value.size() - lengthSize;
            } else {
                return value.size() == 1;
            }
        },
        [] { return false; });
}

/// Whether the fields of a message have the layout of an encoder and state one command.
template <bool Varint>
inline bool fieldsAgree(Span fields, Body body, uint32_t& command) {
    const char* const inputEnd = fields.end;
    Span head = fields;
    if (body != Body::none && !takeNested<HeadField>(fields, head)) {
        return false;
    }
    if (!takeBase<Varint>(head, inputEnd, command, FieldIndices<TZRPBase>{}) ||
        !takeUnion<ExtensionField>(head, command) || head.size() != 0) {
        return false;
    }
    Span bytes{};
    switch (body) {
        case Body::none:
            return true;
        case Body::rawBytes:
            return fields.size() == 0 ||
                   (takeNested<BodyField>(fields, bytes) && fields.size() == 0);
        default:
            return takeUnion<BodyField>(fields, command) && fields.size() == 0;
    }
}

/// The same for a whole message; `command` is the one.
inline bool agree(const char* buffer, size_t size, Body body, uint32_t& command) {
    if (buffer == nullptr || size < envelopeSize) {
        return false;
    }
    const Span all{buffer, buffer + size};
    const uint32_t magic = all.byte(0);
    const size_t declared = Span{buffer + 1, all.end}.fourBytes();
    if (declared < envelopeSize || declared > size) {
        return false;
    }
    const Span fields{buffer + envelopeSize, buffer + declared};
    return magic == magicVarint ? fieldsAgree<true>(fields, body, command)
                                : magic == magicFixed && fieldsAgree<false>(fields, body, command);
}

}  // namespace quorva_zrp::codec::commands
