#include "tests/mutation/trial.h"

#include <filesystem>
#include <stdexcept>

#include "tests/mutation/process.h"

namespace zrp_test::mutation {

namespace {

/// A program whose mutant does not end is given this many times what it takes, and some more.
constexpr double patience = 3;
constexpr double leastPatience = 1;
/// One that was built apart may be built otherwise.
constexpr double patienceApart = 10;
constexpr double firstPatience = 600;

/// The first failure says enough.
const std::vector<std::string> brief = {"GTEST_FAIL_FAST=1", "GTEST_BRIEF=1"};

}  // namespace

Program::Program(const std::string& directory, const Tests& tests, const std::string& scratch)
    : tests_(tests), path_(directory + "/" + tests.program) {
    const std::string record = scratch + "/met-" + tests.name;
    const std::string output = scratch + "/" + tests.name + ".log";
    std::filesystem::remove(record);
    std::vector<std::string> variables = brief;
    variables.push_back("GTEST_FILTER=" + tests.filter);
    variables.push_back("ZRP_MUTANTS_MET=" + record);
    const Run asWritten = zrp_test::mutation::run({path_}, variables, output, firstPatience);
    if (asWritten.ending != Ending::success) {
        throw std::runtime_error("the tests of " + path_ + " fail without a mutant: see " + output);
    }
    seconds_ = asWritten.seconds;
    met_ = readFile(record);
}

Verdict Program::run(unsigned mutant, const std::string& path, const std::string& output) const {
    std::vector<std::string> variables = brief;
    variables.push_back("GTEST_FILTER=" + tests_.filter);
    variables.push_back("ZRP_MUTANT=" + std::to_string(mutant));
    const double limit = (mutant != 0 ? patience : patienceApart) * seconds_ + leastPatience;
    const Run awake = zrp_test::mutation::run({path}, variables, output, limit);
    if (awake.ending == Ending::success) {
        return {Verdict::survived, "", false};
    }
    return {Verdict::killed, tests_.name, awake.ending == Ending::time};
}

Verdict tryMutant(const Mutant& mutant, const std::vector<Program>& programs,
                  const std::string& output) {
    Verdict verdict{Verdict::unreached, "", false};
    for (const Program& program : programs) {
        if (mutant.isAsleep && program.meets(mutant.number)) {
            verdict = program.run(mutant.number, program.path(), output);
            if (verdict.kind == Verdict::killed) {
                break;
            }
        }
    }
    return verdict;
}

}  // namespace zrp_test::mutation
