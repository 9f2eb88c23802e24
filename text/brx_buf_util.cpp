// The default layout of a text dump, one entry a line when the separator is a newline:
//
//     [stBase]
//         [wCommand] 4097
//         [bEncrypted] 0x00
//     [szStartServiceName] "lobby"
//     [szIdentity] 2: 0x1f 0x00
//
// Four blanks a level, none for a negative indent. Texts are quoted; what is not printable UTF-8 in
// them is escaped, so that no peer can put line breaks or terminal sequences into a log. An entry
// that does not fit is taken back; the entries before it are then still a NUL-terminated text.

#include "Common/Source/Core/BRX/BrxBufUtil.h"

namespace Quorva {

namespace {

constexpr uint64_t blanksPerLevel = 4;

/// One entry on its way into the buffer; takes it back unless `finish` succeeds.
class Entry {
  public:
    Entry(BrxWriteBuf& buf, int indent, const char* label) : buf_(buf), start_(buf.position) {
        writeBlanks(indent);
        write(label, strlen(label));
    }
    Entry(const Entry&) = delete;
    Entry& operator=(const Entry&) = delete;

    void write(const char* text, size_t size) {
        if (result_ == 0) {
            result_ = buf_.writeBytes(text, size);
        }
    }

    void vformat(const char* pattern, va_list arguments) BRX_PRINTF_LIKE(2, 0) {
        if (result_ == 0) {
            result_ = buf_.vtextize(pattern, arguments);
        }
    }

    void format(const char* pattern, ...) BRX_PRINTF_LIKE(2, 3) {
        va_list arguments;
        va_start(arguments, pattern);
        vformat(pattern, arguments);
        va_end(arguments);
    }

    void writeQuoted(const char* text);

    /// The separator and an uncounted NUL; returns the result of the whole entry.
    int32_t finish(char separator) {
        if (result_ == 0) {
            result_ = buf_.writeCharWithNull(separator);
        }
        return finish();
    }

    /// Without a separator: the caller goes on with the entry.
    int32_t finish() {
        if (result_ != 0) {
            buf_.position = start_;
            if (start_ < buf_.length) {
                buf_.beginPtr[start_] = '\0';  // the entries before it are still a text
            }
        }
        return result_;
    }

  private:
    void writeBlanks(int indent) {
        if (indent <= 0) {
            return;
        }
        const uint64_t blanks = static_cast<uint64_t>(indent) * blanksPerLevel;
        const size_t from = buf_.position;
        // unreachable: only where size_t has 32 bits
        if (blanks > SIZE_MAX) {
            result_ = BRX_ERR_NO_ROOM;
            return;
        }
        result_ = buf_.reserve(static_cast<size_t>(blanks));
        if (result_ == 0) {
            memset(buf_.beginPtr + from, ' ', static_cast<size_t>(blanks));
        }
    }

    BrxWriteBuf& buf_;
    const size_t start_;
    int32_t result_ = 0;
};

uint8_t byteAt(const char* text, size_t index) {
    return static_cast<uint8_t>(text[index]);
}

/// Bytes of the printable character at `text`, 0 where there is none: controls (those of 0x80 to
/// 0x9F as well), quotes and backslashes, and whatever is not well-formed UTF-8.
size_t printableSize(const char* text) {
    const uint8_t first = byteAt(text, 0);
    if (first < 0x80) {
        return first >= 0x20 && first != 0x7F && first != '"' && first != '\\' ? 1 : 0;
    }
    const size_t size = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    uint32_t character = first & (0x7Fu >> size);
    for (size_t i = 1; i < size; ++i) {
        if ((byteAt(text, i) & 0xC0) != 0x80) {  // a NUL ends here too
            return 0;
        }
        character = character << 6 | (byteAt(text, i) & 0x3F);
    }
    // The least of each size that is not better written shorter, and no control, surrogate or
    // character past the last one.
    const uint32_t least[] = {0xA0, 0x800, 0x10000};
    const bool isSurrogate = character >= 0xD800 && character <= 0xDFFF;
    return first >= 0xC2 && first <= 0xF4 && character >= least[size - 2] &&
                   character <= 0x10FFFF && !isSurrogate
               ? size
               : 0;
}

void Entry::writeQuoted(const char* text) {
    write("\"", 1);
    while (*text != '\0') {
        size_t plain = 0;
        while (const size_t size = printableSize(text + plain)) {
            plain += size;
        }
        write(text, plain);
        text += plain;
        if (*text == '"' || *text == '\\') {
            format("\\%c", *text++);
        } else if (*text != '\0') {
            format("\\x%02x", static_cast<unsigned>(byteAt(text++, 0)));
        }
    }
    write("\"", 1);
}

}  // namespace

int32_t BrxBufUtil::printVariable(BrxWriteBuf& buf, int indent, char separator, const char* label,
                                  const char* format, ...) {
    Entry entry(buf, indent, label);
    entry.write(" ", 1);
    va_list arguments;
    va_start(arguments, format);
    entry.vformat(format, arguments);
    va_end(arguments);
    return entry.finish(separator);
}

int32_t BrxBufUtil::printVariable(BrxWriteBuf& buf, int indent, char separator, const char* label,
                                  bool /*isHeading*/) {
    return Entry(buf, indent, label).finish(separator);
}

int32_t BrxBufUtil::printArray(BrxWriteBuf& buf, int indent, char /*separator*/, const char* label,
                               long long count) {
    Entry entry(buf, indent, label);
    entry.format(" %lld:", count);
    return entry.finish();
}

int32_t BrxBufUtil::printString(BrxWriteBuf& buf, int indent, char separator, const char* label,
                                const char* text) {
    Entry entry(buf, indent, label);
    entry.write(" ", 1);
    entry.writeQuoted(text);
    return entry.finish(separator);
}

}  // namespace Quorva
