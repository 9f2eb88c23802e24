// Where a decoder reads. Both sources offer the same steps over values (`integer`, `length`,
// `text`, `bytes`); each returns 0, a result code, or `surprise`.
//
// CheckedSource goes through BrxReadBuf step by step. PredictingSource and QuickSource read what an
// encoder of this protocol writes for input that is all there; of whatever else they meet they
// store nothing and report a surprise: then CheckedSource reads that field, or all.
#pragma once

#include "protocol/codec/field_data.h"
#include "protocol/codec/wire.h"

namespace quorva_zrp::codec {

using Quorva::BrxReadBuf;

// What reading by prediction may give besides a result code.

/// The value is not one that an encoder writes, or not all there: nothing was read.
constexpr int surprise = 1;
/// Another tag comes next than the one expected: nothing was read.
constexpr int otherTag = 2;

constexpr size_t longestVarint = largestInteger(sizeof(uint64_t), true);

/// Of a message from `begin` to `last` whose last byte is not below 0x80: up to where varints may
/// begin so that their bytes need no bounds checks. That is up to a byte below 0x80 near the end,
/// which ends the varint it belongs to, or up to the tenth byte from the end, as no varint takes
/// more. All varints of an encoder begin there. Without such bytes it is `begin`, where no value
/// is.
const char* lastVarintAmong(const char* begin, const char* last);
/// The same for all messages, most of which end in such a byte.
ZRP_INLINE const char* lastVarint(const char* begin, const char* last) {
    return Quorva::brx_detail::byteAt(last, 0) < 0x80 ? last : lastVarintAmong(begin, last);
}

/// The bytes being decoded.
struct Input {
    const char* begin;
    size_t size;             ///< bytes that may be read
    const char* lastVarint;  ///< what the function of this name says

    size_t offsetOf(const char* at) const { return static_cast<size_t>(at - begin); }

    /// Where `length` bytes from `at` on would end. In 64 bits, so that no declared length wraps.
    uint64_t endOf(const char* at, uint64_t length) const { return offsetOf(at) + length; }
};

// Delimited values, where the 4 bytes of their length are known to be there: each returns where the
// value ends, or null, having touched nothing, where CheckedSource has to look at it. Out of line,
// since the copy outweighs the call.

const char* takeText(const char* from, const char* until, char* to, size_t capacity);
const char* takeBytes(const char* from, const char* until, char* to, size_t capacity);

/// The end of a tag of at most three bytes, which all of the catalogue take; null where it does not
/// end there.
const char* takeTag(const char* from, const char* until, uint32_t& tag);

/// The end of a value of any field. Null where it does not end before `until`, or may be one that
/// no encoder writes.
const char* skipChecked(uint32_t wireType, const char* from, const char* until);

/// That many bytes are always a varint; what ten are is for CheckedSource to say.
constexpr ptrdiff_t mostForSure = longestVarint - 1;

/// The same where `mostForSure` bytes are left, for fields that a version of the protocol does not
/// know yet. With a branch of its own for every size, so that processors guess where the next field
/// begins instead of waiting for the tag; no size needs a compare, which compilers would make a
/// wait again.
ZRP_INLINE const char* skipSureValue(uint32_t wireType, const char* from, const char* until) {
    switch (wireType) {
        case wireVarint:
            for (ptrdiff_t i = 0; i < mostForSure; ++i) {
                if (Quorva::brx_detail::byteAt(from, static_cast<size_t>(i)) < 0x80) {
                    return from + i + 1;
                }
            }
            return nullptr;
        case wire1Byte:
            return from + 1;
        case wire2Bytes:
            return from + 2;
        case wire4Bytes:
            return from + 4;
        case wire8Bytes:
            return from + 8;
        case wireDelimited: {
            const uint32_t length = wire::loadHighFirst<uint32_t>(from);
            from += lengthSize;
            return length <= static_cast<size_t>(until - from) ? from + length : nullptr;
        }
        default:
            return nullptr;
    }
}

/// `Inlining` says whether the code of hot nested values becomes part of that of their holder.
template <bool Varint, bool Inlining>
class PredictingSource {
  public:
    /// Reads from `from` up to the byte at `last`, which is no further than that of the message.
    ZRP_INLINE PredictingSource(const char* from, const char* last, const char* lastVarint)
        : at(from),
          lastVarint_(lastVarint),
          last_(last),
          lastVarintHere_(lastVarint < last ? lastVarint : last) {}

