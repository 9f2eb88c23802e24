#include "protocol/codec/envelope.h"

namespace quorva_zrp::codec {

namespace {

template <class Encode>
int packStepByStep(char* buffer, size_t size, size_t* usedSize, bool varint, Encode encode) {
    BrxWriteBuf buf(buffer, size);
    (void)buf.writeUInt8(varint ? magicVarint : magicFixed);
    const size_t lengthAt = buf.position;
    (void)buf.reserve(lengthSize);
    CheckedSink sink(buf, varint);
    const int result = encode(sink);
    if (usedSize != nullptr) {
        *usedSize = buf.position;
    }
    (void)buf.writeUInt32(static_cast<uint32_t>(buf.position), lengthAt);
    return result;
}

}  // namespace

int packChecked(uint8_t type, const char* record, char* buffer, size_t size, size_t* usedSize,
                bool varint) {
    return packStepByStep(buffer, size, usedSize, varint,
                          [&](CheckedSink& sink) { return encodeChecked(type, record, sink); });
}

int packChecked(uint8_t type, const char* value, long long selector, char* buffer, size_t size,
                size_t* usedSize, bool varint) {
    return packStepByStep(buffer, size, usedSize, varint, [&](CheckedSink& sink) {
        return encodeChecked(type, value, selector, sink);
    });
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
    uint32_t declared = 0;
    Quorva::brx_detail::loadBigEndian(buffer + 1, declared);
    if (size < declared) {
        return Quorva::BRX_ERR_NO_DATA;
    }
    envelope.varint = magic == magicVarint;
    envelope.bodyLength = uint64_t{declared} - envelopeSize;
    return 0;
}

}  // namespace quorva_zrp::codec
