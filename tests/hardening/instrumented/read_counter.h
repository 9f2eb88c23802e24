// Counts what the library reads of an input. It is compiled so that each of its loads reports
// itself, and linked so that its calls of memcpy and the like come here first.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <vector>

namespace zrp_test {

class ReadCounter {
  public:
    /// Counts reads of the `size` bytes at `input` while it lives; one at a time.
    ReadCounter(const char* input, size_t size);
    ~ReadCounter();
    ReadCounter(const ReadCounter&) = delete;
    ReadCounter& operator=(const ReadCounter&) = delete;

    void note(const void* at, size_t width);

    /// Bytes read, those read again counted again.
    uint64_t bytesRead() const { return bytesRead_; }
    /// How many of the first `count` bytes were not read at all.
    size_t neverRead(size_t count) const;

  private:
    const char* input_;
    uint64_t bytesRead_ = 0;
    std::vector<bool> seen_;
};

}  // namespace zrp_test
