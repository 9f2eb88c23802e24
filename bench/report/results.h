// What a run of the measurements left behind.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zrp_report {

/// One case over the repetitions that are used.
struct Timing {
    double median = 0;  ///< nanoseconds of processor time an operation
    double lowerQuartile = 0;
    double upperQuartile = 0;
    double bytes = 0;      ///< encoded bytes an operation
    double perSecond = 0;  ///< operations a second of all threads together; threads only

    double megabytesPerSecond() const { return bytes / median * 1e3; }
};

/// How often cases were timed, all together, but for those on several threads.
struct Repetitions {
    /// How many of a case are used at least, the least disturbed if need be.
    static constexpr size_t least = 5;

    size_t cases = 0;
    size_t made = 0;
    size_t undisturbed = 0;  ///< during which nothing slowed the processor down
    size_t shortOfThem = 0;  ///< cases with fewer undisturbed ones than `least`
};

class Results {
  public:
    /// Reads timing-*.json, the processes that were timed, and instructions.txt, sizes.txt and
    /// machine.txt; throws when one is missing.
    explicit Results(const std::string& folder);

    /// By operation/message/codec; empty when that was not measured.
    std::optional<Timing> timing(const std::string& name) const;
    std::optional<double> nanoseconds(const std::string& name) const;
    std::optional<double> instructions(const std::string& name) const;
    /// By architecture/optimisation/program, in bytes.
    std::optional<double> size(const std::string& name) const;

    const std::map<std::string, double>& sizes() const { return sizes_; }
    const std::map<std::string, Timing>& timings() const { return timings_; }
    const std::vector<std::string>& machine() const { return machine_; }
    const Repetitions& repetitions() const { return repetitions_; }

  private:
    void readTimings(const std::string& folder);

    std::map<std::string, Timing> timings_;
    std::map<std::string, double> instructions_;
    std::map<std::string, double> sizes_;
    std::vector<std::string> machine_;
    Repetitions repetitions_;
};

/// The quotient of two results; empty when one of them is.
std::optional<double> ratio(std::optional<double> dividend, std::optional<double> divisor);

/// The parts of a name.
std::vector<std::string> split(std::string_view name, char separator);

}  // namespace zrp_report
