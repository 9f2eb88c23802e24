#include "tests/mutation/mutants.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <tuple>

namespace zrp_test::mutation {

namespace {

const std::string escapes = "\\\n\t";
const std::string escaped = "\\nt";

std::string escape(const std::string& text) {
    std::string result;
    for (const char c : text) {
        const size_t which = escapes.find(c);
        result += which != std::string::npos ? std::string{'\\', escaped[which]} : std::string{c};
    }
    return result;
}

std::string unescape(const std::string& text) {
    std::string result;
    for (size_t i = 0; i < text.size(); ++i) {
        result += text[i] == '\\' ? escapes[escaped.find(text.at(++i))] : text[i];
    }
    return result;
}

}  // namespace

std::string rewrite(const std::string& text, const Mutations& mutations) {
    struct Ordered {
        const Insertion* insertion;
        long nesting;
    };
    std::vector<Ordered> ordered;
    for (const Insertion& insertion : mutations.insertions) {
        const long place = static_cast<long>(ordered.size());
        ordered.push_back({&insertion, insertion.isBehind ? -place : place});
    }
    const auto key = [](const Ordered& one) {
        return std::tuple(one.insertion->begin, !one.insertion->isBehind, one.nesting);
    };
    std::sort(ordered.begin(), ordered.end(),
              [&](const Ordered& a, const Ordered& b) { return key(a) < key(b); });
    std::string result;
    size_t at = 0;
    for (const Ordered& one : ordered) {
        result.append(text, at, one.insertion->begin - at);
        result += one.insertion->text;
        at = one.insertion->end;
    }
    return result.append(text, at);
}

std::string toLines(const std::vector<Mutant>& mutants) {
    std::ostringstream lines;
    for (const Mutant& mutant : mutants) {
        lines << mutant.number << '\t' << mutant.place << '\t' << mutant.file << '\t'
              << mutant.function << '\t' << mutant.operation << '\t' << mutant.begin << '\t'
              << mutant.end << '\t' << mutant.isAsleep << '\t' << escape(mutant.replacement)
              << '\n';
    }
    return lines.str();
}

std::vector<Mutant> fromLines(const std::string& lines) {
    std::vector<Mutant> mutants;
    std::istringstream in(lines);
    for (std::string line; std::getline(in, line);) {
        std::istringstream fields(line);
        const auto next = [&] {
            std::string field;
            std::getline(fields, field, '\t');
            return field;
        };
        Mutant mutant;
        mutant.number = static_cast<unsigned>(std::stoul(next()));
        mutant.place = static_cast<unsigned>(std::stoul(next()));
        mutant.file = next();
        mutant.function = next();
        mutant.operation = next();
        mutant.begin = static_cast<unsigned>(std::stoul(next()));
        mutant.end = static_cast<unsigned>(std::stoul(next()));
        mutant.isAsleep = next() == "1";
        mutant.replacement = unescape(next());
        mutants.push_back(mutant);
    }
    return mutants;
}

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        throw std::runtime_error("cannot read " + path);
    }
    return {std::istreambuf_iterator<char>(in), {}};
}

void writeFile(const std::string& path, const std::string& text) {
    if (std::filesystem::exists(path) && readFile(path) == text) {
        return;
    }
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream out(path, std::ios::binary);
    out << text;
    if (!out.flush()) {
        throw std::runtime_error("cannot write " + path);
    }
}

}  // namespace zrp_test::mutation
