// The stack that encoding and decoding take, callees and C library included, for the worst of many
// samples of every type. Operations run on a stack of their own that was painted before: what is no
// longer paint was used.
//
//     stack [LIMIT]    fails above LIMIT bytes (default 1024)
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <ucontext.h>

#include <algorithm>
#include <functional>
#include <vector>

#include "tests/hardening/instrumented/samples.h"

namespace zrp_test {
namespace {

constexpr uint64_t paint = 0x5CA1AB1E0DDBA115;
constexpr size_t stackWords = 8192;
alignas(64) uint64_t stack[stackWords];
size_t lowestUsed = 0;  ///< below this word all is paint

ucontext_t outside;
ucontext_t inside;
uintptr_t stackPointerAtCall = 0;

/// An operation and what it works on; kept where it takes no stack.
struct Call {
    const MessageType* type;
    char* record;
    long long selector;
    char* bytes;
    size_t size;
    size_t used;
    bool varint;
};
Call call;

#if defined(__x86_64__)
#define READ_STACK_POINTER(to) __asm__ volatile("mov %%rsp, %0" : "=r"(to))
#elif defined(__aarch64__)
#define READ_STACK_POINTER(to) __asm__ volatile("mov %0, sp" : "=r"(to))
#else
// Includes what the caller itself has below its frame address.
#define READ_STACK_POINTER(to) (to) = reinterpret_cast<uintptr_t>(__builtin_frame_address(0))
#endif

// Arguments of all of these travel in registers, so the call moves nothing but its return address.

void runPack() {
    READ_STACK_POINTER(stackPointerAtCall);
    (void)call.type->pack(call.record, call.selector, call.bytes, call.size, &call.used,
                          call.varint);
}

void runUnpack() {
    READ_STACK_POINTER(stackPointerAtCall);
    (void)call.type->unpack(call.record, &call.selector, call.bytes, call.size, &call.used);
}

/// Bytes of stack that `run` used below its own frame.
size_t stackOf(void (*run)()) {
    std::fill(stack + lowestUsed, stack + stackWords, paint);
    getcontext(&inside);
    inside.uc_stack.ss_sp = stack;
    inside.uc_stack.ss_size = sizeof(stack);
    inside.uc_link = &outside;
    makecontext(&inside, run, 0);
    swapcontext(&outside, &inside);
    lowestUsed = 0;
    while (stack[lowestUsed] == paint) {
        ++lowestUsed;
    }
    return stackPointerAtCall - reinterpret_cast<uintptr_t>(stack + lowestUsed);
}

size_t stackOfEncoding(const SampleRecord& sample) {
    Bytes record = sample.subject.record;
    Bytes out(4400);
    size_t most = 0;
    for (const bool varint : {true, false}) {
        const size_t used = encoded(sample.pair, sample.subject, varint).size();
        for (size_t i = 0; i < 60; ++i) {
            const size_t size = i < 4 ? used - 2 + i : 1 + used * (i - 4) / 56;
            call = {sample.pair.library,
                    record.data(),
                    sample.subject.selector,
                    out.data(),
                    size,
                    0,
                    varint};
            most = std::max(most, stackOf(runPack));
        }
        call.size = out.size();
        most = std::max(most, stackOf(runPack));
    }
    return most;
}

size_t stackOfDecoding(const TypePair& pair, const Bytes& input) {
    Bytes record(recordSize(pair));
    Bytes bytes = input;
    bytes.push_back(0);  // so that there is memory even for no bytes
    call = {pair.library, record.data(), 0, bytes.data(), input.size(), 0, false};
    return stackOf(runUnpack);
}

/// An encoding with each of up to 300 bytes changed in turn: the straight way ends everywhere once.
size_t stackOfChangedDecoding(const TypePair& pair, const Bytes& input) {
    size_t most = 0;
    const size_t step = input.size() / 300 + 1;
    for (size_t place = 5; place < input.size(); place += step) {
        Bytes changed = input;
        changed[place] = static_cast<char>(changed[place] + 1);
        most = std::max(most, stackOfDecoding(pair, changed));
    }
    return most;
}

}  // namespace
}  // namespace zrp_test

int main(int count, char** arguments) {
    using namespace zrp_test;
    const size_t limit = count > 1 ? strtoul(arguments[1], nullptr, 10) : 1024;
    std::fill(stack, stack + stackWords, paint);
    size_t mostEncoding = 0;
    size_t mostDecoding = 0;
    printf("%-28s %8s %8s\n", "bytes of stack", "encode", "decode");
    for (const TypePair& pair : typePairs()) {
        size_t encoding = 0;
        size_t decoding = 0;
        for (const SampleRecord& sample : sampleRecords(pair, 2)) {
            encoding = std::max(encoding, stackOfEncoding(sample));
            if (sample.isSound) {
                for (const bool varint : {true, false}) {
                    const Bytes whole = encoded(pair, sample.subject, varint);
                    decoding = std::max(decoding, stackOfChangedDecoding(pair, whole));
                }
            }
        }
        for (const SampleInput& sample : sampleInputs(pair, 8)) {
            decoding = std::max(decoding, stackOfDecoding(pair, sample.bytes));
        }
        printf("%-28s %8zu %8zu\n", pair.library->name, encoding, decoding);
        mostEncoding = std::max(mostEncoding, encoding);
        mostDecoding = std::max(mostDecoding, decoding);
    }
    printf("%-28s %8zu %8zu\n", "most", mostEncoding, mostDecoding);
    if (std::max(mostEncoding, mostDecoding) > limit) {
        fprintf(stderr, "stack: more than the %zu bytes allowed\n", limit);
        return 1;
    }
    return 0;
}
