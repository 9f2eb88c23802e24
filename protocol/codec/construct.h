// Initialisation: every field at its default, the presence word cleared.
#pragma once

#include "protocol/codec/table.h"

namespace quorva_zrp::codec {

template <class Record>
void construct(char* record);
template <class Union>
void construct(char* value, long long selector);

template <class Field>
inline void constructField(Field field, char* record) {
    using Type = typename Field::type;
    char* const at = record + field.offset();
    if constexpr (Field::kind() == Kind::integer) {
        store(at, static_cast<Type>(Field::Default::value));
    } else if constexpr (Field::kind() == Kind::text) {
        if constexpr (std::is_same_v<typename Field::Default, DefaultValue<0>>) {
            at[0] = '\0';  // the rest of the text stays as it was
        } else {
            memset(at, 0, sizeof(Type));
            memcpy(at, Field::Default::value, Field::Default::size);
        }
    } else if constexpr (Field::kind() == Kind::bytes) {
        memset(at, 0, sizeof(Type));
    } else if constexpr (Field::kind() == Kind::structure) {
        construct<Type>(at);
    } else if constexpr (Field::kind() == Kind::selectedUnion) {
        construct<Type>(at, static_cast<long long>(field.governor(record)));
    }
}

template <class Record, size_t... Index>
inline void constructFields(char* record, std::index_sequence<Index...>) {
    (constructField(Field<Record, Index>{}, record), ...);
    store(record + offsetof(Record, presence), uint32_t{0});
}

template <class Record>
void construct(char* record) {
    constructFields<Record>(record, FieldIndices<Record>{});
}

/// Prepares the member that `selector` names; one that names none changes nothing.
template <class Union>
void construct(char* value, long long selector) {
    withMember<Union>(
        selector, [&](auto member) { constructField(member, value); }, [] {});
}

}  // namespace quorva_zrp::codec
