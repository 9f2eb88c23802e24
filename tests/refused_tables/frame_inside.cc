// refused: bytes behind a record are governed and end the outermost record
#include "protocol/fields/frames.h"
#include "tests/refused_tables/sample.h"

namespace quorva_zrp {

union Choice {
    int8_t chNull;
    TZRPHead stHead;
};
constexpr size_t Choice_MAX_VARINT = 5 + 9 + 2820;
constexpr size_t Choice_MAX_FIXED = 5 + 9 + 2795;

// A frame as a member: in a union, where it needs no room of its own behind it.
using Frame = TZRPFrame;

}  // namespace quorva_zrp

namespace quorva_zrp::codec {

// clang-format off
ZRP_TABLE(UnionTable, Choice,
    ZRP_MEMBER(0, ch, Null),
    Row<1, "[stFrame]", 0, Frame, 0>);
// clang-format on

}  // namespace quorva_zrp::codec
