// The rows of the digest: one operation of a codec each, with what went in and what came of it.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <functional>

#include "tests/digest/codec.h"

namespace zrp_test {

/// Input and output are wire bytes or a record's view (see view.h).
struct Row {
    const char* operation;
    Bytes input;
    uint64_t room;  ///< bytes of the output buffer; 0 where there is none
    int result;
    uint64_t used;
    long long selector;
    Bytes output;  ///< the whole buffer, or the record with its presence words
};

/// Rows for each type and each flavour; all of them together are more than a million.
constexpr size_t rowsPerLine = 14400;

/// The same operations in the same order on every platform, done by `codec`.
void forEachRow(const TypePair& pair, bool varint, const Codec& codec,
                const std::function<void(const Row&)>& visit);

}  // namespace zrp_test
