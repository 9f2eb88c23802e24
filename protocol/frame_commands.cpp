#include "protocol/codec/commands.h"

namespace quorva_zrp {

namespace codec::commands {

namespace {

int commandsOf(const char* buffer, size_t size, Body body, ZRPCommands* commands) {
    uint32_t command = 0;
    if (agree(buffer, size, body, command)) {
        if (commands != nullptr) {
            const bool hasBody = body == Body::member;
            *commands = {true,    true,
                         hasBody, static_cast<uint16_t>(command),
                         command, hasBody ? command : 0};
        }
        return 0;
    }
    ZRPCommands unused;
    return readCommands(buffer, size, body, commands != nullptr ? *commands : unused);
}

}  // namespace

}  // namespace codec::commands

int commandsOfHead(const char* buffer, size_t size, ZRPCommands* commands) {
    return codec::commands::commandsOf(buffer, size, codec::commands::Body::none, commands);
}

int commandsOfFrame(const char* buffer, size_t size, ZRPCommands* commands) {
    return codec::commands::commandsOf(buffer, size, codec::commands::Body::rawBytes, commands);
}

int commandsOfInFrame(const char* buffer, size_t size, ZRPCommands* commands) {
    return codec::commands::commandsOf(buffer, size, codec::commands::Body::member, commands);
}

}  // namespace quorva_zrp
