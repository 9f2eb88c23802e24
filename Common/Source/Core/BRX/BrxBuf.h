/// \file BrxBuf.h
/// The wire core: result codes, a bounded output cursor, a bounded input cursor, and the tag
/// functions. It knows no message.
///
/// Both cursors work over memory that the caller owns and never allocate. Every operation returns
/// 0 or a negative result code and throws nothing. Fixed-width integers travel most significant
/// byte first; variable-length integers (varints) travel in groups of 7 bits, least significant
/// group first, with bit 0x80 set in every byte but the last.
///
/// A cursor whose `position` lies past its `length` can only come from a broken caller. It is not
/// a result: the operation hands its name, a line number and the expression "position <= length"
/// to the platform's assertion handler, in every build type.
#ifndef QUORVA_BRX_BUF_H
#define QUORVA_BRX_BUF_H

#include <stdarg.h>
#include <stddef.h>
#include <stdint.h>
#include <string.h>

#if defined(__GNUC__)
#define BRX_PRINTF_LIKE(formatIndex, firstArgument) \
    __attribute__((format(printf, formatIndex, firstArgument)))
#define BRX_UNLIKELY(condition) __builtin_expect(!!(condition), 0)
#else
#define BRX_PRINTF_LIKE(formatIndex, firstArgument)
#define BRX_UNLIKELY(condition) (condition)
#endif

