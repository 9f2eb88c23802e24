#include "protocol/fields/handshake.h"
#include "protocol/codec/operations.h"

namespace quorva_zrp {

ZRP_DEFINE_STRUCTURE(TZRPSynHead)
ZRP_DEFINE_STRUCTURE(TZRPAckHead)
ZRP_DEFINE_STRUCTURE(TZRPBingoBody)

}  // namespace quorva_zrp
