// The one list of message types that the tests go through: ZRP_EVERY_TYPE(STRUCTURE, UNION) is
// STRUCTURE(Type) or UNION(Type) for each, with commas between them.
#pragma once

#define ZRP_EVERY_TYPE(STRUCTURE, UNION)                                                         \
    STRUCTURE(TZRPBase), STRUCTURE(TVESKRawDHReq), STRUCTURE(TVESKRawDHRsp),                     \
        STRUCTURE(TVESKEncDHInfo), STRUCTURE(TVESKKey), STRUCTURE(TVESKAccount),                 \
        STRUCTURE(TVESKAuthData), STRUCTURE(O2AuthData), STRUCTURE(TZRPAuthReqBody),             \
        STRUCTURE(TZRPAuthRspBody), STRUCTURE(TZRPAckBody), STRUCTURE(TZRPAuthRefreshReq),       \
        STRUCTURE(TZRPAuthRefreshNotifyBody), STRUCTURE(TZRPRelay), STRUCTURE(TZRPRelayReqBody), \
        STRUCTURE(SpecifyZoneRouteInfo), STRUCTURE(SpecifyServerRouteInfo),                      \
        STRUCTURE(SpecifyNameRouteInfo), STRUCTURE(TZRPRouteChangeBody), STRUCTURE(TZRPSynHead), \
        STRUCTURE(TZRPAckHead), STRUCTURE(TZRPBingoBody), STRUCTURE(TZRPDataHead),               \
        STRUCTURE(TZRPWaitBody), STRUCTURE(TZRPCStopBody), STRUCTURE(TZRPSStopBody),             \
        STRUCTURE(TZRPHead), STRUCTURE(TZRPFrame), STRUCTURE(TZRPInFrame), UNION(TZRPKeyReq),    \
        UNION(TZRPKeyRsp), UNION(TVESKIDValue), UNION(TZRPRouteInfo), UNION(TZRPExtHead),        \
        UNION(TZRPBody)
