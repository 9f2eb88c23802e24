// The text dump: one pass over the rows, each value handed to the host's formatting functions.
#pragma once

#include "protocol/codec/encode.h"
#include "protocol/codec/table.h"

namespace quorva_zrp::codec {

/// Where entries go and how they are told apart; passed on unchanged to every formatting function.
struct Page {
    BrxWriteBuf& buf;
    int indent;
    char separator;

    /// One level deeper. Deliberate: a negative indent stays as it is, so that a whole tree can be
    /// printed at one level, and the largest one has nothing deeper.
    Page nested() const;
};

// One entry each; the format follows from the type of the value.
int printInteger(const Page& page, const char* label, uint8_t value);
int printInteger(const Page& page, const char* label, int8_t value);
int printInteger(const Page& page, const char* label, uint16_t value);
int printInteger(const Page& page, const char* label, uint32_t value);
int printInteger(const Page& page, const char* label, int32_t value);
int printInteger(const Page& page, const char* label, uint64_t value);
int printInteger(const Page& page, const char* label, int64_t value);
int printText(const Page& page, const char* label, const char* text, size_t capacity);
int printBytes(const Page& page, const char* label, const char* bytes, uint64_t count);
int printHeading(const Page& page, const char* label);

template <class Record>
int printStructure(const Record& record, const Page& page);
template <class Union>
int printMember(const Union& value, long long selector, const Page& page);

template <class Row, class Record>
inline int printField(const Record& record, const Page& page) {
    using Type = typename Row::type;
    [[maybe_unused]] const char* const at = reinterpret_cast<const char*>(&record) + Row::offset;
    [[maybe_unused]] uint64_t count = Row::capacity();
    if constexpr (Row::mayBeAbsent) {
        count = Row::Governor::load(record);
        if (count > Row::largestCount()) {
            return Quorva::BRX_ERR_REFER_TOO_BIG;
        }
    }
    if constexpr (Row::kind == Kind::integer) {
        return printInteger(page, Row::label, loadAt<Type>(record, Row::offset));
    } else if constexpr (Row::kind == Kind::text) {
        return printText(page, Row::label, at, sizeof(Type));
    } else if constexpr (Row::kind == Kind::bytes || Row::kind == Kind::trailingBytes) {
        return printBytes(page, Row::label, at, count);
    } else {
        if (Row::mayBeAbsent && count == 0) {
            return 0;
        }
        if (const int result = printHeading(page, Row::label); result != 0) {
            return result;
        }
        const Type& value = memberAt<Type>(record, Row::offset);
        if constexpr (Row::kind == Kind::structure) {
            return printStructure(value, page.nested());
        } else {
            return printMember(value, Row::Governor::load(record), page.nested());
        }
    }
}

template <class Record, size_t... Index>
inline int printFields(const Record& record, const Page& page, std::index_sequence<Index...>) {
    int result = 0;
    (void)(((result = printField<Field<Record, Index>>(record, page)) == 0) && ...);
    return result;
}

template <class Record>
int printStructure(const Record& record, const Page& page) {
    return printFields(record, page, FieldIndices<Record>{});
}

/// Prints the member that `selector` names; one that names none prints nothing.
template <class Union>
int printMember(const Union& value, long long selector, const Page& page) {
    return withMember<Union>(
        selector, [&]<class Row>(Row) { return printField<Row>(value, page); }, [] { return 0; });
}

// --- Texts for log calls ------------------------------------------------------------------------

/// Ends what `buf` holds with a NUL that is not counted, in the last byte where it is full, and
/// returns it; "" for a buffer without memory.
const char* endText(BrxWriteBuf& buf);

}  // namespace quorva_zrp::codec
