#include "protocol/codec/envelope.h"

namespace quorva_zrp::codec {

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
