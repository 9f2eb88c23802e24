// The decoder. A structure is first read along its rows, each predicted to come next, as an encoder
// writes them; whatever comes otherwise is left to the loop that takes fields in any order.
#pragma once

#include "protocol/codec/sources.h"
#include "protocol/codec/table.h"

namespace quorva_zrp::codec {

/// Where a decode ended, as an offset into the input, and its result. Travels in registers.
struct DecodeStep {
    size_t offset;
    int result;
};

/// Reads `length` bytes of fields from `from` on. Ends are computed in 64 bits and wrap, so that a
/// length means the same on every platform.
template <class Record, bool Varint>
DecodeStep decodeStructure(Record& record, const Input& input, size_t from, uint64_t length);

/// Reads one field, whatever `length` says, and sets `selector` to its number.
template <class Union, bool Varint>
DecodeStep decodeUnion(Union& value, long long& selector, const Input& input, size_t from,
                       uint64_t length);

// --- Nested values ------------------------------------------------------------------------------

template <class Record, bool Varint>
inline DecodeStep decodeNested(Record& record, PredictingSource<Varint>& source, uint64_t length) {
    return decodeStructure<Record, Varint>(record, source.input(), source.offset(), length);
}

template <class Record>
inline DecodeStep decodeNested(Record& record, CheckedSource& source, uint64_t length) {
    return source.varint()
               ? decodeStructure<Record, true>(record, source.input(), source.offset(), length)
               : decodeStructure<Record, false>(record, source.input(), source.offset(), length);
}

template <class Union, bool Varint>
inline DecodeStep decodeNestedUnion(Union& value, long long& selector,
                                    PredictingSource<Varint>& source, uint64_t length) {
    return decodeUnion<Union, Varint>(value, selector, source.input(), source.offset(), length);
}

template <class Union>
inline DecodeStep decodeNestedUnion(Union& value, long long& selector, CheckedSource& source,
                                    uint64_t length) {
    return source.varint()
               ? decodeUnion<Union, true>(value, selector, source.input(), source.offset(), length)
               : decodeUnion<Union, false>(value, selector, source.input(), source.offset(),
                                           length);
}

// --- One field ----------------------------------------------------------------------------------

/// Reads the value of a field whose tag has been read.
template <class Row, class Record, class Source>
inline int decodeField(Record& record, Source& source) {
    using Type = typename Row::type;
    if constexpr (Row::kind == Kind::integer) {
        return source.integer(memberAt<Type>(record, Row::offset));
    } else if constexpr (Row::kind == Kind::text) {
        return source.text(&memberAt<char>(record, Row::offset), Row::capacity());
    } else if constexpr (Row::kind == Kind::bytes || Row::kind == Kind::trailingBytes) {
        size_t stored = 0;
        const int result =
            source.bytes(&memberAt<uint8_t>(record, Row::offset), Row::capacity(), stored);
        if constexpr (Row::isGoverned) {
            if (stored != 0) {
                Row::Governor::store(record, stored);
            }
        }
        return result;
    } else {
        uint32_t length = 0;
        if (const int result = source.length(length); result != 0) {
            return result;
        }
        [[maybe_unused]] long long selector = 1;  // what a flag becomes when its structure is met
        DecodeStep step{};
        if constexpr (Row::kind == Kind::structure) {
            step = decodeNested(memberAt<Type>(record, Row::offset), source, length);
        } else {
            selector = 0;
            step = decodeNestedUnion(memberAt<Type>(record, Row::offset), selector, source, length);
        }
        source.moveTo(step.offset);
        if constexpr (Row::isGoverned) {
            if (step.result == 0) {
                Row::Governor::store(record, static_cast<uint64_t>(selector));
            }
        }
        return step.result;
    }
}

// --- Structures ---------------------------------------------------------------------------------

/// Takes the field of `Row` if it comes next. A field that may be absent is passed over when it
/// does not; any other is a surprise then.
template <class Row, class Record, bool Varint>
inline int predictField(Record& record, PredictingSource<Varint>& source, uint32_t& seen) {
    const char* const start = source.at;
    if (!source.template acceptTag<Row>()) {
        return Row::mayBeAbsent ? 0 : surprise;
    }
    const int result = decodeField<Row>(record, source);
    if (result == surprise) {
        source.at = start;
    } else {
        seen |= Row::presenceBit;
    }
    return result;
}

template <class Record, bool Varint, size_t... Index>
inline int predictFields(Record& record, PredictingSource<Varint>& source, uint32_t& seen,
                         std::index_sequence<Index...>) {
    int result = 0;
    (void)(((result = predictField<Field<Record, Index>>(record, source, seen)) == 0) && ...);
    return result;
}

/// Reads fields in any order until `end`; `record` has its presence word set for those before.
template <class Record>
DecodeStep decodeInAnyOrder(Record& record, const Input& input, size_t from, uint64_t end,
                            bool varint) {
    CheckedSource source(input, from, varint);
    while (source.offset() < end) {
        uint32_t tag = 0;
        int result = source.tag(tag);
        if (result == 0) {
            result = withField<Record>(
                Quorva::BrxTLVUtil::getFieldId(tag),
                [&]<class Row>(Row) {
                    record.presence |= Row::presenceBit;
                    return decodeField<Row>(record, source);
                },
                [&] { return source.skip(Quorva::BrxTLVUtil::getTypeId(tag)); });
        }
        if (result != 0) {
            return {source.offset(), result};
        }
    }
    // No field of the catalogue is required, so none can be missing here.
    return {source.offset(), source.offset() > end ? int{Quorva::BRX_ERR_LENGTH_MISMATCH} : 0};
}

template <class Record, bool Varint>
DecodeStep decodeStructure(Record& record, const Input& input, size_t from, uint64_t length) {
    const uint64_t end = from + length;
    if (from > input.length || length > input.length - from) {
        record.presence = 0;
        return decodeInAnyOrder(record, input, from, end, Varint);
    }
    PredictingSource<Varint> source(input, from, static_cast<size_t>(end));
    uint32_t seen = 0;
    const int result = predictFields(record, source, seen, FieldIndices<Record>{});
    record.presence = seen;
    if (result < 0 || (result == 0 && source.offset() == end)) {
        return {source.offset(), result};
    }
    return decodeInAnyOrder(record, input, source.offset(), end, Varint);
}

// --- Unions -------------------------------------------------------------------------------------

/// Reads one tag and the value of the member it names, or steps over a value it does not.
template <class Union, class Source>
inline int decodeMember(Union& value, Source& source, uint32_t& number) {
    uint32_t tag = 0;
    if (const int result = source.tag(tag); result != 0) {
        return result;
    }
    number = Quorva::BrxTLVUtil::getFieldId(tag);
    return withField<Union>(
        number,
        [&]<class Row>(Row) {
            if (!source.template hasValue<Row>()) {
                return surprise;
            }
            return decodeField<Row>(value, source);
        },
        [&] { return source.skip(Quorva::BrxTLVUtil::getTypeId(tag)); });
}

template <class Union, bool Varint>
DecodeStep decodeUnion(Union& value, long long& selector, const Input& input, size_t from,
                       uint64_t length) {
    uint32_t number = 0;
    DecodeStep step{from, surprise};
    if (from <= input.length) {
        PredictingSource<Varint> source(input, from, input.length);
        step.result = decodeMember(value, source, number);
        step.offset = source.offset();
    }
    if (step.result == surprise) {
        CheckedSource source(input, from, Varint);
        step.result = decodeMember(value, source, number);
        step.offset = source.offset();
    }
    if (step.result == 0) {
        if (step.offset > from + length) {
            step.result = Quorva::BRX_ERR_LENGTH_MISMATCH;
        } else {
            selector = number;
        }
    }
    return step;
}

}  // namespace quorva_zrp::codec
