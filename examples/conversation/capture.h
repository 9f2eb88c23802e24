// Keeping the bytes that arrived, for `--save`.
#pragma once

#include <span>
#include <string>

#include "examples/conversation/file_descriptor.h"
#include "examples/conversation/outcome.h"

namespace conversation {

/// A file that takes one direction's bytes exactly as they came off the connection, or nothing.
class Capture {
  public:
    Capture() = default;  ///< keeps nothing
    Capture(FileDescriptor file, std::string name)
        : file_(std::move(file)), name_(std::move(name)) {}

    void keep(std::span<const char> arrived);

  private:
    FileDescriptor file_;
    std::string name_;
};

/// `name`.client for what the client sent and `name`.server for what the server sent.
struct Captures {
    Capture fromClient;
    Capture fromServer;
};

/// Makes both files, or neither: an existing one is never touched unless `overwrite` says so.
Captures openCaptures(const std::string& name, bool overwrite);

}  // namespace conversation
