// The integer encodings of the wire core, each with its writer, its reader and pairs of a value and
// its bytes, so that writing and reading are held to the same list.
#pragma once

#include <gtest/gtest.h>
#include <stdint.h>

#include <string>

#include "Common/Source/Core/BRX/BrxBuf.h"

namespace zrp_test {

template <class T>
struct IntegerVector {
    T value;
    const char* bytes;
};

// --- Fixed width --------------------------------------------------------------------------------

struct UInt8 {
    using Value = uint8_t;
    static constexpr const char* name = "UInt8";
    static int32_t write(Quorva::BrxWriteBuf& buf, Value value) { return buf.writeUInt8(value); }
    static int32_t read(Quorva::BrxReadBuf& buf, Value& value) { return buf.readUInt8(value); }
    static constexpr IntegerVector<Value> vectors[] = {
        {0, "00"}, {1, "01"}, {0x7F, "7F"}, {0x80, "80"}, {0xFF, "FF"},
    };
};

struct UInt16 {
    using Value = uint16_t;
    static constexpr const char* name = "UInt16";
    static int32_t write(Quorva::BrxWriteBuf& buf, Value value) { return buf.writeUInt16(value); }
    static int32_t read(Quorva::BrxReadBuf& buf, Value& value) { return buf.readUInt16(value); }
    static constexpr IntegerVector<Value> vectors[] = {
        {0, "00 00"},      {1, "00 01"},      {0x0100, "01 00"},
        {0xABCD, "AB CD"}, {0x80FF, "80 FF"}, {0xFFFF, "FF FF"},
    };
};

struct UInt32 {
    using Value = uint32_t;
    static constexpr const char* name = "UInt32";
    static int32_t write(Quorva::BrxWriteBuf& buf, Value value) { return buf.writeUInt32(value); }
    static int32_t read(Quorva::BrxReadBuf& buf, Value& value) { return buf.readUInt32(value); }
    static constexpr IntegerVector<Value> vectors[] = {
        {0, "00 00 00 00"},          {1, "00 00 00 01"},          {0x01020304, "01 02 03 04"},
        {0x80FF7F00, "80 FF 7F 00"}, {0xFFFFFFFF, "FF FF FF FF"},
    };
};

struct UInt64 {
    using Value = uint64_t;
    static constexpr const char* name = "UInt64";
    static int32_t write(Quorva::BrxWriteBuf& buf, Value value) { return buf.writeUInt64(value); }
    static int32_t read(Quorva::BrxReadBuf& buf, Value& value) { return buf.readUInt64(value); }
    static constexpr IntegerVector<Value> vectors[] = {
        {0, "00 00 00 00 00 00 00 00"},
        {1, "00 00 00 00 00 00 00 01"},
        {UINT64_C(0x0102030405060708), "01 02 03 04 05 06 07 08"},
        {UINT64_C(0xFFFFFFFF), "00 00 00 00 FF FF FF FF"},
        {UINT64_C(0x8090A0B0C0D0E0F0), "80 90 A0 B0 C0 D0 E0 F0"},
        {UINT64_MAX, "FF FF FF FF FF FF FF FF"},
    };
};

struct Int8 {
    using Value = int8_t;
    static constexpr const char* name = "Int8";
    static int32_t write(Quorva::BrxWriteBuf& buf, Value value) { return buf.writeInt8(value); }
    static int32_t read(Quorva::BrxReadBuf& buf, Value& value) { return buf.readInt8(value); }
    static constexpr IntegerVector<Value> vectors[] = {
        {0, "00"}, {1, "01"}, {-1, "FF"}, {INT8_MAX, "7F"}, {INT8_MIN, "80"},
    };
};

struct Int32 {
    using Value = int32_t;
    static constexpr const char* name = "Int32";
    static int32_t write(Quorva::BrxWriteBuf& buf, Value value) { return buf.writeInt32(value); }
    static int32_t read(Quorva::BrxReadBuf& buf, Value& value) { return buf.readInt32(value); }
    static constexpr IntegerVector<Value> vectors[] = {
        {0, "00 00 00 00"},         {1, "00 00 00 01"},          {-1, "FF FF FF FF"},
        {-2, "FF FF FF FE"},        {0x01020304, "01 02 03 04"}, {INT32_MAX, "7F FF FF FF"},
        {INT32_MIN, "80 00 00 00"},
    };
};

struct Int64 {
    using Value = int64_t;
    static constexpr const char* name = "Int64";
    static int32_t write(Quorva::BrxWriteBuf& buf, Value value) { return buf.writeInt64(value); }
    static int32_t read(Quorva::BrxReadBuf& buf, Value& value) { return buf.readInt64(value); }
    static constexpr IntegerVector<Value> vectors[] = {
        {0, "00 00 00 00 00 00 00 00"},
        {1, "00 00 00 00 00 00 00 01"},
        {-1, "FF FF FF FF FF FF FF FF"},
        {-2, "FF FF FF FF FF FF FF FE"},
        {INT64_C(0x0102030405060708), "01 02 03 04 05 06 07 08"},
        {INT64_MAX, "7F FF FF FF FF FF FF FF"},
        {INT64_MIN, "80 00 00 00 00 00 00 00"},
    };
};

// --- Variable length: the last value of each width and the first of the next --------------------

struct VarUInt16 {
    using Value = uint16_t;
    static constexpr const char* name = "VarUInt16";
    static int32_t write(Quorva::BrxWriteBuf& buf, Value value) {
        return buf.writeVarUInt16(value);
    }
    static int32_t read(Quorva::BrxReadBuf& buf, Value& value) { return buf.readVarUInt16(value); }
    static constexpr IntegerVector<Value> vectors[] = {
        {0, "00"},           {1, "01"},           {127, "7F"},         {128, "80 01"},
        {300, "AC 02"},      {16383, "FF 7F"},    {16384, "80 80 01"}, {32767, "FF FF 01"},
        {32768, "80 80 02"}, {65535, "FF FF 03"},
    };
};

struct VarUInt32 {
    using Value = uint32_t;
    static constexpr const char* name = "VarUInt32";
    static int32_t write(Quorva::BrxWriteBuf& buf, Value value) {
        return buf.writeVarUInt32(value);
    }
    static int32_t read(Quorva::BrxReadBuf& buf, Value& value) { return buf.readVarUInt32(value); }
    static constexpr IntegerVector<Value> vectors[] = {
        {0, "00"},
        {1, "01"},
        {127, "7F"},
        {128, "80 01"},
        {300, "AC 02"},
        {16383, "FF 7F"},
        {16384, "80 80 01"},
        {2097151, "FF FF 7F"},
        {2097152, "80 80 80 01"},
        {268435455, "FF FF FF 7F"},
        {268435456, "80 80 80 80 01"},
        {0x80000000, "80 80 80 80 08"},
        {0xFFFFFFFF, "FF FF FF FF 0F"},
    };
};

struct VarUInt64 {
    using Value = uint64_t;
    static constexpr const char* name = "VarUInt64";
    static int32_t write(Quorva::BrxWriteBuf& buf, Value value) {
        return buf.writeVarUInt64(value);
    }
    static int32_t read(Quorva::BrxReadBuf& buf, Value& value) { return buf.readVarUInt64(value); }
    static constexpr IntegerVector<Value> vectors[] = {
        {0, "00"},
        {127, "7F"},
        {128, "80 01"},
        {300, "AC 02"},
        {16383, "FF 7F"},
        {16384, "80 80 01"},
        {2097151, "FF FF 7F"},
        {2097152, "80 80 80 01"},
        {268435455, "FF FF FF 7F"},
        {268435456, "80 80 80 80 01"},
        {0xFFFFFFFF, "FF FF FF FF 0F"},
        {UINT64_C(0x7FFFFFFFF), "FF FF FF FF 7F"},
        {UINT64_C(0x800000000), "80 80 80 80 80 01"},
        {UINT64_C(0x3FFFFFFFFFF), "FF FF FF FF FF 7F"},
        {UINT64_C(0x40000000000), "80 80 80 80 80 80 01"},
        {UINT64_C(0x1FFFFFFFFFFFF), "FF FF FF FF FF FF 7F"},
        {UINT64_C(0x2000000000000), "80 80 80 80 80 80 80 01"},
        {UINT64_C(0xFFFFFFFFFFFFFF), "FF FF FF FF FF FF FF 7F"},
        {UINT64_C(0x100000000000000), "80 80 80 80 80 80 80 80 01"},
        {UINT64_C(0x7FFFFFFFFFFFFFFF), "FF FF FF FF FF FF FF FF 7F"},
        {UINT64_C(0x8000000000000000), "80 80 80 80 80 80 80 80 80 01"},
        {UINT64_MAX, "FF FF FF FF FF FF FF FF FF 01"},
    };
};

struct VarInt32 {
    using Value = int32_t;
    static constexpr const char* name = "VarInt32";
    static int32_t write(Quorva::BrxWriteBuf& buf, Value value) { return buf.writeVarInt32(value); }
    static int32_t read(Quorva::BrxReadBuf& buf, Value& value) { return buf.readVarInt32(value); }
    static constexpr IntegerVector<Value> vectors[] = {
        {0, "00"},
        {-1, "01"},
        {1, "02"},
        {-2, "03"},
        {63, "7E"},
        {-64, "7F"},
        {64, "80 01"},
        {-65, "81 01"},
        {8191, "FE 7F"},
        {-8192, "FF 7F"},
        {8192, "80 80 01"},
        {-8193, "81 80 01"},
        {1048575, "FE FF 7F"},
        {-1048576, "FF FF 7F"},
        {1048576, "80 80 80 01"},
        {-1048577, "81 80 80 01"},
        {134217727, "FE FF FF 7F"},
        {-134217728, "FF FF FF 7F"},
        {134217728, "80 80 80 80 01"},
        {-134217729, "81 80 80 80 01"},
        {INT32_MAX, "FE FF FF FF 0F"},
        {INT32_MIN, "FF FF FF FF 0F"},
    };
};

struct VarInt64 {
    using Value = int64_t;
    static constexpr const char* name = "VarInt64";
    static int32_t write(Quorva::BrxWriteBuf& buf, Value value) { return buf.writeVarInt64(value); }
    static int32_t read(Quorva::BrxReadBuf& buf, Value& value) { return buf.readVarInt64(value); }
    static constexpr IntegerVector<Value> vectors[] = {
        {0, "00"},
        {-1, "01"},
        {1, "02"},
        {-2, "03"},
        {63, "7E"},
        {-64, "7F"},
        {64, "80 01"},
        {-65, "81 01"},
        {INT32_MAX, "FE FF FF FF 0F"},
        {INT32_MIN, "FF FF FF FF 0F"},
        {INT64_C(2147483648), "80 80 80 80 10"},
        {INT64_C(-2147483649), "81 80 80 80 10"},
        {INT64_C(0x3FFFFFFFFFFFFFFF), "FE FF FF FF FF FF FF FF 7F"},
        {INT64_C(-0x4000000000000000), "FF FF FF FF FF FF FF FF 7F"},
        {INT64_C(0x4000000000000000), "80 80 80 80 80 80 80 80 80 01"},
        {INT64_C(-0x4000000000000001), "81 80 80 80 80 80 80 80 80 01"},
        {INT64_MAX, "FE FF FF FF FF FF FF FF FF 01"},
        {INT64_MIN, "FF FF FF FF FF FF FF FF FF 01"},
    };
};

using FixedKinds = testing::Types<UInt8, UInt16, UInt32, UInt64, Int8, Int32, Int64>;
using VarintKinds = testing::Types<VarUInt16, VarUInt32, VarUInt64, VarInt32, VarInt64>;

struct KindName {
    template <class Kind>
    static std::string GetName(int) {
        return Kind::name;
    }
};

}  // namespace zrp_test
