// The commands of an encoded frame, found a second, slow way: with the oracle's decoder.
#pragma once

#include "protocol/quorva_zrp_validate.h"
#include "tests/support/bytes.h"

namespace zrp_test {

/// What lies behind the head.
enum class FrameBody { none, rawBytes, member };

/// Whether the bytes can be followed to their end, and what they state.
struct StatedCommands {
    bool isReadable;
    quorva_zrp::ZRPCommands commands;
};

StatedCommands statedCommands(const Bytes& encoded, FrameBody body);

/// The result that belongs to readable bytes.
int expectedDifferences(const quorva_zrp::ZRPCommands& commands);

}  // namespace zrp_test
