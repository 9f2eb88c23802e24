// Initialisation: every field at its default, the presence word cleared.
#pragma once

#include <stdint.h>

namespace quorva_zrp::codec {

/// Initialises a structure.
void construct(uint8_t type, char* record);

/// Prepares the member of a union that `selector` names; one that names none changes nothing.
void construct(uint8_t type, char* value, long long selector);

}  // namespace quorva_zrp::codec
