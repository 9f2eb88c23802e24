// What a field table is made of: rows, the facts that follow from a row, and what governs a field.
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include <type_traits>

#include "protocol/quorva_zrp.h"

/// In front of the engine's templates over rows: they become straight-line code only when each row
/// is inlined, which compilers do not do by themselves for long rows of fields.
#if defined(__GNUC__)
#define ZRP_INLINE        [[gnu::always_inline]] inline
#define ZRP_INLINE_LAMBDA __attribute__((always_inline))
/// In front of the ways out that are seldom taken: inlined, they make the usual way save registers.
#define ZRP_SELDOM [[gnu::noinline, gnu::cold]]
#else
#define ZRP_INLINE inline
#define ZRP_INLINE_LAMBDA
#define ZRP_SELDOM
#endif
/// In front of templates that several files instantiate: not inlined, and not specialised either,
/// which would leave each file its own copy.
#if defined(__clang__)
#define ZRP_APART [[gnu::noinline]]
#elif defined(__GNUC__)
#define ZRP_APART [[gnu::noinline, gnu::noclone]]
#else
#define ZRP_APART
#endif

namespace quorva_zrp::codec {

/// The table of a message type: a StructureTable or UnionTable, given in protocol/fields.
template <class Message>
struct Fields;

/// How much straight-line code a type gets. Without, it shares the step-by-step code, which takes
/// several times as long and costs no code per type. Given in protocol/fields.
enum class Steady : uint8_t {
    no,        ///< none: it is seldom sent
    once,      ///< as `inside`, but none where code is to be small: it is sent once a connection
    inside,    ///< as part of another type: steady traffic holds it
    alone,     ///< for its own operations, too: steady traffic consists of it
    onePiece,  ///< as `alone`, with code apart for what chooses nothing but what is hot
};
template <class Message>
constexpr Steady steady = Steady::no;

/// Whether the compiler was told to prefer small code.
#if defined(__OPTIMIZE_SIZE__)
constexpr bool keepsCodeSmall = true;
#else
constexpr bool keepsCodeSmall = false;
#endif

#if defined(QUORVA_ZRP_COMPACT)
constexpr bool isCompact = true;
#else
constexpr bool isCompact = false;
#endif

/// Whether straight-line code goes on into a nested value of this type.
template <class Message>
constexpr bool isStraightInside = !isCompact &&
                                  steady<Message> > (keepsCodeSmall ? Steady::once : Steady::no);

/// Whether the operations of this type use straight-line code.
template <class Message>
constexpr bool isStraightAlone = !isCompact && steady<Message> >= Steady::alone;

/// Whether records of this type that choose nothing but what is hot have code of their own.
template <class Message>
constexpr bool isOnePiece = !isCompact && !keepsCodeSmall && steady<Message> == Steady::onePiece;

// --- Kinds --------------------------------------------------------------------------------------

/// Stands in a row for bytes that lie behind the record in the caller's memory.
struct TrailingBytes;

enum class Kind : uint8_t { integer, text, bytes, trailingBytes, structure, selectedUnion };

/// The kind of a field follows from its C++ type.
template <class Type>
constexpr Kind kindOf() {
    if constexpr (std::is_same_v<Type, TrailingBytes>) {
        return Kind::trailingBytes;
    } else if constexpr (std::is_integral_v<Type>) {
        constexpr bool signedOnlyFrom32 = std::is_unsigned_v<Type> || sizeof(Type) != 2;
        static_assert(signedOnlyFrom32 && !std::is_same_v<Type, bool>,
                      "the wire has no signed 16-bit integers and no booleans");
        return Kind::integer;
    } else if constexpr (std::is_union_v<Type>) {
        return Kind::selectedUnion;
    } else if constexpr (std::is_class_v<Type>) {
        return Kind::structure;
    } else {
        using Element = std::remove_extent_t<Type>;
        static_assert(std::is_same_v<Element, char> || std::is_same_v<Element, uint8_t>,
                      "a field is an integer, a text, a byte array, a structure or a union");
        return std::is_same_v<Element, char> ? Kind::text : Kind::bytes;
    }
}

/// Wire type ids: how to step over a value without knowing its field.
enum WireType : uint32_t {
    wireVarint = 0,
    wire1Byte = 1,
    wire2Bytes = 2,
    wire4Bytes = 3,
    wire8Bytes = 4,
    wireDelimited = 5
};

/// Bytes of a length in front of a delimited value.
constexpr size_t lengthSize = 4;

template <class Type>
constexpr uint32_t wireTypeOf(bool varint) {
    if constexpr (kindOf<Type>() != Kind::integer) {
        return wireDelimited;
    } else if constexpr (sizeof(Type) == 1) {
        return wire1Byte;
    } else if (varint) {
        return wireVarint;
    } else {
        return sizeof(Type) == 2 ? wire2Bytes : sizeof(Type) == 4 ? wire4Bytes : wire8Bytes;
    }
}

constexpr uint32_t makeTag(uint32_t number, uint32_t wireType) {
    return number * 16 + wireType;
}

/// Bytes that `value` takes as a varint.
constexpr size_t varintSize(uint64_t value) {
    size_t size = 1;
    while (value >= 0x80) {
        value >>= 7;
        ++size;
    }
    return size;
}

/// The most bytes an integer of `size` bytes takes on the wire: a varint carries 7 bits a byte.
constexpr size_t largestInteger(size_t size, bool varint) {
    return varint && size > 1 ? (size * 8 + 6) / 7 : size;
}

// --- Access -------------------------------------------------------------------------------------
// Records are read and written as bytes, so that a union member other than the one last written can
// be reached whatever a selector says.

template <class Integer>
inline Integer load(const char* from) {
    Integer value;
    memcpy(&value, from, sizeof(value));
    return value;
}

template <class Integer>
inline void store(char* to, Integer value) {
    memcpy(to, &value, sizeof(value));
}

template <class Record>
inline const char* bytesOf(const Record& record) {
    return reinterpret_cast<const char*>(&record);
}

template <class Record>
inline char* bytesOf(Record& record) {
    return reinterpret_cast<char*>(&record);
}

// --- Attributes of a row ------------------------------------------------------------------------

/// The field that governs this one: the count of a byte array, the selector of a union, the 0/1
/// flag of an optional structure. It lies at `Offset` of the record, possibly inside a nested one.
template <size_t Offset, class Integer>
struct GovernedBy {
    static_assert(std::is_unsigned_v<Integer>, "counts, selectors and flags are unsigned");
    static constexpr size_t offset = Offset;
    static constexpr size_t size = sizeof(Integer);
    static constexpr uint64_t largest = static_cast<Integer>(~Integer(0));

