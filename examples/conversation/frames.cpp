#include "examples/conversation/frames.h"

#include <string.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>

#include "examples/conversation/body_view.h"
#include "examples/conversation/commands.h"
#include "examples/conversation/outcome.h"

namespace conversation {

using namespace quorva_zrp;

// --- Making frames ------------------------------------------------------------------------------

/// Gives every field of a frame for `command` its default.
static void constructFor(uint16_t command, TZRPInFrame& frame) {
    // `construct` alone leaves a frame of command 0, its two unions ready for the members of
    // command 0 and no other. Those of another command are made ready by the unions' own
    // `construct`; without that they hold whatever the memory held. None of the three can fail.
    (void)frame.construct();
    frame.stHead.stBase.wCommand = command;
    (void)frame.stHead.stExtend.construct(command);
    (void)frame.stBody.construct(command);
}

TZRPInFrame makeFrame(uint16_t command) {
    TZRPInFrame frame;
    constructFor(command, frame);
    frame.stHead.stBase.wMagic = frameMagic;
    frame.stHead.stBase.wHeadVersion = headVersion;
    frame.stHead.stBase.wBodyVersion = bodyVersion;
    // dwHeadLen stays 0, and so does dwBodyLen in this form: the envelope and the lengths of the
    // fields delimit everything, and no decoder looks at these two.
    return frame;
}

TZRPHead makeDataHead() {
    return makeFrame(ZRP_CMD_DATA).stHead;
}

// A union inside a message works the same way: set the selector field, construct the union for it,
// then fill the member. The encoder goes by the selector field alone.

static TZRPRouteInfo& chooseRoute(TZRPHead& head, uint8_t flag) {
    TZRPDataHead& data = head.stExtend.stData;
    data.bRouteFlag = flag;
    (void)data.stRouteInfo.construct(flag);
    return data.stRouteInfo;
}

void routeToZone(TZRPHead& head, uint32_t type, uint32_t zone) {
    TZRPRouteInfo& route = chooseRoute(head, ZRP_ROUTE_ZONE);
    route.stSpecifyZone.dwTypeID = type;
    route.stSpecifyZone.dwZoneID = zone;
}

void routeToServer(TZRPHead& head, uint64_t server, uint8_t serverType) {
    TZRPRouteInfo& route = chooseRoute(head, ZRP_ROUTE_SERVER);
    route.stSpecifyServer.ullServerID = server;
    route.stSpecifyServer.bServerType = serverType;
}

void routeToService(TZRPHead& head, const std::string& service) {
    TZRPRouteInfo& route = chooseRoute(head, ZRP_ROUTE_NAME);
    setText(route.stSpecifyName.szServiceName, service, "szServiceName");
}

void routeToLoginPosition(TZRPHead& head) {
    (void)chooseRoute(head, ZRP_ROUTE_LOGIN_POSITION);
}

void setText(char* field, size_t capacity, const std::string& text, const char* name) {
    if (text.size() >= capacity) {
        fail(Outcome::internalError, "{} holds {} characters, not {}", name, capacity - 1,
             text.size());
    }
    memcpy(field, text.c_str(), text.size() + 1);
}

// --- Encoding -----------------------------------------------------------------------------------

/// Encodes any message into a buffer of the size given and cuts the buffer to what was used.
/// `packTLV` reports how many bytes it wrote even when it fails; only its result says whether they
/// are a message.
template <class Message>
static Bytes pack(const Message& message, size_t size, bool varint, const char* name) {
    Bytes bytes(size);
    size_t used = 0;
    check(message.packTLV(bytes.data(), bytes.size(), &used, varint), Outcome::internalError,
          fmt::format("encoding a {}", name));
    bytes.resize(used);
    return bytes;
}

Bytes encode(const TZRPInFrame& frame, bool varint) {
    // The largest encoding of a type is a constant, so a buffer that is always large enough may as
    // well be an array: char bytes[TZRPInFrame_MAX_VARINT].
    return pack(frame, varint ? TZRPInFrame_MAX_VARINT : TZRPInFrame_MAX_FIXED, varint,
                "TZRPInFrame");
}

Bytes encodeWithBody(const TZRPHead& head, std::span<const char> body, bool varint) {
    if (body.size() > largestBody) {
        fail(Outcome::internalError, "a body of {} bytes is above the largest, {}", body.size(),
             largestBody);
    }
    // A TZRPFrame is a record with its body directly behind it, so the two need one piece of
    // memory. An array of std::byte from `new` is aligned for any record.
    const auto memory = std::make_unique<std::byte[]>(sizeof(TZRPFrame) + body.size());
    TZRPFrame* const frame = new (memory.get()) TZRPFrame;
    (void)frame->construct();
    frame->stHead = head;
    // The encoder takes this many bytes from behind the record and asks no further: it must be
    // exact. 0 is allowed and leaves the body out.
    frame->stHead.stBase.dwBodyLen = static_cast<uint32_t>(body.size());
    std::copy(body.begin(), body.end(), reinterpret_cast<char*>(frame + 1));

    size_t largest = 0;
    check(frame->getTLVMaxPackedSize(&largest, varint), Outcome::internalError,
          "asking for the largest TZRPFrame");
    return pack(*frame, largest + body.size(), varint, "TZRPFrame");
}

// --- Decoding -----------------------------------------------------------------------------------

/// The command of a decoded record; ends the conversation unless it is one of the thirteen. A head
/// extension or a body that is unknown here is stepped over like any unknown field, and leaves its
/// number in `wCommand`: that it decoded does not mean that it is a command.
static uint16_t requireCommand(const TZRPBase& base, const char* where) {
    if (commandName(base.wCommand) == nullptr) {
        fail(Outcome::unexpectedFrame, "the {} of a frame names command {:#06x}, which is none",
             where, base.wCommand);
    }
    return base.wCommand;
}

void decode(std::span<const char> encoded, ReceivedFrame& received) {
    FrameView view;
    check(viewFrame(encoded, view), Outcome::undecodable, "taking a frame apart");
    received.size = encoded.size();
    received.varint = view.varint;
    received.body = {};

    // The head first, because the command decides what the body is. Which union member will come is
    // not known yet, so the whole record is zeroed: a field that does not come is then empty, and
    // never a rest of the frame before.
    TZRPInFrame& frame = received.frame;
    frame = TZRPInFrame();
    check(decodeHead(view, frame.stHead), Outcome::undecodable, "decoding the head of a frame");

    // Every field is optional on the wire and keeps what it held when it is absent. `has_...` tells
    // which were there: ask wherever a default would be taken for an answer.
    if (!view.hasHead || !frame.stHead.has_Base() || !frame.stHead.has_Extend()) {
        fail(Outcome::unexpectedFrame, "a frame came without {}",
             !view.hasHead              ? "a head"
             : !frame.stHead.has_Base() ? "a base header"
                                        : "a head extension");
    }
    const uint16_t command = requireCommand(frame.stHead.stBase, "head");

    if (command == ZRP_CMD_DATA) {
        // The count in the head and the length on the wire are two statements of the sender. The
        // message layer does not compare them.
        if (frame.stHead.stBase.dwBodyLen != view.body.size()) {
            fail(Outcome::undecodable, "a data frame announces a body of {} bytes and carries {}",
                 frame.stHead.stBase.dwBodyLen, view.body.size());
        }
        received.body = view.body;
        return;
    }

    // Now that the command is known, the defaults of its members can be put in place before
    // decoding.
    constructFor(command, frame);
    check(frame.unpackTLV(encoded.data(), encoded.size(), nullptr), Outcome::undecodable,
          fmt::format("decoding the {} frame", commandName(command)));
    if (!frame.has_Body()) {
        fail(Outcome::unexpectedFrame, "the {} frame came without a body", commandName(command));
    }
    // The body's member has overwritten the command that the head's member had set. When the two
    // disagree, the members do not belong together and neither may be used.
    if (requireCommand(frame.stHead.stBase, "body") != command) {
        fail(Outcome::unexpectedFrame, "a frame has the head of {} and the body of {}",
             commandName(command), commandName(frame.stHead.stBase.wCommand));
    }
}

// --- Printing -----------------------------------------------------------------------------------

/// Prints any record. There is no largest text as there is a largest encoding, so the buffer grows
/// until the text fits. (Where a log may cut a long text short, `visualize_ex` into an array does
/// the same in one line.)
template <class Message>
static std::string print(const Message& message) {
    for (size_t room = 4096;; room *= 2) {
        std::string text(room, '\0');
        size_t used = 0;
        const int result = message.visualize(text.data(), text.size(), &used, 0, '\n');
        if (result != Quorva::BRX_ERR_NO_ROOM) {
            text.resize(used);
            if (result != 0) {  // what arrived may be no good for printing, such as a count too big
                text += fmt::format("(cannot be printed further: {})\n", resultName(result));
            }
            return text;
        }
    }
}

/// The first bytes of a raw body, as nothing here knows what they mean.
static std::string printBody(std::span<const char> body) {
    constexpr size_t shown = 64;
    std::string text = fmt::format("body of {} bytes:", body.size());
    for (size_t i = 0; i < std::min(body.size(), shown); ++i) {
        text += fmt::format("{}{:02x}", i % 32 == 0 ? "\n    " : " ",
                            static_cast<unsigned char>(body[i]));
    }
    text += body.size() > shown ? fmt::format("\n    and {} more\n", body.size() - shown) : "\n";
    return text;
}

std::string dump(const ReceivedFrame& received) {
    return received.command() == ZRP_CMD_DATA
               ? print(received.frame.stHead) + printBody(received.body)
               : print(received.frame);
}

}  // namespace conversation
