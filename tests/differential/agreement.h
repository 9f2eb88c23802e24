// How a test says that both sides agree.
#pragma once

#include <gtest/gtest.h>

#include "tests/differential/compare.h"

namespace zrp_test {

inline testing::AssertionResult agree(const Difference& difference) {
    return difference.empty() ? testing::AssertionSuccess()
                              : testing::AssertionFailure() << difference;
}

}  // namespace zrp_test
