// Where tables meet the engine: the operations of a type, each a call into the engine with the
// type's table.
#pragma once

#include "protocol/codec/construct.h"
#include "protocol/codec/decode.h"
#include "protocol/codec/encode.h"
#include "protocol/codec/envelope.h"
#include "protocol/codec/print.h"

namespace quorva_zrp::codec {

// --- Encoding and decoding with an envelope -----------------------------------------------------

template <bool Varint, class Record>
inline int packFlavour(const Record& object, char* buffer, size_t size, size_t* usedSize) {
    const char* const record = bytesOf(object);
    if (size >= envelopeSize && fits<Record, Varint>(record, size - envelopeSize)) {
        return packUnchecked(buffer, usedSize, Varint,
                             [&](char* to) { return encodeUnchecked<Record, Varint>(record, to); });
    }
    return packChecked(typeIndex<Record>, record, buffer, size, usedSize, Varint);
}

template <bool Varint, class Union>
inline int packFlavour(const Union& object, long long selector, char* buffer, size_t size,
                       size_t* usedSize) {
    const char* const value = bytesOf(object);
    if (size >= envelopeSize + Fields<Union>::largestBody(Varint)) {
        return packUnchecked(buffer, usedSize, Varint, [&](char* to) {
            return encodeUnchecked<Union, Varint>(value, selector, to);
        });
    }
    return packChecked(typeIndex<Union>, value, selector, buffer, size, usedSize, Varint);
}

template <class Record>
inline int packMessage(const Record& object, char* buffer, size_t size, size_t* usedSize,
                       bool varint) {
    if (buffer == nullptr || size == 0) {
        return Quorva::BRX_ERR_NULL_ARG;
    }
    return varint ? packFlavour<true>(object, buffer, size, usedSize)
                  : packFlavour<false>(object, buffer, size, usedSize);
}

template <class Union>
inline int packMessage(const Union& object, long long selector, char* buffer, size_t size,
                       size_t* usedSize, bool varint) {
    if (buffer == nullptr || size == 0) {
        return Quorva::BRX_ERR_NULL_ARG;
    }
    return varint ? packFlavour<true>(object, selector, buffer, size, usedSize)
                  : packFlavour<false>(object, selector, buffer, size, usedSize);
}

template <class Record>
inline int unpackMessage(Record& record, const char* buffer, size_t size, size_t* usedSize) {
    return unpack(buffer, size, usedSize, [&](const Input& input, const Envelope& envelope) {
        char* const to = bytesOf(record);
        const char* const from = buffer + envelopeSize;
        return envelope.varint ? decode<Record, true>(to, input, from, envelope.bodyLength)
                               : decode<Record, false>(to, input, from, envelope.bodyLength);
    });
}

template <class Union>
inline int unpackMessage(Union& value, long long& selector, const char* buffer, size_t size,
                         size_t* usedSize) {
    return unpack(buffer, size, usedSize, [&](const Input& input, const Envelope& envelope) {
        char* const to = bytesOf(value);
        const char* const from = buffer + envelopeSize;
        return envelope.varint
                   ? decode<Union, true>(to, selector, input, from, envelope.bodyLength)
                   : decode<Union, false>(to, selector, input, from, envelope.bodyLength);
    });
}

// --- The rest -----------------------------------------------------------------------------------

/// The operation behind `getTLVMaxPackedSize`.
template <class Message>
inline int largestSize(size_t* size, bool varint) {
    if (size == nullptr) {
        return Quorva::BRX_ERR_NULL_ARG;
    }
    *size = varint ? Fields<Message>::maxVarint : Fields<Message>::maxFixed;
    return 0;
}

/// The list of required fields that a decode missed: empty for every type.
inline char* emptyList(char* buffer, size_t size) {
    if (buffer == nullptr || size == 0) {
        return nullptr;
    }
    buffer[0] = '\0';
    return buffer;
}

/// Runs `visualize` over a buffer around `text` and stores how many bytes it wrote, also on
/// failure.
template <class Visualize>
inline int visualizeInto(char* text, size_t size, size_t* used, Visualize visualize) {
    if (text == nullptr) {
        return Quorva::BRX_ERR_NULL_ARG;
    }
    BrxWriteBuf buf(text, size);
    const int result = visualize(buf);
    if (used != nullptr) {
        *used = buf.getUsedSize();
    }
    return result;
}

/// Prints `record` for a log call: whatever fitted, as a text.
template <class Record>
inline const char* visualizeText(const Record& record, BrxWriteBuf& buf, int indent,
                                 char separator) {
    if (buf.getBeginPtr() != nullptr && buf.getTotalSize() != 0) {
        (void)record.visualize(buf, indent, separator);  // a text cut short is still a text
    }
    return endText(buf);
}

template <class Record>
inline const char* visualizeText(const Record& record, char* text, size_t size, size_t* used,
                                 int indent, char separator) {
    if (text == nullptr || size == 0) {
        return "";
    }
    BrxWriteBuf buf(text, size);
    (void)visualizeText(record, buf, indent, separator);
    if (used != nullptr) {
        *used = buf.getUsedSize();
    }
    return text;
}

}  // namespace quorva_zrp::codec

