// Texts and byte arrays of records, as the peers exchange them.
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include <span>
#include <string_view>

namespace zrp_bench {

/// The content of a text in a record. Records under measurement are well-formed: the NUL is there.
template <size_t N>
std::string_view textOf(const char (&text)[N]) {
    return {text, strnlen(text, N)};
}

/// Stores a text; false when it is too long.
template <size_t N>
[[nodiscard]] bool putText(char (&to)[N], std::string_view text) {
    if (text.size() >= N) {
        return false;
    }
    memcpy(to, text.data(), text.size());
    to[text.size()] = '\0';
    return true;
}

/// Stores bytes that have a count; false when there are too many.
template <size_t N, class Count>
[[nodiscard]] bool putBytes(uint8_t (&to)[N], Count& count, const void* from, size_t size) {
    if (size > N) {
        return false;
    }
    memcpy(to, from, size);
    count = static_cast<Count>(size);
    return true;
}

/// Stores bytes that fill their array; false when there are more or fewer.
template <size_t N>
[[nodiscard]] bool fillBytes(uint8_t (&to)[N], const void* from, size_t size) {
    if (size != N) {
        return false;
    }
    memcpy(to, from, N);
    return true;
}

inline std::string_view asText(const uint8_t* bytes, size_t size) {
    return {reinterpret_cast<const char*>(bytes), size};
}

}  // namespace zrp_bench
