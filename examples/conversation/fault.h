// Faults that `--fault` injects: what one end does wrong, so that the other end can show how it
// copes.
#pragma once

#include <stdint.h>

#include <span>
#include <string>

#include "examples/conversation/frames.h"
#include "examples/conversation/outcome.h"

namespace conversation {

enum class FaultKind { cut, garbage, oversize, tooShort, silence, damage, repeat, secret };

struct Fault {
    FaultKind kind;
    const char* name;
    Side side;            ///< who misbehaves
    uint16_t command;     ///< at which frame it sends
    Outcome outcome;      ///< what the other end has to make of it
    const char* meaning;  ///< for `--help`
};

std::span<const Fault> faults();

/// The fault of this name, or null.
const Fault* faultNamed(const std::string& name);

/// Changes an encoded frame as the fault has it, where the fault is one of bytes.
void damageFrame(FaultKind kind, Bytes& encoded);

}  // namespace conversation
