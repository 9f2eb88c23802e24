// The field tables of the messages: accounts and authentication.
#pragma once

#include "protocol/codec/table.h"

namespace quorva_zrp::codec {

// clang-format off

ZRP_UNION(TVESKIDValue,
    ZRP_MEMBER(ZRP_FORMAT_NULL, ch, Null),
    ZRP_MEMBER(ZRP_FORMAT_UINT32, dw, UINT32),
    ZRP_MEMBER(ZRP_FORMAT_UINT64, ull, UINT64),
    ZRP_MEMBER(ZRP_FORMAT_STRING, sz, STRING));

ZRP_STRUCTURE(TVESKAccount,
    ZRP_ROW(1, w, Type),
    ZRP_ROW(2, b, Format),
    ZRP_ROW(3, st, Value, ZRP_BY(bFormat)),
    ZRP_ROW(4, ull, Uid));

ZRP_STRUCTURE(TVESKAuthData,
    ZRP_ROW(1, w, AuthLen),
    ZRP_ROW(2, sz, AuthInfo, ZRP_BY(wAuthLen)));

ZRP_STRUCTURE(O2AuthData,
    ZRP_ROW(1, sz, AccessToken),
    ZRP_ROW(2, sz, Extend));

// Field number 3 stays free.
ZRP_STRUCTURE(TZRPAuthReqBody,
    ZRP_ROW(1, w, AuthType),
    ZRP_ROW(2, sz, GameToken),
    ZRP_ROW(4, dw, XQuorvaTimestamp),
    ZRP_ROW(5, sz, XQuorvaTokenVersion, DefaultText<"V1">),
    ZRP_ROW(6, st, OAuthData));

ZRP_STRUCTURE(TZRPAuthRspBody,
    ZRP_ROW(1, st, Account),
    ZRP_ROW(2, w, AuthType),
    ZRP_ROW(3, sz, Atk),
    ZRP_ROW(4, sz, Extend));

ZRP_STRUCTURE(TZRPAckBody,
    ZRP_ROW(1, b, HasAuthInfo),
    ZRP_ROW(2, st, AuthResInfo, ZRP_BY(bHasAuthInfo)));

ZRP_STRUCTURE(TZRPAuthRefreshReq,
    ZRP_ROW(1, dw, Reserve));

ZRP_STRUCTURE(TZRPAuthRefreshNotifyBody,
    ZRP_ROW(1, w, AuthType),
    ZRP_ROW(2, w, AtkLen),
    ZRP_ROW(3, sz, Atk, ZRP_BY(wAtkLen)),
    ZRP_ROW(4, dw, AtkExpireIn));

// clang-format on

ZRP_STEADY(TVESKIDValue, once);
ZRP_STEADY(TVESKAccount, once);
ZRP_STEADY(O2AuthData, once);
ZRP_STEADY(TZRPAuthReqBody, once);
ZRP_STEADY(TZRPAuthRspBody, once);
ZRP_STEADY(TZRPAuthRefreshNotifyBody, alone);

}  // namespace quorva_zrp::codec
