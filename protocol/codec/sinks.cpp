#include "protocol/codec/sinks.h"

namespace quorva_zrp::codec {

int CheckedSink::integer(const FieldData& field, const char* from) {
    if (const int result = buf_.writeVarUInt32(field.tag(varint_)); result != 0) {
        return result;
    }
    return field.withIntegerType([&]<class Integer>(Integer value) {
        value = load<Integer>(from);
        if constexpr (sizeof(Integer) == 1) {
            return buf_.writeUInt8(value);
        } else {
            // One function for all widths: a value takes the same groups whatever its width.
            return varint_ ? buf_.writeVarUInt64(wire::toVarint(value))
                           : fixed(static_cast<std::make_unsigned_t<Integer>>(value));
        }
    });
}

int CheckedSink::fixed(uint16_t value) {
    return buf_.writeUInt16(value);
}
int CheckedSink::fixed(uint32_t value) {
    return buf_.writeUInt32(value);
}
int CheckedSink::fixed(uint64_t value) {
    return buf_.writeUInt64(value);
}

int CheckedSink::bytes(const char* from, size_t count) {
    const size_t room = buf_.length - buf_.position;
    const size_t fitting = count < room ? count : room;
    (void)buf_.writeBytes(from, fitting);  // cannot fail: it fits
    return fitting == count ? 0 : Quorva::BRX_ERR_NO_ROOM;
}

}  // namespace quorva_zrp::codec
