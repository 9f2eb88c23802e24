// The encoder: one pass over the rows of a type, through either sink.
#pragma once

#include "protocol/codec/sinks.h"
#include "protocol/codec/table.h"

namespace quorva_zrp::codec {

/// Writes the fields of a structure; chooses the sink.
template <class Record>
int encodeStructure(const Record& record, CheckedSink& sink);

/// Writes the one member of a union that `selector` names; chooses the sink.
template <class Union>
int encodeUnion(const Union& value, long long selector, CheckedSink& sink);

// --- One field ----------------------------------------------------------------------------------

/// Tag, a hole for the length, the value, and the length written back.
template <uint32_t Number, class Sink, class WriteValue>
inline int encodeDelimited(Sink& sink, WriteValue writeValue) {
    if (const int result = sink.template tagOfDelimited<Number>(); result != 0) {
        return result;
    }
    const typename Sink::Hole hole = sink.openLength();
    if (const int result = writeValue(); result != 0) {
        return result;
    }
    return sink.closeLength(hole);
}

template <class Sink>
inline int encodeText(const char* text, size_t capacity, Sink& sink) {
    const size_t size = strnlen(text, capacity);
    return size == capacity ? Quorva::BRX_ERR_TEXT_TOO_LONG : sink.text(text, size);
}

template <class Row, class Record, class Sink>
inline int encodeField(const Record& record, Sink& sink) {
    using Type = typename Row::type;
    if constexpr (Row::kind == Kind::integer) {
        return sink.template integer<Row::number>(loadAt<Type>(record, Row::offset));
    } else {
        size_t count = Row::capacity();
        if constexpr (Row::mayBeAbsent) {
            const auto governor = Row::Governor::load(record);
            if (governor > Row::largestCount()) {
                return Quorva::BRX_ERR_REFER_TOO_BIG;
            }
            if (governor == 0) {
                return 0;
            }
            count = governor;
        }
        return encodeDelimited<Row::number>(sink, [&] {
            const char* const from = reinterpret_cast<const char*>(&record) + Row::offset;
            if constexpr (Row::kind == Kind::text) {
                return encodeText(from, count, sink);
            } else if constexpr (Row::kind == Kind::structure) {
                return encodeStructure(memberAt<Type>(record, Row::offset), sink);
            } else if constexpr (Row::kind == Kind::selectedUnion) {
                return encodeUnion(memberAt<Type>(record, Row::offset), Row::Governor::load(record),
                                   sink);
            } else {
                return sink.bytes(from, count);
            }
        });
    }
}

// --- All fields, one member ---------------------------------------------------------------------

template <class Record, class Sink, size_t... Index>
inline int encodeFields(const Record& record, Sink& sink, std::index_sequence<Index...>) {
    int result = 0;
    (void)(((result = encodeField<Field<Record, Index>>(record, sink)) == 0) && ...);
    return result;
}

template <class Union, class Sink>
inline int encodeMember(const Union& value, long long selector, Sink& sink) {
    return withMember<Union>(
        selector, [&]<class Row>(Row) { return encodeField<Row>(value, sink); },
        [] { return int{Quorva::BRX_ERR_BAD_SELECTOR}; });
}

// --- With room for the largest encoding ---------------------------------------------------------

/// Where an unchecked encoding ended, and its result. Small enough to travel in registers.
struct EncodeStep {
    char* at;
    int result;
};

template <class Record, bool Varint>
EncodeStep encodeStructureUnchecked(const Record& record, char* to) {
    UncheckedSink<Varint> sink(to);
    const int result = encodeFields(record, sink, FieldIndices<Record>{});
    return {sink.at, result};
}

template <class Union, bool Varint>
EncodeStep encodeUnionUnchecked(const Union& value, long long selector, char* to) {
    UncheckedSink<Varint> sink(to);
    const int result = encodeMember(value, selector, sink);
    return {sink.at, result};
}

template <class Record, bool Varint>
inline int encodeStructure(const Record& record, UncheckedSink<Varint>& sink) {
    const EncodeStep step = encodeStructureUnchecked<Record, Varint>(record, sink.at);
    sink.at = step.at;
    return step.result;
}

template <class Union, bool Varint>
inline int encodeUnion(const Union& value, long long selector, UncheckedSink<Varint>& sink) {
    const EncodeStep step = encodeUnionUnchecked<Union, Varint>(value, selector, sink.at);
    sink.at = step.at;
    return step.result;
}

// --- Choosing -----------------------------------------------------------------------------------

/// Room that `record` may need beyond the largest encoding of its fields: the bytes behind it.
template <class Record, size_t... Index>
inline uint64_t bytesBehind(const Record& record, std::index_sequence<Index...>) {
    uint64_t bytes = 0;
    const auto add = [&]<class R>(R) {
        if constexpr (R::kind == Kind::trailingBytes) {
            bytes += R::Governor::load(record);
        }
    };
    (add(Field<Record, Index>{}), ...);
    (void)record;
    (void)add;
    return bytes;
}

/// Whether `size` bytes are free. Deliberate: a broken buffer counts as full, so that the
/// step-by-step path meets it and reports it.
inline bool hasRoom(const BrxWriteBuf& buf, uint64_t size) {
    return buf.position <= buf.length && buf.length - buf.position >= size;
}

/// Runs an unchecked encoding at the position of `buf`.
template <class Encode>
inline int encodeAtPosition(BrxWriteBuf& buf, Encode encode) {
    char* const from = buf.beginPtr + buf.position;
    const EncodeStep step = encode(from);
    buf.position += static_cast<size_t>(step.at - from);
    return step.result;
}

template <class Record>
int encodeStructure(const Record& record, CheckedSink& sink) {
    const uint64_t behind = bytesBehind(record, FieldIndices<Record>{});
    if (hasRoom(sink.buf(), Fields<Record>::largestBody(sink.varint()) + behind)) {
        return encodeAtPosition(sink.buf(), [&](char* to) {
            return sink.varint() ? encodeStructureUnchecked<Record, true>(record, to)
                                 : encodeStructureUnchecked<Record, false>(record, to);
        });
    }
    return encodeFields(record, sink, FieldIndices<Record>{});
}

template <class Union>
int encodeUnion(const Union& value, long long selector, CheckedSink& sink) {
    if (hasRoom(sink.buf(), Fields<Union>::largestBody(sink.varint()))) {
        return encodeAtPosition(sink.buf(), [&](char* to) {
            return sink.varint() ? encodeUnionUnchecked<Union, true>(value, selector, to)
                                 : encodeUnionUnchecked<Union, false>(value, selector, to);
        });
    }
    return encodeMember(value, selector, sink);
}

}  // namespace quorva_zrp::codec
