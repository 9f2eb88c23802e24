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
    BrxWriteBuf buf(text, size);
    const int result = print(buf);
    if (used != nullptr) {
        *used = buf.getUsedSize();
    }
    return result;
}

}  // namespace quorva_zrp::codec

/// Defines every operation of structure `Type`.
#define ZRP_DEFINE_STRUCTURE(Type)                                                                \
    int Type::construct() {                                                                       \
        codec::constructStructure(*this);                                                         \
        return 0;                                                                                 \
    }                                                                                             \
    int Type::packTLV(char* buffer, size_t size, size_t* usedSize, bool varint) const {           \
        return codec::pack(buffer, size, usedSize, varint, [this](codec::CheckedSink& sink) {     \
            return codec::encodeStructure(*this, sink);                                           \
        });                                                                                       \
    }                                                                                             \
    int Type::packTLVWithVarint(Quorva::BrxWriteBuf& buf) const {                                 \
        codec::CheckedSink sink(buf, true);                                                       \
        return codec::encodeStructure(*this, sink);                                               \
    }                                                                                             \
    int Type::packTLVNoVarint(Quorva::BrxWriteBuf& buf) const {                                   \
        codec::CheckedSink sink(buf, false);                                                      \
        return codec::encodeStructure(*this, sink);                                               \
    }                                                                                             \
    int Type::unpackTLV(const char* buffer, size_t size, size_t* usedSize) {                      \
        return codec::unpackStructure(*this, buffer, size, usedSize);                             \
    }                                                                                             \
    int Type::unpackTLVWithVarint(Quorva::BrxReadBuf& buf, size_t length) {                       \
        return codec::decodeFrom(buf, [&](const codec::Input& input, size_t from) {               \
            return codec::decodeStructure<Type, true>(*this, input, from, length);                \
        });                                                                                       \
    }                                                                                             \
    int Type::unpackTLVNoVarint(Quorva::BrxReadBuf& buf, size_t length) {                         \
        return codec::decodeFrom(buf, [&](const codec::Input& input, size_t from) {               \
            return codec::decodeStructure<Type, false>(*this, input, from, length);               \
        });                                                                                       \
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
        return codec::printStructure(*this, codec::Page{buf, indent, separator});                 \
    }                                                                                             \
    int Type::visualize(char* buf, size_t size, size_t* used, int indent, char separator) const { \
        return codec::printInto(buf, size, used, [&](Quorva::BrxWriteBuf& page) {                 \
            return visualize(page, indent, separator);                                            \
        });                                                                                       \
    }                                                                                             \
    const char* Type::visualize_ex(Quorva::BrxWriteBuf& buf, int indent, char separator) const {  \
        if (buf.getBeginPtr() != nullptr && buf.getTotalSize() != 0) {                            \
            (void)visualize(buf, indent, separator); /* a text cut short is still a text */       \
        }                                                                                         \
        return codec::endText(buf);                                                               \
    }                                                                                             \
    const char* Type::visualize_ex(char* buf, size_t size, size_t* used, int indent,              \
                                   char separator) const {                                        \
        if (buf == nullptr || size == 0) {                                                        \
            return "";                                                                            \
        }                                                                                         \
        Quorva::BrxWriteBuf page(buf, size);                                                      \
        const char* const text = visualize_ex(page, indent, separator);                           \
        if (used != nullptr) {                                                                    \
            *used = page.getUsedSize();                                                           \
        }                                                                                         \
        return text;                                                                              \
    }

/// Defines every operation of union `Type`.
#define ZRP_DEFINE_UNION(Type)                                                                    \
    int Type::construct() {                                                                       \
        memset(static_cast<void*>(this), 0, sizeof(*this));                                       \
        return 0;                                                                                 \
    }                                                                                             \
    int Type::construct(long long selector) {                                                     \
        codec::constructMember(*this, selector);                                                  \
        return 0;                                                                                 \
    }                                                                                             \
    int Type::packTLV(long long selector, char* buffer, size_t size, size_t* usedSize,            \
                      bool varint) const {                                                        \
        return codec::pack(buffer, size, usedSize, varint, [&](codec::CheckedSink& sink) {        \
            return codec::encodeUnion(*this, selector, sink);                                     \
        });                                                                                       \
    }                                                                                             \
    int Type::packTLVWithVarint(long long selector, Quorva::BrxWriteBuf& buf) const {             \
        codec::CheckedSink sink(buf, true);                                                       \
        return codec::encodeUnion(*this, selector, sink);                                         \
    }                                                                                             \
    int Type::packTLVNoVarint(long long selector, Quorva::BrxWriteBuf& buf) const {               \
        codec::CheckedSink sink(buf, false);                                                      \
        return codec::encodeUnion(*this, selector, sink);                                         \
    }                                                                                             \
    int Type::unpackTLV(long long& selector, const char* buffer, size_t size, size_t* usedSize) { \
        return codec::unpackUnion(*this, selector, buffer, size, usedSize);                       \
    }                                                                                             \
    int Type::unpackTLVWithVarint(long long& selector, Quorva::BrxReadBuf& buf, size_t length) {  \
        return codec::decodeFrom(buf, [&](const codec::Input& input, size_t from) {               \
            return codec::decodeUnion<Type, true>(*this, selector, input, from, length);          \
        });                                                                                       \
    }                                                                                             \
    int Type::unpackTLVNoVarint(long long& selector, Quorva::BrxReadBuf& buf, size_t length) {    \
        return codec::decodeFrom(buf, [&](const codec::Input& input, size_t from) {               \
            return codec::decodeUnion<Type, false>(*this, selector, input, from, length);         \
        });                                                                                       \
    }                                                                                             \
    int Type::getTLVMaxPackedSize(size_t* size, bool varint) const {                              \
        return codec::largestSize<Type>(size, varint);                                            \
    }                                                                                             \
    int Type::visualize(long long selector, Quorva::BrxWriteBuf& buf, int indent, char separator) \
        const {                                                                                   \
        return codec::printMember(*this, selector, codec::Page{buf, indent, separator});          \
    }                                                                                             \
    int Type::visualize(long long selector, char* buf, size_t size, size_t* used, int indent,     \
                        char separator) const {                                                   \
        return codec::printInto(buf, size, used, [&](Quorva::BrxWriteBuf& page) {                 \
            return visualize(selector, page, indent, separator);                                  \
        });                                                                                       \
    }
