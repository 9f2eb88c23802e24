// Integer fields at the limits of every varint length, in buffers with and without room to spare
// and from inputs with and without bytes behind them: none of this may change a value.
#include "tests/messages/make.h"

namespace zrp_test {
namespace {

using namespace quorva_zrp;

/// A field value and its two encodings, tag included.
template <class Integer>
struct Case {
    Integer value;
    std::string asVarint;
    std::string asFixed;
};

/// Encodes and decodes a record of one field in tight and in roomy memory.
template <class T, class Integer>
void expectBothWays(Integer T::*field, const Case<Integer>& c) {
    for (const bool flavour : {varint, fixed}) {
        const std::string bytes = flavour == varint ? c.asVarint : c.asFixed;
        const size_t size = hex(bytes).size();
        T object = made<T>();
        object.*field = c.value;
        EXPECT_EQ(encodeFields(object, flavour), written(0, bytes));
        EXPECT_EQ(encodeFields(object, flavour, size), written(0, bytes));
        EXPECT_EQ(encodeFields(object, flavour, size - 1).result, -1);
        for (const std::string& behind : {std::string(), repeated(0x00, 64), repeated(0xFF, 64)}) {
            T decoded = made<T>();
            EXPECT_EQ(decodeFields(decoded, bytes + behind, flavour, size), (Read{0, size}));
            EXPECT_EQ(decoded.*field, c.value) << bytes;
        }
    }
}

std::string bigEndian(uint64_t value, size_t bytes) {
    std::string digits;
    for (size_t i = bytes; i-- > 0;) {
        const unsigned char byte = static_cast<unsigned char>(value >> (8 * i));
        digits += ' ' + toHex(&byte, 1);
    }
    return digits;
}

/// 2^(7 x groups) - 1, the largest value of that many bytes: all groups full.
std::string fullGroups(size_t groups) {
    return ' ' + repeated(0xFF, groups - 1) + " 7F";
}

/// 2^(7 x groups), the smallest value of one byte more.
std::string oneGroupMore(size_t groups) {
    return ' ' + repeated(0x80, groups) + " 01";
}

TEST(UnsignedFields, TakeOneByteForEverySevenBits) {
    for (size_t groups = 1; groups <= 9; ++groups) {
        const uint64_t limit = UINT64_C(1) << (7 * groups);
        expectBothWays(&TZRPRouteChangeBody::ullServerID,
                       {limit - 1, "10" + fullGroups(groups), "14" + bigEndian(limit - 1, 8)});
        expectBothWays(&TZRPRouteChangeBody::ullServerID,
                       {limit, "10" + oneGroupMore(groups), "14" + bigEndian(limit, 8)});
        if (groups <= 4) {
            const uint32_t limit32 = UINT32_C(1) << (7 * groups);
            expectBothWays(&TZRPCStopBody::dwReserved, {limit32 - 1, "10" + fullGroups(groups),
                                                        "13" + bigEndian(limit - 1, 4)});
            expectBothWays(&TZRPCStopBody::dwReserved,
                           {limit32, "10" + oneGroupMore(groups), "13" + bigEndian(limit, 4)});
        }
    }
}

TEST(UnsignedFields, TakeTheirLimits) {
    expectBothWays(&TZRPRouteChangeBody::ullServerID,
                   {UINT64_C(0), "10 00", "14 00 00 00 00 00 00 00 00"});
    expectBothWays(&TZRPRouteChangeBody::ullServerID,
                   {UINT64_MAX, "10 FF FF FF FF FF FF FF FF FF 01", "14 FF FF FF FF FF FF FF FF"});
    expectBothWays(&TZRPCStopBody::dwReserved, {UINT32_C(0), "10 00", "13 00 00 00 00"});
    expectBothWays(&TZRPCStopBody::dwReserved, {UINT32_MAX, "10 FF FF FF FF 0F", "13 FF FF FF FF"});
}

TEST(UnsignedFields, OfSixteenBitsTakeUpToThreeBytes) {
    for (const Case<uint16_t>& c :
         {Case<uint16_t>{0, "10 00", "12 00 00"}, Case<uint16_t>{127, "10 7F", "12 00 7F"},
          Case<uint16_t>{128, "10 80 01", "12 00 80"},
          Case<uint16_t>{16383, "10 FF 7F", "12 3F FF"},
          Case<uint16_t>{16384, "10 80 80 01", "12 40 00"},
          Case<uint16_t>{65535, "10 FF FF 03", "12 FF FF"}}) {
        TZRPBase base = made<TZRPBase>();
        base.wMagic = c.value;
        const std::string zeros = "20 00 30 00 40 00 50 00 61 00 70 00 80 01 00 90 01 00";
        EXPECT_EQ(encodeFields(base, varint), written(0, c.asVarint + zeros));
        for (const std::string& behind : {std::string(), repeated(0x00, 64), repeated(0xFF, 64)}) {
            base.wMagic = 77;
            EXPECT_EQ(
                decodeFields(base, c.asVarint + behind, varint, hex(c.asVarint).size()).result, 0);
            EXPECT_EQ(base.wMagic, c.value);
            base.wMagic = 77;
            EXPECT_EQ(decodeFields(base, c.asFixed + behind, fixed, 3), (Read{0, 3}));
            EXPECT_EQ(base.wMagic, c.value);
        }
    }
}

TEST(SignedFields, TakeSmallMagnitudesOfEitherSignInOneByte) {
    // Written through a relay request, whose second field follows.
    const std::string relay = "25 00 00 00 22 10 00 25 00 00 00 10" + repeated(0, 16) +
                              "30 00 40 00 51 00 65 00 00 00 00";
    for (const Case<int32_t>& c :
         {Case<int32_t>{0, "10 00", "13 00 00 00 00"}, Case<int32_t>{-1, "10 01", "13 FF FF FF FF"},
          Case<int32_t>{1, "10 02", "13 00 00 00 01"}, Case<int32_t>{63, "10 7E", "13 00 00 00 3F"},
          Case<int32_t>{-64, "10 7F", "13 FF FF FF C0"},
          Case<int32_t>{64, "10 80 01", "13 00 00 00 40"},
          Case<int32_t>{-65, "10 81 01", "13 FF FF FF BF"},
          Case<int32_t>{INT32_MAX, "10 FE FF FF FF 0F", "13 7F FF FF FF"},
          Case<int32_t>{INT32_MIN, "10 FF FF FF FF 0F", "13 80 00 00 00"}}) {
        TZRPRelayReqBody request = made<TZRPRelayReqBody>();
        request.iRelayType = c.value;
        EXPECT_EQ(encodeFields(request, varint), written(0, c.asVarint + relay));
        for (const std::string& behind : {std::string(), repeated(0x00, 64), repeated(0xFF, 64)}) {
            request.iRelayType = 77;
            EXPECT_EQ(
                decodeFields(request, c.asVarint + behind, varint, hex(c.asVarint).size()).result,
                0);
            EXPECT_EQ(request.iRelayType, c.value);
            request.iRelayType = 77;
            EXPECT_EQ(decodeFields(request, c.asFixed + behind, fixed, 5), (Read{0, 5}));
            EXPECT_EQ(request.iRelayType, c.value);
        }
    }
}

TEST(VarintFields, AcceptMoreGroupsThanTheirValueNeeds) {
    for (const std::string& behind : {std::string(), repeated(0x00, 64), repeated(0xFF, 64)}) {
        TZRPCStopBody notice = made<TZRPCStopBody>();
        EXPECT_EQ(decodeFields(notice, "10 85 00" + behind, varint, 3), (Read{0, 3}));
        EXPECT_EQ(notice.dwReserved, 5u);
        EXPECT_EQ(decodeFields(notice, "10 86 80 80 80 00" + behind, varint, 6), (Read{0, 6}));
        EXPECT_EQ(notice.dwReserved, 6u);
        TZRPRouteChangeBody change = made<TZRPRouteChangeBody>();
        EXPECT_EQ(decodeFields(change, "10 87 80 80 80 80 80 80 80 80 00" + behind, varint, 11),
                  (Read{0, 11}));
        EXPECT_EQ(change.ullServerID, 7u);
        TZRPBase base = made<TZRPBase>();
        EXPECT_EQ(decodeFields(base, "10 88 80 00" + behind, varint, 4), (Read{0, 4}));
        EXPECT_EQ(base.wMagic, 8);
        // The same for tags: field 1 in three bytes.
        EXPECT_EQ(decodeFields(base, "90 80 00 09" + behind, varint, 4), (Read{0, 4}));
        EXPECT_EQ(base.wMagic, 9);
    }
}

TEST(VarintFields, DeliberatelyFoldGroupsPastTheirWidthBackIn) {
    for (const std::string& behind : {std::string(), repeated(0x00, 64), repeated(0xFF, 64)}) {
        // Group 5 of 32 bits is shifted by 3, group 6 by 10; they are added to what is there.
        TZRPCStopBody notice = made<TZRPCStopBody>();
        EXPECT_EQ(decodeFields(notice, "10 81 80 80 80 80 01" + behind, varint, 7), (Read{0, 7}));
        EXPECT_EQ(notice.dwReserved, 9u);
        EXPECT_EQ(decodeFields(notice, "10 80 80 80 80 80 80 01" + behind, varint, 8),
                  (Read{0, 8}));
        EXPECT_EQ(notice.dwReserved, 1024u);
        TZRPRelayReqBody request = made<TZRPRelayReqBody>();
        EXPECT_EQ(decodeFields(request, "10 80 80 80 80 80 02" + behind, varint, 7), (Read{0, 7}));
        EXPECT_EQ(request.iRelayType, 8) << "16 gathered";
        // Group 10 of 64 bits is shifted by 6.
        TZRPRouteChangeBody change = made<TZRPRouteChangeBody>();
        EXPECT_EQ(decodeFields(change, "10" + repeated(0x80, 10) + "01" + behind, varint, 12),
                  (Read{0, 12}));
        EXPECT_EQ(change.ullServerID, 64u);
        TZRPRelay relay = made<TZRPRelay>();
        EXPECT_EQ(decodeFields(relay, "40" + repeated(0x80, 10) + "01" + behind, varint, 12),
                  (Read{0, 12}));
        EXPECT_EQ(relay.llSessionID, 32) << "64 gathered";
    }
}

TEST(VarintFields, SayNoDataForAGroupThatDoesNotFitWhateverFollows) {
    for (const std::string& behind : {std::string(), repeated(0x00, 64), repeated(0x7F, 64)}) {
        TZRPBase base = made<TZRPBase>();
        EXPECT_EQ(decodeFields(base, "10 FF FF 04" + behind, varint), (Read{-2, 1}));
        EXPECT_EQ(base.wMagic, 0x3FFF);
        EXPECT_EQ(decodeFields(base, "10 81 80 80 01" + behind, varint), (Read{-2, 1}));
        EXPECT_EQ(base.wMagic, 1);
        EXPECT_EQ(decodeFields(base, "50 FF FF FF FF 10" + behind, varint), (Read{-2, 1}));
        EXPECT_EQ(base.dwTimeStamp, 0x0FFFFFFFu);
        TZRPRelayReqBody request = made<TZRPRelayReqBody>();
        EXPECT_EQ(decodeFields(request, "10 FE FF FF FF 10" + behind, varint), (Read{-2, 1}));
        EXPECT_EQ(request.iRelayType, 0x07FFFFFF);
        TZRPRelay relay = made<TZRPRelay>();
        EXPECT_EQ(decodeFields(relay, "40 FE FF FF FF FF FF FF FF FF 02" + behind, varint),
                  (Read{-2, 1}));
        EXPECT_EQ(relay.llSessionID, (INT64_C(1) << 62) - 1) << "62 one bits behind a zero";
        // A tag whose fifth group does not fit.
        EXPECT_EQ(decodeFields(base, "FF FF FF FF 10" + behind, varint), (Read{-2, 0}));
    }
}

TEST(VarintFields, DeliberatelyPassOverA64BitUnsignedValueThatOverflows) {
    // The ten bytes are not consumed, and as a tag they overflow once more.
    for (const std::string& behind : {std::string(), repeated(0x00, 64), repeated(0x7F, 64)}) {
        TZRPRouteChangeBody change = made<TZRPRouteChangeBody>();
        EXPECT_EQ(decodeFields(change, "10 85 80 80 80 80 80 80 80 80 02" + behind, varint),
                  (Read{-2, 1}));
        EXPECT_EQ(change.ullServerID, 5u) << "the groups before the one that did not fit";
        EXPECT_TRUE(change.has_ServerID());
    }
}

// --- Every group of every width -----------------------------------------------------------------

/// What a varint yields whose group 0 is 0x55 and whose last group, numbered `index`, is `group`:
/// the shift of a group is its number times 7, reduced modulo the width of the register, and the
/// group must fit above it.
struct Folded {
    bool fits;
    uint64_t gathered;
};

Folded fold(unsigned registerBits, uint64_t allOnes, unsigned index, unsigned group) {
    const unsigned shift = 7 * index % registerBits;
    const bool fits = group <= (allOnes >> shift);
    const uint64_t last = fits ? static_cast<uint64_t>(group) << shift : 0;
    return {fits, (0x55 | last) & allOnes};
}

std::string foldedBytes(unsigned index, unsigned group) {
    const unsigned char last = static_cast<unsigned char>(group);
    return "D5 " + repeated(0x80, index - 1) + ' ' + toHex(&last, 1) + ' ';
}

/// Calls `check` with the bytes, the number of the last group and its value, for groups up to the
/// fortieth.
template <class Check>
void forEveryGroup(Check check) {
    for (unsigned index = 1; index < 40; ++index) {
        for (const unsigned group :
             {0u, 1u, 2u, 3u, 4u, 7u, 8u, 15u, 16u, 31u, 32u, 63u, 64u, 127u}) {
            check(foldedBytes(index, group), index, group);
        }
    }
}

/// Decodes one field of one varint and compares it with what its groups yield.
template <class T, class Integer>
void expectFolded(Integer T::*field, const std::string& tag, const std::string& bytes,
                  const Folded& expected, Integer value) {
    const size_t size = hex(bytes).size();
    for (const std::string& behind : {std::string(), repeated(0xFF, 16), repeated(0x00, 16)}) {
        T object = made<T>();
        EXPECT_EQ(decodeFields(object, tag + bytes + behind, varint, 1 + size),
                  (expected.fits ? Read{0, 1 + size} : Read{-2, 1}))
            << bytes;
        EXPECT_EQ(object.*field, value) << bytes;
    }
}

TEST(VarintFields, FoldEveryGroupOf16Bits) {
    forEveryGroup([](const std::string& bytes, unsigned index, unsigned group) {
        const Folded expected = fold(32, 0xFFFF, index, group);
        expectFolded(&TZRPBase::wMagic, "10 ", bytes, expected,
                     static_cast<uint16_t>(expected.gathered));
    });
}

TEST(VarintFields, FoldEveryGroupOf32Bits) {
    forEveryGroup([](const std::string& bytes, unsigned index, unsigned group) {
        const Folded expected = fold(32, 0xFFFFFFFF, index, group);
        expectFolded(&TZRPCStopBody::dwReserved, "10 ", bytes, expected,
                     static_cast<uint32_t>(expected.gathered));
        // Group 0 has bit 0 set, so that the number is a negative one.
        const uint32_t raw = static_cast<uint32_t>(expected.gathered);
        expectFolded(&TZRPRelayReqBody::iRelayType, "10 ", bytes, expected,
                     static_cast<int32_t>(~(raw >> 1)));
    });
}

TEST(VarintFields, FoldEveryGroupOf64Bits) {
    forEveryGroup([](const std::string& bytes, unsigned index, unsigned group) {
        const Folded expected = fold(64, UINT64_MAX, index, group);
        // An unsigned value that does not fit is passed over and fails as a tag.
        expectFolded(&TZRPRouteChangeBody::ullServerID, "10 ", bytes, expected, expected.gathered);
        expectFolded(&TZRPRelay::llSessionID, "40 ", bytes, expected,
                     static_cast<int64_t>(~(expected.gathered >> 1)));
    });
}

TEST(VarintFields, StepOverEveryGroupOfAnUnknownField) {
    forEveryGroup([](const std::string& bytes, unsigned index, unsigned group) {
        const Folded expected = fold(64, UINT64_MAX, index, group);
        const size_t size = hex(bytes).size();
        for (const bool flavour : {varint, fixed}) {
            for (const std::string& behind : {std::string(), repeated(0x00, 16)}) {
                TZRPCStopBody notice = made<TZRPCStopBody>();
                EXPECT_EQ(decodeFields(notice, "20 " + bytes + behind, flavour, 1 + size),
                          (expected.fits ? Read{0, 1 + size} : Read{-2, 1}))
                    << bytes;
            }
        }
    });
}

TEST(VarintFields, FoldEveryGroupOfATag) {
    // Group 0 makes it a field of number 5 or above, which the stop notice does not know; its type
    // is 5, unless a group was folded into it.
    forEveryGroup([](const std::string& bytes, unsigned index, unsigned group) {
        const Folded expected = fold(32, 0xFFFFFFFF, index, group);
        const size_t size = hex(bytes).size();
        TZRPCStopBody notice = made<TZRPCStopBody>();
        EXPECT_EQ(decodeFields(notice, bytes + "00 00 00 00", varint, size + 4),
                  (expected.fits && (expected.gathered & 0xF) == 5 ? Read{0, size + 4}
                   : expected.fits                                 ? Read{-35, size}
                                                                   : Read{-2, 0}))
            << bytes;
        EXPECT_EQ(notice.presence, 0u);
    });
}

}  // namespace
}  // namespace zrp_test
