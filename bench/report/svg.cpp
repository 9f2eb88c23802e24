#include "bench/report/svg.h"

#include <math.h>
#include <stdio.h>

namespace zrp_report {

namespace {

/// Coordinates with one decimal, so that files stay small and differ little.
std::string place(double value) {
    char text[32];
    snprintf(text, sizeof(text), "%.1f", value);
    return text;
}

std::string attribute(const char* name, const std::string& value) {
    return std::string(" ") + name + "=\"" + value + "\"";
}

std::string escaped(const std::string& text) {
    std::string made;
    for (const char c : text) {
        switch (c) {
            case '&':
                made += "&amp;";
                break;
            case '<':
                made += "&lt;";
                break;
            default:
                made += c;
        }
    }
    return made;
}

}  // namespace

Svg::Svg(double width, double height)
    : body_("<svg xmlns=\"http://www.w3.org/2000/svg\"" + attribute("width", place(width)) +
            attribute("height", place(height)) +
            attribute("viewBox", "0 0 " + place(width) + " " + place(height)) +
            " font-family=\"sans-serif\">\n") {
    rectangle(0, 0, width, height, "#ffffff");
}

void Svg::rectangle(double x, double y, double width, double height, const std::string& colour) {
    body_ += "<rect" + attribute("x", place(x)) + attribute("y", place(y)) +
             attribute("width", place(width)) + attribute("height", place(height)) +
             attribute("fill", colour) + "/>\n";
}

void Svg::line(double x1, double y1, double x2, double y2, const std::string& colour, double width,
               bool isDashed) {
    body_ += "<line" + attribute("x1", place(x1)) + attribute("y1", place(y1)) +
             attribute("x2", place(x2)) + attribute("y2", place(y2)) + attribute("stroke", colour) +
             attribute("stroke-width", place(width)) +
             (isDashed ? attribute("stroke-dasharray", "4 3") : "") + "/>\n";
}

void Svg::circle(double x, double y, double radius, const std::string& colour) {
    body_ += "<circle" + attribute("cx", place(x)) + attribute("cy", place(y)) +
             attribute("r", place(radius)) + attribute("fill", colour) + "/>\n";
}

void Svg::text(double x, double y, const std::string& content, Anchor anchor, double size,
               const std::string& colour, bool isBold) {
    const char* const anchors[] = {"start", "middle", "end"};
    body_ += "<text" + attribute("x", place(x)) + attribute("y", place(y)) +
             attribute("font-size", place(size)) + attribute("fill", colour) +
             attribute("text-anchor", anchors[static_cast<int>(anchor)]) +
             (isBold ? attribute("font-weight", "bold") : "") + ">" + escaped(content) +
             "</text>\n";
}

std::string Svg::finished() const {
    return body_ + "</svg>\n";
}

LogScale::LogScale(double least, double most, double from, double to)
    : least_(log(least)), most_(log(most)), from_(from), to_(to) {}

double LogScale::at(double value) const {
    return from_ + (log(value) - least_) / (most_ - least_) * (to_ - from_);
}

}  // namespace zrp_report
