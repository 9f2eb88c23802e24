#include "tests/differential/effort.h"

#include <stdlib.h>

#include <algorithm>

namespace zrp_test {

size_t differentialRounds() {
    const char* text = getenv("ZRP_DIFFERENTIAL_ROUNDS");
    return text == nullptr ? 1 : std::max<size_t>(1, strtoul(text, nullptr, 10));
}

std::vector<size_t> sizesUpTo(size_t last, size_t most, Random& random) {
    constexpr size_t edge = 30;
    std::vector<size_t> sizes;
    if (last <= most || last <= 2 * edge) {
        for (size_t size = 0; size <= last; ++size) {
            sizes.push_back(size);
        }
        return sizes;
    }
    for (size_t i = 0; i < edge; ++i) {
        sizes.push_back(i);
        sizes.push_back(last - i);
    }
    for (size_t i = 0; i < most; ++i) {
        sizes.push_back(edge + random.below(last - 2 * edge));
    }
    return sizes;
}

}  // namespace zrp_test
