// Every operation of every type, done by the library and by the plain oracle of the tests: results,
// used sizes, selectors, every byte of records and outputs, every call of a formatting function.
#include <iterator>

#include "fuzz/support/record_builder.h"
#include "fuzz/support/require.h"
#include "tests/differential/compare.h"
#include "tests/oracle/oracle.h"

namespace zrp_fuzz {

namespace {

using zrp_test::Difference;
using zrp_test::DumpStyle;

void agree(const Difference& difference) {
    require(difference.empty(), difference);
}

/// What to decode into: noise, or a constructed record.
Subject chosenTarget(const TypePair& type, Input& input) {
    Subject target = noise(type, input.byte());
    if (input.flag()) {
        target.selector = type.oracle->fields[input.choice(type.oracle->fields.size())].number;
        zrp_oracle::construct(*type.oracle, target.record.data(), target.selector);
    }
    return target;
}

/// A buffer size: of no relation to anything, plenty, or next to what the record takes.
size_t chosenSize(const TypePair& type, const Subject& record, bool varint, Input& input) {
    const size_t number = static_cast<size_t>(input.number(2));
    if (number % 4 == 0) {
        return number / 4 % 64;
    }
    Bytes bytes(roomFor(type) + 16);
    if (number % 4 == 1) {
        return bytes.size() + number / 4 % 8;
    }
    size_t used = 0;
    zrp_oracle::pack(*type.oracle, record.record.data(), record.selector, bytes.data(),
                     bytes.size(), &used, varint);
    const size_t below = number / 4 % 8192;
    return used + 8 - std::min(below, used + 8);
}

void compareEncoding(const TypePair& type, const Subject& record, Input& input) {
    const bool varint = input.flag();
    const size_t start = input.choice(64);
    const size_t size = chosenSize(type, record, varint, input);
    agree(comparePack(type, record, size, varint));
    agree(comparePackFields(type, record, start, start + size, varint));
}

void compareDump(const TypePair& type, const Subject& record, Input& input) {
    const int indent = static_cast<int>(input.number(4));
    const char separator = static_cast<char>(input.byte());
    const size_t size = static_cast<size_t>(input.number(2)) % 16384;
    const size_t failingCall = input.flag() ? input.byte() : SIZE_MAX;
    const size_t start = input.choice(64);
    agree(compareVisualize(type, record, {indent, separator, size, failingCall}));
    agree(
        compareVisualizeFrom(type, record, start, {indent, separator, start + size, failingCall}));
}

void decodeAny(const TypePair& type, Input& input) {
    const Subject target = chosenTarget(type, input);
    agree(compareUnpack(type, target, wireBytes(input)));
}

/// What arrived is also encoded and printed.
void decodeAndGoOn(const TypePair& type, Input& input) {
    const Subject target = chosenTarget(type, input);
    const bool varint = input.flag();
    const size_t size = static_cast<size_t>(input.number(2)) % 8192;
    Subject received;
    agree(compareUnpack(type, target, wireBytes(input), &received));
    zrp_test::limitTrailingBody(*type.oracle, received.record.data());
    agree(comparePack(type, received, size, varint));
    agree(compareVisualize(type, received, {0, '\n', size}));
}

void decodeFields(const TypePair& type, Input& input) {
    const Subject target = chosenTarget(type, input);
    const bool varint = input.flag();
    const size_t skipped = input.byte();
    // Also lengths near the largest that a size can be.
    const size_t beyond = static_cast<size_t>(static_cast<int8_t>(input.byte()));
    const Bytes bytes = input.takeRest();
    const size_t start = skipped % (bytes.size() + 1);
    agree(compareUnpackFields(type, target, bytes, start, bytes.size() - start + beyond, varint));
}

void encodeRecord(const TypePair& type, Input& input) {
    const Subject record = buildRecord(type, input, Soundness::doubtful);
    compareEncoding(type, record, input);
}

void printRecord(const TypePair& type, Input& input) {
    const Subject record = buildRecord(type, input, Soundness::doubtful);
    compareDump(type, record, input);
}

void construct(const TypePair& type, Input& input) {
    Subject target = noise(type, input.byte());
    target.selector = input.flag()
                          ? static_cast<long long>(input.integer())
                          : type.oracle->fields[input.choice(type.oracle->fields.size())].number;
    agree(compareConstruct(type, target));
}

void workWithoutMemory(const TypePair& type, Input& input) {
    const bool varint = input.flag();
    agree(compareWithoutMemory(type, buildRecord(type, input, Soundness::doubtful), varint));
}

constexpr void (*operations[])(const TypePair&, Input&) = {
    decodeAny,    decodeAny,   decodeFields, decodeAndGoOn,
    encodeRecord, printRecord, construct,    workWithoutMemory,
};

void run(Input input) {
    const TypePair& type = chosenType(input);
    operations[input.choice(std::size(operations))](type, input);
}

}  // namespace

}  // namespace zrp_fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t count) {
    zrp_fuzz::run({bytes, count});
    return 0;
}
