// The decoder.
//
// `decodeField` is the one description of how a field's value is read. It is compiled twice: with
// rows known at compile time, for the types of steady traffic, it reads what encoders write, each
// field predicted to come behind the one before; with rows as data it serves the loop that takes
// the fields of all types and all that is broken.
#pragma once

#include <algorithm>

#include "protocol/codec/field_data.h"
#include "protocol/codec/fixed_run.h"
#include "protocol/codec/sources.h"
#include "protocol/codec/table.h"

namespace quorva_zrp::codec {

// --- One field ----------------------------------------------------------------------------------

// How the ways of reading enter a nested value of `length` bytes; below and in decode.cpp.
template <class Field, bool Varint, bool Inlining>
int decodeNested(Field field, char* record, PredictingSource<Varint, Inlining>& source,
                 uint32_t length);
int decodeNested(const FieldData& field, char* record, QuickSource& source, uint32_t length);
int decodeNested(const FieldData& field, char* record, CheckedSource& source, uint32_t length);

/// Sets the governor of a nested value that was read: a union's selector, or a flag of 1.
template <class Field>
ZRP_INLINE void governNested(const Field& field, char* record, uint32_t selector) {
    if (field.isGoverned()) {
        field.setGovernor(record, field.kind() == Kind::selectedUnion ? selector : 1);
    }
}

/// Reads a byte array; where all of it was stored its count becomes the governor.
template <class Field, class Source>
ZRP_INLINE int decodeBytes(const Field& field, char* record, Source& source) {
    size_t stored = 0;
    const int result = source.bytes(record + field.offset(), field.capacity(), stored);
    if (stored != 0 && field.isGoverned()) {
        field.setGovernor(record, stored);
    }
    return result;
}

/// Reads the value of a field whose tag has been read.
template <class Field, class Source>
ZRP_INLINE int decodeField(const Field& field, char* record, Source& source) {
    switch (field.kind()) {
        case Kind::integer:
            return source.integer(field, record + field.offset());
        case Kind::text:
            return source.text(record + field.offset(), field.capacity());
        case Kind::bytes:
        case Kind::trailingBytes:
            return decodeBytes(field, record, source);
        default: {
            uint32_t length = 0;
            const int result = source.length(length);
            return result != 0 ? result : decodeNested(field, record, source, length);
        }
    }
}

// --- Any order, as data, all types --------------------------------------------------------------

/// Where a decode ended and its result. Small enough to travel in registers.
struct DecodeStep {
    const char* at;
    int result;
    uint32_t number;  ///< of the field that a union's bytes had; of a structure's, some number
};

/// How fields are read as data.
enum class Care : uint8_t {
    quick,    ///< quickly, and step by step where that does not do
    certain,  ///< quickly, and given up as a surprise where that does not do
    exact,    ///< step by step: prediction has read it before, so that reading it quickly, too, and
              ///< again where that does not do, would be once too often
};

/// What is read, in one register.
struct Reading {
    uint8_t type;
    Care care;
    bool varint;
};

/// Reads the fields of a structure, or one field of a union, of `length` bytes from `at` on, where
/// `room` bytes may be read. `lastVarint` is what the function of that name says. These parameters
/// all travel in registers, which an Input would not.
DecodeStep decodeShared(Reading reading, char* value, const char* at, size_t room,
                        const char* lastVarint, uint64_t length);

/// The same for `length` bytes from the position of `buf` on; the number of a union's field becomes
/// `*selector`, which is null for structures.
int decodeShared(Reading reading, char* value, long long* selector, BrxReadBuf& buf,
                 uint64_t length);

/// Reads a nested value as data, from `at` to the byte at `last`.
DecodeStep decodeApart(Reading reading, char* nested, const char* at, const char* last,
                       const char* lastVarint);

/// How the operations of a type read as data: after a prediction where they begin with one.
template <class Message>
constexpr Care careFor = isStraightAlone<Message> ? Care::exact : Care::quick;

// --- Predicted ----------------------------------------------------------------------------------
// What encoders write, in whatever order and with unknown fields between. Where anything else comes
// this gives up, at all levels, and the whole message is read again as data, from its start: that
// stores the same once more, goes on, and knows the result. So there is no account of failures
// here, which would cost code at every field, and reading twice is all that a failure costs.

/// Instead of the number of what was read: gave up.
constexpr uint32_t lost = UINT32_MAX;

/// Whether a nested structure is one run that is taken whole where it comes in order.
template <class Field, bool Varint, bool Inlining>
constexpr bool isTriedWhole() {
    return !Varint && Inlining && run::isHotStructure<Field>();
}

/// Takes `field` if it comes next.
template <class Field, bool Varint, bool Inlining>
ZRP_INLINE int takeField(Field field, char* record, PredictingSource<Varint, Inlining>& source) {
    if constexpr (isTriedWhole<Field, Varint, Inlining>()) {
        if (source.template acceptRun<FixedRun<noChoice, Field>, false>(record)) {
            return 0;
        }
    }
    return source.template acceptTag<Field>() ? decodeField(field, record, source) : int{otherTag};
}

// --- Structures: in any order

/// Takes the row at `Index`, if there is one and it comes next, and adds it to the presence bits
/// `seen`; one that may be absent is passed over when another one comes.
template <class Record, size_t Index, bool Varint, bool Inlining>
ZRP_INLINE int takeRow(char* record, PredictingSource<Varint, Inlining>& source, uint32_t& seen) {
    if constexpr (Index < Fields<Record>::Rows::count) {
        using Row = Field<Record, Index>;
        const int result = takeField(Row{}, record, source);
        if (Row::mayBeAbsent() && result == otherTag) {
            return 0;
        }
        if (result == 0) {
            seen |= Row::presenceBit;
        }
        return result;
    } else {
        return 0;
    }
}

/// The end of the field at `at`, whichever it is; null where that is not for certain.
const char* skipField(const char* at, const char* until);

/// Whether a row is not among the presence bits `seen` yet; from now on it is. A row that was found
/// but could not be taken is found again, and then given up.
ZRP_INLINE bool isNew(uint32_t row, uint32_t& seen) {
    const uint32_t bit = uint32_t{1} << row;
    const bool is = (seen & bit) == 0;
    seen |= bit;
    return is;
}

/// Reads the fields of a structure from `at` to the byte at `last`; returns whether that was
/// possible. Along the rows each is expected right behind the one before; where another one comes,
/// a switch goes to its row. That one piece of code serves every order is why this is a loop around
/// a switch whose cases fall into each other.
template <class Record, bool Varint>
ZRP_APART bool decodeAnyOrder(const char* at, const char* last, const char* lastVarint,
                              char* record, uint32_t seen) {
    constexpr uint32_t count = Fields<Record>::Rows::count;
    static_assert(count <= mostRows, "extend ZRP_FOR_ROWS");
    static_assert(Field<Record, count - 1>::tag(Varint) < 1u << 14,
                  "numberAhead tells all tags of a structure");
    PredictingSource<Varint, isStraightAlone<Record>> source(at, last, lastVarint);
    uint32_t row = 0;
    goto firstRow;  // the switch would take as long as a field
    for (;;) {      // unreachable: from above; each turn but the first begins here
        switch (row) {
#define ZRP_CASE(Index)                                                                     \
    case Index:                                                                             \
        if (const int result = takeRow<Record, Index>(record, source, seen); result != 0) { \
            if (result != otherTag) {                                                       \
                return false;                                                               \
            }                                                                               \
            break;                                                                          \
        }                                                                                   \
        [[fallthrough]];
        firstRow:
            ZRP_FOR_ROWS(ZRP_CASE)
#undef ZRP_CASE
            // unreachable: as a case; the last row falls into it
            default:
                // Here and below: most come to this end, and pass one compare less to it.
                if (source.at == source.until()) {
                    store(record + offsetof(Record, presence), seen);
                    return true;
                }
        }
        for (;;) {
            if (source.at >= source.until()) {
                store(record + offsetof(Record, presence), seen);
                return source.at == source.until();
            }
            row = Fields<Record>::Rows::indexOf(source.numberAhead());
            if (row < count) {
                break;
            }
            source.at = skipField(source.at, source.until());
            if (source.at == nullptr) {
                return false;
            }
        }
        if (!isNew(row, seen)) {
            return false;
        }
    }
}

// --- Structures: in order, fastest

/// How many fields at the beginning of a structure are read in one go.
template <class Record, bool Varint>
constexpr size_t runLength() {
    constexpr size_t leading = run::lengthFrom<Record, 0>();
    return !Varint && leading > 1 ? leading : 0;
}

template <class Record, bool Varint, bool Inlining>
ZRP_INLINE bool acceptBeginning(char* record, PredictingSource<Varint, Inlining>& source) {
    constexpr size_t run = runLength<Record, Varint>();
    if constexpr (run != 0) {
        constexpr bool isAll = run == Fields<Record>::Rows::count;
        return source.template acceptRun<FixedRunAt<Record, 0>, isAll>(record);
    } else {
        return true;
    }
}

/// Reads the fields of a structure up to the end of `source`: first along the rows alone, which
/// keeps no account of what was read, then in any order.
template <class Record, bool Varint, bool Inlining, size_t... Index>
ZRP_INLINE bool decodeInOrder(char* record, PredictingSource<Varint, Inlining>& source,
                              std::index_sequence<Index...>) {
    constexpr size_t run = runLength<Record, Varint>();
    int result = otherTag;
    uint32_t seen = 0;
    if (acceptBeginning<Record>(record, source)) {
        result = 0;
        seen = (uint32_t{1} << run) - 1;
        (void)((Index < run || (result = takeRow<Record, Index>(record, source, seen)) == 0) &&
               ...);
    }
    if (result == 0 && (run == sizeof...(Index) || source.at == source.until())) {
        store(record + offsetof(Record, presence), seen);
        return true;
    }
    if (result == surprise) {
        return false;
    }
    const char* const from = source.at;
    source.at = source.until();
    return decodeAnyOrder<Record, Varint>(from, source.last(), source.lastVarint(), record, seen);
}

/// The same out of line.
template <class Record, bool Varint>
bool decodeInOrder(const char* at, const char* last, const char* lastVarint, char* record) {
    PredictingSource<Varint, true> source(at, last, lastVarint);
    return decodeInOrder<Record>(record, source, FieldIndices<Record>{});
}

/// Reads the fields of a structure from `at` to the byte at `last`; returns whether that was
/// possible. `IsInOrder` says whether they may be.
template <class Record, bool Varint, bool IsInOrder = true>
ZRP_INLINE bool decode(const char* at, const char* last, const char* lastVarint, char* record) {
    if constexpr (IsInOrder && runLength<Record, Varint>() != 0) {
        return decodeInOrder<Record, Varint>(at, last, lastVarint, record);
    } else {
        return decodeAnyOrder<Record, Varint>(at, last, lastVarint, record, 0);
    }
}

// --- Unions

/// Members by their tags as the bytes they travel as, for those that take as many as the longest
/// one; the others have none here and are read as data.
template <bool Varint>
struct TagLabels {
    template <class Union, size_t... Index>
    static constexpr size_t longest(std::index_sequence<Index...>) {
        return std::max({wire::TagBytes<Field<Union, Index>::tag(Varint)>::size...});
    }

