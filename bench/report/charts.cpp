#include "bench/report/charts.h"

#include <algorithm>
#include <map>

#include "bench/report/numbers.h"
#include "bench/report/subjects.h"
#include "bench/report/svg.h"
#include "bench/report/tables.h"

namespace zrp_report {

namespace {

constexpr const char* ownColour = "#1f5fa8";
constexpr const char* ownFixedColour = "#5b9bd5";
constexpr const char* numberedColour = "#d08770";
constexpr const char* unnumberedColour = "#a3a36b";
constexpr const char* plainColour = "#b5b5b5";
constexpr const char* floorColour = "#2e7d32";
constexpr const char* gridColour = "#e3e3e3";

std::string colourOf(const Codec& codec) {
    const std::string id = codec.id;
    return id == "zrp-varint"  ? ownColour
           : id == "zrp-fixed" ? ownFixedColour
           : codec.isNumbered  ? numberedColour
           : id == "msgpack"   ? unnumberedColour
                               : plainColour;
}

/// Of a line, which other lines cross: peers differ from each other.
std::string lineColourOf(const Codec& codec) {
    static const std::map<std::string, std::string> colours = {
        {"protobuf-reused", "#c0504d"}, {"protobuf-filled", "#8064a2"}, {"nanopb", "#e08e0b"},
        {"protozero", "#4bacc6"},       {"flatbuffers", "#7f6000"},     {"capnproto", "#d16ba5"},
        {"msgpack", "#8a8a3a"},
    };
    const auto at = colours.find(codec.id);
    return at != colours.end() ? at->second : colourOf(codec);
}

/// The powers of ten around all of the values.
std::pair<double, double> decades(double least, double most) {
    double below = 1;
    while (below > least) {
        below /= 10;
    }
    double above = below;
    while (above < most) {
        above *= 10;
    }
    return {below, above};
}

// --- Codecs -------------------------------------------------------------------------------------

constexpr double barHeight = 15;
constexpr double labelWidth = 190;
constexpr double panelWidth = 560;
constexpr double barStart = labelWidth;
constexpr double barEnd = panelWidth - 60;
constexpr double panelHeader = 42;

void drawPanel(Svg& svg, const Results& results, const std::string& direction,
               const Message& message, const LogScale& scale, std::pair<double, double> range,
               double left, double top) {
    const double bottom = top + panelHeader + barHeight * static_cast<double>(codecs().size());
    svg.text(left + 8, top + 18, std::string(message.id) + ": " + message.name, Anchor::start, 13,
             "#111", true);
    for (double tick = range.first; tick <= range.second; tick *= 10) {
        const double x = left + scale.at(tick);
        svg.line(x, top + panelHeader - 6, x, bottom, gridColour);
        svg.text(x, top + panelHeader - 10, whole(tick), Anchor::middle, 10, "#777");
    }
    double y = top + panelHeader;
    for (const Codec& codec : codecs()) {
        const auto measured = results.nanoseconds(nameOf(direction, message.id, codec.id));
        if (measured) {
            const double end = scale.at(*measured);
            svg.text(left + labelWidth - 6, y + barHeight - 4, codec.name, Anchor::end, 11);
            svg.rectangle(left + barStart, y + 2, end - barStart, barHeight - 4, colourOf(codec));
            svg.text(left + end + 4, y + barHeight - 4, number(measured), Anchor::start, 10);
        }
        y += barHeight;
    }
    if (const auto floor = results.nanoseconds(nameOf("copy", message.id, "bytes-varint"))) {
        const double x = left + scale.at(*floor);
        svg.line(x, top + panelHeader - 4, x, bottom, floorColour, 1.5, true);
    }
}

}  // namespace

std::string codecChart(const Results& results, const std::string& direction) {
    double least = 1e9;
    double most = 0;
    for (const auto& [name, timing] : results.timings()) {
        const std::vector<std::string> parts = split(name, '/');
        for (size_t i = 0; i < mainMessages; ++i) {
            if ((parts[0] == direction || parts[0] == "copy") && parts[1] == messages()[i].id) {
                least = std::min(least, timing.median);
                most = std::max(most, timing.median);
            }
        }
    }
    const std::pair<double, double> range = decades(least, most);
    const LogScale scale(range.first, range.second, barStart, barEnd);
    const double panelHeight = panelHeader + barHeight * static_cast<double>(codecs().size()) + 12;
    const double header = 34;
    Svg svg(2 * panelWidth, header + 3 * panelHeight + 4);
    svg.text(8, 22,
             "Nanoseconds to " + direction +
                 ", logarithmic. Shorter is better. Dashed: copying "
                 "the encoded bytes.",
             Anchor::start, 14, "#111", true);
    for (size_t i = 0; i < mainMessages; ++i) {
        drawPanel(svg, results, direction, messages()[i], scale, range,
                  static_cast<double>(i % 2) * panelWidth,
                  header + static_cast<double>(i / 2) * panelHeight);
    }
    return svg.finished();
}

// --- Bodies -------------------------------------------------------------------------------------

std::string bodyChart(const Results& results, const std::string& direction) {
    struct Series {
        std::string name;
        std::string colour;
        std::vector<std::pair<double, double>> points;  ///< size, nanoseconds
    };
    const std::vector<size_t> sizes = bodySizes(results);
    const auto pointsOf = [&](const std::string& operation, const std::string& codec) {
        std::vector<std::pair<double, double>> points;
        for (const size_t size : sizes) {
            const auto measured =
                results.nanoseconds(nameOf(operation, "body-" + std::to_string(size), codec));
            if (measured) {
                points.emplace_back(static_cast<double>(size), *measured);
            }
        }
        return points;
    };
    std::vector<Series> all;
    double most = 0;
    double least = 1e9;
    for (const Codec& codec : codecs()) {
        Series series{codec.name, lineColourOf(codec), pointsOf(direction, codec.id)};
        if (!series.points.empty()) {
            all.push_back(series);
        }
    }
    all.push_back({"copy of the bytes", floorColour, pointsOf("copy", "bytes-varint")});
    for (const Series& series : all) {
        for (const auto& [size, nanoseconds] : series.points) {
            most = std::max(most, nanoseconds);
            least = std::min(least, nanoseconds);
        }
    }
    const std::pair<double, double> range = decades(least, most);
    const LogScale x(static_cast<double>(sizes.front()), static_cast<double>(sizes.back()), 60,
                     640);
    const LogScale y(range.first, range.second, 420, 50);
    Svg svg(860, 460);
    svg.text(8, 22,
             "Nanoseconds to " + direction + " a data frame, by size of its body; both logarithmic",
             Anchor::start, 14, "#111", true);
    for (double tick = range.first; tick <= range.second; tick *= 10) {
        svg.line(60, y.at(tick), 640, y.at(tick), gridColour);
        svg.text(54, y.at(tick) + 4, whole(tick), Anchor::end, 10, "#777");
    }
    for (const size_t size : sizes) {
        const double at = x.at(static_cast<double>(size));
        svg.line(at, 50, at, 420, gridColour);
        svg.text(at, 436, byteCount(size), Anchor::middle, 10, "#777");
    }
    double legend = 62;
    for (const Series& series : all) {
        const bool isFloor = series.colour == floorColour;
        for (size_t i = 0; i < series.points.size(); ++i) {
            const auto& [size, nanoseconds] = series.points[i];
            if (i > 0) {
                const auto& [before, earlier] = series.points[i - 1];
                svg.line(x.at(before), y.at(earlier), x.at(size), y.at(nanoseconds), series.colour,
                         1.8, isFloor);
            }
            svg.circle(x.at(size), y.at(nanoseconds), 2.5, series.colour);
        }
        svg.line(660, legend - 4, 684, legend - 4, series.colour, 2.5, isFloor);
        svg.text(690, legend, series.name, Anchor::start, 11);
        legend += 18;
    }
    return svg.finished();
}

}  // namespace zrp_report
