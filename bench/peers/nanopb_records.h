// Between this project's records and nanopb's structures. Members of unions that no measured
// message uses are left out.
#pragma once

#include <pb_encode.h>

#include "bench/messages.h"
#include "bench/peers/record_access.h"
#include "zrp.nanopb.h"

namespace zrp_bench::nanopb {

/// Sets an optional field and the flag that says it is there.
#define ZRP_SET(message, field, value) ((message).has_##field = true, (message).field = (value))

template <size_t N>
void setText(bool& has, char (&to)[N], std::string_view text) {
    has = putText(to, text);
}

template <class Bytes>
void setBytes(bool& has, Bytes& to, const uint8_t* from, size_t size) {
    has = putBytes(to.bytes, to.size, from, size);
}

// --- From a record into a structure -------------------------------------------------------------

inline void fill(zrp_peer_Base& to, const Base& from) {
    ZRP_SET(to, magic, from.wMagic);
    ZRP_SET(to, head_version, from.wHeadVersion);
    ZRP_SET(to, body_version, from.wBodyVersion);
    ZRP_SET(to, command, from.wCommand);
    ZRP_SET(to, time_stamp, from.dwTimeStamp);
    ZRP_SET(to, encrypted, from.bEncrypted);
    ZRP_SET(to, sequence, from.dwSequence);
    ZRP_SET(to, head_len, from.dwHeadLen);
    ZRP_SET(to, body_len, from.dwBodyLen);
}

inline void fill(zrp_peer_Account& to, const quorva_zrp::TVESKAccount& from) {
    ZRP_SET(to, type, from.wType);
    if (from.bFormat == quorva_zrp::ZRP_FORMAT_UINT64) {
        to.which_value = zrp_peer_Account_id64_tag;
        to.value.id64 = from.stValue.ullUINT64;
    } else if (putText(to.value.text, textOf(from.stValue.szSTRING))) {
        to.which_value = zrp_peer_Account_text_tag;
    }
    ZRP_SET(to, uid, from.ullUid);
}

inline void fill(zrp_peer_RelayReqBody& to, const quorva_zrp::TZRPRelayReqBody& from) {
    const quorva_zrp::TZRPRelay& info = from.stRelayInfo;
    zrp_peer_Relay& relay = to.relay_info;
    to.has_relay_info = true;
    ZRP_SET(to, relay_type, from.iRelayType);
    ZRP_SET(relay, position, info.dwPosition);
    setBytes(relay.has_identity, relay.identity, info.szIdentity, sizeof(info.szIdentity));
    ZRP_SET(relay, server_id, info.ullServerID);
    ZRP_SET(relay, session_id, info.llSessionID);
    ZRP_SET(relay, server_type, info.bServerType);
    setText(relay.has_start_service_name, relay.start_service_name,
            textOf(info.szStartServiceName));
}

inline void fill(zrp_peer_AuthReqBody& to, const quorva_zrp::TZRPAuthReqBody& from) {
    ZRP_SET(to, auth_type, from.wAuthType);
    setText(to.has_game_token, to.game_token, textOf(from.szGameToken));
    ZRP_SET(to, time_stamp, from.dwXQuorvaTimestamp);
    setText(to.has_token_version, to.token_version, textOf(from.szXQuorvaTokenVersion));
    to.has_oauth = true;
    setText(to.oauth.has_access_token, to.oauth.access_token,
            textOf(from.stOAuthData.szAccessToken));
    setText(to.oauth.has_extend, to.oauth.extend, textOf(from.stOAuthData.szExtend));
}

/// `Head` is one of the two structures that hold a route, each with tags of its own.
template <class Head>
void fillRoute(Head& to, pb_size_t zone, pb_size_t server, pb_size_t name, uint8_t flag,
               const quorva_zrp::TZRPRouteInfo& from) {
    if (flag == quorva_zrp::ZRP_ROUTE_ZONE) {
        to.which_route = zone;
        ZRP_SET(to.route.zone, type_id, from.stSpecifyZone.dwTypeID);
        ZRP_SET(to.route.zone, zone_id, from.stSpecifyZone.dwZoneID);
    } else if (flag == quorva_zrp::ZRP_ROUTE_SERVER) {
        to.which_route = server;
        ZRP_SET(to.route.server, server_id, from.stSpecifyServer.ullServerID);
        ZRP_SET(to.route.server, server_type, from.stSpecifyServer.bServerType);
    } else if (flag == quorva_zrp::ZRP_ROUTE_NAME) {
        to.which_route = name;
        setText(to.route.name.has_service_name, to.route.name.service_name,
                textOf(from.stSpecifyName.szServiceName));
    }
}

inline void fill(zrp_peer_SynHead& to, const quorva_zrp::TZRPSynHead& from) {
    if (from.bKeyMethod == quorva_zrp::ZRP_KEY_RAW_DH) {
        const quorva_zrp::TVESKRawDHReq& key = from.stKeyInfo.stReqByRawDH;
        zrp_peer_RawDhReq& raw = to.key_info.raw_dh;
        to.which_key_info = zrp_peer_SynHead_raw_dh_tag;
        setBytes(raw.has_a, raw.a, key.szDH_A, key.wA_size);
        setBytes(raw.has_p, raw.p, key.szDH_p, sizeof(key.szDH_p));
    }
    ZRP_SET(to, enc_method, from.bEncMethod);
    ZRP_SET(to, game_id, from.llGameID);
    ZRP_SET(to, unit_id, from.iUnitID);
    ZRP_SET(to, client_type, from.iClientType);
    to.has_account = true;
    fill(to.account, from.stAccount);
    to.has_relay_req_info = from.bHasRelayInfo != 0;
    if (to.has_relay_req_info) {
        fill(to.relay_req_info, from.stRelayReqInfo);
    }
    to.has_auth_req_info = from.bHasAuthInfo != 0;
    if (to.has_auth_req_info) {
        fill(to.auth_req_info, from.stAuthReqInfo);
    }
    ZRP_SET(to, compress_methods, from.bSupportCompressMethodList);
    fillRoute(to, zrp_peer_SynHead_zone_tag, zrp_peer_SynHead_server_tag, zrp_peer_SynHead_name_tag,
              from.bRouteFlag, from.stRouteInfo);
    ZRP_SET(to, reserved, from.dwReserved);
}

inline void fill(zrp_peer_DataHead& to, const quorva_zrp::TZRPDataHead& from) {
    ZRP_SET(to, compress_flag, from.bCompressFlag);
    ZRP_SET(to, allow_lost, from.bAllowLost);
    fillRoute(to, zrp_peer_DataHead_zone_tag, zrp_peer_DataHead_server_tag,
              zrp_peer_DataHead_name_tag, from.bRouteFlag, from.stRouteInfo);
}

inline void fill(zrp_peer_AuthRspBody& to, const quorva_zrp::TZRPAuthRspBody& from) {
    to.has_account = true;
    fill(to.account, from.stAccount);
    ZRP_SET(to, auth_type, from.wAuthType);
    setText(to.has_atk, to.atk, textOf(from.szAtk));
    setText(to.has_extend, to.extend, textOf(from.szExtend));
}

inline void fill(zrp_peer_RefreshNotice& to, const Notice& from) {
    ZRP_SET(to, auth_type, from.wAuthType);
    setBytes(to.has_atk, to.atk, from.szAtk, from.wAtkLen);
    ZRP_SET(to, expire_in, from.dwAtkExpireIn);
}

inline void fill(zrp_peer_Head& to, const quorva_zrp::TZRPHead& from) {
    to.has_base = true;
    fill(to.base, from.stBase);
    if (from.stBase.wCommand == quorva_zrp::ZRP_CMD_SYN) {
        to.which_extend = zrp_peer_Head_syn_tag;
        fill(to.extend.syn, from.stExtend.stSyn);
    } else if (from.stBase.wCommand == quorva_zrp::ZRP_CMD_DATA) {
        to.which_extend = zrp_peer_Head_data_tag;
        fill(to.extend.data, from.stExtend.stData);
    }
}

inline void fill(zrp_peer_Frame& to, const Frame& from) {
    to.has_head = true;
    fill(to.head, from.stHead);
    const uint16_t command = from.stHead.stBase.wCommand;
    if (command == quorva_zrp::ZRP_CMD_AUTH_RSP) {
        to.which_body = zrp_peer_Frame_auth_rsp_tag;
        fill(to.body.auth_rsp, from.stBody.stAuthRsp);
    } else if (command == quorva_zrp::ZRP_CMD_AUTH_REFRESH_NOTIFY) {
        to.which_body = zrp_peer_Frame_refresh_notice_tag;
        fill(to.body.refresh_notice, from.stBody.stAuthRefreshNotify);
    }
}

inline void fill(zrp_peer_Frame& to, const RawFrame& from) {
    to.has_head = true;
    fill(to.head, from.head());
    to.raw_body.funcs.encode = [](pb_ostream_t* stream, const pb_field_t* field,
                                  void* const* argument) {
        const std::span<const uint8_t> body = static_cast<const RawFrame*>(*argument)->body();
        return pb_encode_tag_for_field(stream, field) &&
               pb_encode_string(stream, body.data(), body.size());
    };
    to.raw_body.arg = const_cast<RawFrame*>(&from);
}

#undef ZRP_SET

// --- From a structure into a record; only for the check of results ------------------------------

inline bool read(const zrp_peer_Base& from, Base& to) {
    to.wMagic = static_cast<uint16_t>(from.magic);
    to.wHeadVersion = static_cast<uint16_t>(from.head_version);
    to.wBodyVersion = static_cast<uint16_t>(from.body_version);
    to.wCommand = static_cast<uint16_t>(from.command);
    to.dwTimeStamp = from.time_stamp;
    to.bEncrypted = static_cast<uint8_t>(from.encrypted);
    to.dwSequence = from.sequence;
    to.dwHeadLen = from.head_len;
    to.dwBodyLen = from.body_len;
    return true;
}

inline bool read(const zrp_peer_Account& from, quorva_zrp::TVESKAccount& to) {
    to.wType = static_cast<uint16_t>(from.type);
    to.ullUid = from.uid;
    if (from.which_value == zrp_peer_Account_id64_tag) {
        to.bFormat = quorva_zrp::ZRP_FORMAT_UINT64;
        to.stValue.ullUINT64 = from.value.id64;
        return true;
    }
    to.bFormat = quorva_zrp::ZRP_FORMAT_STRING;
    return from.which_value == zrp_peer_Account_text_tag &&
           putText(to.stValue.szSTRING, from.value.text);
}

inline bool read(const zrp_peer_RelayReqBody& from, quorva_zrp::TZRPRelayReqBody& to) {
    quorva_zrp::TZRPRelay& relay = to.stRelayInfo;
    const zrp_peer_Relay& info = from.relay_info;
    to.iRelayType = from.relay_type;
    relay.dwPosition = info.position;
    relay.ullServerID = info.server_id;
    relay.llSessionID = info.session_id;
    relay.bServerType = static_cast<uint8_t>(info.server_type);
    return fillBytes(relay.szIdentity, info.identity.bytes, info.identity.size) &&
           putText(relay.szStartServiceName, info.start_service_name);
}

inline bool read(const zrp_peer_AuthReqBody& from, quorva_zrp::TZRPAuthReqBody& to) {
    to.wAuthType = static_cast<uint16_t>(from.auth_type);
    to.dwXQuorvaTimestamp = from.time_stamp;
    return putText(to.szGameToken, from.game_token) &&
           putText(to.szXQuorvaTokenVersion, from.token_version) &&
           putText(to.stOAuthData.szAccessToken, from.oauth.access_token) &&
           putText(to.stOAuthData.szExtend, from.oauth.extend);
}

template <class Head>
bool readRoute(const Head& from, pb_size_t zone, pb_size_t server, pb_size_t name, uint8_t& flag,
               quorva_zrp::TZRPRouteInfo& to) {
    if (from.which_route == zone) {
        flag = quorva_zrp::ZRP_ROUTE_ZONE;
        to.stSpecifyZone.dwTypeID = from.route.zone.type_id;
        to.stSpecifyZone.dwZoneID = from.route.zone.zone_id;
        return true;
    }
    if (from.which_route == server) {
        flag = quorva_zrp::ZRP_ROUTE_SERVER;
        to.stSpecifyServer.ullServerID = from.route.server.server_id;
        to.stSpecifyServer.bServerType = static_cast<uint8_t>(from.route.server.server_type);
        return true;
    }
    flag = quorva_zrp::ZRP_ROUTE_NAME;
    return from.which_route == name &&
           putText(to.stSpecifyName.szServiceName, from.route.name.service_name);
}

inline bool read(const zrp_peer_SynHead& from, quorva_zrp::TZRPSynHead& to) {
    quorva_zrp::TVESKRawDHReq& key = to.stKeyInfo.stReqByRawDH;
    const zrp_peer_RawDhReq& raw = from.key_info.raw_dh;
    to.bKeyMethod = quorva_zrp::ZRP_KEY_RAW_DH;
    to.bEncMethod = static_cast<uint8_t>(from.enc_method);
    to.llGameID = from.game_id;
    to.iUnitID = from.unit_id;
    to.iClientType = from.client_type;
    to.bHasRelayInfo = from.has_relay_req_info;
    to.bHasAuthInfo = from.has_auth_req_info;
    to.bSupportCompressMethodList = static_cast<uint8_t>(from.compress_methods);
    to.dwReserved = from.reserved;
    return from.which_key_info == zrp_peer_SynHead_raw_dh_tag &&
           putBytes(key.szDH_A, key.wA_size, raw.a.bytes, raw.a.size) &&
           fillBytes(key.szDH_p, raw.p.bytes, raw.p.size) && read(from.account, to.stAccount) &&
           (!from.has_relay_req_info || read(from.relay_req_info, to.stRelayReqInfo)) &&
           (!from.has_auth_req_info || read(from.auth_req_info, to.stAuthReqInfo)) &&
           readRoute(from, zrp_peer_SynHead_zone_tag, zrp_peer_SynHead_server_tag,
                     zrp_peer_SynHead_name_tag, to.bRouteFlag, to.stRouteInfo);
}

inline bool read(const zrp_peer_DataHead& from, quorva_zrp::TZRPDataHead& to) {
    to.bCompressFlag = static_cast<uint8_t>(from.compress_flag);
    to.bAllowLost = static_cast<uint8_t>(from.allow_lost);
    return readRoute(from, zrp_peer_DataHead_zone_tag, zrp_peer_DataHead_server_tag,
                     zrp_peer_DataHead_name_tag, to.bRouteFlag, to.stRouteInfo);
}

inline bool read(const zrp_peer_AuthRspBody& from, quorva_zrp::TZRPAuthRspBody& to) {
    to.wAuthType = static_cast<uint16_t>(from.auth_type);
    return read(from.account, to.stAccount) && putText(to.szAtk, from.atk) &&
           putText(to.szExtend, from.extend);
}

inline bool read(const zrp_peer_RefreshNotice& from, Notice& to) {
    to.wAuthType = static_cast<uint16_t>(from.auth_type);
    to.dwAtkExpireIn = from.expire_in;
    return putBytes(to.szAtk, to.wAtkLen, from.atk.bytes, from.atk.size);
}

inline bool read(const zrp_peer_Head& from, quorva_zrp::TZRPHead& to) {
    return read(from.base, to.stBase) &&
           (from.which_extend != zrp_peer_Head_syn_tag ||
            read(from.extend.syn, to.stExtend.stSyn)) &&
           (from.which_extend != zrp_peer_Head_data_tag ||
            read(from.extend.data, to.stExtend.stData));
}

inline bool read(const zrp_peer_Frame& from, Frame& to) {
    return read(from.head, to.stHead) &&
           (from.which_body != zrp_peer_Frame_auth_rsp_tag ||
            read(from.body.auth_rsp, to.stBody.stAuthRsp)) &&
           (from.which_body != zrp_peer_Frame_refresh_notice_tag ||
            read(from.body.refresh_notice, to.stBody.stAuthRefreshNotify));
}

inline bool read(const zrp_peer_Frame& from, RawFrame& to) {
    return read(from.head, to.head());
}

}  // namespace zrp_bench::nanopb
