// Runs of fields that take the same bytes whatever they hold: integers of fixed width, and
// structures of nothing else; unions, too, once it is settled which of their members they have.
// Where everything in a run lies is known when this is compiled, so its tags and lengths are
// written as a few wide constants, with the values over the gaps, and all compared before a value
// is read.
#pragma once

#include <algorithm>
#include <array>

#include "protocol/codec/hot.h"
#include "protocol/codec/table.h"
#include "protocol/codec/wire.h"

namespace quorva_zrp::codec {

/// The choice of a run that holds no union.
constexpr size_t noChoice = SIZE_MAX;

namespace run {

template <class Message, size_t Choice, size_t... Index>
constexpr bool isAllFixed(std::index_sequence<Index...>);

/// Whether a field always takes the same bytes where integers have fixed widths, a union if it has
/// the member that `Choice` names.
template <class Row, size_t Choice = noChoice>
constexpr bool isFixed() {
    using Type = typename Row::type;
    if constexpr (Row::kind() == Kind::structure) {
        return !Row::isGoverned() && isAllFixed<Type, Choice>(FieldIndices<Type>{});
    } else if constexpr (Row::kind() == Kind::selectedUnion && Choice != noChoice) {
        using Member = HotMember<Type, Choice>;
        return Member::isHot && isFixed<Member, Choice>();
    } else {
        return Row::kind() == Kind::integer;
    }
}

template <class Message, size_t Choice, size_t... Index>
constexpr bool isAllFixed(std::index_sequence<Index...>) {
    return (isFixed<Field<Message, Index>, Choice>() && ...);
}

/// How many such fields there are from the one at `Index` on, one after another; of a union one.
template <class Message, size_t Index>
constexpr size_t lengthFrom() {
    if constexpr (Index < Fields<Message>::Rows::count) {
        if constexpr (isFixed<Field<Message, Index>>()) {
            return std::is_union_v<Message> ? 1 : 1 + lengthFrom<Message, Index + 1>();
        }
    }
    return 0;
}

/// The presence bits of a record whose fields were all met.
template <class Record>
constexpr uint32_t allPresent = (uint32_t{1} << Fields<Record>::Rows::count) - 1;

/// Whether a structure is a run that steady traffic passes.
template <class Row>
constexpr bool isHotStructure() {
    return Row::isHot && Row::isNested && isFixed<Row>();
}

/// Whether the fields from the one at `Index` on are written as a run. For a single integer the
/// usual way is as good; a single structure stays a call unless it is hot.
template <class Message, size_t Index>
constexpr bool isRunFrom() {
    constexpr size_t length = lengthFrom<Message, Index>();
    if constexpr (length == 1) {
        return isHotStructure<Field<Message, Index>>();
    } else {
        return length != 0;
    }
}

/// Whether the field at `Index` belongs to the run of the one before it.
template <class Message, size_t Index>
constexpr bool goesOnAt() {
    if constexpr (Index == 0 || std::is_union_v<Message>) {
        return false;
    } else {
        return isFixed<Field<Message, Index - 1>>() && isFixed<Field<Message, Index>>();
    }
}

/// Calls `take(row, at, offset)` for a field, whose encoding begins at `at` and which lies at
/// `offset` of its record, and for those nested in it, until one returns false. Moves `at` on.
template <size_t Choice, class Row, class Take>
ZRP_INLINE constexpr bool visit(Row row, size_t& at, size_t record, Take& take);

template <size_t Choice, class Record, class Take, size_t... Index>
ZRP_INLINE constexpr bool visitAll(size_t& at, size_t record, Take& take,
                                   std::index_sequence<Index...>) {
    return (visit<Choice>(Field<Record, Index>{}, at, record, take) && ...);
}

template <size_t Choice, class Row, class Take>
ZRP_INLINE constexpr bool visit(Row row, size_t& at, size_t record, Take& take) {
    using Type = typename Row::type;
    const size_t offset = record + Row::offset();
    if (!take(row, at, offset)) {
        return false;
    }
    at += wire::TagBytes<Row::tag(false)>::size + (Row::isNested ? lengthSize : sizeof(Type));
    if constexpr (Row::kind() == Kind::structure) {
        return visitAll<Choice, Type>(at, offset, take, FieldIndices<Type>{});
    } else if constexpr (Row::kind() == Kind::selectedUnion) {
        return visit<Choice>(HotMember<Type, Choice>{}, at, offset, take);
    } else {
        return true;
    }
}

/// The bytes that these fields take.
template <size_t Choice, class... Row>
constexpr size_t sizeOf() {
    size_t at = 0;
    auto all = []<class R>(R, size_t, size_t) { return true; };
    (void)(visit<Choice>(Row{}, at, 0, all) && ...);
    return at;
}

}  // namespace run

/// Fields one after another that always take the same bytes, unions with the members that `Choice`
/// names.
template <size_t Choice, class... Row>
struct FixedRun {
    static_assert((run::isFixed<Row, Choice>() && ...), "fields that always take the same bytes");
    static constexpr size_t size = run::sizeOf<Choice, Row...>();

