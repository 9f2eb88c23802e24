#include "tests/mutation/survivors.h"

#include <sstream>
#include <stdexcept>

namespace zrp_test::mutation {

namespace {

/// One blank for any number of blanks and line ends, none at the ends.
std::string squeeze(const std::string& text) {
    std::istringstream words(text);
    std::string result;
    for (std::string word; words >> word;) {
        result += (result.empty() ? "" : " ") + word;
    }
    return result;
}

Name nameOf(const Mutant& mutant, const std::string& text) {
    const size_t lineBegin = text.rfind('\n', mutant.begin) + 1;
    const size_t lineEnd = text.find('\n', mutant.end);
    const std::string head = text.substr(lineBegin, mutant.begin - lineBegin);
    const std::string tail = text.substr(mutant.end, lineEnd - mutant.end);
    const std::string changed = text.substr(mutant.begin, mutant.end - mutant.begin);
    return {mutant.file + " " + mutant.function, squeeze(head + changed + tail),
            squeeze(head + mutant.replacement + tail)};
}

}  // namespace

std::vector<Name> namesOf(const std::vector<Mutant>& mutants, const std::string& repository) {
    std::map<std::string, std::string> texts;
    std::map<Name, unsigned> occurrences;
    std::vector<Name> names;
    for (const Mutant& mutant : mutants) {
        std::string& text = texts[mutant.file];
        if (text.empty()) {
            text = readFile(repository + "/" + mutant.file);
        }
        Name name = nameOf(mutant, text);
        const unsigned occurrence = ++occurrences[name];
        if (occurrence > 1) {
            name.place += " #" + std::to_string(occurrence);
        }
        names.push_back(name);
    }
    return names;
}

Reasons readReasons(const std::string& path) {
    Reasons reasons;
    std::vector<Name> waiting;
    std::istringstream lines(readFile(path));
    Name name;
    unsigned number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        const std::string mark = line.substr(0, 2);
        const std::string rest = line.size() > 2 ? line.substr(2) : "";
        if (line.empty() || line[0] == '#') {
            continue;
        }
        if (mark == "- ") {
            name.before = rest;
        } else if (mark == "+ " || mark == "+") {
            name.after = rest;
            waiting.push_back(name);
        } else if (mark == ": ") {
            const bool isSame = rest.rfind("same: ", 0) == 0;
            if (waiting.empty() || (!isSame && rest.rfind("slower: ", 0) != 0)) {
                throw std::runtime_error(path + ":" + std::to_string(number) +
                                         ": a reason stands behind changes and begins with "
                                         "'same: ' or 'slower: '");
            }
            for (const Name& one : waiting) {
                reasons[one] = {isSame, rest};
            }
            waiting.clear();
        } else {
            name.place = line;
        }
    }
    if (!waiting.empty()) {
        throw std::runtime_error(path + ": no reason for\n" + entryOf(waiting.front()));
    }
    return reasons;
}

std::string entryOf(const Name& name) {
    return name.place + "\n- " + name.before + "\n+ " + name.after + "\n";
}

}  // namespace zrp_test::mutation
