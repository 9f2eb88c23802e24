// Times every case with Google Benchmark. `--check` only runs each of them once, which compares all
// results. `--first-repetition=N`, in front of all others, goes on where another process ended.
// Other options are Google Benchmark's.
#include <benchmark/benchmark.h>
#include <stdio.h>
#include <string.h>

#include <algorithm>
#include <memory>
#include <string_view>

#include "bench/all_cases.h"
#include "bench/harness/stretch.h"

namespace zrp_bench {

namespace {

/// Times `one`. Each repetition prepares everything anew, with bytes at another place, and says how
/// fast the processor was before and after it.
void registerCase(const Case& one, size_t firstRepetition) {
    const auto repetitions = std::make_shared<size_t>(firstRepetition);
    benchmark::RegisterBenchmark(one.name.c_str(), [one, repetitions](benchmark::State& state) {
        const std::unique_ptr<Task> task = one.make((*repetitions)++);
        const size_t batch = batchFor(task->bytes());
        task->run(batch);
        const double before = timeStretch();
        while (state.KeepRunningBatch(static_cast<benchmark::IterationCount>(batch))) {
            task->run(batch);
        }
        state.counters["stretch"] = std::max(before, timeStretch());
        state.counters["bytes"] = task->bytes();
    });
}

/// Runs `one` on one thread and on two, each with objects and buffers of its own.
void registerThreads(const Case& one) {
    const std::string name = "threads/" + one.name;
    benchmark::RegisterBenchmark(
        name.c_str(),
        [one](benchmark::State& state) {
            const std::unique_ptr<Task> task = one.make(0);
            const size_t batch = batchFor(task->bytes());
            task->run(batch);
            while (state.KeepRunningBatch(static_cast<benchmark::IterationCount>(batch))) {
                task->run(batch);
            }
            state.SetItemsProcessed(state.iterations());
        })
        ->Threads(1)
        ->Threads(2)
        ->UseRealTime();
}

bool isMeasuredOnThreads(std::string_view name) {
    const auto has = [&](std::string_view part) { return name.find(part) != name.npos; };
    const bool message = has("/M1/") || has("/M2/") || has("/M4/");
    const bool codec = has("/zrp-") || has("/protobuf-reused") || has("/protobuf-heap");
    return message && codec;
}

void checkAll(const Cases& cases) {
    for (const Case& one : cases) {
        one.make(0)->run(2);
    }
    printf("%zu cases give the right results\n", cases.size());
}

}  // namespace

}  // namespace zrp_bench

int main(int argc, char** argv) {
    using namespace zrp_bench;
    const Cases cases = allCases();
    if (argc == 2 && strcmp(argv[1], "--check") == 0) {
        checkAll(cases);
        return 0;
    }
    size_t firstRepetition = 0;
    if (argc > 1 && sscanf(argv[1], "--first-repetition=%zu", &firstRepetition) == 1) {
        argv[1] = argv[0];
        ++argv;
        --argc;
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    for (const Case& one : cases) {
        registerCase(one, firstRepetition);
        if (isMeasuredOnThreads(one.name)) {
            registerThreads(one);
        }
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
