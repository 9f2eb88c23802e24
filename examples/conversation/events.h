// What the two ends tell the program that started them. Both write into one socket that keeps
// messages whole and in order, so nothing that they report can interleave or overtake: when the
// server reports a frame, the client's report of sending it came first.
#pragma once

#include <stdint.h>

#include <string>

#include "examples/conversation/connection.h"
#include "examples/conversation/diffie_hellman.h"
#include "examples/conversation/file_descriptor.h"
#include "examples/conversation/outcome.h"

namespace conversation {

struct Event {
    enum class Kind : uint8_t {
        sent,      ///< a frame was encoded and is about to be written: command, size, varint
        received,  ///< a frame came and was understood: the same, text and dump
        agreed,    ///< the other end proved that it holds the same secret: fingerprint
        failed,    ///< this end gave up: outcome, text
        finished,  ///< this end is through: pieces
    };

    /// The part of fixed size. Both ends of the socket are the same program.
    struct Facts {
        Kind kind;
        Side side;  ///< whose report this is
        uint16_t command;
        bool varint;
        uint64_t size;
        Outcome outcome;
        Mac fingerprint;
        PieceCounts pieces;
    };

    Facts facts = {};
    std::string text;
    std::string dump;
};

/// The writing end, held by the client and by the server.
class EventWriter {
  public:
    explicit EventWriter(FileDescriptor socket) : socket_(std::move(socket)) {}

    /// Ends the program, as a failure, when nobody listens any more.
    void write(const Event& event);
    void close() { socket_.close(); }

  private:
    FileDescriptor socket_;
};

/// The reading end.
class EventReader {
  public:
    enum class Result { event, end, nothing };

    explicit EventReader(FileDescriptor socket) : socket_(std::move(socket)) {}

    /// Waits for the next event: `end` when both ends are gone, `nothing` at the deadline.
    Result read(Event& event, Deadline deadline);
    void close() { socket_.close(); }

  private:
    FileDescriptor socket_;
    std::string buffer_;
};

/// The two ends of a new channel.
struct EventChannel {
    FileDescriptor writeEnd;
    FileDescriptor readEnd;
};
EventChannel makeEventChannel();

}  // namespace conversation