namespace Quorva {

// --- Result codes -------------------------------------------------------------------------------
// 0 is success. Codes pass upward unchanged: every operation returns the first non-zero code that
// one of its steps returned.

/// The output buffer lacks room, or formatted text failed or did not fit.
constexpr int32_t BRX_ERR_NO_ROOM = -1;
/// The input ends before the value does, a varint overflows its width, or an envelope declares
/// more bytes than were given. `readVarUInt64` never gives it.
constexpr int32_t BRX_ERR_NO_DATA = -2;
/// A text has no NUL within its capacity, or arrives with a length at or above it.
constexpr int32_t BRX_ERR_TEXT_TOO_LONG = -3;
/// Encoding or printing: a count is above its array's capacity, or an optional element's above 1.
constexpr int32_t BRX_ERR_REFER_TOO_BIG = -7;
/// `writeBytes` or `readBytes` was given a null pointer.
constexpr int32_t BRX_ERR_NULL_BYTES = -8;
/// A message operation was given a null buffer or result pointer, or `packTLV` a size of 0.
constexpr int32_t BRX_ERR_NULL_ARG = -19;
/// The first byte of an encoding is neither 0xAA nor 0x99.
constexpr int32_t BRX_ERR_BAD_MAGIC = -32;
/// A union is encoded with a selector that names none of its members.
constexpr int32_t BRX_ERR_BAD_SELECTOR = -33;
/// Decoding consumed more bytes than the declared length.
constexpr int32_t BRX_ERR_LENGTH_MISMATCH = -34;
/// A field of unknown number carries a wire type id above 5 and cannot be skipped.
constexpr int32_t BRX_ERR_BAD_TYPE_ID = -35;
/// A decode met fewer required fields than the type declares.
constexpr int32_t BRX_ERR_MISSING_REQUIRED = -36;
/// A byte array arrives with length 0.
constexpr int32_t BRX_ERR_ZERO_LENGTH = -37;

namespace brx_detail {

/// Ends the program through the platform's assertion handler. `line` is a fixed number per
/// operation, not the place in this file, so that reports stay comparable between releases.
[[noreturn]] void invariantFailed(const char* operation, int line);

inline void requireInvariant(size_t position, size_t length, const char* operation, int line) {
    if (BRX_UNLIKELY(position > length)) {
        invariantFailed(operation, line);
    }
}

// Bytes are shifted in and out one by one: compilers turn each of these into one load or store
// with a byte swap where the machine needs it, and no alignment or byte order is assumed.

inline void storeBigEndian(char* to, uint16_t value) {
    to[0] = static_cast<char>(value >> 8);
    to[1] = static_cast<char>(value & 0xFF);
}

inline void storeBigEndian(char* to, uint32_t value) {
    to[0] = static_cast<char>(value >> 24);
    to[1] = static_cast<char>((value >> 16) & 0xFF);
    to[2] = static_cast<char>((value >> 8) & 0xFF);
    to[3] = static_cast<char>(value & 0xFF);
}

inline void storeBigEndian(char* to, uint64_t value) {
    to[0] = static_cast<char>(value >> 56);
    to[1] = static_cast<char>((value >> 48) & 0xFF);
    to[2] = static_cast<char>((value >> 40) & 0xFF);
    to[3] = static_cast<char>((value >> 32) & 0xFF);
    to[4] = static_cast<char>((value >> 24) & 0xFF);
    to[5] = static_cast<char>((value >> 16) & 0xFF);
    to[6] = static_cast<char>((value >> 8) & 0xFF);
    to[7] = static_cast<char>(value & 0xFF);
}

inline uint32_t byteAt(const char* from, size_t index) {
    return static_cast<uint8_t>(from[index]);
}

inline void loadBigEndian(const char* from, uint16_t& value) {
    value = static_cast<uint16_t>((byteAt(from, 0) << 8) | byteAt(from, 1));
}

inline void loadBigEndian(const char* from, uint32_t& value) {
    value = (byteAt(from, 0) << 24) | (byteAt(from, 1) << 16) | (byteAt(from, 2) << 8) |
            byteAt(from, 3);
}

inline void loadBigEndian(const char* from, uint64_t& value) {
    uint32_t high = 0;
    uint32_t low = 0;
    loadBigEndian(from, high);
    loadBigEndian(from + 4, low);
    value = (static_cast<uint64_t>(high) << 32) | low;
}

/// Zigzag: small magnitudes of either sign become small unsigned values (0, -1, 1, -2 become
/// 0, 1, 2, 3), so that they take few bytes as varints.
inline uint32_t zigzag(int32_t value) {
    const uint32_t bits = static_cast<uint32_t>(value);
    return (bits << 1) ^ (value < 0 ? ~UINT32_C(0) : UINT32_C(0));
}

inline uint64_t zigzag(int64_t value) {
    const uint64_t bits = static_cast<uint64_t>(value);
    return (bits << 1) ^ (value < 0 ? ~UINT64_C(0) : UINT64_C(0));
}

inline int32_t unzigzag(uint32_t raw) {
    return static_cast<int32_t>((raw >> 1) ^ (~(raw & 1) + 1));
}

inline int64_t unzigzag(uint64_t raw) {
    return static_cast<int64_t>((raw >> 1) ^ (~(raw & 1) + 1));
}

/// Writes `value` as a varint into the `room` bytes at `to` and returns how many bytes it took, or
/// 0 when it does not fit. Deliberate: a value that does not fit leaves its leading groups, each
/// with the continuation bit set, in the bytes that were free.
template <class Unsigned>
inline size_t encodeVarint(char* to, size_t room, Unsigned value) {
    for (size_t i = 0; i < room; ++i) {
        const unsigned group = static_cast<unsigned>(value & 0x7F);
        value = static_cast<Unsigned>(value >> 7);
        to[i] = static_cast<char>(value != 0 ? group | 0x80 : group);
        if (value == 0) {
            return i + 1;
        }
    }
    return 0;
}

/// Reads a varint of at most `allOnes` from the `available` bytes at `from` and returns how many
/// bytes it took, or 0 when the input ends inside it or a group exceeds what is left of the width;
/// `value` holds the groups gathered so far either way.
/// Deliberate: the shift of group i is 7 x i reduced modulo the width of `Register` (32 bits for
/// 16- and 32-bit values, 64 for 64-bit ones), so groups past the width are folded in at the
/// reduced shift instead of being refused.
template <class Register>
inline size_t decodeVarint(const char* from, size_t available, Register allOnes, Register& value) {
    if (available == 0) {
        value = 0;
        return 0;
    }
    // One group is what most tags and small values take, and no width is too narrow for it.
    const uint32_t first = byteAt(from, 0);
    if ((first & 0x80) == 0) {
        value = static_cast<Register>(first);
        return 1;
    }
    Register gathered = static_cast<Register>(first & 0x7F);
    unsigned shift = 7;
    size_t taken = 0;
    for (size_t i = 1; i < available; ++i) {
        const uint32_t byte = byteAt(from, i);
        const uint32_t group = byte & 0x7F;
        if (group > (allOnes >> shift)) {
            break;
        }
        gathered |= static_cast<Register>(group) << shift;
        if ((byte & 0x80) == 0) {
            taken = i + 1;
            break;
        }
        shift = (shift + 7) & (sizeof(Register) * 8 - 1);
    }
    value = gathered & allOnes;
    return taken;
}

}  // namespace brx_detail

// --- Output -------------------------------------------------------------------------------------

/// A bounded output cursor over the caller's memory. It never grows: a write that does not fit
/// returns BRX_ERR_NO_ROOM and leaves `position` where it was. Bytes before `position` are what was
/// written; bytes at and after it are free, and a failed varint or formatted text may have left
/// garbage in them. Used by one thread at a time.
class BrxWriteBuf {
  public:
    /// First byte of the memory written into; null when set over a null pointer.
    char* beginPtr;
    /// Bytes written so far; the next byte goes to beginPtr[position].
    size_t position;
    /// Bytes available; 0 when set over a null pointer.
    size_t length;
    /// When true the destructor releases `beginPtr` with array delete. Nothing here sets it.
    bool ownsMemory;

