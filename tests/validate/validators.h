// `validate` of every type behind one run-time interface, beside MessageType.
#pragma once

#include <stddef.h>

namespace zrp_test {

/// `validate` of one type; `selector` is used by unions only.
using Validate = int (*)(const void* object, long long selector, char* path, size_t pathSize);

/// That of the type with this name; ends the program when there is none.
Validate validatorOf(const char* name);

}  // namespace zrp_test
