// refused: the type is in the catalogue
#include "protocol/codec/field_data.h"
#include "tests/refused_tables/sample.h"

namespace quorva_zrp {

struct Unlisted {
    uint8_t bKind;
    mutable uint32_t presence;
};

}  // namespace quorva_zrp

namespace quorva_zrp::codec {

// clang-format off
constexpr uint8_t index = typeIndex<Unlisted>;
// clang-format on

}  // namespace quorva_zrp::codec
