#include "tests/differential/compare.h"

#include <stdint.h>
#include <string.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <sstream>

#include "tests/oracle/oracle.h"
#include "tests/support/recorder.h"

namespace zrp_test {

using Quorva::BrxReadBuf;
using Quorva::BrxWriteBuf;
using zrp_oracle::InputCursor;
using zrp_oracle::OutputCursor;

namespace {

constexpr char untouched = '\xC7';
constexpr size_t guardSize = 16;
constexpr size_t unset = 0x5E75E75E;
/// What a formatting function that is told to fail returns; no other operation does.
constexpr int32_t formattingFailed = -1234;

/// An output buffer of an exact size, with guard bytes before and behind it.
class Output {
  public:
    explicit Output(size_t size) : memory_(size + 2 * guardSize, untouched) {}

    char* begin() { return memory_.data() + guardSize; }
    size_t size() const { return memory_.size() - 2 * guardSize; }
    bool operator==(const Output& other) const = default;
    const Bytes& memory() const { return memory_; }

  private:
    Bytes memory_;
};

/// What one side did.
struct Outcome {
    int result = 0;
    size_t used = unset;
    long long selector = 0;

    bool operator==(const Outcome& other) const = default;
};

std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
    out << "result " << outcome.result << ", used ";
    outcome.used == unset ? out << "not set" : out << outcome.used;
    return out << ", selector " << outcome.selector;
}

const char* flavourName(bool varint) {
    return varint ? "with varint" : "no varint";
}

template <class... Pieces>
std::string say(const Pieces&... pieces) {
    std::ostringstream text;
    (text << ... << pieces);
    return text.str();
}

/// Where the bytes that both sides left behind part.
std::string firstDifference(const Bytes& library, const Bytes& oracle, size_t guard) {
    const auto places = std::mismatch(library.begin(), library.end(), oracle.begin(), oracle.end());
    if (places.first == library.end()) {
        return "the same bytes on both sides";
    }
    return say("bytes differ from offset ",
               places.first - library.begin() - static_cast<std::ptrdiff_t>(guard));
}

/// The end of every report: both outcomes and what both left behind.
std::string both(const Outcome& library, const Bytes& libraryBytes, const Outcome& oracle,
                 const Bytes& oracleBytes, size_t guard = 0) {
    return say("\n  library: ", library, "\n    ", toHex(libraryBytes), "\n  oracle:  ", oracle,
               "\n    ", toHex(oracleBytes), "\n  ",
               firstDifference(libraryBytes, oracleBytes, guard), '\n');
}

Difference reportOutput(const std::string& what, const Subject& subject, const Outcome& library,
                        const Output& libraryOutput, const Outcome& oracle,
                        const Output& oracleOutput) {
    return what + " of selector " + std::to_string(subject.selector) + " and record " +
           toHex(subject.record) +
           both(library, libraryOutput.memory(), oracle, oracleOutput.memory(), guardSize);
}

Difference reportDecode(const std::string& what, const Subject& target, const Bytes& input,
                        const Outcome& library, const Bytes& libraryRecord, const Outcome& oracle,
                        const Bytes& oracleRecord) {
    return what + " of input " + toHex(input) + " into selector " +
           std::to_string(target.selector) + " and record " + toHex(target.record) +
           both(library, libraryRecord, oracle, oracleRecord);
}

/// The input in memory of exactly its size, so that a sanitizer sees a read past its end.
std::unique_ptr<char[]> exactCopy(const Bytes& input) {
    std::unique_ptr<char[]> copy(new char[input.size()]);
    if (!input.empty()) {
        memcpy(copy.get(), input.data(), input.size());
    }
    return copy;
}

std::string shown(const std::vector<PrintCall>& calls) {
    std::ostringstream text;
    for (const PrintCall& call : calls) {
        text << "\n    " << call;
    }
    return text.str();
}

Difference compareDumps(const std::string& what, const Subject& subject, const Outcome& library,
                        const Output& libraryOutput, const std::vector<PrintCall>& libraryCalls,
                        const Outcome& oracle, const Output& oracleOutput,
                        const std::vector<PrintCall>& oracleCalls) {
    if (library == oracle && libraryOutput == oracleOutput && libraryCalls == oracleCalls) {
        return "";
    }
    return reportOutput(what, subject, library, libraryOutput, oracle, oracleOutput) +
           "  library calls:" + shown(libraryCalls) + "\n  oracle calls:" + shown(oracleCalls);
}

}  // namespace

