#include "tests/oracle/oracle.h"
#include "tests/oracle/record.h"

namespace zrp_oracle {

namespace {

/// 0, -1, 1, -2, 2 become 0, 1, 2, 3, 4.
uint64_t zigzag(int64_t value) {
    if (value >= 0) {
        return static_cast<uint64_t>(value) * 2;
    }
    return static_cast<uint64_t>(-(value + 1)) * 2 + 1;
}

int packInteger(const Field& field, const void* record, OutputCursor& out, bool varint) {
    const size_t width = integerWidth(field.kind);
    if (!varint || width == 1) {
        return out.putBigEndian(bitsOf(field, record), width);
    }
    return out.putVarint(isSigned(field.kind) ? zigzag(signedValueOf(field, record))
                                              : bitsOf(field, record));
}

int packText(const Field& field, const void* record, OutputCursor& out) {
    const size_t length = textLength(field, record);
    if (length == field.size) {
        return textTooLong;
    }
    return out.putRun(fieldIn(field, record), length);
}

int packBytes(const Field& field, const void* record, OutputCursor& out) {
    const char* elements = fieldIn(field, record);
    const uint64_t count = elementCount(field, record);
    for (uint64_t i = 0; i < count; ++i) {
        const int result = out.putByte(static_cast<uint8_t>(elements[i]));
        if (result != 0) {
            return result;
        }
    }
    return 0;
}

int packContent(const Field& field, const void* record, OutputCursor& out, bool varint) {
    switch (field.kind) {
        case Kind::text:
            return packText(field, record, out);
        case Kind::bytes:
            return packBytes(field, record, out);
        case Kind::structure:
            return packFields(*field.type, fieldIn(field, record), 0, out, varint);
        default:
            return packFields(*field.type, fieldIn(field, record), selectorOf(field, record), out,
                              varint);
    }
}

int packDelimited(const Field& field, const void* record, OutputCursor& out, bool varint) {
    const size_t lengthPlace = out.used;
    // A hole that does not fit is left out; writing the length into it then fails at the end.
    (void)out.skip(4);
    const size_t start = out.used;
    const int result = packContent(field, record, out, varint);
    if (result != 0) {
        return result;
    }
    return out.putLengthAt(lengthPlace, out.used - start);
}

int packField(const Field& field, const void* record, OutputCursor& out, bool varint) {
    const unsigned typeId = typeIdOf(field.kind, varint);
    const int result = out.putVarint(uint64_t{field.number} * 16 + typeId);
    if (result != 0) {
        return result;
    }
    return typeId == delimitedTypeId ? packDelimited(field, record, out, varint)
                                     : packInteger(field, record, out, varint);
}

}  // namespace

int packFields(const Type& type, const void* record, long long selector, OutputCursor& out,
               bool varint) {
    if (type.isUnion) {
        const Field* member = fieldNumbered(type, selector);
        return member != nullptr ? packField(*member, record, out, varint) : badSelector;
    }
    for (const Field& field : type.fields) {
        if (isLeftOut(field, record)) {
            continue;
        }
        const int result = packField(field, record, out, varint);
        if (result != 0) {
            return result;
        }
        if (exceedsBound(field, record)) {
            return referTooBig;
        }
    }
    return 0;
}

int pack(const Type& type, const void* record, long long selector, char* buffer, size_t size,
         size_t* used, bool varint) {
    if (buffer == nullptr || size == 0) {
        return nullArgument;
    }
    OutputCursor out(buffer, size);
    (void)out.putByte(varint ? varintMagic : fixedMagic);
    const size_t lengthPlace = out.used;
    (void)out.skip(4);
    const int result = packFields(type, record, selector, out, varint);
    if (used != nullptr) {
        *used = out.used;
    }
    (void)out.putLengthAt(lengthPlace, out.used);
    return result;
}

}  // namespace zrp_oracle
