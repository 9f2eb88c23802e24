// Numbers as the page prints them.
#pragma once

#include <optional>
#include <string>

namespace zrp_report {

/// Three digits that mean something: 1.23, 12.3, 123, 1,230; a dash for what was not measured.
std::string number(std::optional<double> value);
/// A whole number with separated thousands.
std::string whole(std::optional<double> value);
/// A ratio: 1.23 x.
std::string times(std::optional<double> value);
/// A size in bytes: 16 B, 4 KiB, 1 MiB.
std::string byteCount(size_t bytes);

}  // namespace zrp_report
