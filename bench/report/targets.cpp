#include "bench/report/targets.h"

#include <algorithm>
#include <vector>

#include "bench/report/numbers.h"
#include "bench/report/subjects.h"
#include "bench/report/tables.h"

namespace zrp_report {

namespace {

class Targets {
  public:
    void atMost(const std::string& what, double limit, std::optional<double> measured,
                std::string (*print)(std::optional<double>)) {
        add(what, "at most " + print(limit), print(measured), measured,
            measured && *measured <= limit);
    }
    void atLeast(const std::string& what, double limit, std::optional<double> measured,
                 const std::string& against = "") {
        add(what, "at least " + times(limit), times(measured) + against, measured,
            measured && *measured >= limit);
    }

    std::string text() const {
        return std::to_string(met_) + " of " + std::to_string(count_) + " targets are met.\n\n" +
               table_.text();
    }

  private:
    void add(const std::string& what, const std::string& limit, const std::string& shown,
             std::optional<double> measured, bool isMet) {
        ++count_;
        met_ += isMet ? 1 : 0;
        table_.add({what, limit, shown,
                    !measured ? "not measured"
                    : isMet   ? "met"
                              : "**not met**"});
    }

    Table table_{{"target", "limit", "measured", ""}};
    int count_ = 0;
    int met_ = 0;
};

struct Limit {
    const char* message;
    double value;
};

std::string upper(std::string text) {
    text[0] = static_cast<char>(text[0] - 'a' + 'A');
    return text;
}

std::string flavour(const char* codec) {
    return std::string(codec).substr(4);
}

// --- Against the floor --------------------------------------------------------------------------

void addFloors(Targets& targets, const Results& results, const char* direction, const char* codec,
               const std::vector<Limit>& limits) {
    for (const Limit& limit : limits) {
        targets.atMost(upper(direction) + " " + limit.message + ", " + flavour(codec) +
                           ", against copying its bytes",
                       limit.value,
                       ratio(results.nanoseconds(nameOf(direction, limit.message, codec)),
                             results.nanoseconds(floorOf(limit.message, codec))),
                       times);
    }
}

// --- Against the peers --------------------------------------------------------------------------

/// Against a message that is kept and filled with the values each time, as they come from a record
/// for the other codecs, too. The ratio to serialising alone is told beside it.
void addProtobuf(Targets& targets, const Results& results, const char* direction,
                 const std::vector<Limit>& limits) {
    for (const Limit& limit : limits) {
        const auto own = results.nanoseconds(nameOf(direction, limit.message, "zrp-varint"));
        const auto reused =
            results.nanoseconds(nameOf(direction, limit.message, "protobuf-reused"));
        const auto filled =
            results.nanoseconds(nameOf(direction, limit.message, "protobuf-filled"));
        targets.atLeast(
            upper(direction) + " " + limit.message + ", varint, speed against protobuf reused",
            limit.value, ratio(reused, own),
            filled ? " (filled beforehand: " + times(ratio(filled, own)) + ")" : "");
    }
}

/// Against the fastest of those peers that number their fields and check their input.
void addFastestPeer(Targets& targets, const Results& results, const std::string& direction,
                    const std::string& message, const char* codec) {
    std::optional<double> best;
    std::string fastest;
    for (const Codec& peer : codecs()) {
        const auto measured = results.nanoseconds(nameOf(direction, message, peer.id));
        if (peer.isNumbered && measured && (!best || *measured < *best)) {
            best = measured;
            fastest = peer.name;
        }
    }
    targets.atLeast(upper(direction) + " " + message + ", " + flavour(codec) +
                        ", speed against the fastest numbered peer",
                    1.5, ratio(best, results.nanoseconds(nameOf(direction, message, codec))),
                    best ? " (" + fastest + ")" : "");
}

void addMsgpack(Targets& targets, const Results& results, const std::string& direction,
                const std::string& message, const char* codec) {
    targets.atLeast(upper(direction) + " " + message + ", " + flavour(codec) +
                        ", speed against msgpack's arrays",
                    1.0,
                    ratio(results.nanoseconds(nameOf(direction, message, "msgpack")),
                          results.nanoseconds(nameOf(direction, message, codec))));
}

// --- Instructions, hard inputs, sizes -----------------------------------------------------------

void addInstructions(Targets& targets, const Results& results, const char* codec,
                     const char* message, double encode, double decode) {
    for (const auto& [direction, limit] : {std::pair("encode", encode), {"decode", decode}}) {
        targets.atMost(upper(direction) + " " + message + ", " + flavour(codec) + ", instructions",
                       limit, results.instructions(nameOf(direction, message, codec)), whole);
    }
}

void addHardInputs(Targets& targets, const Results& results, const char* codec,
                   const std::string& suffix, const std::string& what) {
    for (size_t i = 0; i < mainMessages; ++i) {
        const std::string id = messages()[i].id;
        const auto hard = results.nanoseconds(nameOf("decode", id + suffix, codec));
        if (hard) {
            targets.atMost(
                "Decode " + id + ", " + flavour(codec) + ", " + what + ", against in order", 2.5,
                ratio(hard, results.nanoseconds(nameOf("decode", id, codec))), times);
        }
    }
}

/// Cost a byte of the longest input against the middle one: the shortest fits into branch history
/// and flatters. Some room for the second-level cache, through which the longest comes.
void addGrowth(Targets& targets, const Results& results, const char* codec) {
    std::optional<double> worst;
    for (const std::string& kind : growthKinds(results)) {
        const auto middle = results.timing(nameOf("grow", kind + "-16384", codec));
        const auto longest = results.timing(nameOf("grow", kind + "-262144", codec));
        if (middle && longest) {
            const double growth =
                longest->median / longest->bytes / (middle->median / middle->bytes);
            worst = std::max(worst.value_or(growth), growth);
        }
    }
    targets.atMost("Decode of growing inputs, " + flavour(codec) +
                       ", cost a byte at 256 KiB against 16 KiB, worst kind",
                   1.2, worst, times);
}

void addSizes(Targets& targets, const Results& results) {
    for (const std::string architecture : {"x86-64", "arm64"}) {
        const auto add = [&](const std::string& build, const std::string& program, double limit) {
            targets.atMost("Bytes of .text, " + architecture + " -" + build + ", " + program,
                           limit * 1024, results.size(architecture + "/" + build + "/" + program),
                           whole);
        };
        add("Os", "TZRPInFrame", 40);
        add("Os-compact", "TZRPInFrame", 24);
        add("O2", "catalogue", 64);
        add("Os", "catalogue", 48);
    }
}

}  // namespace

std::string targetTable(const Results& results) {
    Targets targets;
    addFloors(
        targets, results, "encode", "zrp-varint",
        {{"M1", 7.5}, {"M4", 9.5}, {"M2", 8.5}, {"M3", 5.5}, {"M5", 3}, {"M6", 3}, {"M6n", 3}});
    addFloors(
        targets, results, "decode", "zrp-varint",
        {{"M1", 10}, {"M4", 13}, {"M2", 10}, {"M3", 7}, {"M5", 3.5}, {"M6", 3.5}, {"M6n", 3.5}});
    addFloors(targets, results, "encode", "zrp-fixed", {{"M1", 3.3}, {"M4", 6}});
    addFloors(targets, results, "decode", "zrp-fixed", {{"M1", 4}, {"M4", 7.5}});

    addProtobuf(
        targets, results, "encode",
        {{"M1", 2}, {"M4", 5}, {"M2", 3.5}, {"M3", 3.5}, {"M5", 3.5}, {"M6", 3.5}, {"M1r", 1.5}});
    addProtobuf(
        targets, results, "decode",
        {{"M1", 4.5}, {"M4", 10}, {"M2", 12}, {"M3", 12}, {"M5", 7}, {"M6", 7}, {"M1r", 2.5}});
    for (const char* const codec : {"zrp-varint", "zrp-fixed"}) {
        for (const std::string& direction : directions()) {
            for (size_t i = 0; i < mainMessages; ++i) {
                addFastestPeer(targets, results, direction, messages()[i].id, codec);
                addMsgpack(targets, results, direction, messages()[i].id, codec);
            }
        }
    }

    addInstructions(targets, results, "zrp-varint", "M1", 180, 260);
    addInstructions(targets, results, "zrp-varint", "M4", 320, 470);
    addInstructions(targets, results, "zrp-varint", "M2", 1000, 1300);
    addInstructions(targets, results, "zrp-fixed", "M1", 60, 85);
    addInstructions(targets, results, "zrp-fixed", "M4", 120, 250);
    addInstructions(targets, results, "zrp-fixed", "M2", 600, 800);

    for (const char* const codec : {"zrp-varint", "zrp-fixed"}) {
        addHardInputs(targets, results, codec, "-reversed", "reversed");
        addHardInputs(targets, results, codec, "-unknown", "unknown fields between");
        addGrowth(targets, results, codec);
    }
    addSizes(targets, results);
    targets.atMost(
        "Dump of M2 against one formatter call an entry", 2,
        ratio(results.nanoseconds("dump/M2/visualize"), results.nanoseconds("dump/M2/formatter")),
        times);
    return targets.text();
}

}  // namespace zrp_report
