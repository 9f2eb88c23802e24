// What is measured: named cases, each of which makes a task that repeats one operation. Timing,
// instruction counts and the check of results all go through the same cases.
#pragma once

#include <stddef.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zrp_bench {

/// Repeats one operation. `run` is a virtual call, but it is made once for many operations; the
/// loop inside it is compiled for the one codec and message.
class Task {
  public:
    virtual ~Task() = default;
    virtual void run(size_t count) = 0;
    /// Encoded bytes that one operation writes, reads or copies, on average.
    virtual double bytes() const = 0;
};

struct Case {
    std::string name;  ///< operation/message/codec
    /// Prepares all that the operation needs, and checks its results; ends the program when they
    /// are wrong. `repetition` decides where in their pages encoded bytes lie.
    std::function<std::unique_ptr<Task>(size_t repetition)> make;
};

using Cases = std::vector<Case>;

/// Ends the program: `name` does not give the result it must give.
[[noreturn]] void failCheck(const std::string& name, const std::string& reason);

/// Makes the compiler compute what `at` points at, and forget what it knows of memory.
inline void keep(const void* at) {
    asm volatile("" : : "g"(at) : "memory");
}

/// Calls `operation` `count` times, with the values in turn, beginning at `next`; their number is a
/// power of two. What the loop itself needs stays in registers, where `keep` cannot reach it.
template <class Values, class Operation>
inline void inTurn(const Values& values, size_t& next, size_t count, Operation operation) {
    const auto* const first = values.data();
    const size_t mask = values.size() - 1;
    const size_t end = next + count;
    for (size_t i = next; i != end; ++i) {
        operation(first[i & mask]);
    }
    next = end & mask;
}

/// How many operations one call of `run` makes at least, so that the call costs nothing and large
/// messages still take no longer than a moment.
size_t batchFor(double bytes);

}  // namespace zrp_bench
