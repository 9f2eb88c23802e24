#include "bench/report/numbers.h"

#include <math.h>
#include <stdio.h>

namespace zrp_report {

namespace {

std::string fixed(double value, int digits) {
    char text[64];
    snprintf(text, sizeof(text), "%.*f", digits, value);
    return text;
}

}  // namespace

std::string whole(std::optional<double> value) {
    if (!value) {
        return "–";
    }
    std::string text = fixed(*value, 0);
    for (size_t at = text.size(); at > 3;) {
        at -= 3;
        text.insert(at, 1, ',');
    }
    return text;
}

std::string number(std::optional<double> value) {
    if (!value) {
        return "–";
    }
    return *value < 9.995 ? fixed(*value, 2) : *value < 99.95 ? fixed(*value, 1) : whole(value);
}

std::string times(std::optional<double> value) {
    return value ? number(value) + " ×" : "–";
}

std::string byteCount(size_t bytes) {
    if (bytes % (1 << 20) == 0) {
        return std::to_string(bytes >> 20) + " MiB";
    }
    return bytes % 1024 == 0 ? std::to_string(bytes >> 10) + " KiB" : std::to_string(bytes) + " B";
}

}  // namespace zrp_report
