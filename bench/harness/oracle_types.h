// The oracle's table for each shape of message.
#pragma once

#include "bench/messages.h"
#include "tests/oracle/catalogue.h"

namespace zrp_bench {

inline const zrp_oracle::Type& typeOf(const Base&) {
    return zrp_oracle::typeTZRPBase;
}
inline const zrp_oracle::Type& typeOf(const Notice&) {
    return zrp_oracle::typeTZRPAuthRefreshNotifyBody;
}
inline const zrp_oracle::Type& typeOf(const Frame&) {
    return zrp_oracle::typeTZRPInFrame;
}
inline const zrp_oracle::Type& typeOf(const RawFrame&) {
    return zrp_oracle::typeTZRPFrame;
}

/// The record inside a message's object.
inline const void* recordOf(const auto& values) {
    return &values;
}
inline const void* recordOf(const RawFrame& values) {
    return &values.frame();
}

}  // namespace zrp_bench
