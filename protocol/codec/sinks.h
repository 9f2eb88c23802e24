// Where an encoder writes. Both sinks offer the same steps; each returns 0 or a result code.
//
// CheckedSink goes through BrxWriteBuf step by step and stops at the exact byte where the room
// ends. UncheckedSink is used when the largest encoding fits: it asks nothing, and its results are
// constants that the compiler drops.
#pragma once

#include "protocol/codec/field_data.h"
#include "protocol/codec/wire.h"

namespace quorva_zrp::codec {

using Quorva::BrxWriteBuf;

/// `OnePiece` says that all unions choose a member that is hot.
template <bool Varint, bool OnePiece = false>
class UncheckedSink {
  public:
    using Hole = char*;

    explicit UncheckedSink(char* to) : at(to) {}

    /// Writes the integer in the bytes at `from`.
    template <class Field>
    ZRP_INLINE int integer(Field, const char* from) {
        if constexpr (Field::kind() == Kind::integer) {
            at = wire::storeInteger<Field::number(), Varint, Field::bytesAfter(Varint)>(
                at, load<typename Field::type>(from));
        }
        return 0;
    }

    /// Writes the fields of `Run`.
    template <class Run>
    ZRP_INLINE void run(const char* record) {
        static_assert(!Varint);
        Run::write(record, at);
        at += Run::size;
    }

    template <class Field>
    ZRP_INLINE int tagOfDelimited(Field) {
        using Tag = wire::TagBytes<makeTag(Field::number(), wireDelimited)>;
        Tag::template store<0>(at);  // what is behind it stays as it was if the value fails
        at += Tag::size;
        return 0;
    }
    ZRP_INLINE Hole openLength() {
        at += lengthSize;
        return at;
    }
    ZRP_INLINE int closeLength(Hole start) {
        wire::storeHighFirst(start - lengthSize, static_cast<uint32_t>(at - start));
        return 0;
    }

    ZRP_INLINE int text(const char* from, size_t count) {
        memcpy(at, from, count);
        at += count;
        return 0;
    }
    ZRP_INLINE int bytes(const char* from, size_t count) { return text(from, count); }

    char* at;  ///< where the next byte goes
};

class CheckedSink {
  public:
    using Hole = size_t;

    CheckedSink(BrxWriteBuf& buf, bool varint) : buf_(buf), varint_(varint) {}

    int integer(const FieldData& field, const char* from);

    int tagOfDelimited(const FieldData& field) { return buf_.writeVarUInt32(field.tag(varint_)); }

    /// Deliberate: a hole that does not fit goes unnoticed here; the value is still written, and
    /// writing its length back is what fails.
    Hole openLength() {
        const Hole hole = buf_.position;
        (void)buf_.reserve(lengthSize);
        return hole;
    }
    int closeLength(Hole hole) {
        return buf_.writeUInt32(static_cast<uint32_t>(buf_.position - hole - lengthSize), hole);
    }

    /// All or nothing.
    int text(const char* from, size_t count) { return buf_.writeBytes(from, count); }

    /// Deliberate: as far as it fits, as though written one by one.
    int bytes(const char* from, size_t count);

  private:
    BrxWriteBuf& buf_;
    const bool varint_;
};

}  // namespace quorva_zrp::codec
