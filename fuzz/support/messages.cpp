#include "fuzz/support/messages.h"

#include <array>

#include "fuzz/support/require.h"
#include "tests/oracle/record.h"

namespace zrp_fuzz {

namespace {

constexpr size_t envelopeSize = 5;

/// Bytes that look like nothing in particular, the same in every run.
constexpr size_t noiseSize = 8192;

std::array<char, noiseSize> makeNoise() {
    std::array<char, noiseSize> bytes{};
    uint64_t state = 1;
    for (char& byte : bytes) {
        state = state * UINT64_C(6364136223846793005) + UINT64_C(1442695040888963407);
        byte = static_cast<char>(state >> 56);
    }
    return bytes;
}

}  // namespace

const std::vector<TypePair>& numberedTypes() {
    static const std::vector<TypePair> pairs = [] {
        std::vector<TypePair> found;
        for (const zrp_oracle::Type* type : zrp_oracle::types()) {
            found.push_back({&zrp_test::messageType(type->name), type});
        }
        return found;
    }();
    return pairs;
}

const TypePair& chosenType(Input& input) {
    return numberedTypes()[input.choice(numberedTypes().size())];
}

bool hasTrailingBody(const TypePair& type) {
    return zrp_test::recordSize(type) != type.library->objectSize;
}

Subject noise(const TypePair& type, uint8_t seed) {
    static const std::array<char, noiseSize> bytes = makeNoise();
    const char* const from = bytes.data() + seed;
    require(seed + zrp_test::recordSize(type) <= noiseSize, "more noise is needed for ", type);
    return {Bytes(from, from + zrp_test::recordSize(type)), seed * 0x0101010101LL};
}

Subject opposite(const Subject& record) {
    Subject flipped = record;
    for (char& byte : flipped.record) {
        byte = static_cast<char>(~byte);
    }
    flipped.selector = ~record.selector;
    return flipped;
}

Bytes wireBytes(Input& input) {
    enum { whole, cutShort, someBehind, ownEnvelope };
    const uint8_t choices = input.byte();
    const unsigned way = choices % 4;
    const bool varint = (choices & 4) == 0;
    const size_t count = std::min<size_t>(choices / 8 + 1, input.restSize());
    if (way == ownEnvelope) {
        return input.takeRest();
    }
    Bytes bytes(envelopeSize + input.restSize() - (way == cutShort ? count : 0));
    if (bytes.size() != envelopeSize) {
        memcpy(bytes.data() + envelopeSize, input.rest(), bytes.size() - envelopeSize);
    }
    const size_t declared = bytes.size() - (way == someBehind ? count : 0);
    bytes[0] = static_cast<char>(varint ? zrp_oracle::varintMagic : zrp_oracle::fixedMagic);
    for (size_t i = 0; i < 4; ++i) {
        bytes[1 + i] = static_cast<char>(declared >> (8 * (3 - i)));
    }
    return bytes;
}

uint32_t declaredLength(const Bytes& encoding) {
    uint32_t length = 0;
    for (size_t i = 1; i < envelopeSize; ++i) {
        length = length << 8 | static_cast<uint8_t>(encoding[i]);
    }
    return length;
}

size_t roomFor(const TypePair& type) {
    const size_t trailing = zrp_test::recordSize(type) - type.library->objectSize;
    return std::max(type.library->maxVarint, type.library->maxFixed) + trailing;
}

Encoding encode(const TypePair& type, const Subject& record, bool varint) {
    Encoding encoding{0, Bytes(roomFor(type))};
    size_t used = 0;
    encoding.result =
        type.library->pack(record.record.data(), record.selector, encoding.bytes.data(),
                           encoding.bytes.size(), &used, varint);
    encoding.bytes.resize(used);
    return encoding;
}

}  // namespace zrp_fuzz
