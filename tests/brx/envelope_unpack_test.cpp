// Checking the envelope: what is refused before anything is decoded, and declared lengths that do
// not match the fields.
#include <gtest/gtest.h>
#include <string.h>

#include <ostream>
#include <string>

#include "protocol/quorva_zrp.h"
#include "tests/support/bytes.h"

namespace zrp_test {

using quorva_zrp::TVESKIDValue;
using quorva_zrp::TZRPBase;
using quorva_zrp::TZRPCStopBody;

namespace {

constexpr size_t unset = 12345;
constexpr uint32_t before = 77;

/// A stop notice that a decode has yet to change: every bit of its presence word is set.
TZRPCStopBody untouchedStop() {
    TZRPCStopBody stop{};
    stop.dwReserved = before;
    stop.presence = 0xFFFFFFFF;
    return stop;
}

/// What one decode of a stop notice gives.
struct StopDecode {
    const char* name;
    const char* bytes;
    int result;
    size_t used;
    uint32_t reserved;
    uint32_t presence;

    friend void PrintTo(const StopDecode& row, std::ostream* out) { *out << row.name; }
};

/// What one decode of an account identifier gives that held dwUINT32 77 under selector 42.
struct IdentifierDecode {
    const char* name;
    const char* bytes;
    int result;
    size_t used;
    uint32_t value;
    long long selector;

    friend void PrintTo(const IdentifierDecode& row, std::ostream* out) { *out << row.name; }
};

template <class Row>
std::string rowName(const testing::TestParamInfo<Row>& row) {
    return row.param.name;
}

}  // namespace

// --- Refused before anything is decoded ---------------------------------------------------------

TEST(UnpackEnvelope, RefusesANullBufferWithoutTouchingAnything) {
    TZRPCStopBody stop = untouchedStop();
    TVESKIDValue identifier{};
    identifier.dwUINT32 = before;
    long long selector = 42;
    size_t used = unset;
    for (const size_t size : {size_t{0}, size_t{4}, size_t{100}}) {
        SCOPED_TRACE(size);
        EXPECT_EQ(stop.unpackTLV(nullptr, size, &used), -19);
        EXPECT_EQ(TZRPBase{}.unpackTLV(nullptr, size, &used), -19);
        EXPECT_EQ(identifier.unpackTLV(selector, nullptr, size, &used), -19);
        EXPECT_EQ(stop.unpackTLV(nullptr, size, nullptr), -19);
    }
    EXPECT_EQ(used, unset);
    EXPECT_EQ(stop.dwReserved, before);
    EXPECT_EQ(stop.presence, 0xFFFFFFFF);
    EXPECT_EQ(identifier.dwUINT32, before);
    EXPECT_EQ(selector, 42);
}

struct Refusal {
    const char* name;
    const char* bytes;
    int result;

