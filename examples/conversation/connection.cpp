#include "examples/conversation/connection.h"

#include <arpa/inet.h>
#include <errno.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <string.h>
#include <sys/socket.h>

#include <algorithm>

namespace conversation {

namespace {

[[noreturn]] void failBySystem(Outcome outcome, const char* doing) {
    const int reason = errno;
    fail(outcome, "{}: {}", doing, strerror(reason));
}

/// Waits until the socket is ready for `events` or has failed; false at the deadline.
bool waitFor(int socket, short events, Deadline deadline) {
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        pollfd ready = {socket, events, 0};
        const int found = poll(&ready, 1, static_cast<int>(std::max<int64_t>(left.count(), 0)));
        if (found > 0) {
            return true;
        }
        if (found == 0) {
            return false;
        }
        if (errno != EINTR) {
            failBySystem(Outcome::internalError, "waiting for the connection");
        }
    }
}

FileDescriptor makeSocket() {
    FileDescriptor made(socket(AF_INET, SOCK_STREAM, 0));
    // Non-blocking, so that a deadline holds even when a socket that was ready is not any more.
    if (!made.isOpen() || fcntl(made.get(), F_SETFL, O_NONBLOCK) != 0) {
        failBySystem(Outcome::internalError, "making a socket");
    }
    return made;
}

sockaddr_in localAddress(uint16_t port) {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

bool peerHungUp(int error) {
    return error == EPIPE || error == ECONNRESET;
}

}  // namespace

size_t PieceSizes::next() {
    state_ = state_ * UINT32_C(1664525) + UINT32_C(1013904223);
    return 1 + (state_ >> 16) % largest_;  // the low bits of this sequence repeat soonest
}

Listener::Listener(uint16_t port) : socket_(makeSocket()) {
    // Lets the port be taken again at once after a run that used it; one that is being listened on
    // is refused all the same.
    const int on = 1;
    (void)setsockopt(socket_.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    sockaddr_in address = localAddress(port);
    socklen_t size = sizeof address;
    if (bind(socket_.get(), reinterpret_cast<sockaddr*>(&address), size) != 0 ||
        listen(socket_.get(), 1) != 0) {
        if (errno == EADDRINUSE) {
            fail(Outcome::cannotListen, "port {} of 127.0.0.1 is in use by another program", port);
        }
        failBySystem(Outcome::cannotListen,
                     fmt::format("listening on port {} of 127.0.0.1", port).c_str());
    }
    if (getsockname(socket_.get(), reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        failBySystem(Outcome::cannotListen, "asking for the port");
    }
    port_ = ntohs(address.sin_port);
}

FileDescriptor Listener::accept(Deadline deadline) const {
    if (!waitFor(socket_.get(), POLLIN, deadline)) {
        fail(Outcome::timeout, "no client connected in time");
    }
    FileDescriptor connected(::accept(socket_.get(), nullptr, nullptr));
    if (!connected.isOpen() || fcntl(connected.get(), F_SETFL, O_NONBLOCK) != 0) {
        failBySystem(Outcome::internalError, "accepting the client");
    }
    return connected;
}

FileDescriptor connectTo(uint16_t port, Deadline deadline) {
    FileDescriptor made = makeSocket();
    const sockaddr_in address = localAddress(port);
    if (connect(made.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
        return made;
    }
    if (errno == EINPROGRESS) {
        if (!waitFor(made.get(), POLLOUT, deadline)) {
            fail(Outcome::timeout, "the server at port {} did not take the connection", port);
        }
        socklen_t size = sizeof errno;
        (void)getsockopt(made.get(), SOL_SOCKET, SO_ERROR, &errno, &size);
    }
    if (errno != 0) {
        failBySystem(Outcome::peerGone, fmt::format("connecting to port {}", port).c_str());
    }
    return made;
}

Connection::Connection(FileDescriptor socket, Side self)
    : socket_(std::move(socket)),
      self_(self),
      writeSizes_(self == Side::client ? 1 : 2, largestWrite),
      readSizes_(self == Side::client ? 3 : 4, largestRead) {
    // Without this the system would put the small pieces back together before sending them.
    const int on = 1;
    (void)setsockopt(socket_.get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

void Connection::write(std::span<const char> bytes, Deadline deadline) {
    while (!bytes.empty()) {
        const size_t piece = std::min(bytes.size(), writeSizes_.next());
        // MSG_NOSIGNAL: a peer that is gone is a result, not a signal that ends the program.
        const ssize_t written = send(socket_.get(), bytes.data(), piece, MSG_NOSIGNAL);
        if (written > 0) {
            bytes = bytes.subspan(static_cast<size_t>(written));
            counts_.bytesWritten += static_cast<uint64_t>(written);
            ++counts_.piecesWritten;
        } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
            if (!waitFor(socket_.get(), POLLOUT, deadline)) {
                fail(Outcome::timeout, "the {} stopped taking bytes, with {} left to send",
                     nameOf(otherThan(self_)), bytes.size());
            }
        } else if (peerHungUp(errno)) {
            fail(Outcome::peerGone, "the {} closed the connection, with {} bytes left to send",
                 nameOf(otherThan(self_)), bytes.size());
        } else if (errno != EINTR) {
            failBySystem(Outcome::internalError, "writing to the connection");
        }
    }
}

size_t Connection::read(std::span<char> into, Deadline deadline, const char* waitingFor) {
    const size_t piece = std::min(into.size(), readSizes_.next());
    for (;;) {
        if (!waitFor(socket_.get(), POLLIN, deadline)) {
            fail(Outcome::timeout, "{} did not come from the {} within the time-out", waitingFor,
                 nameOf(otherThan(self_)));
        }
        const ssize_t count = recv(socket_.get(), into.data(), piece, 0);
        if (count > 0) {
            counts_.bytesRead += static_cast<uint64_t>(count);
            ++counts_.piecesRead;
        }
        if (count >= 0) {
            return static_cast<size_t>(count);
        }
        if (peerHungUp(errno)) {
            return 0;  // closed with bytes unread at the other end: over, all the same
        }
        if (errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR) {
            failBySystem(Outcome::internalError, "reading from the connection");
        }
    }
}

}  // namespace conversation
