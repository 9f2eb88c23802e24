#include "protocol/codec/sinks.h"

namespace quorva_zrp::codec {

int CheckedSink::byteField(uint32_t tag, uint8_t value) {
    const int result = buf_.writeVarUInt32(tag);
    return result != 0 ? result : buf_.writeUInt8(value);
}

// One function for all widths: a value takes the same groups whatever its width.
int CheckedSink::varintField(uint32_t tag, uint64_t value) {
    const int result = buf_.writeVarUInt32(tag);
    return result != 0 ? result : buf_.writeVarUInt64(value);
}

int CheckedSink::fixedField(uint32_t tag, uint16_t value) {
    const int result = buf_.writeVarUInt32(tag);
    return result != 0 ? result : buf_.writeUInt16(value);
}

int CheckedSink::fixedField(uint32_t tag, uint32_t value) {
    const int result = buf_.writeVarUInt32(tag);
    return result != 0 ? result : buf_.writeUInt32(value);
}

int CheckedSink::fixedField(uint32_t tag, uint64_t value) {
    const int result = buf_.writeVarUInt32(tag);
    return result != 0 ? result : buf_.writeUInt64(value);
}

int CheckedSink::bytes(const char* from, size_t count) {
    const size_t room = buf_.length - buf_.position;
    const size_t fitting = count < room ? count : room;
    (void)buf_.writeBytes(from, fitting);  // cannot fail: it fits
    return fitting == count ? 0 : Quorva::BRX_ERR_NO_ROOM;
}

}  // namespace quorva_zrp::codec
