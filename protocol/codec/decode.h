// The decoder.
//
// `decodeField` is the one description of how a field's value is read. It is compiled twice: with
// rows known at compile time it reads along the fields of a structure, each predicted to come next,
// as an encoder writes them; with rows as data it serves the loop that takes fields in any order,
// to which everything else is left.
#pragma once

#include "protocol/codec/field_data.h"
#include "protocol/codec/sources.h"
#include "protocol/codec/table.h"

namespace quorva_zrp::codec {

// --- One field ----------------------------------------------------------------------------------

// How the two ways enter a nested value of `length` bytes; below and in decode.cpp.
template <class Field, bool Varint>
int decodeStructure(Field field, char* nested, PredictingSource<Varint>& source, uint64_t length);
template <class Field, bool Varint>
int decodeUnion(Field field, char* nested, long long& selector, PredictingSource<Varint>& source,
                uint64_t length);
int decodeStructure(const FieldData& field, char* nested, CheckedSource& source, uint64_t length);
int decodeUnion(const FieldData& field, char* nested, long long& selector, CheckedSource& source,
                uint64_t length);

/// Reads a length and the nested value; a union's selector, or a flag of 1, becomes the governor.
template <class Field, class Source>
ZRP_INLINE int decodeNested(const Field& field, char* record, Source& source) {
    uint32_t length = 0;
    if (const int result = source.length(length); result != 0) {
        return result;
    }
    char* const nested = record + field.offset();
    long long governor = 1;
    int result = 0;
    if (field.kind() == Kind::structure) {
        result = decodeStructure(field, nested, source, length);
    } else {
        governor = 0;
        result = decodeUnion(field, nested, governor, source, length);
    }
    if (result == 0 && field.isGoverned()) {
        field.setGovernor(record, static_cast<uint64_t>(governor));
    }
    return result;
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
            return field.withIntegerType([&]<class Integer>(Integer) ZRP_INLINE_LAMBDA {
                return source.template integer<Integer>(record + field.offset());
            });
        case Kind::text:
            return source.text(record + field.offset(), field.capacity());
        case Kind::bytes:
        case Kind::trailingBytes:
            return decodeBytes(field, record, source);
        default:
            return decodeNested(field, record, source);
    }
}

// --- Any order, as data -------------------------------------------------------------------------

/// Reads fields until `end` bytes are consumed; presence bits are added to those there are.
int decodeInAnyOrder(uint8_t type, char* record, CheckedSource& source, uint64_t end);

/// Reads one field of a union; `selector` becomes its number unless it goes past `end`.
int decodeMember(uint8_t type, char* value, long long& selector, CheckedSource& source,
                 uint64_t end);

// --- In order, predicted ------------------------------------------------------------------------

/// Where a decode ended and its result. Small enough to travel in registers.
struct DecodeStep {
    const char* at;
    int result;
};

/// The two slow ends of the templates below, compiled once.
DecodeStep finishStructure(uint8_t type, char* record, const Input& input, const char* at,
                           uint64_t end, bool varint);
DecodeStep finishUnion(uint8_t type, char* value, long long& selector, const Input& input,
                       const char* at, uint64_t end, bool varint);

/// Goes on after a value that was read out of line.
template <bool Varint>
ZRP_INLINE int goOn(PredictingSource<Varint>& source, DecodeStep step) {
    source.at = step.at;
    return step.result;
}

/// Takes `field` if it comes next. A field that may be absent is passed over when it does not; any
/// other is a surprise then.
template <class Field, bool Varint>
ZRP_INLINE int predictField(Field field, char* record, PredictingSource<Varint>& source,
                            uint32_t& seen) {
    const char* const start = source.at;
    if (!source.template acceptTag<Field>()) {
        return Field::mayBeAbsent() ? 0 : surprise;
    }
    const int result = decodeField(field, record, source);
    if (result == surprise) {
        source.at = start;
    } else {
        seen |= Field::presenceBit;
    }
    return result;
}

template <class Record, bool Varint, size_t... Index>
ZRP_INLINE int predictFields(char* record, PredictingSource<Varint>& source, uint32_t& seen,
                             std::index_sequence<Index...>) {
    int result = 0;
    (void)(((result = predictField(Field<Record, Index>{}, record, source, seen)) == 0) && ...);
    return result;
}

/// Reads `length` bytes of fields through `source`. Ends are computed in 64 bits and wrap, so that
/// a length means the same on every platform.
template <class Record, bool Varint>
ZRP_INLINE int decodeFields(char* record, PredictingSource<Varint>& source, uint64_t length) {
    const Input& input = source.input();
    char* const presence = record + offsetof(Record, presence);
    if (length > static_cast<size_t>(input.end - source.at)) {
        store(presence, uint32_t{0});
        const uint64_t end = input.offsetOf(source.at) + length;
        return goOn(source,
                    finishStructure(typeIndex<Record>, record, input, source.at, end, Varint));
    }
    const char* const until = source.at + length;
    const char* const outer = source.narrow(until);
    uint32_t seen = 0;
    const int result = predictFields<Record>(record, source, seen, FieldIndices<Record>{});
    source.widen(outer);
    store(presence, seen);
    if (result < 0 || (result == 0 && source.at == until)) {
        return result;
    }
    return goOn(source, finishStructure(typeIndex<Record>, record, input, source.at,
                                        input.offsetOf(until), Varint));
}

