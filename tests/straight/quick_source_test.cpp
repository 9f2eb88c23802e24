// The loop over fields in any order reads what encoders write through QuickSource. What it takes
// for a surprise is read again step by step, with the same result, only slower.
#include <gtest/gtest.h>

#include "protocol/codec/field_data.h"
#include "protocol/codec/sources.h"
#include "tests/support/bytes.h"

namespace zrp_test {

using namespace quorva_zrp;
using namespace quorva_zrp::codec;

namespace {

Bytes varintOf(uint64_t value) {
    Bytes bytes;
    for (; value >= 0x80; value >>= 7) {
        bytes.push_back(static_cast<char>((value & 0x7F) | 0x80));
    }
    bytes.push_back(static_cast<char>(value));
    return bytes;
}

/// The smallest and the largest values of each number of groups, for integers of this many bits.
std::vector<uint64_t> edges(unsigned bits) {
    std::vector<uint64_t> values = {0};
    for (unsigned shift = 7; shift < bits; shift += 7) {
        values.push_back((UINT64_C(1) << shift) - 1);
        values.push_back(UINT64_C(1) << shift);
        values.push_back(UINT64_C(1) << shift | 1);
    }
    values.push_back(UINT64_MAX >> (64 - bits));
    return values;
}

/// Bytes being read, up to `until`.
struct Reader {
    Bytes bytes;
    Input input;
    QuickSource source;

    Reader(Bytes all, bool varint, size_t behind = 0)
        : bytes(std::move(all)),
          input{bytes.data(), bytes.size(),
                lastVarint(bytes.data(), bytes.data() + bytes.size() - 1)},
          source(input, varint) {
        source.until = bytes.data() + bytes.size() - behind;
    }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    bool isAtEnd() const { return source.at == source.until; }
};

/// `bytes` with `count` more that look like the inside of a varint.
Bytes withMore(Bytes bytes, size_t count) {
    bytes.insert(bytes.end(), count, '\x80');
    return bytes;
}

Bytes bigEndian(uint64_t value, size_t size) {
    Bytes bytes(size);
    for (size_t i = 0; i < size; ++i) {
        bytes[size - 1 - i] = static_cast<char>(value >> (8 * i));
    }
    return bytes;
}

struct IntegerField {
    const char* name;
    uint8_t type;
    size_t index;
    unsigned bits;
    bool isSigned;

    const FieldData& data() const { return tableOf(type).begin()[index]; }
};

const IntegerField integerFields[] = {
    {"Byte", typeIndex<TZRPRelay>, 4, 8, false},
    {"Word", typeIndex<TZRPBase>, 3, 16, false},
    {"DoubleWord", typeIndex<TZRPRelay>, 0, 32, false},
    {"QuadWord", typeIndex<TZRPRelay>, 2, 64, false},
    {"SignedDoubleWord", typeIndex<TZRPRelayReqBody>, 0, 32, true},
    {"SignedQuadWord", typeIndex<TZRPRelay>, 3, 64, true},
};

std::ostream& operator<<(std::ostream& out, const IntegerField& field) {
    return out << field.name;
}

class QuickIntegers : public testing::TestWithParam<IntegerField> {
  protected:
    unsigned bits() const { return GetParam().bits; }

    /// The bits of the integer that `raw` stands for.
    uint64_t valueOf(uint64_t raw) const {
        const uint64_t value = GetParam().isSigned ? raw >> 1 ^ (UINT64_C(0) - (raw & 1)) : raw;
        return value & UINT64_MAX >> (64 - bits());
    }