Difference comparePack(const TypePair& pair, const Subject& subject, size_t size, bool varint) {
    Output libraryOutput(size);
    Output oracleOutput(size);
    Outcome library;
    Outcome oracle;
    library.result = pair.library->pack(subject.record.data(), subject.selector,
                                        libraryOutput.begin(), size, &library.used, varint);
    oracle.result = zrp_oracle::pack(*pair.oracle, subject.record.data(), subject.selector,
                                     oracleOutput.begin(), size, &oracle.used, varint);
    if (library == oracle && libraryOutput == oracleOutput) {
        return "";
    }
    return reportOutput(say("pack ", pair, ' ', flavourName(varint), " into ", size, " bytes"),
                        subject, library, libraryOutput, oracle, oracleOutput);
}

Difference comparePackFields(const TypePair& pair, const Subject& subject, size_t start,
                             size_t size, bool varint) {
    Output libraryOutput(size);
    Output oracleOutput(size);
    BrxWriteBuf buf(libraryOutput.begin(), size);
    OutputCursor cursor(oracleOutput.begin(), size);
    Outcome library;
    Outcome oracle;
    buf.position = start;
    cursor.used = start;
    library.result = pair.library->packFields(subject.record.data(), subject.selector, buf, varint);
    oracle.result = zrp_oracle::packFields(*pair.oracle, subject.record.data(), subject.selector,
                                           cursor, varint);
    library.used = buf.position;
    oracle.used = cursor.used;
    if (library == oracle && libraryOutput == oracleOutput) {
        return "";
    }
    return reportOutput(say("pack the fields of ", pair, ' ', flavourName(varint), " from ", start,
                            " into ", size, " bytes"),
                        subject, library, libraryOutput, oracle, oracleOutput);
}

Difference compareUnpack(const TypePair& pair, const Subject& target, const Bytes& input,
                         Subject* result) {
    const std::unique_ptr<char[]> bytes = exactCopy(input);
    Bytes libraryRecord = target.record;
    Bytes oracleRecord = target.record;
    Outcome library{0, unset, target.selector};
    Outcome oracle = library;
    library.result = pair.library->unpack(libraryRecord.data(), &library.selector, bytes.get(),
                                          input.size(), &library.used);
    oracle.result = zrp_oracle::unpack(*pair.oracle, oracleRecord.data(), &oracle.selector,
                                       bytes.get(), input.size(), &oracle.used);
    if (!(library == oracle && libraryRecord == oracleRecord)) {
        return reportDecode(say("unpack ", pair), target, input, library, libraryRecord, oracle,
                            oracleRecord);
    }
    if (result != nullptr) {
        *result = {oracleRecord, oracle.selector};
    }
    return "";
}

Difference compareUnpackFields(const TypePair& pair, const Subject& target, const Bytes& input,
                               size_t start, size_t length, bool varint) {
    const std::unique_ptr<char[]> bytes = exactCopy(input);
    Bytes libraryRecord = target.record;
    Bytes oracleRecord = target.record;
    BrxReadBuf buf(bytes.get(), input.size());
    InputCursor cursor(bytes.get(), input.size());
    Outcome library{0, unset, target.selector};
    Outcome oracle = library;
    buf.position = start;
    cursor.used = start;
    library.result =
        pair.library->unpackFields(libraryRecord.data(), &library.selector, buf, length, varint);
    oracle.result = zrp_oracle::unpackFields(*pair.oracle, oracleRecord.data(), &oracle.selector,
                                             cursor, length, varint);
    library.used = buf.position;
    oracle.used = cursor.used;
    if (library == oracle && libraryRecord == oracleRecord) {
        return "";
    }
    return reportDecode(say("unpack the fields of ", pair, ' ', flavourName(varint), " from ",
                            start, " over length ", length),
                        target, input, library, libraryRecord, oracle, oracleRecord);
}

