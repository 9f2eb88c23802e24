// How much the differential tests do.
#pragma once

#include <stddef.h>

#include <vector>

#include "tests/differential/random.h"

namespace zrp_test {

/// How often the random parts repeat: the environment variable ZRP_DIFFERENTIAL_ROUNDS, 1 without
/// it.
size_t differentialRounds();

/// Every size from 0 to `last` when there are at most `most` of them; else the first and the last
/// thirty, and `most` more spread between them at random.
std::vector<size_t> sizesUpTo(size_t last, size_t most, Random& random);

}  // namespace zrp_test
