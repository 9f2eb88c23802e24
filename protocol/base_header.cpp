#include "protocol/fields/base_header.h"
#include "protocol/codec/operations.h"

namespace quorva_zrp {

ZRP_DEFINE_STRUCTURE(TZRPBase)

}  // namespace quorva_zrp
