// Where tables meet the engine: the operations of a type, each a call into the engine with the
// type's table.
#pragma once

#include "protocol/codec/construct.h"
#include "protocol/codec/decode.h"
#include "protocol/codec/encode.h"
#include "protocol/codec/envelope.h"
#include "protocol/codec/fixed_run.h"
#include "protocol/codec/outline.h"
#include "protocol/codec/print.h"

namespace quorva_zrp::codec {

// --- Encoding and decoding with an envelope -----------------------------------------------------

/// Encodes where there is room for all records of the type. Apart from `packMessage`, which then
/// has nothing to save around calls; with its parameters in their places, so that it can jump here.
template <bool Varint, class Record>
ZRP_APART int packStraight(const char* record, char* buffer, size_t, size_t* usedSize) {
    return packUnchecked(buffer, usedSize, Varint,
                         encodeUnchecked<Record, Varint>(record, buffer + envelopeSize));
}

/// The same for a record that `choosesHot`.
template <bool Varint, class Record>
ZRP_APART int packOnePiece(const char* record, char* buffer, size_t, size_t* usedSize) {
    UncheckedSink<Varint, true> sink(buffer + envelopeSize);
    const int result = encodeFields<Record>(record, sink, FieldIndices<Record>{});
    return packUnchecked(buffer, usedSize, Varint, {sink.at, result});
}

template <class Record>
inline int packMessage(const Record& object, char* buffer, size_t size, size_t* usedSize,
                       bool varint) {
    const char* const record = bytesOf(object);
    constexpr uint8_t type = typeIndex<Record>;
    if constexpr (!isStraightAlone<Record>) {
        return packShared(type, record, 0, buffer, size, usedSize, varint);
    } else if (buffer == nullptr || size < envelopeSize + largestAlways<Record>(record, varint)) {
        constexpr Encoder encodeVarint = encodeUnchecked<Record, true>;
        constexpr Encoder encodeFixed = encodeUnchecked<Record, false>;
        return packTight(type, record, buffer, size, usedSize, varint,
                         varint ? encodeVarint : encodeFixed);
    } else {
        if constexpr (isOnePiece<Record>) {
            if (choosesHot<Record>(record)) {
                return varint ? packOnePiece<true, Record>(record, buffer, size, usedSize)
                              : packOnePiece<false, Record>(record, buffer, size, usedSize);
            }
        }
        return varint ? packStraight<true, Record>(record, buffer, size, usedSize)
                      : packStraight<false, Record>(record, buffer, size, usedSize);
    }
}

/// Decodes a message that is one run, in order, which takes no more than a look at all tags and
/// lengths. With choices of members that do not always take the same bytes none is.
template <class Record, size_t Choice>
ZRP_INLINE bool unpackRun(char* record, const char* buffer, size_t declared, size_t* usedSize) {
    if constexpr (!isWholeRun<Record, Choice>) {
        return false;
    } else {
        using Run = WholeRun<Record, Choice>;
        if (declared != envelopeSize + Run::size || !Run::isAt(buffer + envelopeSize)) {
            return false;
        }
        Run::read(buffer + envelopeSize, record);
        store(record + offsetof(Record, presence), run::allPresent<Record>);
        if (usedSize != nullptr) {
            *usedSize = declared;
        }
        return true;
    }
}

/// The choices to try: of integers alone there is one, of what has code of one piece those of its
/// hot members.
template <class Record>
using RunChoices =
    std::conditional_t<isWholeRun<Record>, std::index_sequence<noChoice>,
                       std::make_index_sequence<isOnePiece<Record> ? hotChoices<Record> : 0>>;

/// Decodes a message that is a run of one of these choices.
template <class Record, size_t... Choice>
ZRP_INLINE bool unpackAnyRun(char* record, const char* buffer, size_t declared, size_t* usedSize,
                             std::index_sequence<Choice...>) {
    return (unpackRun<Record, Choice>(record, buffer, declared, usedSize) || ...);
}

/// Decodes a message of `declared` bytes. `*usedSize` is stored beforehand: whatever reads the
/// message where this cannot stores it again. Apart from `unpackMessage`, which then has nothing to
/// save around calls.
template <bool Varint, class Record>
ZRP_APART int unpackStraight(char* record, const char* buffer, size_t size, size_t* usedSize,
                             size_t declared) {
    if (usedSize != nullptr) {
        *usedSize = declared;
    }
    const char* const at = buffer + envelopeSize;
    const char* const last = buffer + declared - 1;
    const char* const lastBegin = Varint ? lastVarint(buffer, last) : last;
    constexpr bool mayBeInOrder = Varint || !isWholeRun<Record>;
    const bool isRead = decodeMessage<Record, Varint, mayBeInOrder>(at, last, lastBegin, record);
    return isRead ? 0
                  : unpackAgain(record, buffer, size, usedSize, declared,
                                {typeIndex<Record>, careFor<Record>, Varint});
}

template <class Record>
inline int unpackMessage(Record& object, const char* buffer, size_t size, size_t* usedSize) {
    char* const record = bytesOf(object);
    if constexpr (isStraightAlone<Record>) {
        if (buffer != nullptr && size >= envelopeSize) {
            const uint8_t magic = static_cast<uint8_t>(buffer[0]);
            const size_t declared = wire::loadHighFirst<uint32_t>(buffer + 1);
            // Below 5 the difference wraps and is too much, too.
            if (declared - envelopeSize <= size - envelopeSize) {
                if (magic == magicVarint) {
                    return unpackStraight<true, Record>(record, buffer, size, usedSize, declared);
                }
                if (magic == magicFixed) {
                    using Choices = RunChoices<Record>;
                    if constexpr (Choices::size() != 0) {
                        if (unpackAnyRun<Record>(record, buffer, declared, usedSize, Choices{})) {
                            return 0;
                        }
                    }
                    return unpackStraight<false, Record>(record, buffer, size, usedSize, declared);
                }
            }
        }
    }
    return unpackShared(record, buffer, size, usedSize, {typeIndex<Record>, careFor<Record>},
                        nullptr);
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
        codec::construct(codec::typeIndex<Type>, codec::bytesOf(*this));                          \
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
        codec::construct(codec::typeIndex<Type>, codec::bytesOf(*this), selector);                \
        return 0;                                                                                 \
    }                                                                                             \
    int Type::packTLV(long long selector, char* buffer, size_t size, size_t* usedSize,            \
                      bool varint) const {                                                        \
        return codec::packShared(codec::typeIndex<Type>, codec::bytesOf(*this), selector, buffer, \
                                 size, usedSize, varint);                                         \
    }                                                                                             \
    int Type::packTLVWithVarint(long long selector, Quorva::BrxWriteBuf& buf) const {             \
        return codec::encode<true>(*this, selector, buf);                                         \
    }                                                                                             \
    int Type::packTLVNoVarint(long long selector, Quorva::BrxWriteBuf& buf) const {               \
        return codec::encode<false>(*this, selector, buf);                                        \
    }                                                                                             \
    int Type::unpackTLV(long long& selector, const char* buffer, size_t size, size_t* usedSize) { \
        return codec::unpackShared(codec::bytesOf(*this), buffer, size, usedSize,                 \
                                   {codec::typeIndex<Type>, codec::Care::quick}, &selector);      \
    }                                                                                             \
    int Type::unpackTLVWithVarint(long long& selector, Quorva::BrxReadBuf& buf, size_t length) {  \
        return codec::decodeShared({codec::typeIndex<Type>, codec::Care::quick, true},            \
                                   codec::bytesOf(*this), &selector, buf, length);                \
    }                                                                                             \
    int Type::unpackTLVNoVarint(long long& selector, Quorva::BrxReadBuf& buf, size_t length) {    \
        return codec::decodeShared({codec::typeIndex<Type>, codec::Care::quick, false},           \
                                   codec::bytesOf(*this), &selector, buf, length);                \
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
