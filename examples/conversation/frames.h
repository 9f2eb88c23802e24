// From records to bytes and back: the calls of the message layer, each with what has to be checked
// around it. Users of the library will find most of what they need in frames.cpp.
#pragma once

#include <stddef.h>
#include <string.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "protocol/quorva_zrp.h"

namespace conversation {

using Bytes = std::vector<char>;

// The message layer carries these and checks none; the two ends of this program agree on them.
constexpr uint16_t frameMagic = 0x5A52;
constexpr uint16_t headVersion = 1;
constexpr uint16_t bodyVersion = 1;

/// The largest raw body that either end sends or takes.
constexpr size_t largestBody = size_t{64} * 1024;

/// The largest frame that either end takes. The published largest size of TZRPFrame counts the tag
/// and the length of the body, but no body byte.
constexpr size_t largestFrame = quorva_zrp::TZRPFrame_MAX_VARINT + largestBody;
static_assert(largestFrame >= quorva_zrp::TZRPInFrame_MAX_VARINT);

/// A frame for `command`, everything at its default, both unions ready for their member.
quorva_zrp::TZRPInFrame makeFrame(uint16_t command);

/// A head for a frame with a raw body, routed to nowhere in particular.
quorva_zrp::TZRPHead makeDataHead();

// Where a data frame goes: each sets the route of a head made by `makeDataHead`.
void routeToZone(quorva_zrp::TZRPHead& head, uint32_t type, uint32_t zone);
void routeToServer(quorva_zrp::TZRPHead& head, uint64_t server, uint8_t serverType);
void routeToService(quorva_zrp::TZRPHead& head, const std::string& service);
void routeToLoginPosition(quorva_zrp::TZRPHead& head);

/// Puts `text` into a text field of `Capacity` bytes; a text that does not fit ends the
/// conversation here, with the name of the field, rather than as -3 in some later encode.
void setText(char* field, size_t capacity, const std::string& text, const char* name);
template <size_t Capacity>
void setText(char (&field)[Capacity], const std::string& text, const char* name) {
    setText(field, Capacity, text, name);
}

/// A text field of a record that arrived. Bounded by the field and not by its NUL alone: a record
/// whose selector was sent after the member it selects may hold bytes of another member here.
template <size_t Capacity>
std::string_view textOf(const char (&field)[Capacity]) {
    return std::string_view(field, strnlen(field, Capacity));
}

/// The wire form of a frame whose body is a message of the protocol.
Bytes encode(const quorva_zrp::TZRPInFrame& frame, bool varint);

/// The wire form of a frame with a raw body.
Bytes encodeWithBody(const quorva_zrp::TZRPHead& head, std::span<const char> body, bool varint);

/// A frame that arrived. For ZRP_CMD_DATA only `frame.stHead` was decoded and `body` lies in the
/// encoded bytes; for every other command the whole of `frame` was.
struct ReceivedFrame {
    quorva_zrp::TZRPInFrame frame;
    std::span<const char> body;
    size_t size;  ///< bytes on the wire
    bool varint;  ///< flavour it came in

    uint16_t command() const { return frame.stHead.stBase.wCommand; }
};

/// Decodes one whole encoded frame. Ends the conversation as `undecodable` or `unexpectedFrame`.
void decode(std::span<const char> encoded, ReceivedFrame& received);

/// The frame as indented text, for people.
std::string dump(const ReceivedFrame& received);

}  // namespace conversation
