// Samples: for every message type one record with every field set to a value of its own, its
// encodings, its text dump and its defaults, all written out by hand. The samples of the types
// stand in the *_samples.h headers; every_structure_test.cpp and every_union_test.cpp put each of
// them through the same behaviour.
#pragma once

#include <functional>

#include "tests/messages/make.h"

namespace zrp_test {

/// The sample of a structure type:
///     name, presence (all its bits), maxVarint, maxFixed
///     fields(object, with)   every field with its value, for Set and Expect alike
///     withVarint(), withFixed(), dump()
///     expectDefaults(object) what construct() leaves of dirty memory
///     accessors()            the presence accessors, bit 0 first
///     uint64Field            index of its unsigned 64-bit field, in types that have one
template <class T>
struct Sample;

/// The samples of a union type: name, maxVarint, maxFixed, members().
template <class U>
struct UnionSample;

/// Sets the fields that a sample lists.
struct Set {
    template <std::integral Field, std::integral Value>
    void operator()(Field& field, Value sample) const {
        field = static_cast<Field>(sample);
    }
    template <size_t N>
    void operator()(char (&field)[N], const char* sample) const {
        put(field, sample);
    }
    template <size_t N>
    void operator()(uint8_t (&field)[N], const std::string& sample) const {
        put(field, sample);
    }
    template <class T>
    void nested(T& object) const {
        Sample<T>::fields(object, *this);
    }
    /// Prepares the member of a union that the next lines fill.
    template <class U>
    void member(U& object, long long selector) const {
        EXPECT_EQ(object.construct(selector), 0);
    }
};

/// Expects the fields that a sample lists; failures name the line of the sample.
struct Expect {
    template <std::integral Field, std::integral Value>
    void operator()(const Field& field, Value sample, int line = __builtin_LINE()) const {
        EXPECT_EQ(+field, +static_cast<Field>(sample)) << "sample line " << line;
    }
    template <size_t N>
    void operator()(const char (&field)[N], const char* sample, int line = __builtin_LINE()) const {
        EXPECT_EQ(std::string(field, strnlen(field, N)), sample) << "sample line " << line;
    }
    template <size_t N>
    void operator()(const uint8_t (&field)[N], const std::string& sample,
                    int line = __builtin_LINE()) const {
        EXPECT_EQ(head(field, hex(sample).size()), toHex(hex(sample))) << "sample line " << line;
    }
    template <class T>
    void nested(const T& object) const {
        Sample<T>::fields(object, *this);
        EXPECT_EQ(object.presence, Sample<T>::presence) << "within " << Sample<T>::name;
    }
    template <class U>
    void member(const U&, long long) const {}
};

/// A constructed record with every field of its sample set.
template <class T>
T sampleOf() {
    T object = made<T>();
    Sample<T>::fields(object, Set{});
    return object;
}

// --- Defaults -----------------------------------------------------------------------------------

template <class... Fields>
void expectZero(const Fields&... fields) {
    const bool allZero = ((fields == 0) && ...);
    EXPECT_TRUE(allZero);
}

/// A text that only got a NUL in its first byte.
template <size_t N>
void expectOnlyFirstCharacterCleared(const char (&field)[N]) {
    EXPECT_EQ(toHex(field, N), "00 " + repeated(untouched, N - 1));
}

template <size_t N>
void expectZeroed(const uint8_t (&field)[N]) {
    EXPECT_EQ(toHex(field, N), repeated(0, N));
}

/// A union of which only the one-byte placeholder was prepared.
template <class U>
void expectOnlyPlaceholderCleared(const U& object) {
    EXPECT_EQ(image(object), "00 " + repeated(untouched, sizeof(U) - 1));
}

// --- Presence -----------------------------------------------------------------------------------

template <class T>
struct Accessors {
    const char* name;
    bool (T::*has)() const;
    void (T::*set)() const;
};

#define ZRP_TEST_ACCESSORS(Type, Name)                  \
    Accessors<Type> {                                   \
#Name, &Type::has_##Name, &Type::set_has_##Name \
    }

// --- Members of unions --------------------------------------------------------------------------

/// One member of a union with a value set.
template <class U>
struct Member {
    long long selector;
    std::function<void(U&)> set;
    std::function<void(const U&)> expect;
    Encoding withVarint;
    Encoding withFixed;
    Calls dump;
    size_t constructed;  ///< bytes at the start that construct(selector) clears; 0: a structure
    std::function<void(const U&)> expectDefaults = nullptr;  ///< for a structure
};

/// `fields` takes the union and a Set or Expect.
template <class U, class Fields>
Member<U> member(long long selector, Fields fields, Encoding withVarint, Encoding withFixed,
                 Calls dump, size_t constructed) {
    return {selector,
            [fields](U& object) { fields(object, Set{}); },
            [fields](const U& object) { fields(object, Expect{}); },
            std::move(withVarint),
            std::move(withFixed),
            std::move(dump),
            constructed,
            nullptr};
}

/// A member that is a structure, holding the structure's sample. `field` is the bytes before the
/// member's fields: its tag and length.
template <class T, class U>
Member<U> structureMember(long long selector, T U::*field, const char* label,
                          const std::string& envelopeVarint, const std::string& startVarint,
                          const std::string& envelopeFixed, const std::string& startFixed) {
    return {selector,
            [field, selector](U& object) {
                Set{}.member(object, selector);
                Set{}.nested(object.*field);
            },
            [field](const U& object) { Expect{}.nested(object.*field); },
            {envelopeVarint, {startVarint + Sample<T>::withVarint().fieldBytes()}},
            {envelopeFixed, {startFixed + Sample<T>::withFixed().fieldBytes()}},
            under(label, {Sample<T>::dump()}),
            0,
            [field](const U& object) { Sample<T>::expectDefaults(object.*field); }};
}

/// A placeholder byte; it encodes alike in both flavours but for the first byte.
template <class U>
Member<U> placeholderMember(long long selector, int8_t U::*field, const char* label, int held,
                            const char* printed, const std::string& length,
                            const std::string& bytes) {
    return {selector,
            [field, held](U& object) { object.*field = static_cast<int8_t>(held); },
            [field, held](const U& object) { EXPECT_EQ(+(object.*field), held); },
            {"AA " + length, {bytes}},
            {"99 " + length, {bytes}},
            byte(label, printed),
            1,
            nullptr};
}

}  // namespace zrp_test