    static uint64_t get(const char* record) { return load<Integer>(record + Offset); }
    /// Deliberate: a selector that is wider than its field is cut to it.
    static void set(char* record, uint64_t value) {
        store(record + Offset, static_cast<Integer>(value));
    }
};

/// Stands where nothing governs a field.
struct Ungoverned {
    static constexpr size_t offset = 0;
    static constexpr size_t size = 0;
    static constexpr uint64_t largest = 0;

    // unreachable: callers ask isGoverned() first
    static uint64_t get(const char*) { return 0; }
    // unreachable: callers ask isGoverned() first
    static void set(char*, uint64_t) {}
};

/// What `construct()` gives an integer instead of 0.
template <uint64_t Value>
struct DefaultValue {
    static constexpr uint64_t value = Value;
    static constexpr const char* text = "";
    static constexpr size_t textSize = 0;

    template <class Type>
    static constexpr bool suits() {
        if constexpr (std::is_integral_v<Type>) {
            return static_cast<uint64_t>(static_cast<Type>(Value)) == Value;
        } else {
            return Value == 0;
        }
    }
};

/// Marks a nested value that steady traffic passes: its code becomes part of its holder's straight
/// line, which spares a call per level and costs a copy of the code per holder. Among the members
/// of a union it marks those that steady traffic chooses. Not where the library is compiled to be
/// small.
///
/// What has code for its own operations anyway stays a call, unless it is read or written as part
/// of a run; in encoders also in the code apart of `Steady::onePiece`. Everything does in code that
/// only unusual orders of fields come to.
struct Hot {};

/// A text as a template argument.
template <size_t Size>
struct Text {
    char characters[Size]{};
    constexpr Text(const char (&literal)[Size]) {
        for (size_t i = 0; i < Size; ++i) {
            characters[i] = literal[i];
        }
    }
};

/// What `construct()` gives a text instead of an empty one.
template <Text Value>
struct DefaultText {
    static constexpr uint64_t value = 0;
    static constexpr const char* text = Value.characters;
    static constexpr size_t textSize = sizeof(Value.characters);  // the NUL included

