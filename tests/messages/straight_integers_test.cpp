// Integers in the records that frames consist of, which are coded straight along: every bit alone,
// every bit but one and both sides of every power of 2, so that no bit strays and no length is
// wrong.
#include "tests/messages/make.h"

namespace zrp_test {
namespace {

using namespace quorva_zrp;

std::string bytesOf(const std::vector<unsigned char>& bytes) {
    return ' ' + toHex(bytes.data(), bytes.size());
}

/// Groups of 7 bits, the lowest first, bit 0x80 set in all but the last.
std::string asVarint(uint64_t value) {
    std::vector<unsigned char> bytes;
    for (; value >= 128; value /= 128) {
        bytes.push_back(static_cast<unsigned char>(128 + value % 128));
    }
    bytes.push_back(static_cast<unsigned char>(value));
    return bytesOf(bytes);
}

/// A tag and a delimited value of fewer than 256 bytes.
std::string delimited(uint64_t number, const std::string& value) {
    const unsigned char size = static_cast<unsigned char>(hex(value).size());
    return asVarint(number * 16 + 5) + " 00 00 00" + bytesOf({size}) + ' ' + value;
}

std::vector<uint64_t> valuesOf(unsigned bits) {
    const uint64_t all = UINT64_MAX >> (64 - bits);
    std::vector<uint64_t> values = {0, all};
    for (unsigned i = 0; i < bits; ++i) {
        const uint64_t bit = UINT64_C(1) << i;
        values.insert(values.end(), {bit, bit - 1, (bit + 1) & all, all - bit});
    }
    return values;
}

/// Encodes the record and decodes what that must give, alone and with an unknown field behind it,
/// whose bytes look like ends of varints or like none.
template <class T, class Value>
void expectBothWays(const T& record, const std::string& bytes, Value valueOf) {
    EXPECT_EQ(encodeFields(record, varint), written(0, bytes));
    for (const std::string& behind :
         {std::string(), delimited(40, repeated(0x00, 12)), delimited(40, repeated(0xFF, 12))}) {
        const std::string all = bytes + behind;
        const size_t size = hex(all).size();
        T decoded = made<T>();
        EXPECT_EQ(decodeFields(decoded, all, varint, size), (Read{0, size})) << all;
        EXPECT_EQ(valueOf(decoded), valueOf(record)) << all;
    }
}

TEST(StraightIntegers, Of16BitsKeepEveryBit) {
    for (const uint64_t value : valuesOf(16)) {
        TZRPBase base = made<TZRPBase>();
        base.wBodyVersion = static_cast<uint16_t>(value);
        expectBothWays(
            base, "10 00 20 00 30" + asVarint(value) + " 40 00 50 00 61 00 70 00 80 01 00 90 01 00",
            [](const TZRPBase& one) { return one.wBodyVersion; });
    }
}

TEST(StraightIntegers, Of32BitsKeepEveryBit) {
    for (const uint64_t value : valuesOf(32)) {
        TZRPBase base = made<TZRPBase>();
        base.dwTimeStamp = static_cast<uint32_t>(value);
        expectBothWays(
            base, "10 00 20 00 30 00 40 00 50" + asVarint(value) + " 61 00 70 00 80 01 00 90 01 00",
            [](const TZRPBase& one) { return one.dwTimeStamp; });
    }
}

TEST(StraightIntegers, Of32BitsKeepEveryBitAtTheEnd) {
    for (const uint64_t value : valuesOf(32)) {
        TZRPBase base = made<TZRPBase>();
        base.dwBodyLen = static_cast<uint32_t>(value);
        expectBothWays(base,
                       "10 00 20 00 30 00 40 00 50 00 61 00 70 00 80 01 00 90 01" + asVarint(value),
                       [](const TZRPBase& one) { return one.dwBodyLen; });
    }
}

TEST(StraightIntegers, Of64BitsKeepEveryBit) {
    const std::string base =
        "10 00 20 00 30 00 40" + asVarint(ZRP_CMD_DATA) + " 50 00 61 00 70 00 80 01 00 90 01 00";
    for (const uint64_t value : valuesOf(64)) {
        TZRPHead head = made<TZRPHead>();
        head.stBase.wCommand = ZRP_CMD_DATA;
        head.stExtend.construct(ZRP_CMD_DATA);
        TZRPDataHead& data = head.stExtend.stData;
        data.bRouteFlag = ZRP_ROUTE_SERVER;
        data.stRouteInfo.construct(ZRP_ROUTE_SERVER);
        data.stRouteInfo.stSpecifyServer.ullServerID = value;
        const std::string route = delimited(ZRP_ROUTE_SERVER, "10" + asVarint(value) + " 21 00");
        const std::string extension = "11 00 21 00 31 02" + delimited(4, route);
        expectBothWays(head, delimited(1, base) + delimited(2, delimited(ZRP_CMD_DATA, extension)),
                       [](const TZRPHead& one) {
                           return one.stExtend.stData.stRouteInfo.stSpecifyServer.ullServerID;
                       });
    }
}

}  // namespace
}  // namespace zrp_test
