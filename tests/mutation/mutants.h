// What the mutator found: places in a source file that can be changed, and what they become.
#pragma once

#include <string>
#include <vector>

namespace zrp_test::mutation {

/// One change of one file, as a replacement of the characters [begin, end).
struct Mutant {
    unsigned number = 0;
    unsigned place = 0;     ///< number of the first mutant of the same place
    std::string file;       ///< from the repository root
    std::string function;   ///< that it lies in, or the constant
    std::string operation;  ///< what kind of change it is
    unsigned begin = 0;
    unsigned end = 0;
    std::string replacement;
    bool isAsleep =
        true;  ///< lies asleep in the rewritten sources; else it takes a build of its own
};

/// A change of the text that puts a place's mutants to sleep. Texts in front of a place and behind
/// it nest as the places do: those that were added first are the outer ones.
struct Insertion {
    unsigned begin = 0;
    unsigned end = 0;  ///< what is replaced; `begin` where nothing is
    bool isBehind = false;
    std::string text;
    unsigned place = 0;  ///< whose it is
};

/// Of one file.
struct Mutations {
    std::vector<Mutant> mutants;
    std::vector<Insertion> insertions;
};

/// `text` with all mutants in it that are asleep.
std::string rewrite(const std::string& text, const Mutations& mutations);

/// All mutants as lines of a file, and back.
std::string toLines(const std::vector<Mutant>& mutants);
std::vector<Mutant> fromLines(const std::string& lines);

std::string readFile(const std::string& path);
/// Leaves a file alone that already holds this, so that nothing is built again for it.
void writeFile(const std::string& path, const std::string& text);

}  // namespace zrp_test::mutation
