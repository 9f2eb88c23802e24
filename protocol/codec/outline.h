// Outlines: the tags and lengths of a frame whose unions all choose hot members, where integers are
// varints. What is inside it ends where its holder does, or as far before that as the fields behind
// take, so that all lengths follow from that of the frame but for the base header's, the only one
// with something behind it that is not always as long. Tags and lengths are compared before
// anything is stored. Leaves, structures that hold no other one, are then decoded as everywhere,
// whatever is in them; all else is loaded from where it must be, without bounds checks and without
// account of what was met.
#pragma once

#include <algorithm>

#include "protocol/codec/decode.h"
#include "protocol/codec/fixed_run.h"
#include "protocol/codec/hot.h"

namespace quorva_zrp::codec {

/// What is known of fields one after another before they are read.
struct Extent {
    size_t least;     ///< bytes that they take at least, with empty leaves and the longest member
    bool isExact;     ///< they always take these
    bool isOutlined;  ///< where each of them lies can be told from their tags and lengths
};

/// Fields one after another, up to the end of their holder.
template <class... Row>
struct Outline;

template <>
struct Outline<> {
    static constexpr Extent extent() { return {0, true, true}; }

    ZRP_INLINE static bool isAt(const char* at, const char* until) { return at == until; }
    ZRP_INLINE static bool read(const char*, const char*, const char*, char*) { return true; }
};

namespace outline {

template <class Record, size_t... Index>
Outline<Field<Record, Index>...> ofFields(std::index_sequence<Index...>);

template <class Record, size_t... Index>
constexpr bool isFlat(std::index_sequence<Index...>) {
    return (!Field<Record, Index>::isNested && ...);
}

}  // namespace outline

/// All fields of a structure.
template <class Record>
using OutlineOf = decltype(outline::ofFields<Record>(FieldIndices<Record>{}));

// --- Nested values ------------------------------------------------------------------------------

/// The inside of a structure.
template <class Row, Kind = Row::kind()>
struct Inside {
    using Record = typename Row::type;
    using Whole = OutlineOf<Record>;

    /// Whether it holds no other structure: then nothing in it is compared, and it is decoded as
    /// everywhere.
    static constexpr bool isLeaf = outline::isFlat<Record>(FieldIndices<Record>{});

    static constexpr Extent extent() {
        if constexpr (Row::isGoverned()) {
            return {0, false, false};
        } else if constexpr (isLeaf) {
            return {0, false, true};
        } else {
            return Whole::extent();
        }
    }

    ZRP_INLINE static bool isAt(const char* at, const char* until) {
        if constexpr (isLeaf) {
            return true;
        } else {
            return Whole::isAt(at, until);
        }
    }

    ZRP_INLINE static bool read(const char* at, const char* until, const char* lastVarint,
                                char* holder) {
        char* const record = holder + Row::offset();
        if constexpr (isLeaf) {
            PredictingSource<true, true> source(at, until - 1, lastVarint);
            return decodeNestedTo<Row>(until - 1, record, source) != lost;
        } else {
            store(record + offsetof(Record, presence), run::allPresent<Record>);
            return Whole::read(at, until, lastVarint, record);
        }
    }
};

/// The inside of a union: one of its hot members.
template <class Row>
struct Inside<Row, Kind::selectedUnion> {
    using Union = typename Row::type;
    template <size_t Index>
    using Member = Field<Union, Index>;

    static constexpr bool isLeaf = false;

    static constexpr Extent extent() { return extentOf(FieldIndices<Union>{}); }

    template <size_t Index = 0>
    ZRP_INLINE static bool isAt(const char* at, const char* until) {
        if constexpr (Index == Fields<Union>::Rows::count) {
            return false;
        } else if constexpr (Member<Index>::isHot) {
            return Outline<Member<Index>>::isAt(at, until) || isAt<Index + 1>(at, until);
        } else {
            return isAt<Index + 1>(at, until);
        }
    }

    template <size_t Index = 0>
    ZRP_INLINE static bool read(const char* at, const char* until, const char* lastVarint,
                                char* holder) {
        if constexpr (Index == hot::lastOf<Union>) {
            return readMember<Index>(at, until, lastVarint, holder);  // it is one of them
        } else {
            if constexpr (Member<Index>::isHot) {
                if (Outline<Member<Index>>::Tag::template isAt<1>(at)) {
                    return readMember<Index>(at, until, lastVarint, holder);
                }
            }
            return read<Index + 1>(at, until, lastVarint, holder);
        }
    }

  private:
    template <size_t Index>
    ZRP_INLINE static bool readMember(const char* at, const char* until, const char* lastVarint,
                                      char* holder) {
        if (!Outline<Member<Index>>::read(at, until, lastVarint, holder + Row::offset())) {
            return false;
        }
        // Not before: a member that could not be read does not name itself.
        Row::setGovernor(holder, Member<Index>::number());
        return true;
    }

