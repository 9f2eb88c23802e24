// What every test of the messages needs: records over dirty memory, and encode, decode and print
// calls reduced to one comparable value each. Expectations stay with the tests.
#pragma once

#include <gtest/gtest.h>
#include <limits.h>
#include <stdint.h>
#include <string.h>

#include <algorithm>
#include <concepts>
#include <memory>
#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

#include "protocol/quorva_zrp.h"
#include "tests/support/bytes.h"
#include "tests/support/recorder.h"

namespace zrp_test {

/// The flavours, as `packTLV` takes them.
constexpr bool varint = true;
constexpr bool fixed = false;

/// What memory holds before a call that should not touch it.
constexpr unsigned char untouched = 0xA5;

/// What a used size holds before a call that may not store one.
constexpr size_t notStored = SIZE_MAX - 1;

/// What an output selector holds before a decode.
constexpr long long noSelector = -99;

// --- Records ------------------------------------------------------------------------------------

/// A record, not constructed, whose every byte is `untouched`.
template <class T>
T dirty() {
    T object;
    memset(static_cast<void*>(&object), untouched, sizeof(object));
    return object;
}

/// A record constructed over dirty memory.
template <class T>
T made() {
    T object;
    memset(static_cast<void*>(&object), untouched, sizeof(object));
    EXPECT_EQ(object.construct(), 0);
    return object;
}

/// A union over dirty memory with one member constructed.
template <class U>
U made(long long selector) {
    U object;
    memset(static_cast<void*>(&object), untouched, sizeof(object));
    EXPECT_EQ(object.construct(selector), 0);
    return object;
}

/// The memory of an object, to see what a call changed.
template <class T>
std::string image(const T& object) {
    return toHex(&object, sizeof(object));
}

/// Stores a text and its NUL; the rest of the capacity stays as it is.
template <size_t N>
void put(char (&text)[N], const std::string& content) {
    ASSERT_LT(content.size(), N);
    memcpy(text, content.c_str(), content.size() + 1);
}

/// Fills a whole text with one character, leaving no NUL.
template <size_t N>
void putWithoutNul(char (&text)[N], char character) {
    memset(text, character, N);
}

/// Stores bytes at the start of an array; the rest stays as it is.
template <size_t N>
void put(uint8_t (&array)[N], const std::string& digits) {
    const Bytes bytes = hex(digits);
    ASSERT_LE(bytes.size(), N);
    memcpy(array, bytes.data(), bytes.size());
}

/// The first `count` bytes of an array.
template <class Element, size_t N>
std::string head(const Element (&array)[N], size_t count) {
    EXPECT_LE(count, N);
    return toHex(array, count < N ? count : N);
}

// --- Bytes --------------------------------------------------------------------------------------

/// `count` bytes of the same value: "5A 5A 5A".
inline std::string repeated(unsigned char value, size_t count) {
    return toHex(std::string(count, static_cast<char>(value)).data(), count);
}

/// `count` bytes, each one more than the one before: "40 41 42".
inline std::string counting(unsigned char first, size_t count) {
    std::string bytes;
    for (size_t i = 0; i < count; ++i) {
        bytes += static_cast<char>(first + i);
    }
    return toHex(bytes.data(), count);
}

/// An encoding as its envelope and its fields.
struct Encoding {
    std::string envelope;
    std::vector<std::string> fields;

    std::string fieldBytes() const {
        std::string digits;
        for (const std::string& field : fields) {
            digits += ' ' + field;
        }
        return digits;
    }
    std::string all() const { return envelope + fieldBytes(); }
};

// --- Encoding -----------------------------------------------------------------------------------

/// What an encoding call left behind. `after` holds the bytes behind the used ones where one of
/// them was touched, and is empty where none was.
struct Written {
    int result;
    size_t used;
    std::string bytes;
    std::string after;

