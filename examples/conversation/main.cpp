// A whole conversation between a game client and an access server. Start reading at roles.h for
// the order of messages, client.cpp and server.cpp for how they are filled and checked, frames.cpp
// for the calls of the message layer, body_view.h for raw bodies and framing.h for the stream.
#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <unistd.h>

#include <exception>

#include "examples/conversation/processes.h"

namespace {

/// A program may be started with its standard streams closed. A socket would then be given the
/// number of one of them, and messages meant for a person would go down the connection.
void occupyStandardStreams() {
    int descriptor = 0;
    do {
        descriptor = open("/dev/null", O_RDWR);
    } while (descriptor >= 0 && descriptor <= STDERR_FILENO);
    if (descriptor > STDERR_FILENO) {
        (void)close(descriptor);
    }
}

int explain(conversation::Outcome outcome, const char* what) {
    (void)fprintf(stderr, "conversation: %s\n  %s\n", what, conversation::adviceFor(outcome));
    return static_cast<int>(outcome);
}

}  // namespace

int main(int argc, char** argv) {
    using namespace conversation;
    occupyStandardStreams();
    // Whoever reads our output may leave: that is a failed write, not a reason to die.
    (void)signal(SIGPIPE, SIG_IGN);
    try {
        Options options;
        int exitCode = 0;
        if (!readOptions(argc, argv, options, exitCode)) {
            return exitCode;
        }
        // Both before the first process starts: what fails here fails with nothing to clean up.
        Listener listener(options.port);
        Captures captures;
        if (!options.save.empty()) {
            captures = openCaptures(options.save, options.force);
        }
        return runConversation(options, std::move(listener), std::move(captures));
    } catch (const Failure& failure) {
        return explain(failure.outcome(), failure.what());
    } catch (const std::exception& problem) {
        return explain(Outcome::internalError, problem.what());
    }
}
