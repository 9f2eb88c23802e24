#include "examples/conversation/peer.h"

#include <signal.h>
#include <time.h>

#include <array>
#include <string_view>

#include "examples/conversation/commands.h"
#include "examples/conversation/describe.h"

namespace conversation {

using namespace quorva_zrp;

static constexpr std::string_view fingerprintLabel = "conversation: fingerprint for people";

// What each end MACs to prove that it holds the secret. The labels differ, or an end without the
// secret could send back what it was sent.
static std::string_view proofLabel(Side side) {
    return side == Side::client ? "conversation: proof of the client"
                                : "conversation: proof of the server";
}

Peer::Peer(Side self, FileDescriptor socket, Capture capture, EventWriter& events,
           const Options& options)
    : self_(self),
      options_(options),
      varint_(self == Side::client ? options.clientVarint : options.serverVarint),
      events_(events),
      connection_(std::move(socket), self),
      capture_(std::move(capture)),
      cutter_(largestFrame) {}

bool Peer::injects(FaultKind kind) const {
    return options_.fault != nullptr && options_.fault->kind == kind &&
           options_.fault->side == self_;
}

// --- Sending ------------------------------------------------------------------------------------

void Peer::stamp(TZRPBase& base) {
    // The message layer carries both and looks at neither. Here the time is in seconds and frames
    // are numbered from 1 in each direction.
    base.dwTimeStamp = static_cast<uint32_t>(time(nullptr));
    base.dwSequence = ++sent_;
}

void Peer::send(TZRPInFrame& frame) {
    stamp(frame.stHead.stBase);
    transmit(frame.stHead.stBase.wCommand, encode(frame, varint_));
}

void Peer::send(TZRPHead& head, std::span<const char> body) {
    stamp(head.stBase);
    transmit(head.stBase.wCommand, encodeWithBody(head, body, varint_));
}

void Peer::transmit(uint16_t command, Bytes encoded) {
    const Fault* const fault = options_.fault;
    const bool faulty = fault != nullptr && fault->side == self_ && fault->command == command;
    if (faulty && fault->kind == FaultKind::silence) {
        fallSilent();
    }
    Event event;
    event.facts.kind = Event::Kind::sent;
    event.facts.side = self_;
    event.facts.command = command;
    event.facts.varint = varint_;
    event.facts.size = encoded.size();
    events_.write(event);

    if (faulty) {
        damageFrame(fault->kind, encoded);
    }
    connection_.write(encoded, deadline());
    if (faulty && fault->kind == FaultKind::cut) {
        (void)raise(SIGKILL);  // no goodbye, no clean-up: as a crash would have it
    }
}

void Peer::fallSilent() {
    // Long enough for the other end to lose its patience first.
    std::array<char, 64> ignored;
    while (connection_.read(ignored, Clock::now() + 3 * options_.timeout, "the end") != 0) {
    }
    fail(Outcome::peerGone, "the {} hung up while this end kept silent", nameOf(otherThan(self_)));
}

// --- Receiving ----------------------------------------------------------------------------------

std::string Peer::whereInStream() const {
    return fmt::format("at byte {} of what the {} sent, after {} frame{}", cutter_.streamPosition(),
                       nameOf(otherThan(self_)), taken_, taken_ == 1 ? "" : "s");
}

std::span<const char> Peer::nextFrame(const char* waitingFor) {
    // One deadline for the whole frame: an end that sends a byte now and then is no better than one
    // that sends none.
    const Deadline until = deadline();
    PieceCounts& counts = connection_.counts();
    uint64_t pieces = cutter_.pending() > 0 ? 1 : 0;
    std::array<char, Connection::largestRead> piece;
    for (;;) {
        std::span<const char> frame;
        switch (cutter_.next(frame)) {
            case FrameCutter::Step::frame:
                ++counts.framesRead;
                counts.framesInParts += pieces > 1 ? 1 : 0;
                counts.readsAcrossFrames += cutter_.pending() > 0 ? 1 : 0;
                return frame;
            case FrameCutter::Step::needMore:
                break;
            case FrameCutter::Step::notAFrame:
                fail(Outcome::notAFrame,
                     "byte {:#04x} came where a frame begins with 0xaa or 0x99, {}",
                     cutter_.firstByte(), whereInStream());
            case FrameCutter::Step::tooShort:
                fail(Outcome::notAFrame,
                     "a frame announces {} bytes, which is less than its envelope, {}",
                     cutter_.announcedLength(), whereInStream());
            case FrameCutter::Step::tooLarge:
                fail(Outcome::frameTooLarge,
                     "a frame announces {} bytes, above the largest of {}, {}",
                     cutter_.announcedLength(), cutter_.largestFrame(), whereInStream());
        }
        const size_t count = connection_.read(piece, until, waitingFor);
        const std::span<const char> arrived(piece.data(), count);
        if (count == 0 && cutter_.pending() == 0) {
            fail(Outcome::peerGone, "the {} closed the connection while {} was awaited, {}",
                 nameOf(otherThan(self_)), waitingFor, whereInStream());
        }
        if (count == 0) {
            const uint32_t announced = cutter_.announcedLength();
            fail(Outcome::peerGone,
                 "the connection ended inside a frame, with {} of {} bytes there, {}",
                 cutter_.pending(), announced == 0 ? "5 or more" : std::to_string(announced),
                 whereInStream());
        }
        capture_.keep(arrived);
        cutter_.append(arrived);
        ++pieces;
    }
}

const ReceivedFrame& Peer::take(const char* waitingFor, const char* meaning) {
    const std::span<const char> encoded = nextFrame(waitingFor);
    try {
        decode(encoded, received_);
    } catch (const Failure& failure) {
        fail(failure.outcome(), "{} (a frame of {} bytes that ends {})", failure.what(),
             encoded.size(), whereInStream());
    }
    const TZRPBase& base = received_.frame.stHead.stBase;
    if (base.wMagic != frameMagic || base.wHeadVersion != headVersion ||
        base.wBodyVersion != bodyVersion) {
        fail(Outcome::unexpectedFrame,
             "a frame has magic {:#06x} and versions {} and {} instead of {:#06x}, {} and {}",
             base.wMagic, base.wHeadVersion, base.wBodyVersion, frameMagic, headVersion,
             bodyVersion);
    }
    if (base.dwSequence != ++taken_) {
        fail(Outcome::unexpectedFrame,
             "a {} frame has sequence number {} where {} is next: frames were lost or repeated",
             commandName(base.wCommand), base.dwSequence, taken_);
    }

    Event event;
    event.facts.kind = Event::Kind::received;
    event.facts.side = self_;
    event.facts.command = base.wCommand;
    event.facts.varint = received_.varint;
    event.facts.size = received_.size;
    event.text = describe(received_) + meaning;
    event.dump = options_.dump ? dump(received_) : "";
    events_.write(event);
    return received_;
}

const ReceivedFrame& Peer::receive() {
    return take("the next frame", "");
}

const ReceivedFrame& Peer::receive(uint16_t command, const char* meaning) {
    const ReceivedFrame& received = take(commandName(command), meaning);
    if (received.command() != command) {
        fail(Outcome::unexpectedFrame, "{} came where {} was due", commandName(received.command()),
             commandName(command));
    }
    return received;
}

void Peer::awaitEnd() {
    std::array<char, 1> byte;
    if (cutter_.pending() != 0 || connection_.read(byte, deadline(), "the end") != 0) {
        fail(Outcome::unexpectedFrame, "the {} sent something after its stop notice",
             nameOf(otherThan(self_)));
    }
}

// --- The shared secret --------------------------------------------------------------------------

void Peer::sendMac(const Mac& mac) {
    TZRPHead head = makeDataHead();
    send(head, std::span<const char>(reinterpret_cast<const char*>(mac.data()), mac.size()));
}

void Peer::sendProof(const SharedSecret& secret) {
    sendMac(secret.mac(proofLabel(self_)));
}

void Peer::checkProof(const SharedSecret& secret) {
    const Side other = otherThan(self_);
    if (!secret.verifies(receive(ZRP_CMD_DATA, ": proof of the secret").body, proofLabel(other))) {
        fail(Outcome::secretsDiffer,
             "the proof that the {} sent does not fit this end's secret: the two differ",
             nameOf(other));
    }
    Event event;
    event.facts.kind = Event::Kind::agreed;
    event.facts.side = self_;
    event.facts.fingerprint = secret.mac(fingerprintLabel);
    events_.write(event);
}

void Peer::sendReceipt(const SharedSecret& secret, std::span<const char> body) {
    sendMac(secret.mac(body));
}

void Peer::checkReceipt(const SharedSecret& secret, std::span<const char> body) {
    if (!secret.verifies(receive(ZRP_CMD_DATA, ": receipt").body, body)) {
        fail(Outcome::unexpectedFrame, "the receipt that the {} sent is not for the {} bytes sent",
             nameOf(otherThan(self_)), body.size());
    }
}

}  // namespace conversation