    /// Steps over the tag of `Field` if it comes next and enough of its value follows to read on:
    /// of a varint, to its end.
    template <class Field>
    ZRP_INLINE bool acceptTag() {
        using Tag = wire::TagBytes<Field::tag(Varint)>;
        constexpr size_t value = leastValue<Field>();
        const char* const lastValue =
            wireTypeOf<typename Field::type>(Varint) == wireVarint ? lastVarintHere_ : last_;
        if (!reaches<Tag::size + value>(lastValue) || !Tag::template isAt<value>(at)) {
            return false;
        }
        at += Tag::size;
        return true;
    }

    /// Whether there is a tag of `Size` bytes and something behind it.
    template <size_t Size>
    ZRP_INLINE bool holdsTag() const {
        return holds<Size + 1>();
    }

    /// The bytes of a tag of `Size` bytes, the first one lowest.
    template <size_t Size>
    ZRP_INLINE uint32_t tagAhead() const {
        return static_cast<uint32_t>(wire::loadLowFirst<Size, 1>(at));
    }

    /// The number in the next tag, of one byte or two, where there is one; else some number.
    ZRP_INLINE uint32_t numberAhead() const {
        using Quorva::brx_detail::byteAt;
        const uint32_t first = byteAt(at, 0);
        if (first < 0x80) {
            return first / 16;
        }
        return at < last_ ? (first & 0x7F) / 16 + byteAt(at, 1) * 8 : 0;
    }

    /// Reads `Run` if it comes next; with `IsAll` only if it fills what is left. Stores nothing
    /// otherwise.
    template <class Run, bool IsAll>
    ZRP_INLINE bool acceptRun(char* record) {
        static_assert(!Varint);
        const bool isRoom =
            IsAll ? last_ - at == static_cast<ptrdiff_t>(Run::size - 1) : holds<Run::size>();
        if (!isRoom || !Run::isAt(at)) {
            return false;
        }
        Run::read(at, record);
        at += Run::size;
        return true;
    }

    /// Reads an integer into the bytes at `to`.
    template <class Field>
    ZRP_INLINE int integer(Field, char* to) {
        if constexpr (Field::kind() == Kind::integer) {
            typename Field::type value = 0;
            const char* const end = wire::loadInteger<Varint>(at, lastVarint_, value);
            if (end != nullptr) {
                store(to, value);
            }
            return moveTo(end);
        } else {
            return 0;  // unreachable: decodeField calls this for integers only
        }
    }

    ZRP_INLINE int length(uint32_t& value) {
        value = wire::loadHighFirst<uint32_t>(at);
        at += lengthSize;
        return 0;
    }

    ZRP_INLINE int text(char* to, size_t capacity) {
        return moveTo(takeText(at, until(), to, capacity));
    }

    ZRP_INLINE int bytes(char* to, size_t capacity, size_t& stored) {
        const char* const start = at + lengthSize;
        const int result = moveTo(takeBytes(at, until(), to, capacity));
        stored = result == 0 ? static_cast<size_t>(at - start) : 0;
        return result;
    }

    ZRP_INLINE const char* lastVarint() const { return lastVarint_; }

    /// Where reading ends.
    ZRP_INLINE const char* until() const { return last_ + 1; }
    /// The last byte that may be taken.
    ZRP_INLINE const char* last() const { return last_; }

    const char* at;  ///< the next byte

  private:
    /// Whether there are `Size` bytes from `at` to the byte at `last`.
    template <size_t Size>
    ZRP_INLINE bool reaches(const char* last) const {
        if constexpr (Size == 2) {
            return at < last;  // what most fields ask: one compare
        } else {
            // Does not wrap: no input lies where null points.
            return reinterpret_cast<uintptr_t>(at) <=
                   reinterpret_cast<uintptr_t>(last) - (Size - 1);
        }
    }

    /// Whether `Size` more bytes may be taken.
    template <size_t Size>
    ZRP_INLINE bool holds() const {
        return reaches<Size>(last_);
    }

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

