// From verified FlatBuffers to this project's records. Each `copy` is false for a table that is
// missing and for content that does not fit.
#pragma once

#include "bench/messages.h"
#include "bench/peers/record_access.h"
#include "zrp_generated.h"

namespace zrp_bench::flat {

template <size_t N>
[[nodiscard]] bool copyText(const flatbuffers::String* from, char (&to)[N]) {
    return from != nullptr && putText(to, {from->c_str(), from->size()});
}

inline bool copy(const zrp_flat::Base* from, Base& to) {
    if (from == nullptr) {
        return false;
    }
    to.wMagic = from->magic();
    to.wHeadVersion = from->head_version();
    to.wBodyVersion = from->body_version();
    to.wCommand = from->command();
    to.dwTimeStamp = from->time_stamp();
    to.bEncrypted = from->encrypted();
    to.dwSequence = from->sequence();
    to.dwHeadLen = from->head_len();
    to.dwBodyLen = from->body_len();
    return true;
}

inline bool copy(const zrp_flat::RawDhReq* from, quorva_zrp::TVESKRawDHReq& to) {
    return from != nullptr && from->a() != nullptr && from->p() != nullptr &&
           putBytes(to.szDH_A, to.wA_size, from->a()->data(), from->a()->size()) &&
           fillBytes(to.szDH_p, from->p()->data(), from->p()->size());
}

inline bool copy(const zrp_flat::Account* from, quorva_zrp::TVESKAccount& to) {
    if (from == nullptr) {
        return false;
    }
    to.wType = from->type();
    to.ullUid = from->uid();
    switch (from->value_type()) {
        case zrp_flat::AccountId_Id64:
            to.bFormat = quorva_zrp::ZRP_FORMAT_UINT64;
            to.stValue.ullUINT64 = from->value_as_Id64()->value();
            return true;
        case zrp_flat::AccountId_IdText:
            to.bFormat = quorva_zrp::ZRP_FORMAT_STRING;
            return copyText(from->value_as_IdText()->value(), to.stValue.szSTRING);
        default:
            return false;
    }
}

inline bool copy(const zrp_flat::RelayReqBody* from, quorva_zrp::TZRPRelayReqBody& to) {
    const zrp_flat::Relay* const info = from->relay_info();
    if (info == nullptr || info->identity() == nullptr) {
        return false;
    }
    quorva_zrp::TZRPRelay& relay = to.stRelayInfo;
    to.iRelayType = from->relay_type();
    relay.dwPosition = info->position();
    relay.ullServerID = info->server_id();
    relay.llSessionID = info->session_id();
    relay.bServerType = info->server_type();
    return fillBytes(relay.szIdentity, info->identity()->data(), info->identity()->size()) &&
           copyText(info->start_service_name(), relay.szStartServiceName);
}

inline bool copy(const zrp_flat::AuthReqBody* from, quorva_zrp::TZRPAuthReqBody& to) {
    to.wAuthType = from->auth_type();
    to.dwXQuorvaTimestamp = from->time_stamp();
    return copyText(from->game_token(), to.szGameToken) &&
           copyText(from->token_version(), to.szXQuorvaTokenVersion) && from->oauth() != nullptr &&
           copyText(from->oauth()->access_token(), to.stOAuthData.szAccessToken) &&
           copyText(from->oauth()->extend(), to.stOAuthData.szExtend);
}

/// The route of either head.
template <class Head>
bool copyRoute(const Head* from, uint8_t& flag, quorva_zrp::TZRPRouteInfo& to) {
    switch (from->route_type()) {
        case zrp_flat::Route_ZoneRoute:
            flag = quorva_zrp::ZRP_ROUTE_ZONE;
            to.stSpecifyZone.dwTypeID = from->route_as_ZoneRoute()->type_id();
            to.stSpecifyZone.dwZoneID = from->route_as_ZoneRoute()->zone_id();
            return true;
        case zrp_flat::Route_ServerRoute:
            flag = quorva_zrp::ZRP_ROUTE_SERVER;
            to.stSpecifyServer.ullServerID = from->route_as_ServerRoute()->server_id();
            to.stSpecifyServer.bServerType = from->route_as_ServerRoute()->server_type();
            return true;
        case zrp_flat::Route_NameRoute:
            flag = quorva_zrp::ZRP_ROUTE_NAME;
            return copyText(from->route_as_NameRoute()->service_name(),
                            to.stSpecifyName.szServiceName);
        default:
            flag = quorva_zrp::ZRP_ROUTE_NONE;
            return true;
    }
}

inline bool copy(const zrp_flat::SynHead* from, quorva_zrp::TZRPSynHead& to) {
    to.bKeyMethod = quorva_zrp::ZRP_KEY_RAW_DH;
    to.bEncMethod = from->enc_method();
    to.llGameID = from->game_id();
    to.iUnitID = from->unit_id();
    to.iClientType = from->client_type();
    to.bHasRelayInfo = from->relay_req_info() != nullptr;
    to.bHasAuthInfo = from->auth_req_info() != nullptr;
    to.bSupportCompressMethodList = from->compress_methods();
    to.dwReserved = from->reserved();
    return copy(from->key_info_as_RawDhReq(), to.stKeyInfo.stReqByRawDH) &&
           copy(from->account(), to.stAccount) &&
           (to.bHasRelayInfo == 0 || copy(from->relay_req_info(), to.stRelayReqInfo)) &&
           (to.bHasAuthInfo == 0 || copy(from->auth_req_info(), to.stAuthReqInfo)) &&
           copyRoute(from, to.bRouteFlag, to.stRouteInfo);
}

inline bool copy(const zrp_flat::DataHead* from, quorva_zrp::TZRPDataHead& to) {
    to.bCompressFlag = from->compress_flag();
    to.bAllowLost = from->allow_lost();
    return copyRoute(from, to.bRouteFlag, to.stRouteInfo);
}

inline bool copy(const zrp_flat::AuthRspBody* from, quorva_zrp::TZRPAuthRspBody& to) {
    to.wAuthType = from->auth_type();
    return copy(from->account(), to.stAccount) && copyText(from->atk(), to.szAtk) &&
           copyText(from->extend(), to.szExtend);
}

inline bool copy(const zrp_flat::RefreshNotice* from, Notice& to) {
    to.wAuthType = from->auth_type();
    to.dwAtkExpireIn = from->expire_in();
    return from->atk() != nullptr &&
           putBytes(to.szAtk, to.wAtkLen, from->atk()->data(), from->atk()->size());
}

inline bool copy(const zrp_flat::Head* from, quorva_zrp::TZRPHead& to) {
    if (from == nullptr || !copy(from->base(), to.stBase)) {
        return false;
    }
    switch (from->extend_type()) {
        case zrp_flat::Extension_SynHead:
            return copy(from->extend_as_SynHead(), to.stExtend.stSyn);
        case zrp_flat::Extension_DataHead:
            return copy(from->extend_as_DataHead(), to.stExtend.stData);
        default:
            return true;
    }
}

inline bool copy(const zrp_flat::Frame* from, Frame& to) {
    if (!copy(from->head(), to.stHead)) {
        return false;
    }
    switch (from->body_type()) {
        case zrp_flat::Body_AuthRspBody:
            return copy(from->body_as_AuthRspBody(), to.stBody.stAuthRsp);
        case zrp_flat::Body_RefreshNotice:
            return copy(from->body_as_RefreshNotice(), to.stBody.stAuthRefreshNotify);
        default:
            return true;
    }
}

inline bool copy(const zrp_flat::Frame* from, RawFrame& to) {
    return copy(from->head(), to.head()) && from->raw_body() != nullptr &&
           to.setBody(from->raw_body()->data(), from->raw_body()->size());
}

}  // namespace zrp_bench::flat