    bool operator==(const Written& other) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Written& written) {
    return out << "result " << written.result << ", used " << written.used << ": " << written.bytes
               << (written.after.empty() ? "" : ", after it ") << written.after;
}

/// The expectation: this result, these bytes, nothing touched behind them.
inline Written written(int result, const std::string& digits) {
    const Bytes bytes = hex(digits);
    return {result, bytes.size(), toHex(bytes), ""};
}

/// Gives `pack` a dirty array of `room` bytes and a place for the used size.
template <class Pack>
Written capture(size_t room, Pack pack) {
    Bytes bytes(room, static_cast<char>(untouched));
    size_t used = notStored;
    const int result = pack(bytes.data(), room, &used);
    if (used > room) {
        return {result, used, "", "used size outside of the buffer"};
    }
    const Bytes rest(bytes.begin() + static_cast<ptrdiff_t>(used), bytes.end());
    const bool restUntouched = rest == Bytes(rest.size(), static_cast<char>(untouched));
    return {result, used, toHex(bytes.data(), used), restUntouched ? "" : toHex(rest)};
}

constexpr size_t plentyOfRoom = 8192;

template <class T>
Written encode(const T& object, bool flavour, size_t room = plentyOfRoom) {
    return capture(room, [&](char* buffer, size_t size, size_t* used) {
        return object.packTLV(buffer, size, used, flavour);
    });
}

template <class U>
Written encode(long long selector, const U& object, bool flavour, size_t room = plentyOfRoom) {
    return capture(room, [&](char* buffer, size_t size, size_t* used) {
        return object.packTLV(selector, buffer, size, used, flavour);
    });
}

/// Encodes the fields alone, without envelope.
template <class T>
Written encodeFields(const T& object, bool flavour, size_t room = plentyOfRoom) {
    return capture(room, [&](char* buffer, size_t size, size_t* used) {
        Quorva::BrxWriteBuf buf(buffer, size);
        const int result =
            flavour == varint ? object.packTLVWithVarint(buf) : object.packTLVNoVarint(buf);
        *used = buf.getUsedSize();
        return result;
    });
}

template <class U>
Written encodeFields(long long selector, const U& object, bool flavour,
                     size_t room = plentyOfRoom) {
    return capture(room, [&](char* buffer, size_t size, size_t* used) {
        Quorva::BrxWriteBuf buf(buffer, size);
        const int result = flavour == varint ? object.packTLVWithVarint(selector, buf)
                                             : object.packTLVNoVarint(selector, buf);
        *used = buf.getUsedSize();
        return result;
    });
}

// --- Decoding -----------------------------------------------------------------------------------

/// What a decoding call returned.
struct Read {
    int result;
    size_t used;

    bool operator==(const Read& other) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Read& read) {
    return out << "result " << read.result << ", used " << read.used;
}

/// Input in memory of exactly its size, so that a sanitizer sees a read past its end; never null.
class Input {
  public:
    explicit Input(const std::string& digits) {
        const Bytes bytes = hex(digits);
        size_ = bytes.size();
        memory_ = std::make_unique<char[]>(size_);
        std::copy(bytes.begin(), bytes.end(), memory_.get());
    }
    const char* data() const { return memory_.get(); }
    size_t size() const { return size_; }

