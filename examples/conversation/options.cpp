#include "examples/conversation/options.h"

#include <CLI/CLI.hpp>
#include <string>

namespace conversation {

namespace {

std::string helpFooter() {
    std::string text = "Faults for --fault:\n";
    for (const Fault& fault : faults()) {
        text += fmt::format("  {:<10}{} (exit code {})\n", fault.name, fault.meaning,
                            static_cast<int>(fault.outcome));
    }
    text += "\nExit codes:\n";
    for (int code = 0; code <= static_cast<int>(Outcome::unexpectedFrame); ++code) {
        text += fmt::format("  {:<4}{}\n", code, meaningOf(static_cast<Outcome>(code)));
    }
    text +=
        "\nNot secure: the handshake carries Diffie-Hellman values of 512 bits, which is what its\n"
        "fields hold, and which have long been breakable. Bodies are not enciphered, the tokens\n"
        "are demonstration values, and everything stays on this machine.";
    return text;
}

constexpr const char* description =
    "A game client and an access server hold a conversation: two processes, one TCP connection on\n"
    "127.0.0.1, every command of the protocol. Each frame is shown as it arrives, then a table.";

}  // namespace

bool readOptions(int argc, char** argv, Options& options, int& exitCode) {
    CLI::App app(description, "conversation");
    app.footer(helpFooter);

    std::string flavour = "mixed";
    std::string fault;
    double timeoutSeconds = 5;
    int port = options.port;
    int pauseMilliseconds = static_cast<int>(options.pause.count());

    app.add_option("--flavour", flavour,
                   "How integers travel: as varints, at fixed width, or mixed\n"
                   "(client varint, server fixed)")
        ->check(CLI::IsMember({"mixed", "varint", "fixed"}))
        ->capture_default_str();
    app.add_flag("--dump", options.dump, "Print all fields of each frame");
    CLI::Option* const save =
        app.add_option("--save", options.save,
                       "Keep the bytes as they arrived: what the client sent in\n"
                       "FILE.client, what the server sent in FILE.server");
    save->type_name("FILE");
    app.add_flag("--force", options.force, "Let --save overwrite existing files")->needs(save);
    app.add_option("--port", port, "Port to listen on; 0 takes any free one")
        ->type_name("N")
        ->check(CLI::Range(0, 65535))
        ->capture_default_str();
    app.add_option("--queue", options.queueNotices, "How many queue notices the client gets")
        ->type_name("N")
        ->check(CLI::Range(0, 1000))
        ->capture_default_str();
    app.add_option("--pause", pauseMilliseconds, "Milliseconds between queue notices")
        ->type_name("MS")
        ->check(CLI::Range(0, 60000))
        ->capture_default_str();
    app.add_option("--timeout", timeoutSeconds, "How long either end waits for a whole frame")
        ->type_name("SECONDS")
        ->check(CLI::Range(0.1, 300.0))
        ->capture_default_str();
    app.add_option("--fault", fault, "Let one end misbehave; see below")
        ->type_name("NAME")
        ->check([](const std::string& name) {
            return faultNamed(name) != nullptr ? "" : "there is no fault called " + name;
        });

    try {
        app.parse(argc, argv);
        options.port = static_cast<uint16_t>(port);
        options.pause = std::chrono::milliseconds(pauseMilliseconds);
        options.timeout = std::chrono::milliseconds(static_cast<int64_t>(timeoutSeconds * 1000));
        if (options.queueNotices > 0 && options.pause >= options.timeout) {
            throw CLI::ValidationError("--pause", "must be shorter than --timeout");
        }
    } catch (const CLI::ParseError& error) {
        // CLI11 prints help and complaints itself, and gives 0 for help.
        exitCode = app.exit(error) == 0 ? 0 : static_cast<int>(Outcome::badOption);
        return false;
    }
    options.clientVarint = flavour != "fixed";
    options.serverVarint = flavour == "varint";
    options.fault = fault.empty() ? nullptr : faultNamed(fault);
    return true;
}

}  // namespace conversation
