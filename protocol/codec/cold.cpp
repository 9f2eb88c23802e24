// The parts of the codec that need no types: steps of the checked sink and source, long varints,
// the envelope check, and the entries of the text dump.

#include <limits.h>

#include "Common/Source/Core/BRX/BrxBufUtil.h"
#include "protocol/codec/envelope.h"
#include "protocol/codec/print.h"

namespace quorva_zrp::codec {

using Quorva::BrxBufUtil;

// --- Long varints -------------------------------------------------------------------------------

namespace wire {

namespace {

template <class Unsigned>
char* storeGroups(char* to, Unsigned value) {
    while (value >= 0x80) {
        *to++ = static_cast<char>((value & 0x7F) | 0x80);
        value >>= 7;
    }
    *to++ = static_cast<char>(value);
    return to;
}

}  // namespace

char* storeLongVarint(char* to, uint32_t value) {
    return storeGroups(to, value);
}

char* storeLongVarint(char* to, uint64_t value) {
    return storeGroups(to, value);
}

}  // namespace wire

// --- CheckedSink --------------------------------------------------------------------------------

int CheckedSink::byteField(uint32_t tag, uint8_t value) {
    const int result = buf_.writeVarUInt32(tag);
    return result != 0 ? result : buf_.writeUInt8(value);
}

// One function for all widths: a value takes the same groups whatever its width.
int CheckedSink::varintField(uint32_t tag, uint64_t value) {
    const int result = buf_.writeVarUInt32(tag);
    return result != 0 ? result : buf_.writeVarUInt64(value);
}

int CheckedSink::fixedField(uint32_t tag, uint16_t value) {
    const int result = buf_.writeVarUInt32(tag);
    return result != 0 ? result : buf_.writeUInt16(value);
}

int CheckedSink::fixedField(uint32_t tag, uint32_t value) {
    const int result = buf_.writeVarUInt32(tag);
    return result != 0 ? result : buf_.writeUInt32(value);
}

int CheckedSink::fixedField(uint32_t tag, uint64_t value) {
    const int result = buf_.writeVarUInt32(tag);
    return result != 0 ? result : buf_.writeUInt64(value);
}

int CheckedSink::bytes(const char* from, size_t count) {
    const size_t room = buf_.length - buf_.position;
    const size_t fitting = count < room ? count : room;
    (void)buf_.writeBytes(from, fitting);  // cannot fail: it fits
    return fitting == count ? 0 : Quorva::BRX_ERR_NO_ROOM;
}

// --- CheckedSource ------------------------------------------------------------------------------

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

// --- Envelope -----------------------------------------------------------------------------------

int readEnvelope(const char* buffer, size_t size, Envelope& envelope) {
    if (buffer == nullptr) {
        return Quorva::BRX_ERR_NULL_ARG;
    }
    if (size < envelopeSize) {
        return Quorva::BRX_ERR_NO_DATA;
    }
    const uint8_t magic = static_cast<uint8_t>(buffer[0]);
    if (magic != magicVarint && magic != magicFixed) {
        return Quorva::BRX_ERR_BAD_MAGIC;
    }
    uint32_t declared = 0;
    Quorva::brx_detail::loadBigEndian(buffer + 1, declared);
    if (size < declared) {
        return Quorva::BRX_ERR_NO_DATA;
    }
    envelope.varint = magic == magicVarint;
    envelope.bodyLength = uint64_t{declared} - envelopeSize;
    return 0;
}

// --- Text dump ----------------------------------------------------------------------------------

Page Page::nested() const {
    return {buf, indent < 0 || indent == INT_MAX ? indent : indent + 1, separator};
}

namespace {

template <class Value>
int print(const Page& page, const char* label, const char* format, Value value) {
    return BrxBufUtil::printVariable(page.buf, page.indent, page.separator, label, format, value);
}

}  // namespace

int printInteger(const Page& page, const char* label, uint8_t value) {
    return print(page, label, "0x%02x", static_cast<unsigned>(value));
}

/// Deliberate: the byte is widened with its sign, so 0x80 prints as 0xffffff80.
int printInteger(const Page& page, const char* label, int8_t value) {
    return print(page, label, "0x%02x", static_cast<int>(value));
}

int printInteger(const Page& page, const char* label, uint16_t value) {
    return print(page, label, "%d", static_cast<int>(value));
}

int printInteger(const Page& page, const char* label, uint32_t value) {
    return print(page, label, "%u", static_cast<unsigned>(value));
}

int printInteger(const Page& page, const char* label, int32_t value) {
    return print(page, label, "%d", static_cast<int>(value));
}

// The printed text is the same where long has 32 bits; only the format differs.

int printInteger(const Page& page, const char* label, uint64_t value) {
    if constexpr (sizeof(long) == sizeof(uint64_t)) {
        return print(page, label, "%lu", static_cast<unsigned long>(value));
    } else {
        return print(page, label, "%llu", static_cast<unsigned long long>(value));
    }
}

int printInteger(const Page& page, const char* label, int64_t value) {
    if constexpr (sizeof(long) == sizeof(int64_t)) {
        return print(page, label, "%ld", static_cast<long>(value));
    } else {
        return print(page, label, "%lld", static_cast<long long>(value));
    }
}

/// The printer of texts takes a bare pointer, so a text without NUL must not reach it.
int printText(const Page& page, const char* label, const char* text, size_t capacity) {
    if (strnlen(text, capacity) == capacity) {
        return Quorva::BRX_ERR_TEXT_TOO_LONG;
    }
    return BrxBufUtil::printString(page.buf, page.indent, page.separator, label, text);
}

int printBytes(const Page& page, const char* label, const char* bytes, uint64_t count) {
    if (const int result = BrxBufUtil::printArray(page.buf, page.indent, page.separator, label,
                                                  static_cast<long long>(count));
        result != 0) {
        return result;
    }
    for (uint64_t i = 0; i < count; ++i) {
        const unsigned byte = static_cast<uint8_t>(bytes[i]);
        if (const int result = page.buf.textize(" 0x%02x", byte); result != 0) {
            return result;
        }
    }
    return page.buf.writeCharWithNull(page.separator);
}

int printHeading(const Page& page, const char* label) {
    return BrxBufUtil::printVariable(page.buf, page.indent, page.separator, label, true);
}

const char* endText(BrxWriteBuf& buf) {
    const size_t size = buf.getTotalSize();
    char* const text = buf.getBeginPtr();
    if (text == nullptr || size == 0) {
        return "";
    }
    const size_t used = buf.getUsedSize();
    text[used < size ? used : size - 1] = '\0';
    return text;
}

}  // namespace quorva_zrp::codec
