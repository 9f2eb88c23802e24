// Field tables: the rows of a type, the sizes that follow from them, and the checks that keep a
// wrong table from compiling.
#pragma once

#include <utility>

#include "protocol/codec/row.h"

namespace quorva_zrp::codec {

/// Bytes in front of the fields of a top-level encoding: the magic byte and the total length.
constexpr size_t envelopeSize = 5;
/// The published largest sizes count every tag at the most a 32-bit varint can take.
constexpr size_t publishedTagSize = 5;

// --- A list of rows -----------------------------------------------------------------------------

namespace list {

template <size_t Index, class Row>
struct Indexed {};

template <class Indices, class... Rows>
struct Indexer;
template <size_t... Indices, class... Rows>
struct Indexer<std::index_sequence<Indices...>, Rows...> : Indexed<Indices, Rows>... {};

template <size_t Index, class Row>
Row rowAt(const Indexed<Index, Row>&);

}  // namespace list

template <class... Row>
struct RowList {
    static constexpr size_t count = sizeof...(Row);

    /// The row at `Index`.
    template <size_t Index>
    using At =
        decltype(list::rowAt<Index>(list::Indexer<std::index_sequence_for<Row...>, Row...>{}));

    static constexpr bool numbersAscend() {
        constexpr uint32_t numbers[] = {Row::number()...};
        for (size_t i = 1; i < count; ++i) {
            if (numbers[i - 1] >= numbers[i]) {
                return false;
            }
        }
        return true;
    }

    /// Where the row of this number is; `count` or more where there is none.
    ZRP_INLINE static constexpr uint32_t indexOf(uint32_t number) {
        constexpr uint32_t numbers[] = {Row::number()...};
        if constexpr (numbers[count - 1] - numbers[0] == count - 1) {
            return number - numbers[0];
        } else {
            uint32_t index = 0;
            while (index < count && numbers[index] != number) {
                ++index;
            }
            return index;
        }
    }
};

// --- Going through the rows of a type -----------------------------------------------------------

/// The field at `Index` of a type's table, under a name that stays short in symbols and messages.
template <class Message, size_t Index>
struct Field : Fields<Message>::Rows::template At<Index> {
    /// Whether it is all that its holder has on the wire.
    static constexpr bool isMember = std::is_union_v<Message>;

