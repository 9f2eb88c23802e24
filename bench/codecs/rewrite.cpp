#include "bench/codecs/rewrite.h"

#include <algorithm>
#include <vector>

#include "bench/harness/case.h"

namespace zrp_bench {

namespace {

constexpr uint32_t unknownNumber = 200;
constexpr unsigned delimitedTypeId = 5;
constexpr size_t envelopeSize = 5;

std::string varint(uint64_t value) {
    std::string made;
    for (; value >= 0x80; value >>= 7) {
        made += static_cast<char>((value & 0x7F) | 0x80);
    }
    return made + static_cast<char>(value);
}

std::string bigEndian(size_t value) {
    std::string made;
    for (int shift = 24; shift >= 0; shift -= 8) {
        made += static_cast<char>((value >> shift) & 0xFF);
    }
    return made;
}

/// Reads an encoding from front to back; well-formed ones only.
class Reader {
  public:
    explicit Reader(std::string_view bytes) : rest_(bytes) {}

    bool atEnd() const { return rest_.empty(); }

    std::string_view take(size_t count) {
        if (count > rest_.size()) {
            failCheck("a hard input", "is made from an encoding that ends too early");
        }
        const std::string_view taken = rest_.substr(0, count);
        rest_.remove_prefix(count);
        return taken;
    }

    std::string_view takeVarint() {
        const auto last = std::find_if(rest_.begin(), rest_.end(), [](char byte) {
            return (static_cast<unsigned char>(byte) & 0x80) == 0;
        });
        return take(static_cast<size_t>(last - rest_.begin()) + 1);
    }

    size_t takeLength() {
        size_t length = 0;
        for (const char byte : take(4)) {
            length = length << 8 | static_cast<unsigned char>(byte);
        }
        return length;
    }

  private:
    std::string_view rest_;
};

uint32_t tagValue(std::string_view bytes) {
    uint32_t value = 0;
    for (size_t i = bytes.size(); i-- > 0;) {
        value = value << 7 | (static_cast<unsigned char>(bytes[i]) & 0x7F);
    }
    return value;
}

std::string rewrittenFields(const zrp_oracle::Type& type, std::string_view fields, Rewrite how);

/// One field, tag included; nested values are rewritten.
std::string rewrittenField(const zrp_oracle::Type& type, Reader& from, Rewrite how) {
    const std::string_view tagBytes = from.takeVarint();
    const uint32_t tag = tagValue(tagBytes);
    const zrp_oracle::Field* const field = zrp_oracle::fieldNumbered(type, tag / 16);
    switch (tag % 16) {
        case 0:
            return std::string(tagBytes) + std::string(from.takeVarint());
        case delimitedTypeId: {
            const std::string_view content = from.take(from.takeLength());
            if (field != nullptr && field->type != nullptr) {
                return delimited(field->number, rewrittenFields(*field->type, content, how));
            }
            return delimited(tag / 16, content);
        }
        default:
            return std::string(tagBytes) + std::string(from.take(size_t{1} << (tag % 16 - 1)));
    }
}

std::string rewrittenFields(const zrp_oracle::Type& type, std::string_view fields, Rewrite how) {
    Reader from(fields);
    std::vector<std::string> pieces;
    while (!from.atEnd()) {
        pieces.push_back(rewrittenField(type, from, how));
        // A union is one field; anything behind it would be read as a field around it.
        if (how == Rewrite::addUnknown && !type.isUnion) {
            pieces.push_back(unknownField(pieces.size()));
        }
    }
    if (how == Rewrite::reverse) {
        std::reverse(pieces.begin(), pieces.end());
    }
    std::string made;
    for (const std::string& piece : pieces) {
        made += piece;
    }
    return made;
}

}  // namespace

std::string rewritten(const zrp_oracle::Type& type, std::string_view encoding, Rewrite how) {
    const bool varintFlavour = static_cast<unsigned char>(encoding.front()) == 0xAA;
    return withEnvelope(rewrittenFields(type, fieldsOf(encoding), how), varintFlavour);
}

std::string_view fieldsOf(std::string_view encoding) {
    return encoding.substr(envelopeSize);
}

std::string withEnvelope(std::string_view fields, bool varintFlavour) {
    std::string made(1, varintFlavour ? '\xAA' : '\x99');
    made += bigEndian(envelopeSize + fields.size());
    made += fields;
    return made;
}

std::string tag(uint32_t number, unsigned typeId) {
    return varint(uint64_t{number} * 16 + typeId);
}

std::string delimited(uint32_t number, std::string_view content) {
    return tag(number, delimitedTypeId) + bigEndian(content.size()) + std::string(content);
}

std::string unknownField(size_t turn) {
    switch (turn / 2 % 4) {
        case 0:
            return tag(unknownNumber, 0) + varint(300);
        case 1:
            return tag(unknownNumber, 1) + "a";
        case 2:
            return tag(unknownNumber, 3) + "abcd";
        default:
            return delimited(unknownNumber, "abcdefgh");
    }
}

}  // namespace zrp_bench
