// What the codec does with more than a million inputs, as one line of hashes per type and flavour,
// so that platforms and compilers can be compared by comparing a file.
#include <stdio.h>

#include <fstream>
#include <map>
#include <string>
#include <string_view>

#include "tests/digest/hash.h"
#include "tests/digest/rows.h"

namespace zrp_test {

namespace {

constexpr char usage[] =
    "Usage: digest [--oracle] [--only TYPE] [--expected FILE | --rows]\n"
    "\n"
    "Prints the digest: type, flavour, number of rows, hash.\n"
    "\n"
    "  --oracle         have the rows done by the oracle of the tests, not by the library\n"
    "  --only TYPE      this message type only\n"
    "  --expected FILE  compare with the lines of FILE instead; says which differ, exits with 1\n"
    "  --rows           print every row, to find where two platforms part\n";

struct Options {
    const Codec* codec = &libraryCodec;
    std::string only;
    std::string expected;
    bool rows = false;
};

void printRow(const TypePair& pair, const char* flavour, size_t index, const Row& row) {
    printf("%s %s %lu %s room %lu\n  in  %s\n  result %d used %lu selector %lld\n  out %s\n",
           pair.library->name, flavour, static_cast<unsigned long>(index), row.operation,
           static_cast<unsigned long>(row.room), toHex(row.input).c_str(), row.result,
           static_cast<unsigned long>(row.used), row.selector, toHex(row.output).c_str());
}

Hash hashOf(const TypePair& pair, bool varint, const Options& options) {
    Hash hash;
    size_t index = 0;
    forEachRow(pair, varint, *options.codec, [&](const Row& row) {
        if (options.rows) {
            printRow(pair, varint ? "varint" : "fixed", index, row);
        }
        ++index;
        hash.put(row.input);
        hash.put(row.room);
        hash.put(static_cast<uint64_t>(int64_t{row.result}));
        hash.put(row.used);
        hash.put(static_cast<uint64_t>(row.selector));
        hash.put(row.output);
    });
    return hash;
}

/// The lines of a digest by type and flavour.
std::map<std::string, std::string> linesOf(const std::string& path) {
    std::map<std::string, std::string> lines;
    std::ifstream file(path);
    std::string type;
    std::string flavour;
    std::string rest;
    while (file >> type >> flavour && std::getline(file >> std::ws, rest)) {
        lines[type + ' ' + flavour] = rest.substr(0, rest.find('\r'));
    }
    return lines;
}

int run(const Options& options) {
    std::map<std::string, std::string> expected;
    const bool compares = !options.expected.empty();
    if (compares) {
        expected = linesOf(options.expected);
    }
    Hash all;
    size_t rows = 0;
    size_t different = 0;
    for (const TypePair& pair : typePairs()) {
        if (!options.only.empty() && options.only != pair.library->name) {
            continue;
        }
        for (const bool varint : {true, false}) {
            const std::string hash = hashOf(pair, varint, options).text();
            const std::string key =
                std::string(pair.library->name) + (varint ? " varint" : " fixed");
            const std::string line = std::to_string(rowsPerLine) + ' ' + hash;
            rows += rowsPerLine;
            all.put(Bytes(hash.begin(), hash.end()));
            if (!compares && !options.rows) {
                printf("%s %s\n", key.c_str(), line.c_str());
            } else if (compares && expected[key] != line) {
                ++different;
                printf("%s is %s, not %s\n", key.c_str(), line.c_str(), expected[key].c_str());
            }
        }
    }
    if (rows == 0) {
        fprintf(stderr, "digest: no type is called %s\n", options.only.c_str());
        return 2;
    }
    if (compares) {
        printf("digest of %lu rows: %s\n", static_cast<unsigned long>(rows), all.text().c_str());
    }
    return different == 0 ? 0 : 1;
}

int main(int count, char** arguments) {
    Options options;
    for (int i = 1; i < count; ++i) {
        const std::string_view argument = arguments[i];
        const bool hasValue = i + 1 < count;
        if (argument == "--help") {
            fputs(usage, stdout);
            return 0;
        }
        if (argument == "--oracle") {
            options.codec = &oracleCodec;
        } else if (argument == "--rows") {
            options.rows = true;
        } else if (argument == "--only" && hasValue) {
            options.only = arguments[++i];
        } else if (argument == "--expected" && hasValue) {
            options.expected = arguments[++i];
        } else {
            fprintf(stderr, "digest: cannot use '%s'\n%s", arguments[i], usage);
            return 2;
        }
    }
    return run(options);
}

}  // namespace

}  // namespace zrp_test

int main(int count, char** arguments) {
    return zrp_test::main(count, arguments);
}
