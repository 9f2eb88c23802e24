// The envelope of a top-level encoding: a magic byte that names the flavour and the total length,
// these 5 bytes included.
#pragma once

#include "protocol/codec/decode.h"
#include "protocol/codec/encode.h"

namespace quorva_zrp::codec {

constexpr uint8_t magicVarint = 0xAA;
constexpr uint8_t magicFixed = 0x99;

/// Writes the envelope around the fields that `encode` writes behind it: the usual case, where
/// there is room for the largest encoding.
template <class Encode>
inline int packUnchecked(char* buffer, size_t* usedSize, bool varint, Encode encode) {
    buffer[0] = static_cast<char>(varint ? magicVarint : magicFixed);
    const EncodeStep step = encode(buffer + envelopeSize);
    const size_t used = static_cast<size_t>(step.at - buffer);
    if (usedSize != nullptr) {
        *usedSize = used;
    }
    Quorva::brx_detail::storeBigEndian(buffer + 1, static_cast<uint32_t>(used));
    return step.result;
}

/// The same step by step, for any size above 0.
/// Deliberate: header and `*usedSize` are written after a failure too, and a header that does not
/// fit goes unnoticed; only the result of the fields tells success.
int packChecked(uint8_t type, const char* record, char* buffer, size_t size, size_t* usedSize,
                bool varint);
int packChecked(uint8_t type, const char* value, long long selector, char* buffer, size_t size,
                size_t* usedSize, bool varint);

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
    const Input input(buffer, size, envelopeSize, envelope.bodyLength);
    const DecodeStep step = decode(input, envelope);
    if (usedSize != nullptr) {
        *usedSize = input.offsetOf(step.at);
    }
    return step.result;
}

}  // namespace quorva_zrp::codec
