#include "protocol/codec/wire.h"

namespace quorva_zrp::codec::wire {

namespace {

template <class Unsigned>
char* storeGroups(char* to, Unsigned value) {
    while (value >= 0x80) {
        *to++ = static_cast<char>((value & 0x7F) | 0x80);
        value >>= 7;
    }
    *to++ = static_cast<char>(value);
    return to;
}

}  // namespace

char* storeLongVarint(char* to, uint32_t value) {
    return storeGroups(to, value);
}

char* storeLongVarint(char* to, uint64_t value) {
    return storeGroups(to, value);
}

}  // namespace quorva_zrp::codec::wire
