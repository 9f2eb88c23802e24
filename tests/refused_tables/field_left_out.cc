// refused: only 2 names
#include "tests/refused_tables/sample.h"

namespace quorva_zrp {

// The member without a row hides in the padding in front of the presence word.
struct Padded {
    uint16_t wCount;
    uint8_t bForgotten;
    mutable uint32_t presence;

    enum : uint32_t { PRESENCE_Count = 1 };
};
constexpr size_t Padded_MAX_VARINT = 13;
constexpr size_t Padded_MAX_FIXED = 12;

}  // namespace quorva_zrp

namespace quorva_zrp::codec {

// clang-format off
ZRP_STRUCTURE(Padded,
    ZRP_ROW(1, w, Count));
// clang-format on

}  // namespace quorva_zrp::codec
