#include "protocol/codec/sinks.h"

namespace quorva_zrp::codec {

int CheckedSink::integer(const FieldData& field, const char* from) {
    if (const int result = buf_.writeVarUInt32(field.tag(varint_)); result != 0) {
        return result;
    }
    uint64_t value = 0;
    (void)field.withIntegerType([&]<class Integer>(Integer) {
        value = static_cast<uint64_t>(load<Integer>(from));
        return 0;
    });
    if (varint_ && field.integerSize != 1) {
        // For all widths: a value takes the same groups whatever its width.
        return buf_.writeVarUInt64(
            field.integerIsSigned ? wire::toVarint(static_cast<int64_t>(value)) : value);
    }
    char bytes[sizeof(value)];
    wire::storeHighFirst(bytes, value);
    return buf_.writeBytes(bytes + sizeof(value) - field.integerSize, field.integerSize);
}

int CheckedSink::bytes(const char* from, size_t count) {
    const size_t room = buf_.length - buf_.position;
    const size_t fitting = count < room ? count : room;
    (void)buf_.writeBytes(from, fitting);  // cannot fail: it fits
    return fitting == count ? 0 : Quorva::BRX_ERR_NO_ROOM;
}

}  // namespace quorva_zrp::codec
