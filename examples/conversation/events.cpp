#include "examples/conversation/events.h"

#include <errno.h>
#include <poll.h>
#include <string.h>
#include <sys/socket.h>

#include <algorithm>
#include <type_traits>

namespace conversation {

static_assert(std::is_trivially_copyable_v<Event::Facts>);

namespace {

constexpr size_t largestEvent = size_t{128} * 1024;

void appendText(std::string& message, const std::string& text) {
    const uint32_t size = static_cast<uint32_t>(text.size());
    message.append(reinterpret_cast<const char*>(&size), sizeof size);
    message.append(text);
}

std::string takeText(const char*& from) {
    uint32_t size = 0;
    memcpy(&size, from, sizeof size);
    from += sizeof size + size;
    return std::string(from - size, size);
}

}  // namespace

EventChannel makeEventChannel() {
    int sockets[2];
    if (socketpair(AF_UNIX, SOCK_SEQPACKET, 0, sockets) != 0) {
        fail(Outcome::internalError, "making a channel between processes: {}", strerror(errno));
    }
    return {FileDescriptor(sockets[0]), FileDescriptor(sockets[1])};
}

void EventWriter::write(const Event& event) {
    std::string message(reinterpret_cast<const char*>(&event.facts), sizeof event.facts);
    appendText(message, event.text);
    appendText(message, event.dump);
    if (message.size() > largestEvent) {
        fail(Outcome::internalError, "a report of {} bytes is too long", message.size());
    }
    while (send(socket_.get(), message.data(), message.size(), MSG_NOSIGNAL) < 0) {
        if (errno != EINTR) {
            fail(Outcome::internalError, "reporting to the program that started this end: {}",
                 strerror(errno));
        }
    }
}

EventReader::Result EventReader::read(Event& event, Deadline deadline) {
    buffer_.resize(largestEvent);
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        pollfd ready = {socket_.get(), POLLIN, 0};
        const int found = poll(&ready, 1, static_cast<int>(std::max<int64_t>(left.count(), 0)));
        if (found == 0) {
            return Result::nothing;
        }
        const ssize_t size =
            found > 0 ? recv(socket_.get(), buffer_.data(), buffer_.size(), 0) : found;
        if (size == 0) {
            return Result::end;
        }
        if (size > 0) {
            const char* from = buffer_.data();
            memcpy(&event.facts, from, sizeof event.facts);
            from += sizeof event.facts;
            event.text = takeText(from);
            event.dump = takeText(from);
            return Result::event;
        }
        if (errno != EINTR) {
            fail(Outcome::internalError, "reading a report: {}", strerror(errno));
        }
    }
}

}  // namespace conversation
