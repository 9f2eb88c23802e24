// Gathers the mutants of a file, and what puts them to sleep.
#pragma once

#include <string>
#include <vector>

#include "tests/mutation/mutants.h"
#include "tests/mutation/syntax.h"

namespace zrp_test::mutation {

class Collector {
  public:
    /// For the file that the mutants call `file`, numbered from `number` on.
    Collector(std::string file, unsigned number) : file_(std::move(file)), number_(number) {}

    const Mutations& found() const { return found_; }

    /// Around what lies in a function, a class or a constant.
    void enter(const std::string& name) { names_.push_back(name); }
    void leave() { names_.pop_back(); }

    /// Begins the mutants of a place. Returns what follows the name of the function of asleep.h.
    std::string beginPlace();
    std::string placeCall() const { return "<" + std::to_string(place_) + ">("; }

    /// Adds a mutant of the place that was begun.
    void add(const std::string& operation, unsigned begin, unsigned end,
             const std::string& replacement);

    /// The last mutant takes a build of its own.
    void isNoCode() { found_.mutants.back().isAsleep = false; }

    /// Changes of the text for the place that was begun.
    void wrap(const Range& range, const std::string& before, const std::string& behind);
    void replace(unsigned begin, unsigned end, const std::string& by);

  private:
    std::string file_;
    unsigned number_;
    unsigned place_ = 0;
    std::vector<std::string> names_;
    Mutations found_;
};

}  // namespace zrp_test::mutation
