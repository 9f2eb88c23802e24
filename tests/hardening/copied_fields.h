// A record that agrees with another in its fields and in nothing else.
#pragma once

#include "tests/oracle/catalogue.h"

namespace zrp_test {

/// Copies from one record into another what encoding and printing may look at: every integer, the
/// characters of texts, the elements that counts speak of, the members that selectors name. Behind
/// a text's NUL and a count's last element, in the other members of unions, in absent elements, in
/// padding and in presence words `to` keeps its bytes. `selector` matters for unions only.
void copyFields(const zrp_oracle::Type& type, const void* from, long long selector, void* to);

}  // namespace zrp_test
