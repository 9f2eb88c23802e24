// The two processes: started, listened to, and waited for.
#pragma once

#include "examples/conversation/capture.h"
#include "examples/conversation/connection.h"
#include "examples/conversation/options.h"

namespace conversation {

/// Runs the conversation between two child processes and returns the exit code of the program. No
/// child is left behind, whatever happens to either.
int runConversation(const Options& options, Listener listener, Captures captures);

}  // namespace conversation
