// Everything that can be measured without any other package: this codec, the floors, the tests'
// oracle, inputs that are hard on this codec, and the extras beside it.
#pragma once

#include "bench/harness/case.h"

namespace zrp_bench {

void addThisCodec(Cases& cases);
void addFloors(Cases& cases);
void addOracle(Cases& cases);
void addHardInputs(Cases& cases);
void addDump(Cases& cases);
void addValidate(Cases& cases);

}  // namespace zrp_bench
