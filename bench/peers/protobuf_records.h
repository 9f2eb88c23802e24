// Between this project's records and protobuf messages. Full and lite messages offer the same
// accessors, so every function takes either. Members of unions that no measured message uses are
// left out.
#pragma once

#include "bench/messages.h"
#include "bench/peers/record_access.h"

namespace zrp_bench::protobuf {

// --- From a record into a message ---------------------------------------------------------------

void fill(auto& to, const Base& from) {
    to.set_magic(from.wMagic);
    to.set_head_version(from.wHeadVersion);
    to.set_body_version(from.wBodyVersion);
    to.set_command(from.wCommand);
    to.set_time_stamp(from.dwTimeStamp);
    to.set_encrypted(from.bEncrypted);
    to.set_sequence(from.dwSequence);
    to.set_head_len(from.dwHeadLen);
    to.set_body_len(from.dwBodyLen);
}

void fill(auto& to, const quorva_zrp::TVESKRawDHReq& from) {
    to.set_a(from.szDH_A, from.wA_size);
    to.set_p(from.szDH_p, sizeof(from.szDH_p));
}

void fill(auto& to, const quorva_zrp::TVESKAccount& from) {
    to.set_type(from.wType);
    if (from.bFormat == quorva_zrp::ZRP_FORMAT_UINT64) {
        to.set_id64(from.stValue.ullUINT64);
    } else if (from.bFormat == quorva_zrp::ZRP_FORMAT_STRING) {
        const std::string_view text = textOf(from.stValue.szSTRING);
        to.set_text(text.data(), text.size());
    }
    to.set_uid(from.ullUid);
}

void fill(auto& to, const quorva_zrp::TZRPRelayReqBody& from) {
    to.set_relay_type(from.iRelayType);
    auto& relay = *to.mutable_relay_info();
    const quorva_zrp::TZRPRelay& info = from.stRelayInfo;
    relay.set_position(info.dwPosition);
    relay.set_identity(info.szIdentity, sizeof(info.szIdentity));
    relay.set_server_id(info.ullServerID);
    relay.set_session_id(info.llSessionID);
    relay.set_server_type(info.bServerType);
    const std::string_view name = textOf(info.szStartServiceName);
    relay.set_start_service_name(name.data(), name.size());
}

void fill(auto& to, const quorva_zrp::TZRPAuthReqBody& from) {
    to.set_auth_type(from.wAuthType);
    const std::string_view token = textOf(from.szGameToken);
    to.set_game_token(token.data(), token.size());
    to.set_time_stamp(from.dwXQuorvaTimestamp);
    const std::string_view version = textOf(from.szXQuorvaTokenVersion);
    to.set_token_version(version.data(), version.size());
    auto& oauth = *to.mutable_oauth();
    const std::string_view access = textOf(from.stOAuthData.szAccessToken);
    oauth.set_access_token(access.data(), access.size());
    const std::string_view extend = textOf(from.stOAuthData.szExtend);
    oauth.set_extend(extend.data(), extend.size());
}

void fillRoute(auto& to, uint8_t flag, const quorva_zrp::TZRPRouteInfo& from) {
    if (flag == quorva_zrp::ZRP_ROUTE_ZONE) {
        to.mutable_zone()->set_type_id(from.stSpecifyZone.dwTypeID);
        to.mutable_zone()->set_zone_id(from.stSpecifyZone.dwZoneID);
    } else if (flag == quorva_zrp::ZRP_ROUTE_SERVER) {
        to.mutable_server()->set_server_id(from.stSpecifyServer.ullServerID);
        to.mutable_server()->set_server_type(from.stSpecifyServer.bServerType);
    } else if (flag == quorva_zrp::ZRP_ROUTE_NAME) {
        const std::string_view name = textOf(from.stSpecifyName.szServiceName);
        to.mutable_name()->set_service_name(name.data(), name.size());
    }
}

void fill(auto& to, const quorva_zrp::TZRPSynHead& from) {
    if (from.bKeyMethod == quorva_zrp::ZRP_KEY_RAW_DH) {
        fill(*to.mutable_raw_dh(), from.stKeyInfo.stReqByRawDH);
    }
    to.set_enc_method(from.bEncMethod);
    to.set_game_id(from.llGameID);
    to.set_unit_id(from.iUnitID);
    to.set_client_type(from.iClientType);
    fill(*to.mutable_account(), from.stAccount);
    if (from.bHasRelayInfo != 0) {
        fill(*to.mutable_relay_req_info(), from.stRelayReqInfo);
    }
    if (from.bHasAuthInfo != 0) {
        fill(*to.mutable_auth_req_info(), from.stAuthReqInfo);
    }
    to.set_compress_methods(from.bSupportCompressMethodList);
    fillRoute(to, from.bRouteFlag, from.stRouteInfo);
    to.set_reserved(from.dwReserved);
}

void fill(auto& to, const quorva_zrp::TZRPDataHead& from) {
    to.set_compress_flag(from.bCompressFlag);
    to.set_allow_lost(from.bAllowLost);
    fillRoute(to, from.bRouteFlag, from.stRouteInfo);
}

void fill(auto& to, const quorva_zrp::TZRPAuthRspBody& from) {
    fill(*to.mutable_account(), from.stAccount);
    to.set_auth_type(from.wAuthType);
    const std::string_view atk = textOf(from.szAtk);
    to.set_atk(atk.data(), atk.size());
    const std::string_view extend = textOf(from.szExtend);
    to.set_extend(extend.data(), extend.size());
}

void fill(auto& to, const Notice& from) {
    to.set_auth_type(from.wAuthType);
    to.set_atk(from.szAtk, from.wAtkLen);
    to.set_expire_in(from.dwAtkExpireIn);
}

void fill(auto& to, const quorva_zrp::TZRPHead& from) {
    fill(*to.mutable_base(), from.stBase);
    if (from.stBase.wCommand == quorva_zrp::ZRP_CMD_SYN) {
        fill(*to.mutable_syn(), from.stExtend.stSyn);
    } else if (from.stBase.wCommand == quorva_zrp::ZRP_CMD_DATA) {
        fill(*to.mutable_data(), from.stExtend.stData);
    }
}

void fill(auto& to, const Frame& from) {
    fill(*to.mutable_head(), from.stHead);
    const uint16_t command = from.stHead.stBase.wCommand;
    if (command == quorva_zrp::ZRP_CMD_AUTH_RSP) {
        fill(*to.mutable_auth_rsp(), from.stBody.stAuthRsp);
    } else if (command == quorva_zrp::ZRP_CMD_AUTH_REFRESH_NOTIFY) {
        fill(*to.mutable_refresh_notice(), from.stBody.stAuthRefreshNotify);
    }
}

void fill(auto& to, const RawFrame& from) {
    fill(*to.mutable_head(), from.head());
    to.set_raw_body(from.body().data(), from.body().size());
}

// --- From a message into a record; only for the check of results --------------------------------

bool read(const auto& from, Base& to) {
    to.wMagic = static_cast<uint16_t>(from.magic());
    to.wHeadVersion = static_cast<uint16_t>(from.head_version());
    to.wBodyVersion = static_cast<uint16_t>(from.body_version());
    to.wCommand = static_cast<uint16_t>(from.command());
    to.dwTimeStamp = from.time_stamp();
    to.bEncrypted = static_cast<uint8_t>(from.encrypted());
    to.dwSequence = from.sequence();
    to.dwHeadLen = from.head_len();
    to.dwBodyLen = from.body_len();
    return true;
}

bool read(const auto& from, quorva_zrp::TVESKRawDHReq& to) {
    return putBytes(to.szDH_A, to.wA_size, from.a().data(), from.a().size()) &&
           fillBytes(to.szDH_p, from.p().data(), from.p().size());
}

bool read(const auto& from, quorva_zrp::TVESKAccount& to) {
    to.wType = static_cast<uint16_t>(from.type());
    to.ullUid = from.uid();
    if (from.has_id64()) {
        to.bFormat = quorva_zrp::ZRP_FORMAT_UINT64;
        to.stValue.ullUINT64 = from.id64();
        return true;
    }
    to.bFormat = quorva_zrp::ZRP_FORMAT_STRING;
    return from.has_text() && putText(to.stValue.szSTRING, from.text());
}

bool read(const auto& from, quorva_zrp::TZRPRelayReqBody& to) {
    const auto& info = from.relay_info();
    quorva_zrp::TZRPRelay& relay = to.stRelayInfo;
    to.iRelayType = from.relay_type();
    relay.dwPosition = info.position();
    relay.ullServerID = info.server_id();
    relay.llSessionID = info.session_id();
    relay.bServerType = static_cast<uint8_t>(info.server_type());
    return fillBytes(relay.szIdentity, info.identity().data(), info.identity().size()) &&
           putText(relay.szStartServiceName, info.start_service_name());
}

bool read(const auto& from, quorva_zrp::TZRPAuthReqBody& to) {
    to.wAuthType = static_cast<uint16_t>(from.auth_type());
    to.dwXQuorvaTimestamp = from.time_stamp();
    return putText(to.szGameToken, from.game_token()) &&
           putText(to.szXQuorvaTokenVersion, from.token_version()) &&
           putText(to.stOAuthData.szAccessToken, from.oauth().access_token()) &&
           putText(to.stOAuthData.szExtend, from.oauth().extend());
}

bool readRoute(const auto& from, uint8_t& flag, quorva_zrp::TZRPRouteInfo& to) {
    if (from.has_zone()) {
        flag = quorva_zrp::ZRP_ROUTE_ZONE;
        to.stSpecifyZone.dwTypeID = from.zone().type_id();
        to.stSpecifyZone.dwZoneID = from.zone().zone_id();
        return true;
    }
    if (from.has_server()) {
        flag = quorva_zrp::ZRP_ROUTE_SERVER;
        to.stSpecifyServer.ullServerID = from.server().server_id();
        to.stSpecifyServer.bServerType = static_cast<uint8_t>(from.server().server_type());
        return true;
    }
    flag = quorva_zrp::ZRP_ROUTE_NAME;
    return from.has_name() && putText(to.stSpecifyName.szServiceName, from.name().service_name());
}

bool read(const auto& from, quorva_zrp::TZRPSynHead& to) {
    to.bKeyMethod = quorva_zrp::ZRP_KEY_RAW_DH;
    to.bEncMethod = static_cast<uint8_t>(from.enc_method());
    to.llGameID = from.game_id();
    to.iUnitID = from.unit_id();
    to.iClientType = from.client_type();
    to.bHasRelayInfo = from.has_relay_req_info();
    to.bHasAuthInfo = from.has_auth_req_info();
    to.bSupportCompressMethodList = static_cast<uint8_t>(from.compress_methods());
    to.dwReserved = from.reserved();
    return read(from.raw_dh(), to.stKeyInfo.stReqByRawDH) && read(from.account(), to.stAccount) &&
           (to.bHasRelayInfo == 0 || read(from.relay_req_info(), to.stRelayReqInfo)) &&
           (to.bHasAuthInfo == 0 || read(from.auth_req_info(), to.stAuthReqInfo)) &&
           readRoute(from, to.bRouteFlag, to.stRouteInfo);
}

bool read(const auto& from, quorva_zrp::TZRPDataHead& to) {
    to.bCompressFlag = static_cast<uint8_t>(from.compress_flag());
    to.bAllowLost = static_cast<uint8_t>(from.allow_lost());
    return readRoute(from, to.bRouteFlag, to.stRouteInfo);
}

bool read(const auto& from, quorva_zrp::TZRPAuthRspBody& to) {
    to.wAuthType = static_cast<uint16_t>(from.auth_type());
    return read(from.account(), to.stAccount) && putText(to.szAtk, from.atk()) &&
           putText(to.szExtend, from.extend());
}

bool read(const auto& from, Notice& to) {
    to.wAuthType = static_cast<uint16_t>(from.auth_type());
    to.dwAtkExpireIn = from.expire_in();
    return putBytes(to.szAtk, to.wAtkLen, from.atk().data(), from.atk().size());
}

bool read(const auto& from, quorva_zrp::TZRPHead& to) {
    return read(from.base(), to.stBase) &&
           (!from.has_syn() || read(from.syn(), to.stExtend.stSyn)) &&
           (!from.has_data() || read(from.data(), to.stExtend.stData));
}

bool read(const auto& from, Frame& to) {
    return read(from.head(), to.stHead) &&
           (!from.has_auth_rsp() || read(from.auth_rsp(), to.stBody.stAuthRsp)) &&
           (!from.has_refresh_notice() ||
            read(from.refresh_notice(), to.stBody.stAuthRefreshNotify));
}

bool read(const auto& from, RawFrame& to) {
    return read(from.head(), to.head()) &&
           to.setBody(from.raw_body().data(), from.raw_body().size());
}

}  // namespace zrp_bench::protobuf
