// For ThreadSanitizer: eight threads work on every type at once, each on its own objects. The
// sanitizer ends the program when two of them touch the same memory; all must come to the same
// results.
#include <stdio.h>
#include <string.h>

#include <atomic>
#include <thread>
#include <vector>

#include "tests/hardening/instrumented/samples.h"

namespace zrp_test {
namespace {

/// Everything that was seen, as one number.
class Digest {
  public:
    void add(const void* bytes, size_t count) {
        for (size_t i = 0; i < count; ++i) {
            value_ = (value_ ^ static_cast<const unsigned char*>(bytes)[i]) * 0x100000001B3;
        }
    }
    template <class Integer>
    void add(Integer value) {
        add(&value, sizeof(value));
    }
    uint64_t value() const { return value_; }

  private:
    uint64_t value_ = 0xCBF29CE484222325;
};

void workOn(const SampleRecord& sample, Digest& digest) {
    const MessageType& type = *sample.pair.library;
    const Subject& subject = sample.subject;
    for (const bool varint : {true, false}) {
        for (const size_t size : {size_t{4200}, size_t{50}}) {
            Bytes out(size);
            size_t used = 0;
            digest.add(type.pack(subject.record.data(), subject.selector, out.data(), size, &used,
                                 varint));
            digest.add(out.data(), used);
        }
        size_t largest = 0;
        digest.add(type.maxPackedSize(subject.record.data(), &largest, varint));
        digest.add(largest);
    }
    Bytes dump(dumpRoom);
    size_t used = 0;
    digest.add(type.visualizeInto(subject.record.data(), subject.selector, dump.data(), dump.size(),
                                  &used, 0, '\n'));
    digest.add(dump.data(), used);
}

void workOn(const SampleInput& sample, Digest& digest) {
    const MessageType& type = *sample.pair.library;
    Bytes record(recordSize(sample.pair));
    long long selector = 0;
    size_t used = 0;
    digest.add(type.construct(record.data(), 0));
    digest.add(
        type.unpack(record.data(), &selector, sample.bytes.data(), sample.bytes.size(), &used));
    digest.add(used);
    digest.add(selector);
    digest.add(record.data(), record.size());
}

/// Lets `count` threads wait for each other, again and again. Relaxed, since what orders the
/// threads' accesses would hide that they share memory.
class Meeting {
  public:
    explicit Meeting(size_t count) : count_(count) {}

    void waitForAll() {
        const size_t arrival = arrived_.fetch_add(1, std::memory_order_relaxed);
        const size_t all = (arrival / count_ + 1) * count_;
        while (arrived_.load(std::memory_order_relaxed) < all) {
            std::this_thread::yield();
        }
    }

  private:
    const size_t count_;
    std::atomic<size_t> arrived_{0};
};

uint64_t workOnEveryType(Meeting& meeting) {
    Digest digest;
    for (const TypePair& pair : typePairs()) {
        meeting.waitForAll();
        for (const SampleRecord& sample : sampleRecords(pair, 1)) {
            workOn(sample, digest);
        }
        for (const SampleInput& sample : sampleInputs(pair, 1)) {
            workOn(sample, digest);
        }
    }
    return digest.value();
}

}  // namespace
}  // namespace zrp_test

int main() {
    constexpr size_t threadCount = 8;
    std::vector<uint64_t> digests(threadCount);
    std::vector<std::thread> threads;
    zrp_test::Meeting meeting(threadCount);
    for (uint64_t& digest : digests) {
        threads.emplace_back([&] { digest = zrp_test::workOnEveryType(meeting); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    zrp_test::Meeting noOthers(1);
    const uint64_t alone = zrp_test::workOnEveryType(noOthers);
    for (const uint64_t digest : digests) {
        if (digest != alone) {
            fprintf(stderr, "a thread beside others came to other results than one alone\n");
            return 1;
        }
    }
    printf("%zu threads, all with the results of one alone\n", threadCount);
    return 0;
}
