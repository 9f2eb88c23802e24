// Prints the dictionary of the fuzzers: what a mutation has to get right to get any further. Made
// from the field tables, so that a new field is in it by itself.
#include <stdio.h>

#include <map>
#include <string>

#include "protocol/codec/field_data.h"
#include "protocol/fields/frames.h"

namespace {

using namespace quorva_zrp::codec;

class Dictionary {
  public:
    /// Of several names for the same bytes the first stays.
    void add(const std::string& name, const std::string& bytes) { words_.try_emplace(bytes, name); }

    void print() const {
        printf(
            "# Made by fuzz/tools/print_dictionary.cpp from the field tables; a test compares.\n");
        for (const auto& [bytes, name] : words_) {
            printf("%s=\"", name.c_str());
            for (const char byte : bytes) {
                printf("\\x%02X", static_cast<unsigned>(static_cast<unsigned char>(byte)));
            }
            printf("\"\n");
        }
    }

  private:
    std::map<std::string, std::string> words_;
};

std::string varint(uint64_t value) {
    std::string bytes;
    for (; value >= 0x80; value >>= 7) {
        bytes += static_cast<char>((value & 0x7F) | 0x80);
    }
    return bytes + static_cast<char>(value);
}

std::string length(uint32_t value) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes += static_cast<char>(value >> shift & 0xFF);
    }
    return bytes;
}

/// "[wMagic]" as a name.
std::string nameOf(const char* label) {
    const std::string bracketed = label;
    return bracketed.substr(1, bracketed.size() - 2);
}

template <class Row>
void addRow(Dictionary& dictionary, Row) {
    const std::string name = nameOf(Row::label);
    dictionary.add("varint_" + name, varint(Row::tag(true)));
    dictionary.add("fixed_" + name, varint(Row::tag(false)));
    if constexpr (Row::capacity() != 0) {
        const uint32_t capacity = static_cast<uint32_t>(Row::capacity());
        for (const uint32_t count : {capacity - 1, capacity, capacity + 1}) {
            dictionary.add("length_" + std::to_string(count), length(count));
        }
    }
}

template <class Message, size_t... Index>
void addFields(Dictionary& dictionary, std::index_sequence<Index...>) {
    (addRow(dictionary, Field<Message, Index>{}), ...);
}

template <class... Message>
void addTypes(Dictionary& dictionary, TypeList<Message...>) {
    (addFields<Message>(dictionary, FieldIndices<Message>{}), ...);
}

void addEdges(Dictionary& dictionary) {
    dictionary.add("magic_varint", "\xAA");
    dictionary.add("magic_fixed", "\x99");
    for (const uint32_t count : {0u, 1u, 2u, 4u, 5u, 16u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        dictionary.add("length_" + std::to_string(count), length(count));
    }
    for (const unsigned bits : {8u, 16u, 32u, 64u}) {
        dictionary.add("largest_of_" + std::to_string(bits), varint(UINT64_MAX >> (64 - bits)));
    }
    // Groups past the width of 16 and 32 bits that come back at its low end, and one too many.
    dictionary.add("folded_16", "\x80\x80\x80\x80\x80\x01");
    dictionary.add("folded_32", "\x80\x80\x80\x80\x8F\x01");
    dictionary.add("too_large_32", "\xFF\xFF\xFF\xFF\x1F");
    dictionary.add("too_large_64", "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x02");
    // Fields of no known number, by wire type, and one that cannot be skipped.
    for (unsigned type = 0; type <= 6; ++type) {
        dictionary.add("unknown_of_type_" + std::to_string(type), varint(1000 * 16 + type));
    }
}

}  // namespace

int main() {
    Dictionary dictionary;
    addTypes(dictionary, Catalogue{});
    addEdges(dictionary);
    dictionary.print();
}