  private:
    std::unique_ptr<char[]> memory_;
    size_t size_ = 0;
};

template <class T>
Read decode(T& object, const std::string& digits) {
    const Input input(digits);
    size_t used = notStored;
    const int result = object.unpackTLV(input.data(), input.size(), &used);
    return {result, used};
}

template <class U>
Read decode(U& object, long long& selector, const std::string& digits) {
    const Input input(digits);
    size_t used = notStored;
    const int result = object.unpackTLV(selector, input.data(), input.size(), &used);
    return {result, used};
}

/// Decodes fields without envelope, `length` bytes of the input being said to belong to them.
template <class T>
Read decodeFields(T& object, const std::string& digits, bool flavour, size_t length) {
    const Input input(digits);
    Quorva::BrxReadBuf buf(input.data(), input.size());
    const int result = flavour == varint ? object.unpackTLVWithVarint(buf, length)
                                         : object.unpackTLVNoVarint(buf, length);
    return {result, buf.getUsedSize()};
}

template <class T>
Read decodeFields(T& object, const std::string& digits, bool flavour) {
    return decodeFields(object, digits, flavour, hex(digits).size());
}

template <class U>
Read decodeFields(U& object, long long& selector, const std::string& digits, bool flavour,
                  size_t length) {
    const Input input(digits);
    Quorva::BrxReadBuf buf(input.data(), input.size());
    const int result = flavour == varint ? object.unpackTLVWithVarint(selector, buf, length)
                                         : object.unpackTLVNoVarint(selector, buf, length);
    return {result, buf.getUsedSize()};
}

template <class U>
Read decodeFields(U& object, long long& selector, const std::string& digits, bool flavour) {
    return decodeFields(object, selector, digits, flavour, hex(digits).size());
}

// --- Printing -----------------------------------------------------------------------------------

/// The formats of 64-bit fields: `long` where it has 64 bits, so that the text is the same on every
/// platform.
constexpr bool longHas64Bits = sizeof(long) * CHAR_BIT == 64;
constexpr const char* formatOfInt64 = longHas64Bits ? "%ld" : "%lld";
constexpr const char* formatOfUInt64 = longHas64Bits ? "%lu" : "%llu";

using Calls = std::vector<PrintCall>;

// Expected calls are written down as at indent 0 with a newline as separator.

inline Calls byte(const char* label, const char* printed) {
    return {value(0, '\n', label, "0x%02x", printed)};
}
inline Calls decimal(const char* label, const char* printed) {
    return {value(0, '\n', label, "%d", printed)};
}
inline Calls unsigned32(const char* label, const char* printed) {
    return {value(0, '\n', label, "%u", printed)};
}
inline Calls unsigned64(const char* label, const char* printed) {
    return {value(0, '\n', label, formatOfUInt64, printed)};
}
inline Calls signed64(const char* label, const char* printed) {
    return {value(0, '\n', label, formatOfInt64, printed)};
}
inline Calls bytes(const char* label, long long count) {
    return {array(0, '\n', label, count)};
}
inline Calls characters(const char* label, const char* content) {
    return {text(0, '\n', label, content)};
}

inline Calls join(const std::vector<Calls>& parts) {
    Calls all;
    for (const Calls& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

/// A heading and, one level deeper, what stands under it.
inline Calls under(const char* label, const std::vector<Calls>& parts) {
    Calls all{heading(0, '\n', label)};
    for (PrintCall call : join(parts)) {
        ++call.indent;
        all.push_back(call);
    }
    return all;
}

/// The same calls at another indent and separator: levels count from `indent` on and stop at the
/// largest int; a negative indent is the level of everything.
inline Calls at(Calls calls, int indent, char separator) {
    for (PrintCall& call : calls) {
        const int deeper = indent > INT_MAX - call.indent ? INT_MAX : indent + call.indent;
        call.indent = indent < 0 ? indent : deeper;
        call.separator = separator;
    }
    return calls;
}

/// What a print call left behind: result, calls of the formatting functions, text.
struct Dump {
    int result;
    Calls calls;
    std::string text;
};

/// Runs `print` over a buffer; the call numbered `failing` fails with `failure`.
template <class Print>
Dump captureDump(Print print, size_t failing = SIZE_MAX, int failure = 0) {
    Recorder recorder;
    recorder.failAt(failing, failure);
    Bytes memory(1 << 16, static_cast<char>(untouched));
    Quorva::BrxWriteBuf buf(memory.data(), memory.size());
    const int result = print(buf);
    return {result, recorder.calls(), std::string(memory.data(), buf.getUsedSize())};
}

template <class T>
Dump dump(const T& object, int indent = 0, char separator = '\n') {
    return captureDump(
        [&](Quorva::BrxWriteBuf& buf) { return object.visualize(buf, indent, separator); });
}

template <class U>
Dump dumpMember(long long selector, const U& object, int indent = 0, char separator = '\n') {
    return captureDump([&](Quorva::BrxWriteBuf& buf) {
        return object.visualize(selector, buf, indent, separator);
    });
}

}  // namespace zrp_test
