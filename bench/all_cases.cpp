#include "bench/all_cases.h"

#include "bench/codecs/codecs.h"
#ifdef ZRP_BENCH_PEERS
#include "bench/peers/peers.h"
#endif

namespace zrp_bench {

Cases allCases() {
    Cases cases;
    addFloors(cases);
    addThisCodec(cases);
    addHardInputs(cases);
    addOracle(cases);
    addDump(cases);
    addValidate(cases);
#ifdef ZRP_BENCH_PEERS
    addProtobuf(cases);
    addProtobufLite(cases);
    addNanopb(cases);
    addProtozero(cases);
    addFlatBuffers(cases);
    addCapnProto(cases);
    addMsgpack(cases);
#endif
    return cases;
}

}  // namespace zrp_bench
