// The fields of an encoding in another order or company.
#pragma once

#include <functional>
#include <vector>

#include "tests/oracle/catalogue.h"
#include "tests/support/bytes.h"

namespace zrp_test {

/// Changes the encoded fields of one structure.
using Arrange = std::function<void(std::vector<Bytes>& fields)>;

/// The fields of a sound encoding of `type`, those of each structure in it arranged anew, nested
/// ones first. Unions keep their one field.
Bytes rearranged(const zrp_oracle::Type& type, const Bytes& fields, const Arrange& arrange);

/// The last one first: none comes where a decoder expects it.
Bytes reversed(const zrp_oracle::Type& type, const Bytes& fields);

}  // namespace zrp_test
