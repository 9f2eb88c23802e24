#include "tests/support/message_types.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "tests/support/every_type.h"

namespace zrp_test {

using namespace quorva_zrp;
using Quorva::BrxReadBuf;
using Quorva::BrxWriteBuf;

namespace {

template <class T>
const T& as(const void* object) {
    return *static_cast<const T*>(object);
}

template <class T>
T& as(void* object) {
    return *static_cast<T*>(object);
}

template <class T>
constexpr MessageType structure(const char* name, size_t maxVarint, size_t maxFixed) {
    MessageType type{};
    type.name = name;
    type.isUnion = false;
    type.objectSize = sizeof(T);
    type.objectAlignment = alignof(T);
    type.maxVarint = maxVarint;
    type.maxFixed = maxFixed;
    type.construct = [](void* object, long long) { return as<T>(object).construct(); };
    type.pack = [](const void* object, long long, char* buffer, size_t size, size_t* used,
                   bool varint) { return as<T>(object).packTLV(buffer, size, used, varint); };
    type.packFields = [](const void* object, long long, BrxWriteBuf& buf, bool varint) {
        return varint ? as<T>(object).packTLVWithVarint(buf) : as<T>(object).packTLVNoVarint(buf);
    };
    type.unpack = [](void* object, long long*, const char* buffer, size_t size, size_t* used) {
        return as<T>(object).unpackTLV(buffer, size, used);
    };
    type.unpackFields = [](void* object, long long*, BrxReadBuf& buf, size_t length, bool varint) {
        return varint ? as<T>(object).unpackTLVWithVarint(buf, length)
                      : as<T>(object).unpackTLVNoVarint(buf, length);
    };
    type.maxPackedSize = [](const void* object, size_t* size, bool varint) {
        return as<T>(object).getTLVMaxPackedSize(size, varint);
    };
    type.visualize = [](const void* object, long long, BrxWriteBuf& buf, int indent,
                        char separator) { return as<T>(object).visualize(buf, indent, separator); };
    type.visualizeInto = [](const void* object, long long, char* buffer, size_t size, size_t* used,
                            int indent, char separator) {
        return as<T>(object).visualize(buffer, size, used, indent, separator);
    };
    return type;
}

template <class U>
constexpr MessageType unionType(const char* name, size_t maxVarint, size_t maxFixed) {
    MessageType type{};
    type.name = name;
    type.isUnion = true;
    type.objectSize = sizeof(U);
    type.objectAlignment = alignof(U);
    type.maxVarint = maxVarint;
    type.maxFixed = maxFixed;
    type.construct = [](void* object, long long selector) {
        return as<U>(object).construct(selector);
    };
    type.pack = [](const void* object, long long selector, char* buffer, size_t size, size_t* used,
                   bool varint) {
        return as<U>(object).packTLV(selector, buffer, size, used, varint);
    };
    type.packFields = [](const void* object, long long selector, BrxWriteBuf& buf, bool varint) {
        return varint ? as<U>(object).packTLVWithVarint(selector, buf)
                      : as<U>(object).packTLVNoVarint(selector, buf);
    };
    type.unpack = [](void* object, long long* selector, const char* buffer, size_t size,
                     size_t* used) {
        return as<U>(object).unpackTLV(*selector, buffer, size, used);
    };
    type.unpackFields = [](void* object, long long* selector, BrxReadBuf& buf, size_t length,
                           bool varint) {
        return varint ? as<U>(object).unpackTLVWithVarint(*selector, buf, length)
                      : as<U>(object).unpackTLVNoVarint(*selector, buf, length);
    };
    type.maxPackedSize = [](const void* object, size_t* size, bool varint) {
        return as<U>(object).getTLVMaxPackedSize(size, varint);
    };
    type.visualize = [](const void* object, long long selector, BrxWriteBuf& buf, int indent,
                        char separator) {
        return as<U>(object).visualize(selector, buf, indent, separator);
    };
    type.visualizeInto = [](const void* object, long long selector, char* buffer, size_t size,
                            size_t* used, int indent, char separator) {
        return as<U>(object).visualize(selector, buffer, size, used, indent, separator);
    };
    return type;
}

#define STRUCTURE(Type) structure<Type>(#Type, Type##_MAX_VARINT, Type##_MAX_FIXED)
#define UNION(Type)     unionType<Type>(#Type, Type##_MAX_VARINT, Type##_MAX_FIXED)

constexpr MessageType types[] = {
    ZRP_EVERY_TYPE(STRUCTURE, UNION),
};

#undef STRUCTURE
#undef UNION

}  // namespace

std::span<const MessageType> messageTypes() {
    return types;
}

const MessageType& messageType(const char* name) {
    for (const MessageType& type : types) {
        if (strcmp(type.name, name) == 0) {
            return type;
        }
    }
    fprintf(stderr, "no message type is called %s\n", name);
    abort();
}

}  // namespace zrp_test