    template <class Type>
    static constexpr bool suits() {
        return kindOf<Type>() == Kind::text && textSize <= sizeof(Type);
    }
};

namespace attribute {

template <class Attribute>
inline constexpr bool isGovernor = false;
template <size_t Offset, class Integer>
inline constexpr bool isGovernor<GovernedBy<Offset, Integer>> = true;

/// The governor among the attributes of a row, or Ungoverned.
template <class... Attributes>
struct GovernorOf {
    using type = Ungoverned;
};
template <class First, class... Rest>
struct GovernorOf<First, Rest...> {
    using type = std::conditional_t<isGovernor<First>, First, typename GovernorOf<Rest...>::type>;
};

/// The default among the attributes of a row, or DefaultValue<0>.
template <class... Attributes>
struct DefaultOf {
    using type = DefaultValue<0>;
};
template <class First, class... Rest>
struct DefaultOf<First, Rest...> {
    using type = std::conditional_t<isGovernor<First> || std::is_same_v<First, Hot>,
                                    typename DefaultOf<Rest...>::type, First>;
};

}  // namespace attribute

// --- Rows ---------------------------------------------------------------------------------------

/// What a field of this kind, capacity and governor may be governed by at most: a structure's flag
/// is 0 or 1, a count at most the capacity; the caller vouches for the bytes behind a record.
constexpr uint64_t largestCount(Kind kind, size_t capacity) {
    return kind == Kind::structure ? 1 : kind == Kind::trailingBytes ? UINT64_MAX : capacity;
}

/// One field of a structure or one member of a union. Its functions are those of FieldData, which
/// says the same at run time, so that one engine serves both.
template <uint32_t Number, Text Label, size_t Offset, class Type, uint32_t PresenceBit,
          class... Attributes>
struct Row {
    using type = Type;
    using Governor = typename attribute::GovernorOf<Attributes...>::type;
    using Default = typename attribute::DefaultOf<Attributes...>::type;
    static constexpr const char* label = Label.characters;
    static constexpr uint32_t presenceBit = PresenceBit;
    static constexpr bool isMarkedHot = (std::is_same_v<Attributes, Hot> || ...);
    static constexpr bool isHot = isMarkedHot && !keepsCodeSmall;

    static constexpr bool isNested =
        kindOf<Type>() == Kind::structure || kindOf<Type>() == Kind::selectedUnion;
    static_assert(Governor::size == 0 || isNested || kindOf<Type>() == Kind::bytes ||
                      kindOf<Type>() == Kind::trailingBytes,
                  "byte arrays, structures and unions have governors, other fields have none");
    static_assert(Default::template suits<Type>(), "a default is of its field's kind and size");
    static_assert(makeTag(Number, wireDelimited) < 1u << 21, "a tag takes at most three bytes");

    static constexpr uint32_t number() { return Number; }
    static constexpr size_t offset() { return Offset; }
    static constexpr Kind kind() { return kindOf<Type>(); }
    static constexpr bool isGoverned() { return Governor::size != 0; }

    /// Elements an array holds; the bytes behind a record are the caller's affair and count as 0.
    static constexpr size_t capacity() {
        if constexpr (kind() == Kind::text || kind() == Kind::bytes) {
            return sizeof(Type);
        } else {
            return 0;
        }
    }

    /// Whether the field travels only when its governor is not 0.
    static constexpr bool mayBeAbsent() { return isGoverned() && kind() != Kind::selectedUnion; }

    static uint64_t governor(const char* record) { return Governor::get(record); }
    static void setGovernor(char* record, uint64_t value) { Governor::set(record, value); }

    static constexpr uint32_t tag(bool varint) { return makeTag(Number, wireTypeOf<Type>(varint)); }

    /// The fewest bytes an integer takes on the wire, its tag included.
    static constexpr size_t smallestSize(bool varint) {
        return varintSize(tag(varint)) + (varint ? 1 : sizeof(Type));
    }

    /// The most bytes the field takes on the wire, its tag counted at `tagSize` bytes, or at what
    /// it really takes when that is 0. The bytes behind a record are not counted.
    static constexpr size_t largestSize(bool varint, size_t tagSize) {
        const size_t tagBytes = tagSize != 0 ? tagSize : varintSize(tag(varint));
        if constexpr (kind() == Kind::integer) {
            return tagBytes + largestInteger(sizeof(Type), varint);
        } else if constexpr (kind() == Kind::structure || kind() == Kind::selectedUnion) {
            return tagBytes + lengthSize + Fields<Type>::largestBody(varint, tagSize);
        } else {
            return tagBytes + lengthSize + capacity();
        }
    }
};

}  // namespace quorva_zrp::codec
