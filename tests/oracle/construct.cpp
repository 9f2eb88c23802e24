#include <algorithm>
#include <string>

#include "tests/oracle/oracle.h"
#include "tests/oracle/record.h"

namespace zrp_oracle {

namespace {

void constructText(const Field& field, void* record) {
    char* text = fieldIn(field, record);
    const std::string start = field.startText;
    if (start.empty()) {
        text[0] = '\0';
        return;
    }
    // A bounded copy: the rest of the capacity becomes NULs.
    for (size_t i = 0; i < field.size; ++i) {
        text[i] = i < start.size() ? start[i] : '\0';
    }
}

int constructField(const Field& field, void* record) {
    switch (field.kind) {
        case Kind::text:
            constructText(field, record);
            return 0;
        case Kind::bytes:
            std::fill_n(fieldIn(field, record), field.size, '\0');
            return 0;
        case Kind::structure:
            return construct(*field.type, fieldIn(field, record), 0);
        case Kind::unionValue:
            return construct(*field.type, fieldIn(field, record), selectorOf(field, record));
        default:
            setBits(field, record, field.startValue);
            return 0;
    }
}

/// The value alone, without its tag.
size_t largestValue(const Field& field, bool varint) {
    constexpr size_t lengthBytes = 4;
    constexpr size_t envelope = 5;
    switch (integerWidth(field.kind)) {
        case 1:
            return 1;
        case 2:
            return varint ? 3 : 2;
        case 4:
            return varint ? 5 : 4;
        case 8:
            return varint ? 10 : 8;
        default:
            break;
    }
    return lengthBytes +
           (field.type != nullptr ? largestSize(*field.type, varint) - envelope : field.size);
}

}  // namespace

int construct(const Type& type, void* record, long long selector) {
    if (type.isUnion) {
        const Field* member = fieldNumbered(type, selector);
        return member != nullptr ? constructField(*member, record) : 0;
    }
    for (const Field& field : type.fields) {
        const int result = constructField(field, record);
        if (result != 0) {
            return result;
        }
    }
    setValueAt(record, Place{type.presence, 4}, 0);
    return 0;
}

size_t largestSize(const Type& type, bool varint) {
    constexpr size_t envelope = 5;
    constexpr size_t tag = 5;
    size_t sum = 0;
    size_t largest = 0;
    for (const Field& field : type.fields) {
        const size_t size = tag + largestValue(field, varint);
        sum += size;
        largest = std::max(largest, size);
    }
    return envelope + (type.isUnion ? largest : sum);
}

}  // namespace zrp_oracle
