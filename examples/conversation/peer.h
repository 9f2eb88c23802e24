// What the client and the server have in common: sending and receiving frames, each reported, each
// checked, each in turn.
#pragma once

#include <stdint.h>

#include <string>

#include "examples/conversation/capture.h"
#include "examples/conversation/connection.h"
#include "examples/conversation/diffie_hellman.h"
#include "examples/conversation/events.h"
#include "examples/conversation/frames.h"
#include "examples/conversation/framing.h"
#include "examples/conversation/options.h"

namespace conversation {

class Peer {
  public:
    Peer(Side self, FileDescriptor socket, Capture capture, EventWriter& events,
         const Options& options);

    /// Stamps the frame's base header and sends it.
    void send(quorva_zrp::TZRPInFrame& frame);
    /// The same for a frame with a raw body.
    void send(quorva_zrp::TZRPHead& head, std::span<const char> body);

    /// Waits for the next frame and decodes it. What is given back is valid until the next call.
    /// Ends the conversation when no frame comes in time or when what comes is no good.
    const ReceivedFrame& receive();
    /// The same, for when only one command may come now; `meaning` tells people what it is for.
    const ReceivedFrame& receive(uint16_t command, const char* meaning = "");

    /// Tells the other end that this end holds the secret, and has it told in turn.
    void sendProof(const SharedSecret& secret);
    void checkProof(const SharedSecret& secret);
    /// Sends the MAC of what was received as a body, and checks the one that came for what was
    /// sent: so each end knows that its bytes arrived as they were, at the one that has the secret.
    void sendReceipt(const SharedSecret& secret, std::span<const char> body);
    void checkReceipt(const SharedSecret& secret, std::span<const char> body);

    /// Waits until the other end closes the connection; a byte that comes instead is an error.
    void awaitEnd();

    /// Whether this end is to inject the fault of this kind.
    bool injects(FaultKind kind) const;

    PieceCounts& pieces() { return connection_.counts(); }
    const Options& options() const { return options_; }

  private:
    void stamp(quorva_zrp::TZRPBase& base);
    void transmit(uint16_t command, Bytes encoded);
    void fallSilent();
    std::span<const char> nextFrame(const char* waitingFor);
    const ReceivedFrame& take(const char* waitingFor, const char* meaning);
    void sendMac(const Mac& mac);
    std::string whereInStream() const;
    Deadline deadline() const { return Clock::now() + options_.timeout; }

    const Side self_;
    const Options& options_;
    const bool varint_;
    EventWriter& events_;
    Connection connection_;
    Capture capture_;
    FrameCutter cutter_;
    ReceivedFrame received_ = {};
    uint32_t sent_ = 0;
    uint32_t taken_ = 0;
};

}  // namespace conversation
