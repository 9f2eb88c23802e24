// What is marked Hot among the members of unions. A record whose unions all choose such members is
// what steady traffic sends: it is written by a piece of code of its own, without a switch and
// without saving registers around calls of what it does not hold; and where integers have fixed
// widths, all that is not a value in its encoding is known when this is compiled, so that it is
// read as one run, with varints by its outline.
#pragma once

#include <algorithm>

#include "protocol/codec/table.h"

namespace quorva_zrp::codec {

namespace hot {

template <class Field>
ZRP_INLINE bool isChosenAt(const char* record);

template <class Record, size_t... Index>
ZRP_INLINE bool isChosenIn(const char* record, std::index_sequence<Index...>) {
    return (isChosenAt<Field<Record, Index>>(record) && ...);
}

template <class Member>
ZRP_INLINE bool isNamed(const char* value, uint64_t selector) {
    if constexpr (Member::isHot) {
        return selector == Member::number() && isChosenAt<Member>(value);
    } else {
        return false;
    }
}

template <class Union, size_t... Index>
ZRP_INLINE bool isAnyNamed(const char* value, uint64_t selector, std::index_sequence<Index...>) {
    return (isNamed<Field<Union, Index>>(value, selector) || ...);
}

template <class Field>
ZRP_INLINE bool isChosenAt(const char* record) {
    using Type = typename Field::type;
    static_assert(Field::kind() != Kind::structure || !Field::isGoverned(),
                  "a structure that is left out may hold selectors that nobody set");
    const char* const value = record + Field::offset();
    if constexpr (Field::kind() == Kind::structure) {
        return isChosenIn<Type>(value, FieldIndices<Type>{});
    } else if constexpr (Field::kind() == Kind::selectedUnion) {
        return isAnyNamed<Type>(value, Field::governor(record), FieldIndices<Type>{});
    } else {
        return true;
    }
}

/// The index of the hot member of a union that `skip` others precede, or of the last one, or 0.
template <class Union, size_t... Index>
constexpr size_t indexAfter(size_t skip, std::index_sequence<Index...>) {
    size_t index = 0;
    size_t before = 0;
    ((index = Field<Union, Index>::isHot && before++ <= skip ? Index : index), ...);
    return index;
}

template <class Union>
constexpr size_t lastOf = indexAfter<Union>(SIZE_MAX, FieldIndices<Union>{});

template <class Type, size_t... Index>
constexpr size_t mostIn(std::index_sequence<Index...>);

template <class Field>
constexpr size_t mostAt() {
    if constexpr (Field::isNested && (Field::isHot || !Field::isMember)) {
        return mostIn<typename Field::type>(FieldIndices<typename Field::type>{});
    } else {
        return 0;
    }
}

template <class Type, size_t... Index>
constexpr size_t mostIn(std::index_sequence<Index...>) {
    const size_t here = std::is_union_v<Type> ? (size_t{0} + ... + Field<Type, Index>::isHot) : 0;
    return std::max({here, mostAt<Field<Type, Index>>()...});
}

}  // namespace hot

/// Of the hot members of a union the one that `Choice` others precede, or the last one; of a union
/// without any some member.
template <class Union, size_t Choice>
using HotMember = Field<Union, hot::indexAfter<Union>(Choice, FieldIndices<Union>{})>;

/// The most hot members that a union in a record has, at any depth. With that many choices each of
/// them comes up; not in every combination, were there several such unions.
template <class Record>
constexpr size_t hotChoices = hot::mostIn<Record>(FieldIndices<Record>{});

/// Whether the unions in a record, and in what they choose, all choose a member that is hot.
template <class Record>
ZRP_INLINE bool choosesHot(const char* record) {
    return hot::isChosenIn<Record>(record, FieldIndices<Record>{});
}

/// Calls `found` with the hot member, from the one at `Index` on, that `selector` names: there is
/// one, so the last is not asked.
template <class Union, size_t Index = 0, class Found>
ZRP_INLINE auto withHotMember(long long selector, Found found) {
    using Member = Field<Union, Index>;
    if constexpr (Index == hot::lastOf<Union>) {
        return found(Member{});
    } else if constexpr (Member::isHot) {
        return selector == Member::number() ? found(Member{})
                                            : withHotMember<Union, Index + 1>(selector, found);
    } else {
        return withHotMember<Union, Index + 1>(selector, found);
    }
}

}  // namespace quorva_zrp::codec
