// Writes inputs to start from: for every type, flavour and union member an encoding of the plain
// oracle, and for the targets that build records bytes of choices. From these ./minimise.sh makes
// the corpus.
//
//     make_seeds TARGET FOLDER
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "fuzz/support/messages.h"
#include "tests/differential/wire_generator.h"
#include "tests/oracle/oracle.h"

namespace {

using namespace zrp_test;

class SeedWriter {
  public:
    explicit SeedWriter(std::filesystem::path folder) : folder_(std::move(folder)) {
        std::filesystem::create_directories(folder_);
    }

    void write(const Bytes& bytes) {
        const std::filesystem::path path = folder_ / ("seed" + std::to_string(count_++));
        std::ofstream file(path, std::ios::binary);
        file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        if (!file.flush()) {
            fprintf(stderr, "make_seeds: cannot write %s: is the disk full?\n", path.c_str());
            exit(1);
        }
    }

  private:
    std::filesystem::path folder_;
    size_t count_ = 0;
};

/// The fields of a sound record, without envelope.
Bytes fieldsOf(const TypePair& type, Random& random, size_t variant, bool varint) {
    Subject record = randomSubject(type, random, variant, Soundness::sound);
    Bytes bytes(zrp_oracle::largestSize(*type.oracle, varint) + record.record.size());
    size_t used = 0;
    zrp_oracle::pack(*type.oracle, record.record.data(), record.selector, bytes.data(),
                     bytes.size(), &used, varint);
    return Bytes(bytes.begin() + 5, bytes.begin() + static_cast<std::ptrdiff_t>(used));
}

Bytes joined(Bytes head, const Bytes& tail) {
    head.insert(head.end(), tail.begin(), tail.end());
    return head;
}

/// Inputs that begin with a type's index, `choices` bytes of 0 and the choices of an envelope.
void writeEncodings(SeedWriter& writer, size_t choices) {
    const std::vector<TypePair>& types = zrp_fuzz::numberedTypes();
    for (size_t index = 0; index < types.size(); ++index) {
        for (size_t variant = 0; variant < variantCount(*types[index].oracle); ++variant) {
            for (const bool varint : {true, false}) {
                Random random(variant);
                Bytes head(1 + choices);
                head[0] = static_cast<char>(index);
                head.push_back(varint ? 0 : 4);  // an envelope of this flavour is put in front
                writer.write(joined(head, fieldsOf(types[index], random, variant, varint)));
                WireGenerator generator(random, varint);
                writer.write(joined(head, generator.fields(*types[index].oracle)));
                head.back() = 3;  // the envelope is part of the input
                writer.write(joined(head, generator.message(*types[index].oracle)));
            }
        }
    }
}

/// Inputs that begin with a type's index and, for the operations, with theirs; noise follows.
void writeChoices(SeedWriter& writer, size_t operations) {
    for (size_t type = 0; type < zrp_fuzz::numberedTypes().size(); ++type) {
        for (size_t operation = 0; operation < operations; ++operation) {
            Random random(type * operations + operation);
            Bytes bytes(200);
            random.fill(bytes);
            bytes[0] = static_cast<char>(type);
            if (operations > 1) {
                bytes[1] = static_cast<char>(operation);
            }
            writer.write(bytes);
        }
    }
}

const struct {
    const char* target;
    void (*write)(SeedWriter& writer);
} sources[] = {
    {"decode", [](SeedWriter& writer) { writeEncodings(writer, 1); }},
    {"decode_validate_print", [](SeedWriter& writer) { writeEncodings(writer, 6); }},
    {"fixed_point", [](SeedWriter& writer) { writeEncodings(writer, 1); }},
    {"identity", [](SeedWriter& writer) { writeChoices(writer, 1); }},
    // The first operation decodes into noise.
    {"differential",
     [](SeedWriter& writer) {
         writeEncodings(writer, 3);
         writeChoices(writer, 8);
     }},
    {"buffers", [](SeedWriter& writer) { writeChoices(writer, 1); }},
};

}  // namespace

int main(int argumentCount, char** arguments) {
    for (const auto& source : sources) {
        if (argumentCount == 3 && strcmp(source.target, arguments[1]) == 0) {
            SeedWriter writer(arguments[2]);
            source.write(writer);
            return 0;
        }
    }
    fprintf(stderr, "make_seeds: give the name of a target and a folder to write to\n");
    return 2;
}
