#include "tests/mutation/collector.h"

namespace zrp_test::mutation {

std::string Collector::beginPlace() {
    place_ = number_;
    return placeCall();
}

void Collector::add(const std::string& operation, unsigned begin, unsigned end,
                    const std::string& replacement) {
    std::string function;
    for (const std::string& name : names_) {
        // The class that a member's own name holds already is not repeated.
        const bool isWhole = name.find("::") != std::string::npos || function.empty();
        function = isWhole ? name : function + "::" + name;
    }
    found_.mutants.push_back(
        {number_, place_, file_, function, operation, begin, end, replacement, true});
    ++number_;
}

void Collector::wrap(const Range& range, const std::string& before, const std::string& behind) {
    found_.insertions.push_back({range.begin, range.begin, false, before, place_});
    found_.insertions.push_back({range.end, range.end, true, behind, place_});
}

void Collector::replace(unsigned begin, unsigned end, const std::string& by) {
    found_.insertions.push_back({begin, end, false, by, place_});
}

}  // namespace zrp_test::mutation
