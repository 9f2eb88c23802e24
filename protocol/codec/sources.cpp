#include "protocol/codec/sources.h"

namespace quorva_zrp::codec {

using Quorva::brx_detail::byteAt;

const char* lastVarintAmong(const char* begin, const char* last) {
    const ptrdiff_t before = last - begin;
    for (ptrdiff_t i = 1; i <= before && i < 4; ++i) {
        if (byteAt(last - i, 0) < 0x80) {
            return last - i;
        }
    }
    // Four such bytes are the end of a text or a byte array. With its tag and its length it takes
    // nine bytes or more, and varints are in front of it.
    constexpr ptrdiff_t longest = longestVarint;
    return before >= longest ? last - (longest - 1) : begin;
}

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

// --- Fields to step over -------------------------------------------------------------------------

const char* takeTag(const char* from, const char* until, uint32_t& tag) {
    tag = 0;
    for (unsigned shift = 0; shift < 21 && from < until; shift += 7) {
        const uint32_t byte = byteAt(from++, 0);
        tag |= (byte & 0x7F) << shift;
        if (byte < 0x80) {
            return from;
        }
    }
    return nullptr;
}

namespace {

const char* skipBytes(size_t size, const char* from, const char* until) {
    return size <= static_cast<size_t>(until - from) ? from + size : nullptr;
}

}  // namespace

const char* skipChecked(uint32_t wireType, const char* from, const char* until) {
    switch (wireType) {
        case wireVarint:
            for (ptrdiff_t i = 0; i < mostForSure && from < until; ++i) {
                if (byteAt(from++, 0) < 0x80) {
                    return from;
                }
            }
            return nullptr;
        case wire1Byte:
            return skipBytes(1, from, until);
        case wire2Bytes:
            return skipBytes(2, from, until);
        case wire4Bytes:
            return skipBytes(4, from, until);
        case wire8Bytes:
            return skipBytes(8, from, until);
        case wireDelimited: {
            const char* const value = skipBytes(lengthSize, from, until);
            return value == nullptr ? nullptr
                                    : skipBytes(wire::loadHighFirst<uint32_t>(from), value, until);
        }
        default:
            return nullptr;
    }
}

// --- QuickSource --------------------------------------------------------------------------------

int QuickSource::skip(uint32_t wireType) {
    if (until - at >= mostForSure) {
        return moveTo(skipSureValue(wireType, at, until));
    }
    return moveTo(at < until ? skipChecked(wireType, at, until) : nullptr);
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
    return moveTo(remaining() >= lengthSize ? takeText(at, until, to, capacity) : nullptr);
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

// --- CheckedSource ------------------------------------------------------------------------------

int CheckedSource::integer(const FieldData& field, char* to) {
    const size_t size = field.integerSize;
    if (!varint_ || size == 1) {
        char bytes[sizeof(uint64_t)] = {};
        const int result = buf.readBytes(bytes + sizeof(bytes) - size, size);
        if (result == 0) {
            storeInteger(size, to, wire::loadHighFirst<uint64_t>(bytes));
        }
        return result;
    }
    if (size == sizeof(uint64_t)) {
        // Deliberate: of 64 bits only a signed one fails; an unsigned one then leaves what it could
        // not read to the tag behind it.
        const bool isRead = takeVarint(field, UINT64_MAX, to);
        return isRead || !field.integerIsSigned ? 0 : int{Quorva::BRX_ERR_NO_DATA};
    }
    const uint32_t allOnes = size == sizeof(uint16_t) ? UINT16_MAX : UINT32_MAX;
    return takeVarint(field, allOnes, to) ? 0 : int{Quorva::BRX_ERR_NO_DATA};
}

template <class Register>
bool CheckedSource::takeVarint(const FieldData& field, Register allOnes, char* to) {
    Register value = 0;
    const size_t taken = Quorva::brx_detail::decodeVarint(
        buf.beginPtr + buf.position, buf.length - buf.position, allOnes, value);
    buf.position += taken;
    storeInteger(field.integerSize, to, unpackSign(field, value));
    return taken != 0;
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
