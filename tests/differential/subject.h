// What the differential tests work on: a message type on both sides, and records of it.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <iosfwd>
#include <string>
#include <vector>

#include "tests/differential/random.h"
#include "tests/oracle/catalogue.h"
#include "tests/support/bytes.h"
#include "tests/support/message_types.h"

namespace zrp_test {

/// One message type: the library's and the oracle's.
struct TypePair {
    const MessageType* library;
    const zrp_oracle::Type* oracle;
};

std::ostream& operator<<(std::ostream& out, const TypePair& pair);

/// All 35, for a parameterised test.
std::vector<TypePair> typePairs();

/// A record and the selector that names its live member (0 for structures, which have none).
struct Subject {
    Bytes record;
    long long selector = 0;
};

/// Bytes a record takes here, with room for a trailing body where the type has one.
size_t recordSize(const TypePair& pair);

/// How many ways there are to choose the live members of a type: give `randomSubject` each number
/// below this as `variant`, and every member of its unions is chosen once.
size_t variantCount(const zrp_oracle::Type& type);

enum class Soundness {
    sound,     ///< can be encoded
    doubtful,  ///< may hold counts above capacity, texts without NUL, flags above 1, bad selectors
};

/// A record of noise with chosen values in its fields.
Subject randomSubject(const TypePair& pair, Random& random, size_t variant, Soundness soundness);

/// Chooses a value for every field, the same ones on every platform, and the selector of a union.
/// What lies between the fields, and members that are not live, stay as they were.
void chooseValues(const TypePair& pair, Subject& subject, Random& random, uint64_t variant,
                  Soundness soundness);

/// A record to decode into: noise, constructed over noise, or zeroes.
Subject randomTarget(const TypePair& pair, Random& random);

/// Cuts the count of a trailing body to what `recordSize` has room for.
void limitTrailingBody(const zrp_oracle::Type& type, void* record);

/// A selector that no sound caller would pass: next to a member's number, negative or very large.
long long strangeSelector(const zrp_oracle::Type& type, Random& random);

}  // namespace zrp_test
