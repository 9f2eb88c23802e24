// Memory for measurements. Where source and destination of a copy lie at the same place modulo 4096
// a processor may take a load for one of the bytes just stored, and some operations become three
// times as slow. Objects therefore start at pages, encoded bytes in the middle of them, at a
// different place in each repetition, so that no result hangs on one lucky or unlucky layout.
#pragma once

#include <stddef.h>

#include <new>
#include <vector>

namespace zrp_bench {

constexpr size_t pageSize = 4096;

template <class T>
struct PageAllocator {
    using value_type = T;

    PageAllocator() = default;
    template <class Other>
    explicit PageAllocator(const PageAllocator<Other>&) {}

    T* allocate(size_t count) {
        return static_cast<T*>(::operator new (count * sizeof(T), std::align_val_t{pageSize}));
    }
    void deallocate(T* at, size_t) { ::operator delete (at, std::align_val_t{pageSize}); }

    template <class Other>
    bool operator==(const PageAllocator<Other>&) const {
        return true;
    }
};

template <class T>
using PageAlignedVector = std::vector<T, PageAllocator<T>>;
using PageAlignedBytes = PageAlignedVector<char>;

/// Where encoded bytes start within a page.
inline size_t placeInPage(size_t repetition) {
    constexpr size_t places[] = {1088, 2112, 1600, 3136, 2624};
    return places[repetition % (sizeof(places) / sizeof(places[0]))];
}

}  // namespace zrp_bench