/// Reads one field through `source`, whatever `length` says, and sets `selector` to its number.
template <class Union, bool Varint>
ZRP_INLINE int decodeMember(char* value, long long& selector, PredictingSource<Varint>& source,
                            uint64_t length) {
    const Input& input = source.input();
    const char* const start = source.at;
    if (length <= static_cast<size_t>(input.end - start)) {
        const char* const outer = source.narrow(input.end);
        uint32_t tag = 0;
        int result = source.tag(tag);
        if (result == 0) {
            result = withField<Union>(
                Quorva::BrxTLVUtil::getFieldId(tag),
                [&]<class Member>(Member member) ZRP_INLINE_LAMBDA {
                    return source.template hasValue<Member>() ? decodeField(member, value, source)
                                                              : surprise;
                },
                [] { return surprise; });
        }
        source.widen(outer);
        if (result == 0 && static_cast<size_t>(source.at - start) <= length) {
            selector = Quorva::BrxTLVUtil::getFieldId(tag);
            return 0;
        }
        if (result < 0) {
            return result;
        }
    }
    // Past its end a union has its own result: reading it again tells.
    return goOn(source, finishUnion(typeIndex<Union>, value, selector, input, start,
                                    input.offsetOf(start) + length, Varint));
}

/// The same out of line.
template <class Record, bool Varint>
DecodeStep decode(char* record, const Input& input, const char* at, uint64_t length) {
    PredictingSource<Varint> source(input, at, input.end);
    const int result = decodeFields<Record>(record, source, length);
    return {source.at, result};
}

template <class Union, bool Varint>
DecodeStep decode(char* value, long long& selector, const Input& input, const char* at,
                  uint64_t length) {
    PredictingSource<Varint> source(input, at, input.end);
    const int result = decodeMember<Union>(value, selector, source, length);
    return {source.at, result};
}

template <class Field, bool Varint>
ZRP_INLINE int decodeStructure(Field, char* nested, PredictingSource<Varint>& source,
                               uint64_t length) {
    using Type = typename Field::type;
    if constexpr (Field::kind() != Kind::structure) {
        return 0;
    } else if constexpr (Field::isHot) {
        return decodeFields<Type>(nested, source, length);
    } else {
        return goOn(source, decode<Type, Varint>(nested, source.input(), source.at, length));
    }
}

template <class Field, bool Varint>
ZRP_INLINE int decodeUnion(Field, char* nested, long long& selector,
                           PredictingSource<Varint>& source, uint64_t length) {
    using Type = typename Field::type;
    if constexpr (Field::kind() != Kind::selectedUnion) {
        return 0;
    } else if constexpr (Field::isHot) {
        return decodeMember<Type>(nested, selector, source, length);
    } else {
        return goOn(source,
                    decode<Type, Varint>(nested, selector, source.input(), source.at, length));
    }
}

// --- From a buffer ------------------------------------------------------------------------------

/// Reads `length` bytes of fields from the position of `buf` on.
template <class Record, bool Varint>
inline int decodeFrom(Record& object, BrxReadBuf& buf, uint64_t length) {
    if (buf.position > buf.length) {
        // A broken buffer: the first read reports it.
        CheckedSource source(buf, Varint);
        object.presence = 0;
        return decodeInAnyOrder(typeIndex<Record>, bytesOf(object), source, buf.position + length);
    }
    const Input input(buf.beginPtr, buf.length, buf.position, length);
    const DecodeStep step =
        decode<Record, Varint>(bytesOf(object), input, buf.beginPtr + buf.position, length);
    buf.position = input.offsetOf(step.at);
    return step.result;
}

/// Reads one field of a union from the position of `buf` on.
template <class Union, bool Varint>
inline int decodeFrom(Union& object, long long& selector, BrxReadBuf& buf, uint64_t length) {
    if (buf.position > buf.length) {
        CheckedSource source(buf, Varint);
        return decodeMember(typeIndex<Union>, bytesOf(object), selector, source,
                            buf.position + length);
    }
    const Input input(buf.beginPtr, buf.length, buf.position, length);
    const DecodeStep step = decode<Union, Varint>(bytesOf(object), selector, input,
                                                  buf.beginPtr + buf.position, length);
    buf.position = input.offsetOf(step.at);
    return step.result;
}

}  // namespace quorva_zrp::codec