    uint64_t valueIn(const char* record) const {
        switch (bits()) {
            case 8:
                return load<uint8_t>(record);
            case 16:
                return load<uint16_t>(record);
            case 32:
                return load<uint32_t>(record);
            default:
                return load<uint64_t>(record);
        }
    }
};

}  // namespace

TEST_P(QuickIntegers, AreTakenAsVarints) {
    for (const uint64_t raw : edges(bits())) {
        const Bytes varint =
            bits() == 8 ? bigEndian(raw, 1) : varintOf(raw);  // a byte never is one
        // Nine bytes behind it: all that the longest varint may take.
        Reader reader(withMore(varint, 9), true, 9);
        char stored[8] = {};
        ASSERT_EQ(0, reader.source.integer(GetParam().data(), stored)) << raw;
        EXPECT_TRUE(reader.isAtEnd()) << raw;
        EXPECT_EQ(valueOf(raw), valueIn(stored)) << raw;
    }
}

TEST_P(QuickIntegers, OfOneGroupAreTakenAtTheEnd) {
    Reader reader(bits() == 8 ? hex("E1") : hex("61"), true);
    char stored[8] = {};
    EXPECT_EQ(0, reader.source.integer(GetParam().data(), stored));
    EXPECT_TRUE(reader.isAtEnd());
}

TEST_P(QuickIntegers, AreTakenAtFixedWidths) {
    for (const uint64_t value : edges(bits())) {
        Reader reader(bigEndian(value, bits() / 8), false);
        char stored[8] = {};
        ASSERT_EQ(0, reader.source.integer(GetParam().data(), stored)) << value;
        EXPECT_TRUE(reader.isAtEnd()) << value;
        EXPECT_EQ(value, valueIn(stored));
    }
}

TEST_P(QuickIntegers, AreASurpriseWhereTheyAreCutShort) {
    char record[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    for (const bool varint : {true, false}) {
        Reader nothing(hex("00"), varint, 1);
        EXPECT_EQ(surprise, nothing.source.integer(GetParam().data(), record));
    }
    Reader tooLittle(bigEndian(0, bits() / 8), false, 1);
    EXPECT_EQ(surprise, tooLittle.source.integer(GetParam().data(), record));
    EXPECT_EQ("01 02 03 04 05 06 07 08", toHex(record, sizeof(record)));
}

INSTANTIATE_TEST_SUITE_P(Widths, QuickIntegers, testing::ValuesIn(integerFields),
                         [](const auto& instance) { return instance.param.name; });

TEST(QuickTags, AreTakenUpToThreeBytes) {
    for (const uint64_t tag : edges(21)) {
        Reader reader(varintOf(tag), true);
        uint32_t taken = 0;
        ASSERT_EQ(0, reader.source.tag(taken)) << tag;
        EXPECT_EQ(tag, taken);
        EXPECT_TRUE(reader.isAtEnd());
    }
}

TEST(QuickTags, AreASurpriseBeyond) {
    for (const char* const bytes : {"80 80 80 01", "80", "80 80", "80 80 80"}) {
        Reader reader(hex(bytes), true);
        uint32_t taken = 0;
        EXPECT_EQ(surprise, reader.source.tag(taken)) << bytes;
    }
    Reader nothing(hex("10"), true, 1);
    uint32_t taken = 0;
    EXPECT_EQ(surprise, nothing.source.tag(taken));
}

TEST(QuickSkips, StepOverValuesThatEndTheInput) {
    const struct {
        uint32_t wireType;
        const char* value;
    } values[] = {
        {0, "00"},
        {0, "80 01"},
        {0, "80 80 80 80 80 80 80 80 7F"},
        {1, "FF"},
        {2, "FF FF"},
        {3, "FF FF FF FF"},
        {4, "FF FF FF FF FF FF FF FF"},
        {5, "00 00 00 00"},
        {5, "00 00 00 03 FF FF FF"},
    };
    for (const auto& value : values) {
        Reader reader(hex(value.value), true);
        EXPECT_EQ(0, reader.source.skip(value.wireType)) << value.value;
        EXPECT_TRUE(reader.isAtEnd()) << value.value;

        Reader withRest(withMore(hex(value.value), 10), true, 0);
        EXPECT_EQ(0, withRest.source.skip(value.wireType)) << value.value;
        EXPECT_EQ(10, withRest.source.until - withRest.source.at) << value.value;
    }
}

TEST(QuickSkips, AreSurprisedByWhatMayNotEndOrHasNoSuchType) {
    const struct {
        uint32_t wireType;
        const char* value;
    } values[] = {
        {0, "80"},          {0, "80 80 80 80 80 80 80 80 80 01"},
        {2, "FF"},          {3, "FF FF FF"},
        {4, "FF FF FF FF"}, {5, "00 00 00"},
        {6, "00"},          {5, "00 00 00 04 FF FF FF"},
    };
    for (const auto& value : values) {
        Reader reader(hex(value.value), true);
        EXPECT_EQ(surprise, reader.source.skip(value.wireType)) << value.value;
    }
    for (uint32_t wireType = 0; wireType < 6; ++wireType) {
        Reader nothing(hex("00"), true, 1);
        EXPECT_EQ(surprise, nothing.source.skip(wireType)) << wireType;
    }
}

TEST(QuickDelimited, AreTakenWhereTheyFillTheirFieldAndTheInput) {
    char stored[4] = {};
    Reader text(hex("00 00 00 03 41 42 43"), true);
    EXPECT_EQ(0, text.source.text(stored, 4));
    EXPECT_STREQ("ABC", stored);
    EXPECT_TRUE(text.isAtEnd());

    Reader bytes(hex("00 00 00 03 44 45 46"), true);
    size_t count = 0;
    EXPECT_EQ(0, bytes.source.bytes(stored, 3, count));
    EXPECT_EQ(3U, count);
    EXPECT_EQ("44 45 46", toHex(stored, 3));
    EXPECT_TRUE(bytes.isAtEnd());

    Reader empty(hex("00 00 00 00"), true);
    EXPECT_EQ(0, empty.source.text(stored, 1));
    EXPECT_STREQ("", stored);
    EXPECT_TRUE(empty.isAtEnd());

    Reader length(hex("01 02 03 04"), true);
    uint32_t value = 0;
    EXPECT_EQ(0, length.source.length(value));
    EXPECT_EQ(0x01020304U, value);
    EXPECT_TRUE(length.isAtEnd());
}

TEST(QuickDelimited, AreASurpriseWhereTheirLengthIsCutShort) {
    char stored[4] = {};
    size_t count = 0;
    uint32_t value = 0;
    Reader text(hex("00 00 00 00"), true, 1);
    EXPECT_EQ(surprise, text.source.text(stored, 4));
    Reader bytes(hex("00 00 00 01"), true, 1);
    EXPECT_EQ(surprise, bytes.source.bytes(stored, 4, count));
    Reader length(hex("00 00 00 01"), true, 1);
    EXPECT_EQ(surprise, length.source.length(value));
}

// --- Varints ------------------------------------------------------------------------------------

TEST(LoadedVarints, AreTakenAtEveryNumberOfGroups) {
    const auto expectTaken = [](auto loadOne, unsigned bits) {
        for (const uint64_t value : edges(bits)) {
            const Bytes varint = varintOf(value);
            const Bytes bytes = withMore(varint, 9);
            const wire::LoadedVarint loaded =
                loadOne(bytes.data(), bytes.data() + varint.size() - 1);
            ASSERT_EQ(bytes.data() + varint.size(), loaded.end) << value;
            EXPECT_EQ(value, loaded.value);
        }
    };
    expectTaken([](auto... where) { return wire::loadVarint<16>(where...); }, 16);
    expectTaken([](auto... where) { return wire::loadVarint<32>(where...); }, 32);
    expectTaken([](auto... where) { return wire::loadVarint<64>(where...); }, 64);
}

}  // namespace zrp_test
