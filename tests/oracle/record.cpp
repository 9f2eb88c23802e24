#include "tests/oracle/record.h"

#include <string.h>

namespace zrp_oracle {

namespace {

template <class Unsigned>
uint64_t load(const char* from) {
    Unsigned value = 0;
    memcpy(&value, from, sizeof(value));
    return value;
}

template <class Unsigned>
void store(char* to, uint64_t bits) {
    const Unsigned value = static_cast<Unsigned>(bits);
    memcpy(to, &value, sizeof(value));
}

uint64_t loadInteger(const char* from, size_t width) {
    switch (width) {
        case 1:
            return load<uint8_t>(from);
        case 2:
            return load<uint16_t>(from);
        case 4:
            return load<uint32_t>(from);
        default:
            return load<uint64_t>(from);
    }
}

void storeInteger(char* to, size_t width, uint64_t bits) {
    switch (width) {
        case 1:
            store<uint8_t>(to, bits);
            break;
        case 2:
            store<uint16_t>(to, bits);
            break;
        case 4:
            store<uint32_t>(to, bits);
            break;
        default:
            store<uint64_t>(to, bits);
            break;
    }
}

}  // namespace

uint64_t valueAt(const void* record, Place place) {
    return loadInteger(static_cast<const char*>(record) + place.offset, place.width);
}

void setValueAt(void* record, Place place, uint64_t value) {
    storeInteger(static_cast<char*>(record) + place.offset, place.width, value);
}

const Field* fieldNumbered(const Type& type, long long number) {
    for (const Field& field : type.fields) {
        if (number == static_cast<long long>(field.number)) {
            return &field;
        }
    }
    return nullptr;
}

size_t integerWidth(Kind kind) {
    switch (kind) {
        case Kind::uint8:
        case Kind::char8:
            return 1;
        case Kind::uint16:
            return 2;
        case Kind::uint32:
        case Kind::int32:
            return 4;
        case Kind::uint64:
        case Kind::int64:
            return 8;
        default:
            return 0;
    }
}

bool isSigned(Kind kind) {
    return kind == Kind::char8 || kind == Kind::int32 || kind == Kind::int64;
}

unsigned typeIdOf(Kind kind, bool varint) {
    switch (integerWidth(kind)) {
        case 1:
            return 1;
        case 2:
            return varint ? 0 : 2;
        case 4:
            return varint ? 0 : 3;
        case 8:
            return varint ? 0 : 4;
        default:
            return delimitedTypeId;
    }
}

const char* fieldIn(const Field& field, const void* record) {
    return static_cast<const char*>(record) + field.offset;
}

char* fieldIn(const Field& field, void* record) {
    return static_cast<char*>(record) + field.offset;
}

uint64_t bitsOf(const Field& field, const void* record) {
    return loadInteger(fieldIn(field, record), integerWidth(field.kind));
}

void setBits(const Field& field, void* record, uint64_t bits) {
    storeInteger(fieldIn(field, record), integerWidth(field.kind), bits);
}

int64_t signedValueOf(const Field& field, const void* record) {
    const uint64_t bits = bitsOf(field, record);
    switch (integerWidth(field.kind)) {
        case 1:
            return static_cast<int8_t>(bits);
        case 4:
            return static_cast<int32_t>(bits);
        default:
            return static_cast<int64_t>(bits);
    }
}

size_t textLength(const Field& field, const void* record) {
    const char* text = fieldIn(field, record);
    size_t length = 0;
    while (length < field.size && text[length] != '\0') {
        ++length;
    }
    return length;
}

uint64_t elementCount(const Field& field, const void* record) {
    return field.isGoverned() ? valueAt(record, field.governor) : field.size;
}

long long selectorOf(const Field& field, const void* record) {
    return static_cast<long long>(valueAt(record, field.governor));
}

bool isLeftOut(const Field& field, const void* record) {
    if (field.kind == Kind::bytes) {
        return elementCount(field, record) == 0;
    }
    return field.isOptional() && valueAt(record, field.governor) == 0;
}

bool exceedsBound(const Field& field, const void* record) {
    return field.hasBound && bitsOf(field, record) > field.bound;
}

}  // namespace zrp_oracle
