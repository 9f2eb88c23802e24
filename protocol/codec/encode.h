// The encoder: one pass over the fields of a type.
//
// `encodeField` is the one description of how a field travels. It is compiled twice: with rows
// known at compile time and the unchecked sink it becomes straight-line code, used for the types of
// steady traffic where the largest encoding fits; with rows as data and the checked sink it serves
// all types step by step, to the exact byte where the room ends.
#pragma once

#include "protocol/codec/field_data.h"
#include "protocol/codec/fixed_run.h"
#include "protocol/codec/hot.h"
#include "protocol/codec/sinks.h"
#include "protocol/codec/table.h"

namespace quorva_zrp::codec {

// --- One field ----------------------------------------------------------------------------------

// How the two speeds enter a nested value; below and in encode.cpp.
template <class Field, bool Varint, bool OnePiece>
int encodeStructure(Field field, const char* nested, UncheckedSink<Varint, OnePiece>& sink);
template <class Field, bool Varint, bool OnePiece>
int encodeUnion(Field field, const char* nested, long long selector,
                UncheckedSink<Varint, OnePiece>& sink);
int encodeStructure(const FieldData& field, const char* nested, CheckedSink& sink);
int encodeUnion(const FieldData& field, const char* nested, long long selector, CheckedSink& sink);

template <class Sink>
ZRP_INLINE int encodeText(const char* text, size_t capacity, Sink& sink) {
    const size_t size = strnlen(text, capacity);
    return size == capacity ? Quorva::BRX_ERR_TEXT_TOO_LONG : sink.text(text, size);
}

/// What follows the tag and the length of a delimited value; `count` is that of a byte array.
template <class Field, class Sink>
ZRP_INLINE int encodeDelimitedValue(const Field& field, const char* record, size_t count,
                                    Sink& sink) {
    const char* const from = record + field.offset();
    switch (field.kind()) {
        case Kind::text:
            return encodeText(from, field.capacity(), sink);
        case Kind::structure:
            return encodeStructure(field, from, sink);
        case Kind::selectedUnion:
            return encodeUnion(field, from, static_cast<long long>(field.governor(record)), sink);
        default:
            return sink.bytes(from, count);
    }
}

template <class Field, class Sink>
ZRP_INLINE int encodeField(const Field& field, const char* record, Sink& sink) {
    if (field.kind() == Kind::integer) {
        return sink.integer(field, record + field.offset());
    }
    uint64_t count = field.capacity();
    if (field.mayBeAbsent()) {
        count = field.governor(record);
        if (count > largestCount(field.kind(), field.capacity())) {
            return Quorva::BRX_ERR_REFER_TOO_BIG;
        }
        if (count == 0) {
            return 0;
        }
    }
    if (const int result = sink.tagOfDelimited(field); result != 0) {
        return result;
    }
    const typename Sink::Hole hole = sink.openLength();
    const int result = encodeDelimitedValue(field, record, static_cast<size_t>(count), sink);
    return result != 0 ? result : sink.closeLength(hole);
}

// --- Step by step, all types --------------------------------------------------------------------

/// Writes the fields of a structure, or the member of a union that `selector` names.
int encodeChecked(uint8_t type, const char* value, long long selector, CheckedSink& sink);

/// Where an encoding ended, and its result. Small enough to travel in registers.
struct EncodeStep {
    char* at;
    int result;
};

/// The same from straight-line code, which has made sure of the room.
EncodeStep encodeShared(uint8_t type, const char* value, long long selector, char* to, bool varint);

// --- Straight-line code, with room for the largest encoding -------------------------------------

/// Writes the field at `Index` of a type and the run that it begins, if any.
template <class Message, size_t Index, bool Varint, bool OnePiece>
ZRP_INLINE int encodeFieldAt(const char* value, UncheckedSink<Varint, OnePiece>& sink) {
    if constexpr (!Varint && run::goesOnAt<Message, Index>()) {
        return 0;
    } else if constexpr (!Varint && run::isRunFrom<Message, Index>()) {
        sink.template run<FixedRunAt<Message, Index>>(value);
        return 0;
    } else {
        return encodeField(Field<Message, Index>{}, value, sink);
    }
}

template <class Record, bool Varint, bool OnePiece, size_t... Index>
ZRP_INLINE int encodeFields(const char* record, UncheckedSink<Varint, OnePiece>& sink,
                            std::index_sequence<Index...>) {
    int result = 0;
    (void)(((result = encodeFieldAt<Record, Index>(record, sink)) == 0) && ...);
    return result;
}

template <class Union, bool Varint, bool OnePiece>
ZRP_INLINE int encodeMember(const char* value, long long selector,
                            UncheckedSink<Varint, OnePiece>& sink) {
    const auto encodeIt = [&]<size_t Index>(Field<Union, Index>) ZRP_INLINE_LAMBDA {
        return encodeFieldAt<Union, Index>(value, sink);
    };
    if constexpr (OnePiece) {
        return withHotMember<Union>(selector, encodeIt);
    } else {
        return withMember<Union>(selector, encodeIt,
                                 [] { return int{Quorva::BRX_ERR_BAD_SELECTOR}; });
    }
}

template <class Record, bool Varint>
inline EncodeStep encodeUnchecked(const char* record, char* to) {
    UncheckedSink<Varint> sink(to);
    const int result = encodeFields<Record>(record, sink, FieldIndices<Record>{});
    return {sink.at, result};
}

template <class Union, bool Varint>
EncodeStep encodeUnchecked(const char* value, long long selector, char* to) {
    UncheckedSink<Varint> sink(to);
    const int result = encodeMember<Union>(value, selector, sink);
    return {sink.at, result};
}

/// Goes on after a nested value that was written out of line.
template <class Sink>
ZRP_INLINE int goOn(Sink& sink, EncodeStep step) {
    sink.at = step.at;
    return step.result;
}

template <class Field, bool Varint, bool OnePiece>
ZRP_INLINE int encodeStructure(Field, const char* nested, UncheckedSink<Varint, OnePiece>& sink) {
    using Type = typename Field::type;
    if constexpr (Field::kind() != Kind::structure) {
        return 0;  // unreachable: encodeDelimitedValue calls this for structures only
    } else if constexpr (!isStraightInside<Type>) {
        return goOn(sink, encodeShared(typeIndex<Type>, nested, 0, sink.at, Varint));
    } else if constexpr (Field::isHot && (OnePiece || !isStraightAlone<Type>)) {
        return encodeFields<Type>(nested, sink, FieldIndices<Type>{});
    } else {
        // What is steady alone has this code anyway, hot or not.
        return goOn(sink, encodeUnchecked<Type, Varint>(nested, sink.at));
    }
}

template <class Field, bool Varint, bool OnePiece>
ZRP_INLINE int encodeUnion(Field, const char* nested, long long selector,
                           UncheckedSink<Varint, OnePiece>& sink) {
    using Type = typename Field::type;
    if constexpr (Field::kind() != Kind::selectedUnion) {
        return 0;  // unreachable: encodeDelimitedValue calls this for unions only
    } else if constexpr (!isStraightInside<Type>) {
        return goOn(sink, encodeShared(typeIndex<Type>, nested, selector, sink.at, Varint));
    } else if constexpr (Field::isHot) {
        return encodeMember<Type>(nested, selector, sink);
    } else {
        return goOn(sink, encodeUnchecked<Type, Varint>(nested, selector, sink.at));
    }
}

// --- Choosing -----------------------------------------------------------------------------------

/// The most bytes that the fields of `record` can take given what its selectors choose, which
/// optional elements there are, and the bytes behind it; arrays count as full.
uint64_t largestNow(uint8_t type, const char* record, bool varint);

/// Bytes behind a record, for types that have some.
template <class Record>
ZRP_INLINE uint64_t bytesBehind(const char* record) {
    if constexpr (Fields<Record>::hasBytesBehind) {
        return Field<Record, Fields<Record>::Rows::count - 1>::governor(record);
    } else {
        return 0;
    }
}

/// The most bytes that the fields of any record of the type take with the bytes behind this one.
template <class Record>
ZRP_INLINE uint64_t largestAlways(const char* record, bool varint) {
    constexpr uint64_t largestVarint = Fields<Record>::largestBody(true);
    constexpr uint64_t largestFixed = Fields<Record>::largestBody(false);
    return (varint ? largestVarint : largestFixed) + bytesBehind<Record>(record);
}

/// `encodeUnchecked` of one structure and flavour.
using Encoder = EncodeStep (*)(const char* record, char* to);

/// Writes the fields of a structure at the position of `buf`: by `encode` where they are sure to
/// fit, as they are when `largest` bytes do.
int encodeInto(uint8_t type, bool varint, Encoder encode, uint64_t largest, const char* record,
               BrxWriteBuf& buf);

/// Writes the fields of a structure at the position of `buf`.
template <bool Varint, class Record>
inline int encode(const Record& object, BrxWriteBuf& buf) {
    const char* const record = bytesOf(object);
    constexpr uint8_t type = typeIndex<Record>;
    if constexpr (isStraightAlone<Record>) {
        return encodeInto(type, Varint, encodeUnchecked<Record, Varint>,
                          largestAlways<Record>(record, Varint), record, buf);
    } else {
        CheckedSink sink(buf, Varint);
        return encodeChecked(type, record, 0, sink);
    }
}

/// Writes the member of a union that `selector` names at the position of `buf`. Unions travel in
/// structures, so this needs no speed.
template <bool Varint, class Union>
inline int encode(const Union& object, long long selector, BrxWriteBuf& buf) {
    CheckedSink sink(buf, Varint);
    return encodeChecked(typeIndex<Union>, bytesOf(object), selector, sink);
}

}  // namespace quorva_zrp::codec
