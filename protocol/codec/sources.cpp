#include "protocol/codec/sources.h"

namespace quorva_zrp::codec {

using Quorva::brx_detail::byteAt;

// --- Delimited values that are expected ---------------------------------------------------------

const char* takeText(const char* from, const char* until, char* to, size_t capacity) {
    const uint32_t size = wire::loadHighFirst<uint32_t>(from);
    from += lengthSize;
    if (size >= capacity || size > static_cast<size_t>(until - from)) {
        return nullptr;
    }
    memcpy(to, from, size);
    to[size] = '\0';
    return from + size;
}

const char* takeBytes(const char* from, const char* until, char* to, size_t capacity) {
    const uint32_t size = wire::loadHighFirst<uint32_t>(from);
    from += lengthSize;
    if (size == 0 || size > capacity || size > static_cast<size_t>(until - from)) {
        return nullptr;
    }
    memcpy(to, from, size);
    return from + size;
}

// --- QuickSource --------------------------------------------------------------------------------

int QuickSource::longTag(uint32_t& tag) {
    tag = 0;
    for (unsigned shift = 0; shift < 21 && at < until; shift += 7) {
        const uint32_t byte = byteAt(at++, 0);
        tag |= (byte & 0x7F) << shift;
        if (byte < 0x80) {
            return 0;
        }
    }
    return surprise;
}

int QuickSource::length(uint32_t& value) {
    if (remaining() < lengthSize) {
        return surprise;
    }
    value = wire::loadHighFirst<uint32_t>(at);
    at += lengthSize;
    return 0;
}

int QuickSource::text(char* to, size_t capacity) {
    const char* const end = remaining() >= lengthSize ? takeText(at, until, to, capacity) : nullptr;
    if (end == nullptr) {
        return surprise;
    }
    at = end;
    return 0;
}

int QuickSource::bytes(char* to, size_t capacity, size_t& stored) {
    const char* const end =
        remaining() >= lengthSize ? takeBytes(at, until, to, capacity) : nullptr;
    if (end == nullptr) {
        return surprise;
    }
    stored = static_cast<size_t>(end - at) - lengthSize;
    at = end;
    return 0;
}

int QuickSource::skip(uint32_t wireType) {
    size_t size = 0;
    switch (wireType) {
        case wireVarint: {
            // 9 bytes are always a value; what 10 are is for CheckedSource to say, as what bytes
            // are that end nowhere.
            constexpr size_t sureValue = longestVarint - 1;
            if (remaining() <= sureValue && (remaining() == 0 || byteAt(until - 1, 0) >= 0x80)) {
                return surprise;
            }
            for (size_t i = 0; i < sureValue; ++i) {
                if (byteAt(at++, 0) < 0x80) {
                    return 0;
                }
            }
            return surprise;
        }
        case wire1Byte:
        case wire2Bytes:
        case wire4Bytes:
        case wire8Bytes:
            size = size_t{1} << (wireType - wire1Byte);
            break;
        case wireDelimited: {
            uint32_t value = 0;
            if (const int result = length(value); result != 0) {
                return result;
            }
            size = value;
            break;
        }
        default:
            return surprise;
    }
    if (remaining() < size) {
        return surprise;
    }
    at += size;
    return 0;
}

// --- CheckedSource ------------------------------------------------------------------------------

int CheckedSource::read(uint16_t& value) {
    return varint_ ? buf.readVarUInt16(value) : buf.readUInt16(value);
}

int CheckedSource::read(uint32_t& value) {
    return varint_ ? buf.readVarUInt32(value) : buf.readUInt32(value);
}

int CheckedSource::read(uint64_t& value) {
    return varint_ ? buf.readVarUInt64(value) : buf.readUInt64(value);
}

int CheckedSource::read(int32_t& value) {
    return varint_ ? buf.readVarInt32(value) : buf.readInt32(value);
}

int CheckedSource::read(int64_t& value) {
    return varint_ ? buf.readVarInt64(value) : buf.readInt64(value);
}

int CheckedSource::integer(const FieldData& field, char* to) {
    return field.withIntegerType([&]<class Integer>(Integer value) {
        value = load<Integer>(to);
        const int result = read(value);
        store(to, value);
        return result;
    });
}

int CheckedSource::text(char* to, size_t capacity) {
    uint32_t size = 0;
    if (const int result = length(size); result != 0) {
        return result;
    }
    if (size >= capacity) {
        return Quorva::BRX_ERR_TEXT_TOO_LONG;
    }
    if (const int result = buf.readBytes(to, size); result != 0) {
        return result;
    }
    to[size] = '\0';
    return 0;
}

int CheckedSource::bytes(char* to, size_t capacity, size_t& stored) {
    uint32_t size = 0;
    if (const int result = length(size); result != 0) {
        return result;
    }
    if (size == 0) {
        return Quorva::BRX_ERR_ZERO_LENGTH;
    }
    const size_t wanted = size < capacity ? size : capacity;
    const size_t remaining = buf.length - buf.position;
    const size_t there = wanted < remaining ? wanted : remaining;
    (void)buf.readBytes(to, there);  // cannot fail: it is there
    if (there < wanted) {
        return Quorva::BRX_ERR_NO_DATA;
    }
    stored = size <= capacity ? size : 0;
    return 0;
}

}  // namespace quorva_zrp::codec
