#include "examples/conversation/capture.h"

#include <errno.h>
#include <fcntl.h>
#include <string.h>

namespace conversation {

void Capture::keep(std::span<const char> arrived) {
    while (file_.isOpen() && !arrived.empty()) {
        const ssize_t written = ::write(file_.get(), arrived.data(), arrived.size());
        if (written >= 0) {
            arrived = arrived.subspan(static_cast<size_t>(written));
        } else if (errno != EINTR) {
            fail(Outcome::fileRefused, "writing {}: {}", name_, strerror(errno));
        }
    }
}

static FileDescriptor create(const std::string& name, bool overwrite) {
    // O_EXCL lets the system refuse an existing file: asking first and opening then would leave a
    // gap in which somebody else could make one.
    const int how = O_WRONLY | O_CREAT | (overwrite ? O_TRUNC : O_EXCL);
    FileDescriptor file(open(name.c_str(), how, 0666));
    if (!file.isOpen()) {
        if (errno == EEXIST) {
            fail(Outcome::fileRefused, "{} exists and is not overwritten", name);
        }
        fail(Outcome::fileRefused, "making {}: {}", name, strerror(errno));
    }
    return file;
}

Captures openCaptures(const std::string& name, bool overwrite) {
    const std::string clientName = name + ".client";
    const std::string serverName = name + ".server";
    FileDescriptor clientFile = create(clientName, overwrite);
    try {
        FileDescriptor serverFile = create(serverName, overwrite);
        return {Capture(std::move(clientFile), clientName),
                Capture(std::move(serverFile), serverName)};
    } catch (const Failure&) {
        if (!overwrite) {
            (void)unlink(clientName.c_str());  // made just now, and empty
        }
        throw;
    }
}

}  // namespace conversation