Difference compareWithoutMemory(const TypePair& pair, const Subject& subject, bool varint) {
    const char* const what[] = {"pack", "unpack over 0", "unpack over all", "visualize"};
    Bytes libraryRecord = subject.record;
    Bytes oracleRecord = subject.record;
    BrxWriteBuf buf(nullptr, 100);
    OutputCursor cursor(nullptr, 100);
    BrxReadBuf input(nullptr, 100);
    InputCursor inputCursor(nullptr, 100);
    zrp_oracle::PrintLog oracleLog;
    Recorder recorder;
    Outcome library{0, 0, subject.selector};
    Outcome oracle = library;
    const MessageType& type = *pair.library;
    const int libraryResults[] = {
        type.packFields(libraryRecord.data(), subject.selector, buf, varint),
        type.unpackFields(libraryRecord.data(), &library.selector, input, 0, varint),
        type.unpackFields(libraryRecord.data(), &library.selector, input, SIZE_MAX, varint),
        type.visualize(libraryRecord.data(), library.selector, buf, 0, ' '),
    };
    const int oracleResults[] = {
        zrp_oracle::packFields(*pair.oracle, oracleRecord.data(), subject.selector, cursor, varint),
        zrp_oracle::unpackFields(*pair.oracle, oracleRecord.data(), &oracle.selector, inputCursor,
                                 0, varint),
        zrp_oracle::unpackFields(*pair.oracle, oracleRecord.data(), &oracle.selector, inputCursor,
                                 SIZE_MAX, varint),
        zrp_oracle::visualize(*pair.oracle, oracleRecord.data(), oracle.selector, cursor, 0, ' ',
                              oracleLog),
    };
    library.used = buf.position + input.position;
    oracle.used = cursor.used + inputCursor.used;
    for (size_t i = 0; i < std::size(what); ++i) {
        library.result = libraryResults[i];
        oracle.result = oracleResults[i];
        if (!(library == oracle && libraryRecord == oracleRecord &&
              recorder.calls() == oracleLog.calls)) {
            return reportDecode(say(what[i], ' ', pair, " without memory ", flavourName(varint)),
                                subject, {}, library, libraryRecord, oracle, oracleRecord);
        }
    }
    return "";
}

Difference compareConstruct(const TypePair& pair, const Subject& target) {
    Bytes libraryRecord = target.record;
    Bytes oracleRecord = target.record;
    Outcome library;
    Outcome oracle;
    library.result = pair.library->construct(libraryRecord.data(), target.selector);
    oracle.result = zrp_oracle::construct(*pair.oracle, oracleRecord.data(), target.selector);
    if (library == oracle && libraryRecord == oracleRecord) {
        return "";
    }
    return reportDecode(say("construct ", pair), target, {}, library, libraryRecord, oracle,
                        oracleRecord);
}

Difference compareVisualize(const TypePair& pair, const Subject& subject, const DumpStyle& style) {
    Output libraryOutput(style.size);
    Output oracleOutput(style.size);
    zrp_oracle::PrintLog oracleLog;
    Outcome library;
    Outcome oracle;
    Recorder recorder;
    recorder.failAt(style.failingCall, formattingFailed);
    oracleLog.failAt(style.failingCall, formattingFailed);
    library.result =
        pair.library->visualizeInto(subject.record.data(), subject.selector, libraryOutput.begin(),
                                    style.size, &library.used, style.indent, style.separator);
    oracle.result = zrp_oracle::visualizeInto(*pair.oracle, subject.record.data(), subject.selector,
                                              oracleOutput.begin(), style.size, &oracle.used,
                                              style.indent, style.separator, oracleLog);
    return compareDumps(say("visualize ", pair, " into ", style.size, " bytes"), subject, library,
                        libraryOutput, recorder.calls(), oracle, oracleOutput, oracleLog.calls);
}

Difference compareVisualizeFrom(const TypePair& pair, const Subject& subject, size_t start,
                                const DumpStyle& style) {
    Output libraryOutput(style.size);
    Output oracleOutput(style.size);
    zrp_oracle::PrintLog oracleLog;
    BrxWriteBuf buf(libraryOutput.begin(), style.size);
    OutputCursor cursor(oracleOutput.begin(), style.size);
    Outcome library;
    Outcome oracle;
    buf.position = start;
    cursor.used = start;
    Recorder recorder;
    recorder.failAt(style.failingCall, formattingFailed);
    oracleLog.failAt(style.failingCall, formattingFailed);
    library.result = pair.library->visualize(subject.record.data(), subject.selector, buf,
                                             style.indent, style.separator);
    oracle.result = zrp_oracle::visualize(*pair.oracle, subject.record.data(), subject.selector,
                                          cursor, style.indent, style.separator, oracleLog);
    library.used = buf.position;
    oracle.used = cursor.used;
    return compareDumps(say("visualize ", pair, " from ", start, " in ", style.size, " bytes"),
                        subject, library, libraryOutput, recorder.calls(), oracle, oracleOutput,
                        oracleLog.calls);
}

}  // namespace zrp_test
