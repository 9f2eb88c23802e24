#include "protocol/fields/key_exchange.h"
#include "protocol/codec/operations.h"

namespace quorva_zrp {

ZRP_DEFINE_STRUCTURE(TVESKRawDHReq)
ZRP_DEFINE_STRUCTURE(TVESKRawDHRsp)
ZRP_DEFINE_STRUCTURE(TVESKEncDHInfo)
ZRP_DEFINE_STRUCTURE(TVESKKey)
ZRP_DEFINE_UNION(TZRPKeyReq)
ZRP_DEFINE_UNION(TZRPKeyRsp)

}  // namespace quorva_zrp
