// What a run says at its end.
#pragma once

#include <string>
#include <vector>

#include "tests/mutation/survivors.h"
#include "tests/mutation/trial.h"

namespace zrp_test::mutation {

struct Outcome {
    std::vector<Mutant> mutants;
    std::vector<Name> names;
    std::vector<Verdict> verdicts;
};

/// Whether a file belongs to the wire core, which is tried first and summed up by itself.
bool isWireCore(const std::string& file);

/// A table with a line per file, and the scores: how many are killed of those that are not listed
/// as the same.
std::string tableOf(const Outcome& outcome, const Reasons& reasons);

/// What keeps a run from passing: survivors without a reason, reasons of what is killed or no
/// mutant, and, where all mutants were tried, scores below the aims. Empty when all is well.
std::string complaintsOf(const Outcome& outcome, const Reasons& reasons, bool isWhole);

}  // namespace zrp_test::mutation
