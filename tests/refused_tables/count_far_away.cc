// refused: a governed field comes right after what governs it
#include "tests/refused_tables/sample.h"

namespace quorva_zrp::codec {

// clang-format off
ZRP_STRUCTURE(Sample,
    ZRP_ROW(1, w, Count),
    ZRP_ROW(2, sz, Data, ZRP_BY(bKind)),
    ZRP_ROW(3, b, Kind),
    ZRP_ROW(4, b, Flag));
// clang-format on

}  // namespace quorva_zrp::codec
