// Everything that can be measured without any other package: this codec, the floors, the tests'
// oracle, and inputs that are hard on this codec.
#pragma once

#include "bench/harness/case.h"

namespace zrp_bench {

void addThisCodec(Cases& cases);
void addFloors(Cases& cases);
void addOracle(Cases& cases);
void addHardInputs(Cases& cases);
void addDump(Cases& cases);

}  // namespace zrp_bench
