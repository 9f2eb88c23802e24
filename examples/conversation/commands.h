// The names of the command codes, for people.
#pragma once

#include <stdint.h>

#include <array>

#include "protocol/quorva_zrp.h"

namespace conversation {

struct Command {
    uint16_t code;
    const char* name;
};

constexpr std::array<Command, 13> commands = {{
    {quorva_zrp::ZRP_CMD_NULL, "NULL"},
    {quorva_zrp::ZRP_CMD_SYN, "SYN"},
    {quorva_zrp::ZRP_CMD_ACK, "ACK"},
    {quorva_zrp::ZRP_CMD_AUTH_REQ, "AUTH_REQ"},
    {quorva_zrp::ZRP_CMD_AUTH_RSP, "AUTH_RSP"},
    {quorva_zrp::ZRP_CMD_WAIT, "WAIT"},
    {quorva_zrp::ZRP_CMD_DATA, "DATA"},
    {quorva_zrp::ZRP_CMD_CSTOP, "CSTOP"},
    {quorva_zrp::ZRP_CMD_SSTOP, "SSTOP"},
    {quorva_zrp::ZRP_CMD_BINGO, "BINGO"},
    {quorva_zrp::ZRP_CMD_AUTH_REFRESH_REQ, "AUTH_REFRESH_REQ"},
    {quorva_zrp::ZRP_CMD_AUTH_REFRESH_NOTIFY, "AUTH_REFRESH_NOTIFY"},
    {quorva_zrp::ZRP_CMD_ROUTE_CHANGE, "ROUTE_CHANGE"},
}};

/// The name of a command code, or null for a code that is no command: decoding a frame whose head
/// extension or body is a member this program does not know leaves such a code in `wCommand`.
constexpr const char* commandName(uint16_t code) {
    for (const Command& command : commands) {
        if (command.code == code) {
            return command.name;
        }
    }
    return nullptr;
}

}  // namespace conversation
