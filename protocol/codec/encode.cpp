#include "protocol/codec/encode.h"

namespace quorva_zrp::codec {

int encodeChecked(uint8_t type, const char* record, CheckedSink& sink) {
    for (const FieldData& field : tableOf(type)) {
        if (const int result = encodeField(field, record, sink); result != 0) {
            return result;
        }
    }
    return 0;
}

int encodeChecked(uint8_t type, const char* value, long long selector, CheckedSink& sink) {
    const FieldData* const member = tableOf(type).findMember(selector);
    return member != nullptr ? encodeField(*member, value, sink)
                             : int{Quorva::BRX_ERR_BAD_SELECTOR};
}

int encodeStructure(const FieldData& field, const char* nested, CheckedSink& sink) {
    return encodeChecked(field.nestedType, nested, sink);
}

int encodeUnion(const FieldData& field, const char* nested, long long selector, CheckedSink& sink) {
    return encodeChecked(field.nestedType, nested, selector, sink);
}

}  // namespace quorva_zrp::codec
