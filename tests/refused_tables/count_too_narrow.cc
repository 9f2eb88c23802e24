// refused: a governor holds every value that it may need
#include "tests/refused_tables/sample.h"

namespace quorva_zrp {

struct Narrow {
    uint8_t bCount;
    uint8_t szData[256];
    mutable uint32_t presence;

    enum : uint32_t { PRESENCE_Count = 1, PRESENCE_Data = 2 };
};
constexpr size_t Narrow_MAX_VARINT = 276;
constexpr size_t Narrow_MAX_FIXED = 276;

}  // namespace quorva_zrp

namespace quorva_zrp::codec {

// clang-format off
ZRP_STRUCTURE(Narrow,
    ZRP_ROW(1, b, Count),
    ZRP_ROW(2, sz, Data, ZRP_BY(bCount)));
// clang-format on

}  // namespace quorva_zrp::codec
