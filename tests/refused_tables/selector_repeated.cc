// refused: selectors ascend, so each names one member
#include "tests/refused_tables/sample.h"

namespace quorva_zrp {

union Choice {
    int8_t chNull;
    int8_t chOne;
    int8_t chTwo;
};
constexpr size_t Choice_MAX_VARINT = 11;
constexpr size_t Choice_MAX_FIXED = 11;

}  // namespace quorva_zrp

namespace quorva_zrp::codec {

// clang-format off
ZRP_UNION(Choice,
    ZRP_MEMBER(0, ch, Null),
    ZRP_MEMBER(1, ch, One),
    ZRP_MEMBER(1, ch, Two));
// clang-format on

}  // namespace quorva_zrp::codec
