#include <string.h>

#include "Common/Source/Core/BRX/BrxBuf.h"
#include "tests/hardening/exhaustion/model.h"
#include "tests/hardening/exhaustion/sweeps.h"
#include "tests/support/bytes.h"

namespace zrp_test {

using Quorva::BrxReadBuf;
using Quorva::BrxWriteBuf;

namespace {

/// One value through one writer into bytes and through the reader of the same kind out of them.
/// The room and the input are as long as the encoding and no longer.
class RoundTrip {
  public:
    template <class Value, class Reader>
    bool agrees(const Encoded& expected, Value value, int32_t (BrxWriteBuf::*write)(Value),
                Reader read) {
        char written[sizeof(expected.bytes)];
        BrxWriteBuf out(written, expected.size);
        if ((out.*write)(value) != 0 || out.position != expected.size ||
            memcmp(written, expected.bytes, expected.size) != 0) {
            return false;
        }
        char input[sizeof(expected.bytes)];
        memcpy(input, expected.bytes, expected.size);
        BrxReadBuf in(input, expected.size);
        Value back = static_cast<Value>(~value);
        return (in.*read)(back) == 0 && in.position == expected.size && back == value;
    }
};

/// A value into a hole, which moves nothing.
bool fillsHole(const Encoded& expected, uint32_t value) {
    char written[4];
    BrxWriteBuf out(written, sizeof(written));
    return out.writeUInt32(value, 0) == 0 && out.position == 0 &&
           memcmp(written, expected.bytes, sizeof(written)) == 0;
}

const char* failing16BitOperation(uint16_t value) {
    RoundTrip trip;
    if (!trip.agrees(fixedModel(value, 2), value, &BrxWriteBuf::writeUInt16,
                     &BrxReadBuf::readUInt16)) {
        return "UInt16";
    }
    if (!trip.agrees(varintModel(value), value, &BrxWriteBuf::writeVarUInt16,
                     &BrxReadBuf::readVarUInt16)) {
        return "VarUInt16";
    }
    return nullptr;
}

const char* failing32BitOperation(uint32_t value) {
    RoundTrip trip;
    // The same bits as a signed number, by arithmetic.
    const int64_t number =
        value < 0x80000000 ? int64_t{value} : int64_t{value} - INT64_C(0x100000000);
    const int32_t narrow = static_cast<int32_t>(number);
    const Encoded fixed = fixedModel(value, 4);
    const Encoded varint = varintModel(value);
    const Encoded signedVarint = signedVarintModel(number);
    using WriteUnsigned = int32_t (BrxWriteBuf::*)(uint32_t);
    if (!trip.agrees(fixed, value, static_cast<WriteUnsigned>(&BrxWriteBuf::writeUInt32),
                     &BrxReadBuf::readUInt32)) {
        return "UInt32";
    }
    if (!fillsHole(fixed, value)) {
        return "UInt32 at a position";
    }
    if (!trip.agrees(fixed, narrow, &BrxWriteBuf::writeInt32, &BrxReadBuf::readInt32)) {
        return "Int32";
    }
    if (!trip.agrees(varint, value, &BrxWriteBuf::writeVarUInt32, &BrxReadBuf::readVarUInt32)) {
        return "VarUInt32";
    }
    if (!trip.agrees(signedVarint, narrow, &BrxWriteBuf::writeVarInt32,
                     &BrxReadBuf::readVarInt32)) {
        return "VarInt32";
    }
    const uint64_t wide = value;
    if (!trip.agrees(fixedModel(wide, 8), wide, &BrxWriteBuf::writeUInt64,
                     &BrxReadBuf::readUInt64)) {
        return "UInt64";
    }
    const uint64_t complement = static_cast<uint64_t>(number);
    if (!trip.agrees(fixedModel(complement, 8), number, &BrxWriteBuf::writeInt64,
                     &BrxReadBuf::readInt64)) {
        return "Int64";
    }
    if (!trip.agrees(varint, wide, &BrxWriteBuf::writeVarUInt64, &BrxReadBuf::readVarUInt64)) {
        return "VarUInt64";
    }
    if (!trip.agrees(signedVarint, number, &BrxWriteBuf::writeVarInt64,
                     &BrxReadBuf::readVarInt64)) {
        return "VarInt64";
    }
    return nullptr;
}

template <class Check>
std::string sweepValues(Sample values, Check failingOperation) {
    for (uint64_t value = values.first; value < values.limit; value += values.step) {
        if (const char* const operation = failingOperation(value)) {
            return std::string(operation) + " does not carry the value " + std::to_string(value);
        }
    }
    return "";
}

/// What a reader did with an input.
template <class Value, class Reader>
bool readsAs(const char* input, size_t size, const ReadVarint& expected, Value value,
             bool neverFails, Reader read) {
    BrxReadBuf in(input, size);
    Value found = static_cast<Value>(~value);
    const int32_t result = (in.*read)(found);
    const int32_t expectedResult = expected.used != 0 || neverFails ? 0 : -2;
    return result == expectedResult && in.position == expected.used && found == value;
}

const char* failingReader(const char* input, size_t size) {
    unsigned char bytes[3];
    memcpy(bytes, input, size);
    const ReadVarint narrow = readVarintModel(bytes, size, true);
    if (!readsAs(input, size, narrow, static_cast<uint16_t>(narrow.value), false,
                 &BrxReadBuf::readVarUInt16)) {
        return "readVarUInt16";
    }
    const ReadVarint wide = readVarintModel(bytes, size, false);
    const int64_t number = signedOf(wide.value);
    if (!readsAs(input, size, wide, static_cast<uint32_t>(wide.value), false,
                 &BrxReadBuf::readVarUInt32)) {
        return "readVarUInt32";
    }
    if (!readsAs(input, size, wide, static_cast<int32_t>(number), false,
                 &BrxReadBuf::readVarInt32)) {
        return "readVarInt32";
    }
    if (!readsAs(input, size, wide, number, false, &BrxReadBuf::readVarInt64)) {
        return "readVarInt64";
    }
    if (!readsAs(input, size, wide, wide.value, true, &BrxReadBuf::readVarUInt64)) {
        return "readVarUInt64";
    }
    size_t used = 77;
    uint64_t value = ~wide.value;
    BrxReadBuf::decode_64_var(input, size, used, value, 0);
    return used == wide.used && value == wide.value ? nullptr : "decode_64_var";
}

}  // namespace

std::string sweep16BitValues(Sample values) {
    return sweepValues(
        values, [](uint64_t value) { return failing16BitOperation(static_cast<uint16_t>(value)); });
}

std::string sweep32BitValues(Sample values) {
    return sweepValues(
        values, [](uint64_t value) { return failing32BitOperation(static_cast<uint32_t>(value)); });
}

std::string sweepVarintInputs(size_t length, Sample strings) {
    // Exactly as long as the input, so that a sanitizer sees a read past its end.
    Bytes input(length);
    for (uint64_t string = strings.first; string < strings.limit; string += strings.step) {
        const Encoded bytes = fixedModel(string, length);
        memcpy(input.data(), bytes.bytes, length);
        if (const char* const reader = failingReader(input.data(), length)) {
            return std::string(reader) + " misreads " + toHex(input);
        }
    }
    return "";
}

}  // namespace zrp_test
