// Every message type behind one run-time interface, so that a test can go through all of them.
#pragma once

#include <stddef.h>

#include <span>

#include "protocol/quorva_zrp.h"

namespace zrp_test {

/// One message type. `object` points at a record of the type, `selector` is used by unions only
/// (structures neither read nor write it; it may be null for them where it is a pointer).
struct MessageType {
    const char* name;
    bool isUnion;
    size_t objectSize;
    size_t objectAlignment;
    size_t maxVarint;  ///< the published constant Type_MAX_VARINT
    size_t maxFixed;   ///< the published constant Type_MAX_FIXED

    int (*construct)(void* object, long long selector);
    int (*pack)(const void* object, long long selector, char* buffer, size_t size, size_t* used,
                bool varint);
    int (*packFields)(const void* object, long long selector, Quorva::BrxWriteBuf& buf,
                      bool varint);
    int (*unpack)(void* object, long long* selector, const char* buffer, size_t size, size_t* used);
    int (*unpackFields)(void* object, long long* selector, Quorva::BrxReadBuf& buf, size_t length,
                        bool varint);
    int (*maxPackedSize)(const void* object, size_t* size, bool varint);
    int (*visualize)(const void* object, long long selector, Quorva::BrxWriteBuf& buf, int indent,
                     char separator);
    int (*visualizeInto)(const void* object, long long selector, char* buffer, size_t size,
                         size_t* used, int indent, char separator);
};

/// All 35 types, structures first.
std::span<const MessageType> messageTypes();

/// The type of this name; ends the program when there is none.
const MessageType& messageType(const char* name);

}  // namespace zrp_test
