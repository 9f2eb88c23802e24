// The envelope of a top-level encoding: a magic byte that names the flavour and the total length,
// these 5 bytes included.
#pragma once

#include "protocol/codec/decode.h"
#include "protocol/codec/encode.h"

namespace quorva_zrp::codec {

constexpr uint8_t magicVarint = 0xAA;
constexpr uint8_t magicFixed = 0x99;

/// Writes an envelope around what `encode` writes into the buffer it is given.
/// Deliberate: header and `*usedSize` are written after a failure too, and a header that does not
/// fit goes unnoticed; only the result of `encode` tells success.
template <class Encode>
inline int pack(char* buffer, size_t size, size_t* usedSize, bool varint, Encode encode) {
    if (buffer == nullptr || size == 0) {
        return Quorva::BRX_ERR_NULL_ARG;
    }
    BrxWriteBuf buf(buffer, size);
    (void)buf.writeUInt8(varint ? magicVarint : magicFixed);
    const size_t lengthAt = buf.position;
    (void)buf.reserve(lengthSize);
    const int result = encode(buf);
    if (usedSize != nullptr) {
        *usedSize = buf.position;
    }
    (void)buf.writeUInt32(static_cast<uint32_t>(buf.position), lengthAt);
    return result;
}

/// What an envelope says.
struct Envelope {
    bool varint;
    uint64_t
        bodyLength;  ///< declared length less the envelope; wraps for a declared length below 5
};

/// Checks the envelope in front of `size` bytes.
int readEnvelope(const char* buffer, size_t size, Envelope& envelope);

/// Checks the envelope and decodes the fields behind it; `*usedSize` is written once decoding has
/// begun.
template <class Decode>
inline int unpack(const char* buffer, size_t size, size_t* usedSize, Decode decode) {
    Envelope envelope{};
    if (const int result = readEnvelope(buffer, size, envelope); result != 0) {
        return result;
    }
    const Input input(buffer, size);
    const DecodeStep step = decode(input, envelope);
    if (usedSize != nullptr) {
        *usedSize = input.offsetOf(step.at);
    }
    return step.result;
}

}  // namespace quorva_zrp::codec
