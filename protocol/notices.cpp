#include "protocol/fields/notices.h"
#include "protocol/codec/operations.h"

namespace quorva_zrp {

ZRP_DEFINE_STRUCTURE(TZRPDataHead)
ZRP_DEFINE_STRUCTURE(TZRPWaitBody)
ZRP_DEFINE_STRUCTURE(TZRPCStopBody)
ZRP_DEFINE_STRUCTURE(TZRPSStopBody)

}  // namespace quorva_zrp
