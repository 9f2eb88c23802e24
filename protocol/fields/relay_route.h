// The field tables of the messages: relay and routing.
#pragma once

#include "protocol/codec/table.h"

namespace quorva_zrp::codec {

// clang-format off

ZRP_STRUCTURE(TZRPRelay,
    ZRP_ROW(1, dw, Position),
    ZRP_ROW(2, sz, Identity),
    ZRP_ROW(3, ull, ServerID),
    ZRP_ROW(4, ll, SessionID),
    ZRP_ROW(5, b, ServerType),
    ZRP_ROW(6, sz, StartServiceName));

ZRP_STRUCTURE(TZRPRelayReqBody,
    ZRP_ROW(1, i, RelayType),
    ZRP_ROW(2, st, RelayInfo));

ZRP_STRUCTURE(SpecifyZoneRouteInfo,
    ZRP_ROW(1, dw, TypeID),
    ZRP_ROW(2, dw, ZoneID));

ZRP_STRUCTURE(SpecifyServerRouteInfo,
    ZRP_ROW(1, ull, ServerID),
    ZRP_ROW(2, b, ServerType));

ZRP_STRUCTURE(SpecifyNameRouteInfo,
    ZRP_ROW(1, sz, ServiceName));

ZRP_UNION(TZRPRouteInfo,
    ZRP_MEMBER(ZRP_ROUTE_NONE, ch, Null),
    ZRP_MEMBER(ZRP_ROUTE_ZONE, st, SpecifyZone, Hot),
    ZRP_MEMBER(ZRP_ROUTE_SERVER, st, SpecifyServer, Hot),
    ZRP_MEMBER(ZRP_ROUTE_LOGIN_POSITION, ch, LOGINPOSITION),
    ZRP_MEMBER(ZRP_ROUTE_NAME, st, SpecifyName));

ZRP_STRUCTURE(TZRPRouteChangeBody,
    ZRP_ROW(1, ull, ServerID));

// clang-format on

ZRP_STEADY(SpecifyZoneRouteInfo, inside);
ZRP_STEADY(SpecifyServerRouteInfo, inside);
ZRP_STEADY(TZRPRouteInfo, inside);

}  // namespace quorva_zrp::codec