    /// Borrows `size` bytes at `begin`; a null `begin` makes a buffer of length 0.
    BrxWriteBuf(char* begin, size_t size) : ownsMemory(false) { _set(begin, size); }
    ~BrxWriteBuf() {
        if (ownsMemory) {
            _free();
        }
    }
    BrxWriteBuf(const BrxWriteBuf&) = delete;
    BrxWriteBuf& operator=(const BrxWriteBuf&) = delete;

    /// Aims the cursor at `size` bytes at `begin`, position 0; `ownsMemory` stays as it was.
    void _set(char* begin, size_t size) {
        beginPtr = begin;
        position = 0;
        length = begin != nullptr ? size : 0;
    }
    /// Releases `beginPtr` with array delete if it is not null, then clears it and `ownsMemory`.
    /// Deliberate: `position` and `length` stay as they were; the buffer must be set again before
    /// use.
    void _free();

    size_t getUsedSize() const { return position; }
    size_t getTotalSize() const { return length; }
    char* getBeginPtr() const { return beginPtr; }

    /// Skips `count` bytes without writing them: a hole for a length that is known later.
    int32_t reserve(size_t count) {
        brx_detail::requireInvariant(position, length, "reserve", 153);
        if (count > length - position) {
            return BRX_ERR_NO_ROOM;
        }
        position += count;
        return 0;
    }

    /// Writes `value` and puts a NUL after it that is not counted and that the next write replaces.
    /// Needs 2 free bytes.
    int32_t writeCharWithNull(char value) {
        brx_detail::requireInvariant(position, length, "writeCharWithNull", 203);
        if (length - position < 2) {
            return BRX_ERR_NO_ROOM;
        }
        beginPtr[position] = value;
        beginPtr[++position] = '\0';
        return 0;
    }

    // Fixed width, most significant byte first: 1, 2, 4 or 8 bytes. The signed forms write the
    // two's complement bit pattern through the unsigned writer of their width.

