// Decodes any bytes as any type. Beyond not falling: only documented results, nothing read past the
// input, the same outcome each time, no byte of the record that depends on what was there before.
#include <string.h>

#include "fuzz/support/live_fields.h"
#include "fuzz/support/messages.h"
#include "fuzz/support/require.h"
#include "tests/oracle/record.h"

namespace zrp_fuzz {

namespace {

constexpr size_t envelopeSize = 5;
constexpr size_t unset = 0x5E75E75E;

struct Decoded {
    Subject target;
    int result;
    size_t used;

    bool operator==(const Decoded& other) const {
        return result == other.result && used == other.used &&
               target.selector == other.target.selector && target.record == other.target.record;
    }
};

std::ostream& operator<<(std::ostream& out, const Decoded& decoded) {
    return out << "\n  result " << decoded.result << ", used " << decoded.used << ", selector "
               << decoded.target.selector << "\n  " << shown(decoded.target.record);
}

Decoded decode(const TypePair& type, const Subject& before, const Bytes& bytes) {
    Decoded decoded{before, 0, unset};
    decoded.result =
        type.library->unpack(decoded.target.record.data(), &decoded.target.selector,
                             bytes.empty() ? "" : bytes.data(), bytes.size(), &decoded.used);
    return decoded;
}

/// The same through the decoder of the fields, from behind the envelope.
Decoded decodeFields(const TypePair& type, const Subject& before, const Bytes& bytes) {
    Decoded decoded{before, 0, 0};
    Quorva::BrxReadBuf buf(bytes.data(), bytes.size());
    buf.position = envelopeSize;
    decoded.result = type.library->unpackFields(
        decoded.target.record.data(), &decoded.target.selector, buf,
        declaredLength(bytes) - envelopeSize, static_cast<uint8_t>(bytes[0]) == 0xAA);
    decoded.used = buf.position;
    return decoded;
}

/// What the envelope alone decides: a result, or 0 where the fields are reached.
int envelopeResult(const Bytes& bytes) {
    if (bytes.size() < envelopeSize) {
        return zrp_oracle::noData;
    }
    const uint8_t magic = static_cast<uint8_t>(bytes[0]);
    if (magic != zrp_oracle::varintMagic && magic != zrp_oracle::fixedMagic) {
        return zrp_oracle::badMagic;
    }
    return declaredLength(bytes) > bytes.size() ? zrp_oracle::noData : 0;
}

bool isDocumented(int result) {
    switch (result) {
        case 0:
        case zrp_oracle::noData:
        case zrp_oracle::textTooLong:
        case zrp_oracle::lengthMismatch:
        case zrp_oracle::badTypeId:
        case zrp_oracle::zeroLength:
            return true;
        default:
            return false;
    }
}

void checkUsedSize(const TypePair& type, const Decoded& decoded, const Bytes& bytes) {
    const size_t declared = declaredLength(bytes);
    require(decoded.used >= envelopeSize && decoded.used <= bytes.size(), type,
            ": the used size is not within the input", decoded);
    if (decoded.result != 0) {
        return;
    }
    require(decoded.used <= declared, type, ": success past the declared length", decoded);
    require(type.oracle->isUnion || decoded.used == declared, type,
            ": success before the declared length", decoded);
}

template <class Unsigned>
Unsigned load(const Bytes& bytes, size_t at) {
    Unsigned value = 0;
    memcpy(&value, bytes.data() + at, sizeof(value));
    return value;
}

/// Each byte was either written, and is the same in both records, or was left alone, and is what it
/// was and the opposite.
template <class Unsigned>
bool isIndependent(const Bytes& before, const Bytes& first, const Bytes& second, size_t at) {
    const Unsigned held = load<Unsigned>(before, at);
    const Unsigned one = load<Unsigned>(first, at);
    const Unsigned other = load<Unsigned>(second, at);
    return one == other || (one == held && other == static_cast<Unsigned>(~held));
}

bool areIndependent(const Bytes& before, const Bytes& first, const Bytes& second) {
    constexpr size_t step = sizeof(uint64_t);
    for (size_t at = 0; at < before.size(); ++at) {
        // Most bytes go eight at a time.
        if (at % step == 0 && before.size() - at >= step &&
            isIndependent<uint64_t>(before, first, second, at)) {
            at += step - 1;
        } else if (!isIndependent<uint8_t>(before, first, second, at)) {
            return false;
        }
    }
    return true;
}

/// `first` and `second` were the opposite of each other before the same decode.
void checkIndependence(const TypePair& type, const Subject& before, const Decoded& first,
                       const Decoded& second) {
    require(first.result == second.result && first.used == second.used, type,
            ": the outcome depends on what the record held", first, second);
    require(areIndependent(before.record, first.target.record, second.target.record), type,
            ": what is in the record depends on what was there", first, second);
    if (!type.oracle->isUnion || first.result != 0) {
        require(
            first.target.selector == before.selector && second.target.selector == ~before.selector,
            type, ": the selector changed", first, second);
    } else {
        require(first.target.selector == second.target.selector && first.target.selector >= 0 &&
                    first.target.selector < 1 << 28,
                type, ": the selector is not the number of a field", first, second);
    }
    if (first.result == 0) {
        const Field* const missing =
            firstNotWritten(*type.oracle, first.target.record.data(), second.target.record.data(),
                            first.target.selector);
        require(missing == nullptr, type, ": a field that is present was not written: ",
                missing != nullptr ? missing->label : "", first, second);
    }
}

void run(Input input) {
    const TypePair& type = chosenType(input);
    const Subject before = noise(type, input.byte());
    const Bytes bytes = wireBytes(input);

    const Decoded first = decode(type, before, bytes);
    require(first == decode(type, before, bytes), type, ": two decodes differ", first);
    const int refusal = envelopeResult(bytes);
    if (refusal != 0) {
        require(first == Decoded{before, refusal, unset}, type, ": a bad envelope gives ", refusal,
                " and touches nothing", first);
        return;
    }
    require(isDocumented(first.result), type, ": no documented result of decoding", first);
    checkUsedSize(type, first, bytes);
    checkIndependence(type, before, first, decode(type, opposite(before), bytes));
    // A declared length below the envelope wraps around in 64 bits; no size_t of 32 bits says so.
    if (declaredLength(bytes) >= envelopeSize) {
        const Decoded fields = decodeFields(type, before, bytes);
        require(first == fields, type, ": the decoder of the fields does otherwise", first, fields);
    }
}

}  // namespace

}  // namespace zrp_fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t count) {
    zrp_fuzz::run({bytes, count});
    return 0;
}
