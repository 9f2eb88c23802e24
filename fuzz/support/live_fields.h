// What of two records has to be equal: the fields that say something, not the bytes between them.
#pragma once

#include "tests/oracle/catalogue.h"

namespace zrp_fuzz {

using zrp_oracle::Field;
using zrp_oracle::Type;

/// The first field that a sound `sent` puts on the wire and that is not the same in `received`, or
/// whose presence bit there does not say that it came; null when there is none. `selector` names
/// the member of a union.
const Field* firstNotReceived(const Type& type, const char* sent, const char* received,
                              long long selector);

/// The first field whose presence bit is set after a decode that succeeded, but that differs
/// between two records that held opposite bytes before: it was not written. Null when there is
/// none. Arrays are looked at as far as any length on the wire would have filled them, their first
/// byte. What lies in a union of a structure is not looked at: a selector field that comes after
/// its union names a member that need not have come.
const Field* firstNotWritten(const Type& type, const char* first, const char* second,
                             long long selector);

}  // namespace zrp_fuzz
