// One line about a frame, for people.
#pragma once

#include <string>
#include <string_view>

#include "examples/conversation/frames.h"

namespace conversation {

/// What the frame says, in a few words.
std::string describe(const ReceivedFrame& received);

/// `text` with everything replaced that a terminal might act on: what the other end sent is not
/// trusted with the screen.
std::string printable(std::string_view text);

}  // namespace conversation