/// Defines every operation of structure `Type`.
#define ZRP_DEFINE_STRUCTURE(Type)                                                                \
    int Type::construct() {                                                                       \
        codec::construct<Type>(codec::bytesOf(*this));                                            \
        return 0;                                                                                 \
    }                                                                                             \
    int Type::packTLV(char* buffer, size_t size, size_t* usedSize, bool varint) const {           \
        return codec::packMessage(*this, buffer, size, usedSize, varint);                         \
    }                                                                                             \
    int Type::packTLVWithVarint(Quorva::BrxWriteBuf& buf) const {                                 \
        return codec::encode<true>(*this, buf);                                                   \
    }                                                                                             \
    int Type::packTLVNoVarint(Quorva::BrxWriteBuf& buf) const {                                   \
        return codec::encode<false>(*this, buf);                                                  \
    }                                                                                             \
    int Type::unpackTLV(const char* buffer, size_t size, size_t* usedSize) {                      \
        return codec::unpackMessage(*this, buffer, size, usedSize);                               \
    }                                                                                             \
    int Type::unpackTLVWithVarint(Quorva::BrxReadBuf& buf, size_t length) {                       \
        return codec::decodeFrom<Type, true>(*this, buf, length);                                 \
    }                                                                                             \
    int Type::unpackTLVNoVarint(Quorva::BrxReadBuf& buf, size_t length) {                         \
        return codec::decodeFrom<Type, false>(*this, buf, length);                                \
    }                                                                                             \
    int Type::getTLVMaxPackedSize(size_t* size, bool varint) const {                              \
        return codec::largestSize<Type>(size, varint);                                            \
    }                                                                                             \
    int Type::requiredFieldNum() const {                                                          \
        return 0;                                                                                 \
    }                                                                                             \
    char* Type::getLastLostRequiredFields(char* buffer, size_t size) const {                      \
        return codec::emptyList(buffer, size);                                                    \
    }                                                                                             \
    int Type::visualize(Quorva::BrxWriteBuf& buf, int indent, char separator) const {             \
        return codec::print<Type>(codec::bytesOf(*this), {buf, indent, separator});               \
    }                                                                                             \
    int Type::visualize(char* buf, size_t size, size_t* used, int indent, char separator) const { \
        return codec::visualizeInto(buf, size, used, [&](Quorva::BrxWriteBuf& page) {             \
            return visualize(page, indent, separator);                                            \
        });                                                                                       \
    }                                                                                             \
    const char* Type::visualize_ex(Quorva::BrxWriteBuf& buf, int indent, char separator) const {  \
        return codec::visualizeText(*this, buf, indent, separator);                               \
    }                                                                                             \
    const char* Type::visualize_ex(char* buf, size_t size, size_t* used, int indent,              \
                                   char separator) const {                                        \
        return codec::visualizeText(*this, buf, size, used, indent, separator);                   \
    }

/// Defines every operation of union `Type`.
#define ZRP_DEFINE_UNION(Type)                                                                    \
    int Type::construct() {                                                                       \
        memset(static_cast<void*>(this), 0, sizeof(*this));                                       \
        return 0;                                                                                 \
    }                                                                                             \
    int Type::construct(long long selector) {                                                     \
        codec::construct<Type>(codec::bytesOf(*this), selector);                                  \
        return 0;                                                                                 \
    }                                                                                             \
    int Type::packTLV(long long selector, char* buffer, size_t size, size_t* usedSize,            \
                      bool varint) const {                                                        \
        return codec::packMessage(*this, selector, buffer, size, usedSize, varint);               \
    }                                                                                             \
    int Type::packTLVWithVarint(long long selector, Quorva::BrxWriteBuf& buf) const {             \
        return codec::encode<true>(*this, selector, buf);                                         \
    }                                                                                             \
    int Type::packTLVNoVarint(long long selector, Quorva::BrxWriteBuf& buf) const {               \
        return codec::encode<false>(*this, selector, buf);                                        \
    }                                                                                             \
    int Type::unpackTLV(long long& selector, const char* buffer, size_t size, size_t* usedSize) { \
        return codec::unpackMessage(*this, selector, buffer, size, usedSize);                     \
    }                                                                                             \
    int Type::unpackTLVWithVarint(long long& selector, Quorva::BrxReadBuf& buf, size_t length) {  \
        return codec::decodeFrom<Type, true>(*this, selector, buf, length);                       \
    }                                                                                             \
    int Type::unpackTLVNoVarint(long long& selector, Quorva::BrxReadBuf& buf, size_t length) {    \
        return codec::decodeFrom<Type, false>(*this, selector, buf, length);                      \
    }                                                                                             \
    int Type::getTLVMaxPackedSize(size_t* size, bool varint) const {                              \
        return codec::largestSize<Type>(size, varint);                                            \
    }                                                                                             \
    int Type::visualize(long long selector, Quorva::BrxWriteBuf& buf, int indent, char separator) \
        const {                                                                                   \
        return codec::print<Type>(codec::bytesOf(*this), selector, {buf, indent, separator});     \
    }                                                                                             \
    int Type::visualize(long long selector, char* buf, size_t size, size_t* used, int indent,     \
                        char separator) const {                                                   \
        return codec::visualizeInto(buf, size, used, [&](Quorva::BrxWriteBuf& page) {             \
            return visualize(selector, page, indent, separator);                                  \
        });                                                                                       \
    }
