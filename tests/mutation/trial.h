// The test programs, and what they say of a mutant.
#pragma once

#include <string>
#include <vector>

#include "tests/mutation/mutants.h"

namespace zrp_test::mutation {

/// What became of a mutant.
struct Verdict {
    enum Kind { untried, killed, survived, unreached, invalid } kind = untried;
    std::string by;  ///< the program that killed it, or "compiler"
    bool byTime = false;
};

/// What a test program is called here, its file, and which of its tests are run.
struct Tests {
    std::string name;
    std::string program;
    std::string filter = "*";
};

/// One of the test programs, which lie in `directory`.
class Program {
  public:
    /// Runs it with no mutant awake, to learn which ones it meets and how long it takes. Throws
    /// when its tests fail.
    Program(const std::string& directory, const Tests& tests, const std::string& scratch);

    const Tests& tests() const { return tests_; }
    bool meets(unsigned mutant) const { return met_.at(mutant) != 0; }

    /// Runs it with this mutant awake, or, with 0, as the program of this path.
    Verdict run(unsigned mutant, const std::string& path, const std::string& output) const;
    const std::string& path() const { return path_; }

  private:
    Tests tests_;
    std::string path_;
    std::string met_;
    double seconds_ = 0;
};

/// Runs the programs that meet the mutant until one fails.
Verdict tryMutant(const Mutant& mutant, const std::vector<Program>& programs,
                  const std::string& output);

}  // namespace zrp_test::mutation
