// What encoding, decoding and printing share: results, integers in records, wire types.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include "tests/oracle/catalogue.h"

namespace zrp_oracle {

constexpr int noRoom = -1;
constexpr int noData = -2;
constexpr int textTooLong = -3;
constexpr int referTooBig = -7;
constexpr int nullArgument = -19;
constexpr int badMagic = -32;
constexpr int badSelector = -33;
constexpr int lengthMismatch = -34;
constexpr int badTypeId = -35;
constexpr int zeroLength = -37;

constexpr uint8_t varintMagic = 0xAA;
constexpr uint8_t fixedMagic = 0x99;

/// The type id that says a 4-byte length and that many bytes follow.
constexpr unsigned delimitedTypeId = 5;

/// Bytes of an integer field; 0 for every other kind.
size_t integerWidth(Kind kind);
bool isSigned(Kind kind);
unsigned typeIdOf(Kind kind, bool varint);

/// The bits of an integer field, unsigned and zero-extended; and a change of them.
uint64_t bitsOf(const Field& field, const void* record);
void setBits(const Field& field, void* record, uint64_t bits);
/// The value of a signed integer field.
int64_t signedValueOf(const Field& field, const void* record);

/// The start of a field in a record.
const char* fieldIn(const Field& field, const void* record);
char* fieldIn(const Field& field, void* record);

/// The count of characters before the first NUL, the capacity when there is none.
size_t textLength(const Field& field, const void* record);

/// The elements a byte array field has now: its count, or its capacity when it has no count.
uint64_t elementCount(const Field& field, const void* record);

/// The selector a union field has in its record.
long long selectorOf(const Field& field, const void* record);

/// True for a counted byte array of no bytes and for an optional element whose flag is 0.
bool isLeftOut(const Field& field, const void* record);

/// True for a count or flag that is larger than it may be.
bool exceedsBound(const Field& field, const void* record);

}  // namespace zrp_oracle
