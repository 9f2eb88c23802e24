// The charts of the page.
#pragma once

#include <string>

#include "bench/report/results.h"

namespace zrp_report {

/// Bars of every codec, a panel for each main message.
std::string codecChart(const Results& results, const std::string& direction);
/// Nanoseconds against the size of the body.
std::string bodyChart(const Results& results, const std::string& direction);

}  // namespace zrp_report
