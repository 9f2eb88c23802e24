// Finds what can be changed in a source file.
#pragma once

#include <string>

#include "tests/mutation/mutants.h"
#include "tests/mutation/syntax.h"

namespace zrp_test::mutation {

/// The mutants of one file of a unit, numbered from `firstNumber` on. `name` is what the mutants
/// call it, `text` what it holds.
Mutations findMutants(const Unit& unit, CXFile file, const std::string& name,
                      const std::string& text, unsigned firstNumber);

}  // namespace zrp_test::mutation
