// The field tables of the messages: frame head, body and frames.
#pragma once

#include "protocol/codec/table.h"
#include "protocol/fields/base_header.h"
#include "protocol/fields/handshake.h"
#include "protocol/fields/notices.h"

namespace quorva_zrp::codec {

// clang-format off

ZRP_UNION(TZRPExtHead,
    ZRP_MEMBER(ZRP_CMD_NULL, ch, Null),
    ZRP_MEMBER(ZRP_CMD_SYN, st, Syn),
    ZRP_MEMBER(ZRP_CMD_ACK, st, Ack),
    ZRP_MEMBER(ZRP_CMD_AUTH_REQ, ch, AuthReq),
    ZRP_MEMBER(ZRP_CMD_AUTH_RSP, ch, AuthRsp),
    ZRP_MEMBER(ZRP_CMD_WAIT, ch, Wait),
    ZRP_MEMBER(ZRP_CMD_DATA, st, Data, Hot),
    ZRP_MEMBER(ZRP_CMD_CSTOP, ch, CStop),
    ZRP_MEMBER(ZRP_CMD_SSTOP, ch, SStop),
    ZRP_MEMBER(ZRP_CMD_BINGO, ch, Bingo),
    ZRP_MEMBER(ZRP_CMD_AUTH_REFRESH_REQ, ch, AuthRefreshReq),
    ZRP_MEMBER(ZRP_CMD_AUTH_REFRESH_NOTIFY, ch, AuthRefreshNotify),
    ZRP_MEMBER(ZRP_CMD_ROUTE_CHANGE, ch, RouteChange));

ZRP_UNION(TZRPBody,
    ZRP_MEMBER(ZRP_CMD_NULL, ch, Null),
    ZRP_MEMBER(ZRP_CMD_SYN, ch, Syn),
    ZRP_MEMBER(ZRP_CMD_ACK, st, Ack),
    ZRP_MEMBER(ZRP_CMD_AUTH_REQ, st, AuthReq),
    ZRP_MEMBER(ZRP_CMD_AUTH_RSP, st, AuthRsp),
    ZRP_MEMBER(ZRP_CMD_WAIT, st, Wait),
    ZRP_MEMBER(ZRP_CMD_DATA, ch, Data, Hot),
    ZRP_MEMBER(ZRP_CMD_CSTOP, st, CStop),
    ZRP_MEMBER(ZRP_CMD_SSTOP, st, SStop),
    ZRP_MEMBER(ZRP_CMD_BINGO, st, Bingo),
    ZRP_MEMBER(ZRP_CMD_AUTH_REFRESH_REQ, st, AuthRefreshReq),
    ZRP_MEMBER(ZRP_CMD_AUTH_REFRESH_NOTIFY, st, AuthRefreshNotify),
    ZRP_MEMBER(ZRP_CMD_ROUTE_CHANGE, st, RouteChange));

ZRP_STRUCTURE(TZRPHead,
    ZRP_ROW(1, st, Base, Hot),
    ZRP_ROW(2, st, Extend, ZRP_BY(stBase.wCommand), Hot));

ZRP_STRUCTURE(TZRPFrame,
    ZRP_ROW(1, st, Head),
    ZRP_TRAILING_ROW(2, sz, Body, ZRP_BY(stHead.stBase.dwBodyLen)));

ZRP_STRUCTURE(TZRPInFrame,
    ZRP_ROW(1, st, Head, Hot),
    ZRP_ROW(2, st, Body, ZRP_BY(stHead.stBase.wCommand), Hot));

// clang-format on

ZRP_STEADY(TZRPExtHead, inside);
ZRP_STEADY(TZRPBody, inside);
ZRP_STEADY(TZRPHead, alone);
ZRP_STEADY(TZRPFrame, alone);
ZRP_STEADY(TZRPInFrame, onePiece);

}  // namespace quorva_zrp::codec
