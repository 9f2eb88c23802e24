#include "protocol/fields/frames.h"
#include "protocol/codec/operations.h"

namespace quorva_zrp {

ZRP_DEFINE_UNION(TZRPExtHead)
ZRP_DEFINE_UNION(TZRPBody)
ZRP_DEFINE_STRUCTURE(TZRPHead)
ZRP_DEFINE_STRUCTURE(TZRPFrame)
ZRP_DEFINE_STRUCTURE(TZRPInFrame)

}  // namespace quorva_zrp
