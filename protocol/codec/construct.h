// Initialisation: every field at its default, the presence word cleared.
#pragma once

#include "protocol/codec/table.h"

namespace quorva_zrp::codec {

template <class Record>
void constructStructure(Record& record);
template <class Union>
void constructMember(Union& value, long long selector);

template <class Row, class Record>
inline void constructField(Record& record) {
    using Type = typename Row::type;
    char* const at = reinterpret_cast<char*>(&record) + Row::offset;
    if constexpr (Row::kind == Kind::integer) {
        storeAt(record, Row::offset, static_cast<Type>(Row::Default::value));
    } else if constexpr (Row::kind == Kind::text) {
        if constexpr (std::is_same_v<typename Row::Default, DefaultValue<0>>) {
            at[0] = '\0';  // the rest of the text stays as it was
        } else {
            static_assert(Row::Default::size <= sizeof(Type), "the default fits its field");
            memset(at, 0, sizeof(Type));
            memcpy(at, Row::Default::value, Row::Default::size);
        }
    } else if constexpr (Row::kind == Kind::bytes) {
        memset(at, 0, sizeof(Type));
    } else if constexpr (Row::kind == Kind::structure) {
        constructStructure(memberAt<Type>(record, Row::offset));
    } else if constexpr (Row::kind == Kind::selectedUnion) {
        constructMember(memberAt<Type>(record, Row::offset), Row::Governor::load(record));
    }
}

template <class Record, size_t... Index>
inline void constructFields(Record& record, std::index_sequence<Index...>) {
    (constructField<Field<Record, Index>>(record), ...);
    record.presence = 0;
}

template <class Record>
void constructStructure(Record& record) {
    constructFields(record, FieldIndices<Record>{});
}

/// Prepares the member that `selector` names; one that names none changes nothing.
template <class Union>
void constructMember(Union& value, long long selector) {
    withMember<Union>(
        selector, [&]<class Row>(Row) { constructField<Row>(value); }, [] {});
}

}  // namespace quorva_zrp::codec
