// A definition of the four text-dump functions that records its calls. Linked into the tests in
// place of quorva_zrp_text.
#pragma once

#include <stdint.h>

#include <iosfwd>
#include <string>
#include <vector>

namespace zrp_test {

/// One call of a formatting function.
struct PrintCall {
    enum class Kind { value, heading, array, text };
    Kind kind;
    int indent;
    char separator;
    std::string label;
    std::string format;  ///< kind value: the format as passed
    std::string detail;  ///< value: the argument printed by its format; array: the count; text: it

    bool operator==(const PrintCall& other) const = default;
};

std::ostream& operator<<(std::ostream& out, const PrintCall& call);

// The calls as expectations write them.
PrintCall value(int indent, char separator, std::string label, std::string format,
                std::string printed);
PrintCall heading(int indent, char separator, std::string label);
PrintCall array(int indent, char separator, std::string label, long long count);
PrintCall text(int indent, char separator, std::string label, std::string content);

/// Collects the calls made on this thread while it lives; at most one per thread at a time. Each
/// call also writes a short entry into the buffer it is given, and so fails with -1 where that does
/// not fit.
class Recorder {
  public:
    Recorder();
    ~Recorder();
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    /// Makes the call with this index (counted from 0) write nothing and return `result`.
    void failAt(size_t index, int32_t result);

    const std::vector<PrintCall>& calls() const { return calls_; }

    /// Notes a call; returns the result it is to give, 0 to go on.
    int32_t note(PrintCall call);

  private:
    std::vector<PrintCall> calls_;
    size_t failIndex_ = SIZE_MAX;
    int32_t failResult_ = 0;
};

}  // namespace zrp_test
