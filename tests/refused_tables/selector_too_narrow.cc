// refused: a governor holds every value that it may need
#include "protocol/fields/frames.h"
#include "tests/refused_tables/sample.h"

namespace quorva_zrp {

struct Narrow {
    uint8_t bCommand;
    TZRPBody stBody;
    mutable uint32_t presence;

    enum : uint32_t { PRESENCE_Command = 1, PRESENCE_Body = 2 };
};
constexpr size_t Narrow_MAX_VARINT = 11 + 9 + 1068;
constexpr size_t Narrow_MAX_FIXED = 11 + 9 + 1065;

}  // namespace quorva_zrp

namespace quorva_zrp::codec {

// clang-format off
ZRP_STRUCTURE(Narrow,
    ZRP_ROW(1, b, Command),
    ZRP_ROW(2, st, Body, ZRP_BY(bCommand)));
// clang-format on

}  // namespace quorva_zrp::codec
