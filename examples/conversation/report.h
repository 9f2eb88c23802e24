// What the person at the terminal gets to see, and the verdict on the run.
#pragma once

#include <stdint.h>

#include <array>
#include <map>
#include <optional>
#include <string>
#include <tuple>

#include "examples/conversation/events.h"
#include "examples/conversation/options.h"

namespace conversation {

/// Collects the reports of both ends, prints each frame as it comes in, and at the end a table of
/// all of them. Frames go to stdout, failures to stderr.
class Report {
  public:
    Report(const Options& options, uint16_t port);

    void take(const Event& event);
    /// Notes that a process ended in a way that it did not report itself.
    void noteProcess(Side side, const std::string& what);

    /// Prints table and verdict; the exit code of the program.
    int conclude();

  private:
    struct Tally {
        uint64_t frames = 0;
        uint64_t bytes = 0;
        bool operator==(const Tally&) const = default;
    };
    struct End {
        bool finished = false;
        PieceCounts pieces;
        std::optional<Mac> fingerprint;
    };
    using Row = std::tuple<Side, bool, uint16_t>;  // sender, varint, command

    void takeFrame(const Event& event);
    void noteFailure(Side side, Outcome outcome, const std::string& what);
    void findDisagreement();
    void printTable();
    void printStreams();
    void printSecret();
    void print(const std::string& text);
    const End& end(Side side) const { return ends_[static_cast<size_t>(side)]; }

    const Clock::time_point begin_ = Clock::now();
    uint64_t shown_ = 0;      // frames that arrived
    uint64_t announced_ = 0;  // frames that were sent
    std::map<Row, Tally> sent_;
    std::map<Row, Tally> received_;
    std::array<End, 2> ends_;
    Outcome outcome_ = Outcome::complete;
    bool outputBroken_ = false;
};

}  // namespace conversation
