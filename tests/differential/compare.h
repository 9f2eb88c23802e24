// One operation done by the library and by the oracle, and everything that can be seen of it
// compared: results, sizes, selectors, every byte of the output buffer and of the record.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <string>

#include "tests/differential/subject.h"

namespace zrp_test {

/// What the two sides disagree about, with all it takes to do it again; empty when they agree.
using Difference = std::string;

/// The whole message, envelope included, into a buffer of `size` bytes.
Difference comparePack(const TypePair& pair, const Subject& subject, size_t size, bool varint);

/// The fields alone, into a buffer of `size` bytes of which `start` are used already.
Difference comparePackFields(const TypePair& pair, const Subject& subject, size_t start,
                             size_t size, bool varint);

/// A decode of `input` into a copy of `target`; `result`, when given, gets the record afterwards.
Difference compareUnpack(const TypePair& pair, const Subject& target, const Bytes& input,
                         Subject* result = nullptr);

/// The fields alone, from position `start` of `input`, over `length` bytes.
Difference compareUnpackFields(const TypePair& pair, const Subject& target, const Bytes& input,
                               size_t start, size_t length, bool varint);

/// Fields encoded into, decoded from and printed into buffers over no memory.
Difference compareWithoutMemory(const TypePair& pair, const Subject& subject, bool varint);

Difference compareConstruct(const TypePair& pair, const Subject& target);

/// How a dump goes: its look, the size of its buffer, and a failure of a formatting function.
struct DumpStyle {
    int indent;
    char separator;
    size_t size;
    size_t failingCall = SIZE_MAX;  ///< the formatting function called as this one fails
};

/// A dump into an array: result, used size, array and the calls of formatting functions.
Difference compareVisualize(const TypePair& pair, const Subject& subject, const DumpStyle& style);

/// The same into a buffer of which `start` bytes are used already.
Difference compareVisualizeFrom(const TypePair& pair, const Subject& subject, size_t start,
                                const DumpStyle& style);

}  // namespace zrp_test
