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

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return quantile(values, 0.5);
}

/// What was measured of a case.
struct Samples {
    std::vector<double> nanoseconds;
    std::vector<double> perSecond;
    double bytes = 0;
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
        of.nanoseconds.push_back(run.at("cpu_time"));
        of.perSecond.push_back(run.value("items_per_second", 0.0));
        of.bytes = run.value("bytes", 0.0);
    }
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
    for (auto& [name, of] : samples) {
        std::sort(of.nanoseconds.begin(), of.nanoseconds.end());
        timings_[name] = {quantile(of.nanoseconds, 0.5), quantile(of.nanoseconds, 0.25),
                          quantile(of.nanoseconds, 0.75), of.bytes, median(of.perSecond)};
        repetitions_ = std::max(repetitions_, of.nanoseconds.size());
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
