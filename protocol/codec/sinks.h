// Where an encoder writes. Both sinks offer the same steps; each returns 0 or a result code.
//
// CheckedSink goes through BrxWriteBuf step by step and stops at the exact byte where the room
// ends. UncheckedSink is used when the largest encoding fits: it asks nothing, and its results are
// constants that the compiler drops.
#pragma once

#include "protocol/codec/wire.h"

namespace quorva_zrp::codec {

using Quorva::BrxWriteBuf;

template <bool Varint>
class UncheckedSink {
  public:
    using Hole = char*;

    explicit UncheckedSink(char* to) : at(to) {}

    template <class Field, class Integer>
    ZRP_INLINE int integer(Field, Integer value) {
        at = wire::storeInteger<Field::number(), Varint>(at, value);
        return 0;
    }

    template <class Field>
    ZRP_INLINE int tagOfDelimited(Field) {
        using Tag = wire::TagBytes<makeTag(Field::number(), wireDelimited)>;
        Tag::store(at);
        at += Tag::size;
        return 0;
    }
    ZRP_INLINE Hole openLength() {
        at += lengthSize;
        return at;
    }
    ZRP_INLINE int closeLength(Hole start) {
        Quorva::brx_detail::storeBigEndian(start - lengthSize, static_cast<uint32_t>(at - start));
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
    struct Hole {
        size_t length;
        size_t start;
    };

    CheckedSink(BrxWriteBuf& buf, bool varint) : buf_(buf), varint_(varint) {}

    template <class Field, class Integer>
    int integer(const Field& field, Integer value) {
        const uint32_t tag = makeTag(field.number(), wireTypeOf<Integer>(varint_));
        if (const int result = buf_.writeVarUInt32(tag); result != 0) {
            return result;
        }
        if constexpr (sizeof(Integer) == 1) {
            return buf_.writeUInt8(value);
        } else {
            return varint_ ? varintValue(wire::toVarint(value))
                           : fixedValue(static_cast<std::make_unsigned_t<Integer>>(value));
        }
    }

    template <class Field>
    int tagOfDelimited(const Field& field) {
        return buf_.writeVarUInt32(makeTag(field.number(), wireDelimited));
    }
    /// Deliberate: a hole that does not fit goes unnoticed here; the value is still written, and
    /// writing its length back is what fails.
    Hole openLength() {
        const size_t length = buf_.position;
        (void)buf_.reserve(lengthSize);
        return {length, buf_.position};
    }
    int closeLength(Hole hole) {
        return buf_.writeUInt32(static_cast<uint32_t>(buf_.position - hole.start), hole.length);
    }

    /// All or nothing.
    int text(const char* from, size_t count) { return buf_.writeBytes(from, count); }

    /// Deliberate: as far as it fits, as though written one by one.
    int bytes(const char* from, size_t count);

  private:
    /// One function for all widths: a value takes the same groups whatever its width.
    int varintValue(uint64_t value) { return buf_.writeVarUInt64(value); }
    int fixedValue(uint16_t value) { return buf_.writeUInt16(value); }
    int fixedValue(uint32_t value) { return buf_.writeUInt32(value); }
    int fixedValue(uint64_t value) { return buf_.writeUInt64(value); }

    BrxWriteBuf& buf_;
    const bool varint_;
};

}  // namespace quorva_zrp::codec
