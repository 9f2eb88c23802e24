// Goes through what the tests only sample: all 32-bit values, all messages of up to three bytes of
// fields, for every type and flavour. `./dev exhaust` builds and runs it.
#include <stdio.h>
#include <stdlib.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <mutex>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include "tests/hardening/exhaustion/sweeps.h"

namespace zrp_test {
namespace {

constexpr const char* usage =
    R"(Usage: exhaust [--estimate] [--jobs N] [--done FILE] [NAME]

  NAME         only the tasks whose name matches this regular expression
  --jobs N     work on N tasks at once (default: as many as there are processors)
  --done FILE  keep the finished tasks in FILE and pass over those in it, so that a
               run that was stopped goes on where it was
  --estimate   do one in 257 of each task and tell how long all would take
)";

/// A piece of work small enough to be lost when a run is stopped.
struct Task {
    std::string name;
    uint64_t cases;
    std::function<std::string(uint64_t step)> run;  ///< every `step`-th case
};

struct Outcome {
    uint64_t cases = 0;
    double seconds = 0;
};

struct Options {
    bool estimate = false;
    unsigned jobs = std::max(1u, std::thread::hardware_concurrency());
    std::string doneFile;
    std::string name;
};

std::vector<Task> allTasks() {
    std::vector<Task> tasks;
    tasks.push_back({"integers/16", 1 << 16, [](uint64_t step) {
                         return sweep16BitValues({0, step, 1 << 16});
                     }});
    constexpr uint64_t piece = uint64_t{1} << 28;
    for (uint64_t first = 0; first < uint64_t{1} << 32; first += piece) {
        char name[32];
        snprintf(name, sizeof(name), "integers/32/%X", static_cast<unsigned>(first / piece));
        tasks.push_back({name, piece, [first](uint64_t step) {
                             return sweep32BitValues({first, step, first + piece});
                         }});
    }
    for (size_t length = 1; length <= 3; ++length) {
        tasks.push_back(
            {"varints/" + std::to_string(length), stringsOf(length), [length](uint64_t step) {
                 return sweepVarintInputs(length, {0, step, stringsOf(length)});
             }});
    }
    for (const TypePair& pair : typePairs()) {
        for (const bool varint : {true, false}) {
            for (size_t length = 0; length <= 3; ++length) {
                tasks.push_back(
                    {std::string("bodies/") + pair.library->name +
                         (varint ? "/varint/" : "/fixed/") + std::to_string(length),
                     stringsOf(length), [=](uint64_t step) {
                         return sweepBodies(pair, varint, length, {0, step, stringsOf(length)});
                     }});
            }
        }
    }
    return tasks;
}

/// What earlier runs finished: name, cases and seconds of a task on each line.
std::map<std::string, Outcome> readDone(const std::string& path) {
    std::map<std::string, Outcome> done;
    FILE* const file = path.empty() ? nullptr : fopen(path.c_str(), "r");
    if (file != nullptr) {
        char name[128];
        unsigned long long cases = 0;
        double seconds = 0;
        while (fscanf(file, "%127s %llu %lf", name, &cases, &seconds) == 3) {
            done[name] = {cases, seconds};
        }
        fclose(file);
    }
    return done;
}

class Runner {
  public:
    explicit Runner(const Options& options)
        : options_(options),
          tasks_(allTasks()),
          outcomes_(options.estimate ? std::map<std::string, Outcome>()
                                     : readDone(options.doneFile)) {
        const std::regex wanted(options.name);
        std::erase_if(tasks_,
                      [&](const Task& task) { return !std::regex_search(task.name, wanted); });
    }

    int run() {
        if (tasks_.empty()) {
            fprintf(stderr, "exhaust: no task has a name like '%s'\n", options_.name.c_str());
            return 2;
        }
        std::vector<std::thread> workers;
        for (unsigned i = 0; i < options_.jobs; ++i) {
            workers.emplace_back([this] { work(); });
        }
        for (std::thread& worker : workers) {
            worker.join();
        }
        printTable();
        return failures_ == 0 ? 0 : 1;
    }

  private:
    void work() {
        for (size_t index = next_++; index < tasks_.size(); index = next_++) {
            const Task& task = tasks_[index];
            if (!isDone(task)) {
                runOne(task);
            }
        }
    }