    int32_t writeUInt8(uint8_t value) {
        brx_detail::requireInvariant(position, length, "writeUInt8", 231);
        if (position == length) {
            return BRX_ERR_NO_ROOM;
        }
        beginPtr[position++] = static_cast<char>(value);
        return 0;
    }
    int32_t writeUInt16(uint16_t value) {
        brx_detail::requireInvariant(position, length, "writeUInt16", 251);
        return writeFixed(value);
    }
    int32_t writeUInt32(uint32_t value) {
        brx_detail::requireInvariant(position, length, "writeUInt32", 271);
        return writeFixed(value);
    }
    int32_t writeUInt64(uint64_t value) {
        brx_detail::requireInvariant(position, length, "writeUInt64", 291);
        return writeFixed(value);
    }
    int32_t writeInt8(int8_t value) { return writeUInt8(static_cast<uint8_t>(value)); }
    int32_t writeInt32(int32_t value) { return writeUInt32(static_cast<uint32_t>(value)); }
    int32_t writeInt64(int64_t value) { return writeUInt64(static_cast<uint64_t>(value)); }

    /// Copies `count` bytes from `source`, which may overlap the buffer. A null `source` gives
    /// BRX_ERR_NULL_BYTES, whatever `count` is.
    int32_t writeBytes(const void* source, size_t count) {
        if (source == nullptr) {
            return BRX_ERR_NULL_BYTES;
        }
        brx_detail::requireInvariant(position, length, "writeBytes", 325);
        if (count > length - position) {
            return BRX_ERR_NO_ROOM;
        }
        if (count != 0) {
            memmove(beginPtr + position, source, count);
        }
        position += count;
        return 0;
    }

    // Positional writes fill a hole made with `reserve`. They never move `position` and are bounded
    // by `length`, not by `position`.

    int32_t writeUInt8(uint8_t value, size_t pos) {
        brx_detail::requireInvariant(position, length, "writeUInt8", 356);
        if (pos > length || length - pos < 1) {
            return BRX_ERR_NO_ROOM;
        }
        beginPtr[pos] = static_cast<char>(value);
        return 0;
    }
    int32_t writeUInt32(uint32_t value, size_t pos) {
        brx_detail::requireInvariant(position, length, "writeUInt32", 404);
        if (pos > length || length - pos < sizeof(value)) {
            return BRX_ERR_NO_ROOM;
        }
        brx_detail::storeBigEndian(beginPtr + pos, value);
        return 0;
    }
    int32_t writeChar(char value, size_t pos) {
        return writeUInt8(static_cast<uint8_t>(value), pos);
    }

    // Varints: at most 3, 5 and 10 bytes for 16, 32 and 64 bits. The signed forms are
    // zigzag-mapped first.

    int32_t writeVarUInt16(uint16_t value) {
        brx_detail::requireInvariant(position, length, "writeVarUInt16", 497);
        return writeVarint(value);
    }
    int32_t writeVarInt32(int32_t value) {
        brx_detail::requireInvariant(position, length, "writeVarInt32", 513);
        return writeVarint(brx_detail::zigzag(value));
    }
    int32_t writeVarUInt32(uint32_t value) {
        brx_detail::requireInvariant(position, length, "writeVarUInt32", 529);
        return writeVarint(value);
    }
    int32_t writeVarInt64(int64_t value) {
        brx_detail::requireInvariant(position, length, "writeVarInt64", 545);
        return writeVarint(brx_detail::zigzag(value));
    }
    int32_t writeVarUInt64(uint64_t value) {
        brx_detail::requireInvariant(position, length, "writeVarUInt64", 561);
        return writeVarint(value);
    }

    /// Formats like `snprintf` and advances past the text; its NUL stays in memory, uncounted.
    /// BRX_ERR_NO_ROOM when the text and its NUL do not fit: what fitted stays in the free bytes.
    int32_t textize(const char* format, ...) BRX_PRINTF_LIKE(2, 3);
    /// As `textize`. Deliberate: a position past the length is BRX_ERR_NO_ROOM here, not an
    /// assertion.
    int32_t vtextize(const char* format, va_list arguments) BRX_PRINTF_LIKE(2, 0);

  private:
    template <class Unsigned>
    int32_t writeFixed(Unsigned value) {
        if (length - position < sizeof(value)) {
            return BRX_ERR_NO_ROOM;
        }
        brx_detail::storeBigEndian(beginPtr + position, value);
        position += sizeof(value);
        return 0;
    }

