// Tables of the records that heads and bodies are built from.
#include "tests/oracle/catalogue_rows.h"

namespace zrp_oracle {

using namespace quorva_zrp;

namespace {

// --- Key exchange -------------------------------------------------------------------------------

constexpr Field rawDHReq[] = {
    FIELD(TVESKRawDHReq, 1, uint16, wA_size).atMost(64),
    FIELD(TVESKRawDHReq, 2, bytes, szDH_A).governedBy(PLACE(TVESKRawDHReq, wA_size)),
    FIELD(TVESKRawDHReq, 3, bytes, szDH_p),
};

constexpr Field rawDHRsp[] = {
    FIELD(TVESKRawDHRsp, 1, uint16, wB_size).atMost(64),
    FIELD(TVESKRawDHRsp, 2, bytes, szDH_B).governedBy(PLACE(TVESKRawDHRsp, wB_size)),
};

constexpr Field encDHInfo[] = {
    FIELD(TVESKEncDHInfo, 1, uint8, bEncMethod),
    FIELD(TVESKEncDHInfo, 2, uint16, wEncInfoLen).atMost(1024),
    FIELD(TVESKEncDHInfo, 3, bytes, szEncryptedInfo).governedBy(PLACE(TVESKEncDHInfo, wEncInfoLen)),
};

constexpr Field key[] = {
    FIELD(TVESKKey, 1, uint8, bLength).atMost(128),
    FIELD(TVESKKey, 2, bytes, szValue).governedBy(PLACE(TVESKKey, bLength)),
};

constexpr Field keyReq[] = {
    FIELD(TZRPKeyReq, 0, char8, chNull),
    FIELD(TZRPKeyReq, 3, structure, stReqByRawDH).of(typeTVESKRawDHReq),
    FIELD(TZRPKeyReq, 4, structure, stReqByEncDH).of(typeTVESKEncDHInfo),
};

constexpr Field keyRsp[] = {
    FIELD(TZRPKeyRsp, 0, char8, chNull),
    FIELD(TZRPKeyRsp, 2, structure, stKey).of(typeTVESKKey),
    FIELD(TZRPKeyRsp, 3, structure, stRspByRawDH).of(typeTVESKRawDHRsp),
    FIELD(TZRPKeyRsp, 4, structure, stRspByEncDH).of(typeTVESKEncDHInfo),
};

// --- Accounts and authentication ----------------------------------------------------------------

constexpr Field idValue[] = {
    FIELD(TVESKIDValue, 0, char8, chNull),
    FIELD(TVESKIDValue, 1, uint32, dwUINT32),
    FIELD(TVESKIDValue, 2, uint64, ullUINT64),
    FIELD(TVESKIDValue, 3, text, szSTRING),
};

constexpr Field account[] = {
    FIELD(TVESKAccount, 1, uint16, wType),
    FIELD(TVESKAccount, 2, uint8, bFormat),
    FIELD(TVESKAccount, 3, unionValue, stValue)
        .of(typeTVESKIDValue)
        .governedBy(PLACE(TVESKAccount, bFormat)),
    FIELD(TVESKAccount, 4, uint64, ullUid),
};

constexpr Field authData[] = {
    FIELD(TVESKAuthData, 1, uint16, wAuthLen).atMost(1024),
    FIELD(TVESKAuthData, 2, bytes, szAuthInfo).governedBy(PLACE(TVESKAuthData, wAuthLen)),
};

constexpr Field o2AuthData[] = {
    FIELD(O2AuthData, 1, text, szAccessToken),
    FIELD(O2AuthData, 2, text, szExtend),
};

constexpr Field authReqBody[] = {
    FIELD(TZRPAuthReqBody, 1, uint16, wAuthType),
    FIELD(TZRPAuthReqBody, 2, text, szGameToken),
    FIELD(TZRPAuthReqBody, 4, uint32, dwXQuorvaTimestamp),
    FIELD(TZRPAuthReqBody, 5, text, szXQuorvaTokenVersion).startingAs("V1"),
    FIELD(TZRPAuthReqBody, 6, structure, stOAuthData).of(typeO2AuthData),
};

constexpr Field authRspBody[] = {
    FIELD(TZRPAuthRspBody, 1, structure, stAccount).of(typeTVESKAccount),
    FIELD(TZRPAuthRspBody, 2, uint16, wAuthType),
    FIELD(TZRPAuthRspBody, 3, text, szAtk),
    FIELD(TZRPAuthRspBody, 4, text, szExtend),
};

constexpr Field ackBody[] = {
    FIELD(TZRPAckBody, 1, uint8, bHasAuthInfo).atMost(1),
    FIELD(TZRPAckBody, 2, structure, stAuthResInfo)
        .of(typeTZRPAuthRspBody)
        .governedBy(PLACE(TZRPAckBody, bHasAuthInfo)),
};

constexpr Field authRefreshReq[] = {
    FIELD(TZRPAuthRefreshReq, 1, uint32, dwReserve),
};

constexpr Field authRefreshNotifyBody[] = {
    FIELD(TZRPAuthRefreshNotifyBody, 1, uint16, wAuthType),
    FIELD(TZRPAuthRefreshNotifyBody, 2, uint16, wAtkLen).atMost(1024),
    FIELD(TZRPAuthRefreshNotifyBody, 3, bytes, szAtk)
        .governedBy(PLACE(TZRPAuthRefreshNotifyBody, wAtkLen)),
    FIELD(TZRPAuthRefreshNotifyBody, 4, uint32, dwAtkExpireIn),
};

// --- Relay and routing --------------------------------------------------------------------------

constexpr Field relay[] = {
    FIELD(TZRPRelay, 1, uint32, dwPosition),  FIELD(TZRPRelay, 2, bytes, szIdentity),
    FIELD(TZRPRelay, 3, uint64, ullServerID), FIELD(TZRPRelay, 4, int64, llSessionID),
    FIELD(TZRPRelay, 5, uint8, bServerType),  FIELD(TZRPRelay, 6, text, szStartServiceName),
};

constexpr Field relayReqBody[] = {
    FIELD(TZRPRelayReqBody, 1, int32, iRelayType),
    FIELD(TZRPRelayReqBody, 2, structure, stRelayInfo).of(typeTZRPRelay),
};

constexpr Field zoneRoute[] = {
    FIELD(SpecifyZoneRouteInfo, 1, uint32, dwTypeID),
    FIELD(SpecifyZoneRouteInfo, 2, uint32, dwZoneID),
};

constexpr Field serverRoute[] = {
    FIELD(SpecifyServerRouteInfo, 1, uint64, ullServerID),
    FIELD(SpecifyServerRouteInfo, 2, uint8, bServerType),
};

constexpr Field nameRoute[] = {
    FIELD(SpecifyNameRouteInfo, 1, text, szServiceName),
};

constexpr Field routeInfo[] = {
    FIELD(TZRPRouteInfo, 0, char8, chNull),
    FIELD(TZRPRouteInfo, 1, structure, stSpecifyZone).of(typeSpecifyZoneRouteInfo),
    FIELD(TZRPRouteInfo, 2, structure, stSpecifyServer).of(typeSpecifyServerRouteInfo),
    FIELD(TZRPRouteInfo, 3, char8, chLOGINPOSITION),
    FIELD(TZRPRouteInfo, 4, structure, stSpecifyName).of(typeSpecifyNameRouteInfo),
};

constexpr Field routeChangeBody[] = {
    FIELD(TZRPRouteChangeBody, 1, uint64, ullServerID),
};

}  // namespace

STRUCTURE(TVESKRawDHReq, rawDHReq);
STRUCTURE(TVESKRawDHRsp, rawDHRsp);
STRUCTURE(TVESKEncDHInfo, encDHInfo);
STRUCTURE(TVESKKey, key);
UNION(TZRPKeyReq, keyReq);
UNION(TZRPKeyRsp, keyRsp);
UNION(TVESKIDValue, idValue);
STRUCTURE(TVESKAccount, account);
STRUCTURE(TVESKAuthData, authData);
STRUCTURE(O2AuthData, o2AuthData);
STRUCTURE(TZRPAuthReqBody, authReqBody);
STRUCTURE(TZRPAuthRspBody, authRspBody);
STRUCTURE(TZRPAckBody, ackBody);
STRUCTURE(TZRPAuthRefreshReq, authRefreshReq);
STRUCTURE(TZRPAuthRefreshNotifyBody, authRefreshNotifyBody);
STRUCTURE(TZRPRelay, relay);
STRUCTURE(TZRPRelayReqBody, relayReqBody);
STRUCTURE(SpecifyZoneRouteInfo, zoneRoute);
STRUCTURE(SpecifyServerRouteInfo, serverRoute);
STRUCTURE(SpecifyNameRouteInfo, nameRoute);
UNION(TZRPRouteInfo, routeInfo);
STRUCTURE(TZRPRouteChangeBody, routeChangeBody);

}  // namespace zrp_oracle