    /// Writes the fields of `record`.
    ZRP_INLINE static void write(const char* record, char* to) {
        writeConstants(to, std::make_index_sequence<(size + wordSize - 1) / wordSize>{});
        visit([=]<class R>(R, size_t at, size_t offset) ZRP_INLINE_LAMBDA {
            if constexpr (R::kind() == Kind::integer) {
                using Integer = std::make_unsigned_t<typename R::type>;
                wire::storeHighFirst(to + at + Tag<R>::size, load<Integer>(record + offset));
            }
            return true;
        });
    }

    /// Whether the bytes at `from` are such fields.
    ZRP_INLINE static bool isAt(const char* from) {
        return visit([=]<class R>(R, size_t at, size_t) ZRP_INLINE_LAMBDA {
            if constexpr (R::kind() == Kind::integer) {
                return Tag<R>::template isAt<sizeof(typename R::type)>(from + at);
            } else {
                return Tag<R>::template isAt<lengthSize>(from + at) &&
                       wire::loadHighFirst<uint32_t>(from + at + Tag<R>::size) == lengthOf<R>;
            }
        });
    }

    /// Reads the fields into `record`, the presence bits of the structures among them, and the
    /// selectors of the unions.
    ZRP_INLINE static void read(const char* from, char* record) {
        visit([=]<class R>(R, size_t at, size_t offset) ZRP_INLINE_LAMBDA {
            using Type = typename R::type;
            if constexpr (R::kind() == Kind::integer) {
                using Integer = std::make_unsigned_t<Type>;
                store(record + offset, wire::loadHighFirst<Integer>(from + at + Tag<R>::size));
            } else if constexpr (R::kind() == Kind::selectedUnion) {
                R::setGovernor(record + offset - R::offset(), HotMember<Type, Choice>::number());
            } else {
                store(record + offset + offsetof(Type, presence), run::allPresent<Type>);
            }
            return true;
        });
    }

  private:
    static constexpr size_t wordSize = sizeof(uint64_t);

    template <class R>
    using Tag = wire::TagBytes<R::tag(false)>;

    template <class Take>
    ZRP_INLINE static constexpr bool visit(Take take) {
        size_t at = 0;
        return (run::visit<Choice>(Row{}, at, 0, take) && ...);
    }

    /// The length of a nested value.
    template <class R>
    static constexpr uint32_t lengthOf = static_cast<uint32_t>(run::sizeOf<Choice, R>() -
                                                               Tag<R>::size - lengthSize);

    /// Writes tags and lengths as constants, the last word over the one before: copied from memory,
    /// it would be a symbol that the loader has to care for.
    template <size_t... Word>
    ZRP_INLINE static void writeConstants(char* to, std::index_sequence<Word...>) {
        constexpr size_t most = size < wordSize ? size : wordSize;
        (writeConstantsAt<std::min(Word * wordSize, size - most), most>(to), ...);
    }
    template <size_t First, size_t Count>
    ZRP_INLINE static void writeConstantsAt(char* to) {
        constexpr std::array<char, size> constants = makeConstants();
        constexpr uint64_t packed = [=] {
            uint64_t bytes = 0;
            for (size_t i = 0; i < Count; ++i) {
                bytes |= uint64_t{static_cast<uint8_t>(constants[First + i])} << (8 * i);
            }
            return bytes;
        }();
        wire::storeLowFirst<Count>(to + First, packed);
    }

    /// The encoding with zeros for the integers.
    static constexpr std::array<char, size> makeConstants() {
        std::array<char, size> bytes{};
        visit([&]<class R>(R, size_t at, size_t) {
            for (size_t i = 0; i < Tag<R>::size; ++i) {
                bytes[at + i] = static_cast<char>(Tag<R>::packed() >> (8 * i));
            }
            if constexpr (R::isNested) {
                for (size_t i = 0; i < lengthSize; ++i) {
                    bytes[at + Tag<R>::size + i] =
                        static_cast<char>(lengthOf<R> >> (8 * (lengthSize - 1 - i)));
                }
            }
            return true;
        });
        return bytes;
    }
};

namespace run {

template <class Message, size_t Choice, size_t First, size_t... Index>
FixedRun<Choice, Field<Message, First + Index>...> fixedRun(std::index_sequence<Index...>);

}  // namespace run

/// The run of a type's fields from the one at `Index` on.
template <class Message, size_t Index>
using FixedRunAt = decltype(run::fixedRun<Message, noChoice, Index>(
    std::make_index_sequence<run::lengthFrom<Message, Index>()>{}));

/// All fields of a type as one run.
template <class Message, size_t Choice>
using WholeRun = decltype(run::fixedRun<Message, Choice, 0>(FieldIndices<Message>{}));

/// Whether all fields of a type are one run, unions with the members that `Choice` names.
template <class Message, size_t Choice = noChoice>
constexpr bool isWholeRun = run::isAllFixed<Message, Choice>(FieldIndices<Message>{});

}  // namespace quorva_zrp::codec
