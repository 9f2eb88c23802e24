#include "protocol/codec/sources.h"

namespace quorva_zrp::codec {

// --- Delimited values that are expected ---------------------------------------------------------

const char* takeText(const char* from, const char* inputEnd, char* to, size_t capacity) {
    uint32_t size = 0;
    Quorva::brx_detail::loadBigEndian(from, size);
    from += lengthSize;
    if (size >= capacity || size > static_cast<size_t>(inputEnd - from)) {
        return nullptr;
    }
    memcpy(to, from, size);
    to[size] = '\0';
    return from + size;
}

const char* takeBytes(const char* from, const char* inputEnd, char* to, size_t capacity) {
    uint32_t size = 0;
    Quorva::brx_detail::loadBigEndian(from, size);
    from += lengthSize;
    if (size == 0 || size > capacity || size > static_cast<size_t>(inputEnd - from)) {
        return nullptr;
    }
    memcpy(to, from, size);
    return from + size;
}

// --- CheckedSource ------------------------------------------------------------------------------

int CheckedSource::read(uint16_t& value) {
    return varint_ ? buf_.readVarUInt16(value) : buf_.readUInt16(value);
}

int CheckedSource::read(uint32_t& value) {
    return varint_ ? buf_.readVarUInt32(value) : buf_.readUInt32(value);
}

int CheckedSource::read(uint64_t& value) {
    return varint_ ? buf_.readVarUInt64(value) : buf_.readUInt64(value);
}

int CheckedSource::read(int32_t& value) {
    return varint_ ? buf_.readVarInt32(value) : buf_.readInt32(value);
}

int CheckedSource::read(int64_t& value) {
    return varint_ ? buf_.readVarInt64(value) : buf_.readInt64(value);
}

int CheckedSource::text(char* to, size_t capacity) {
    uint32_t size = 0;
    if (const int result = length(size); result != 0) {
        return result;
    }
    if (size >= capacity) {
        return Quorva::BRX_ERR_TEXT_TOO_LONG;
    }
    if (const int result = buf_.readBytes(to, size); result != 0) {
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
    const size_t remaining = buf_.length - buf_.position;
    const size_t there = wanted < remaining ? wanted : remaining;
    (void)buf_.readBytes(to, there);  // cannot fail: it is there
    if (there < wanted) {
        return Quorva::BRX_ERR_NO_DATA;
    }
    stored = size <= capacity ? size : 0;
    return 0;
}

}  // namespace quorva_zrp::codec
