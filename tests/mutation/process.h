// Runs a program and says how it ended.
#pragma once

#include <string>
#include <vector>

namespace zrp_test::mutation {

enum class Ending { success, failure, crash, time };

struct Run {
    Ending ending = Ending::success;
    double seconds = 0;  ///< of processor time
};

/// Runs `command` with these variables in its environment (NAME=VALUE) beside those of this
/// process; what it prints goes to the file `output`. It is ended after `seconds` of processor
/// time, which other work on the machine does not use up, or ten times that many on the clock.
Run run(const std::vector<std::string>& command, const std::vector<std::string>& variables,
        const std::string& output, double seconds);

}  // namespace zrp_test::mutation
