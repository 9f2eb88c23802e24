#include "bench/report/tables.h"

#include <algorithm>
#include <set>

#include "bench/report/numbers.h"
#include "bench/report/subjects.h"

namespace zrp_report {

Table::Table(const std::vector<std::string>& headings) {
    add(headings);
    text_ += "|---|";
    for (size_t i = 1; i < headings.size(); ++i) {
        text_ += "---:|";
    }
    text_ += "\n";
}

void Table::add(const std::vector<std::string>& cells) {
    text_ += "|";
    for (const std::string& cell : cells) {
        text_ += " " + cell + " |";
    }
    text_ += "\n";
}

namespace {

/// The distance of the quartiles from the median, in percent of it.
std::string spread(const Timing& timing) {
    const double half = (timing.upperQuartile - timing.lowerQuartile) / 2;
    return "± " + number(half / timing.median * 100) + " %";
}

std::string directionTable(const Results& results, const std::string& direction,
                           const std::string& message) {
    Table table({direction, "bytes", "ns", "spread", "MB/s", "of bytes' copy", "of object's copy",
                 "of this codec", "instructions"});
    const std::optional<double> object = results.nanoseconds(nameOf("copy", message, "object"));
    const std::optional<double> own = results.nanoseconds(nameOf(direction, message, "zrp-varint"));
    const auto addRow = [&](const std::string& label, const std::string& name,
                            const std::string& floor) {
        const std::optional<Timing> timing = results.timing(name);
        if (!timing) {
            return;
        }
        table.add({label, whole(timing->bytes), number(timing->median), spread(*timing),
                   whole(timing->megabytesPerSecond()),
                   times(ratio(timing->median, results.nanoseconds(floor))),
                   times(ratio(timing->median, object)), times(ratio(timing->median, own)),
                   whole(results.instructions(name))});
    };
    for (const Codec& codec : codecs()) {
        addRow(codec.name, nameOf(direction, message, codec.id), floorOf(message, codec.id));
    }
    for (const char* const copied : {"bytes-varint", "bytes-fixed", "object"}) {
        addRow("copy of the " + std::string(copied), nameOf("copy", message, copied),
               floorOf(message, copied));
    }
    return table.text();
}

}  // namespace

std::string machineList(const Results& results) {
    std::string made;
    for (const std::string& line : results.machine()) {
        made += "- " + line + "\n";
    }
    const Repetitions& repetitions = results.repetitions();
    return made + "- Repetitions: " + whole(repetitions.made) + " of " + whole(repetitions.cases) +
           " cases, " + whole(repetitions.undisturbed) +
           " of them undisturbed; cases with fewer than " + whole(Repetitions::least) +
           " of these: " + whole(repetitions.shortOfThem) + "\n";
}

std::string overviewTable(const Results& results, const std::string& direction) {
    std::vector<std::string> headings = {direction + ", ns"};
    for (size_t i = 0; i < mainMessages; ++i) {
        headings.push_back(messages()[i].id);
    }
    Table table(headings);
    const auto addRow = [&](const std::string& label, const std::string& operation,
                            const std::string& codec) {
        std::vector<std::string> cells = {label};
        for (size_t i = 0; i < mainMessages; ++i) {
            cells.push_back(
                number(results.nanoseconds(nameOf(operation, messages()[i].id, codec))));
        }
        table.add(cells);
    };
    for (const Codec& codec : codecs()) {
        addRow(codec.name, direction, codec.id);
    }
    addRow("floor: copy of the varint bytes", "copy", "bytes-varint");
    addRow("floor: copy of the fixed bytes", "copy", "bytes-fixed");
    addRow("floor: copy of the object", "copy", "object");
    return table.text();
}

std::string bytesTable(const Results& results) {
    std::vector<std::string> headings = {"bytes"};
    for (size_t i = 0; i < mainMessages; ++i) {
        headings.push_back(messages()[i].id);
    }
    Table table(headings);
    for (const Codec& codec : codecs()) {
        std::vector<std::string> cells = {codec.name};
        for (size_t i = 0; i < mainMessages; ++i) {
            const auto timing = results.timing(nameOf("encode", messages()[i].id, codec.id));
            cells.push_back(whole(timing ? std::optional(timing->bytes) : std::nullopt));
        }
        table.add(cells);
    }
    return table.text();
}

std::string winsOfOthers(const Results& results) {
    std::string made;
    for (const std::string& direction : directions()) {
        for (const Message& message : messages()) {
            const auto own = results.nanoseconds(nameOf(direction, message.id, "zrp-varint"));
            for (const Codec& codec : codecs()) {
                const auto other = results.nanoseconds(nameOf(direction, message.id, codec.id));
                if (own && other && *other < *own && !std::string(codec.id).starts_with("zrp-")) {
                    made += "- " + direction + " " + message.id + ": " + codec.name + ", " +
                            number(other) + " ns against " + number(own) + " ns\n";
                }
            }
        }
    }
    return made.empty() ? "In this run no other codec is faster than the varint flavour.\n"
                        : "Faster than this codec's varint flavour in this run:\n\n" + made;
}

std::string messageTables(const Results& results) {
    std::string made;
    for (const Message& message : messages()) {
        made +=
            "<details><summary>" + std::string(message.id) + ": " + message.name + "</summary>\n\n";
        for (const std::string& direction : directions()) {
            made += directionTable(results, direction, message.id) + "\n";
        }
        made += "</details>\n\n";
    }
    return made;
}

std::string instructionTable(const Results& results) {
    std::vector<std::string> headings = {"instructions, encode / decode"};
    for (size_t i = 0; i < mainMessages; ++i) {
        headings.push_back(messages()[i].id);
    }
    Table table(headings);
    for (const Codec& codec : codecs()) {
        std::vector<std::string> cells = {codec.name};
        for (size_t i = 0; i < mainMessages; ++i) {
            const char* const message = messages()[i].id;
            cells.push_back(whole(results.instructions(nameOf("encode", message, codec.id))) +
                            " / " +
                            whole(results.instructions(nameOf("decode", message, codec.id))));
        }
        table.add(cells);
    }
    return table.text();
}

// --- Bodies -------------------------------------------------------------------------------------

std::vector<size_t> bodySizes(const Results& results) {
    const std::string prefix = "copy/body-";
    std::set<size_t> found;
    for (const auto& [name, timing] : results.timings()) {
        if (name.starts_with(prefix)) {
            found.insert(std::stoul(name.substr(prefix.size())));
        }
    }
    return {found.begin(), found.end()};
}

std::string bodyTable(const Results& results) {
    const std::vector<size_t> sizes = bodySizes(results);
    std::string made;
    for (const std::string& direction : directions()) {
        std::vector<std::string> headings = {direction + ", ns"};
        for (const size_t size : sizes) {
            headings.push_back(byteCount(size));
        }
        Table table(headings);
        const auto addRow = [&](const std::string& label, const std::string& operation,
                                const std::string& codec) {
            std::vector<std::string> cells = {label};
            for (const size_t size : sizes) {
                cells.push_back(number(
                    results.nanoseconds(nameOf(operation, "body-" + std::to_string(size), codec))));
            }
            table.add(cells);
        };
        for (const Codec& codec : codecs()) {
            const std::string smallest = "body-" + std::to_string(sizes.front());
            if (results.timing(nameOf(direction, smallest, codec.id))) {
                addRow(codec.name, direction, codec.id);
            }
        }
        addRow("floor: copy of the varint bytes", "copy", "bytes-varint");
        made += table.text() + "\n";
    }
    return made;
}

// --- Threads ------------------------------------------------------------------------------------

std::string threadTable(const Results& results) {
    Table table({"million operations a second", "one thread", "two threads", "gain"});
    const std::string suffix = "/real_time/threads:";
    for (const auto& [name, one] : results.timings()) {
        if (!name.starts_with("threads/") || !name.ends_with(suffix + "1")) {
            continue;
        }
        const std::string stem = name.substr(0, name.size() - suffix.size() - 1);
        const std::optional<Timing> two = results.timing(stem + suffix + "2");
        if (two) {
            table.add({stem.substr(stem.find('/') + 1), number(one.perSecond / 1e6),
                       number(two->perSecond / 1e6), times(two->perSecond / one.perSecond)});
        }
    }
    return table.text();
}

// --- Hard inputs --------------------------------------------------------------------------------

std::string hardInputTable(const Results& results) {
    Table table({"decode, ns", "in order", "reversed", "", "unknown between", ""});
    for (const char* const codec : {"zrp-varint", "zrp-fixed"}) {
        for (const Message& message : messages()) {
            const std::string id = message.id;
            const auto inOrder = results.nanoseconds(nameOf("decode", id, codec));
            const auto reversed = results.nanoseconds(nameOf("decode", id + "-reversed", codec));
            const auto unknown = results.nanoseconds(nameOf("decode", id + "-unknown", codec));
            if (reversed || unknown) {
                table.add({id + ", " + codec, number(inOrder), number(reversed),
                           times(ratio(reversed, inOrder)), number(unknown),
                           times(ratio(unknown, inOrder))});
            }
        }
    }
    return table.text();
}

std::vector<std::string> growthKinds(const Results& results) {
    std::set<std::string> found;
    for (const auto& [name, timing] : results.timings()) {
        if (name.starts_with("grow/")) {
            const std::string input = split(name, '/')[1];
            found.insert(input.substr(0, input.rfind('-')));
        }
    }
    return {found.begin(), found.end()};
}

std::string growthTable(const Results& results) {
    Table table({"decode, ps a byte", "1 KiB", "16 KiB", "256 KiB"});
    for (const char* const codec : {"zrp-varint", "zrp-fixed"}) {
        for (const std::string& kind : growthKinds(results)) {
            std::vector<std::string> cells = {kind + ", " + codec};
            for (const char* const size : {"-1024", "-16384", "-262144"}) {
                const auto timing = results.timing(nameOf("grow", kind + size, codec));
                cells.push_back(number(timing ? std::optional(timing->median / timing->bytes * 1e3)
                                              : std::nullopt));
            }
            table.add(cells);
        }
    }
    return table.text();
}

// --- Dump, sizes --------------------------------------------------------------------------------

std::string dumpTable(const Results& results) {
    Table table({"dump of M2", "ns", ""});
    const auto dump = results.nanoseconds("dump/M2/visualize");
    const auto formatter = results.nanoseconds("dump/M2/formatter");
    table.add({"`visualize`", number(dump), times(ratio(dump, formatter))});
    table.add({"floor: one formatter call an entry", number(formatter), ""});
    return table.text();
}

std::string sizeTable(const Results& results) {
    // Columns are builds, rows are programs, both as they were measured.
    std::vector<std::string> builds;
    std::vector<std::string> programs;
    for (const auto& [name, bytes] : results.sizes()) {
        const std::vector<std::string> parts = split(name, '/');
        const std::string build = parts[0] + "/" + parts[1];
        if (std::find(builds.begin(), builds.end(), build) == builds.end()) {
            builds.push_back(build);
        }
        if (std::find(programs.begin(), programs.end(), parts[2]) == programs.end()) {
            programs.push_back(parts[2]);
        }
    }
    std::vector<std::string> headings = {"bytes of .text"};
    for (const std::string& build : builds) {
        const std::vector<std::string> parts = split(build, '/');
        headings.push_back(parts[0] + " -" + parts[1]);
    }
    Table table(headings);
    for (const std::string& program : programs) {
        std::vector<std::string> cells = {program};
        for (const std::string& build : builds) {
            cells.push_back(whole(results.size(build + "/" + program)));
        }
        table.add(cells);
    }
    return table.text();
}

}  // namespace zrp_report
