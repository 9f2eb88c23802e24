// The checks of an encoder without its output: one pass over the rows that can go wrong. Integers
// and all that holds nothing else cost no code.
#pragma once

#include "protocol/codec/table.h"
#include "protocol/quorva_zrp_validate.h"

namespace quorva_zrp::codec {

// --- What can go wrong --------------------------------------------------------------------------

template <class Message, size_t... Index>
constexpr size_t countFailing(std::index_sequence<Index...>);

/// Whether some value of the field, or of what governs it, keeps it from being encoded.
template <class Field>
constexpr bool fieldCanFail() {
    switch (Field::kind()) {
        case Kind::text:
        case Kind::selectedUnion:
            return true;
        case Kind::bytes:
            return Field::Governor::largest > Field::capacity();
        case Kind::structure:
            if constexpr (Field::kind() == Kind::structure) {
                using Type = typename Field::type;
                return Field::isGoverned() || countFailing<Type>(FieldIndices<Type>{}) != 0;
            }
            return false;
        default:
            return false;
    }
}

template <class Message, size_t... Index>
constexpr size_t countFailing(std::index_sequence<Index...>) {
    return (size_t{0} + ... + (fieldCanFail<Field<Message, Index>>() ? 1 : 0));
}

// --- The way to it ------------------------------------------------------------------------------

/// The fields from the one that is to blame outwards, each by its label.
class Trail {
  public:
    static constexpr size_t capacity = 8;

    void add(const char* label) { labels_[count_++] = label; }

    /// Whether a text of `size` bytes ends in it.
    static bool isEnded(const char* text, size_t size) {
        return memchr(text, '\0', size) != nullptr;
    }

    /// Writes the names from the outermost on into `size` bytes, at least one; cut short where they
    /// do not fit, but ended by a NUL.
    void write(char* path, size_t size) const;

  private:
    const char* labels_[capacity];
    size_t count_ = 0;
};

/// Instead of a trail for a first look: it keeps nothing and calls nothing, so what is sound costs
/// no stack. What fails at a glance is looked at again.
struct Glance {
    static void add(const char*) {}

    /// Any NUL will do, and where a record was zeroed before it was filled the last byte is one.
    static bool isEnded(const char* text, size_t size) { return text[size - 1] == '\0'; }
};

/// What the paths through a type's fields can need at most.
struct PathLimits {
    size_t depth;  ///< fields one inside the other
    size_t size;   ///< characters of their names and of the dots between them
};

template <class Message>
constexpr PathLimits pathLimits();

template <class Field>
constexpr PathLimits fieldPathLimits() {
    if constexpr (!fieldCanFail<Field>()) {
        return {0, 0};
    } else {
        size_t name = 0;
        while (Field::label[name + 2] != '\0') {  // less the brackets around it
            ++name;
        }
        if constexpr (Field::isNested) {
            constexpr PathLimits inner = pathLimits<typename Field::type>();
            return {1 + inner.depth, name + (inner.size != 0 ? 1 + inner.size : 0)};
        } else {
            return {1, name};
        }
    }
}

template <class Message, size_t... Index>
constexpr PathLimits longestOf(std::index_sequence<Index...>) {
    PathLimits longest{0, 0};
    const auto consider = [&](PathLimits one) {
        longest.depth = one.depth > longest.depth ? one.depth : longest.depth;
        longest.size = one.size > longest.size ? one.size : longest.size;
    };
    (consider(fieldPathLimits<Field<Message, Index>>()), ...);
    return longest;
}

template <class Message>
constexpr PathLimits pathLimits() {
    return longestOf<Message>(FieldIndices<Message>{});
}

// --- Checking -----------------------------------------------------------------------------------

template <class Record, class Notes>
int validate(const char* record, Notes& notes);
template <class Record, class Notes>
int validateFields(const char* record, Notes& notes);
template <class Union, class Notes>
int validateMember(const char* value, long long selector, Notes& notes);

/// What encoding the field would give; on failure the field is added to the notes, which are a
/// Trail or a Glance.
template <class Field, class Notes>
ZRP_INLINE int validateField(Field field, const char* record, Notes& notes) {
    using Type = typename Field::type;
    if constexpr (!fieldCanFail<Field>()) {
        return 0;
    } else {
        const char* const at = record + field.offset();
        int result = 0;
        if constexpr (Field::kind() == Kind::text) {
            if (!Notes::isEnded(at, field.capacity())) {
                result = Quorva::BRX_ERR_TEXT_TOO_LONG;
            }
        } else if constexpr (Field::kind() == Kind::selectedUnion) {
            result =
                validateMember<Type>(at, static_cast<long long>(field.governor(record)), notes);
        } else {
            if constexpr (Field::isGoverned()) {
                const uint64_t count = field.governor(record);
                if (count > largestCount(field.kind(), field.capacity())) {
                    result = Quorva::BRX_ERR_REFER_TOO_BIG;
                } else if (count == 0) {
                    return 0;
                }
            }
            if constexpr (Field::kind() == Kind::structure) {
                constexpr bool isInline = std::is_same_v<Notes, Glance>;  // which calls nothing
                if (result == 0) {
                    result = isInline ? validateFields<Type>(at, notes) : validate<Type>(at, notes);
                }
            }
        }
        if (result != 0) {
            notes.add(Field::label);
        }
        return result;
    }
}

template <class Record, class Notes, size_t... Index>
ZRP_INLINE int validateFields(const char* record, Notes& notes, std::index_sequence<Index...>) {
    int result = 0;
    (void)(((result = validateField(Field<Record, Index>{}, record, notes)) == 0) && ...);
    return result;
}

template <class Record, class Notes>
ZRP_INLINE int validateFields(const char* record, Notes& notes) {
    return validateFields<Record>(record, notes, FieldIndices<Record>{});
}

template <class Union, class Notes>
ZRP_INLINE int validateMember(const char* value, long long selector, Notes& notes) {
    return withMember<Union>(
        selector,
        [&](auto member) ZRP_INLINE_LAMBDA { return validateField(member, value, notes); },
        [] { return int{Quorva::BRX_ERR_BAD_SELECTOR}; });
}

/// The same out of line.
template <class Record, class Notes>
int validate(const char* record, Notes& notes) {
    return validateFields<Record>(record, notes);
}

/// Runs `check(trail)` and writes the trail it leaves, an empty path for none.
template <class Check>
[[gnu::noinline]] int validateAndExplain(char* path, size_t pathSize, Check check) {
    Trail trail;
    const int result = check(trail);
    if (path != nullptr && pathSize != 0) {
        trail.write(path, pathSize);
    }
    return result;
}

/// The same, at a glance where all is well.
template <class Message, class Check>
ZRP_INLINE int validateMessage(char* path, size_t pathSize, Check check) {
    static_assert(pathLimits<Message>().depth <= Trail::capacity &&
                      pathLimits<Message>().size < ZRP_PATH_SIZE,
                  "every path fits");
    Glance glance;
    if (check(glance) != 0) {
        return validateAndExplain(path, pathSize, check);
    }
    if (path != nullptr && pathSize != 0) {
        path[0] = '\0';
    }
    return 0;
}

}  // namespace quorva_zrp::codec
