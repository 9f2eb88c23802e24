// One end of a TCP connection on this machine. Every wait ends at a deadline, and every failure of
// the system becomes a Failure that says what happened.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <chrono>
#include <span>

#include "examples/conversation/file_descriptor.h"
#include "examples/conversation/outcome.h"

namespace conversation {

using Clock = std::chrono::steady_clock;
using Deadline = Clock::time_point;

/// How a stream was chopped up, on one end.
struct PieceCounts {
    uint64_t bytesWritten = 0;
    uint64_t piecesWritten = 0;
    uint64_t bytesRead = 0;
    uint64_t piecesRead = 0;
    uint64_t framesRead = 0;         ///< whole frames cut out of what was read
    uint64_t framesInParts = 0;      ///< those of them that came in more than one piece
    uint64_t readsAcrossFrames = 0;  ///< pieces with the end of one frame and the start of the next
};

/// Sizes from 1 to a largest one that look random and are the same in every run.
class PieceSizes {
  public:
    PieceSizes(uint32_t seed, size_t largest) : state_(seed), largest_(largest) {}
    size_t next();

  private:
    uint32_t state_;
    size_t largest_;
};

/// A listening socket on 127.0.0.1; port 0 takes any free one.
class Listener {
  public:
    explicit Listener(uint16_t port);

    uint16_t port() const { return port_; }
    FileDescriptor accept(Deadline deadline) const;
    void close() { socket_.close(); }

  private:
    FileDescriptor socket_;
    uint16_t port_ = 0;
};

/// A socket connected to 127.0.0.1:`port`.
FileDescriptor connectTo(uint16_t port, Deadline deadline);

/// A connected stream. To show that nothing depends on how the bytes are cut up, it writes in many
/// small pieces and reads in small pieces of other sizes.
class Connection {
  public:
    static constexpr size_t largestWrite = 97;
    static constexpr size_t largestRead = 61;

    Connection(FileDescriptor socket, Side self);

    /// Writes all of `bytes`.
    void write(std::span<const char> bytes, Deadline deadline);

    /// Waits for bytes and reads what is there, at most `into.size()` and at most a piece. Returns
    /// how many bytes came; 0 when the other end has closed the connection. `waitingFor` names,
    /// in the message of a time-out, what did not come.
    size_t read(std::span<char> into, Deadline deadline, const char* waitingFor);

    PieceCounts& counts() { return counts_; }

  private:
    FileDescriptor socket_;
    Side self_;
    PieceSizes writeSizes_;
    PieceSizes readSizes_;
    PieceCounts counts_;
};

}  // namespace conversation
