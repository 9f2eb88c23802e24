#include "bench/harness/case.h"

#include <stdio.h>
#include <stdlib.h>

#include <algorithm>

namespace zrp_bench {

void failCheck(const std::string& name, const std::string& reason) {
    fprintf(stderr, "%s: %s\n", name.c_str(), reason.c_str());
    exit(1);
}

size_t batchFor(double bytes) {
    return std::clamp<size_t>(static_cast<size_t>(262144 / (bytes + 64)), 2, 1024);
}

}  // namespace zrp_bench