    friend void PrintTo(const Refusal& row, std::ostream* out) { *out << row.name; }
};

const Refusal refusals[] = {
    {"NoBytes", "", -2},
    {"OneByte", "AA", -2},
    {"FourBytes", "AA 00 00 00", -2},
    {"FourBytesOfBadMagic", "AB 00 00 00", -2},
    {"OneByteFewerThanDeclared", "AA 00 00 00 08 10 05", -2},
    {"OneByteFewerThanDeclaredFixed", "99 00 00 00 0B 13 00 00 00 05", -2},
    {"OneMoreByteThanTheHeaderDeclared", "AA 00 00 00 06", -2},
    {"LargestDeclaredLength", "AA FF FF FF FF 10 05", -2},
    {"DeclaredLengthInItsHighestByte", "AA 07 00 00 00 10 05", -2},
    {"MagicAB", "AB 00 00 00 07 10 05", -32},
    {"MagicA9", "A9 00 00 00 07 10 05", -32},
    {"Magic98", "98 00 00 00 07 10 05", -32},
    {"Magic9A", "9A 00 00 00 07 10 05", -32},
    {"Magic00", "00 00 00 00 07 10 05", -32},
    {"MagicFF", "FF 00 00 00 07 10 05", -32},
    {"BadMagicBeforeTooLongALength", "AB FF FF FF FF 10 05", -32},
};

class RefusedEnvelope : public testing::TestWithParam<Refusal> {
  protected:
    const Bytes input_ = hex(GetParam().bytes);
};
INSTANTIATE_TEST_SUITE_P(All, RefusedEnvelope, testing::ValuesIn(refusals), rowName<Refusal>);

TEST_P(RefusedEnvelope, TouchesNeitherStructureNorUsedSize) {
    TZRPCStopBody stop = untouchedStop();
    size_t used = unset;
    // A vector without elements has no address to give.
    const char* const begin = input_.empty() ? "" : input_.data();
    EXPECT_EQ(stop.unpackTLV(begin, input_.size(), &used), GetParam().result);
    EXPECT_EQ(stop.unpackTLV(begin, input_.size(), nullptr), GetParam().result);
    EXPECT_EQ(used, unset);
    EXPECT_EQ(stop.dwReserved, before);
    EXPECT_EQ(stop.presence, 0xFFFFFFFF);
}

TEST_P(RefusedEnvelope, TouchesNeitherUnionNorSelectorNorUsedSize) {
    TVESKIDValue identifier;
    memset(&identifier, 0x5A, sizeof(identifier));
    long long selector = 42;
    size_t used = unset;
    const char* const begin = input_.empty() ? "" : input_.data();
    EXPECT_EQ(identifier.unpackTLV(selector, begin, input_.size(), &used), GetParam().result);
    EXPECT_EQ(used, unset);
    EXPECT_EQ(selector, 42);
    const std::string expected(sizeof(identifier), 0x5A);
    EXPECT_EQ(memcmp(&identifier, expected.data(), sizeof(identifier)), 0);
}

// --- Decoded ------------------------------------------------------------------------------------

const StopDecode stopDecodes[] = {
    {"NoField", "AA 00 00 00 05", 0, 5, before, 0},
    {"NoFieldFixed", "99 00 00 00 05", 0, 5, before, 0},
    {"NoFieldAndMoreInput", "AA 00 00 00 05 10 05", 0, 5, before, 0},
    {"OneField", "AA 00 00 00 08 10 AC 02", 0, 8, 300, 1},
    {"OneFieldFixed", "99 00 00 00 0A 13 00 00 01 2C", 0, 10, 300, 1},
    {"TheMagicChoosesTheReaderNotTheTag", "AA 00 00 00 08 13 AC 02", 0, 8, 300, 1},
    {"TheMagicChoosesTheReaderNotTheTagFixed", "99 00 00 00 0A 10 00 00 01 2C", 0, 10, 300, 1},
    {"InputBehindTheDeclaredLength", "AA 00 00 00 07 10 05 10 06 FF", 0, 7, 5, 1},
    {"TheDeclaredLengthHasFourBytes", "AA 00 00 01 00 10 05", -2, unset, before, 0xFFFFFFFF},
    {"AFieldThatRunsPastTheDeclaredLength", "AA 00 00 00 06 10 AC 02", -34, 8, 300, 1},
    {"AFixedFieldThatRunsPastTheDeclaredLength", "99 00 00 00 08 13 00 00 01 2C", -34, 10, 300, 1},
    {"AFieldThatIsCutShort", "AA 00 00 00 06 10", -2, 6, 0, 1},
    {"AFixedFieldThatIsCutShort", "99 00 00 00 09 13 00 00 01", -2, 6, before, 1},
    {"ATagThatIsCutShort", "AA 00 00 00 08 10 05 80", -2, 7, 5, 1},
    {"AnUnknownFieldOfTypeFive", "AA 00 00 00 0B 25 00 00 00 01 FF", 0, 11, before, 0},
    {"AnUnknownFieldOfTypeSix", "AA 00 00 00 09 10 05 26 00", -35, 8, 5, 1},
    {"AnUnknownFieldCutShort", "AA 00 00 00 0A 25 00 00 00 02", -2, 10, before, 0},
    // Deliberate: a declared length that does not count its own header ends before the fields.
    {"DeclaredLengthZero", "AA 00 00 00 00 10 05", -34, 5, before, 0},
    {"DeclaredLengthOne", "AA 00 00 00 01 10 05", -34, 5, before, 0},
    {"DeclaredLengthTwo", "AA 00 00 00 02 10 05", -34, 5, before, 0},
    {"DeclaredLengthThree", "AA 00 00 00 03 10 05", -34, 5, before, 0},
    {"DeclaredLengthFour", "AA 00 00 00 04 10 05", -34, 5, before, 0},
    {"DeclaredLengthZeroFixed", "99 00 00 00 00 13 00 00 00 05", -34, 5, before, 0},
    {"DeclaredLengthFourFixed", "99 00 00 00 04 13 00 00 00 05", -34, 5, before, 0},
    {"DeclaredLengthZeroWithoutFields", "AA 00 00 00 00", -34, 5, before, 0},
    {"DeclaredLengthFourWithoutFields", "AA 00 00 00 04", -34, 5, before, 0},
};

class StructureEnvelope : public testing::TestWithParam<StopDecode> {};
INSTANTIATE_TEST_SUITE_P(All, StructureEnvelope, testing::ValuesIn(stopDecodes),
                         rowName<StopDecode>);

TEST_P(StructureEnvelope, BoundsItsFields) {
    const Bytes input = hex(GetParam().bytes);
    TZRPCStopBody stop = untouchedStop();
    size_t used = unset;
    EXPECT_EQ(stop.unpackTLV(input.data(), input.size(), &used), GetParam().result);
    EXPECT_EQ(used, GetParam().used);
    EXPECT_EQ(stop.dwReserved, GetParam().reserved);
    EXPECT_EQ(stop.presence, GetParam().presence);
}

TEST_P(StructureEnvelope, NeedsNoPlaceForTheUsedSize) {
    const Bytes input = hex(GetParam().bytes);
    TZRPCStopBody stop = untouchedStop();
    EXPECT_EQ(stop.unpackTLV(input.data(), input.size(), nullptr), GetParam().result);
    EXPECT_EQ(stop.dwReserved, GetParam().reserved);
    EXPECT_EQ(stop.presence, GetParam().presence);
}

TEST(UnpackEnvelope, BoundsABaseHeaderOfEitherFlavour) {
    for (const char* bytes :
         {"AA 00 00 00 1A 10 00 20 00 30 00 40 81 20 50 00 61 00 70 00 80 01 00 90 01 00",
          "99 00 00 00 29 12 00 00 22 00 00 32 00 00 42 10 01 53 00 00 00 00 61 00 "
          "73 00 00 00 00 83 01 00 00 00 00 93 01 00 00 00 00"}) {
        SCOPED_TRACE(bytes);
        const Bytes input = hex(bytes);
        TZRPBase base{};
        base.wMagic = 9;
        base.dwBodyLen = 9;
        size_t used = unset;
        EXPECT_EQ(base.unpackTLV(input.data(), input.size(), &used), 0);
        EXPECT_EQ(used, input.size());
        EXPECT_EQ(base.wMagic, 0);
        EXPECT_EQ(base.wCommand, 4097);
        EXPECT_EQ(base.dwBodyLen, 0U);
        EXPECT_EQ(base.presence, 0x1FFU);
    }
}

TEST(UnpackEnvelope, OfABaseHeaderMayDeclareLessThanItsOwnSize) {
    for (const char* bytes : {"AA 00 00 00 00 40 07", "99 00 00 00 04 42 00 07"}) {
        SCOPED_TRACE(bytes);
        const Bytes input = hex(bytes);
        TZRPBase base{};
        base.wCommand = 3;
        base.presence = 0x1FF;
        size_t used = unset;
        EXPECT_EQ(base.unpackTLV(input.data(), input.size(), &used), -34);
        EXPECT_EQ(used, 5U);
        EXPECT_EQ(base.wCommand, 3);
        EXPECT_EQ(base.presence, 0U);
    }
}

// --- Unions: exactly one field is read, whatever the envelope declares --------------------------

const IdentifierDecode identifierDecodes[] = {
    {"OneField", "AA 00 00 00 08 10 AC 02", 0, 8, 300, 1},
    {"OneFieldFixed", "99 00 00 00 0A 13 00 00 01 2C", 0, 10, 300, 1},
    {"InputBehindTheDeclaredLength", "AA 00 00 00 08 10 AC 02 10 06", 0, 8, 300, 1},
    {"ASecondFieldThatStaysUnread", "AA 00 00 00 0A 10 AC 02 10 06", 0, 8, 300, 1},
    {"AFieldThatRunsPastTheDeclaredLength", "AA 00 00 00 07 10 AC 02", -34, 8, 300, 42},
    {"AFieldThatIsCutShort", "AA 00 00 00 07 10 AC", -2, 6, 0x2C, 42},
    {"AFixedFieldThatIsCutShort", "99 00 00 00 09 13 00 00 01", -2, 6, before, 42},
    {"AnUnknownField", "AA 00 00 00 07 70 05", 0, 7, before, 7},
    {"AnUnknownFieldOfTypeSix", "AA 00 00 00 07 76 05", -35, 6, before, 42},
    {"NoField", "AA 00 00 00 05", -2, 5, before, 42},
    {"NoFieldFixed", "99 00 00 00 05", -2, 5, before, 42},
    {"NoFieldAndMoreInput", "AA 00 00 00 05 10 AC 02", -34, 8, 300, 42},
    {"NoFieldAndMoreInputOfTypeSix", "AA 00 00 00 05 76 05", -35, 6, before, 42},
    // Deliberate: a declared length that does not count its own header is noticed after the field.
    {"DeclaredLengthZero", "AA 00 00 00 00 10 AC 02", -34, 8, 300, 42},
    {"DeclaredLengthOne", "AA 00 00 00 01 10 AC 02", -34, 8, 300, 42},
    {"DeclaredLengthTwo", "AA 00 00 00 02 10 AC 02", -34, 8, 300, 42},
    {"DeclaredLengthThree", "AA 00 00 00 03 10 AC 02", -34, 8, 300, 42},
    {"DeclaredLengthFour", "AA 00 00 00 04 10 AC 02", -34, 8, 300, 42},
    {"DeclaredLengthZeroFixed", "99 00 00 00 00 13 00 00 01 2C", -34, 10, 300, 42},
    {"DeclaredLengthFourFixed", "99 00 00 00 04 13 00 00 01 2C", -34, 10, 300, 42},
    {"DeclaredLengthZeroOfAnUnknownField", "AA 00 00 00 00 70 05", -34, 7, before, 42},
    {"DeclaredLengthZeroWithoutFields", "AA 00 00 00 00", -2, 5, before, 42},
    {"DeclaredLengthFourWithoutFields", "99 00 00 00 04", -2, 5, before, 42},
    {"DeclaredLengthZeroOfAFieldCutShort", "AA 00 00 00 00 10 AC", -2, 6, 0x2C, 42},
    {"DeclaredLengthZeroOfTypeSix", "AA 00 00 00 00 76 05", -35, 6, before, 42},
};

class UnionEnvelope : public testing::TestWithParam<IdentifierDecode> {};
INSTANTIATE_TEST_SUITE_P(All, UnionEnvelope, testing::ValuesIn(identifierDecodes),
                         rowName<IdentifierDecode>);

TEST_P(UnionEnvelope, IsComparedWithTheOneField) {
    const Bytes input = hex(GetParam().bytes);
    TVESKIDValue identifier{};
    identifier.dwUINT32 = before;
    long long selector = 42;
    size_t used = unset;
    EXPECT_EQ(identifier.unpackTLV(selector, input.data(), input.size(), &used), GetParam().result);
    EXPECT_EQ(used, GetParam().used);
    EXPECT_EQ(identifier.dwUINT32, GetParam().value);
    EXPECT_EQ(selector, GetParam().selector);
}

TEST_P(UnionEnvelope, NeedsNoPlaceForTheUsedSize) {
    const Bytes input = hex(GetParam().bytes);
    TVESKIDValue identifier{};
    identifier.dwUINT32 = before;
    long long selector = 42;
    EXPECT_EQ(identifier.unpackTLV(selector, input.data(), input.size(), nullptr),
              GetParam().result);
    EXPECT_EQ(identifier.dwUINT32, GetParam().value);
    EXPECT_EQ(selector, GetParam().selector);
}

}  // namespace zrp_test
