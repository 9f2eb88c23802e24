#include "examples/conversation/fault.h"

#include <array>

namespace conversation {

using namespace quorva_zrp;

namespace {

constexpr std::array<Fault, 8> allFaults = {{
    {FaultKind::cut, "cut", Side::server, ZRP_CMD_AUTH_RSP, Outcome::peerGone,
     "the server dies in the middle of its AUTH_RSP frame"},
    {FaultKind::garbage, "garbage", Side::client, ZRP_CMD_AUTH_REQ, Outcome::notAFrame,
     "the client sends a stray byte in front of its AUTH_REQ frame"},
    {FaultKind::oversize, "oversize", Side::client, ZRP_CMD_AUTH_REQ, Outcome::frameTooLarge,
     "the client's AUTH_REQ frame announces 2147483647 bytes"},
    {FaultKind::tooShort, "short", Side::client, ZRP_CMD_AUTH_REQ, Outcome::notAFrame,
     "the client's AUTH_REQ frame announces 4 bytes, fewer than an envelope has"},
    {FaultKind::silence, "silence", Side::server, ZRP_CMD_AUTH_RSP, Outcome::timeout,
     "the server never sends its AUTH_RSP frame, nor anything else"},
    {FaultKind::damage, "damage", Side::server, ZRP_CMD_BINGO, Outcome::undecodable,
     "the server's BINGO frame begins with a field of no known wire type"},
    {FaultKind::repeat, "repeat", Side::server, ZRP_CMD_BINGO, Outcome::unexpectedFrame,
     "the server sends its BINGO frame twice"},
    {FaultKind::secret, "secret", Side::server, ZRP_CMD_ACK, Outcome::secretsDiffer,
     "one bit of the server's copy of the shared secret is flipped"},
}};

}  // namespace

std::span<const Fault> faults() {
    return allFaults;
}

const Fault* faultNamed(const std::string& name) {
    for (const Fault& fault : allFaults) {
        if (name == fault.name) {
            return &fault;
        }
    }
    return nullptr;
}

/// Overwrites the length in the envelope.
static void announce(Bytes& encoded, uint32_t length) {
    Quorva::BrxWriteBuf envelope(encoded.data(), encoded.size());
    check(envelope.writeUInt32(length, 1), Outcome::internalError, "injecting a fault");
}

void damageFrame(FaultKind kind, Bytes& encoded) {
    switch (kind) {
        case FaultKind::cut:
            encoded.resize(encoded.size() / 2);
            break;
        case FaultKind::garbage:
            encoded.insert(encoded.begin(), '\x55');
            break;
        case FaultKind::oversize:
            announce(encoded, INT32_MAX);
            break;
        case FaultKind::tooShort:
            announce(encoded, 4);
            break;
        case FaultKind::damage:
            // The tag of the head becomes field 7 of wire type 15: unknown, and no way to skip it.
            encoded[5] = '\x7F';
            break;
        case FaultKind::repeat: {
            const Bytes once = encoded;
            encoded.insert(encoded.end(), once.begin(), once.end());
            break;
        }
        case FaultKind::silence:
        case FaultKind::secret:
            break;
    }
}

}  // namespace conversation
