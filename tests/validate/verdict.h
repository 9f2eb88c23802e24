// What `validate` says, in one comparable value.
#pragma once

#include <ostream>
#include <string>

#include "protocol/quorva_zrp_validate.h"

namespace zrp_test {

struct Verdict {
    int result;
    std::string path;

    bool operator==(const Verdict& other) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Verdict& verdict) {
    return out << verdict.result << " at \"" << verdict.path << '"';
}

inline const Verdict isSound{0, ""};

inline Verdict tooBig(std::string path) {
    return {-7, std::move(path)};
}
inline Verdict badSelector(std::string path) {
    return {-33, std::move(path)};
}
inline Verdict unterminated(std::string path) {
    return {-3, std::move(path)};
}

template <class Record>
Verdict verdictOn(const Record& record) {
    char path[quorva_zrp::ZRP_PATH_SIZE] = "left as it was";
    const int result = quorva_zrp::validate(record, path, sizeof(path));
    return {result, path};
}

template <class Union>
Verdict verdictOn(const Union& value, long long selector) {
    char path[quorva_zrp::ZRP_PATH_SIZE] = "left as it was";
    const int result = quorva_zrp::validate(value, selector, path, sizeof(path));
    return {result, path};
}

/// Fills a text to its last byte, so that it has no NUL.
template <size_t Size>
void overfill(char (&text)[Size]) {
    for (char& one : text) {
        one = 'x';
    }
}

/// A text of the most characters it may have.
template <size_t Size>
void fillUp(char (&text)[Size]) {
    overfill(text);
    text[Size - 1] = '\0';
}

/// A zeroed and constructed record.
template <class Record>
Record constructed() {
    Record record = Record();
    record.construct();
    return record;
}

/// A constructed frame of this command, over zeroes.
inline quorva_zrp::TZRPInFrame frameOf(uint16_t command) {
    quorva_zrp::TZRPInFrame frame = constructed<quorva_zrp::TZRPInFrame>();
    frame.stHead.stBase.wCommand = command;
    frame.stHead.stExtend.construct(command);
    frame.stBody.construct(command);
    return frame;
}

}  // namespace zrp_test
