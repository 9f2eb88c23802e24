// Where a decoder reads. Both sources offer the same steps; each returns 0, a result code, or
// `surprise`.
//
// CheckedSource goes through BrxReadBuf step by step. PredictingSource reads what an encoder of
// this protocol writes for input that is all there; whatever else it meets it leaves untouched and
// reports as a surprise, and the field is then read again through CheckedSource.
#pragma once

#include "protocol/codec/wire.h"

namespace quorva_zrp::codec {

using Quorva::BrxReadBuf;
using Quorva::BrxWriteBuf;

/// Not a result code: the predicting source met something it does not handle and did nothing.
constexpr int surprise = 1;

/// The bytes being decoded.
struct Input {
    const char* begin;
    size_t length;
    /// A varint that begins before this offset has its end inside the input, or 10 bytes of input,
    /// which no varint of an encoder exceeds: its bytes need no bounds checks of their own.
    size_t varintsBefore;

    Input(const char* from, size_t size) : begin(from), length(size), varintsBefore(size) {
        constexpr size_t longest = largestInteger<uint64_t>(true);
        while (varintsBefore != 0 && size - varintsBefore < longest - 1 &&
               Quorva::brx_detail::byteAt(from, varintsBefore - 1) >= 0x80) {
            --varintsBefore;
        }
    }
};

template <bool Varint>
class PredictingSource {
  public:
    /// Reads from `from` on. Fields in order are taken only before `until`, at most the length of
    /// the input.
    PredictingSource(const Input& input, size_t from, size_t until)
        : at(input.begin + from), input_(input) {
        const size_t safe = Varint ? input.varintsBefore : input.length;
        until_ = input.begin + (until < safe ? until : safe);
    }

    /// Steps over the tag of `Field` if it comes next and enough of its value follows to read on.
    template <class Field>
    bool acceptTag() {
        using Tag = wire::TagBytes<Field::tag(Varint)>;
        if (until_ - at < static_cast<ptrdiff_t>(Tag::size + leastValue<Field>()) ||
            !Tag::isAt(at)) {
            return false;
        }
        at += Tag::size;
        return true;
    }

    int tag(uint32_t& tag) {
        const char* const end =
            offset() < input_.varintsBefore ? wire::loadVarint<32>(at, tag) : nullptr;
        if (end == nullptr) {
            return surprise;
        }
        at = end;
        return 0;
    }

    /// Whether enough input follows for the value of `Field`, where its tag came through `tag`.
    template <class Field>
    bool hasValue() const {
        return until_ - at >= static_cast<ptrdiff_t>(leastValue<Field>());
    }

    /// Reads an integer into the bytes at `to`.
    template <class Integer>
    int integer(char* to) {
        Integer value = 0;
        const char* const end = wire::loadInteger<Varint>(at, value);
        if (end == nullptr) {
            return surprise;
        }
        store(to, value);
        at = end;
        return 0;
    }

    int length(uint32_t& value) {
        Quorva::brx_detail::loadBigEndian(at, value);
        at += lengthSize;
        return 0;
    }

    int text(char* to, size_t capacity) {
        uint32_t size = 0;
        (void)length(size);
        if (size >= capacity || size > remaining()) {
            return surprise;
        }
        memcpy(to, at, size);
        to[size] = '\0';
        at += size;
        return 0;
    }

    int bytes(char* to, size_t capacity, size_t& stored) {
        uint32_t size = 0;
        (void)length(size);
        if (size == 0 || size > capacity || size > remaining()) {
            return surprise;
        }
        memcpy(to, at, size);
        at += size;
        stored = size;
        return 0;
    }

    int skip(uint32_t /*wireType*/) { return surprise; }

    const Input& input() const { return input_; }
    size_t offset() const { return static_cast<size_t>(at - input_.begin); }
    void moveTo(size_t offset) { at = input_.begin + offset; }

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

    size_t remaining() const { return input_.length - offset(); }

    const Input& input_;
    const char* until_;
};

class CheckedSource {
  public:
    CheckedSource(const Input& input, size_t from, bool varint)
        : buf_(input.begin, input.length), input_(input), varint_(varint) {
        buf_.position = from;
    }

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

    const Input& input() const { return input_; }
    bool varint() const { return varint_; }
    size_t offset() const { return buf_.position; }
    void moveTo(size_t offset) { buf_.position = offset; }

  private:
    int read(uint8_t& value) { return buf_.readUInt8(value); }
    int read(uint16_t& value);
    int read(uint32_t& value);
    int read(uint64_t& value);
    int read(int32_t& value);
    int read(int64_t& value);

    BrxReadBuf buf_;
    const Input& input_;
    const bool varint_;
};

}  // namespace quorva_zrp::codec
