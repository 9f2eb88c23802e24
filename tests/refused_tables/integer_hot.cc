// refused: of the fields of a structure only nested values are hot
#include "tests/refused_tables/sample.h"

namespace quorva_zrp::codec {

// clang-format off
ZRP_STRUCTURE(Sample,
    ZRP_ROW(1, w, Count),
    ZRP_ROW(2, sz, Data, ZRP_BY(wCount)),
    ZRP_ROW(3, b, Kind, Hot),
    ZRP_ROW(4, b, Flag));
// clang-format on

}  // namespace quorva_zrp::codec
