// refused: the rows add up to the published largest size with varints
#include "tests/refused_tables/sample.h"

namespace quorva_zrp {

struct Small {
    uint8_t bKind;
    mutable uint32_t presence;

    enum : uint32_t { PRESENCE_Kind = 1 };
};
constexpr size_t Small_MAX_VARINT = 12;
constexpr size_t Small_MAX_FIXED = 11;

}  // namespace quorva_zrp

namespace quorva_zrp::codec {

// clang-format off
ZRP_STRUCTURE(Small,
    ZRP_ROW(1, b, Kind));
// clang-format on

}  // namespace quorva_zrp::codec