    /// Bytes that are certain to be written behind the field once it is written: those of the
    /// integers that follow it directly.
    static constexpr size_t bytesAfter(bool varint) {
        if constexpr (!std::is_union_v<Message> && Index + 1 < Fields<Message>::Rows::count) {
            using Next = Field<Message, Index + 1>;
            if constexpr (Next::kind() == Kind::integer) {
                return Next::smallestSize(varint) + Next::bytesAfter(varint);
            }
        }
        return 0;
    }
};

/// The indices of a type's fields.
template <class Message>
using FieldIndices = std::make_index_sequence<Fields<Message>::Rows::count>;

namespace list {

template <class Message, size_t Index, class Found, class Missing>
ZRP_INLINE auto visitAt(Found& found, Missing& missing) {
    if constexpr (Index < Fields<Message>::Rows::count) {
        return found(Field<Message, Index>{});
    } else {
        return missing();
    }
}

}  // namespace list

/// The cases of a switch over the rows of a type, which has `mostRows` of them at most.
// clang-format off
#define ZRP_FOR_ROWS(CASE)                                          \
    CASE(0) CASE(1) CASE(2) CASE(3) CASE(4) CASE(5) CASE(6) CASE(7) \
    CASE(8) CASE(9) CASE(10) CASE(11) CASE(12) CASE(13) CASE(14) CASE(15)
// clang-format on
constexpr size_t mostRows = 16;

/// Calls `found` with the field that has this label, or `missing`. A switch, since compilers turn
/// it into a jump table or a search tree where they leave a fold over the labels as a chain of
/// compares.
template <class Message, class Labels, class Found, class Missing>
ZRP_INLINE auto withLabel(uint32_t label, Found found, Missing missing) {
    static_assert(Fields<Message>::Rows::count <= mostRows, "extend ZRP_FOR_ROWS");
    switch (label) {
#define ZRP_CASE(Index)                         \
    case Labels::template at<Message, Index>(): \
        return list::visitAt<Message, Index>(found, missing);
        ZRP_FOR_ROWS(ZRP_CASE)
#undef ZRP_CASE
        default:
            return missing();
    }
}

/// Fields by their numbers; past the last one numbers that no tag can carry.
struct NumberLabels {
    template <class Message, size_t Index>
    static constexpr uint32_t at() {
        if constexpr (Index < Fields<Message>::Rows::count) {
            return Field<Message, Index>::number();
        } else {
            return UINT32_MAX - Index;
        }
    }
};

/// Calls `found` with the field of this number, or `missing`.
template <class Message, class Found, class Missing>
ZRP_INLINE auto withField(uint32_t number, Found found, Missing missing) {
    return withLabel<Message, NumberLabels>(number, found, missing);
}

/// The same for a selector: negative ones and those past 32 bits name nothing.
template <class Union, class Found, class Missing>
ZRP_INLINE auto withMember(long long selector, Found found, Missing missing) {
    const uint64_t number = static_cast<uint64_t>(selector);
    return number <= UINT32_MAX ? withField<Union>(static_cast<uint32_t>(number), found, missing)
                                : missing();
}

// --- Checks -------------------------------------------------------------------------------------

namespace check {

/// Breaks the compilation unless `Record` has exactly `Members` members: a field that no row names
/// makes the binding fail, and the compiler says how many members there are. The return type is
/// deduced so that asking for it compiles the body.
template <size_t Members, class Record>
constexpr auto hasMembers(const Record& record) {
#define ZRP_BIND(Count, ...)                                 \
    if constexpr (Members == (Count)) {                      \
        [[maybe_unused]] const auto& [__VA_ARGS__] = record; \
    }
    ZRP_BIND(2, a, b)
    ZRP_BIND(3, a, b, c)
    ZRP_BIND(4, a, b, c, d)
    ZRP_BIND(5, a, b, c, d, e)
    ZRP_BIND(6, a, b, c, d, e, f)
    ZRP_BIND(7, a, b, c, d, e, f, g)
    ZRP_BIND(8, a, b, c, d, e, f, g, h)
    ZRP_BIND(9, a, b, c, d, e, f, g, h, i)
    ZRP_BIND(10, a, b, c, d, e, f, g, h, i, j)
    ZRP_BIND(11, a, b, c, d, e, f, g, h, i, j, k)
    ZRP_BIND(12, a, b, c, d, e, f, g, h, i, j, k, l)
    ZRP_BIND(13, a, b, c, d, e, f, g, h, i, j, k, l, m)
    ZRP_BIND(14, a, b, c, d, e, f, g, h, i, j, k, l, m, n)
    ZRP_BIND(15, a, b, c, d, e, f, g, h, i, j, k, l, m, n, o)
    ZRP_BIND(16, a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p)
#undef ZRP_BIND
    static_assert(Members >= 2 && Members <= 16, "extend the list above");
    return std::true_type{};
}

/// The alignment of a `Type` inside a record, which some platforms make less than outside.
template <class Type>
constexpr size_t memberAlignment() {
    struct Probe {
        char before;
        Type member;
    };
    return offsetof(Probe, member);
}

constexpr size_t alignUp(size_t offset, size_t alignment) {
    return (offset + alignment - 1) / alignment * alignment;
}

/// Whether the rows and then the presence word lie in the record one after another.
template <class Record, class... Row>
constexpr bool rowsFollowRecord() {
    size_t end = 0;
    bool follow = true;
    const auto place = [&]<class R>(R) {
        if constexpr (R::kind() != Kind::trailingBytes) {
            using Type = typename R::type;
            follow = follow && R::offset() == alignUp(end, memberAlignment<Type>());
            end = R::offset() + sizeof(Type);
        }
    };
    (place(Row{}), ...);
    return follow && offsetof(Record, presence) == alignUp(end, alignof(uint32_t));
}

template <class... Row>
constexpr bool presenceFollowsRows() {
    uint32_t expected = 1;
    bool follows = true;
    ((follows = follows && Row::presenceBit == expected, expected <<= 1), ...);
    return follows;
}

/// Whether bytes behind a record are named by its last row, where they lie, and by no other.
template <class Record, class Last, class... Row>
constexpr bool trailingRowIsLast() {
    const size_t trailing = (size_t{0} + ... + (Row::kind() == Kind::trailingBytes ? 1 : 0));
    return trailing == 0 || (trailing == 1 && Last::kind() == Kind::trailingBytes &&
                             Last::offset() == sizeof(Record) && Last::isGoverned());
}

/// Whether a row's type has bytes behind it: then it cannot lie in another record.
template <class Row>
constexpr bool holdsBytesBehind() {
    if constexpr (Row::kind() == Kind::structure) {
        return Fields<typename Row::type>::hasBytesBehind;
    } else {
        return false;
    }
}

/// Whether a governor can do its work: a count holds the capacity, a flag holds 1, a selector holds
/// every member's number.
template <class Row>
constexpr bool governorIsWideEnough() {
    if constexpr (Row::kind() == Kind::selectedUnion) {
        using Members = typename Fields<typename Row::type>::Rows;
        return Members::template At<Members::count - 1>::number() <= Row::Governor::largest;
    } else if constexpr (Row::isGoverned()) {
        // Any count of bytes behind a record is the caller's affair.
        return Row::kind() == Kind::trailingBytes ||
               largestCount(Row::kind(), Row::capacity()) <= Row::Governor::largest;
    } else {
        return true;
    }
}

/// Whether what governs `Row` is the row right before it or lies inside that: encoders and printers
/// meet the governor first and check it there.
template <class Previous, class Row>
constexpr bool governorComesBefore() {
    if constexpr (Row::isGoverned()) {
        return Row::Governor::offset >= Previous::offset() &&
               Row::Governor::offset + Row::Governor::size <=
                   Previous::offset() + sizeof(typename Previous::type);
    } else {
        return true;
    }
}

template <class Rows, size_t... Index>
constexpr bool governorsComeBefore(std::index_sequence<Index...>) {
    return !Rows::template At<0>::isGoverned() &&
           (governorComesBefore<typename Rows::template At<Index>,
                                typename Rows::template At<Index + 1>>() &&
            ...);
}

}  // namespace check

// --- Tables -------------------------------------------------------------------------------------

template <class Record, size_t MaxVarint, size_t MaxFixed, class... Row>
struct StructureTable {
    using Rows = RowList<Row...>;
    static constexpr size_t maxVarint = MaxVarint;
    static constexpr size_t maxFixed = MaxFixed;
    /// Whether bytes behind the record belong to it.
    static constexpr bool hasBytesBehind = ((Row::kind() == Kind::trailingBytes) || ...);

