#include "protocol/fields/relay_route.h"
#include "protocol/codec/operations.h"

namespace quorva_zrp {

ZRP_DEFINE_STRUCTURE(TZRPRelay)
ZRP_DEFINE_STRUCTURE(TZRPRelayReqBody)
ZRP_DEFINE_STRUCTURE(SpecifyZoneRouteInfo)
ZRP_DEFINE_STRUCTURE(SpecifyServerRouteInfo)
ZRP_DEFINE_STRUCTURE(SpecifyNameRouteInfo)
ZRP_DEFINE_UNION(TZRPRouteInfo)
ZRP_DEFINE_STRUCTURE(TZRPRouteChangeBody)

}  // namespace quorva_zrp
