#include "examples/conversation/processes.h"

#include <errno.h>
#include <signal.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

#include <exception>
#include <functional>
#include <memory>
#include <string>

#include "examples/conversation/peer.h"
#include "examples/conversation/report.h"
#include "examples/conversation/roles.h"

namespace conversation {

namespace {

/// Reports a failure while the connection is still open, so that this report is on its way before
/// the other end can notice that the connection ended.
void reportFailure(EventWriter& events, Side side, Outcome outcome, const char* what) {
    Event event;
    event.facts.kind = Event::Kind::failed;
    event.facts.side = side;
    event.facts.outcome = outcome;
    event.text = what;
    events.write(event);
}

/// What one of the two processes does from its start to its end.
void runEnd(Side side, const std::function<FileDescriptor()>& connect, Capture capture,
            EventWriter& events, const Options& options) {
    std::unique_ptr<Peer> peer;
    try {
        peer = std::make_unique<Peer>(side, connect(), std::move(capture), events, options);
        side == Side::client ? runClient(*peer) : runServer(*peer);
        Event event;
        event.facts.kind = Event::Kind::finished;
        event.facts.side = side;
        event.facts.pieces = peer->pieces();
        events.write(event);
    } catch (const Failure& failure) {
        reportFailure(events, side, failure.outcome(), failure.what());
    } catch (const std::exception& problem) {
        reportFailure(events, side, Outcome::internalError, problem.what());
    }
}

/// A child process that is waited for in any case.
class Process {
  public:
    explicit Process(const std::function<void()>& work) : id_(fork()) {
        if (id_ < 0) {
            fail(Outcome::internalError, "starting a process: {}", strerror(errno));
        }
        if (id_ == 0) {
            // A child neither returns into its parent's code nor runs its clean-up.
            try {
                work();
                _exit(0);
            } catch (...) {
                _exit(1);
            }
        }
    }
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    ~Process() {
        kill();
        (void)wait();
    }

    /// Only ever this child: its id cannot belong to anyone else before it is waited for.
    void kill() const {
        if (id_ > 0) {
            (void)::kill(id_, SIGKILL);
        }
    }

    /// How the process ended, if that was by a signal; empty otherwise.
    std::string wait() {
        int status = 0;
        while (id_ > 0 && waitpid(id_, &status, 0) < 0 && errno == EINTR) {
        }
        id_ = -1;
        return WIFSIGNALED(status) ? fmt::format("was ended by signal {} ({})", WTERMSIG(status),
                                                 strsignal(WTERMSIG(status)))
                                   : "";
    }

  private:
    pid_t id_;
};

}  // namespace

int runConversation(const Options& options, Listener listener, Captures captures) {
    EventChannel channel = makeEventChannel();
    EventReader reader(std::move(channel.readEnd));
    EventWriter events(std::move(channel.writeEnd));
    Report report(options, listener.port());
    const auto deadline = [&options] { return Clock::now() + options.timeout; };

    Process server([&] {
        reader.close();
        runEnd(
            Side::server, [&] { return listener.accept(deadline()); },
            std::move(captures.fromClient), events, options);
    });
    Process client([&] {
        reader.close();
        listener.close();
        runEnd(
            Side::client, [&, port = listener.port()] { return connectTo(port, deadline()); },
            std::move(captures.fromServer), events, options);
    });
    // From here on only the two children hold these, so that their end shows.
    listener.close();
    events.close();

    // Each child gives up by itself after a time-out. One that is silent for much longer than that
    // is beyond giving up.
    const auto patience = 4 * options.timeout + std::chrono::seconds(2);
    for (Event event;;) {
        const EventReader::Result result = reader.read(event, Clock::now() + patience);
        if (result == EventReader::Result::event) {
            report.take(event);
            continue;
        }
        if (result == EventReader::Result::nothing) {
            report.noteProcess(Side::server,
                               "neither end reported anything for long; both were stopped");
            server.kill();
            client.kill();
        }
        break;
    }
    const std::string serverEnd = server.wait();
    const std::string clientEnd = client.wait();
    if (!serverEnd.empty()) {
        report.noteProcess(Side::server, serverEnd);
    }
    if (!clientEnd.empty()) {
        report.noteProcess(Side::client, clientEnd);
    }
    return report.conclude();
}

}  // namespace conversation
