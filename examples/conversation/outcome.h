// How a conversation can end, and the one exception by which any part of the program ends it.
#pragma once

#include <fmt/format.h>

#include <stdexcept>
#include <string>
#include <utility>

namespace conversation {

enum class Side { client, server };

inline const char* nameOf(Side side) {
    return side == Side::client ? "client" : "server";
}

inline Side otherThan(Side side) {
    return side == Side::client ? Side::server : Side::client;
}

/// How a run ended; the value is the exit code of the program.
enum class Outcome {
    complete = 0,
    internalError = 1,
    badOption = 2,
    cannotListen = 3,
    fileRefused = 4,
    peerGone = 5,
    notAFrame = 6,
    frameTooLarge = 7,
    undecodable = 8,
    timeout = 9,
    secretsDiffer = 10,
    unexpectedFrame = 11,
};

/// What each exit code means, for `--help`.
const char* meaningOf(Outcome outcome);

/// What a user can do about it: a sentence; empty for `complete`.
const char* adviceFor(Outcome outcome);

/// Ends this end's part of the conversation. The codec itself never throws: its result codes turn
/// into failures in `check` and nowhere else, so the code between reads straight on.
class Failure : public std::runtime_error {
  public:
    Failure(Outcome outcome, const std::string& what)
        : std::runtime_error(what), outcome_(outcome) {}

    Outcome outcome() const { return outcome_; }

  private:
    Outcome outcome_;
};

template <class... Arguments>
[[noreturn]] void fail(Outcome outcome, fmt::format_string<Arguments...> format,
                       Arguments&&... arguments) {
    throw Failure(outcome, fmt::format(format, std::forward<Arguments>(arguments)...));
}

/// The name of a result code of the message layer, such as "BRX_ERR_NO_ROOM".
const char* resultName(int result);

/// Ends the conversation as `outcome` when `result` is not 0; `doing` says what was being done.
void check(int result, Outcome outcome, const std::string& doing);

}  // namespace conversation