    template <class Unsigned>
    int32_t writeVarint(Unsigned value) {
        const size_t taken =
            brx_detail::encodeVarint(beginPtr + position, length - position, value);
        position += taken;
        return taken != 0 ? 0 : BRX_ERR_NO_ROOM;
    }
};

// --- Input --------------------------------------------------------------------------------------

/// A bounded input cursor over the caller's bytes. A failing reader returns a result code and
/// leaves `position` where it was; a fixed-width reader then leaves its result untouched, a varint
/// reader may have put a partial value there. Used by one thread at a time.
class BrxReadBuf {
  public:
    /// First byte of the input; null when set over a null pointer.
    const char* beginPtr;
    /// Bytes consumed so far; the next byte read is beginPtr[position].
    size_t position;
    /// Bytes available; 0 when set over a null pointer.
    size_t length;

    /// Borrows `size` bytes at `begin`; a null `begin` makes a buffer of length 0.
    BrxReadBuf(const char* begin, size_t size) { set(begin, size); }

    /// Aims the cursor at `size` bytes at `begin`, position 0.
    void set(const char* begin, size_t size) {
        beginPtr = begin;
        position = 0;
        length = begin != nullptr ? size : 0;
    }

    size_t getUsedSize() const { return position; }

    // Fixed width, most significant byte first; BRX_ERR_NO_DATA when fewer bytes remain.

    int32_t readUInt8(uint8_t& value) {
        brx_detail::requireInvariant(position, length, "readUInt8", 663);
        if (position == length) {
            return BRX_ERR_NO_DATA;
        }
        value = static_cast<uint8_t>(beginPtr[position++]);
        return 0;
    }
    int32_t readUInt16(uint16_t& value) {
        brx_detail::requireInvariant(position, length, "readUInt16", 683);
        return readFixed(value);
    }
    int32_t readUInt32(uint32_t& value) {
        brx_detail::requireInvariant(position, length, "readUInt32", 703);
        return readFixed(value);
    }
    int32_t readUInt64(uint64_t& value) {
        brx_detail::requireInvariant(position, length, "readUInt64", 723);
        return readFixed(value);
    }
    int32_t readInt8(int8_t& value) {
        uint8_t bits = static_cast<uint8_t>(value);
        const int32_t result = readUInt8(bits);
        value = static_cast<int8_t>(bits);
        return result;
    }
    int32_t readInt32(int32_t& value) {
        uint32_t bits = static_cast<uint32_t>(value);
        const int32_t result = readUInt32(bits);
        value = static_cast<int32_t>(bits);
        return result;
    }
    int32_t readInt64(int64_t& value) {
        uint64_t bits = static_cast<uint64_t>(value);
        const int32_t result = readUInt64(bits);
        value = static_cast<int64_t>(bits);
        return result;
    }

    /// Copies `count` bytes to `destination`, which may overlap the input; all or nothing. A null
    /// `destination` gives BRX_ERR_NULL_BYTES, whatever `count` is.
    int32_t readBytes(void* destination, size_t count) {
        if (destination == nullptr) {
            return BRX_ERR_NULL_BYTES;
        }
        brx_detail::requireInvariant(position, length, "readBytes", 767);
        if (count > length - position) {
            return BRX_ERR_NO_DATA;
        }
        if (count != 0) {
            memmove(destination, beginPtr + position, count);
        }
        position += count;
        return 0;
    }

    // Varints. BRX_ERR_NO_DATA when the input ends inside the value or a group exceeds the width;
    // the result then holds the groups gathered so far.

