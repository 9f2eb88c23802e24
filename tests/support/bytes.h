// Byte strings for expectations: written as hexadecimal text, shown as hexadecimal text.
#pragma once

#include <stdint.h>

#include <cctype>
#include <stdexcept>
#include <string>
#include <vector>

namespace zrp_test {

using Bytes = std::vector<char>;

/// The bytes written as pairs of hexadecimal digits, blanks between pairs ignored: "AA 00 1f".
inline Bytes hex(const std::string& digits) {
    Bytes bytes;
    for (size_t i = 0; i < digits.size();) {
        if (std::isspace(static_cast<unsigned char>(digits[i])) != 0) {
            ++i;
            continue;
        }
        size_t used = 0;
        const unsigned long value = std::stoul(digits.substr(i, 2), &used, 16);
        if (used != 2) {
            throw std::invalid_argument("hex: not a pair of digits at " + digits.substr(i, 2));
        }
        bytes.push_back(static_cast<char>(value));
        i += 2;
    }
    return bytes;
}

/// The first `count` bytes at `from` as upper-case pairs with blanks between: "AA 00 1F".
inline std::string toHex(const void* from, size_t count) {
    static const char digits[] = "0123456789ABCDEF";
    const unsigned char* bytes = static_cast<const unsigned char*>(from);
    std::string text;
    for (size_t i = 0; i < count; ++i) {
        if (i != 0) {
            text += ' ';
        }
        text += digits[bytes[i] >> 4];
        text += digits[bytes[i] & 0x0F];
    }
    return text;
}

inline std::string toHex(const Bytes& bytes) {
    return toHex(bytes.data(), bytes.size());
}

}  // namespace zrp_test
