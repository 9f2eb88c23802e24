/// \file BrxBufUtil.h
/// The four formatting functions that the text dump calls. This library declares them only; the
/// host defines them and so owns the layout of its logs. `quorva_zrp_text` is a ready definition.
#ifndef QUORVA_BRX_BUF_UTIL_H
#define QUORVA_BRX_BUF_UTIL_H

#include "BrxBuf.h"

namespace Quorva {

/// What a definition owes the messages that print through it: each function writes one entry for
/// `label` into `buf` at `indent` (a negative indent means none), stays inside the buffer, and
/// returns 0, or BRX_ERR_NO_ROOM when the entry does not fit. `separator` ends an entry. A result
/// other than 0 ends the dump and reaches its caller unchanged.
class BrxBufUtil {
  public:
    /// An entry for one scalar; `format` takes exactly one argument, of the width it names.
    static int32_t printVariable(BrxWriteBuf& buf, int indent, char separator, const char* label,
                                 const char* format, ...) BRX_PRINTF_LIKE(5, 6);

    /// The heading of a nested structure or union; `isHeading` is always true.
    static int32_t printVariable(BrxWriteBuf& buf, int indent, char separator, const char* label,
                                 bool isHeading);

    /// Opens the entry of a byte array of `count` elements. The caller then writes each element as
    /// " 0x%02x" and ends the entry with the separator itself.
    static int32_t printArray(BrxWriteBuf& buf, int indent, char separator, const char* label,
                              long long count);

    /// An entry for the NUL-terminated `text`.
    static int32_t printString(BrxWriteBuf& buf, int indent, char separator, const char* label,
                               const char* text);
};

}  // namespace Quorva

#endif  // QUORVA_BRX_BUF_UTIL_H
