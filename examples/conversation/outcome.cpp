#include "examples/conversation/outcome.h"

#include "protocol/quorva_zrp.h"

namespace conversation {

const char* meaningOf(Outcome outcome) {
    switch (outcome) {
        case Outcome::complete:
            return "the conversation took place and both ends agree on it";
        case Outcome::internalError:
            return "the system or this program failed (no process, no memory, no output)";
        case Outcome::badOption:
            return "an option is unknown or has a value that makes no sense";
        case Outcome::cannotListen:
            return "the server cannot listen, for instance because the port is in use";
        case Outcome::fileRefused:
            return "a file of --save exists or cannot be written";
        case Outcome::peerGone:
            return "the other end went away before it had said goodbye";
        case Outcome::notAFrame:
            return "bytes arrived that begin no frame";
        case Outcome::frameTooLarge:
            return "a frame announced itself that is larger than any frame may be";
        case Outcome::undecodable:
            return "a whole frame arrived that cannot be decoded";
        case Outcome::timeout:
            return "the other end did not answer in time";
        case Outcome::secretsDiffer:
            return "the two ends did not arrive at the same secret";
        case Outcome::unexpectedFrame:
            return "a frame arrived out of turn or said something that makes no sense";
    }
    return "";
}

const char* adviceFor(Outcome outcome) {
    switch (outcome) {
        case Outcome::complete:
            return "";
        case Outcome::internalError:
            return "If the reason names no resource that is short, it is a defect of this program.";
        case Outcome::badOption:
            return "See --help for the options and their values.";
        case Outcome::cannotListen:
            return "Choose another port with --port, or leave --port out to take any free one.";
        case Outcome::fileRefused:
            return "Choose another name for --save, or give --force to overwrite.";
        case Outcome::peerGone:
            return "Find out why the other end stopped, then connect anew. A frame cut off is not "
                   "used.";
        case Outcome::notAFrame:
            return "Hang up: lost frame boundaries cannot be found again. Check what the sender "
                   "writes.";
        case Outcome::frameTooLarge:
            return "Hang up. To take such frames, raise largestBody in frames.h at both ends.";
        case Outcome::undecodable:
            return "Hang up and compare the bytes (--save) with the field tables of the message.";
        case Outcome::timeout:
            return "See whether the other end is alive; give it longer with --timeout.";
        case Outcome::secretsDiffer:
            return "Do not go on: either end may be talking to an impostor, or its key is damaged.";
        case Outcome::unexpectedFrame:
            return "Hang up and check what the sender does; --dump shows every frame.";
    }
    return "";
}

const char* resultName(int result) {
    switch (result) {
        case 0:
            return "success";
        case Quorva::BRX_ERR_NO_ROOM:
            return "BRX_ERR_NO_ROOM";
        case Quorva::BRX_ERR_NO_DATA:
            return "BRX_ERR_NO_DATA";
        case Quorva::BRX_ERR_TEXT_TOO_LONG:
            return "BRX_ERR_TEXT_TOO_LONG";
        case Quorva::BRX_ERR_REFER_TOO_BIG:
            return "BRX_ERR_REFER_TOO_BIG";
        case Quorva::BRX_ERR_NULL_BYTES:
            return "BRX_ERR_NULL_BYTES";
        case Quorva::BRX_ERR_NULL_ARG:
            return "BRX_ERR_NULL_ARG";
        case Quorva::BRX_ERR_BAD_MAGIC:
            return "BRX_ERR_BAD_MAGIC";
        case Quorva::BRX_ERR_BAD_SELECTOR:
            return "BRX_ERR_BAD_SELECTOR";
        case Quorva::BRX_ERR_LENGTH_MISMATCH:
            return "BRX_ERR_LENGTH_MISMATCH";
        case Quorva::BRX_ERR_BAD_TYPE_ID:
            return "BRX_ERR_BAD_TYPE_ID";
        case Quorva::BRX_ERR_MISSING_REQUIRED:
            return "BRX_ERR_MISSING_REQUIRED";
        case Quorva::BRX_ERR_ZERO_LENGTH:
            return "BRX_ERR_ZERO_LENGTH";
        default:
            return "an unknown result";
    }
}

void check(int result, Outcome outcome, const std::string& doing) {
    if (result != 0) {
        fail(outcome, "{} gave {} ({})", doing, resultName(result), result);
    }
}

}  // namespace conversation