    int32_t readVarUInt16(uint16_t& value) {
        brx_detail::requireInvariant(position, length, "readVarUInt16", 948);
        uint32_t wide = 0;
        const int32_t result = readVarint<uint32_t>(0xFFFF, wide);
        value = static_cast<uint16_t>(wide);
        return result;
    }
    int32_t readVarInt32(int32_t& value) {
        brx_detail::requireInvariant(position, length, "readVarInt32", 964);
        uint32_t raw = 0;
        const int32_t result = readVarint<uint32_t>(UINT32_MAX, raw);
        value = brx_detail::unzigzag(raw);
        return result;
    }
    int32_t readVarUInt32(uint32_t& value) {
        brx_detail::requireInvariant(position, length, "readVarUInt32", 980);
        return readVarint<uint32_t>(UINT32_MAX, value);
    }
    int32_t readVarInt64(int64_t& value) {
        brx_detail::requireInvariant(position, length, "readVarInt64", 996);
        uint64_t raw = 0;
        const int32_t result = readVarint<uint64_t>(UINT64_MAX, raw);
        value = brx_detail::unzigzag(raw);
        return result;
    }
    /// Deliberate: unlike the other varint readers this one always returns 0. A value that is cut
    /// short or overflows leaves `position` where it was and `value` with the groups gathered; the
    /// tag read that follows then fails on the same bytes.
    int32_t readVarUInt64(uint64_t& value) {
        brx_detail::requireInvariant(position, length, "readVarUInt64", 1043);
        size_t used = 0;
        decode_64_var(beginPtr + position, length - position, used, value, 0);
        position += used;
        return 0;
    }

    /// Steps over `count` bytes; BRX_ERR_NO_DATA when fewer remain.
    int32_t skipForward(size_t count) {
        brx_detail::requireInvariant(position, length, "skipForward", 1059);
        if (count > length - position) {
            return BRX_ERR_NO_DATA;
        }
        position += count;
        return 0;
    }

    /// The decoding step of `readVarUInt64`: stores the groups gathered in `value` and the bytes
    /// taken in `used`, 0 on failure. `status` is taken by value, so a failure shows in `used`
    /// only.
    static void decode_64_var(const char* from, size_t available, size_t& used, uint64_t& value,
                              int status) {
        (void)status;
        used = brx_detail::decodeVarint<uint64_t>(from, available, UINT64_MAX, value);
    }

  private:
    template <class Unsigned>
    int32_t readFixed(Unsigned& value) {
        if (length - position < sizeof(value)) {
            return BRX_ERR_NO_DATA;
        }
        brx_detail::loadBigEndian(beginPtr + position, value);
        position += sizeof(value);
        return 0;
    }

    template <class Register>
    int32_t readVarint(Register allOnes, Register& value) {
        const size_t taken =
            brx_detail::decodeVarint(beginPtr + position, length - position, allOnes, value);
        position += taken;
        return taken != 0 ? 0 : BRX_ERR_NO_DATA;
    }
};

// --- Tags ---------------------------------------------------------------------------------------

/// Field tags. A tag is fieldId x 16 + typeId and travels as an unsigned varint. The wire type id
/// alone tells how to step over a value: 0 varint, 1 to 4 fixed 1, 2, 4 or 8 bytes, 5 a 4-byte
/// length and that many bytes.
class BrxTLVUtil {
  public:
    /// fieldId x 16 + typeId. Deliberate: added, not masked, so makeTag(1, 16) is 32.
    static uint32_t makeTag(int fieldId, int typeId) {
        return static_cast<uint32_t>(fieldId) * 16 + static_cast<uint32_t>(typeId);
    }
    static uint32_t getFieldId(uint32_t tag) { return tag >> 4; }
    static uint32_t getTypeId(uint32_t tag) { return tag & 0x0F; }

    /// Steps over one value of wire type `typeId`. BRX_ERR_NO_DATA when the input ends inside it
    /// (for type 5 after the 4 length bytes were consumed), BRX_ERR_BAD_TYPE_ID for a type id
    /// outside 0 to 5. Deliberate: a varint that is cut short is passed over without moving.
    static int32_t skipUnknownFields(BrxReadBuf& buf, int typeId);
};

}  // namespace Quorva

#endif  // QUORVA_BRX_BUF_H
