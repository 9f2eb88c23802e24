#include "fuzz/support/live_fields.h"

#include <string.h>

#include "tests/oracle/record.h"

namespace zrp_fuzz {

using zrp_oracle::Kind;

namespace {

bool isPresent(const Type& type, const Field& field, const char* record) {
    const uint64_t word = zrp_oracle::valueAt(record, {type.presence, 4});
    return (word >> (&field - type.fields.data()) & 1) != 0;
}

bool sameText(const Field& field, const char* first, const char* second) {
    const size_t length = zrp_oracle::textLength(field, first);
    return length < field.size &&
           memcmp(first + field.offset, second + field.offset, length + 1) == 0;
}

const Field* valueNotReceived(const Field& field, const char* sent, const char* received) {
    switch (field.kind) {
        case Kind::text:
            return sameText(field, sent, received) ? nullptr : &field;
        case Kind::bytes: {
            const size_t count = static_cast<size_t>(zrp_oracle::elementCount(field, sent));
            const bool same = memcmp(sent + field.offset, received + field.offset, count) == 0;
            return same ? nullptr : &field;
        }
        case Kind::structure:
            return firstNotReceived(*field.type, sent + field.offset, received + field.offset, 0);
        case Kind::unionValue:
            return firstNotReceived(*field.type, sent + field.offset, received + field.offset,
                                    zrp_oracle::selectorOf(field, sent));
        default:
            return zrp_oracle::bitsOf(field, sent) == zrp_oracle::bitsOf(field, received) ? nullptr
                                                                                          : &field;
    }
}

const Field* valueNotWritten(const Field& field, const char* first, const char* second) {
    switch (field.kind) {
        case Kind::text:
            return sameText(field, first, second) ? nullptr : &field;
        case Kind::bytes:
            return field.size == 0 || first[field.offset] == second[field.offset] ? nullptr
                                                                                  : &field;
        case Kind::structure:
            return firstNotWritten(*field.type, first + field.offset, second + field.offset, 0);
        case Kind::unionValue:
            return nullptr;
        default:
            return zrp_oracle::bitsOf(field, first) == zrp_oracle::bitsOf(field, second) ? nullptr
                                                                                         : &field;
    }
}

}  // namespace

const Field* firstNotReceived(const Type& type, const char* sent, const char* received,
                              long long selector) {
    if (type.isUnion) {
        return valueNotReceived(*zrp_oracle::fieldNumbered(type, selector), sent, received);
    }
    for (const Field& field : type.fields) {
        const bool travels = !zrp_oracle::isLeftOut(field, sent);
        if (isPresent(type, field, received) != travels) {
            return &field;
        }
        const Field* const wrong = travels ? valueNotReceived(field, sent, received) : nullptr;
        if (wrong != nullptr) {
            return wrong;
        }
    }
    return nullptr;
}

const Field* firstNotWritten(const Type& type, const char* first, const char* second,
                             long long selector) {
    if (type.isUnion) {
        const Field* const member = zrp_oracle::fieldNumbered(type, selector);
        return member != nullptr ? valueNotWritten(*member, first, second) : nullptr;
    }
    for (const Field& field : type.fields) {
        const Field* const wrong =
            isPresent(type, field, first) ? valueNotWritten(field, first, second) : nullptr;
        if (wrong != nullptr) {
            return wrong;
        }
    }
    return nullptr;
}

}  // namespace zrp_fuzz