    const char* const lastVarint_;
    const char* const last_;
    const char* const lastVarintHere_;
};

// Integers whose size is known at run time.

ZRP_INLINE uint64_t loadFixed(size_t size, const char* from) {
    switch (size) {
        case 1:
            return Quorva::brx_detail::byteAt(from, 0);
        case 2:
            return wire::loadHighFirst<uint16_t>(from);
        case 4:
            return wire::loadHighFirst<uint32_t>(from);
        default:
            return wire::loadHighFirst<uint64_t>(from);
    }
}

ZRP_INLINE void storeInteger(size_t size, char* to, uint64_t value) {
    switch (size) {
        case 1:
            return store(to, static_cast<uint8_t>(value));
        case 2:
            return store(to, static_cast<uint16_t>(value));
        case 4:
            return store(to, static_cast<uint32_t>(value));
        default:
            return store(to, value);
    }
}

/// The value of an integer that travelled as the varint `value`.
ZRP_INLINE uint64_t unpackSign(const FieldData& field, uint64_t value) {
    return field.integerIsSigned ? static_cast<uint64_t>(Quorva::brx_detail::unzigzag(value))
                                 : value;
}

/// Reads fields in any order: tags too, over unknown fields, and sees for itself that values begin
/// before the end. What PredictingSource would not take is a surprise here as well.
class QuickSource {
  public:
    /// `until` is to be set before anything is read.
    QuickSource(const Input& bytes, bool varints)
        : input(bytes), at(bytes.begin), until(bytes.begin), varint(varints) {}

    const Input input;
    const char* at;     ///< the next byte
    const char* until;  ///< where reading ends, no further than the input
    /// The field of a nested value whose length has been read, else null: the loop over the fields
    /// goes on inside it.
    const FieldData* entered = nullptr;
    uint32_t enteredLength = 0;
    const bool varint;

    /// A tag of at most three bytes, which all of the catalogue take.
    ZRP_INLINE int tag(uint32_t& tag) {
        if (at < until && (tag = Quorva::brx_detail::byteAt(at, 0)) < 0x80) {
            ++at;
            return 0;
        }
        return moveTo(takeTag(at, until, tag));
    }

    ZRP_INLINE int integer(const FieldData& field, char* to) {
        const size_t size = field.integerSize;
        uint64_t value = 0;
        if (varint && size != 1) {
            if (at >= until || at > input.lastVarint) {
                return surprise;
            }
            // Of 64 bits whatever the field has: one piece of code.
            const wire::LoadedVarint loaded = wire::loadVarint<64>(at, input.lastVarint);
            if (loaded.end == nullptr ||
                loaded.end - at > static_cast<ptrdiff_t>(largestInteger(size, true)) ||
                loaded.value > UINT64_MAX >> (64 - size * 8)) {
                return surprise;
            }
            at = loaded.end;
            value = unpackSign(field, loaded.value);
        } else {
            if (remaining() < size) {
                return surprise;
            }
            value = loadFixed(size, at);
            at += size;
        }
        storeInteger(size, to, value);
        return 0;
    }

    int length(uint32_t& value);
    int text(char* to, size_t capacity);
    int bytes(char* to, size_t capacity, size_t& stored);

    int skip(uint32_t wireType);

    /// Bytes that may be taken. A varint can go past the end that it begins before.
    size_t remaining() const { return at < until ? static_cast<size_t>(until - at) : 0; }

  private:
    ZRP_INLINE int moveTo(const char* end) {
        if (end == nullptr) {
            return surprise;
        }
        at = end;
        return 0;
    }
};

class CheckedSource {
  public:
    /// Reads the `size` bytes at `begin` from `position` on.
    CheckedSource(const char* begin, size_t size, size_t position, bool varint)
        : buf(begin, size), varint_(varint) {
        buf.position = position;
    }

    BrxReadBuf buf;
    const FieldData* entered = nullptr;  ///< as in QuickSource
    uint32_t enteredLength = 0;

    int tag(uint32_t& tag) { return buf.readVarUInt32(tag); }

    /// Reads an integer into the bytes at `to`: a varint that fails leaves its groups there.
    int integer(const FieldData& field, char* to);

    int length(uint32_t& value) { return buf.readUInt32(value); }

    int text(char* to, size_t capacity);

    /// Stores at most `capacity` bytes, as though one by one: as far as the input goes. `stored` is
    /// how many there were where the declared length was reached, else 0.
    /// Deliberate: when the length exceeds the capacity the rest stays in the input, where the
    /// structure's loop takes it for tags, and it is no error.
    int bytes(char* to, size_t capacity, size_t& stored);

    int skip(uint32_t wireType) {
        return Quorva::BrxTLVUtil::skipUnknownFields(buf, static_cast<int>(wireType));
    }

  private:
    /// Reads a varint of at most `allOnes` into the bytes at `to`, as far as it goes; returns
    /// whether it ended.
    template <class Register>
    bool takeVarint(const FieldData& field, Register allOnes, char* to);

    const bool varint_;
};

}  // namespace quorva_zrp::codec