    template <class Union>
    static constexpr size_t size = longest<Union>(FieldIndices<Union>{});

    template <class Union, size_t Index>
    static constexpr uint32_t at() {
        if constexpr (Index < Fields<Union>::Rows::count) {
            using Tag = wire::TagBytes<Field<Union, Index>::tag(Varint)>;
            if constexpr (Tag::size == size<Union>) {
                return Tag::packed();
            }
        }
        return UINT32_MAX - Index;
    }
};

/// Instead of the number of a union's field: it has no straight-line code.
constexpr uint32_t apart = UINT32_MAX - 1;

/// Reads the one field of a union, up to the end of `source`. Returns its number or `lost`. The tag
/// tells which it is: the selector may come behind the union.
template <class Union, bool Varint, bool Inlining>
ZRP_INLINE uint32_t decodeMember(char* value, PredictingSource<Varint, Inlining>& source) {
    using Labels = TagLabels<Varint>;
    constexpr size_t tagSize = Labels::template size<Union>;
    uint32_t number = apart;
    if (source.template holdsTag<tagSize>()) {
        number = withLabel<Union, Labels>(
            source.template tagAhead<tagSize>(),
            [&]<class Member>(Member member) ZRP_INLINE_LAMBDA {
                if constexpr (Member::isNested && !isStraightInside<typename Member::type>) {
                    return apart;
                } else {
                    const bool isRead =
                        takeField(member, value, source) == 0 && source.at == source.until();
                    return isRead ? Member::number() : lost;
                }
            },
            [] { return apart; });
    }
    if (number != apart) {
        return number;
    }
    const DecodeStep step = decodeApart({typeIndex<Union>, Care::certain, Varint}, value, source.at,
                                        source.last(), source.lastVarint());
    source.at = step.at;
    return step.result == 0 ? step.number : lost;
}

/// Where the field of a union ended, and its number or `lost`. Travels in registers.
struct DecodedMember {
    const char* at;
    uint32_t number;
};

/// The same out of line, from `at` to the byte at `last`.
template <class Union, bool Varint>
DecodedMember decodeMember(const char* at, const char* last, const char* lastVarint, char* value) {
    PredictingSource<Varint, true> source(at, last, lastVarint);
    const uint32_t number = decodeMember<Union>(value, source);
    return {source.at, number};
}

// --- Nested values

/// Reads a nested value up to the byte at `last`. Returns the number of a union's field, 1 for a
/// structure, or `lost`.
template <class Field, bool Varint, bool Inlining>
ZRP_INLINE uint32_t decodeNestedTo(const char* last, char* nested,
                                   PredictingSource<Varint, Inlining>& source) {
    using Type = typename Field::type;
    constexpr bool isUnion = Field::kind() == Kind::selectedUnion;
    // What has code of its own anyway has the least to gain. A run that was tried whole and did not
    // match is not in order.
    constexpr bool isInOrder = !isTriedWhole<Field, Varint, Inlining>();
    constexpr bool isInlined = Field::isHot && Inlining && isInOrder && !isStraightAlone<Type>;
    if constexpr (!isStraightInside<Type>) {
        const DecodeStep step = decodeApart({typeIndex<Type>, Care::certain, Varint}, nested,
                                            source.at, last, source.lastVarint());
        source.at = step.at;
        return step.result != 0 ? lost : isUnion ? step.number : 1;
    } else if constexpr (isInlined) {
        PredictingSource<Varint, Inlining> inside(source.at, last, source.lastVarint());
        uint32_t number = lost;
        if constexpr (isUnion) {
            number = decodeMember<Type>(nested, inside);
        } else if (decodeInOrder<Type>(nested, inside, FieldIndices<Type>{})) {
            number = 1;
        }
        source.at = inside.at;
        return number;
    } else if constexpr (isUnion) {
        const DecodedMember member =
            decodeMember<Type, Varint>(source.at, last, source.lastVarint(), nested);
        source.at = member.at;
        return member.number;
    } else {
        const bool isRead =
            decode<Type, Varint, isInOrder>(source.at, last, source.lastVarint(), nested);
        source.at = last + 1;
        return isRead ? 1 : lost;
    }
}

template <class Field, bool Varint, bool Inlining>
ZRP_INLINE int decodeNested(Field field, char* record, PredictingSource<Varint, Inlining>& source,
                            uint32_t length) {
    if constexpr (Field::isNested) {
        const size_t room = static_cast<size_t>(source.until() - source.at);
        // Members end where their unions do: that spares later compares.
        if (Field::isMember ? length != room : length > room) {
            return surprise;
        }
        const char* const last = Field::isMember ? source.last() : source.at + length - 1;
        const uint32_t number = decodeNestedTo<Field>(last, record + field.offset(), source);
        if (number == lost) {
            return surprise;
        }
        governNested(field, record, number);
        return 0;
    } else {
        return 0;  // unreachable: decodeField calls this for structures and unions only
    }
}

// --- From a buffer ------------------------------------------------------------------------------

/// Reads `length` bytes of fields from the position of `buf` on.
template <class Record, bool Varint>
inline int decodeFrom(Record& object, BrxReadBuf& buf, uint64_t length) {
    char* const record = bytesOf(object);
    if constexpr (isStraightAlone<Record>) {
        if (buf.position < buf.length && length - 1 < buf.length - buf.position) {
            const char* const from = buf.beginPtr + buf.position;
            const char* const until = from + length;
            if (decode<Record, Varint>(from, until - 1,
                                       Varint ? lastVarint(from, until - 1) : until - 1, record)) {
                buf.position += static_cast<size_t>(length);
                return 0;
            }
        }
    }
    return decodeShared({typeIndex<Record>, careFor<Record>, Varint}, record, nullptr, buf, length);
}

}  // namespace quorva_zrp::codec
