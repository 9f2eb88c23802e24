// Drawings as SVG text, and scales.
#pragma once

#include <string>

namespace zrp_report {

enum class Anchor { start, middle, end };

/// A drawing on a white ground, so that it reads on dark pages, too.
class Svg {
  public:
    Svg(double width, double height);

    void rectangle(double x, double y, double width, double height, const std::string& colour);
    void line(double x1, double y1, double x2, double y2, const std::string& colour,
              double width = 1, bool isDashed = false);
    void circle(double x, double y, double radius, const std::string& colour);
    void text(double x, double y, const std::string& content, Anchor anchor = Anchor::start,
              double size = 12, const std::string& colour = "#222", bool isBold = false);

    /// The whole file.
    std::string finished() const;

  private:
    std::string body_;
};

/// Maps values onto a stretch of a drawing, by their logarithms.
class LogScale {
  public:
    LogScale(double least, double most, double from, double to);
    double at(double value) const;

  private:
    double least_;
    double most_;
    double from_;
    double to_;
};

}  // namespace zrp_report
