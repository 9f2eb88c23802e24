// The oracle against encodings and dumps worked out by hand: what is compared with the library must
// be right by itself.
#include "tests/oracle/oracle.h"

#include <gtest/gtest.h>
#include <string.h>

#include <string>

#include "protocol/quorva_zrp.h"
#include "tests/support/bytes.h"

namespace zrp_test {

using namespace quorva_zrp;
using zrp_oracle::InputCursor;
using zrp_oracle::OutputCursor;
using zrp_oracle::typeNamed;

namespace {

constexpr char untouched = '\x5C';

struct Packed {
    int result;
    std::string bytes;  ///< the used ones
};

/// Encodes into a buffer with plenty of room.
Packed pack(const char* type, const void* record, long long selector, bool varint) {
    Bytes buffer(8000, untouched);
    size_t used = 0;
    const int result = zrp_oracle::pack(typeNamed(type), record, selector, buffer.data(),
                                        buffer.size(), &used, varint);
    return {result, toHex(buffer.data(), used)};
}

/// Decodes an encoding given as hexadecimal text.
int unpack(const char* type, void* record, const std::string& digits, long long* selector = nullptr,
           size_t* used = nullptr) {
    const Bytes bytes = hex(digits);
    return zrp_oracle::unpack(typeNamed(type), record, selector, bytes.data(), bytes.size(), used);
}

template <class T>
T constructed(const char* type) {
    T record;
    memset(&record, 0x77, sizeof(record));
    EXPECT_EQ(0, zrp_oracle::construct(typeNamed(type), &record, 0));
    return record;
}

void expectPacked(const std::string& bytes, const Packed& packed) {
    EXPECT_EQ(0, packed.result);
    EXPECT_EQ(bytes, packed.bytes);
}

}  // namespace

TEST(Oracle, EncodesAnEmptyBaseHeaderInBothFlavours) {
    const TZRPBase base = constructed<TZRPBase>("TZRPBase");
    expectPacked("AA 00 00 00 19 10 00 20 00 30 00 40 00 50 00 61 00 70 00 80 01 00 90 01 00",
                 pack("TZRPBase", &base, 0, true));
    expectPacked(
        "99 00 00 00 29 12 00 00 22 00 00 32 00 00 42 00 00 53 00 00 00 00 61 00 73 00 00 00 00 "
        "83 01 00 00 00 00 93 01 00 00 00 00",
        pack("TZRPBase", &base, 0, false));
}

TEST(Oracle, EncodesTheMemberThatTheSelectorNames) {
    TVESKIDValue value{};
    expectPacked("AA 00 00 00 07 01 00", pack("TVESKIDValue", &value, 0, true));
    value.dwUINT32 = 300;
    expectPacked("AA 00 00 00 08 10 AC 02", pack("TVESKIDValue", &value, 1, true));
    expectPacked("99 00 00 00 0A 13 00 00 01 2C", pack("TVESKIDValue", &value, 1, false));
    strcpy(value.szSTRING, "ab");
    expectPacked("AA 00 00 00 0C 35 00 00 00 02 61 62", pack("TVESKIDValue", &value, 3, true));

    const Packed refused = pack("TVESKIDValue", &value, 4, true);
    EXPECT_EQ(-33, refused.result);
    EXPECT_EQ("AA 00 00 00 05", refused.bytes);
}

TEST(Oracle, EncodesNestedValuesWithTheirLengths) {
    TVESKAccount account = constructed<TVESKAccount>("TVESKAccount");
    expectPacked("AA 00 00 00 12 10 00 21 00 35 00 00 00 02 01 00 40 00",
                 pack("TVESKAccount", &account, 0, true));
    account.bFormat = 3;
    strcpy(account.stValue.szSTRING, "abc");
    expectPacked("AA 00 00 00 18 10 00 21 03 35 00 00 00 08 35 00 00 00 03 61 62 63 40 00",
                 pack("TVESKAccount", &account, 0, true));

    TZRPHead head = constructed<TZRPHead>("TZRPHead");
    head.stBase.wCommand = 8193;
    zrp_oracle::construct(typeNamed("TZRPExtHead"), &head.stExtend, 8193);
    expectPacked(
        "AA 00 00 00 28 15 00 00 00 15 10 00 20 00 30 00 40 81 40 50 00 61 00 70 00 80 01 00 90 "
        "01 00 25 00 00 00 04 91 80 08 00",
        pack("TZRPHead", &head, 0, true));
}

TEST(Oracle, EncodesFixedArraysTextsAndLargeIntegers) {
    const TZRPRelay relay = constructed<TZRPRelay>("TZRPRelay");
    expectPacked(
        "AA 00 00 00 27 10 00 25 00 00 00 10 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 30 "
        "00 40 00 51 00 65 00 00 00 00",
        pack("TZRPRelay", &relay, 0, true));

    TZRPRouteChangeBody change{};
    change.ullServerID = UINT64_MAX;
    expectPacked("AA 00 00 00 10 10 FF FF FF FF FF FF FF FF FF 01",
                 pack("TZRPRouteChangeBody", &change, 0, true));
    expectPacked("99 00 00 00 0E 14 FF FF FF FF FF FF FF FF",
                 pack("TZRPRouteChangeBody", &change, 0, false));

    TZRPRelayReqBody request = constructed<TZRPRelayReqBody>("TZRPRelayReqBody");
    request.iRelayType = -2;
    EXPECT_EQ("AA 00 00 00 2E 10 03",
              pack("TZRPRelayReqBody", &request, 0, true).bytes.substr(0, 20));
    EXPECT_EQ("13 FF FF FF FE", pack("TZRPRelayReqBody", &request, 0, false).bytes.substr(15, 14));
}

TEST(Oracle, LeavesOutWhatIsCountedAsNothing) {
    TVESKKey key{};
    expectPacked("AA 00 00 00 07 11 00", pack("TVESKKey", &key, 0, true));
    key.bLength = 2;
    key.szValue[0] = 0xDE;
    key.szValue[1] = 0xAD;
    expectPacked("AA 00 00 00 0E 11 02 25 00 00 00 02 DE AD", pack("TVESKKey", &key, 0, true));
    key.bLength = 129;
    const Packed refused = pack("TVESKKey", &key, 0, true);
    EXPECT_EQ(-7, refused.result);
    EXPECT_EQ("AA 00 00 00 07 11 81", refused.bytes);

    TZRPAckBody ack = constructed<TZRPAckBody>("TZRPAckBody");
    expectPacked("AA 00 00 00 07 11 00", pack("TZRPAckBody", &ack, 0, true));
    ack.bHasAuthInfo = 2;
    EXPECT_EQ(-7, pack("TZRPAckBody", &ack, 0, true).result);
}

TEST(Oracle, WritesTheBodyThatLiesBehindAFrame) {
    Bytes memory(sizeof(TZRPFrame) + 3);
    zrp_oracle::construct(typeNamed("TZRPFrame"), memory.data(), 0);
    zrp_oracle::setValueAt(memory.data(), zrp_oracle::typeTZRPFrame.fields[1].governor, 3);
    memcpy(memory.data() + sizeof(TZRPFrame), "xyz", 3);
    const std::string bytes = pack("TZRPFrame", memory.data(), 0, true).bytes;
    EXPECT_EQ("25 00 00 00 03 78 79 7A", bytes.substr(bytes.size() - 23));
}

TEST(Oracle, LeavesTheLeadingGroupsOfAVarintThatDoesNotFit) {
    TZRPCStopBody stop{};
    stop.dwReserved = 300;
    Bytes buffer(7, untouched);
    size_t used = 0;
    EXPECT_EQ(-1, zrp_oracle::pack(typeNamed("TZRPCStopBody"), &stop, 0, buffer.data(),
                                   buffer.size(), &used, true));
    EXPECT_EQ("AA 00 00 00 06 10 AC", toHex(buffer));
    EXPECT_EQ(6u, used);
}

TEST(Oracle, PutsFieldsBehindTheMagicWhereTheLengthDoesNotFit) {
    const TZRPCStopBody stop{};
    Bytes buffer(4, untouched);
    size_t used = 0;
    EXPECT_EQ(0, zrp_oracle::pack(typeNamed("TZRPCStopBody"), &stop, 0, buffer.data(),
                                  buffer.size(), &used, true));
    EXPECT_EQ("AA 10 00 5C", toHex(buffer));
    EXPECT_EQ(3u, used);
}

TEST(Oracle, DecodesFieldsAndNotesWhichItMet) {
    TZRPSStopBody stop{};
    EXPECT_EQ(0, unpack("TZRPSStopBody", &stop, "AA 00 00 00 0A 10 AC 02 20 01"));
    EXPECT_EQ(300u, stop.dwCode);
    EXPECT_EQ(1u, stop.dwExErrCode);
    EXPECT_EQ(3u, stop.presence);

    // Field 3 is unknown to an authentication request; field 4 has bit 2.
    TZRPAuthReqBody request{};
    EXPECT_EQ(0, unpack("TZRPAuthReqBody", &request, "AA 00 00 00 0C 35 00 00 00 00 40 07"));
    EXPECT_EQ(7u, request.dwXQuorvaTimestamp);
    EXPECT_EQ(4u, request.presence);
}

TEST(Oracle, FoldsOverlongVarintsAndAcceptsTruncatedOnesOf64Bits) {
    TZRPCStopBody stop{};
    EXPECT_EQ(0, unpack("TZRPCStopBody", &stop, "AA 00 00 00 0C 10 80 80 80 80 8F 01"));
    EXPECT_EQ(0xF0000008u, stop.dwReserved);
    EXPECT_EQ(-2, unpack("TZRPCStopBody", &stop, "AA 00 00 00 0B 10 FF FF FF FF 1F"));
    EXPECT_EQ(0x0FFFFFFFu, stop.dwReserved);

    TVESKAuthData data{};
    EXPECT_EQ(0, unpack("TVESKAuthData", &data, "AA 00 00 00 09 10 FF FF 03"));
    EXPECT_EQ(0xFFFFu, data.wAuthLen);
    EXPECT_EQ(-2, unpack("TVESKAuthData", &data, "AA 00 00 00 09 10 FF FF 04"));
    EXPECT_EQ(0, unpack("TVESKAuthData", &data, "AA 00 00 00 0C 10 81 80 80 80 80 7F"));
    EXPECT_EQ(0x03F9u, data.wAuthLen);  // 1, and 0x7F shifted by 35 mod 32

    TZRPRouteChangeBody change{};
    change.ullServerID = 9;
    size_t used = 0;
    EXPECT_EQ(0, unpack("TZRPRouteChangeBody", &change, "AA 00 00 00 06 10", nullptr, &used));
    EXPECT_EQ(0u, change.ullServerID);
    EXPECT_EQ(6u, used);
}

TEST(Oracle, SetsACountFromTheElementsItStored) {
    TVESKRawDHReq request{};
    EXPECT_EQ(
        0, unpack("TVESKRawDHReq", &request, "AA 00 00 00 11 10 0A 25 00 00 00 05 01 02 03 04 05"));
    EXPECT_EQ(5u, request.wA_size);
    EXPECT_EQ(
        0, unpack("TVESKRawDHReq", &request, "AA 00 00 00 11 25 00 00 00 05 01 02 03 04 05 10 0A"));
    EXPECT_EQ(10u, request.wA_size);
    EXPECT_EQ(-37, unpack("TVESKRawDHReq", &request, "AA 00 00 00 0A 25 00 00 00 00"));

    // 70 bytes for 64 places: the last six are read as fields, here three times field 1.
    std::string digits = "AA 00 00 00 50 25 00 00 00 46";
    for (int i = 0; i < 64; ++i) {
        digits += " 0E";
    }
    EXPECT_EQ(0, unpack("TVESKRawDHReq", &request, digits + " 10 01 10 02 10 03"));
    EXPECT_EQ(3u, request.wA_size);
    EXPECT_EQ(0x0E, request.szDH_A[63]);
}

TEST(Oracle, WritesTheMemberItFoundBackIntoTheSelector) {
    TVESKAccount account{};
    EXPECT_EQ(0, unpack("TVESKAccount", &account, "AA 00 00 00 0E 21 01 35 00 00 00 02 20 07"));
    EXPECT_EQ(2u, account.bFormat);
    EXPECT_EQ(7u, account.stValue.ullUINT64);
    EXPECT_EQ(6u, account.presence);
    EXPECT_EQ(-2, unpack("TVESKAccount", &account, "AA 00 00 00 0A 35 00 00 00 00"));

    TVESKIDValue value{};
    long long selector = 5;
    EXPECT_EQ(0, unpack("TVESKIDValue", &value, "AA 00 00 00 07 70 05", &selector));
    EXPECT_EQ(7, selector);
}

TEST(Oracle, RefusesADeclaredLengthBelowTheEnvelope) {
    TZRPBase base{};
    base.presence = 1;
    size_t used = 0;
    EXPECT_EQ(-34, unpack("TZRPBase", &base, "AA 00 00 00 04 10 00", nullptr, &used));
    EXPECT_EQ(5u, used);
    EXPECT_EQ(0u, base.presence);

    TVESKIDValue value{};
    long long selector = 5;
    EXPECT_EQ(-34, unpack("TVESKIDValue", &value, "AA 00 00 00 00 01 03", &selector));
    EXPECT_EQ(5, selector);
    EXPECT_EQ(3, value.chNull);
    EXPECT_EQ(-2, unpack("TVESKIDValue", &value, "AA 00 00 00 03", &selector));
}

TEST(Oracle, ConstructsDefaultsAndLeavesTheRestOfATextAlone) {
    const TZRPAuthReqBody request = constructed<TZRPAuthReqBody>("TZRPAuthReqBody");
    EXPECT_EQ("56 31 00 00 00 00 00 00", toHex(request.szXQuorvaTokenVersion, 8));
    EXPECT_EQ("00 77 77", toHex(request.szGameToken, 3));
    EXPECT_EQ(1024u, constructed<TZRPAckHead>("TZRPAckHead").dwCompressLimit);
    EXPECT_EQ(1024u, constructed<TZRPBingoBody>("TZRPBingoBody").dwCompressLimit);
    EXPECT_EQ(0, constructed<TVESKKey>("TVESKKey").szValue[127]);
}

TEST(Oracle, DumpsValuesHeadingsArraysAndTexts) {
    TVESKAccount account{};
    account.wType = 65535;
    account.stValue.chNull = -1;
    Bytes buffer(200, untouched);
    OutputCursor out(buffer.data(), buffer.size());
    zrp_oracle::PrintLog log;
    EXPECT_EQ(0, zrp_oracle::visualize(typeNamed("TVESKAccount"), &account, 0, out, 2, ';', log));
    EXPECT_EQ("[wType]65535;[bFormat]0x00;[stValue];[chNull]0xffffffff;[ullUid]0;",
              std::string(buffer.data()));
    ASSERT_EQ(5u, log.calls.size());
    const PrintCall placeholder{PrintCall::Kind::value, 3, ';', "[chNull]", "0x%02x", "0xffffffff"};
    EXPECT_EQ(placeholder, log.calls[3]);

    TVESKKey key{};
    key.bLength = 2;
    key.szValue[1] = 0xA0;
    log.calls.clear();
    size_t used = 0;
    EXPECT_EQ(0, zrp_oracle::visualizeInto(typeNamed("TVESKKey"), &key, 0, buffer.data(),
                                           buffer.size(), &used, -1, '\n', log));
    EXPECT_EQ("[bLength]0x02\n[szValue]2 0x00 0xa0\n", std::string(buffer.data()));
    EXPECT_EQ(strlen(buffer.data()), used);
    key.bLength = 200;
    EXPECT_EQ(-7, zrp_oracle::visualizeInto(typeNamed("TVESKKey"), &key, 0, buffer.data(),
                                            buffer.size(), &used, -1, '\n', log));
    EXPECT_EQ("[bLength]0xc8\n", std::string(buffer.data()));
}

TEST(Oracle, ComputesTheLargestSizesOfTheCatalogue) {
    const struct {
        const char* type;
        size_t varint;
        size_t fixed;
    } expected[] = {
        {"TZRPBase", 83, 75},        {"TVESKAccount", 308, 305},    {"TVESKIDValue", 270, 270},
        {"TZRPSynHead", 2702, 2685}, {"TZRPRouteInfo", 151, 151},   {"TZRPExtHead", 2711, 2694},
        {"TZRPBody", 1073, 1070},    {"TZRPInFrame", 3893, 3865},   {"TZRPFrame", 2825, 2800},
        {"TZRPAckBody", 870, 866},   {"TZRPAuthReqBody", 844, 842}, {"TVESKKey", 148, 148},
    };
    for (const auto& [type, varint, fixed] : expected) {
        EXPECT_EQ(varint, zrp_oracle::largestSize(typeNamed(type), true)) << type;
        EXPECT_EQ(fixed, zrp_oracle::largestSize(typeNamed(type), false)) << type;
    }
}

}  // namespace zrp_test
