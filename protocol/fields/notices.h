// The field tables of the messages: data head, queue and stop notices.
#pragma once

#include "protocol/codec/table.h"
#include "protocol/fields/relay_route.h"

namespace quorva_zrp::codec {

// clang-format off

ZRP_STRUCTURE(TZRPDataHead,
    ZRP_ROW(1, b, CompressFlag),
    ZRP_ROW(2, b, AllowLost),
    ZRP_ROW(3, b, RouteFlag),
    ZRP_ROW(4, st, RouteInfo, ZRP_BY(bRouteFlag), Hot));

ZRP_STRUCTURE(TZRPWaitBody,
    ZRP_ROW(1, dw, Position),
    ZRP_ROW(2, dw, Total),
    ZRP_ROW(3, dw, RoughTime));

ZRP_STRUCTURE(TZRPCStopBody,
    ZRP_ROW(1, dw, Reserved));

ZRP_STRUCTURE(TZRPSStopBody,
    ZRP_ROW(1, dw, Code),
    ZRP_ROW(2, dw, ExErrCode));

// clang-format on

ZRP_STEADY(TZRPDataHead, inside);

}  // namespace quorva_zrp::codec
