// How a fuzz target says that something that must hold does not: loudly, with all it takes to see
// what went wrong.
#pragma once

#include <stdint.h>
#include <stdlib.h>

#include <iostream>
#include <string>

#include "tests/support/bytes.h"

namespace zrp_fuzz {

/// Bytes that a report shows in hexadecimal; formatted only when there is a report.
struct Shown {
    const void* from;
    size_t count;
};

inline Shown shown(const zrp_test::Bytes& bytes) {
    return {bytes.data(), bytes.size()};
}

inline std::ostream& operator<<(std::ostream& out, const Shown& bytes) {
    return out << zrp_test::toHex(bytes.from, bytes.count);
}

/// Ends the program with a report made of the pieces.
template <class... Pieces>
[[noreturn, gnu::noinline, gnu::cold]] void fail(const Pieces&... pieces) {
    std::cerr << "fuzz: ";
    (std::cerr << ... << pieces) << std::endl;
    abort();
}

/// Ends the program with a report made of the pieces unless `holds`.
template <class... Pieces>
inline void require(bool holds, const Pieces&... pieces) {
    if (!holds) [[unlikely]] {
        fail(pieces...);
    }
}

}  // namespace zrp_fuzz
