// Decodes any bytes, and where the record can be encoded, encodes and decodes again: from then on
// nothing changes any more, in neither flavour.
#include "fuzz/support/messages.h"
#include "fuzz/support/require.h"
#include "tests/oracle/record.h"

namespace zrp_fuzz {

namespace {

/// The record that an encoding of the library gives over noise; it must be taken whole.
Subject decodeWhole(const TypePair& type, const Encoding& encoding, uint8_t seed) {
    Subject record = noise(type, seed);
    if (!type.oracle->isUnion) {
        record.selector = 0;
    }
    size_t used = 0;
    const int result = type.library->unpack(record.record.data(), &record.selector,
                                            encoding.bytes.data(), encoding.bytes.size(), &used);
    require(result == 0 && used == encoding.bytes.size(), type,
            ": its own encoding decodes with result ", result, ", used ", used, "\n  ",
            shown(encoding.bytes));
    return record;
}

bool isRefusalOfARecord(int result) {
    return result == zrp_oracle::textTooLong || result == zrp_oracle::referTooBig ||
           result == zrp_oracle::badSelector;
}

bool bodyFollows(const TypePair& type, const Subject& record) {
    return hasTrailingBody(type) &&
           zrp_oracle::elementCount(type.oracle->fields.back(), record.record.data()) != 0;
}

void run(Input input) {
    const TypePair& type = chosenType(input);
    const uint8_t seed = input.byte();
    Subject record = noise(type, seed);
    const Bytes bytes = wireBytes(input);
    size_t used = 0;
    // A decode that fails on its way leaves a record that is as good as any other.
    (void)type.library->unpack(record.record.data(), &record.selector,
                               bytes.empty() ? "" : bytes.data(), bytes.size(), &used);
    zrp_test::limitTrailingBody(*type.oracle, record.record.data());

    const Encoding varints = encode(type, record, true);
    const Encoding fixed = encode(type, record, false);
    require(varints.result == fixed.result, type, ": one flavour gives ", varints.result,
            ", the other ", fixed.result, "\n  ", shown(record.record));
    if (varints.result != 0) {
        require(isRefusalOfARecord(varints.result), type, ": encoding with all room gives ",
                varints.result, "\n  ", shown(record.record));
        return;
    }
    // Decoders take the body behind a frame for fields: it comes back through TZRPInFrame only.
    if (bodyFollows(type, record)) {
        return;
    }
    require(varints.bytes.size() <= type.library->maxVarint &&
                fixed.bytes.size() <= type.library->maxFixed,
            type, ": larger than the largest encoding\n  ", shown(varints.bytes), "\n  ",
            shown(fixed.bytes));
    for (const Encoding* const sent : {&varints, &fixed}) {
        const Subject received = decodeWhole(type, *sent, static_cast<uint8_t>(seed + 1));
        const Encoding againVarints = encode(type, received, true);
        const Encoding againFixed = encode(type, received, false);
        require(againVarints.result == 0 && againVarints.bytes == varints.bytes, type,
                ": what was decoded encodes otherwise with varints, result ", againVarints.result,
                "\n  ", shown(varints.bytes), "\n  ", shown(againVarints.bytes));
        require(againFixed.result == 0 && againFixed.bytes == fixed.bytes, type,
                ": what was decoded encodes otherwise without varints, result ", againFixed.result,
                "\n  ", shown(fixed.bytes), "\n  ", shown(againFixed.bytes));
    }
}

}  // namespace

}  // namespace zrp_fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t count) {
    zrp_fuzz::run({bytes, count});
    return 0;
}
