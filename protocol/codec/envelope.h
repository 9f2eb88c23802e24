// The envelope of a top-level encoding: a magic byte that names the flavour and the total length,
// these 5 bytes included.
#pragma once

#include "protocol/codec/decode.h"
#include "protocol/codec/encode.h"

namespace quorva_zrp::codec {

constexpr uint8_t magicVarint = 0xAA;
constexpr uint8_t magicFixed = 0x99;

// --- Encoding -----------------------------------------------------------------------------------

/// Writes the envelope in front of fields that were encoded behind it.
ZRP_INLINE int packUnchecked(char* buffer, size_t* usedSize, bool varint, EncodeStep fields) {
    const size_t used = static_cast<size_t>(fields.at - buffer);
    buffer[0] = static_cast<char>(varint ? magicVarint : magicFixed);
    wire::storeHighFirst(buffer + 1, static_cast<uint32_t>(used));
    if (usedSize != nullptr) {
        *usedSize = used;
    }
    return fields.result;
}

/// Encodes a structure, or the member of a union that `selector` names, step by step into a buffer
/// of any size.
/// Deliberate: header and `*usedSize` are written after a failure too, and a header that does not
/// fit goes unnoticed; only the result of the fields tells success.
int packShared(uint8_t type, const char* value, long long selector, char* buffer, size_t size,
               size_t* usedSize, bool varint);

/// Encodes a structure where the room is less than the largest one of its type takes: by `encode`
/// if this one is sure to fit.
int packTight(uint8_t type, const char* record, char* buffer, size_t size, size_t* usedSize,
              bool varint, Encoder encode);

// --- Decoding -----------------------------------------------------------------------------------

/// What an envelope says.
struct Envelope {
    bool varint;
    uint64_t bodyLength;  ///< declared length less the envelope; wraps where that is below 5
};

/// Checks the envelope in front of `size` bytes.
int readEnvelope(const char* buffer, size_t size, Envelope& envelope);

/// What is unpacked, in one register.
struct Unpacking {
    uint8_t type;
    Care care;
};

/// Checks the envelope and decodes the fields behind it as data; `*usedSize` is written once
/// decoding has begun. Its parameters are in the order in which `unpackTLV` has them, so that it is
/// a jump from there.
int unpackShared(char* value, const char* buffer, size_t size, size_t* usedSize, Unpacking how,
                 long long* selector);

/// The same for a structure of `declared` bytes whose envelope was checked, after a prediction gave
/// up: reading the envelope again would be once too often.
int unpackAgain(char* record, const char* buffer, size_t size, size_t* usedSize, size_t declared,
                Reading reading);

}  // namespace quorva_zrp::codec
