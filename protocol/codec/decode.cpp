#include "protocol/codec/decode.h"

namespace quorva_zrp::codec {

DecodeStep decodeInAnyOrder(uint8_t type, char* record, const Input& input, size_t from,
                            uint64_t end, bool varint) {
    const TableData& table = tableOf(type);
    char* const presence = record + table.presenceOffset;
    CheckedSource source(input, from, varint);
    while (source.offset() < end) {
        uint32_t tag = 0;
        int result = source.tag(tag);
        if (result == 0) {
            const FieldData* const field = table.find(Quorva::BrxTLVUtil::getFieldId(tag));
            if (field != nullptr) {
                store(presence, load<uint32_t>(presence) | table.presenceBit(*field));
                result = decodeField(*field, record, source);
            } else {
                result = source.skip(Quorva::BrxTLVUtil::getTypeId(tag));
            }
        }
        if (result != 0) {
            return {source.offset(), result};
        }
    }
    // No field of the catalogue is required, so none can be missing here.
    return {source.offset(), source.offset() > end ? int{Quorva::BRX_ERR_LENGTH_MISMATCH} : 0};
}

DecodeStep decodeMember(uint8_t type, char* value, uint32_t& number, const Input& input,
                        size_t from, bool varint) {
    CheckedSource source(input, from, varint);
    uint32_t tag = 0;
    int result = source.tag(tag);
    if (result == 0) {
        number = Quorva::BrxTLVUtil::getFieldId(tag);
        const FieldData* const member = tableOf(type).find(number);
        result = member != nullptr ? decodeField(*member, value, source)
                                   : source.skip(Quorva::BrxTLVUtil::getTypeId(tag));
    }
    return {source.offset(), result};
}

DecodeStep decodeStructure(const FieldData& field, char* nested, CheckedSource& source,
                           uint64_t length) {
    const TableData& table = tableOf(field.nestedType);
    store(nested + table.presenceOffset, uint32_t{0});
    return decodeInAnyOrder(field.nestedType, nested, source.input(), source.offset(),
                            source.offset() + length, source.varint());
}

DecodeStep decodeUnion(const FieldData& field, char* nested, long long& selector,
                       CheckedSource& source, uint64_t length) {
    const uint64_t end = source.offset() + length;
    uint32_t number = 0;
    const DecodeStep step = decodeMember(field.nestedType, nested, number, source.input(),
                                         source.offset(), source.varint());
    return finishUnion(step, end, number, selector);
}

}  // namespace quorva_zrp::codec
