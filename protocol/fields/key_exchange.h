// The field tables of the messages: key exchange.
#pragma once

#include "protocol/codec/table.h"

namespace quorva_zrp::codec {

// clang-format off

ZRP_STRUCTURE(TVESKRawDHReq,
    ZRP_ROW(1, w, A_size),
    ZRP_ROW(2, sz, DH_A, ZRP_BY(wA_size)),
    ZRP_ROW(3, sz, DH_p));

ZRP_STRUCTURE(TVESKRawDHRsp,
    ZRP_ROW(1, w, B_size),
    ZRP_ROW(2, sz, DH_B, ZRP_BY(wB_size)));

ZRP_STRUCTURE(TVESKEncDHInfo,
    ZRP_ROW(1, b, EncMethod),
    ZRP_ROW(2, w, EncInfoLen),
    ZRP_ROW(3, sz, EncryptedInfo, ZRP_BY(wEncInfoLen)));

ZRP_STRUCTURE(TVESKKey,
    ZRP_ROW(1, b, Length),
    ZRP_ROW(2, sz, Value, ZRP_BY(bLength)));

ZRP_UNION(TZRPKeyReq,
    ZRP_MEMBER(ZRP_KEY_NONE, ch, Null),
    ZRP_MEMBER(ZRP_KEY_RAW_DH, st, ReqByRawDH),
    ZRP_MEMBER(ZRP_KEY_ENC_DH, st, ReqByEncDH));

ZRP_UNION(TZRPKeyRsp,
    ZRP_MEMBER(ZRP_KEY_NONE, ch, Null),
    ZRP_MEMBER(ZRP_KEY_VALUE, st, Key),
    ZRP_MEMBER(ZRP_KEY_RAW_DH, st, RspByRawDH),
    ZRP_MEMBER(ZRP_KEY_ENC_DH, st, RspByEncDH));

// clang-format on

ZRP_STEADY(TVESKRawDHReq, once);
ZRP_STEADY(TZRPKeyReq, once);

}  // namespace quorva_zrp::codec
