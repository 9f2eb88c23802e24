#include "examples/conversation/report.h"

#include <errno.h>
#include <string.h>
#include <unistd.h>

#include <algorithm>

#include "examples/conversation/commands.h"

namespace conversation {

namespace {

const char* flavourName(bool varint) {
    return varint ? "varint" : "fixed";
}

const char* directionFrom(Side sender) {
    return sender == Side::client ? "client -> server" : "server -> client";
}

/// Writes all of it, however many calls that takes; false when that is not possible.
bool writeAll(int descriptor, const std::string& text) {
    for (size_t done = 0; done < text.size();) {
        const ssize_t written = ::write(descriptor, text.data() + done, text.size() - done);
        if (written > 0) {
            done += static_cast<size_t>(written);
        } else if (written < 0 && errno != EINTR) {
            return false;
        }
    }
    return true;
}

std::string indented(const std::string& text) {
    std::string result;
    for (size_t begin = 0; begin < text.size();) {
        const size_t end = std::min(text.find('\n', begin), text.size());
        result += "      " + text.substr(begin, end - begin) + "\n";
        begin = end + 1;
    }
    return result;
}

std::string hexOf(std::span<const uint8_t> bytes) {
    std::string text;
    for (const uint8_t byte : bytes) {
        text += fmt::format("{:02x}", byte);
    }
    return text;
}

}  // namespace

void Report::print(const std::string& text) {
    outputBroken_ = outputBroken_ || !writeAll(STDOUT_FILENO, text);
}

Report::Report(const Options& options, uint16_t port) {
    print(
        fmt::format("A game client and an access server talk over 127.0.0.1:{}\n"
                    "The client sends the {} flavour, the server the {} flavour.\n",
                    port, flavourName(options.clientVarint), flavourName(options.serverVarint)));
    if (options.fault != nullptr) {
        print(fmt::format("On purpose (--fault {}): {}.\n", options.fault->name,
                          options.fault->meaning));
    }
    print(fmt::format("\n{:>3}  {:<16}  {:<19}  {:>5}  {:<6}  {}\n", "#", "direction", "command",
                      "bytes", "coded", "says"));
}

void Report::take(const Event& event) {
    const Side side = event.facts.side;
    switch (event.facts.kind) {
        case Event::Kind::sent: {
            Tally& tally = sent_[Row(side, event.facts.varint, event.facts.command)];
            ++announced_;
            ++tally.frames;
            tally.bytes += event.facts.size;
            break;
        }
        case Event::Kind::received:
            takeFrame(event);
            break;
        case Event::Kind::agreed:
            ends_[static_cast<size_t>(side)].fingerprint = event.facts.fingerprint;
            break;
        case Event::Kind::failed:
            noteFailure(side, event.facts.outcome, event.text);
            break;
        case Event::Kind::finished:
            ends_[static_cast<size_t>(side)].finished = true;
            ends_[static_cast<size_t>(side)].pieces = event.facts.pieces;
            break;
    }
}

void Report::takeFrame(const Event& event) {
    const Side sender = otherThan(event.facts.side);
    Tally& tally = received_[Row(sender, event.facts.varint, event.facts.command)];
    ++tally.frames;
    tally.bytes += event.facts.size;
    print(fmt::format("{:>3}  {:<16}  {:<19}  {:>5}  {:<6}  {}\n", ++shown_, directionFrom(sender),
                      commandName(event.facts.command), event.facts.size,
                      flavourName(event.facts.varint), event.text) +
          indented(event.dump));
}

void Report::noteProcess(Side side, const std::string& what) {
    noteFailure(side, Outcome::internalError, what);
}

void Report::noteFailure(Side side, Outcome outcome, const std::string& what) {
    // The first failure is the reason; what the other end then meets follows from it.
    const bool first = outcome_ == Outcome::complete;
    std::string text =
        fmt::format("conversation: {}{}: {}\n", first ? "" : "then the ", nameOf(side), what);
    if (first) {
        outcome_ = outcome;
        text += fmt::format("  {}\n", adviceFor(outcome));
    }
    (void)writeAll(STDERR_FILENO, text);
}

void Report::findDisagreement() {
    if (outcome_ != Outcome::complete) {
        return;
    }
    for (const Side side : {Side::client, Side::server}) {
        if (!end(side).finished) {
            noteFailure(side, Outcome::internalError, "ended without a word");
        }
    }
    if (sent_ != received_) {
        noteFailure(Side::server, Outcome::internalError,
                    "the frames that were sent and those that were received are not the same");
    }
    if (!end(Side::client).fingerprint ||
        end(Side::client).fingerprint != end(Side::server).fingerprint) {
        noteFailure(Side::server, Outcome::secretsDiffer, "the ends hold different secrets");
    }
}

void Report::printTable() {
    constexpr const char* line = "  {:<16}  {:<6}  {:<19}  {:>6}  {:>7}\n";
    std::string text = "\nFrames that arrived\n\n";
    text += fmt::format(fmt::runtime(line), "direction", "coded", "command", "frames", "bytes");
    for (const Side sender : {Side::client, Side::server}) {
        Tally total;
        for (const auto& [row, tally] : received_) {
            const auto& [from, varint, command] = row;
            if (from == sender) {
                text += fmt::format(fmt::runtime(line), directionFrom(from), flavourName(varint),
                                    commandName(command), tally.frames, tally.bytes);
                total.frames += tally.frames;
                total.bytes += tally.bytes;
            }
        }
        text += fmt::format(fmt::runtime(line), directionFrom(sender), "", "all", total.frames,
                            total.bytes);
    }
    print(text);
}

void Report::printStreams() {
    std::string text = "\nHow the streams were cut up\n\n";
    for (const Side sender : {Side::client, Side::server}) {
        const PieceCounts& from = end(sender).pieces;
        const PieceCounts& to = end(otherThan(sender)).pieces;
        text += fmt::format(
            "  {}: {} bytes, written in {} pieces of 1 to {},\n"
            "    read in {} pieces of 1 to {}; {} of {} frames came in more than one piece,\n"
            "    {} pieces held the end of one frame and the beginning of the next\n",
            directionFrom(sender), from.bytesWritten, from.piecesWritten, Connection::largestWrite,
            to.piecesRead, Connection::largestRead, to.framesInParts, to.framesRead,
            to.readsAcrossFrames);
    }
    print(text);
}

void Report::printSecret() {
    constexpr size_t shownBytes = 8;
    const std::span<const uint8_t> fingerprint(*end(Side::client).fingerprint);
    print(fmt::format("\nBoth ends proved the same secret; its fingerprint is {}.\n",
                      hexOf(fingerprint.first(shownBytes))));
}

int Report::conclude() {
    findDisagreement();
    printTable();
    const auto took =
        std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin_).count();
    if (outcome_ == Outcome::complete) {
        printStreams();
        printSecret();
        print(
            fmt::format("\nOutcome: complete. {} frames in {}.{:03} s; both ends agree on every "
                        "one.\n",
                        shown_, took / 1000, took % 1000));
    } else {
        print(fmt::format("\nOutcome: failed (exit code {}): {}. {} frames were sent, {} taken.\n",
                          static_cast<int>(outcome_), meaningOf(outcome_), announced_, shown_));
    }
    if (outputBroken_) {
        (void)writeAll(STDERR_FILENO, "conversation: stdout took no more output\n");
        return static_cast<int>(outcome_ == Outcome::complete ? Outcome::internalError : outcome_);
    }
    return static_cast<int>(outcome_);
}

}  // namespace conversation
