#include "tests/hardening/instrumented/read_counter.h"

#include <algorithm>

namespace zrp_test {

namespace {

ReadCounter* current = nullptr;

void noteRead(const void* at, size_t width) {
    if (current != nullptr) {
        current->note(at, width);
    }
}

}  // namespace

ReadCounter::ReadCounter(const char* input, size_t size) : input_(input), seen_(size) {
    current = this;
}

ReadCounter::~ReadCounter() {
    current = nullptr;
}

void ReadCounter::note(const void* at, size_t width) {
    const uintptr_t begin = reinterpret_cast<uintptr_t>(input_);
    const uintptr_t end = begin + seen_.size();
    const uintptr_t from = std::max(begin, reinterpret_cast<uintptr_t>(at));
    const uintptr_t to = std::min(end, reinterpret_cast<uintptr_t>(at) + width);
    for (uintptr_t place = from; place < to; ++place) {
        seen_[place - begin] = true;
        ++bytesRead_;
    }
}

size_t ReadCounter::neverRead(size_t count) const {
    return static_cast<size_t>(
        std::count(seen_.begin(), seen_.begin() + static_cast<std::ptrdiff_t>(count), false));
}

}  // namespace zrp_test

// The names are the compiler's and the linker's. `__real_` is the function that `__wrap_` stands in
// for.
extern "C" {

void __sanitizer_cov_load1(uint8_t* at) {
    zrp_test::noteRead(at, 1);
}
void __sanitizer_cov_load2(uint16_t* at) {
    zrp_test::noteRead(at, 2);
}
void __sanitizer_cov_load4(uint32_t* at) {
    zrp_test::noteRead(at, 4);
}
void __sanitizer_cov_load8(uint64_t* at) {
    zrp_test::noteRead(at, 8);
}
void __sanitizer_cov_load16(void* at) {
    zrp_test::noteRead(at, 16);
}

void* __real_memcpy(void* to, const void* from, size_t count);
void* __wrap_memcpy(void* to, const void* from, size_t count) {
    zrp_test::noteRead(from, count);
    return __real_memcpy(to, from, count);
}

void* __real_memmove(void* to, const void* from, size_t count);
void* __wrap_memmove(void* to, const void* from, size_t count) {
    zrp_test::noteRead(from, count);
    return __real_memmove(to, from, count);
}

int __real_memcmp(const void* one, const void* other, size_t count);
int __wrap_memcmp(const void* one, const void* other, size_t count) {
    zrp_test::noteRead(one, count);
    zrp_test::noteRead(other, count);
    return __real_memcmp(one, other, count);
}

const void* __real_memchr(const void* in, int byte, size_t count);
const void* __wrap_memchr(const void* in, int byte, size_t count) {
    const void* const found = __real_memchr(in, byte, count);
    const size_t looked =
        found == nullptr
            ? count
            : static_cast<size_t>(static_cast<const char*>(found) - static_cast<const char*>(in)) +
                  1;
    zrp_test::noteRead(in, looked);
    return found;
}

size_t __real_strnlen(const char* text, size_t most);
size_t __wrap_strnlen(const char* text, size_t most) {
    const size_t length = __real_strnlen(text, most);
    zrp_test::noteRead(text, std::min(length + 1, most));
    return length;
}

}  // extern "C"
