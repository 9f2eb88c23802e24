#include "protocol/codec/decode.h"

namespace quorva_zrp::codec {

using Quorva::BrxTLVUtil;

namespace {

// --- One field in any order ---------------------------------------------------------------------

/// What has been met of a structure or a union.
struct Met {
    uint32_t seen = 0;    ///< presence bits of the fields
    uint32_t number = 0;  ///< number of the last field
};

/// Reads a tag and the value behind it.
template <class Source>
ZRP_INLINE int decodeNext(const TableData& table, char* record, Source& source, Met& met) {
    uint32_t tag = 0;
    if (const int result = source.tag(tag); result != 0) {
        return result;
    }
    met.number = BrxTLVUtil::getFieldId(tag);
    const FieldData* const field = table.find(met.number);
    if (field == nullptr) {
        return source.skip(BrxTLVUtil::getTypeId(tag));
    }
    met.seen |= field->presenceBit;
    return decodeField(*field, record, source);
}

/// The same out of line, once.
ZRP_SELDOM int decodeNextChecked(const TableData& table, char* record, CheckedSource& source,
                                 Met& met) {
    return decodeNext(table, record, source, met);
}

// --- All fields of a structure, the one field of a union ----------------------------------------

/// Step by step, `length` bytes. Ends are computed in 64 bits and wrap, so that a length means the
/// same on every platform.
int decodeFields(const TableData& table, char* record, CheckedSource& source, uint64_t length,
                 Met& met) {
    const uint64_t end = source.consumed() + length;
    while (table.isUnion || source.consumed() < end) {
        const int result = decodeNextChecked(table, record, source, met);
        if (result != 0) {
            return result;
        }
        if (table.isUnion) {
            break;
        }
    }
    // No field of the catalogue is required, so none can be missing here.
    return source.consumed() > end ? int{Quorva::BRX_ERR_LENGTH_MISMATCH} : 0;
}

/// Leaves a field to CheckedSource.
DecodeStep decodeNextChecked(const TableData& table, char* record, const Input& input,
                             const char* at, bool varint, Met& met) {
    BrxReadBuf buf(input.begin, input.size);
    buf.position = input.offsetOf(at);
    CheckedSource source(buf, varint);
    const int result = decodeNextChecked(table, record, source, met);
    return {input.begin + buf.position, result};
}

/// Up to the end of `source`, which is all there.
int decodeFields(const TableData& table, char* record, QuickSource& source, Met& met) {
    // Copies that nothing points at stay in registers.
    const TableData rows = table;
    uint32_t seen = met.seen;
    int result = 0;
    while (rows.isUnion || source.at < source.until) {
        const char* const start = source.at;
        Met now;
        result = decodeNext(rows, record, source, now);
        if (result == surprise) {
            const DecodeStep step =
                decodeNextChecked(table, record, source.input, start, source.varint, now);
            source.at = step.at;
            result = step.result;
        }
        seen |= now.seen;
        met.number = now.number;
        if (result != 0 || rows.isUnion) {
            break;
        }
    }
    met.seen = seen;
    return result == 0 && source.at > source.until ? int{Quorva::BRX_ERR_LENGTH_MISMATCH} : result;
}

/// Keeps what has been met: the presence bits of a structure, the selector of a union that was
/// read.
void keep(const TableData& table, char* value, const Met& met, int result, long long* selector) {
    if (!table.isUnion) {
        store(value + table.presenceOffset, met.seen);
    } else if (result == 0) {
        *selector = met.number;
    }
}

int decodeValue(uint8_t type, char* value, long long* selector, CheckedSource& source,
                uint64_t length) {
    const TableData& table = tableOf(type);
    Met met;
    const int result = decodeFields(table, value, source, length, met);
    keep(table, value, met, result, selector);
    return result;
}

int decodeValue(uint8_t type, char* value, long long* selector, QuickSource& source,
                uint32_t seen) {
    const TableData& table = tableOf(type);
    Met met{seen};
    const int result = decodeFields(table, value, source, met);
    keep(table, value, met, result, selector);
    return result;
}

}  // namespace

// --- Nested values ------------------------------------------------------------------------------

int decodeNested(const FieldData& field, char* record, CheckedSource& source, uint64_t length) {
    long long selector = 0;
    const int result =
        decodeValue(field.nestedType, record + field.offset(), &selector, source, length);
    if (result == 0) {
        governNested(field, record, selector);
    }
    return result;
}

int decodeNested(const FieldData& field, char* record, QuickSource& source, uint64_t length) {
    if (length > source.remaining()) {
        return surprise;
    }
    QuickSource inside = source.part(static_cast<size_t>(length));
    long long selector = 0;
    const int result = decodeValue(field.nestedType, record + field.offset(), &selector, inside, 0);
    source.at = inside.at;
    if (result == 0) {
        governNested(field, record, selector);
    }
    return result;
}

// --- From straight-line code and from buffers ---------------------------------------------------

namespace {

/// Whether the `length` bytes at `at` are there, and at least one.
bool isAllThere(const char* begin, size_t size, const char* at, uint64_t length) {
    return length - 1 < static_cast<size_t>(begin + size - at);
}

}  // namespace

DecodeStep decodeShared(uint8_t type, char* value, long long* selector, const Input& input,
                        const char* at, uint64_t length, bool varint) {
    if (isAllThere(input.begin, input.size, at, length)) {
        QuickSource source{input, at, at + length, varint};
        const int result = decodeValue(type, value, selector, source, 0);
        return {source.at, result};
    }
    BrxReadBuf buf(input.begin, input.size);
    buf.position = input.offsetOf(at);
    CheckedSource source(buf, varint);
    const int result = decodeValue(type, value, selector, source, length);
    return {input.begin + buf.position, result};
}

int decodeShared(uint8_t type, char* value, long long* selector, BrxReadBuf& buf, uint64_t length,
                 bool varint) {
    // A broken buffer is for CheckedSource to report.
    if (buf.position <= buf.length) {
        const char* const at = buf.beginPtr + buf.position;
        if (isAllThere(buf.beginPtr, buf.length, at, length)) {
            const Input input(buf.beginPtr, buf.length, at + length, varint);
            QuickSource source{input, at, at + length, varint};
            const int result = decodeValue(type, value, selector, source, 0);
            buf.position = input.offsetOf(source.at);
            return result;
        }
    }
    CheckedSource source(buf, varint);
    return decodeValue(type, value, selector, source, length);
}

DecodeStep finishShared(uint8_t type, char* record, uint32_t seen, const Input& input,
                        const char* at, const char* until, bool varint) {
    QuickSource source{input, at, until, varint};
    const int result = decodeValue(type, record, nullptr, source, seen);
    return {source.at, result};
}

}  // namespace quorva_zrp::codec
