// Where tables meet the engine: the operations of a type, each a call into the engine with the
// type's table.
#pragma once

#include "protocol/codec/construct.h"
#include "protocol/codec/decode.h"
#include "protocol/codec/encode.h"
#include "protocol/codec/envelope.h"
#include "protocol/codec/print.h"

namespace quorva_zrp::codec {

/// The operation behind `getTLVMaxPackedSize`.
template <class Message>
int largestSize(size_t* size, bool varint) {
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

/// Runs `print` over a buffer around `text` and stores how many bytes it wrote, also on failure.
template <class Print>
int printInto(char* text, size_t size, size_t* used, Print print) {
    if (text == nullptr) {
        return Quorva::BRX_ERR_NULL_ARG;
    }
    Quorva::BrxWriteBuf buf(text, size);
    const int result = print(buf);
    if (used != nullptr) {
        *used = buf.getUsedSize();
    }
    return result;
}

}  // namespace quorva_zrp::codec

/// Defines every operation of structure `Type`.
#define ZRP_DEFINE_STRUCTURE(Type)                                                                 \
    int Type::construct() {                                                                        \
        codec::construct<Type>(codec::bytesOf(*this));                                             \
        return 0;                                                                                  \
    }                                                                                              \
    int Type::packTLV(char* buffer, size_t size, size_t* usedSize, bool varint) const {            \
        return codec::pack(buffer, size, usedSize, varint, [&](Quorva::BrxWriteBuf& buf) {         \
            return varint ? codec::encode<true>(*this, buf) : codec::encode<false>(*this, buf);    \
        });                                                                                        \
    }                                                                                              \
    int Type::packTLVWithVarint(Quorva::BrxWriteBuf& buf) const {                                  \
        return codec::encode<true>(*this, buf);                                                    \
    }                                                                                              \
    int Type::packTLVNoVarint(Quorva::BrxWriteBuf& buf) const {                                    \
        return codec::encode<false>(*this, buf);                                                   \
    }                                                                                              \
    int Type::unpackTLV(const char* buffer, size_t size, size_t* usedSize) {                       \
        return codec::unpack(                                                                      \
            buffer, size, usedSize,                                                                \
            [this](const codec::Input& input, const codec::Envelope& envelope) {                   \
                const size_t from = codec::envelopeSize;                                           \
                char* const record = codec::bytesOf(*this);                                        \
                return envelope.varint                                                             \
                           ? codec::decode<Type, true>(record, input, from, envelope.bodyLength)   \
                           : codec::decode<Type, false>(record, input, from, envelope.bodyLength); \
            });                                                                                    \
    }                                                                                              \
    int Type::unpackTLVWithVarint(Quorva::BrxReadBuf& buf, size_t length) {                        \
        return codec::unpackFields(buf, [&](const codec::Input& input, size_t from) {              \
            return codec::decode<Type, true>(codec::bytesOf(*this), input, from, length);          \
        });                                                                                        \
    }                                                                                              \
    int Type::unpackTLVNoVarint(Quorva::BrxReadBuf& buf, size_t length) {                          \
        return codec::unpackFields(buf, [&](const codec::Input& input, size_t from) {              \
            return codec::decode<Type, false>(codec::bytesOf(*this), input, from, length);         \
        });                                                                                        \
    }                                                                                              \
    int Type::getTLVMaxPackedSize(size_t* size, bool varint) const {                               \
        return codec::largestSize<Type>(size, varint);                                             \
    }                                                                                              \
    int Type::requiredFieldNum() const {                                                           \
        return 0;                                                                                  \
    }                                                                                              \
    char* Type::getLastLostRequiredFields(char* buffer, size_t size) const {                       \
        return codec::emptyList(buffer, size);                                                     \
    }                                                                                              \
    int Type::visualize(Quorva::BrxWriteBuf& buf, int indent, char separator) const {              \
        return codec::print<Type>(codec::bytesOf(*this), codec::Page{buf, indent, separator});     \
    }                                                                                              \
    int Type::visualize(char* buf, size_t size, size_t* used, int indent, char separator) const {  \
        return codec::printInto(buf, size, used, [&](Quorva::BrxWriteBuf& page) {                  \
            return visualize(page, indent, separator);                                             \
        });                                                                                        \
    }                                                                                              \
    const char* Type::visualize_ex(Quorva::BrxWriteBuf& buf, int indent, char separator) const {   \
        if (buf.getBeginPtr() != nullptr && buf.getTotalSize() != 0) {                             \
            (void)visualize(buf, indent, separator); /* a text cut short is still a text */        \
        }                                                                                          \
        return codec::endText(buf);                                                                \
    }                                                                                              \
    const char* Type::visualize_ex(char* buf, size_t size, size_t* used, int indent,               \
                                   char separator) const {                                         \
        if (buf == nullptr || size == 0) {                                                         \
            return "";                                                                             \
        }                                                                                          \
        Quorva::BrxWriteBuf page(buf, size);                                                       \
        const char* const text = visualize_ex(page, indent, separator);                            \
        if (used != nullptr) {                                                                     \
            *used = page.getUsedSize();                                                            \
        }                                                                                          \
        return text;                                                                               \
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
        return codec::pack(buffer, size, usedSize, varint, [&](Quorva::BrxWriteBuf& buf) {        \
            return varint ? codec::encode<true>(*this, selector, buf)                             \
                          : codec::encode<false>(*this, selector, buf);                           \
        });                                                                                       \
    }                                                                                             \
    int Type::packTLVWithVarint(long long selector, Quorva::BrxWriteBuf& buf) const {             \
        return codec::encode<true>(*this, selector, buf);                                         \
    }                                                                                             \
    int Type::packTLVNoVarint(long long selector, Quorva::BrxWriteBuf& buf) const {               \
        return codec::encode<false>(*this, selector, buf);                                        \
    }                                                                                             \
    int Type::unpackTLV(long long& selector, const char* buffer, size_t size, size_t* usedSize) { \
        return codec::unpack(                                                                     \
            buffer, size, usedSize,                                                               \
            [&](const codec::Input& input, const codec::Envelope& envelope) {                     \
                const size_t from = codec::envelopeSize;                                          \
                char* const value = codec::bytesOf(*this);                                        \
                return envelope.varint ? codec::decode<Type, true>(value, selector, input, from,  \
                                                                   envelope.bodyLength)           \
                                       : codec::decode<Type, false>(value, selector, input, from, \
                                                                    envelope.bodyLength);         \
            });                                                                                   \
    }                                                                                             \
    int Type::unpackTLVWithVarint(long long& selector, Quorva::BrxReadBuf& buf, size_t length) {  \
        return codec::unpackFields(buf, [&](const codec::Input& input, size_t from) {             \
            return codec::decode<Type, true>(codec::bytesOf(*this), selector, input, from,        \
                                             length);                                             \
        });                                                                                       \
    }                                                                                             \
    int Type::unpackTLVNoVarint(long long& selector, Quorva::BrxReadBuf& buf, size_t length) {    \
        return codec::unpackFields(buf, [&](const codec::Input& input, size_t from) {             \
            return codec::decode<Type, false>(codec::bytesOf(*this), selector, input, from,       \
                                              length);                                            \
        });                                                                                       \
    }                                                                                             \
    int Type::getTLVMaxPackedSize(size_t* size, bool varint) const {                              \
        return codec::largestSize<Type>(size, varint);                                            \
    }                                                                                             \
    int Type::visualize(long long selector, Quorva::BrxWriteBuf& buf, int indent, char separator) \
        const {                                                                                   \
        return codec::print<Type>(codec::bytesOf(*this), selector,                                \
                                  codec::Page{buf, indent, separator});                           \
    }                                                                                             \
    int Type::visualize(long long selector, char* buf, size_t size, size_t* used, int indent,     \
                        char separator) const {                                                   \
        return codec::printInto(buf, size, used, [&](Quorva::BrxWriteBuf& page) {                 \
            return visualize(selector, page, indent, separator);                                  \
        });                                                                                       \
    }
