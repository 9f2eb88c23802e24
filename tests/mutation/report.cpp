#include "tests/mutation/report.h"

#include <cstdio>
#include <set>

namespace zrp_test::mutation {

namespace {

constexpr size_t fewestMutants = 1000;
constexpr double leastScore = 0.98;

bool isSurvivor(const Verdict& verdict) {
    return verdict.kind == Verdict::survived || verdict.kind == Verdict::unreached;
}

struct Counts {
    size_t mutants = 0;
    size_t survivors = 0;
    size_t same = 0;    ///< of the survivors
    size_t slower = 0;  ///< of the survivors
    size_t byTime = 0;
    std::map<std::string, size_t> killedBy;

    void add(const Verdict& verdict, const Reason* reason) {
        ++mutants;
        if (isSurvivor(verdict)) {
            ++survivors;
            same += reason != nullptr && reason->isSame ? 1 : 0;
            slower += reason != nullptr && !reason->isSame ? 1 : 0;
        } else {
            ++killedBy[verdict.by];
            byTime += verdict.byTime ? 1 : 0;
        }
    }

    /// How many are killed of those whose results differ.
    double score() const {
        const size_t different = mutants - same - slower;
        return different == 0
                   ? 1
                   : static_cast<double>(mutants - survivors) / static_cast<double>(different);
    }
};

bool wasTried(const Verdict& verdict) {
    return verdict.kind != Verdict::untried && verdict.kind != Verdict::invalid;
}

const Reason* reasonOf(const Reasons& reasons, const Name& name) {
    const auto found = reasons.find(name);
    return found != reasons.end() ? &found->second : nullptr;
}

struct Sums {
    std::map<std::string, Counts> files;
    Counts all;
    Counts core;
    size_t invalid = 0;
    size_t untried = 0;

    Sums(const Outcome& outcome, const Reasons& reasons) {
        for (size_t i = 0; i < outcome.mutants.size(); ++i) {
            const Verdict& verdict = outcome.verdicts[i];
            const std::string& file = outcome.mutants[i].file;
            invalid += verdict.kind == Verdict::invalid ? 1 : 0;
            untried += verdict.kind == Verdict::untried ? 1 : 0;
            if (wasTried(verdict)) {
                const Reason* const reason = reasonOf(reasons, outcome.names[i]);
                files[file].add(verdict, reason);
                all.add(verdict, reason);
                if (isWireCore(file)) {
                    core.add(verdict, reason);
                }
            }
        }
    }
};

template <class... Argument>
std::string format(const char* how, Argument... argument) {
    char line[256];
    (void)std::snprintf(line, sizeof(line), how, argument...);
    return line;
}

std::string scoreLine(const char* of, const Counts& counts) {
    if (counts.mutants == 0) {
        return format("%s: none was tried\n", of);
    }
    return format(
        "%s: %zu mutants, %zu killed; of the rest %zu are the same, %zu slower, %zu have no "
        "reason: %.2f %%\n",
        of, counts.mutants, counts.mutants - counts.survivors, counts.same, counts.slower,
        counts.survivors - counts.same - counts.slower, 100 * counts.score());
}

}  // namespace

bool isWireCore(const std::string& file) {
    return file.rfind("Common/Source/Core/BRX/", 0) == 0 ||
           file.rfind("protocol/codec/wire.", 0) == 0;
}

std::string tableOf(const Outcome& outcome, const Reasons& reasons) {
    const Sums sums(outcome, reasons);
    std::string table;
    for (const auto& [file, counts] : sums.files) {
        table += format("%-36s %5zu mutants, %3zu survivors, %3zu killed by time; killed by",
                        file.c_str(), counts.mutants, counts.survivors, counts.byTime);
        for (const auto& [killer, count] : counts.killedBy) {
            table += format(" %s %zu", killer.c_str(), count);
        }
        table += '\n';
    }
    return table +
           format("%zu changes are no valid C++, %zu were not tried\n", sums.invalid,
                  sums.untried) +
           scoreLine("all", sums.all) + scoreLine("wire core", sums.core);
}

std::string complaintsOf(const Outcome& outcome, const Reasons& reasons, bool isWhole) {
    std::string complaints;
    std::set<Name> seen;
    for (size_t i = 0; i < outcome.mutants.size(); ++i) {
        const Verdict& verdict = outcome.verdicts[i];
        const Name& name = outcome.names[i];
        const Reason* const reason = reasonOf(reasons, name);
        seen.insert(name);
        if (wasTried(verdict) && isSurvivor(verdict) && reason == nullptr) {
            complaints += format("%u survives%s:\n", outcome.mutants[i].number,
                                 verdict.kind == Verdict::unreached ? ", nothing reaches it" : "") +
                          entryOf(name);
        }
        if (verdict.kind == Verdict::killed && reason != nullptr) {
            complaints += "is listed, but killed by " + verdict.by + ":\n" + entryOf(name);
        }
    }
    for (const auto& [name, reason] : reasons) {
        if (seen.count(name) == 0) {
            complaints += "is listed, but no mutant:\n" + entryOf(name);
        }
    }
    const Sums sums(outcome, reasons);
    if (isWhole && sums.all.mutants < fewestMutants) {
        complaints += "too few mutants\n";
    }
    if (isWhole && sums.all.score() < leastScore) {
        complaints += format("the score is below %.0f %%\n", 100 * leastScore);
    }
    return complaints;
}

}  // namespace zrp_test::mutation
