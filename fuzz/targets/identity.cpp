// Builds a sound record field by field, encodes it and decodes it over noise: every field that
// travels arrives, every presence bit says so, and the encoding takes exactly its room.
#include "fuzz/support/live_fields.h"
#include "fuzz/support/record_builder.h"
#include "fuzz/support/require.h"
#include "tests/oracle/record.h"

namespace zrp_fuzz {

namespace {

/// No body behind a frame: decoders take it for fields.
void dropTrailingBody(const TypePair& type, Subject& record) {
    if (hasTrailingBody(type)) {
        zrp_oracle::setValueAt(record.record.data(), type.oracle->fields.back().governor, 0);
    }
}

void checkRoom(const TypePair& type, const Subject& sent, const Bytes& encoding, bool varint) {
    size_t largest = 0;
    const int result = type.library->maxPackedSize(sent.record.data(), &largest, varint);
    require(result == 0 && encoding.size() <= largest, type, ": takes ", encoding.size(),
            " bytes, the largest takes ", largest);

    Bytes exact(encoding.size());
    size_t used = 0;
    const int exactResult = type.library->pack(sent.record.data(), sent.selector, exact.data(),
                                               exact.size(), &used, varint);
    require(exactResult == 0 && used == exact.size() && exact == encoding, type,
            ": room of exactly its size gives result ", exactResult, ", used ", used, "\n  ",
            shown(encoding), "\n  ", shown(exact));

    Bytes tight(encoding.size() - 1);
    const int tightResult = type.library->pack(sent.record.data(), sent.selector, tight.data(),
                                               tight.size(), &used, varint);
    require(tightResult == zrp_oracle::noRoom && used < encoding.size(), type,
            ": room of a byte less gives result ", tightResult, ", used ", used);
}

void checkArrival(const TypePair& type, const Subject& sent, const Bytes& encoding, uint8_t seed) {
    Subject received = noise(type, seed);
    size_t used = 0;
    const int result = type.library->unpack(received.record.data(), &received.selector,
                                            encoding.data(), encoding.size(), &used);
    require(result == 0 && used == encoding.size(), type, ": decodes with result ", result,
            ", used ", used, "\n  ", shown(encoding));
    require(!type.oracle->isUnion || received.selector == sent.selector, type, ": selector ",
            sent.selector, " arrives as ", received.selector, "\n  ", shown(encoding));
    const Field* const wrong =
        firstNotReceived(*type.oracle, sent.record.data(), received.record.data(), sent.selector);
    require(wrong == nullptr, type,
            ": does not arrive as sent: ", wrong != nullptr ? wrong->label : "", "\n  ",
            shown(encoding), "\n  ", shown(sent.record), "\n  ", shown(received.record));
}

void run(Input input) {
    const TypePair& type = chosenType(input);
    const bool varint = input.flag();
    const uint8_t seed = input.byte();
    Subject sent = buildRecord(type, input, Soundness::sound);
    dropTrailingBody(type, sent);

    const Encoding encoding = encode(type, sent, varint);
    require(encoding.result == 0, type, ": a sound record encodes with result ", encoding.result,
            "\n  ", shown(sent.record));
    checkRoom(type, sent, encoding.bytes, varint);
    checkArrival(type, sent, encoding.bytes, seed);
}

}  // namespace

}  // namespace zrp_fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t count) {
    zrp_fuzz::run({bytes, count});
    return 0;
}
