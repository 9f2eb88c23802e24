#include "protocol/codec/sources.h"

namespace quorva_zrp::codec {

int CheckedSource::integer(uint16_t& field) {
    return varint_ ? buf.readVarUInt16(field) : buf.readUInt16(field);
}

int CheckedSource::integer(uint32_t& field) {
    return varint_ ? buf.readVarUInt32(field) : buf.readUInt32(field);
}

int CheckedSource::integer(uint64_t& field) {
    return varint_ ? buf.readVarUInt64(field) : buf.readUInt64(field);
}

int CheckedSource::integer(int32_t& field) {
    return varint_ ? buf.readVarInt32(field) : buf.readInt32(field);
}

int CheckedSource::integer(int64_t& field) {
    return varint_ ? buf.readVarInt64(field) : buf.readInt64(field);
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

int CheckedSource::bytes(uint8_t* to, size_t capacity, size_t& stored) {
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
