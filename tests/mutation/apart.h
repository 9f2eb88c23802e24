// Mutants that no test program meets because they live in constant evaluation: tables, sizes,
// template arguments. Each is built by itself.
#pragma once

#include <string>
#include <vector>

#include "tests/mutation/trial.h"

namespace zrp_test::mutation {

/// Where things lie.
struct Places {
    std::string repository;
    std::string programs;  ///< the build of the test programs, with their objects
    std::string scratch;   ///< for this worker alone
    std::string compiler;
};

/// Compiles the library with this change, links the tests to it and runs them. A build that fails
/// by a static assertion is a kill; one that fails otherwise is no C++.
Verdict tryApart(const Mutant& mutant, const std::vector<Program>& programs, const Places& places);

}  // namespace zrp_test::mutation
