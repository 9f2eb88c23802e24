#include "tests/hardening/copied_fields.h"

#include <string.h>

#include <algorithm>

#include "tests/oracle/record.h"

namespace zrp_test {

using zrp_oracle::Field;
using zrp_oracle::Kind;
using zrp_oracle::Type;

namespace {

/// The bytes of a text, a byte array or an integer that count.
size_t bytesInUse(const Field& field, const void* record) {
    switch (field.kind) {
        case Kind::text:
            return std::min(zrp_oracle::textLength(field, record) + 1, field.size);
        case Kind::bytes: {
            const size_t count = static_cast<size_t>(zrp_oracle::elementCount(field, record));
            const bool trails = field.size == 0;
            return trails ? count : std::min(count, field.size);
        }
        default:
            return field.size;
    }
}

void copyField(const Field& field, const void* from, void* to) {
    char* const target = zrp_oracle::fieldIn(field, to);
    const char* const source = zrp_oracle::fieldIn(field, from);
    switch (field.kind) {
        case Kind::structure:
            if (!zrp_oracle::isLeftOut(field, from)) {
                copyFields(*field.type, source, 0, target);
            }
            break;
        case Kind::unionValue:
            copyFields(*field.type, source, zrp_oracle::selectorOf(field, from), target);
            break;
        default:
            memcpy(target, source, bytesInUse(field, from));
            break;
    }
}

}  // namespace

void copyFields(const Type& type, const void* from, long long selector, void* to) {
    if (type.isUnion) {
        const Field* const member = zrp_oracle::fieldNumbered(type, selector);
        if (member != nullptr) {
            copyField(*member, from, to);
        }
        return;
    }
    for (const Field& field : type.fields) {
        copyField(field, from, to);
    }
}

}  // namespace zrp_test
