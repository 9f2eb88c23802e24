// refused: presence bits follow declaration order
#include "tests/refused_tables/sample.h"

namespace quorva_zrp {

struct Swapped {
    uint8_t bFirst;
    uint8_t bSecond;
    mutable uint32_t presence;

    enum : uint32_t { PRESENCE_First = 2, PRESENCE_Second = 1 };
};
constexpr size_t Swapped_MAX_VARINT = 17;
constexpr size_t Swapped_MAX_FIXED = 17;

}  // namespace quorva_zrp

namespace quorva_zrp::codec {

// clang-format off
ZRP_STRUCTURE(Swapped,
    ZRP_ROW(1, b, First),
    ZRP_ROW(2, b, Second));
// clang-format on

}  // namespace quorva_zrp::codec
