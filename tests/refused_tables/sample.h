// A record and its presence bits for tables that must not compile; accepted.cc is their good twin.
#pragma once

#include "protocol/codec/table.h"

namespace quorva_zrp {

struct Sample {
    uint16_t wCount;
    uint8_t szData[300];
    uint8_t bKind;
    uint8_t bFlag;
    mutable uint32_t presence;

    enum : uint32_t { PRESENCE_Count = 1, PRESENCE_Data = 2, PRESENCE_Kind = 4, PRESENCE_Flag = 8 };
};

// Envelope 5; count 5 + 3 or 5 + 2; data 5 + 4 + 300; two bytes 5 + 1 each.
constexpr size_t Sample_MAX_VARINT = 334;
constexpr size_t Sample_MAX_FIXED = 333;

}  // namespace quorva_zrp
