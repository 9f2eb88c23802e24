// The field tables of the messages: the frame base header.
#pragma once

#include "protocol/codec/table.h"

namespace quorva_zrp::codec {

// clang-format off

ZRP_STRUCTURE(TZRPBase,
    ZRP_ROW(1, w, Magic),
    ZRP_ROW(2, w, HeadVersion),
    ZRP_ROW(3, w, BodyVersion),
    ZRP_ROW(4, w, Command),
    ZRP_ROW(5, dw, TimeStamp),
    ZRP_ROW(6, b, Encrypted),
    ZRP_ROW(7, dw, Sequence),
    ZRP_ROW(8, dw, HeadLen),
    ZRP_ROW(9, dw, BodyLen));

// clang-format on

ZRP_STEADY(TZRPBase, alone);

}  // namespace quorva_zrp::codec
