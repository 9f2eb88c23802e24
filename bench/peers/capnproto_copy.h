// From Cap'n Proto to this project's records. Each `copy` is false for content that does not fit;
// malformed encodings make Cap'n Proto throw.
#pragma once

#include "bench/messages.h"
#include "bench/peers/record_access.h"
#include "zrp.capnp.h"

namespace zrp_bench::capn {

template <size_t N>
[[nodiscard]] bool copyText(capnp::Text::Reader from, char (&to)[N]) {
    return putText(to, {from.begin(), from.size()});
}

inline bool copy(zrp_capnp::Base::Reader from, Base& to) {
    to.wMagic = from.getMagic();
    to.wHeadVersion = from.getHeadVersion();
    to.wBodyVersion = from.getBodyVersion();
    to.wCommand = from.getCommand();
    to.dwTimeStamp = from.getTimeStamp();
    to.bEncrypted = from.getEncrypted();
    to.dwSequence = from.getSequence();
    to.dwHeadLen = from.getHeadLen();
    to.dwBodyLen = from.getBodyLen();
    return true;
}

inline bool copy(zrp_capnp::RawDhReq::Reader from, quorva_zrp::TVESKRawDHReq& to) {
    const capnp::Data::Reader a = from.getA();
    const capnp::Data::Reader p = from.getP();
    return putBytes(to.szDH_A, to.wA_size, a.begin(), a.size()) &&
           fillBytes(to.szDH_p, p.begin(), p.size());
}

inline bool copy(zrp_capnp::Account::Reader from, quorva_zrp::TVESKAccount& to) {
    to.wType = from.getType();
    to.ullUid = from.getUid();
    const zrp_capnp::Account::Value::Reader value = from.getValue();
    switch (value.which()) {
        case zrp_capnp::Account::Value::ID64:
            to.bFormat = quorva_zrp::ZRP_FORMAT_UINT64;
            to.stValue.ullUINT64 = value.getId64();
            return true;
        case zrp_capnp::Account::Value::TEXT:
            to.bFormat = quorva_zrp::ZRP_FORMAT_STRING;
            return copyText(value.getText(), to.stValue.szSTRING);
        default:
            return false;
    }
}

inline bool copy(zrp_capnp::RelayReqBody::Reader from, quorva_zrp::TZRPRelayReqBody& to) {
    const zrp_capnp::Relay::Reader info = from.getRelayInfo();
    const capnp::Data::Reader identity = info.getIdentity();
    quorva_zrp::TZRPRelay& relay = to.stRelayInfo;
    to.iRelayType = from.getRelayType();
    relay.dwPosition = info.getPosition();
    relay.ullServerID = info.getServerId();
    relay.llSessionID = info.getSessionId();
    relay.bServerType = info.getServerType();
    return fillBytes(relay.szIdentity, identity.begin(), identity.size()) &&
           copyText(info.getStartServiceName(), relay.szStartServiceName);
}

inline bool copy(zrp_capnp::AuthReqBody::Reader from, quorva_zrp::TZRPAuthReqBody& to) {
    const zrp_capnp::OAuthData::Reader oauth = from.getOauth();
    to.wAuthType = from.getAuthType();
    to.dwXQuorvaTimestamp = from.getTimeStamp();
    return copyText(from.getGameToken(), to.szGameToken) &&
           copyText(from.getTokenVersion(), to.szXQuorvaTokenVersion) &&
           copyText(oauth.getAccessToken(), to.stOAuthData.szAccessToken) &&
           copyText(oauth.getExtend(), to.stOAuthData.szExtend);
}

inline bool copy(zrp_capnp::Route::Reader from, uint8_t& flag, quorva_zrp::TZRPRouteInfo& to) {
    switch (from.which()) {
        case zrp_capnp::Route::ZONE: {
            const zrp_capnp::ZoneRoute::Reader zone = from.getZone();
            flag = quorva_zrp::ZRP_ROUTE_ZONE;
            to.stSpecifyZone.dwTypeID = zone.getTypeId();
            to.stSpecifyZone.dwZoneID = zone.getZoneId();
            return true;
        }
        case zrp_capnp::Route::SERVER: {
            const zrp_capnp::ServerRoute::Reader server = from.getServer();
            flag = quorva_zrp::ZRP_ROUTE_SERVER;
            to.stSpecifyServer.ullServerID = server.getServerId();
            to.stSpecifyServer.bServerType = server.getServerType();
            return true;
        }
        case zrp_capnp::Route::NAME:
            flag = quorva_zrp::ZRP_ROUTE_NAME;
            return copyText(from.getName().getServiceName(), to.stSpecifyName.szServiceName);
        default:
            flag = quorva_zrp::ZRP_ROUTE_NONE;
            return true;
    }
}

inline bool copy(zrp_capnp::SynHead::Reader from, quorva_zrp::TZRPSynHead& to) {
    const zrp_capnp::SynHead::KeyInfo::Reader key = from.getKeyInfo();
    if (!key.isRawDh()) {
        return false;
    }
    to.bKeyMethod = quorva_zrp::ZRP_KEY_RAW_DH;
    to.bEncMethod = from.getEncMethod();
    to.llGameID = from.getGameId();
    to.iUnitID = from.getUnitId();
    to.iClientType = from.getClientType();
    to.bHasRelayInfo = from.hasRelayReqInfo();
    to.bHasAuthInfo = from.hasAuthReqInfo();
    to.bSupportCompressMethodList = from.getCompressMethods();
    to.dwReserved = from.getReserved();
    return copy(key.getRawDh(), to.stKeyInfo.stReqByRawDH) &&
           copy(from.getAccount(), to.stAccount) &&
           (to.bHasRelayInfo == 0 || copy(from.getRelayReqInfo(), to.stRelayReqInfo)) &&
           (to.bHasAuthInfo == 0 || copy(from.getAuthReqInfo(), to.stAuthReqInfo)) &&
           copy(from.getRoute(), to.bRouteFlag, to.stRouteInfo);
}

inline bool copy(zrp_capnp::DataHead::Reader from, quorva_zrp::TZRPDataHead& to) {
    to.bCompressFlag = from.getCompressFlag();
    to.bAllowLost = from.getAllowLost();
    return copy(from.getRoute(), to.bRouteFlag, to.stRouteInfo);
}

inline bool copy(zrp_capnp::AuthRspBody::Reader from, quorva_zrp::TZRPAuthRspBody& to) {
    to.wAuthType = from.getAuthType();
    return copy(from.getAccount(), to.stAccount) && copyText(from.getAtk(), to.szAtk) &&
           copyText(from.getExtend(), to.szExtend);
}

inline bool copy(zrp_capnp::RefreshNotice::Reader from, Notice& to) {
    const capnp::Data::Reader atk = from.getAtk();
    to.wAuthType = from.getAuthType();
    to.dwAtkExpireIn = from.getExpireIn();
    return putBytes(to.szAtk, to.wAtkLen, atk.begin(), atk.size());
}

inline bool copy(zrp_capnp::Head::Reader from, quorva_zrp::TZRPHead& to) {
    const zrp_capnp::Head::Extend::Reader extend = from.getExtend();
    if (!copy(from.getBase(), to.stBase)) {
        return false;
    }
    switch (extend.which()) {
        case zrp_capnp::Head::Extend::SYN:
            return copy(extend.getSyn(), to.stExtend.stSyn);
        case zrp_capnp::Head::Extend::DATA:
            return copy(extend.getData(), to.stExtend.stData);
        default:
            return true;
    }
}

inline bool copy(zrp_capnp::Frame::Reader from, Frame& to) {
    const zrp_capnp::Frame::Body::Reader body = from.getBody();
    if (!copy(from.getHead(), to.stHead)) {
        return false;
    }
    switch (body.which()) {
        case zrp_capnp::Frame::Body::AUTH_RSP:
            return copy(body.getAuthRsp(), to.stBody.stAuthRsp);
        case zrp_capnp::Frame::Body::REFRESH_NOTICE:
            return copy(body.getRefreshNotice(), to.stBody.stAuthRefreshNotify);
        default:
            return true;
    }
}

inline bool copy(zrp_capnp::Frame::Reader from, RawFrame& to) {
    const capnp::Data::Reader body = from.getRawBody();
    return copy(from.getHead(), to.head()) && to.setBody(body.begin(), body.size());
}

}  // namespace zrp_bench::capn
