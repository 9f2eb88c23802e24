#include "protocol/codec/print.h"

#include <limits.h>

#include "Common/Source/Core/BRX/BrxBufUtil.h"

namespace quorva_zrp::codec {

using Quorva::BrxBufUtil;
using Quorva::BrxWriteBuf;

Page Page::nested() const {
    return {buf, indent < 0 || indent == INT_MAX ? indent : indent + 1, separator};
}

namespace {

template <class Value>
int printValue(const Page& page, const char* label, const char* format, Value value) {
    return BrxBufUtil::printVariable(page.buf, page.indent, page.separator, label, format, value);
}

}  // namespace

int printInteger(const Page& page, const char* label, uint8_t value) {
    return printValue(page, label, "0x%02x", static_cast<unsigned>(value));
}

/// Deliberate: the byte is widened with its sign, so 0x80 prints as 0xffffff80.
int printInteger(const Page& page, const char* label, int8_t value) {
    return printValue(page, label, "0x%02x", static_cast<int>(value));
}

int printInteger(const Page& page, const char* label, uint16_t value) {
    return printValue(page, label, "%d", static_cast<int>(value));
}

int printInteger(const Page& page, const char* label, uint32_t value) {
    return printValue(page, label, "%u", static_cast<unsigned>(value));
}

int printInteger(const Page& page, const char* label, int32_t value) {
    return printValue(page, label, "%d", static_cast<int>(value));
}

// The printed text is the same where long has 32 bits; only the format differs.

int printInteger(const Page& page, const char* label, uint64_t value) {
    if constexpr (sizeof(long) == sizeof(uint64_t)) {
        return printValue(page, label, "%lu", static_cast<unsigned long>(value));
    } else {
        return printValue(page, label, "%llu", static_cast<unsigned long long>(value));
    }
}

int printInteger(const Page& page, const char* label, int64_t value) {
    if constexpr (sizeof(long) == sizeof(int64_t)) {
        return printValue(page, label, "%ld", static_cast<long>(value));
    } else {
        return printValue(page, label, "%lld", static_cast<long long>(value));
    }
}

/// The printer of texts takes a bare pointer, so a text without NUL must not reach it.
int printText(const Page& page, const char* label, const char* text, size_t capacity) {
    if (strnlen(text, capacity) == capacity) {
        return Quorva::BRX_ERR_TEXT_TOO_LONG;
    }
    return BrxBufUtil::printString(page.buf, page.indent, page.separator, label, text);
}

int printBytes(const Page& page, const char* label, const char* bytes, uint64_t count) {
    if (const int result = BrxBufUtil::printArray(page.buf, page.indent, page.separator, label,
                                                  static_cast<long long>(count));
        result != 0) {
        return result;
    }
    for (uint64_t i = 0; i < count; ++i) {
        const unsigned byte = static_cast<uint8_t>(bytes[i]);
        if (const int result = page.buf.textize(" 0x%02x", byte); result != 0) {
            return result;
        }
    }
    return page.buf.writeCharWithNull(page.separator);
}

int printHeading(const Page& page, const char* label) {
    return BrxBufUtil::printVariable(page.buf, page.indent, page.separator, label, true);
}

const char* endText(BrxWriteBuf& buf) {
    const size_t size = buf.getTotalSize();
    char* const text = buf.getBeginPtr();
    if (text == nullptr || size == 0) {
        return "";
    }
    const size_t used = buf.getUsedSize();
    text[used < size ? used : size - 1] = '\0';
    return text;
}

}  // namespace quorva_zrp::codec
