/// A plain second implementation of the message layer: tables of fields and an interpreter that
/// goes through them step by step, one byte at a time. It exists to be compared with the library:
/// results, used sizes, every byte of output buffers and records. Slow on purpose where slow is
/// obvious.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <vector>

#include "tests/oracle/catalogue.h"
#include "tests/oracle/cursor.h"
#include "tests/support/recorder.h"

namespace zrp_oracle {

// `record` points at a record of `type`. `selector` matters for unions only; where it is a pointer
// it may be null for structures.

int construct(const Type& type, void* record, long long selector);

int pack(const Type& type, const void* record, long long selector, char* buffer, size_t size,
         size_t* used, bool varint);
/// The fields alone, without envelope, from where the cursor stands.
int packFields(const Type& type, const void* record, long long selector, OutputCursor& out,
               bool varint);

int unpack(const Type& type, void* record, long long* selector, const char* buffer, size_t size,
           size_t* used);
/// The fields alone, from where the cursor stands until `length` bytes are consumed.
int unpackFields(const Type& type, void* record, long long* selector, InputCursor& in,
                 uint64_t length, bool varint);

/// The largest encoding, envelope included, by the rule; nothing is looked up.
size_t largestSize(const Type& type, bool varint);

/// What the formatting functions are told during a dump.
struct PrintLog {
    std::vector<zrp_test::PrintCall> calls;
    size_t failingIndex = SIZE_MAX;
    int failingResult = 0;

    /// Makes the call with this index (counted from 0) write nothing and return `result`.
    void failAt(size_t index, int result) {
        failingIndex = index;
        failingResult = result;
    }
};

/// The dump as the recording formatting functions of the tests leave it in the buffer.
int visualize(const Type& type, const void* record, long long selector, OutputCursor& out,
              int indent, char separator, PrintLog& log);
int visualizeInto(const Type& type, const void* record, long long selector, char* buffer,
                  size_t size, size_t* used, int indent, char separator, PrintLog& log);

}  // namespace zrp_oracle
