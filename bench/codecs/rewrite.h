// Encodings with the same values and another order of fields, made from ordinary ones.
#pragma once

#include <stdint.h>

#include <string>
#include <string_view>

#include "tests/oracle/catalogue.h"

namespace zrp_bench {

enum class Rewrite {
    reverse,     ///< the fields of every structure in reverse order
    addUnknown,  ///< a field of unknown number after every field of every structure
};

/// An encoding of `type`, envelope included, rewritten. Ends the program for a malformed one.
std::string rewritten(const zrp_oracle::Type& type, std::string_view encoding, Rewrite how);

/// What follows the envelope of an encoding; and fields with an envelope around them.
std::string_view fieldsOf(std::string_view encoding);
std::string withEnvelope(std::string_view fields, bool varint);

std::string tag(uint32_t number, unsigned typeId);
std::string delimited(uint32_t number, std::string_view content);
/// A field of a number that no type has; wire types take turns with `turn`.
std::string unknownField(size_t turn);

}  // namespace zrp_bench
