#include "bench/codecs/this_codec.h"

#include "bench/codecs/codecs.h"

namespace zrp_bench {

void addThisCodec(Cases& cases) {
    addCodec<ThisCodecVarint>(cases);
    addCodec<ThisCodecFixed>(cases);
}

}  // namespace zrp_bench
