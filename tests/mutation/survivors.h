// How mutants are named, and the list of those that may survive.
//
// An entry names file and function, the line as it is (-) and as it becomes (+), and the reason
// behind a colon, which stands for all changes since the last one. It begins with `same`, where the
// change makes no difference, or `slower`, where it makes one in speed alone:
//
//     protocol/codec/wire.cpp storeLongVarint
//     - if (value <= UINT32_MAX) {
//     + if (value < UINT32_MAX) {
//     : same: the longer way stores the same bytes
//
// "#2" behind the function is the second such change in it.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/mutation/mutants.h"

namespace zrp_test::mutation {

struct Name {
    std::string place;   ///< file and function, the occurrence where there are several
    std::string before;  ///< the lines that change, without the blanks around them
    std::string after;

    auto operator<=>(const Name&) const = default;
};

/// The names of all mutants, in their order. The files are those below `repository`.
std::vector<Name> namesOf(const std::vector<Mutant>& mutants, const std::string& repository);

struct Reason {
    bool isSame = false;
    std::string text;
};
using Reasons = std::map<Name, Reason>;

/// Reads a list.
Reasons readReasons(const std::string& path);

/// The entry as the list has it, without a reason.
std::string entryOf(const Name& name);

}  // namespace zrp_test::mutation
