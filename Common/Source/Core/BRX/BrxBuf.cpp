// Cold paths of the wire core: formatted text, skipping, releasing memory, the broken invariant.

// The assertion handler is declared only where assertions are on, and the invariant is checked in
// every build type.
#undef NDEBUG
#include "BrxBuf.h"

#include <assert.h>
#include <stdio.h>
#include <stdlib.h>

namespace Quorva {

namespace brx_detail {

void invariantFailed(const char* operation, int line) {
    const char* const path = "../../../../Common/Source/Core/BRX/BrxBuf";
    const char* const expression = "position <= length";
#if defined(__BIONIC__)
    __assert2(path, line, operation, expression);
#elif defined(__GLIBC__) || defined(__linux__)
    __assert_fail(expression, path, static_cast<unsigned>(line), operation);
#elif defined(__APPLE__)
    __assert_rtn(operation, path, line, expression);
#elif defined(_WIN32)
    (void)operation;  // the handler of this platform has no place for it
    _assert(expression, path, static_cast<unsigned>(line));
    __builtin_unreachable();
#else
    fprintf(stderr, "%s:%d: %s: assertion \"%s\" failed\n", path, line, operation, expression);
    abort();
#endif
}

}  // namespace brx_detail

void BrxWriteBuf::_free() {
    delete[] beginPtr;
    beginPtr = nullptr;
    ownsMemory = false;
}

int32_t BrxWriteBuf::textize(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int32_t result = vtextize(format, arguments);
    va_end(arguments);
    return result;
}

int32_t BrxWriteBuf::vtextize(const char* format, va_list arguments) {
    if (position > length) {
        return BRX_ERR_NO_ROOM;
    }
    const size_t room = length - position;
    const int written = vsnprintf(beginPtr + position, room, format, arguments);
    if (written < 0 || static_cast<size_t>(written) >= room) {
        return BRX_ERR_NO_ROOM;
    }
    position += static_cast<size_t>(written);
    return 0;
}

int32_t BrxTLVUtil::skipUnknownFields(BrxReadBuf& buf, int typeId) {
    switch (typeId) {
        case 0: {
            uint64_t scratch = 0;
            return buf.readVarUInt64(scratch);
        }
        case 1:
            return buf.skipForward(1);
        case 2:
            return buf.skipForward(2);
        case 3:
            return buf.skipForward(4);
        case 4:
            return buf.skipForward(8);
        case 5: {
            uint32_t valueLength = 0;
            const int32_t result = buf.readUInt32(valueLength);
            return result != 0 ? result : buf.skipForward(valueLength);
        }
        default:
            return BRX_ERR_BAD_TYPE_ID;
    }
}

}  // namespace Quorva
