// For MemorySanitizer: records, inputs and output buffers are marked as uninitialised but for what
// an operation may look at. The sanitizer ends the program when a decision or a copy to the outside
// hangs on anything else; this program looks at what was initialised.
#include <sanitizer/msan_interface.h>
#include <stdio.h>
#include <string.h>

#include "tests/hardening/copied_fields.h"
#include "tests/hardening/instrumented/samples.h"
#include "tests/oracle/oracle.h"

namespace zrp_test {
namespace {

int failures = 0;
size_t checks = 0;

void expect(bool holds, const TypePair& pair, const char* what) {
    ++checks;
    if (!holds) {
        ++failures;
        fprintf(stderr, "%s: %s\n", pair.library->name, what);
    }
}

/// `size` bytes that count as uninitialised.
class Poisoned {
  public:
    explicit Poisoned(size_t size) : bytes_(size) { __msan_poison(bytes_.data(), size); }
    char* data() { return bytes_.data(); }
    size_t size() const { return bytes_.size(); }
    bool isInitialised(size_t place) const {
        return __msan_test_shadow(bytes_.data() + place, 1) == -1;
    }
    /// All bytes from `begin` to `end` are initialised.
    bool isInitialised(size_t begin, size_t end) const {
        return begin == end || __msan_test_shadow(bytes_.data() + begin, end - begin) == -1;
    }
    /// No byte from `begin` on is.
    bool isPoisonedFrom(size_t begin) const {
        for (size_t i = begin; i < bytes_.size(); ++i) {
            if (isInitialised(i)) {
                return false;
            }
        }
        return true;
    }

  private:
    Bytes bytes_;
};

/// Encoding and printing look at the fields alone and initialise what they report as used.
void checkOutput(const SampleRecord& sample) {
    const TypePair& pair = sample.pair;
    const Subject& subject = sample.subject;
    // As a caller makes a record: constructed, then filled. The bytes behind texts and the members
    // of unions that are not selected stay uninitialised.
    Poisoned record(subject.record.size());
    (void)pair.library->construct(record.data(), subject.selector);
    copyFields(*pair.oracle, subject.record.data(), subject.selector, record.data());
    Random random(subject.record.size());
    for (const bool varint : {true, false}) {
        const size_t full = zrp_oracle::largestSize(*pair.oracle, varint) + 220;
        const size_t whole = encoded(pair, subject, varint).size();
        const size_t cut = 1 + static_cast<size_t>(random.below(full));
        for (const size_t size : {full, whole, whole + 5, cut, size_t{40}, size_t{7}}) {
            Poisoned out(size);
            size_t used = 0;
            const int result = pair.library->pack(record.data(), subject.selector, out.data(), size,
                                                  &used, varint);
            expect(!sample.isSound || size < whole || result == 0, pair,
                   "a sound record does not encode");
            if (result == 0) {
                expect(out.isInitialised(0, used), pair, "an encoding has bytes that nobody wrote");
                expect(out.isPoisonedFrom(used), pair, "bytes behind an encoding were written");
            }
        }
    }
    Poisoned dump(dumpRoom);
    size_t used = 0;
    const int result = pair.library->visualizeInto(record.data(), subject.selector, dump.data(),
                                                   dump.size(), &used, 0, '\n');
    expect(!sample.isSound || result == 0, pair, "a sound record does not print");
    expect(dump.isInitialised(0, used), pair, "a dump has bytes that nobody wrote");
}

/// Decoding looks at the input alone and initialises in the record what arrived: the same bytes as
/// the oracle does.
void checkInput(const SampleInput& sample) {
    const TypePair& pair = sample.pair;
    Poisoned input(sample.bytes.size() + 64);
    memcpy(input.data(), sample.bytes.data(), sample.bytes.size());
    Poisoned library(recordSize(pair));
    Poisoned oracle(recordSize(pair));
    long long librarySelector = 0;
    long long oracleSelector = 0;
    size_t libraryUsed = 0;
    size_t oracleUsed = 0;
    const int libraryResult = pair.library->unpack(library.data(), &librarySelector, input.data(),
                                                   sample.bytes.size(), &libraryUsed);
    const int oracleResult = zrp_oracle::unpack(*pair.oracle, oracle.data(), &oracleSelector,
                                                input.data(), sample.bytes.size(), &oracleUsed);
    expect(libraryResult == oracleResult && libraryUsed == oracleUsed &&
               librarySelector == oracleSelector,
           pair, "a decode into uninitialised memory goes another way");
    bool isAlike = true;
    for (size_t i = 0; i < library.size(); ++i) {
        isAlike = isAlike && library.isInitialised(i) == oracle.isInitialised(i) &&
                  (!library.isInitialised(i) || library.data()[i] == oracle.data()[i]);
    }
    expect(isAlike, pair, "a decode initialises other bytes than arrived");
}

}  // namespace
}  // namespace zrp_test

int main() {
    using namespace zrp_test;
    for (const TypePair& pair : typePairs()) {
        for (const SampleRecord& sample : sampleRecords(pair, 4)) {
            checkOutput(sample);
        }
        for (const SampleInput& sample : sampleInputs(pair, 6)) {
            checkInput(sample);
        }
    }
    printf("%zu checks, %d failures\n", checks, failures);
    return failures == 0 ? 0 : 1;
}
