// What this codec is to reach, and whether it does.
#pragma once

#include <string>

#include "bench/report/results.h"

namespace zrp_report {

/// A table of every target with what was measured, and a line that counts those that are met.
std::string targetTable(const Results& results);

}  // namespace zrp_report
