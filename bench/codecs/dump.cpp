// The text dump, against its floor: the same text, written with one bounded formatter call for each
// of its entries.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bench/codecs/codecs.h"
#include "bench/messages.h"

namespace zrp_bench {

namespace {

constexpr size_t room = 16384;

std::string dumpOf(const Frame& values) {
    std::string text(room, '\0');
    size_t used = 0;
    if (values.visualize(text.data(), text.size(), &used, 0, '\n') != 0) {
        failCheck("dump", "does not fit");
    }
    text.resize(used);
    return text;
}

class Visualize final : public Task {
  public:
    explicit Visualize(const Frame& values) : values_(values), out_(room) {}

    void run(size_t count) override {
        for (size_t i = 0; i < count; ++i) {
            size_t used = 0;
            if (values_.visualize(out_.data(), out_.size(), &used, 0, '\n') != 0) {
                failCheck("a timed dump", "failed");
            }
            keep(out_.data());
        }
    }

    double bytes() const override { return static_cast<double>(dumpOf(values_).size()); }

  private:
    const Frame& values_;
    PageAlignedBytes out_;
};

/// One entry of a dump, taken apart into what a formatter needs.
struct Entry {
    enum class Kind { heading, number, byte, text, array };

    Kind kind = Kind::heading;
    int blanks = 0;
    std::string label;
    unsigned long long value = 0;
    std::string text;
    std::vector<unsigned> elements;
    std::string arrayFormat;
};

Entry parsed(std::string_view line) {
    Entry made;
    const size_t label = line.find('[');
    const size_t end = line.find(']') + 1;
    made.blanks = static_cast<int>(label);
    made.label = line.substr(label, end - label);
    const std::string rest(line.substr(end));
    if (rest.empty()) {
        return made;
    }
    if (rest.starts_with(" \"")) {
        made.kind = Entry::Kind::text;
        made.text = rest.substr(2, rest.size() - 3);
    } else if (const size_t colon = rest.find(':'); colon != rest.npos) {
        made.kind = Entry::Kind::array;
        for (size_t at = colon; (at = rest.find("0x", at)) != rest.npos; at += 4) {
            made.elements.push_back(static_cast<unsigned>(strtoul(rest.c_str() + at, nullptr, 16)));
            made.arrayFormat += " 0x%02x";
        }
        made.arrayFormat =
            "%*s%s " + std::to_string(made.elements.size()) + ":" + made.arrayFormat + "\n";
    } else {
        made.kind = rest.starts_with(" 0x") ? Entry::Kind::byte : Entry::Kind::number;
        made.value = strtoull(rest.c_str(), nullptr, 0);
    }
    return made;
}

template <size_t... Index>
int formatArray(char* to, size_t size, const Entry& entry, std::index_sequence<Index...>) {
    return snprintf(to, size, entry.arrayFormat.c_str(), entry.blanks, "", entry.label.c_str(),
                    entry.elements[Index]...);
}

/// The bounded formatter call of one entry.
int format(char* to, size_t size, const Entry& entry) {
    const char* const label = entry.label.c_str();
    switch (entry.kind) {
        case Entry::Kind::heading:
            return snprintf(to, size, "%*s%s%c", entry.blanks, "", label, '\n');
        case Entry::Kind::number:
            return snprintf(to, size, "%*s%s %llu%c", entry.blanks, "", label, entry.value, '\n');
        case Entry::Kind::byte:
            return snprintf(to, size, "%*s%s 0x%02llx%c", entry.blanks, "", label, entry.value,
                            '\n');
        case Entry::Kind::text:
            return snprintf(to, size, "%*s%s \"%s\"%c", entry.blanks, "", label, entry.text.c_str(),
                            '\n');
        default:
            return formatArray(to, size, entry, std::make_index_sequence<64>{});
    }
}

class FormatEntries final : public Task {
  public:
    explicit FormatEntries(const std::string& text) : expected_(text), out_(room) {
        for (size_t at = 0; at < text.size();) {
            const size_t end = text.find('\n', at);
            entries_.push_back(parsed(std::string_view(text).substr(at, end - at)));
            if (entries_.back().kind == Entry::Kind::array &&
                entries_.back().elements.size() != 64) {
                failCheck("dump", "holds an array of another size");
            }
            at = end + 1;
        }
        if (std::string(out_.data(), formatAll()) != expected_) {
            failCheck("dump", "differs from the same text formatted entry by entry");
        }
    }

    void run(size_t count) override {
        for (size_t i = 0; i < count; ++i) {
            formatAll();
            keep(out_.data());
        }
    }

    double bytes() const override { return static_cast<double>(expected_.size()); }

  private:
    size_t formatAll() {
        size_t used = 0;
        for (const Entry& entry : entries_) {
            used += static_cast<size_t>(format(out_.data() + used, out_.size() - used, entry));
        }
        return used;
    }

    std::string expected_;
    std::vector<Entry> entries_;
    PageAlignedBytes out_;
};

}  // namespace

void addDump(Cases& cases) {
    const Frame& values = synFrame().values.front();
    cases.push_back(
        {"dump/M2/visualize", [&values](size_t) { return std::make_unique<Visualize>(values); }});
    cases.push_back({"dump/M2/formatter", [&values](size_t) {
                         return std::make_unique<FormatEntries>(dumpOf(values));
                     }});
}

}  // namespace zrp_bench
