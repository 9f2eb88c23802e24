// From this project's records to FlatBuffers. What a table refers to is built before the table.
// Members of unions that no measured message uses are left out.
#pragma once

#include <utility>

#include "bench/messages.h"
#include "bench/peers/record_access.h"
#include "zrp_generated.h"

namespace zrp_bench::flat {

using Builder = flatbuffers::FlatBufferBuilder;

template <class Table>
using Offset = flatbuffers::Offset<Table>;

/// A member of a union: which, and where.
template <class Which>
struct Member {
    Which which{};
    Offset<void> at{};
};

inline auto text(Builder& to, std::string_view content) {
    return to.CreateString(content.data(), content.size());
}

inline Offset<zrp_flat::Base> build(Builder& to, const Base& from) {
    return zrp_flat::CreateBase(to, from.wMagic, from.wHeadVersion, from.wBodyVersion,
                                from.wCommand, from.dwTimeStamp, from.bEncrypted, from.dwSequence,
                                from.dwHeadLen, from.dwBodyLen);
}

inline Offset<zrp_flat::Account> build(Builder& to, const quorva_zrp::TVESKAccount& from) {
    Member<zrp_flat::AccountId> id;
    if (from.bFormat == quorva_zrp::ZRP_FORMAT_UINT64) {
        id = {zrp_flat::AccountId_Id64, zrp_flat::CreateId64(to, from.stValue.ullUINT64).Union()};
    } else if (from.bFormat == quorva_zrp::ZRP_FORMAT_STRING) {
        id = {zrp_flat::AccountId_IdText,
              zrp_flat::CreateIdText(to, text(to, textOf(from.stValue.szSTRING))).Union()};
    }
    return zrp_flat::CreateAccount(to, from.wType, id.which, id.at, from.ullUid);
}

inline Offset<zrp_flat::RelayReqBody> build(Builder& to, const quorva_zrp::TZRPRelayReqBody& from) {
    const quorva_zrp::TZRPRelay& info = from.stRelayInfo;
    const auto identity = to.CreateVector(info.szIdentity, sizeof(info.szIdentity));
    const auto name = text(to, textOf(info.szStartServiceName));
    return zrp_flat::CreateRelayReqBody(
        to, from.iRelayType,
        zrp_flat::CreateRelay(to, info.dwPosition, identity, info.ullServerID, info.llSessionID,
                              info.bServerType, name));
}

inline Offset<zrp_flat::AuthReqBody> build(Builder& to, const quorva_zrp::TZRPAuthReqBody& from) {
    const auto access = text(to, textOf(from.stOAuthData.szAccessToken));
    const auto extend = text(to, textOf(from.stOAuthData.szExtend));
    const auto oauth = zrp_flat::CreateOAuthData(to, access, extend);
    const auto token = text(to, textOf(from.szGameToken));
    const auto version = text(to, textOf(from.szXQuorvaTokenVersion));
    return zrp_flat::CreateAuthReqBody(to, from.wAuthType, token, from.dwXQuorvaTimestamp, version,
                                       oauth);
}

inline Member<zrp_flat::Route> buildRoute(Builder& to, uint8_t flag,
                                          const quorva_zrp::TZRPRouteInfo& from) {
    switch (flag) {
        case quorva_zrp::ZRP_ROUTE_ZONE:
            return {zrp_flat::Route_ZoneRoute,
                    zrp_flat::CreateZoneRoute(to, from.stSpecifyZone.dwTypeID,
                                              from.stSpecifyZone.dwZoneID)
                        .Union()};
        case quorva_zrp::ZRP_ROUTE_SERVER:
            return {zrp_flat::Route_ServerRoute,
                    zrp_flat::CreateServerRoute(to, from.stSpecifyServer.ullServerID,
                                                from.stSpecifyServer.bServerType)
                        .Union()};
        case quorva_zrp::ZRP_ROUTE_NAME:
            return {
                zrp_flat::Route_NameRoute,
                zrp_flat::CreateNameRoute(to, text(to, textOf(from.stSpecifyName.szServiceName)))
                    .Union()};
        default:
            return {};
    }
}

inline Offset<zrp_flat::SynHead> build(Builder& to, const quorva_zrp::TZRPSynHead& from) {
    Member<zrp_flat::KeyReq> key;
    if (from.bKeyMethod == quorva_zrp::ZRP_KEY_RAW_DH) {
        const quorva_zrp::TVESKRawDHReq& raw = from.stKeyInfo.stReqByRawDH;
        const auto a = to.CreateVector(raw.szDH_A, raw.wA_size);
        const auto p = to.CreateVector(raw.szDH_p, sizeof(raw.szDH_p));
        key = {zrp_flat::KeyReq_RawDhReq, zrp_flat::CreateRawDhReq(to, a, p).Union()};
    }
    const auto account = build(to, from.stAccount);
    Offset<zrp_flat::RelayReqBody> relay;
    if (from.bHasRelayInfo != 0) {
        relay = build(to, from.stRelayReqInfo);
    }
    Offset<zrp_flat::AuthReqBody> request;
    if (from.bHasAuthInfo != 0) {
        request = build(to, from.stAuthReqInfo);
    }
    const Member<zrp_flat::Route> route = buildRoute(to, from.bRouteFlag, from.stRouteInfo);
    return zrp_flat::CreateSynHead(to, key.which, key.at, from.bEncMethod, from.llGameID,
                                   from.iUnitID, from.iClientType, account, relay, request,
                                   from.bSupportCompressMethodList, route.which, route.at,
                                   from.dwReserved);
}

inline Offset<zrp_flat::DataHead> build(Builder& to, const quorva_zrp::TZRPDataHead& from) {
    const Member<zrp_flat::Route> route = buildRoute(to, from.bRouteFlag, from.stRouteInfo);
    return zrp_flat::CreateDataHead(to, from.bCompressFlag, from.bAllowLost, route.which, route.at);
}

inline Offset<zrp_flat::AuthRspBody> build(Builder& to, const quorva_zrp::TZRPAuthRspBody& from) {
    const auto account = build(to, from.stAccount);
    const auto atk = text(to, textOf(from.szAtk));
    const auto extend = text(to, textOf(from.szExtend));
    return zrp_flat::CreateAuthRspBody(to, account, from.wAuthType, atk, extend);
}

inline Offset<zrp_flat::RefreshNotice> build(Builder& to, const Notice& from) {
    const auto atk = to.CreateVector(from.szAtk, from.wAtkLen);
    return zrp_flat::CreateRefreshNotice(to, from.wAuthType, atk, from.dwAtkExpireIn);
}

inline Offset<zrp_flat::Head> build(Builder& to, const quorva_zrp::TZRPHead& from) {
    Member<zrp_flat::Extension> extend;
    if (from.stBase.wCommand == quorva_zrp::ZRP_CMD_SYN) {
        extend = {zrp_flat::Extension_SynHead, build(to, from.stExtend.stSyn).Union()};
    } else if (from.stBase.wCommand == quorva_zrp::ZRP_CMD_DATA) {
        extend = {zrp_flat::Extension_DataHead, build(to, from.stExtend.stData).Union()};
    }
    return zrp_flat::CreateHead(to, build(to, from.stBase), extend.which, extend.at);
}

inline Offset<zrp_flat::Frame> build(Builder& to, const Frame& from) {
    Member<zrp_flat::Body> body;
    const uint16_t command = from.stHead.stBase.wCommand;
    if (command == quorva_zrp::ZRP_CMD_AUTH_RSP) {
        body = {zrp_flat::Body_AuthRspBody, build(to, from.stBody.stAuthRsp).Union()};
    } else if (command == quorva_zrp::ZRP_CMD_AUTH_REFRESH_NOTIFY) {
        body = {zrp_flat::Body_RefreshNotice, build(to, from.stBody.stAuthRefreshNotify).Union()};
    }
    return zrp_flat::CreateFrame(to, build(to, from.stHead), body.which, body.at);
}

inline Offset<zrp_flat::Frame> build(Builder& to, const RawFrame& from) {
    const auto body = to.CreateVector(from.body().data(), from.body().size());
    return zrp_flat::CreateFrame(to, build(to, from.head()), zrp_flat::Body_NONE, {}, body);
}

}  // namespace zrp_bench::flat
