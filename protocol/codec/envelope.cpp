#include "protocol/codec/envelope.h"

namespace quorva_zrp::codec {

int packShared(uint8_t type, const char* value, long long selector, char* buffer, size_t size,
               size_t* usedSize, bool varint) {
    if (buffer == nullptr || size == 0) {
        return Quorva::BRX_ERR_NULL_ARG;
    }
    BrxWriteBuf buf(buffer, size);
    (void)buf.writeUInt8(varint ? magicVarint : magicFixed);
    const size_t lengthAt = buf.position;
    (void)buf.reserve(lengthSize);
    CheckedSink sink(buf, varint);
    const int result = encodeChecked(type, value, selector, sink);
    if (usedSize != nullptr) {
        *usedSize = buf.position;
    }
    (void)buf.writeUInt32(static_cast<uint32_t>(buf.position), lengthAt);
    return result;
}

int packTight(uint8_t type, const char* record, char* buffer, size_t size, size_t* usedSize,
              bool varint, Encoder encode) {
    if (buffer == nullptr || size < envelopeSize ||
        size - envelopeSize < largestNow(type, record, varint)) {
        return packShared(type, record, 0, buffer, size, usedSize, varint);
    }
    return packUnchecked(buffer, usedSize, varint, encode(record, buffer + envelopeSize));
}

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
    const uint32_t declared = wire::loadHighFirst<uint32_t>(buffer + 1);
    if (size < declared) {
        return Quorva::BRX_ERR_NO_DATA;
    }
    envelope.varint = magic == magicVarint;
    envelope.bodyLength = uint64_t{declared} - envelopeSize;
    return 0;
}

namespace {

int unpackBody(Reading reading, char* value, long long* selector, BrxReadBuf buf,
               uint64_t bodyLength, size_t* usedSize) {
    buf.position = envelopeSize;
    const int result = decodeShared(reading, value, selector, buf, bodyLength);
    if (usedSize != nullptr) {
        *usedSize = buf.position;
    }
    return result;
}

}  // namespace

int unpackShared(char* value, const char* buffer, size_t size, size_t* usedSize, Unpacking how,
                 long long* selector) {
    Envelope envelope;
    if (const int result = readEnvelope(buffer, size, envelope); result != 0) {
        return result;
    }
    return unpackBody({how.type, how.care, envelope.varint}, value, selector, {buffer, size},
                      envelope.bodyLength, usedSize);
}

int unpackAgain(char* record, const char* buffer, size_t size, size_t* usedSize, size_t declared,
                Reading reading) {
    return unpackBody(reading, record, nullptr, {buffer, size}, declared - envelopeSize, usedSize);
}

}  // namespace quorva_zrp::codec
