// Which operators become which, and the function of asleep.h that stands for each.
#pragma once

#include <string>
#include <vector>

namespace zrp_test::mutation {

struct OperatorMutations {
    std::string spelling;
    std::string function;
    std::vector<std::string> others;  ///< operators that may stand there instead
    bool isSwapped = false;           ///< last, the two sides change places
    bool changesLeft = false;         ///< an assignment
};

/// What the types of the two sides allow.
enum class Sides { numbers, pointerAndNumber, unknown };

/// The mutations of a binary operator; null for one that has none.
const OperatorMutations* mutationsOf(const std::string& spelling, Sides sides);

}  // namespace zrp_test::mutation
