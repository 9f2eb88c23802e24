#include "protocol/codec/encode.h"

namespace quorva_zrp::codec {

namespace {

/// Out of line, once.
[[gnu::noinline]] int encodeFieldChecked(const FieldData& field, const char* record,
                                         CheckedSink& sink) {
    return encodeField(field, record, sink);
}

}  // namespace

int encodeChecked(uint8_t type, const char* value, long long selector, CheckedSink& sink) {
    const TableData& table = tableOf(type);
    if (table.isUnion) {
        const FieldData* const member = table.findMember(selector);
        return member != nullptr ? encodeFieldChecked(*member, value, sink)
                                 : int{Quorva::BRX_ERR_BAD_SELECTOR};
    }
    for (const FieldData& field : table) {
        if (const int result = encodeFieldChecked(field, value, sink); result != 0) {
            return result;
        }
    }
    return 0;
}

int encodeStructure(const FieldData& field, const char* nested, CheckedSink& sink) {
    return encodeChecked(field.nestedType, nested, 0, sink);
}

int encodeUnion(const FieldData& field, const char* nested, long long selector, CheckedSink& sink) {
    return encodeChecked(field.nestedType, nested, selector, sink);
}

EncodeStep encodeShared(uint8_t type, const char* value, long long selector, char* to,
                        bool varint) {
    BrxWriteBuf buf(to, tableOf(type).largest(varint));
    CheckedSink sink(buf, varint);
    const int result = encodeChecked(type, value, selector, sink);
    return {to + buf.position, result};
}

// --- Choosing -----------------------------------------------------------------------------------

namespace {

/// The most bytes that a field can take.
[[gnu::noinline]] uint64_t largestFieldNow(const FieldData& field, const char* record,
                                           bool varint) {
    if (field.mayBeAbsent() && field.governor(record) == 0) {
        return 0;  // what is absent may never have been initialised: selectors in it say nothing
    }
    const size_t tagSize = varintSize(field.tag(varint));
    const char* const at = record + field.offset();
    switch (field.kind()) {
        case Kind::integer:
            return tagSize + largestInteger(field.integerSize, varint);
        case Kind::trailingBytes:
            return tagSize + lengthSize + field.governor(record);
        case Kind::structure:
            return tagSize + lengthSize + largestNow(field.nestedType, at, varint);
        case Kind::selectedUnion: {
            const FieldData* const member =
                tableOf(field.nestedType)
                    .findMember(static_cast<long long>(field.governor(record)));
            return tagSize + lengthSize +
                   (member != nullptr ? largestFieldNow(*member, at, varint) : 0);
        }
        default:
            return tagSize + lengthSize + field.capacity();
    }
}

}  // namespace

uint64_t largestNow(uint8_t type, const char* record, bool varint) {
    const TableData& table = tableOf(type);
    if (!table.hasChoices) {
        return table.largest(varint);
    }
    uint64_t sum = 0;
    for (const FieldData& field : table) {
        sum += largestFieldNow(field, record, varint);
    }
    return sum;
}

int encodeInto(uint8_t type, bool varint, Encoder encode, uint64_t largest, const char* record,
               BrxWriteBuf& buf) {
    // Deliberate: a broken buffer counts as full, so that the step-by-step code meets it and
    // reports it.
    const size_t room = buf.position <= buf.length ? buf.length - buf.position : 0;
    if (room < largest && room < largestNow(type, record, varint)) {
        CheckedSink sink(buf, varint);
        return encodeChecked(type, record, 0, sink);
    }
    const EncodeStep step = encode(record, buf.beginPtr + buf.position);
    buf.position = static_cast<size_t>(step.at - buf.beginPtr);
    return step.result;
}

}  // namespace quorva_zrp::codec
