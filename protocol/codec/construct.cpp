#include "protocol/codec/construct.h"

#include "protocol/codec/field_data.h"

namespace quorva_zrp::codec {

namespace {

void constructField(const FieldData& field, char* record) {
    char* const at = record + field.offset();
    // unreachable: every kind has its case
    switch (field.kind()) {
        case Kind::integer:
            (void)field.withIntegerType([&]<class Integer>(Integer) {
                store(at, static_cast<Integer>(field.defaultInteger));
                return 0;
            });
            return;
        case Kind::text:
            at[0] = '\0';  // the rest of the text stays as it was
            if (field.defaultText[0] != '\0') {
                memset(at, 0, field.capacity());
                memcpy(at, field.defaultText, sizeof(field.defaultText));
            }
            return;
        case Kind::bytes:
            memset(at, 0, field.capacity());
            return;
        case Kind::trailingBytes:
            return;
        case Kind::structure:
            return construct(field.nestedType, at);
        case Kind::selectedUnion:
            return construct(field.nestedType, at, static_cast<long long>(field.governor(record)));
    }
}

}  // namespace

void construct(uint8_t type, char* record) {
    const TableData& table = tableOf(type);
    for (const FieldData& field : table) {
        constructField(field, record);
    }
    store(record + table.presenceOffset, uint32_t{0});
}

void construct(uint8_t type, char* value, long long selector) {
    if (const FieldData* const member = tableOf(type).findMember(selector)) {
        constructField(*member, value);
    }
}

}  // namespace quorva_zrp::codec
