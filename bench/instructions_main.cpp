// Counts instructions: runs cases under valgrind's callgrind, which writes a profile of each. Made
// to be called by instructions.sh.
//
//     instructions NAME...   the cases whose names begin with one of these
//
// Every case is run twice, for `count` and for 2 x `count` operations; the difference is free of
// what is done once.
#include <stdio.h>
#include <valgrind/callgrind.h>

#include <string>
#include <string_view>

#include "bench/all_cases.h"

namespace zrp_bench {

namespace {

/// A multiple of the values that a message has, so that both runs take all of them equally often.
constexpr size_t count = 4096;

void profile(Task& task, const std::string& name, size_t operations) {
    const std::string label = name + " " + std::to_string(operations);
    // Collected from here to the dump.
    CALLGRIND_ZERO_STATS;
    task.run(operations);
    CALLGRIND_DUMP_STATS_AT(label.c_str());
}

void measure(const Case& one) {
    const std::unique_ptr<Task> task = one.make(0);
    task->run(count);  // binds library functions, fills caches of allocators
    CALLGRIND_START_INSTRUMENTATION;
    profile(*task, one.name, count);
    profile(*task, one.name, 2 * count);
    CALLGRIND_STOP_INSTRUMENTATION;
}

bool isAskedFor(std::string_view name, int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        if (name.substr(0, std::string_view(argv[i]).size()) == argv[i]) {
            return true;
        }
    }
    return false;
}

}  // namespace

}  // namespace zrp_bench

int main(int argc, char** argv) {
    using namespace zrp_bench;
    for (const Case& one : allCases()) {
        if (isAskedFor(one.name, argc, argv)) {
            measure(one);
        }
    }
    return 0;
}
