// What a run is told to do.
#pragma once

#include <stdint.h>

#include <chrono>
#include <string>

#include "examples/conversation/fault.h"

namespace conversation {

struct Options {
    bool clientVarint = true;
    bool serverVarint = false;
    bool dump = false;
    std::string save;  ///< empty: keep nothing
    bool force = false;
    uint16_t port = 0;  ///< 0: any free one
    uint32_t queueNotices = 5;
    std::chrono::milliseconds pause{150};
    std::chrono::milliseconds timeout{5000};
    const Fault* fault = nullptr;  ///< null: none
};

/// Reads the command line. Returns true to go on; otherwise the program ends with `exitCode` (after
/// `--help`, or after a message about an option).
bool readOptions(int argc, char** argv, Options& options, int& exitCode);

}  // namespace conversation
