// What a record holds, as bytes that do not depend on its layout or on the machine's byte order.
#pragma once

#include "tests/oracle/catalogue.h"
#include "tests/support/bytes.h"

namespace zrp_test {

/// How much of a record's unions means the same on every platform. What one member left in the
/// storage of another depends on layout and byte order.
enum class Unions {
    hidden,
    shown,  ///< each union has held its live member only
};

/// Every field in the order of the tables, nested ones included, and every presence word: integers
/// as 8 bytes, most significant first; texts and arrays with all their storage; of unions the live
/// member, when shown.
Bytes viewOf(const zrp_oracle::Type& structure, const void* record, Unions unions);

/// The same of the member that `selector` names; nothing when it names none.
Bytes viewOfMember(const zrp_oracle::Type& unionType, const void* record, long long selector,
                   Unions inside);

/// Zeroes the storage of every union below the top of a structure, or all of a union.
void clearUnions(const zrp_oracle::Type& type, void* record);

}  // namespace zrp_test
