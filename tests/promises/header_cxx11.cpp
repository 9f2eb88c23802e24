// The public headers as a program of 2011 sees them: compiled, never run, with nothing included but
// the headers themselves, without exceptions and without run-time type information.
#include "protocol/quorva_zrp_validate.h"
// Included again: headers must stand that, in any order.
#include "Common/Source/Core/BRX/BrxBuf.h"
#include "Common/Source/Core/BRX/BrxBufUtil.h"
#include "protocol/quorva_zrp.h"
#include "protocol/quorva_zrp_validate.h"

#if defined(ZRP_STRUCTURE_OPERATIONS) || defined(ZRP_UNION_OPERATIONS) || defined(ZRP_PRESENCE) || \
    defined(ZRP_LARGEST) || defined(ZRP_VALIDATE_STRUCTURE) || defined(ZRP_VALIDATE_UNION)
#error "the catalogue keeps the macros that declare it to itself"
#endif

namespace header_user {

static_assert(quorva_zrp::ZRP_CMD_SYN == 0x1001, "commands are constant expressions");
static_assert(quorva_zrp::TZRPBase_MAX_VARINT == 83, "sizes are constant expressions");
static_assert(Quorva::BRX_ERR_NO_ROOM == -1, "result codes are constant expressions");
static_assert(sizeof(quorva_zrp::TVESKIDValue) == 256, "records are complete types");

struct Connection {
    quorva_zrp::TZRPInFrame frame;
    char out[quorva_zrp::TZRPInFrame_MAX_VARINT];
};

int greet(Connection& connection, size_t* used);
int greet(Connection& connection, size_t* used) {
    quorva_zrp::TZRPInFrame& frame = connection.frame;
    int result = frame.construct();
    if (result != 0) {
        return result;
    }
    frame.stHead.stBase.wCommand = quorva_zrp::ZRP_CMD_SYN;
    result = frame.stHead.stExtend.construct(frame.stHead.stBase.wCommand);
    if (result != 0) {
        return result;
    }
    frame.stHead.stExtend.stSyn.bKeyMethod = quorva_zrp::ZRP_KEY_NONE;
    return frame.packTLV(connection.out, sizeof(connection.out), used, true);
}

bool accept(const char* bytes, size_t size, quorva_zrp::TZRPInFrame& frame);
bool accept(const char* bytes, size_t size, quorva_zrp::TZRPInFrame& frame) {
    size_t used = 0;
    if (frame.construct() != 0 || frame.unpackTLV(bytes, size, &used) != 0 || used != size) {
        return false;
    }
    switch (frame.stHead.stBase.wCommand) {
        case quorva_zrp::ZRP_CMD_ACK:
            return frame.has_Head() && frame.has_Body() && frame.stBody.stAck.has_HasAuthInfo();
        case quorva_zrp::ZRP_CMD_WAIT:
            return frame.stBody.stWait.dwPosition != 0;
        default:
            return false;
    }
}

int sendBody(quorva_zrp::TZRPFrame& frame, const void* body, uint32_t size, char* out,
             size_t outSize);
int sendBody(quorva_zrp::TZRPFrame& frame, const void* body, uint32_t size, char* out,
             size_t outSize) {
    frame.stHead.stBase.dwBodyLen = size;
    memcpy(frame.szBody, body, size);
    return frame.packTLV(out, outSize, nullptr, false);
}

int convert(long long& selector, quorva_zrp::TVESKIDValue& identifier, const char* bytes,
            size_t size, Quorva::BrxWriteBuf& out);
int convert(long long& selector, quorva_zrp::TVESKIDValue& identifier, const char* bytes,
            size_t size, Quorva::BrxWriteBuf& out) {
    Quorva::BrxReadBuf in(bytes, size);
    const int result = identifier.unpackTLVNoVarint(selector, in, size);
    return result != 0 ? result : identifier.packTLVWithVarint(selector, out);
}

int primitives(Quorva::BrxWriteBuf& out, Quorva::BrxReadBuf& in);
int primitives(Quorva::BrxWriteBuf& out, Quorva::BrxReadBuf& in) {
    uint32_t tag = 0;
    int32_t value = 0;
    int result = in.readVarUInt32(tag);
    if (result == 0) {
        result = in.readVarInt32(value);
    }
    if (result == 0) {
        result = Quorva::BrxTLVUtil::skipUnknownFields(
            in, static_cast<int>(Quorva::BrxTLVUtil::getTypeId(tag)));
    }
    if (result == 0) {
        result = out.writeInt32(value);
    }
    return result != 0 ? result : out.textize("%d", static_cast<int>(value));
}

const char* describe(const quorva_zrp::TZRPHead& head, char* text, size_t size);
const char* describe(const quorva_zrp::TZRPHead& head, char* text, size_t size) {
    head.set_has_Base();
    return head.visualize_ex(text, size, nullptr, 0, '\n');
}

int check(const quorva_zrp::TZRPInFrame& frame, const char* bytes, size_t size);
int check(const quorva_zrp::TZRPInFrame& frame, const char* bytes, size_t size) {
    char path[quorva_zrp::ZRP_PATH_SIZE];
    quorva_zrp::ZRPCommands commands;
    const int result = quorva_zrp::validate(frame, path, sizeof(path));
    return result != 0 ? result : quorva_zrp::commandsOfInFrame(bytes, size, &commands);
}

int print(Quorva::BrxWriteBuf& out, uint32_t value);
int print(Quorva::BrxWriteBuf& out, uint32_t value) {
    const int result = Quorva::BrxBufUtil::printVariable(out, 0, '\n', "[dwValue]", "%u", value);
    return result != 0 ? result : Quorva::BrxBufUtil::printString(out, 0, '\n', "[szText]", "text");
}

}  // namespace header_user