    /// The most bytes the fields take; `tagSize` as in Row::largestSize.
    static constexpr size_t largestBody(bool varint, size_t tagSize = 0) {
        return (size_t{0} + ... + Row::largestSize(varint, tagSize));
    }

    static constexpr bool check() {
        static_assert(Rows::numbersAscend(), "field numbers ascend");
        static_assert(check::rowsFollowRecord<Record, Row...>(),
                      "rows name the fields of the record in declaration order");
        static_assert(check::presenceFollowsRows<Row...>(),
                      "presence bits follow declaration order");
        static_assert(check::trailingRowIsLast<Record, typename Rows::template At<Rows::count - 1>,
                                               Row...>() &&
                          (!check::holdsBytesBehind<Row>() && ...),
                      "bytes behind a record are governed and end the outermost record");
        static_assert((check::governorIsWideEnough<Row>() && ...),
                      "a governor holds every value that it may need");
        static_assert(check::governorsComeBefore<Rows>(std::make_index_sequence<Rows::count - 1>{}),
                      "a governed field comes right after what governs it");
        static_assert(((Row::isNested || !Row::isMarkedHot) && ...),
                      "of the fields of a structure only nested values are hot");
        static_assert(envelopeSize + largestBody(true, publishedTagSize) == MaxVarint,
                      "the rows add up to the published largest size with varints");
        static_assert(envelopeSize + largestBody(false, publishedTagSize) == MaxFixed,
                      "the rows add up to the published largest size without varints");
        return decltype(check::hasMembers<Rows::count + 1>(std::declval<const Record&>()))::value;
    }
};

template <class Union, size_t MaxVarint, size_t MaxFixed, class... Row>
struct UnionTable {
    using Rows = RowList<Row...>;
    static constexpr size_t maxVarint = MaxVarint;
    static constexpr size_t maxFixed = MaxFixed;

