// From this project's records to Cap'n Proto. Members of unions that no measured message uses are
// left out.
#pragma once

#include "bench/messages.h"
#include "bench/peers/record_access.h"
#include "zrp.capnp.h"

namespace zrp_bench::capn {

/// Texts of records end with a NUL, which a text reader asks for.
template <size_t N>
capnp::Text::Reader text(const char (&from)[N]) {
    return {from, textOf(from).size()};
}

inline capnp::Data::Reader data(const uint8_t* from, size_t size) {
    return {from, size};
}

inline void build(zrp_capnp::Base::Builder to, const Base& from) {
    to.setMagic(from.wMagic);
    to.setHeadVersion(from.wHeadVersion);
    to.setBodyVersion(from.wBodyVersion);
    to.setCommand(from.wCommand);
    to.setTimeStamp(from.dwTimeStamp);
    to.setEncrypted(from.bEncrypted);
    to.setSequence(from.dwSequence);
    to.setHeadLen(from.dwHeadLen);
    to.setBodyLen(from.dwBodyLen);
}

inline void build(zrp_capnp::Account::Builder to, const quorva_zrp::TVESKAccount& from) {
    to.setType(from.wType);
    if (from.bFormat == quorva_zrp::ZRP_FORMAT_UINT64) {
        to.getValue().setId64(from.stValue.ullUINT64);
    } else if (from.bFormat == quorva_zrp::ZRP_FORMAT_STRING) {
        to.getValue().setText(text(from.stValue.szSTRING));
    }
    to.setUid(from.ullUid);
}

inline void build(zrp_capnp::RelayReqBody::Builder to, const quorva_zrp::TZRPRelayReqBody& from) {
    const quorva_zrp::TZRPRelay& info = from.stRelayInfo;
    to.setRelayType(from.iRelayType);
    zrp_capnp::Relay::Builder relay = to.initRelayInfo();
    relay.setPosition(info.dwPosition);
    relay.setIdentity(data(info.szIdentity, sizeof(info.szIdentity)));
    relay.setServerId(info.ullServerID);
    relay.setSessionId(info.llSessionID);
    relay.setServerType(info.bServerType);
    relay.setStartServiceName(text(info.szStartServiceName));
}

inline void build(zrp_capnp::AuthReqBody::Builder to, const quorva_zrp::TZRPAuthReqBody& from) {
    to.setAuthType(from.wAuthType);
    to.setGameToken(text(from.szGameToken));
    to.setTimeStamp(from.dwXQuorvaTimestamp);
    to.setTokenVersion(text(from.szXQuorvaTokenVersion));
    zrp_capnp::OAuthData::Builder oauth = to.initOauth();
    oauth.setAccessToken(text(from.stOAuthData.szAccessToken));
    oauth.setExtend(text(from.stOAuthData.szExtend));
}

inline void build(zrp_capnp::Route::Builder to, uint8_t flag,
                  const quorva_zrp::TZRPRouteInfo& from) {
    if (flag == quorva_zrp::ZRP_ROUTE_ZONE) {
        zrp_capnp::ZoneRoute::Builder zone = to.initZone();
        zone.setTypeId(from.stSpecifyZone.dwTypeID);
        zone.setZoneId(from.stSpecifyZone.dwZoneID);
    } else if (flag == quorva_zrp::ZRP_ROUTE_SERVER) {
        zrp_capnp::ServerRoute::Builder server = to.initServer();
        server.setServerId(from.stSpecifyServer.ullServerID);
        server.setServerType(from.stSpecifyServer.bServerType);
    } else if (flag == quorva_zrp::ZRP_ROUTE_NAME) {
        to.initName().setServiceName(text(from.stSpecifyName.szServiceName));
    }
}

inline void build(zrp_capnp::SynHead::Builder to, const quorva_zrp::TZRPSynHead& from) {
    if (from.bKeyMethod == quorva_zrp::ZRP_KEY_RAW_DH) {
        const quorva_zrp::TVESKRawDHReq& key = from.stKeyInfo.stReqByRawDH;
        zrp_capnp::RawDhReq::Builder raw = to.getKeyInfo().initRawDh();
        raw.setA(data(key.szDH_A, key.wA_size));
        raw.setP(data(key.szDH_p, sizeof(key.szDH_p)));
    }
    to.setEncMethod(from.bEncMethod);
    to.setGameId(from.llGameID);
    to.setUnitId(from.iUnitID);
    to.setClientType(from.iClientType);
    build(to.initAccount(), from.stAccount);
    if (from.bHasRelayInfo != 0) {
        build(to.initRelayReqInfo(), from.stRelayReqInfo);
    }
    if (from.bHasAuthInfo != 0) {
        build(to.initAuthReqInfo(), from.stAuthReqInfo);
    }
    to.setCompressMethods(from.bSupportCompressMethodList);
    build(to.initRoute(), from.bRouteFlag, from.stRouteInfo);
    to.setReserved(from.dwReserved);
}

inline void build(zrp_capnp::DataHead::Builder to, const quorva_zrp::TZRPDataHead& from) {
    to.setCompressFlag(from.bCompressFlag);
    to.setAllowLost(from.bAllowLost);
    build(to.initRoute(), from.bRouteFlag, from.stRouteInfo);
}

inline void build(zrp_capnp::AuthRspBody::Builder to, const quorva_zrp::TZRPAuthRspBody& from) {
    build(to.initAccount(), from.stAccount);
    to.setAuthType(from.wAuthType);
    to.setAtk(text(from.szAtk));
    to.setExtend(text(from.szExtend));
}

inline void build(zrp_capnp::RefreshNotice::Builder to, const Notice& from) {
    to.setAuthType(from.wAuthType);
    to.setAtk(data(from.szAtk, from.wAtkLen));
    to.setExpireIn(from.dwAtkExpireIn);
}

inline void build(zrp_capnp::Head::Builder to, const quorva_zrp::TZRPHead& from) {
    build(to.initBase(), from.stBase);
    if (from.stBase.wCommand == quorva_zrp::ZRP_CMD_SYN) {
        build(to.getExtend().initSyn(), from.stExtend.stSyn);
    } else if (from.stBase.wCommand == quorva_zrp::ZRP_CMD_DATA) {
        build(to.getExtend().initData(), from.stExtend.stData);
    }
}

inline void build(zrp_capnp::Frame::Builder to, const Frame& from) {
    build(to.initHead(), from.stHead);
    const uint16_t command = from.stHead.stBase.wCommand;
    if (command == quorva_zrp::ZRP_CMD_AUTH_RSP) {
        build(to.getBody().initAuthRsp(), from.stBody.stAuthRsp);
    } else if (command == quorva_zrp::ZRP_CMD_AUTH_REFRESH_NOTIFY) {
        build(to.getBody().initRefreshNotice(), from.stBody.stAuthRefreshNotify);
    }
}

inline void build(zrp_capnp::Frame::Builder to, const RawFrame& from) {
    build(to.initHead(), from.head());
    to.setRawBody(data(from.body().data(), from.body().size()));
}

}  // namespace zrp_bench::capn
