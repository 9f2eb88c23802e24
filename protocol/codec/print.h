// The text dump: one pass over the rows, each value handed to the host's formatting functions.
#pragma once

#include "protocol/codec/table.h"

namespace quorva_zrp::codec {

/// Where entries go and how they are told apart; passed on unchanged to every formatting function.
struct Page {
    Quorva::BrxWriteBuf& buf;
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
int print(const char* record, const Page& page);
template <class Union>
int print(const char* value, long long selector, const Page& page);

template <class Field>
inline int printField(Field field, const char* record, const Page& page) {
    using Type = typename Field::type;
    [[maybe_unused]] const char* const at = record + field.offset();
    [[maybe_unused]] uint64_t count = field.capacity();
    if constexpr (Field::mayBeAbsent()) {
        count = field.governor(record);
        if (count > largestCount(field.kind(), field.capacity())) {
            return Quorva::BRX_ERR_REFER_TOO_BIG;
        }
    }
    if constexpr (Field::kind() == Kind::integer) {
        return printInteger(page, Field::label, load<Type>(at));
    } else if constexpr (Field::kind() == Kind::text) {
        return printText(page, Field::label, at, field.capacity());
    } else if constexpr (Field::kind() == Kind::bytes || Field::kind() == Kind::trailingBytes) {
        return printBytes(page, Field::label, at, count);
    } else {
        if (Field::mayBeAbsent() && count == 0) {
            return 0;
        }
        if (const int result = printHeading(page, Field::label); result != 0) {
            return result;
        }
        if constexpr (Field::kind() == Kind::structure) {
            return print<Type>(at, page.nested());
        } else {
            return print<Type>(at, static_cast<long long>(field.governor(record)), page.nested());
        }
    }
}

template <class Record, size_t... Index>
inline int printFields(const char* record, const Page& page, std::index_sequence<Index...>) {
    int result = 0;
    (void)(((result = printField(Field<Record, Index>{}, record, page)) == 0) && ...);
    return result;
}

template <class Record>
int print(const char* record, const Page& page) {
    return printFields<Record>(record, page, FieldIndices<Record>{});
}

/// Prints the member that `selector` names; one that names none prints nothing.
template <class Union>
int print(const char* value, long long selector, const Page& page) {
    return withMember<Union>(
        selector, [&](auto member) { return printField(member, value, page); }, [] { return 0; });
}

// --- Texts for log calls ------------------------------------------------------------------------

/// Ends what `buf` holds with a NUL that is not counted, in the last byte where it is full, and
/// returns it; "" for a buffer without memory.
const char* endText(Quorva::BrxWriteBuf& buf);

}  // namespace quorva_zrp::codec
