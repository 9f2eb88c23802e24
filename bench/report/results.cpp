#include "bench/report/results.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace zrp_report {

namespace {

std::ifstream opened(const std::string& path) {
    std::ifstream file(path);
    if (!file) {
        throw std::runtime_error("cannot read " + path);
    }
    return file;
}

/// Lines of a name and a number.
std::map<std::string, double> readNumbers(const std::string& path) {
    std::ifstream file = opened(path);
    std::map<std::string, double> made;
    std::string name;
    double value = 0;
    while (file >> name >> value) {
        made[name] = value;
    }
    return made;
}

std::vector<std::string> readLines(const std::string& path) {
    std::ifstream file = opened(path);
    std::vector<std::string> made;
    for (std::string line; std::getline(file, line);) {
        made.push_back(line);
    }
    return made;
}

/// A quantile of sorted values, between two of them where it falls there.
double quantile(const std::vector<double>& sorted, double share) {
    const double place = share * static_cast<double>(sorted.size() - 1);
    const size_t below = static_cast<size_t>(place);
    const size_t above = std::min(below + 1, sorted.size() - 1);
    const double part = place - static_cast<double>(below);
    return sorted[below] * (1 - part) + sorted[above] * part;
}

/// One repetition of a case.
struct Repetition {
    double nanoseconds = 0;
    double perSecond = 0;
    double stretch = 0;  ///< how long a fixed stretch of work took then; 0 when not measured
};

/// What was measured of a case.
struct Samples {
    std::vector<Repetition> repetitions;
    double bytes = 0;

    std::vector<double> sorted(double Repetition::*what) const {
        std::vector<double> made;
        for (const Repetition& one : repetitions) {
            made.push_back(one.*what);
        }
        std::sort(made.begin(), made.end());
        return made;
    }
};

/// Adds what one process measured.
void addSamples(const std::string& path, std::map<std::string, Samples>& samples) {
    std::ifstream file = opened(path);
    const nlohmann::json all = nlohmann::json::parse(file);
    for (const nlohmann::json& run : all.at("benchmarks")) {
        if (run.at("run_type") != "iteration") {
            continue;  // a summary; this program makes its own
        }
        if (run.contains("error_message") || run.at("time_unit") != "ns") {
            throw std::runtime_error("a measurement failed: " + run.dump());
        }
        Samples& of = samples[run.at("name")];
        of.repetitions.push_back(
            {run.at("cpu_time"), run.value("items_per_second", 0.0), run.value("stretch", 0.0)});
        of.bytes = run.value("bytes", 0.0);
    }
}

/// How long the stretch takes when nothing slows the processor down: nearly the shortest time, as
/// the very shortest may be one of a moment of a higher clock rate.
double undisturbedStretch(const std::map<std::string, Samples>& samples) {
    std::vector<double> all;
    for (const auto& [name, of] : samples) {
        for (const Repetition& one : of.repetitions) {
            if (one.stretch > 0) {
                all.push_back(one.stretch);
            }
        }
    }
    std::sort(all.begin(), all.end());
    return all.empty() ? 0 : quantile(all, 0.02);
}

/// Leaves out the repetitions during which the processor was slower than it can be, but never so
/// many that too few remain, and counts them. What is left out does not depend on the times
/// themselves. Cases without stretches stay as they are.
void leaveOutDisturbed(Samples& samples, double undisturbed, Repetitions& counts) {
    constexpr double tolerance = 1.05;
    std::vector<Repetition>& all = samples.repetitions;
    if (all.front().stretch <= 0) {
        return;
    }
    std::sort(all.begin(), all.end(), [](const Repetition& left, const Repetition& right) {
        return left.stretch < right.stretch;
    });
    const auto disturbed = std::find_if(all.begin(), all.end(), [&](const Repetition& one) {
        return one.stretch > undisturbed * tolerance;
    });
    const size_t good = static_cast<size_t>(disturbed - all.begin());
    const size_t kept = std::min(std::max(Repetitions::least, good), all.size());
    counts.cases += 1;
    counts.made += all.size();
    counts.undisturbed += good;
    counts.shortOfThem += kept > good ? 1 : 0;
    all.resize(kept);
}

template <class Map>
std::optional<double> found(const Map& map, const std::string& name) {
    const auto at = map.find(name);
    return at != map.end() ? std::optional(at->second) : std::nullopt;
}

}  // namespace

Results::Results(const std::string& folder)
    : instructions_(readNumbers(folder + "/instructions.txt")),
      sizes_(readNumbers(folder + "/sizes.txt")),
      machine_(readLines(folder + "/machine.txt")) {
    readTimings(folder);
}

void Results::readTimings(const std::string& folder) {
    std::map<std::string, Samples> samples;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const std::string name = entry.path().filename().string();
        if (name.starts_with("timing-") && name.ends_with(".json")) {
            addSamples(entry.path().string(), samples);
        }
    }
    if (samples.empty()) {
        throw std::runtime_error("no times in " + folder);
    }
    const double undisturbed = undisturbedStretch(samples);
    for (auto& [name, of] : samples) {
        leaveOutDisturbed(of, undisturbed, repetitions_);
        const std::vector<double> times = of.sorted(&Repetition::nanoseconds);
        const std::vector<double> perSecond = of.sorted(&Repetition::perSecond);
        timings_[name] = {quantile(times, 0.5), quantile(times, 0.25), quantile(times, 0.75),
                          of.bytes, quantile(perSecond, 0.5)};
    }
}

std::optional<Timing> Results::timing(const std::string& name) const {
    const auto at = timings_.find(name);
    return at != timings_.end() ? std::optional(at->second) : std::nullopt;
}

std::optional<double> Results::nanoseconds(const std::string& name) const {
    const std::optional<Timing> of = timing(name);
    return of ? std::optional(of->median) : std::nullopt;
}

std::optional<double> Results::instructions(const std::string& name) const {
    return found(instructions_, name);
}

std::optional<double> Results::size(const std::string& name) const {
    return found(sizes_, name);
}

std::optional<double> ratio(std::optional<double> dividend, std::optional<double> divisor) {
    return dividend && divisor ? std::optional(*dividend / *divisor) : std::nullopt;
}

std::vector<std::string> split(std::string_view name, char separator) {
    std::vector<std::string> parts;
    for (;;) {
        const size_t at = name.find(separator);
        parts.emplace_back(name.substr(0, at));
        if (at == name.npos) {
            return parts;
        }
        name.remove_prefix(at + 1);
    }
}

}  // namespace zrp_report