    bool isDone(const Task& task) {
        const std::lock_guard<std::mutex> lock(mutex_);
        return outcomes_.count(task.name) != 0;
    }

    void runOne(const Task& task) {
        // A prime: every byte of a string takes every value.
        const uint64_t step = options_.estimate ? 257 : 1;
        const auto start = std::chrono::steady_clock::now();
        const std::string difference = task.run(step);
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
        const double scale = static_cast<double>(step);
        const std::lock_guard<std::mutex> lock(mutex_);
        if (!difference.empty()) {
            ++failures_;
            printf("FAILED %s: %s\n", task.name.c_str(), difference.c_str());
            return;
        }
        const Outcome outcome{task.cases, taken.count() * scale};
        outcomes_[task.name] = outcome;
        note(task, outcome);
    }

    void note(const Task& task, const Outcome& outcome) const {
        fprintf(stderr, "%s: %llu cases, %.1f s\n", task.name.c_str(),
                static_cast<unsigned long long>(outcome.cases), outcome.seconds);
        if (options_.estimate || options_.doneFile.empty()) {
            return;
        }
        FILE* const file = fopen(options_.doneFile.c_str(), "a");
        if (file == nullptr) {
            fprintf(stderr, "exhaust: cannot write %s: this task will be done again\n",
                    options_.doneFile.c_str());
            return;
        }
        fprintf(file, "%s %llu %.3f\n", task.name.c_str(),
                static_cast<unsigned long long>(outcome.cases), outcome.seconds);
        fclose(file);
    }

    /// A line for each group of tasks: the name up to the last slash.
    void printTable() const {
        std::map<std::string, Outcome> groups;
        Outcome all;
        size_t finished = 0;
        for (const Task& task : tasks_) {
            const auto found = outcomes_.find(task.name);
            if (found == outcomes_.end()) {
                continue;
            }
            ++finished;
            const std::string name = task.name.substr(0, task.name.rfind('/'));
            for (Outcome* const sum : {&groups[name], &all}) {
                sum->cases += found->second.cases;
                sum->seconds += found->second.seconds;
            }
        }
        printf("%-44s %14s %9s\n", "", "cases", "seconds");
        for (const auto& [name, sum] : groups) {
            printf("%-44s %14llu %9.1f\n", name.c_str(), static_cast<unsigned long long>(sum.cases),
                   sum.seconds);
        }
        printf("%-44s %14llu %9.1f\n", options_.estimate ? "estimated for all" : "all",
               static_cast<unsigned long long>(all.cases), all.seconds);
        printf("%zu of %zu tasks agree, %d differ\n", finished, tasks_.size(), failures_);
    }

    const Options options_;
    std::vector<Task> tasks_;
    std::map<std::string, Outcome> outcomes_;
    std::mutex mutex_;
    std::atomic<size_t> next_{0};
    int failures_ = 0;
};

[[noreturn]] void refuse(const std::string& what) {
    fprintf(stderr, "exhaust: %s\n%s", what.c_str(), usage);
    exit(2);
}

Options parse(int count, char** arguments) {
    Options options;
    for (int i = 1; i < count; ++i) {
        const std::string argument = arguments[i];
        const bool takesValue = argument == "--jobs" || argument == "--done";
        if (takesValue && i + 1 == count) {
            refuse(argument + " needs a value");
        }
        if (argument == "--help") {
            printf("%s", usage);
            exit(0);
        } else if (argument == "--estimate") {
            options.estimate = true;
        } else if (argument == "--jobs") {
            options.jobs = static_cast<unsigned>(strtoul(arguments[++i], nullptr, 10));
            if (options.jobs == 0) {
                refuse(std::string("--jobs takes a number from 1 up, not ") + arguments[i]);
            }
        } else if (argument == "--done") {
            options.doneFile = arguments[++i];
        } else if (argument.starts_with("-") || !options.name.empty()) {
            refuse("does not know " + argument);
        } else {
            options.name = argument;
        }
    }
    return options;
}

}  // namespace
}  // namespace zrp_test

int main(int count, char** arguments) {
    return zrp_test::Runner(zrp_test::parse(count, arguments)).run();
}
