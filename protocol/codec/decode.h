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

/// Where a decode ended, as an offset into the input, and its result. Travels in registers.
struct DecodeStep {
    size_t offset;
    int result;
};

// --- One field ----------------------------------------------------------------------------------

// How the two ways enter a nested value; below and in decode.cpp.
template <class Field, bool Varint>
DecodeStep decodeStructure(Field field, char* nested, PredictingSource<Varint>& source,
                           uint64_t length);
template <class Field, bool Varint>
DecodeStep decodeUnion(Field field, char* nested, long long& selector,
                       PredictingSource<Varint>& source, uint64_t length);
DecodeStep decodeStructure(const FieldData& field, char* nested, CheckedSource& source,
                           uint64_t length);
DecodeStep decodeUnion(const FieldData& field, char* nested, long long& selector,
                       CheckedSource& source, uint64_t length);

/// Reads a length and the nested value; a union's selector, or a flag of 1, becomes the governor.
template <class Field, class Source>
inline int decodeNested(const Field& field, char* record, Source& source) {
    uint32_t length = 0;
    if (const int result = source.length(length); result != 0) {
        return result;
    }
    char* const nested = record + field.offset();
    DecodeStep step{};
    long long governor = 1;
    if (field.kind() == Kind::structure) {
        step = decodeStructure(field, nested, source, length);
    } else {
        governor = 0;
        step = decodeUnion(field, nested, governor, source, length);
    }
    source.moveTo(step.offset);
    if (step.result == 0 && field.isGoverned()) {
        field.setGovernor(record, static_cast<uint64_t>(governor));
    }
    return step.result;
}

/// Reads a byte array; where all of it was stored its count becomes the governor.
template <class Field, class Source>
inline int decodeBytes(const Field& field, char* record, Source& source) {
    size_t stored = 0;
    const int result = source.bytes(record + field.offset(), field.capacity(), stored);
    if (stored != 0 && field.isGoverned()) {
        field.setGovernor(record, stored);
    }
    return result;
}

/// Reads the value of a field whose tag has been read.
template <class Field, class Source>
inline int decodeField(const Field& field, char* record, Source& source) {
    switch (field.kind()) {
        case Kind::integer:
            return field.withIntegerType([&]<class Integer>(Integer) {
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

/// Reads fields until `end`; the presence word is set for those read before `from`.
DecodeStep decodeInAnyOrder(uint8_t type, char* record, const Input& input, size_t from,
                            uint64_t end, bool varint);

/// Reads one field of a union and sets `number` to its number.
DecodeStep decodeMember(uint8_t type, char* value, uint32_t& number, const Input& input,
                        size_t from, bool varint);

/// The end of a union: `selector` becomes the number of the field read unless something failed.
inline DecodeStep finishUnion(DecodeStep step, uint64_t end, uint32_t number, long long& selector) {
    if (step.result == 0) {
        if (step.offset > end) {
            step.result = Quorva::BRX_ERR_LENGTH_MISMATCH;
        } else {
            selector = number;
        }
    }
    return step;
}

// --- In order, predicted ------------------------------------------------------------------------

/// Takes `field` if it comes next. A field that may be absent is passed over when it does not; any
/// other is a surprise then.
template <class Field, bool Varint>
inline int predictField(Field field, char* record, PredictingSource<Varint>& source,
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
inline int predictFields(char* record, PredictingSource<Varint>& source, uint32_t& seen,
                         std::index_sequence<Index...>) {
    int result = 0;
    (void)(((result = predictField(Field<Record, Index>{}, record, source, seen)) == 0) && ...);
    return result;
}

/// Reads `length` bytes of fields from `from` on. Ends are computed in 64 bits and wrap, so that a
/// length means the same on every platform.
template <class Record, bool Varint>
DecodeStep decode(char* record, const Input& input, size_t from, uint64_t length) {
    const uint64_t end = from + length;
    uint32_t seen = 0;
    if (from <= input.length && length <= input.length - from) {
        PredictingSource<Varint> source(input, from, static_cast<size_t>(end));
        const int result = predictFields<Record>(record, source, seen, FieldIndices<Record>{});
        from = source.offset();
        if (result < 0 || (result == 0 && from == end)) {
            store(record + offsetof(Record, presence), seen);
            return {from, result};
        }
    }
    store(record + offsetof(Record, presence), seen);
    return decodeInAnyOrder(typeIndex<Record>, record, input, from, end, Varint);
}

/// Reads one field, whatever `length` says, and sets `selector` to its number.
template <class Union, bool Varint>
DecodeStep decode(char* value, long long& selector, const Input& input, size_t from,
                  uint64_t length) {
    const uint64_t end = from + length;
    if (from <= input.length) {
        PredictingSource<Varint> source(input, from, input.length);
        uint32_t tag = 0;
        int result = source.tag(tag);
        if (result == 0) {
            result = withField<Union>(
                Quorva::BrxTLVUtil::getFieldId(tag),
                [&]<class Member>(Member member) {
                    return source.template hasValue<Member>() ? decodeField(member, value, source)
                                                              : surprise;
                },
                [] { return surprise; });
        }
        if (result != surprise) {
            return finishUnion({source.offset(), result}, end, Quorva::BrxTLVUtil::getFieldId(tag),
                               selector);
        }
    }
    uint32_t number = 0;
    const DecodeStep step = decodeMember(typeIndex<Union>, value, number, input, from, Varint);
    return finishUnion(step, end, number, selector);
}

template <class Field, bool Varint>
inline DecodeStep decodeStructure(Field, char* nested, PredictingSource<Varint>& source,
                                  uint64_t length) {
    if constexpr (Field::kind() == Kind::structure) {
        return decode<typename Field::type, Varint>(nested, source.input(), source.offset(),
                                                    length);
    } else {
        return {};
    }
}

template <class Field, bool Varint>
inline DecodeStep decodeUnion(Field, char* nested, long long& selector,
                              PredictingSource<Varint>& source, uint64_t length) {
    if constexpr (Field::kind() == Kind::selectedUnion) {
        return decode<typename Field::type, Varint>(nested, selector, source.input(),
                                                    source.offset(), length);
    } else {
        return {};
    }
}

}  // namespace quorva_zrp::codec
