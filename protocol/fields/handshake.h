// The field tables of the messages: connection handshake.
#pragma once

#include "protocol/codec/table.h"
#include "protocol/fields/accounts.h"
#include "protocol/fields/key_exchange.h"
#include "protocol/fields/relay_route.h"

namespace quorva_zrp::codec {

// clang-format off

ZRP_STRUCTURE(TZRPSynHead,
    ZRP_ROW(1, b, KeyMethod),
    ZRP_ROW(2, st, KeyInfo, ZRP_BY(bKeyMethod), Hot),
    ZRP_ROW(3, b, EncMethod),
    ZRP_ROW(4, ll, GameID),
    ZRP_ROW(5, i, UnitID),
    ZRP_ROW(6, i, ClientType),
    ZRP_ROW(7, st, Account),
    ZRP_ROW(8, b, HasRelayInfo),
    ZRP_ROW(9, st, RelayReqInfo, ZRP_BY(bHasRelayInfo)),
    ZRP_ROW(10, b, HasAuthInfo),
    ZRP_ROW(11, st, AuthReqInfo, ZRP_BY(bHasAuthInfo)),
    ZRP_ROW(12, b, SupportCompressMethodList),
    ZRP_ROW(13, b, RouteFlag),
    ZRP_ROW(14, st, RouteInfo, ZRP_BY(bRouteFlag), Hot),
    ZRP_ROW(15, dw, Reserved));

ZRP_STRUCTURE(TZRPAckHead,
    ZRP_ROW(1, b, EncMethod),
    ZRP_ROW(2, b, KeyMethod),
    ZRP_ROW(3, st, KeyInfo, ZRP_BY(bKeyMethod)),
    ZRP_ROW(4, b, CompressMethod),
    ZRP_ROW(5, dw, CompressLimit, DefaultValue<1024>),
    ZRP_ROW(6, dw, Reserved));

ZRP_STRUCTURE(TZRPBingoBody,
    ZRP_ROW(1, st, RelayInfo),
    ZRP_ROW(2, b, CompressMethod),
    ZRP_ROW(3, dw, CompressLimit, DefaultValue<1024>));

// clang-format on

ZRP_STEADY(TZRPSynHead, once);

}  // namespace quorva_zrp::codec
