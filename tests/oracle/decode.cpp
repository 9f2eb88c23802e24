#include "tests/oracle/oracle.h"
#include "tests/oracle/record.h"

namespace zrp_oracle {

namespace {

/// Even bits are the values from 0 up, odd bits those from -1 down.
uint64_t unzigzag(uint64_t bits) {
    return bits % 2 == 0 ? bits / 2 : ~(bits / 2);
}

int unpackVarint(const Field& field, void* record, InputCursor& in) {
    uint64_t bits = 0;
    const int result = in.takeVarint(bits, static_cast<unsigned>(integerWidth(field.kind) * 8));
    // What a failing read gathered stays in the field.
    setBits(field, record, isSigned(field.kind) ? unzigzag(bits) : bits);
    // The unsigned 64-bit reader never fails: the tag read that follows meets the same bytes.
    return field.kind == Kind::uint64 ? 0 : result;
}

int unpackInteger(const Field& field, void* record, InputCursor& in, bool varint) {
    const size_t width = integerWidth(field.kind);
    if (varint && width != 1) {
        return unpackVarint(field, record, in);
    }
    uint64_t bits = 0;
    const int result = in.takeBigEndian(bits, width);
    if (result == 0) {
        setBits(field, record, bits);
    }
    return result;
}

int unpackText(const Field& field, void* record, InputCursor& in, size_t length) {
    if (length >= field.size) {
        return textTooLong;
    }
    char* text = fieldIn(field, record);
    const int result = in.takeRun(text, length);
    if (result == 0) {
        text[length] = '\0';
    }
    return result;
}

int unpackBytes(const Field& field, void* record, InputCursor& in, size_t length) {
    if (length == 0) {
        return zeroLength;
    }
    char* elements = fieldIn(field, record);
    for (size_t i = 0; i < field.size; ++i) {
        const int result = in.takeRun(elements + i, 1);
        if (result != 0) {
            return result;
        }
        if (i + 1 == length) {
            if (field.isGoverned()) {
                setValueAt(record, field.governor, i + 1);
            }
            break;
        }
    }
    // Bytes past the capacity stay in the input and are taken for tags.
    return 0;
}

int unpackStructure(const Field& field, void* record, InputCursor& in, size_t length, bool varint) {
    const int result =
        unpackFields(*field.type, fieldIn(field, record), nullptr, in, length, varint);
    if (result == 0 && field.isOptional()) {
        setValueAt(record, field.governor, 1);
    }
    return result;
}

int unpackUnion(const Field& field, void* record, InputCursor& in, size_t length, bool varint) {
    long long selector = 0;
    const int result =
        unpackFields(*field.type, fieldIn(field, record), &selector, in, length, varint);
    if (result == 0) {
        setValueAt(record, field.governor, static_cast<uint64_t>(selector));
    }
    return result;
}

int unpackValue(const Field& field, void* record, InputCursor& in, bool varint) {
    if (integerWidth(field.kind) != 0) {
        return unpackInteger(field, record, in, varint);
    }
    uint64_t length = 0;
    const int result = in.takeBigEndian(length, 4);
    if (result != 0) {
        return result;
    }
    switch (field.kind) {
        case Kind::text:
            return unpackText(field, record, in, length);
        case Kind::bytes:
            return unpackBytes(field, record, in, length);
        case Kind::structure:
            return unpackStructure(field, record, in, length, varint);
        default:
            return unpackUnion(field, record, in, length, varint);
    }
}

int skipValue(InputCursor& in, unsigned typeId) {
    uint64_t value = 0;
    switch (typeId) {
        case 0:
            (void)in.takeVarint(value, 64);
            return 0;
        case 1:
            return in.skip(1);
        case 2:
            return in.skip(2);
        case 3:
            return in.skip(4);
        case 4:
            return in.skip(8);
        case 5: {
            const int result = in.takeBigEndian(value, 4);
            return result != 0 ? result : in.skip(value);
        }
        default:
            return badTypeId;
    }
}

int unpackUnionFields(const Type& type, void* record, long long& selector, InputCursor& in,
                      uint64_t end, bool varint) {
    uint64_t tag = 0;
    int result = in.takeVarint(tag, 32);
    if (result != 0) {
        return result;
    }
    const long long number = static_cast<long long>(tag / 16);
    const Field* member = fieldNumbered(type, number);
    result = member != nullptr ? unpackValue(*member, record, in, varint)
                               : skipValue(in, static_cast<unsigned>(tag % 16));
    if (result != 0) {
        return result;
    }
    if (in.used > end) {
        return lengthMismatch;
    }
    selector = number;
    return 0;
}

int unpackStructureFields(const Type& type, void* record, InputCursor& in, uint64_t end,
                          bool varint) {
    const Place presence{type.presence, 4};
    setValueAt(record, presence, 0);
    while (in.used < end) {
        uint64_t tag = 0;
        int result = in.takeVarint(tag, 32);
        if (result != 0) {
            return result;
        }
        const Field* field = fieldNumbered(type, static_cast<long long>(tag / 16));
        if (field != nullptr) {
            // Bits follow the order of the fields, which is not always their numbers'.
            const uint64_t bit = UINT64_C(1) << (field - type.fields.data());
            setValueAt(record, presence, valueAt(record, presence) | bit);
            result = unpackValue(*field, record, in, varint);
        } else {
            result = skipValue(in, static_cast<unsigned>(tag % 16));
        }
        if (result != 0) {
            return result;
        }
    }
    return in.used > end ? lengthMismatch : 0;
}

}  // namespace

int unpackFields(const Type& type, void* record, long long* selector, InputCursor& in,
                 uint64_t length, bool varint) {
    // Wraps around for an envelope that declares less than its own 5 bytes.
    const uint64_t end = uint64_t{in.used} + length;
    return type.isUnion ? unpackUnionFields(type, record, *selector, in, end, varint)
                        : unpackStructureFields(type, record, in, end, varint);
}

int unpack(const Type& type, void* record, long long* selector, const char* buffer, size_t size,
           size_t* used) {
    if (buffer == nullptr) {
        return nullArgument;
    }
    if (size < 5) {
        return noData;
    }
    InputCursor in(buffer, size);
    uint64_t magic = 0;
    (void)in.takeBigEndian(magic, 1);
    if (magic != varintMagic && magic != fixedMagic) {
        return badMagic;
    }
    uint64_t declared = 0;
    (void)in.takeBigEndian(declared, 4);
    if (size < declared) {
        return noData;
    }
    const int result = unpackFields(type, record, selector, in, declared - 5, magic == varintMagic);
    if (used != nullptr) {
        *used = in.used;
    }
    return result;
}

}  // namespace zrp_oracle
