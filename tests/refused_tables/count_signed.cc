// refused: counts, selectors and flags are unsigned
#include "tests/refused_tables/sample.h"

namespace quorva_zrp {

struct Signed {
    int32_t iCount;
    uint8_t szData[8];
    mutable uint32_t presence;

    enum : uint32_t { PRESENCE_Count = 1, PRESENCE_Data = 2 };
};
constexpr size_t Signed_MAX_VARINT = 32;
constexpr size_t Signed_MAX_FIXED = 31;

}  // namespace quorva_zrp

namespace quorva_zrp::codec {

// clang-format off
ZRP_STRUCTURE(Signed,
    ZRP_ROW(1, i, Count),
    ZRP_ROW(2, sz, Data, ZRP_BY(iCount)));
// clang-format on

}  // namespace quorva_zrp::codec
