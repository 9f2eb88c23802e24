#include "tests/hardening/instrumented/samples.h"

#include "tests/differential/rearrange.h"
#include "tests/differential/wire_generator.h"
#include "tests/oracle/oracle.h"
#include "tests/oracle/record.h"

namespace zrp_test {

namespace {

using zrp_oracle::Type;

Bytes reversedMessage(const Type& type, const Bytes& message) {
    Bytes out(message.begin(), message.begin() + 5);
    const Bytes fields = reversed(type, Bytes(message.begin() + 5, message.end()));
    out.insert(out.end(), fields.begin(), fields.end());
    return out;
}

/// With the declared length that fits.
Bytes declared(Bytes bytes) {
    if (bytes.size() >= 5) {
        putLength(bytes, 1, bytes.size());
    }
    return bytes;
}

}  // namespace

Bytes encoded(const TypePair& pair, const Subject& subject, bool varint) {
    Bytes bytes(zrp_oracle::largestSize(*pair.oracle, varint) + subject.record.size());
    size_t used = 0;
    (void)pair.library->pack(subject.record.data(), subject.selector, bytes.data(), bytes.size(),
                             &used, varint);
    bytes.resize(used);
    return bytes;
}

std::vector<SampleRecord> sampleRecords(const TypePair& pair, uint64_t rounds) {
    std::vector<SampleRecord> samples;
    for (size_t variant = 0; variant < variantCount(*pair.oracle); ++variant) {
        for (uint64_t round = 0; round < rounds; ++round) {
            Random random(variant * 1000 + round);
            for (const Soundness soundness : {Soundness::sound, Soundness::doubtful}) {
                samples.push_back({pair, randomSubject(pair, random, variant, soundness),
                                   soundness == Soundness::sound});
            }
        }
    }
    return samples;
}

std::vector<SampleInput> sampleInputs(const TypePair& pair, uint64_t rounds) {
    std::vector<SampleInput> samples;
    const auto add = [&](const Bytes& bytes) { samples.push_back({pair, bytes}); };
    Random random(rounds);
    for (const SampleRecord& sample : sampleRecords(pair, rounds)) {
        for (const bool varint : {true, false}) {
            const Bytes whole = encoded(pair, sample.subject, varint);
            add(whole);
            if (sample.isSound) {
                add(reversedMessage(*pair.oracle, whole));
            }
            Bytes cut = whole;
            cut.resize(static_cast<size_t>(random.below(whole.size() + 1)));
            add(declared(cut));
            add(declared(mutated(whole, random)));
            add(declared(mutated(whole, random)));
            WireGenerator generator(random, varint);
            add(generator.message(*pair.oracle));
            add(declared(mutated(generator.message(*pair.oracle), random)));
        }
    }
    return samples;
}

}  // namespace zrp_test
