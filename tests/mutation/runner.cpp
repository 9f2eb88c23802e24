// runner REPOSITORY BUILD [OPTION...]
// Tries the mutants; ./dev mutate --help tells what the options mean.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <exception>
#include <fstream>
#include <map>
#include <mutex>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "tests/mutation/apart.h"
#include "tests/mutation/report.h"

using namespace zrp_test::mutation;

namespace {

// The quick and sharp ones first.
const std::string every = "Every*";
const std::string butEvery = "-Every*";
const std::vector<Tests> allTests = {{"brx", "brx_tests"},
                                     {"silent_host", "silent_host_tests"},
                                     {"promises", "promises_tests"},
                                     {"text", "text_tests"},
                                     {"messages", "messages_tests", butEvery},
                                     {"validate", "validate_tests"},
                                     {"straight", "straight_tests"},
                                     {"compact_messages", "compact_messages_tests", butEvery},
                                     {"small_messages", "small_messages_tests", butEvery},
                                     {"every_message", "messages_tests", every},
                                     {"compact_every_message", "compact_messages_tests", every},
                                     {"small_every_message", "small_messages_tests", every},
                                     {"differential", "differential_tests"},
                                     {"compact_differential", "compact_differential_tests"},
                                     {"small_differential", "small_differential_tests"},
                                     {"hardening", "hardening_tests"}};

struct Options {
    std::string repository;
    std::string build;
    std::regex file{""};
    std::regex programs{""};
    bool list = false;
    bool again = false;  ///< only what survived the last run
    unsigned only = 0;
    bool isWhole = true;  ///< no option restricts the mutants
    bool apart = true;    ///< whether to build survivors without a reason
    size_t builds = 0;    ///< how many of what no program meets to build, evenly spread
    std::string compiler = "clang++-19";
};

unsigned numberFrom(const std::string& option, const std::string& word) {
    if (!std::regex_match(word, std::regex("[1-9][0-9]{0,8}"))) {
        throw std::runtime_error(option + " takes a positive number, not '" + word + "'");
    }
    return static_cast<unsigned>(std::stoul(word));
}

Options optionsFrom(int argc, char** argv) {
    Options options{argv[1], argv[2]};
    for (int i = 3; i < argc; ++i) {
        const std::string word = argv[i];
        const auto value = [&]() -> std::string {
            if (++i == argc) {
                throw std::runtime_error(word + " takes a value");
            }
            return argv[i];
        };
        if (word == "--file") {
            options.isWhole = false;
            options.file = value();
        } else if (word == "--programs") {
            options.programs = value();
        } else if (word == "--only") {
            options.isWhole = false;
            options.only = numberFrom(word, value());
            options.builds = std::max(options.builds, size_t{1});
        } else if (word == "--list") {
            options.list = true;
        } else if (word == "--again") {
            options.again = true;
        } else if (word == "--no-builds") {
            options.apart = false;
        } else if (word == "--builds") {
            options.builds = numberFrom(word, value());
        } else {
            throw std::runtime_error("unknown option " + word);
        }
    }
    return options;
}

class Runner {
  public:
    explicit Runner(const Options& options) : options_(options) {
        outcome_.mutants = fromLines(readFile(options.build + "/subject/mutants.txt"));
        outcome_.names = namesOf(outcome_.mutants, options.repository);
        outcome_.verdicts.resize(outcome_.mutants.size());
        reasons_ = readReasons(options.repository + "/tests/mutation/survivors.txt");
    }

    int run() {
        choose();
        if (options_.list) {
            for (const size_t i : chosen_) {
                std::printf("%u %s", outcome_.mutants[i].number,
                            entryOf(outcome_.names[i]).c_str());
            }
            return 0;
        }
        for (const Tests& tests : allTests) {
            if (std::regex_search(tests.name, options_.programs)) {
                programs_.emplace_back(options_.build + "/programs", tests,
                                       options_.build + "/scratch");
            }
        }
        tryAll(false);
        chooseApart();
        tryAll(true);
        const std::string complaints = complaintsOf(outcome_, reasons_, options_.isWhole);
        std::printf("%s%s", complaints.c_str(), tableOf(outcome_, reasons_).c_str());
        return complaints.empty() ? 0 : 1;
    }

  private:
    const Options options_;
    Outcome outcome_;
    Reasons reasons_;
    std::vector<Verdict> last_;  ///< of the last runs
    std::vector<size_t> chosen_;
    std::vector<Program> programs_;
    std::atomic<size_t> next_ = 0;
    std::mutex mutex_;
    std::exception_ptr failure_;
    size_t done_ = 0;
    size_t survivors_ = 0;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();

    void choose() {
        load();
        if (options_.again) {
            outcome_.verdicts = last_;
        }
        for (size_t i = 0; i < outcome_.mutants.size(); ++i) {
            const Mutant& mutant = outcome_.mutants[i];
            if (std::regex_search(mutant.file, options_.file) &&
                (options_.only == 0 || options_.only == mutant.number) && isToBeTried(i)) {
                chosen_.push_back(i);
            }
        }
        std::stable_partition(chosen_.begin(), chosen_.end(),
                              [&](size_t i) { return isWireCore(outcome_.mutants[i].file); });
    }

    /// Where only survivors are tried again, those with a reason are known.
    bool isToBeTried(size_t i) const {
        const Verdict::Kind kind = outcome_.verdicts[i].kind;
        return !options_.again || (kind != Verdict::killed && kind != Verdict::invalid &&
                                   reasons_.count(outcome_.names[i]) == 0);
    }

