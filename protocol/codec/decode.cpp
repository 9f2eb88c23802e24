#include "protocol/codec/decode.h"

namespace quorva_zrp::codec {

int decodeInAnyOrder(uint8_t type, char* record, CheckedSource& source, uint64_t end) {
    const TableData& table = tableOf(type);
    char* const presence = record + table.presenceOffset;
    while (source.consumed() < end) {
        uint32_t tag = 0;
        if (const int result = source.tag(tag); result != 0) {
            return result;
        }
        int result = 0;
        if (const FieldData* field = table.find(Quorva::BrxTLVUtil::getFieldId(tag))) {
            store(presence, load<uint32_t>(presence) | table.presenceBit(*field));
            result = decodeField(*field, record, source);
        } else {
            result = source.skip(Quorva::BrxTLVUtil::getTypeId(tag));
        }
        if (result != 0) {
            return result;
        }
    }
    // No field of the catalogue is required, so none can be missing here.
    return source.consumed() > end ? int{Quorva::BRX_ERR_LENGTH_MISMATCH} : 0;
}

int decodeMember(uint8_t type, char* value, long long& selector, CheckedSource& source,
                 uint64_t end) {
    uint32_t tag = 0;
    if (const int result = source.tag(tag); result != 0) {
        return result;
    }
    const uint32_t number = Quorva::BrxTLVUtil::getFieldId(tag);
    const FieldData* const member = tableOf(type).find(number);
    const int result = member != nullptr ? decodeField(*member, value, source)
                                         : source.skip(Quorva::BrxTLVUtil::getTypeId(tag));
    if (result != 0) {
        return result;
    }
    if (source.consumed() > end) {
        return Quorva::BRX_ERR_LENGTH_MISMATCH;
    }
    selector = number;
    return 0;
}

int decodeStructure(const FieldData& field, char* nested, CheckedSource& source, uint64_t length) {
    store(nested + tableOf(field.nestedType).presenceOffset, uint32_t{0});
    return decodeInAnyOrder(field.nestedType, nested, source, source.consumed() + length);
}

int decodeUnion(const FieldData& field, char* nested, long long& selector, CheckedSource& source,
                uint64_t length) {
    return decodeMember(field.nestedType, nested, selector, source, source.consumed() + length);
}

namespace {

/// Leaves the rest to CheckedSource: runs `decode` over the input from `at` on.
template <class Decode>
DecodeStep decodeChecked(const Input& input, const char* at, bool varint, Decode decode) {
    BrxReadBuf buf(input.begin, input.size);
    buf.position = input.offsetOf(at);
    CheckedSource source(buf, varint);
    const int result = decode(source);
    return {input.begin + buf.position, result};
}

}  // namespace

DecodeStep finishStructure(uint8_t type, char* record, const Input& input, const char* at,
                           uint64_t end, bool varint) {
    return decodeChecked(input, at, varint, [&](CheckedSource& source) {
        return decodeInAnyOrder(type, record, source, end);
    });
}

DecodeStep finishUnion(uint8_t type, char* value, long long& selector, const Input& input,
                       const char* at, uint64_t end, bool varint) {
    return decodeChecked(input, at, varint, [&](CheckedSource& source) {
        return decodeMember(type, value, selector, source, end);
    });
}

}  // namespace quorva_zrp::codec
