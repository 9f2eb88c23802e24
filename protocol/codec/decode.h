// The decoder.
//
// `decodeField` is the one description of how a field's value is read. It is compiled twice: with
// rows known at compile time, for the types of steady traffic, it reads along the fields of a
// structure, each predicted to come next, as an encoder writes them; with rows as data it serves
// the loop that takes the fields of all types in any order and to which everything else is left.
#pragma once

#include "protocol/codec/field_data.h"
#include "protocol/codec/sources.h"
#include "protocol/codec/table.h"

namespace quorva_zrp::codec {

// --- One field ----------------------------------------------------------------------------------

// How the ways of reading enter a nested value of `length` bytes; below and in decode.cpp.
template <class Field, bool Varint>
int decodeNested(Field field, char* record, PredictingSource<Varint>& source, uint32_t length);
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

/// What is read, in one register: a frame less for the stack to hold.
struct Reading {
    uint8_t type;
    bool varint;
    uint16_t seen;  ///< presence bits of the fields of a structure that were read before
};

/// Reads the fields of a structure from `at` on, or one field of a union, up to the offset `end` of
/// the input, which may lie behind it.
DecodeStep decodeShared(Reading reading, char* value, const Input& input, const char* at,
                        uint64_t end);

/// The same for `length` bytes from the position of `buf` on; the number of a union's field becomes
/// `*selector`, which is null for structures.
int decodeShared(uint8_t type, bool varint, char* value, long long* selector, BrxReadBuf& buf,
                 uint64_t length);

// --- In order, predicted ------------------------------------------------------------------------

/// Goes on after a value that was read out of line.
template <bool Varint>
ZRP_INLINE int goOn(PredictingSource<Varint>& source, DecodeStep step) {
    source.at = step.at;
    return step.result;
}

/// Takes `field` if it comes next.
template <class Field, bool Varint>
ZRP_INLINE int takeField(Field field, char* record, PredictingSource<Varint>& source) {
    const char* const start = source.at;
    if (!source.template acceptTag<Field>()) {
        return otherTag;
    }
    const int result = decodeField(field, record, source);
    if (result == surprise) {
        source.at = start;
    }
    return result;
}

/// Takes `field` of a structure if it comes next; one that may be absent is passed over when
/// another one does.
template <class Field, bool Varint>
ZRP_INLINE int predictField(Field field, char* record, PredictingSource<Varint>& source,
                            uint32_t& seen) {
    const int result = takeField(field, record, source);
    if (Field::mayBeAbsent() && result == otherTag) {
        return 0;
    }
    if (result <= 0) {
        seen |= Field::presenceBit;
    }
    return result;
}

/// Integers that begin a structure are read in one go where their widths are fixed, from this many
/// on.
template <class Record, bool Varint>
constexpr size_t runLength() {
    constexpr size_t leastRun = 3;
    constexpr size_t leading = leadingIntegers<Record>(FieldIndices<Record>{});
    return !Varint && leading >= leastRun ? leading : 0;
}

template <class Record, bool Varint, size_t... Index>
ZRP_INLINE int predictRun(char* record, PredictingSource<Varint>& source, uint32_t& seen,
                          std::index_sequence<Index...>) {
    if constexpr (sizeof...(Index) != 0) {
        if (!source.template acceptFixed<Field<Record, Index>...>(record)) {
            return otherTag;
        }
        seen = (Field<Record, Index>::presenceBit | ...);
    }
    return 0;
}

/// Reads along the rows, which is the order of an encoder.
template <class Record, bool Varint, size_t... Index>
ZRP_INLINE int predictFields(char* record, PredictingSource<Varint>& source, uint32_t& seen,
                             std::index_sequence<Index...>) {
    constexpr size_t run = runLength<Record, Varint>();
    int result = predictRun<Record>(record, source, seen, std::make_index_sequence<run>{});
    if (result == 0) {
        (void)((Index < run ||
                (result = predictField(Field<Record, Index>{}, record, source, seen)) == 0) &&
               ...);
    }
    return result;
}

/// Reads the fields of a structure up to `until`, which lies before the end of `source`, as far as
/// they can be predicted. A result above 0 says that there is more than the fields `seen`.
template <class Record, bool Varint>
ZRP_INLINE int predictRecord(char* record, PredictingSource<Varint>& source, const char* until,
                             uint32_t& seen) {
    const char* const outer = source.until();
    source.setUntil(until);
    const int result = predictFields<Record>(record, source, seen, FieldIndices<Record>{});
    source.setUntil(outer);
    if (result < 0 || (result == 0 && source.at == until)) {
        store(record + offsetof(Record, presence), seen);
        return result;
    }
    source.input().isSurprising = true;
    return surprise;
}

/// Reads the fields that prediction left.
template <class Record, bool Varint>
ZRP_INLINE DecodeStep finish(char* record, const PredictingSource<Varint>& source,
                             const char* until, uint32_t seen) {
    return decodeShared({typeIndex<Record>, Varint, static_cast<uint16_t>(seen)}, record,
                        source.input(), source.at, source.input().offsetOf(until));
}

/// Reads the fields of a structure in the code of the one around it.
template <class Record, bool Varint>
ZRP_INLINE int decodeInside(char* record, PredictingSource<Varint>& source, const char* until) {
    uint32_t seen = 0;
    const int result = predictRecord<Record>(record, source, until, seen);
    return result <= 0 ? result : goOn(source, finish<Record>(record, source, until, seen));
}

/// Reads the one field of a union up to `until` if it is the one that the selector expects.
template <class Union, bool Varint>
ZRP_INLINE int decodeMember(char* value, long long selector, PredictingSource<Varint>& source,
                            const char* until) {
    const char* const outer = source.until();
    source.setUntil(until);
    const int result = withMember<Union>(
        selector, [&](auto member) ZRP_INLINE_LAMBDA { return takeField(member, value, source); },
        [] { return int{otherTag}; });
    source.setUntil(outer);
    return result == 0 && source.at > until ? int{Quorva::BRX_ERR_LENGTH_MISMATCH} : result;
}

/// Reads the fields of a structure out of line. The last call is a jump, so that the stack holds
/// either this or what the loop takes.
template <class Record, bool Varint>
DecodeStep decode(char* record, const Input& input, const char* at, const char* until) {
    PredictingSource<Varint> source(input, at, until);
    uint32_t seen = 0;
    const int result = predictRecord<Record>(record, source, until, seen);
    if (result <= 0) {
        return {source.at, result, 0};
    }
    return finish<Record>(record, source, until, seen);
}

template <class Union, bool Varint>
DecodeStep decode(char* value, long long selector, const Input& input, const char* at,
                  const char* until) {
    PredictingSource<Varint> source(input, at, until);
    const int result = decodeMember<Union>(value, selector, source, until);
    return {source.at, result, 0};
}

/// Reads a nested value of straight-line code up to `until`.
template <class Field, bool Varint>
ZRP_INLINE int decodeStraight(Field field, char* nested, long long selector,
                              PredictingSource<Varint>& source, const char* until) {
    using Type = typename Field::type;
    if constexpr (field.kind() == Kind::selectedUnion) {
        if constexpr (Field::isHot) {
            return decodeMember<Type>(nested, selector, source, until);
        } else {
            return goOn(source,
                        decode<Type, Varint>(nested, selector, source.input(), source.at, until));
        }
    } else if constexpr (Field::isHot) {
        return decodeInside<Type>(nested, source, until);
    } else {
        return goOn(source, decode<Type, Varint>(nested, source.input(), source.at, until));
    }
}

template <class Field, bool Varint>
ZRP_INLINE int decodeNested(Field field, char* record, PredictingSource<Varint>& source,
                            uint32_t length) {
    if constexpr (Field::isNested) {
        using Type = typename Field::type;
        char* const nested = record + field.offset();
        if constexpr (isStraightInside<Type>) {
            // A selector is known only after all that came before was read along the rows.
            const bool isExpected =
                Field::kind() == Kind::structure || !source.input().isSurprising;
            if (isExpected && length <= static_cast<size_t>(source.until() - source.at)) {
                const long long expected = static_cast<long long>(field.governor(record));
                const int result =
                    decodeStraight(field, nested, expected, source, source.at + length);
                if (Field::kind() == Kind::structure && result == 0) {
                    governNested(field, record, 1);
                }
                // A union that is what its selector expects leaves the selector as it is.
                if (Field::kind() == Kind::structure || result <= 0) {
                    return result;
                }
            }
            source.input().isSurprising = true;
        }
        const DecodeStep step = decodeShared({typeIndex<Type>, Varint, 0}, nested, source.input(),
                                             source.at, source.input().endOf(source.at, length));
        if (step.result == 0) {
            governNested(field, record, step.number);
        }
        return goOn(source, step);
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
            const Input input(buf.beginPtr, buf.length, until, Varint);
            const DecodeStep step = decode<Record, Varint>(record, input, from, until);
            buf.position = input.offsetOf(step.at);
            return step.result;
        }
    }
    return decodeShared(typeIndex<Record>, Varint, record, nullptr, buf, length);
}

}  // namespace quorva_zrp::codec
