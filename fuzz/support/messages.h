// What the targets that work on messages have in common: which type, records with known contents
// before an operation, wire bytes in an envelope.
#pragma once

#include "fuzz/support/input.h"
#include "tests/differential/subject.h"

namespace zrp_fuzz {

using zrp_test::Subject;
using zrp_test::TypePair;

/// All types, in the order in which inputs number them.
const std::vector<TypePair>& numberedTypes();

/// The type that one byte of the input names.
const TypePair& chosenType(Input& input);

bool hasTrailingBody(const TypePair& type);

/// A record of noise, and one whose every bit and selector bit is the opposite.
Subject noise(const TypePair& type, uint8_t seed);
Subject opposite(const Subject& record);

/// The rest of the input as one encoding. A byte of choices says whether the input brings its own
/// envelope; else one is put in front: around all of it, around what is left when the last bytes
/// are cut off, or so that the last bytes lie behind its end.
Bytes wireBytes(Input& input);

/// The length that an encoding of at least 5 bytes declares.
uint32_t declaredLength(const Bytes& encoding);

/// Room for any encoding of the type, the body behind a frame included.
size_t roomFor(const TypePair& type);

struct Encoding {
    int result;
    Bytes bytes;  ///< as many as are used
};

/// The library's encoding of a record, into plenty of room.
Encoding encode(const TypePair& type, const Subject& record, bool varint);

}  // namespace zrp_fuzz
