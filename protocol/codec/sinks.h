// Where an encoder writes. Both sinks offer the same steps; each returns 0 or a result code.
//
// CheckedSink goes through BrxWriteBuf step by step and stops at the exact byte where the room
// ends. UncheckedSink is used when the largest encoding fits: it asks nothing, and its results are
// constants that the compiler drops.
#pragma once

#include "protocol/codec/wire.h"

namespace quorva_zrp::codec {

using Quorva::BrxReadBuf;
using Quorva::BrxWriteBuf;

template <bool Varint>
class UncheckedSink {
  public:
    using Hole = char*;

    explicit UncheckedSink(char* to) : at(to) {}

    template <uint32_t Number, class Integer>
    int integer(Integer value) {
        at = wire::storeInteger<Number, Varint>(at, value);
        return 0;
    }

    template <uint32_t Number>
    int tagOfDelimited() {
        using Tag = wire::TagBytes<makeTag(Number, wireDelimited)>;
        Tag::store(at);
        at += Tag::size;
        return 0;
    }
    Hole openLength() {
        at += lengthSize;
        return at;
    }
    int closeLength(Hole start) {
        Quorva::brx_detail::storeBigEndian(start - lengthSize, static_cast<uint32_t>(at - start));
        return 0;
    }

    int text(const char* from, size_t count) {
        memcpy(at, from, count);
        at += count;
        return 0;
    }
    int bytes(const char* from, size_t count) { return text(from, count); }

    char* at;  ///< where the next byte goes
};

class CheckedSink {
  public:
    struct Hole {
        size_t length;
        size_t start;
    };

    CheckedSink(BrxWriteBuf& buf, bool varint) : buf_(buf), varint_(varint) {}

    template <uint32_t Number, class Integer>
    int integer(Integer value) {
        const uint32_t tag = makeTag(Number, wireTypeOf<Integer>(varint_));
        if constexpr (sizeof(Integer) == 1) {
            return byteField(tag, static_cast<uint8_t>(value));
        } else {
            return varint_ ? varintField(tag, wire::toVarint(value))
                           : fixedField(tag, static_cast<std::make_unsigned_t<Integer>>(value));
        }
    }

    template <uint32_t Number>
    int tagOfDelimited() {
        return buf_.writeVarUInt32(makeTag(Number, wireDelimited));
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

    BrxWriteBuf& buf() { return buf_; }
    bool varint() const { return varint_; }

  private:
    int byteField(uint32_t tag, uint8_t value);
    int varintField(uint32_t tag, uint64_t value);
    int fixedField(uint32_t tag, uint16_t value);
    int fixedField(uint32_t tag, uint32_t value);
    int fixedField(uint32_t tag, uint64_t value);

    BrxWriteBuf& buf_;
    const bool varint_;
};

}  // namespace quorva_zrp::codec
