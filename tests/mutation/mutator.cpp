// mutator REPOSITORY OUTPUT HEADERS_AND_SOURCES...
// Rewrites these files of the repository below OUTPUT, with every mutant asleep in them, and lists
// the mutants in OUTPUT/mutants.txt.
#include <algorithm>
#include <cstdio>
#include <exception>
#include <map>
#include <regex>
#include <set>

#include "tests/mutation/finder.h"

using namespace zrp_test::mutation;

namespace {

bool isSource(const std::string& file) {
    return file.ends_with(".cpp");
}

class Mutator {
  public:
    Mutator(std::string repository, std::string output, std::vector<std::string> files)
        : repository_(std::move(repository)), output_(std::move(output)), files_(std::move(files)) {
        findAll();
    }

    /// Writes, and lets the compiler say what cannot stand as a call: those stay as they were and
    /// take a build of their own.
    void write() {
        do {
            for (const auto& [file, mutations] : mutations_) {
                writeFile(output_ + "/" + file,
                          rewrite(readFile(repository_ + "/" + file), mutations));
            }
        } while (removeRefused());
        std::vector<Mutant> all;
        for (const std::string& file : files_) {
            const std::vector<Mutant>& some = mutations_[file].mutants;
            all.insert(all.end(), some.begin(), some.end());
        }
        writeFile(output_ + "/mutants.txt", toLines(all));
        const auto apart =
            std::count_if(all.begin(), all.end(), [](const Mutant& one) { return !one.isAsleep; });
        std::printf("%zu mutants, %td of them take a build of their own\n", all.size(), apart);
    }

  private:
    std::string repository_;
    std::string output_;
    std::vector<std::string> files_;
    std::map<std::string, Mutations> mutations_;

    std::vector<std::string> options(const std::string& directory) const {
        return {"-x",
                "c++",
                "-std=c++20",
                "-w",
                "-fno-exceptions",
                "-fno-rtti",
                "-ferror-limit=0",
                "-I" + directory,
                "-I" + repository_};
    }

    void findAll() {
        // One source that includes every header, since most need none of the sources; where no
        // header that was rewritten before lies beside it.
        std::string headers;
        for (const std::string& file : files_) {
            headers += isSource(file) ? "" : "#include \"" + file + "\"\n";
        }
        const std::string all = output_ + "/mutator/headers.cpp";
        writeFile(all, headers);
        const Unit unit(all, options(repository_));
        unsigned number = 1;
        for (const std::string& file : files_) {
            const std::string path = repository_ + "/" + file;
            const std::string text = readFile(path);
            if (isSource(file)) {
                const Unit source(path, options(repository_));
                mutations_[file] = findMutants(source, source.file(path), file, text, number);
            } else {
                mutations_[file] = findMutants(unit, unit.file(path), file, text, number);
            }
            number += static_cast<unsigned>(mutations_[file].mutants.size());
        }
    }

    /// Compiles what was written; whether something had to be taken back.
    bool removeRefused() {
        std::map<std::string, std::set<unsigned>> lines;
        for (const std::string& file : files_) {
            if (!isSource(file)) {
                continue;
            }
            std::vector<std::string> all = options(output_);
            all.insert(all.end(), {"-include", "tests/mutation/asleep.h"});
            for (const Unit::Error& error : Unit(output_ + "/" + file, all).errors()) {
                if (lines[error.file].insert(error.line).second) {
                    std::fprintf(stderr, "%s:%u: %s\n", error.file.c_str(), error.line,
                                 error.text.c_str());
                }
            }
        }
        bool removed = false;
        for (auto& [file, mutations] : mutations_) {
            const std::string text = readFile(output_ + "/" + file);
            if (const auto found = lines.find(output_ + "/" + file); found != lines.end()) {
                for (const unsigned line : found->second) {
                    removed = removeLine(mutations, text, line) || removed;
                }
            }
        }
        if (!lines.empty() && !removed) {
            throw std::runtime_error("the rewritten sources do not compile");
        }
        return removed;
    }

    /// Takes out what names its number in this line of the rewritten text.
    static bool removeLine(Mutations& mutations, const std::string& text, unsigned line) {
        size_t begin = 0;
        for (unsigned i = 1; i < line; ++i) {
            begin = text.find('\n', begin) + 1;
        }
        const std::string code = text.substr(begin, text.find('\n', begin) - begin);
        static const std::regex call("::zrp_mutant::\\w+<(\\d+)>");
        bool removed = false;
        for (std::sregex_iterator it(code.begin(), code.end(), call), end; it != end; ++it) {
            const unsigned long place = std::stoul((*it)[1]);
            removed = std::erase_if(mutations.insertions,
                                    [&](const Insertion& insertion) {
                                        return insertion.place == place;
                                    }) != 0 ||
                      removed;
            for (Mutant& mutant : mutations.mutants) {
                mutant.isAsleep = mutant.isAsleep && mutant.place != place;
            }
        }
        return removed;
    }
};

}  // namespace

int main(int argc, char** argv) {
    if (argc < 4) {
        std::fprintf(stderr, "Usage: %s REPOSITORY OUTPUT FILE...\n", argv[0]);
        return 2;
    }
    try {
        Mutator(argv[1], argv[2], {argv + 3, argv + argc}).write();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "mutator: %s\n", error.what());
        return 1;
    }
    return 0;
}