    /// A sample of what no program met; and what survived without a reason, since the
    /// compiler may evaluate it in other places.
    void chooseApart() {
        std::vector<size_t> unreached;
        std::vector<size_t> survived;
        for (const size_t i : chosen_) {
            const Verdict::Kind kind = outcome_.verdicts[i].kind;
            if (kind == Verdict::unreached) {
                unreached.push_back(i);
            } else if (kind == Verdict::survived && reasons_.count(outcome_.names[i]) == 0) {
                survived.push_back(i);
            }
        }
        chosen_.clear();
        const size_t most = std::min(options_.builds, unreached.size());
        for (size_t i = 0; i < unreached.size(); ++i) {
            // As many of every stretch.
            if ((i + 1) * most / unreached.size() != i * most / unreached.size()) {
                chosen_.push_back(unreached[i]);
            } else {
                outcome_.verdicts[unreached[i]].kind = Verdict::untried;
            }
        }
        std::printf("%zu of %zu changes of what is evaluated by the compiler are built\n",
                    chosen_.size(), unreached.size());
        if (options_.apart && !survived.empty()) {
            std::printf("so are %zu survivors, which the compiler may evaluate as well\n",
                        survived.size());
            chosen_.insert(chosen_.end(), survived.begin(), survived.end());
        }
    }

    void tryAll(bool apart) {
        next_ = done_ = survivors_ = 0;
        start_ = std::chrono::steady_clock::now();
        std::thread other([&] { workSafely(1, apart); });
        workSafely(0, apart);
        other.join();
        std::fprintf(stderr, "\n");
        save();
        if (failure_ != nullptr) {
            std::rethrow_exception(failure_);
        }
    }

    /// What goes wrong in a worker ends the run once both have stopped.
    void workSafely(int worker, bool apart) {
        try {
            work(worker, apart);
        } catch (...) {
            const std::lock_guard lock(mutex_);
            failure_ = std::current_exception();
            next_ = chosen_.size();
        }
    }

    void work(int worker, bool apart) {
        const std::string scratch = options_.build + "/scratch/worker" + std::to_string(worker);
        const Places places = {options_.repository, options_.build + "/programs",
                               scratch + "/apart", options_.compiler};
        for (size_t i = next_++; i < chosen_.size(); i = next_++) {
            const Mutant& mutant = outcome_.mutants[chosen_[i]];
            const Verdict verdict = apart ? tryApart(mutant, programs_, places)
                                          : tryMutant(mutant, programs_, scratch + ".log");
            const std::lock_guard lock(mutex_);
            Verdict& known = outcome_.verdicts[chosen_[i]];
            // What runs asleep may be no valid C++ written out; it has survived all the same.
            if (known.kind != Verdict::survived || verdict.kind == Verdict::killed) {
                known = verdict;
            }
            ++done_;
            survivors_ +=
                verdict.kind == Verdict::survived || verdict.kind == Verdict::unreached ? 1 : 0;
            showProgress();
            if (done_ % 50 == 0) {
                save();
            }
        }
    }

    void showProgress() const {
        const double passed =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
        const double rest =
            passed / static_cast<double>(done_) * static_cast<double>(chosen_.size() - done_);
        std::fprintf(stderr, "\r%zu/%zu, %zu killed, %zu survivors, %.0f min left ", done_,
                     chosen_.size(), done_ - survivors_, survivors_, rest / 60);
    }

    /// Keeps what became of each, for --again.
    void save() const {
        std::ofstream out(options_.build + "/verdicts.txt");
        for (size_t i = 0; i < outcome_.mutants.size(); ++i) {
            const bool isNew = outcome_.verdicts[i].kind != Verdict::untried;
            const Verdict& verdict = isNew ? outcome_.verdicts[i] : last_[i];
            const Name& name = outcome_.names[i];
            if (verdict.kind != Verdict::untried) {
                out << verdict.kind << '\t' << verdict.by << '\t' << verdict.byTime << '\t'
                    << name.place << '\t' << name.before << '\t' << name.after << '\n';
            }
        }
    }

    void load() {
        last_.resize(outcome_.mutants.size());
        if (!std::ifstream(options_.build + "/verdicts.txt")) {
            return;
        }
        std::map<Name, Verdict> last;
        std::istringstream lines(readFile(options_.build + "/verdicts.txt"));
        for (std::string line; std::getline(lines, line);) {
            std::istringstream fields(line);
            std::string kind;
            std::string byTime;
            Verdict verdict;
            Name name;
            std::getline(fields, kind, '\t');
            std::getline(fields, verdict.by, '\t');
            std::getline(fields, byTime, '\t');
            std::getline(fields, name.place, '\t');
            std::getline(fields, name.before, '\t');
            std::getline(fields, name.after, '\t');
            verdict.kind = static_cast<Verdict::Kind>(std::stoi(kind));
            verdict.byTime = byTime == "1";
            last[name] = verdict;
        }
        for (size_t i = 0; i < outcome_.mutants.size(); ++i) {
            if (const auto found = last.find(outcome_.names[i]); found != last.end()) {
                last_[i] = found->second;
            }
        }
    }
};

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "Usage: %s REPOSITORY BUILD [OPTION...]\n", argv[0]);
        return 2;
    }
    try {
        return Runner(optionsFrom(argc, argv)).run();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "mutate: %s\n", error.what());
        return 2;
    }
}