    /// The most bytes the one field takes; `tagSize` as in Row::largestSize.
    static constexpr size_t largestBody(bool varint, size_t tagSize = 0) {
        size_t largest = 0;
        const auto consider = [&](size_t size) { largest = size > largest ? size : largest; };
        (consider(Row::largestSize(varint, tagSize)), ...);
        return largest;
    }

    static constexpr bool check() {
        static_assert(Rows::numbersAscend(), "selectors ascend, so each names one member");
        static_assert(((Row::offset() == 0) && ...), "members share one storage");
        static_assert((!check::holdsBytesBehind<Row>() && ...),
                      "bytes behind a record are governed and end the outermost record");
        static_assert(Rows::template At<0>::number() == 0 &&
                          std::is_same_v<typename Rows::template At<0>::type, int8_t>,
                      "selector 0 names a placeholder byte");
        static_assert(envelopeSize + largestBody(true, publishedTagSize) == MaxVarint,
                      "the members give the published largest size with varints");
        static_assert(envelopeSize + largestBody(false, publishedTagSize) == MaxFixed,
                      "the members give the published largest size without varints");
        return true;
    }
};

// --- Writing tables -----------------------------------------------------------------------------

/// The table of a structure: ZRP_STRUCTURE(Type, rows).
#define ZRP_STRUCTURE(Type, ...) ZRP_TABLE(StructureTable, Type, __VA_ARGS__)

/// The table of a union: ZRP_UNION(Type, members).
#define ZRP_UNION(Type, ...) ZRP_TABLE(UnionTable, Type, __VA_ARGS__)

#define ZRP_TABLE(TableKind, Type, ...)                                                  \
    struct Type##Rows {                                                                  \
        using Self = Type;                                                               \
        using Table = TableKind<Type, Type##_MAX_VARINT, Type##_MAX_FIXED, __VA_ARGS__>; \
    };                                                                                   \
    template <>                                                                          \
    struct Fields<Type> : Type##Rows::Table {};                                          \
    static_assert(Fields<Type>::check())

/// Gives a type straight-line code: ZRP_STEADY(Type, inside), for example.
#define ZRP_STEADY(Type, how) \
    template <>               \
    inline constexpr Steady steady<Type> = Steady::how

/// A field: its number, the two halves of its name (type prefix and accessor name), what governs
/// it, its default, whether it is hot.
#define ZRP_ROW(number, prefix, Name, ...)                                                         \
    Row<number, "[" #prefix #Name "]", offsetof(Self, prefix##Name), decltype(Self::prefix##Name), \
        Self::PRESENCE_##Name __VA_OPT__(, ) __VA_ARGS__>

/// Bytes behind the record, counted by a field of it.
#define ZRP_TRAILING_ROW(number, prefix, Name, governor)                            \
    Row<number, "[" #prefix #Name "]", offsetof(Self, prefix##Name), TrailingBytes, \
        Self::PRESENCE_##Name, governor>

/// A member of a union: its selector and the two halves of its name.
#define ZRP_MEMBER(selector, prefix, Name, ...)                        \
    Row<selector, "[" #prefix #Name "]", offsetof(Self, prefix##Name), \
        decltype(Self::prefix##Name), 0 __VA_OPT__(, ) __VA_ARGS__>

/// The field that governs a row; a path where it lies in a nested structure.
#define ZRP_BY(path) GovernedBy<offsetof(Self, path), decltype(Self::path)>

}  // namespace quorva_zrp::codec
