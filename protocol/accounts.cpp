#include "protocol/fields/accounts.h"
#include "protocol/codec/operations.h"

namespace quorva_zrp {

ZRP_DEFINE_UNION(TVESKIDValue)
ZRP_DEFINE_STRUCTURE(TVESKAccount)
ZRP_DEFINE_STRUCTURE(TVESKAuthData)
ZRP_DEFINE_STRUCTURE(O2AuthData)
ZRP_DEFINE_STRUCTURE(TZRPAuthReqBody)
ZRP_DEFINE_STRUCTURE(TZRPAuthRspBody)
ZRP_DEFINE_STRUCTURE(TZRPAckBody)
ZRP_DEFINE_STRUCTURE(TZRPAuthRefreshReq)
ZRP_DEFINE_STRUCTURE(TZRPAuthRefreshNotifyBody)

}  // namespace quorva_zrp
