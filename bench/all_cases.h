// All cases that this build can measure.
#pragma once

#include "bench/harness/case.h"

namespace zrp_bench {

Cases allCases();

}  // namespace zrp_bench
