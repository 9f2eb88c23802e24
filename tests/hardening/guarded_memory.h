// Memory between two pages that may not be touched: a byte too far in either direction stops the
// program at once, in every build.
#pragma once

#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <unistd.h>

#include <span>

namespace zrp_test {

/// Room for at least `capacity` bytes between two unmapped pages. Bytes are placed at either end of
/// it, `gap` bytes away from the page there: 0 is right at it, other gaps give other alignments.
/// What may only be read is written through a second view of the same memory.
class GuardedMemory {
  public:
    enum class Access { readOnly, readWrite };

    GuardedMemory(size_t capacity, Access access) {
        page_ = static_cast<size_t>(sysconf(_SC_PAGESIZE));
        room_ = (capacity + page_ - 1) / page_ * page_;
        FILE* const file = tmpfile();
        if (file == nullptr || ftruncate(fileno(file), static_cast<off_t>(room_)) != 0) {
            giveUp();
        }
        const int descriptor = fileno(file);
        writable_ = map(nullptr, room_, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor);
        char* const around =
            map(nullptr, room_ + 2 * page_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1);
        const int protection = access == Access::readOnly ? PROT_READ : PROT_READ | PROT_WRITE;
        begin_ = map(around + page_, room_, protection, MAP_SHARED | MAP_FIXED, descriptor);
        fclose(file);
    }
    ~GuardedMemory() {
        munmap(begin_ - page_, room_ + 2 * page_);
        munmap(writable_, room_);
    }
    GuardedMemory(const GuardedMemory&) = delete;
    GuardedMemory& operator=(const GuardedMemory&) = delete;

    /// `size` bytes that end `gap` bytes before the unmapped page behind.
    char* atEnd(size_t size, size_t gap = 0) const { return begin_ + room_ - gap - size; }
    /// Bytes that start `gap` bytes behind the unmapped page in front.
    char* atBegin(size_t gap = 0) const { return begin_ + gap; }

    /// `bytes`, copied to such a place.
    char* placeAtEnd(std::span<const char> bytes, size_t gap = 0) const {
        return place(atEnd(bytes.size(), gap), bytes);
    }
    char* placeAtBegin(std::span<const char> bytes, size_t gap = 0) const {
        return place(atBegin(gap), bytes);
    }

  private:
    char* place(char* at, std::span<const char> bytes) const {
        if (!bytes.empty()) {
            memcpy(writable_ + (at - begin_), bytes.data(), bytes.size());
        }
        return at;
    }

    static char* map(void* at, size_t size, int protection, int flags, int descriptor) {
        void* const mapped = mmap(at, size, protection, flags, descriptor, 0);
        if (mapped == MAP_FAILED) {
            giveUp();
        }
        return static_cast<char*>(mapped);
    }

    [[noreturn]] static void giveUp() {
        perror("guarded memory");
        abort();
    }

    size_t page_;
    size_t room_;
    char* writable_;
    char* begin_;
};

}  // namespace zrp_test
