// What a receiver does with a message: decodes it, asks whether it is sound, prints it. Validation
// foretells what encoding and printing say; a dump cut short is the beginning of the whole one.
#include <string.h>

#include <memory>
#include <string>
#include <typeinfo>

#include "fuzz/support/messages.h"
#include "fuzz/support/require.h"
#include "protocol/codec/field_data.h"
#include "protocol/quorva_zrp_validate.h"

namespace zrp_fuzz {

namespace {

using namespace quorva_zrp;

/// Bytes kept behind a record for a frame's body.
constexpr size_t bodyRoom = 200;
/// Room for every dump at the indents used here.
constexpr size_t plenty = 65536;

/// A message of any type with the operations of all; a structure ignores the selector.
template <class Message>
struct Held {
    Bytes storage;
    long long selector = 0;

    Message& message() { return *reinterpret_cast<Message*>(storage.data()); }
    const Message& message() const { return *reinterpret_cast<const Message*>(storage.data()); }

    int decode(const Bytes& bytes, size_t* used) {
        const char* const from = bytes.empty() ? "" : bytes.data();
        if constexpr (std::is_union_v<Message>) {
            return message().unpackTLV(selector, from, bytes.size(), used);
        } else {
            return message().unpackTLV(from, bytes.size(), used);
        }
    }
    int encode(char* to, size_t size, size_t* used) const {
        if constexpr (std::is_union_v<Message>) {
            return message().packTLV(selector, to, size, used, true);
        } else {
            return message().packTLV(to, size, used, true);
        }
    }
    int print(char* to, size_t size, size_t* used, int indent, char separator) const {
        if constexpr (std::is_union_v<Message>) {
            return message().visualize(selector, to, size, used, indent, separator);
        } else {
            return message().visualize(to, size, used, indent, separator);
        }
    }
    int validate(char* path, size_t size) const {
        if constexpr (std::is_union_v<Message>) {
            return quorva_zrp::validate(message(), selector, path, size);
        } else {
            return quorva_zrp::validate(message(), path, size);
        }
    }
};

template <class Message>
const char* nameOf() {
    return typeid(Message).name();
}

/// A frame's count of body bytes is the caller's affair: there are as many as there is room for.
template <class Message>
void limitBody(Held<Message>& held) {
    if constexpr (std::is_same_v<Message, TZRPFrame>) {
        uint32_t& count = held.message().stHead.stBase.dwBodyLen;
        count = std::min<uint32_t>(count, bodyRoom);
    }
}

template <class Message>
int checkValidation(const Held<Message>& held, size_t pathSize) {
    char path[ZRP_PATH_SIZE];
    memset(path, '?', sizeof(path));
    const int result = held.validate(path, sizeof(path));
    const size_t length = strnlen(path, sizeof(path));
    require(length < sizeof(path), nameOf<Message>(), ": the path does not end");
    require(result != 0 || length == 0, nameOf<Message>(), ": a sound message has the path ", path);

    Bytes cut(pathSize, '?');
    const int cutResult = held.validate(cut.data(), cut.size());
    require(cutResult == result, nameOf<Message>(), ": ", result, " with a long path, ", cutResult,
            " with a short one");
    if (pathSize != 0) {
        const size_t expected = std::min(length, pathSize - 1);
        require(memcmp(cut.data(), path, expected) == 0 && cut[expected] == '\0', nameOf<Message>(),
                ": the path ", path, " is cut to ", shown(cut));
    }

    static char room[TZRPInFrame_MAX_VARINT + bodyRoom];
    size_t used = 0;
    const int encoded = held.encode(room, sizeof(room), &used);
    require(result == encoded, nameOf<Message>(), ": validation gives ", result, ", encoding ",
            encoded, ", path ", path, "\n  ", shown(held.storage));
    return result;
}

/// `visualize_ex` into memory of exactly `size` bytes: a text, the same as far as it goes.
template <class Message>
void checkText(const Held<Message>& held, size_t size, size_t cutUsed, const char* whole,
               int indent, char separator) {
    if constexpr (!std::is_union_v<Message>) {
        Bytes memory(size, '?');
        size_t used = 0;
        const char* const text =
            held.message().visualize_ex(memory.data(), size, &used, indent, separator);
        if (size == 0) {
            require(text != nullptr && *text == '\0', nameOf<Message>(), ": no empty text");
            return;
        }
        const size_t last = std::min(used, size - 1);
        require(text == memory.data() && used == cutUsed && memory[last] == '\0' &&
                    memcmp(text, whole, last) == 0,
                nameOf<Message>(), ": visualize_ex stops elsewhere\n  ", shown(memory));
    }
}

template <class Message>
void checkDump(const Held<Message>& held, int validation, size_t size, int indent, char separator) {
    static char whole[plenty];
    size_t wholeUsed = 0;
    const int wholeResult = held.print(whole, sizeof(whole), &wholeUsed, indent, separator);
    // Printing steps over a union without a live member, so it may find what encoding never meets.
    const bool isForetold = validation == Quorva::BRX_ERR_BAD_SELECTOR
                                ? wholeResult == 0 ||
                                      wholeResult == Quorva::BRX_ERR_TEXT_TOO_LONG ||
                                      wholeResult == Quorva::BRX_ERR_REFER_TOO_BIG
                                : wholeResult == validation;
    require(isForetold, nameOf<Message>(), ": validation gives ", validation, ", printing ",
            wholeResult, "\n  ", shown(held.storage));

    const std::unique_ptr<char[]> cut(new char[size]);
    size_t cutUsed = 0;
    const int cutResult = held.print(cut.get(), size, &cutUsed, indent, separator);
    const bool isAllowed = cutResult == wholeResult || cutResult == Quorva::BRX_ERR_NO_ROOM;
    require(isAllowed && cutUsed <= size && cutUsed <= wholeUsed &&
                memcmp(cut.get(), whole, cutUsed) == 0 &&
                (cutResult == Quorva::BRX_ERR_NO_ROOM || cutUsed == wholeUsed),
            nameOf<Message>(), ": a dump into ", size, " bytes gives ", cutResult, ", used ",
            cutUsed, "; the whole one ", wholeResult, ", used ", wholeUsed, '\n',
            std::string(whole, wholeUsed));
    checkText(held, size, cutUsed, whole, indent, separator);
}

/// The commands of a frame can be told from whatever decodes, and are told without harm from
/// whatever does not.
template <class Message>
void checkCommands(const Bytes& bytes, int decoded) {
    ZRPCommands commands{};
    int result = 0;
    if constexpr (std::is_same_v<Message, TZRPHead>) {
        result = commandsOfHead(bytes.data(), bytes.size(), &commands);
    } else if constexpr (std::is_same_v<Message, TZRPInFrame>) {
        result = commandsOfInFrame(bytes.data(), bytes.size(), &commands);
    } else if constexpr (std::is_same_v<Message, TZRPFrame>) {
        // Its body is stepped over here, where decoding takes it for fields.
        (void)commandsOfFrame(bytes.data(), bytes.size(), &commands);
    }
    constexpr int allDiffer =
        ZRP_DIFFER_BASE_EXTENSION + ZRP_DIFFER_BASE_BODY + ZRP_DIFFER_EXTENSION_BODY;
    require((decoded != 0 || result >= 0) && result <= allDiffer, nameOf<Message>(),
            ": its commands give ", result, " where decoding gives ", decoded, "\n  ",
            shown(bytes));
}

template <class Message>
void check(Input& input) {
    Held<Message> held{Bytes(sizeof(Message) + bodyRoom, static_cast<char>(input.byte()))};
    const size_t pathSize = input.choice(ZRP_PATH_SIZE + 1);
    const size_t dumpSize = static_cast<size_t>(input.number(2)) % 4096;
    const int indent = static_cast<int>(input.choice(4)) - 1;
    const char separator = input.flag() ? '\n' : ' ';
    const Bytes bytes = wireBytes(input);

    size_t used = 0;
    const int decoded = held.decode(bytes, &used);
    // What a failing decode leaves is validated and printed all the same.
    limitBody(held);
    const Bytes before = held.storage;
    const int validation = checkValidation(held, pathSize);
    checkDump(held, validation, dumpSize, indent, separator);
    require(held.storage == before, nameOf<Message>(), ": looking at a message changed it");
    checkCommands<Message>(bytes, decoded);
}

template <class... Message>
void checkChosen(codec::TypeList<Message...>, Input& input) {
    static constexpr void (*checks[])(Input&) = {check<Message>...};
    checks[input.choice(sizeof...(Message))](input);
}

}  // namespace

}  // namespace zrp_fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t count) {
    zrp_fuzz::Input input(bytes, count);
    zrp_fuzz::checkChosen(quorva_zrp::codec::Catalogue{}, input);
    return 0;
}
