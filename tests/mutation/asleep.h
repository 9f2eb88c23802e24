// What the rewritten sources of the library call: each operation as it was written, unless the
// mutant with one of its numbers has been woken for this run. Included in front of every source.
//
// The environment tells which one: ZRP_MUTANT is its number. ZRP_MUTANTS_MET names a file with a
// byte per mutant that becomes 1 when control passes it. Constant evaluation meets no mutant and
// keeps its meaning.
#ifndef ZRP_TESTS_MUTATION_ASLEEP_H
#define ZRP_TESTS_MUTATION_ASLEEP_H

#include <fcntl.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <unistd.h>

namespace zrp_mutant {

constexpr unsigned long mostMutants = 1 << 16;
inline unsigned char unrecorded[mostMutants];

/// Shared with the processes that tests fork.
inline unsigned char* recordOfMet() {
    const char* const path = getenv("ZRP_MUTANTS_MET");
    if (path == nullptr) {
        return unrecorded;
    }
    const int file = open(path, O_RDWR | O_CREAT, 0666);
    void* const record =
        file >= 0 && ftruncate(file, mostMutants) == 0
            ? mmap(nullptr, mostMutants, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0)
            : MAP_FAILED;
    if (record == MAP_FAILED) {
        abort();
    }
    return static_cast<unsigned char*>(record);
}

inline unsigned numberToWake() {
    const char* const number = getenv("ZRP_MUTANT");
    return number != nullptr ? static_cast<unsigned>(atoi(number)) : 0;
}

inline unsigned char* const met = recordOfMet();
inline const unsigned awake = numberToWake();

#define ZRP_MUTANT_INLINE [[gnu::always_inline]] constexpr

template <unsigned Number>
ZRP_MUTANT_INLINE bool isAwake() {
    if (__builtin_is_constant_evaluated()) {
        return false;
    }
    met[Number] = 1;
    return awake == Number;
}

/// A condition; also one side of && and ||, and what they give: with all three negated they are the
/// other one.
template <unsigned Number>
ZRP_MUTANT_INLINE bool negate(bool condition) {
    return condition != isAwake<Number>();
}

template <unsigned Number, class Value>
ZRP_MUTANT_INLINE Value constant(Value value) {
    if (isAwake<Number>()) {
        return static_cast<Value>(value + 1);
    }
    if (isAwake<Number + 1>()) {
        return static_cast<Value>(value - 1);
    }
    return value;
}

/// A constant between braces, which would not take the type they ask for from a call.
template <class Value>
struct Braced {
    Value value;

    template <class Wanted>
    ZRP_MUTANT_INLINE operator Wanted() const {
        return static_cast<Wanted>(value);
    }
};
template <unsigned Number, class Value>
ZRP_MUTANT_INLINE Braced<Value> braced(Value value) {
    return {constant<Number>(value)};
}

#define ZRP_MUTANT_ONE(name, as, instead)             \
    template <unsigned Number, class A, class B>      \
    ZRP_MUTANT_INLINE decltype(auto) name(A a, B b) { \
        if (isAwake<Number>()) {                      \
            return instead;                           \
        }                                             \
        return as;                                    \
    }
#define ZRP_MUTANT_TWO(name, as, first, second)       \
    template <unsigned Number, class A, class B>      \
    ZRP_MUTANT_INLINE decltype(auto) name(A a, B b) { \
        if (isAwake<Number>()) {                      \
            return first;                             \
        }                                             \
        if (isAwake<Number + 1>()) {                  \
            return second;                            \
        }                                             \
        return as;                                    \
    }
#define ZRP_MUTANT_THREE(name, as, first, second, third) \
    template <unsigned Number, class A, class B>         \
    ZRP_MUTANT_INLINE decltype(auto) name(A a, B b) {    \
        if (isAwake<Number>()) {                         \
            return first;                                \
        }                                                \
        if (isAwake<Number + 1>()) {                     \
            return second;                               \
        }                                                \
        if (isAwake<Number + 2>()) {                     \
            return third;                                \
        }                                                \
        return as;                                       \
    }
#define ZRP_MUTANT_ASSIGN(name, as, instead)     \
    template <unsigned Number, class A, class B> \
    ZRP_MUTANT_INLINE A& name(A& a, B b) {       \
        if (isAwake<Number>()) {                 \
            a instead b;                         \
        } else {                                 \
            a as b;                              \
        }                                        \
        return a;                                \
    }
#define ZRP_MUTANT_STEP(name, as, instead)           \
    template <unsigned Number, class A>              \
    ZRP_MUTANT_INLINE A& name(A& a) {                \
        return isAwake<Number>() ? instead a : as a; \
    }                                                \
    template <unsigned Number, class A>              \
    ZRP_MUTANT_INLINE A name##Behind(A& a) {         \
        return isAwake<Number>() ? a instead : a as; \
    }

// Relations: with and without equality, the opposite, the sides swapped.
ZRP_MUTANT_THREE(less, a<b, a <= b, a >= b, a> b)
ZRP_MUTANT_THREE(lessOrEqual, a <= b, a<b, a> b, a >= b)
ZRP_MUTANT_THREE(greater, a > b, a >= b, a <= b, a < b)
ZRP_MUTANT_THREE(greaterOrEqual, a >= b, a > b, a < b, a <= b)
ZRP_MUTANT_ONE(equal, a == b, a != b)
ZRP_MUTANT_ONE(unequal, a != b, a == b)

ZRP_MUTANT_ONE(plus, a + b, a - b)
ZRP_MUTANT_ONE(minus, a - b, a + b)
ZRP_MUTANT_TWO(minusSwapped, a - b, a + b, b - a)
ZRP_MUTANT_ONE(difference, a - b, b - a)
ZRP_MUTANT_ONE(times, a* b, a + b)
ZRP_MUTANT_TWO(divided, a / b, a* b, b / a)
ZRP_MUTANT_TWO(modulo, a % b, a / b, b % a)
ZRP_MUTANT_ONE(bitAnd, a& b, a | b)
ZRP_MUTANT_ONE(bitOr, a | b, a& b)
ZRP_MUTANT_ONE(bitXor, a ^ b, a | b)
ZRP_MUTANT_ONE(shiftLeft, a << b, a >> b)
ZRP_MUTANT_ONE(shiftRight, a >> b, a << b)

ZRP_MUTANT_ASSIGN(addTo, +=, -=)
ZRP_MUTANT_ASSIGN(takeFrom, -=, +=)
ZRP_MUTANT_ASSIGN(orInto, |=, &=)
ZRP_MUTANT_ASSIGN(andInto, &=, |=)
ZRP_MUTANT_ASSIGN(shiftLeftInto, <<=, >>=)
ZRP_MUTANT_ASSIGN(shiftRightInto, >>=, <<=)

ZRP_MUTANT_STEP(increment, ++, --)
ZRP_MUTANT_STEP(decrement, --, ++)

template <unsigned Number, class A>
ZRP_MUTANT_INLINE auto complement(A a) {
    return isAwake<Number>() ? static_cast<decltype(~a)>(a) : ~a;
}

#undef ZRP_MUTANT_ONE
#undef ZRP_MUTANT_TWO
#undef ZRP_MUTANT_THREE
#undef ZRP_MUTANT_ASSIGN
#undef ZRP_MUTANT_STEP
#undef ZRP_MUTANT_INLINE

}  // namespace zrp_mutant

#endif  // ZRP_TESTS_MUTATION_ASLEEP_H