    template <size_t... Index>
    static constexpr Extent extentOf(std::index_sequence<Index...>) {
        Extent any{0, true, hot::lastOf<Union> != 0};
        const auto add = [&any]<class One>(One) {
            if constexpr (One::isHot) {
                constexpr Extent one = Outline<One>::extent();
                any.isExact =
                    any.isExact && one.isExact && (any.least == 0 || any.least == one.least);
                any.isOutlined = any.isOutlined && one.isOutlined;
                any.least = std::max(any.least, one.least);  // any of them is all there then
            }
        };
        (add(Member<Index>{}), ...);
        return any;
    }
};

// --- Fields -------------------------------------------------------------------------------------

template <class Row, class... Rest>
struct Outline<Row, Rest...> {
    using Behind = Outline<Rest...>;
    using Tag = wire::TagBytes<Row::tag(true)>;

    static constexpr Extent extent() {
        constexpr Extent behind = Behind::extent();
        if constexpr (Row::isNested) {
            constexpr Extent inside = Inside<Row>::extent();
            return {
                head + inside.least + behind.least, inside.isExact && behind.isExact,
                inside.isOutlined && behind.isOutlined && (Inside<Row>::isLeaf || behind.isExact)};
        } else {
            return {head + 1 + behind.least, behind.isExact, isByte() && behind.isOutlined};
        }
    }

    /// Whether these fields are all that is from `at` to `until`, as far as can be told without
    /// their values. At least as many bytes as they take at least are there.
    ZRP_INLINE static bool isAt(const char* at, const char* until) {
        const char* const value = at + head;
        if constexpr (!Row::isNested) {
            return Tag::template isAt<1>(at) && Behind::isAt(value + 1, until);
        } else if constexpr (Behind::extent().isExact) {
            const char* const end = until - Behind::extent().least;
            // What is behind comes first: the body tells soonest which frame it is.
            return Behind::isAt(end, until) && Tag::template isAt<lengthSize>(at) &&
                   lengthAt(at) == static_cast<size_t>(end - value) &&
                   Inside<Row>::isAt(value, end);
        } else {
            const size_t most = static_cast<size_t>(until - value) - Behind::extent().least;
            return Tag::template isAt<lengthSize>(at) && lengthAt(at) <= most &&
                   Behind::isAt(value + lengthAt(at), until);
        }
    }

    /// Reads into `record` what `isAt` found; returns whether the leaves could be read.
    ZRP_INLINE static bool read(const char* at, const char* until, const char* lastVarint,
                                char* record) {
        const char* const value = at + head;
        if constexpr (!Row::isNested) {
            record[Row::offset()] = *value;
            return Behind::read(value + 1, until, lastVarint, record);
        } else {
            const char* const end =
                Behind::extent().isExact ? until - Behind::extent().least : value + lengthAt(at);
            return Inside<Row>::read(value, end, lastVarint, record) &&
                   Behind::read(end, until, lastVarint, record);
        }
    }

  private:
    /// Bytes in front of the value.
    static constexpr size_t head = Tag::size + (Row::isNested ? lengthSize : 0);

    static constexpr bool isByte() {
        if constexpr (Row::kind() == Kind::integer) {
            return sizeof(typename Row::type) == 1;
        } else {
            return false;
        }
    }

    ZRP_INLINE static uint32_t lengthAt(const char* at) {
        return wire::loadHighFirst<uint32_t>(at + Tag::size);
    }
};

// --- Records ------------------------------------------------------------------------------------

/// Whether records of a type have an outline: those that have code of one piece for what chooses
/// hot members. Others, heads alone for one, have too little besides: a message that differs late
/// would be read more than three times.
template <class Record>
constexpr bool hasOutline() {
    if constexpr (isOnePiece<Record> && hotChoices<Record> != 0) {
        return OutlineOf<Record>::extent().isOutlined;
    } else {
        return false;
    }
}

/// Whether what is from `at` to `until` has the outline of such a record.
template <class Record>
ZRP_INLINE bool isOutlineAt(const char* at, const char* until) {
    using Whole = OutlineOf<Record>;
    return until - at >= static_cast<ptrdiff_t>(Whole::extent().least) && Whole::isAt(at, until);
}

/// Reads the fields of a message from `at` to the byte at `last`, by the outline if they have it;
/// returns whether that was possible. `IsInOrder` is for `decode`.
template <class Record, bool Varint, bool IsInOrder>
ZRP_INLINE bool decodeMessage(const char* at, const char* last, const char* lastVarint,
                              char* record) {
    if constexpr (Varint && hasOutline<Record>()) {
        if (isOutlineAt<Record>(at, last + 1)) {
            store(record + offsetof(Record, presence), run::allPresent<Record>);
            return OutlineOf<Record>::read(at, last + 1, lastVarint, record);
        }
    }
    return decode<Record, Varint, IsInOrder>(at, last, lastVarint, record);
}

}  // namespace quorva_zrp::codec
