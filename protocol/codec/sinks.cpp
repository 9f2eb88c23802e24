#include "protocol/codec/sinks.h"

namespace quorva_zrp::codec {

int CheckedSink::bytes(const char* from, size_t count) {
    const size_t room = buf_.length - buf_.position;
    const size_t fitting = count < room ? count : room;
    (void)buf_.writeBytes(from, fitting);  // cannot fail: it fits
    return fitting == count ? 0 : Quorva::BRX_ERR_NO_ROOM;
}

}  // namespace quorva_zrp::codec
