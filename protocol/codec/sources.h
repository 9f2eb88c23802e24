// Where a decoder reads. Both sources offer the same steps over values (`tag`, `integer`, `length`,
// `text`, `bytes`); each returns 0, a result code, or `surprise`.
//
// CheckedSource goes through BrxReadBuf step by step. PredictingSource reads what an encoder of
// this protocol writes for input that is all there; whatever else it meets it leaves untouched and
// reports as a surprise, and the field is then read again through CheckedSource.
#pragma once

#include "protocol/codec/wire.h"

namespace quorva_zrp::codec {

using Quorva::BrxReadBuf;

/// Not a result code: the predicting source met something it does not handle and did nothing.
constexpr int surprise = 1;

/// The bytes being decoded.
struct Input {
    const char* begin;
    size_t size;      ///< bytes that may be read
    const char* end;  ///< where the message ends, inside them; prediction looks no further

    /// A varint that begins before this point has its end inside the message, or 10 bytes of it,
    /// which no varint of an encoder exceeds: its bytes need no bounds checks of their own.
    const char* varintsBefore;

    /// A message of `length` bytes at `offset`, at most `bytes`; one that would not fit is left to
    /// CheckedSource whole.
    Input(const char* from, size_t bytes, size_t offset, uint64_t length)
        : begin(from),
          size(bytes),
          end(from + offset + (length <= bytes - offset ? static_cast<size_t>(length) : 0)),
          varintsBefore(end) {
        constexpr ptrdiff_t longest = largestInteger<uint64_t>(true);
        while (varintsBefore != begin && end - varintsBefore < longest - 1 &&
               Quorva::brx_detail::byteAt(varintsBefore - 1, 0) >= 0x80) {
            --varintsBefore;
        }
    }

    size_t offsetOf(const char* at) const { return static_cast<size_t>(at - begin); }
};

// Delimited values, where the 4 bytes of their length are known to be there: each returns where the
// value ends, or null, having touched nothing, where CheckedSource has to look at it. Out of line,
// since the copy outweighs the call.

const char* takeText(const char* from, const char* inputEnd, char* to, size_t capacity);
const char* takeBytes(const char* from, const char* inputEnd, char* to, size_t capacity);

template <bool Varint>
class PredictingSource {
  public:
    /// Reads from `from` on. Fields in order are taken only before `until`, at most the end of the
    /// input.
    PredictingSource(const Input& input, const char* from, const char* until)
        : at(from), input_(input) {
        (void)narrow(until);
    }

    /// Steps over the tag of `Field` if it comes next and enough of its value follows to read on.
    template <class Field>
    ZRP_INLINE bool acceptTag() {
        using Tag = wire::TagBytes<Field::tag(Varint)>;
        if (until_ - at < static_cast<ptrdiff_t>(Tag::size + leastValue<Field>()) ||
            !Tag::isAt(at)) {
            return false;
        }
        at += Tag::size;
        return true;
    }

    ZRP_INLINE int tag(uint32_t& tag) {
        if (at >= input_.varintsBefore) {
            return surprise;
        }
        // No tag of the catalogue takes more than the three bytes that this reads.
        const wire::LoadedVarint loaded = wire::loadVarint<21>(at, input_.end);
        tag = static_cast<uint32_t>(loaded.value);
        return moveTo(loaded.end);
    }

    /// Whether enough input follows for the value of `Field`, where its tag came through `tag`.
    template <class Field>
    ZRP_INLINE bool hasValue() const {
        return until_ - at >= static_cast<ptrdiff_t>(leastValue<Field>());
    }

    /// Reads an integer into the bytes at `to`.
    template <class Integer>
    ZRP_INLINE int integer(char* to) {
        Integer value = 0;
        const char* const end = wire::loadInteger<Varint>(at, input_.end, value);
        if (end != nullptr) {
            store(to, value);
        }
        return moveTo(end);
    }

    ZRP_INLINE int length(uint32_t& value) {
        Quorva::brx_detail::loadBigEndian(at, value);
        at += lengthSize;
        return 0;
    }

    ZRP_INLINE int text(char* to, size_t capacity) {
        return moveTo(takeText(at, input_.end, to, capacity));
    }

    ZRP_INLINE int bytes(char* to, size_t capacity, size_t& stored) {
        const char* const start = at + lengthSize;
        const int result = moveTo(takeBytes(at, input_.end, to, capacity));
        stored = result == 0 ? static_cast<size_t>(at - start) : 0;
        return result;
    }

    const Input& input() const { return input_; }

    /// Takes fields before `until` only, at most the end of the input; returns the bound there was.
    ZRP_INLINE const char* narrow(const char* until) {
        const char* const before = until_;
        const char* const safe = Varint ? input_.varintsBefore : input_.end;
        until_ = until < safe ? until : safe;
        return before;
    }
    ZRP_INLINE void widen(const char* before) { until_ = before; }

    const char* at;  ///< the next byte

  private:
    template <class Field>
    static constexpr size_t leastValue() {
        if constexpr (Field::kind() == Kind::integer) {
            return wire::leastInput<typename Field::type, Varint>;
        } else {
            return lengthSize;
        }
    }

    ZRP_INLINE int moveTo(const char* end) {
        if (end == nullptr) {
            return surprise;
        }
        at = end;
        return 0;
    }

    const Input& input_;
    const char* until_ = nullptr;
};

class CheckedSource {
  public:
    /// Reads `buf` from its position on.
    CheckedSource(BrxReadBuf& buf, bool varint) : buf_(buf), varint_(varint) {}

    int tag(uint32_t& tag) { return buf_.readVarUInt32(tag); }

    /// Reads an integer into the bytes at `to`: a varint that fails leaves its groups there.
    template <class Integer>
    int integer(char* to) {
        Integer value = load<Integer>(to);
        const int result = read(value);
        store(to, value);
        return result;
    }

    int length(uint32_t& value) { return buf_.readUInt32(value); }

    int text(char* to, size_t capacity);

    /// Stores at most `capacity` bytes, as though one by one: as far as the input goes. `stored` is
    /// how many there were where the declared length was reached, else 0.
    /// Deliberate: when the length exceeds the capacity the rest stays in the input, where the
    /// structure's loop takes it for tags, and it is no error.
    int bytes(char* to, size_t capacity, size_t& stored);

    int skip(uint32_t wireType) {
        return Quorva::BrxTLVUtil::skipUnknownFields(buf_, static_cast<int>(wireType));
    }

    /// Bytes consumed so far, as a number of the same width on every platform.
    uint64_t consumed() const { return buf_.position; }

  private:
    int read(uint8_t& value) { return buf_.readUInt8(value); }
    int read(uint16_t& value);
    int read(uint32_t& value);
    int read(uint64_t& value);
    int read(int32_t& value);
    int read(int64_t& value);

    BrxReadBuf& buf_;
    const bool varint_;
};

}  // namespace quorva_zrp::codec
