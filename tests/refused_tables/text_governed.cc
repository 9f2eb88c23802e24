// refused: byte arrays, structures and unions have governors
#include "tests/refused_tables/sample.h"

namespace quorva_zrp {

struct Governed {
    uint16_t wCount;
    char szText[8];
    mutable uint32_t presence;

    enum : uint32_t { PRESENCE_Count = 1, PRESENCE_Text = 2 };
};
constexpr size_t Governed_MAX_VARINT = 30;
constexpr size_t Governed_MAX_FIXED = 29;

}  // namespace quorva_zrp

namespace quorva_zrp::codec {

// clang-format off
ZRP_STRUCTURE(Governed,
    ZRP_ROW(1, w, Count),
    ZRP_ROW(2, sz, Text, ZRP_BY(wCount)));
// clang-format on

}  // namespace quorva_zrp::codec
