#include "tests/differential/wire_generator.h"

#include <algorithm>

#include "tests/oracle/record.h"

namespace zrp_test {

using zrp_oracle::Field;
using zrp_oracle::Kind;
using zrp_oracle::Type;

void putLength(Bytes& bytes, size_t place, uint64_t value) {
    for (size_t i = 0; i < 4; ++i) {
        bytes[place + i] = static_cast<char>(value >> (8 * (3 - i)));
    }
}

Bytes WireGenerator::message(const Type& type) {
    Bytes out(5);
    out[0] = static_cast<char>(varint_ ? 0xAA : 0x99);
    const Bytes content = fields(type);
    out.insert(out.end(), content.begin(), content.end());
    uint64_t declared = out.size();
    if (random_.oneIn(12)) {
        declared = random_.pick<uint64_t>(
            {declared - 1, declared + 1, declared - 2, random_.below(6), random_.next()});
    }
    putLength(out, 1, declared);
    return out;
}

Bytes WireGenerator::fields(const Type& type) {
    Bytes out;
    type.isUnion ? putUnion(out, type) : putStructure(out, type);
    return out;
}

void WireGenerator::putStructure(Bytes& out, const Type& type) {
    const bool inOrder = random_.oneIn(2);
    const size_t count = inOrder ? type.fields.size() : random_.below(type.fields.size() + 3);
    for (size_t i = 0; i < count; ++i) {
        if (random_.oneIn(12)) {
            putUnknownField(out, type);
        }
        if (inOrder && random_.oneIn(6)) {
            continue;
        }
        putField(out, inOrder ? type.fields[i] : random_.pick(type.fields));
    }
}

void WireGenerator::putUnion(Bytes& out, const Type& type) {
    const uint64_t count = random_.oneIn(10) ? random_.below(3) : 1;
    for (uint64_t i = 0; i < count; ++i) {
        if (random_.oneIn(10)) {
            putUnknownField(out, type);
        } else {
            putField(out, random_.pick(type.fields));
        }
    }
}

void WireGenerator::putField(Bytes& out, const Field& field) {
    const uint64_t typeId = zrp_oracle::typeIdOf(field.kind, varint_);
    putTag(out, field.number, random_.oneIn(8) ? random_.below(16) : typeId);
    if (typeId != zrp_oracle::delimitedTypeId) {
        putInteger(out, zrp_oracle::integerWidth(field.kind));
        return;
    }
    Bytes content;
    if (field.type == nullptr) {
        putNoise(content, contentSizeFor(field));
    } else if (!random_.oneIn(16)) {
        content = fields(*field.type);
    }
    putDelimited(out, content);
}

size_t WireGenerator::contentSizeFor(const Field& field) {
    const size_t capacity = field.size;
    switch (random_.below(6)) {
        case 0:
            return random_.pick<size_t>({0, 1, 2});
        case 1:
            return capacity + random_.below(3) - (capacity != 0 ? 1 : 0);
        case 2:
            return capacity + random_.below(12);
        default:
            return 1 + random_.below(std::clamp<size_t>(capacity, 1, 40));
    }
}

void WireGenerator::putUnknownField(Bytes& out, const Type& type) {
    const uint64_t number = random_.pick<uint64_t>(
        {0, 3, 7, type.fields.size() + 1, 1023, 1024, random_.below(0x10000000), 0xFFFFFFF});
    const uint64_t typeId = random_.oneIn(8) ? random_.below(16) : random_.below(6);
    putTag(out, number, typeId);
    switch (typeId) {
        case 0:
            random_.oneIn(4) ? putOverlongVarint(out)
                             : putVarint(out, random_.interestingInteger());
            break;
        case 5: {
            Bytes content;
            putNoise(content, random_.below(20));
            putDelimited(out, content);
            break;
        }
        default:
            putNoise(out, size_t{1} << ((typeId - 1) % 4));
            break;
    }
}

void WireGenerator::putTag(Bytes& out, uint64_t number, uint64_t typeId) {
    putVarint(out, number * 16 + typeId);
    if (random_.oneIn(40)) {
        // The same tag with groups of zero behind it.
        out.back() = static_cast<char>(out.back() | '\x80');
        out.insert(out.end(), random_.below(12), '\x80');
        out.push_back('\0');
    }
}

void WireGenerator::putInteger(Bytes& out, size_t width) {
    if (!varint_ || width == 1) {
        putNoise(out, width);
    } else if (random_.oneIn(8)) {
        putOverlongVarint(out);
    } else {
        const uint64_t value = random_.interestingInteger();
        putVarint(out, random_.oneIn(8) || width == 8 ? value
                                                      : value & ((UINT64_C(1) << (8 * width)) - 1));
    }
}

void WireGenerator::putVarint(Bytes& out, uint64_t value) {
    for (; value >= 128; value /= 128) {
        out.push_back(static_cast<char>(value % 128 + 128));
    }
    out.push_back(static_cast<char>(value));
}

void WireGenerator::putOverlongVarint(Bytes& out) {
    const bool mostlyZero = random_.oneIn(2);
    const uint64_t continued = random_.below(14);
    for (uint64_t i = 0; i <= continued; ++i) {
        const uint64_t group = mostlyZero && !random_.oneIn(4) ? 0 : random_.below(128);
        out.push_back(static_cast<char>(group + (i < continued ? 128 : 0)));
    }
}

void WireGenerator::putDelimited(Bytes& out, const Bytes& content) {
    uint64_t length = content.size();
    if (random_.oneIn(14)) {
        length = random_.pick<uint64_t>({length - 1, length + 1, 0, 1, random_.next()});
    }
    out.resize(out.size() + 4);
    putLength(out, out.size() - 4, length);
    out.insert(out.end(), content.begin(), content.end());
}

void WireGenerator::putNoise(Bytes& out, size_t count) {
    for (size_t i = 0; i < count; ++i) {
        out.push_back(random_.byte());
    }
}

Bytes spliced(const Bytes& first, const Bytes& second, Random& random) {
    Bytes joined(first.begin(),
                 first.begin() + static_cast<std::ptrdiff_t>(random.below(first.size() + 1)));
    joined.insert(joined.end(),
                  second.begin() + static_cast<std::ptrdiff_t>(random.below(second.size() + 1)),
                  second.end());
    return joined;
}

Bytes withTail(const Bytes& bytes, Random& random) {
    Bytes longer = bytes;
    const size_t count = random.pick<size_t>({0, 0, 0, 1, 9, 16, 80, 4500});
    const char one = random.pick<char>({0, '\x80', '\xFF'});
    const bool isNoise = random.oneIn(2);
    for (size_t i = 0; i < count; ++i) {
        longer.push_back(isNoise ? random.byte() : one);
    }
    return longer;
}

Bytes mutated(const Bytes& bytes, Random& random) {
    Bytes changed = bytes;
    for (uint64_t left = 1 + random.below(4); left > 0 && !changed.empty(); --left) {
        const size_t place = random.below(changed.size());
        const auto at = changed.begin() + static_cast<std::ptrdiff_t>(place);
        switch (random.below(7)) {
            case 0:
                changed[place] = random.byte();
                break;
            case 1:
                changed.insert(at, random.byte());
                break;
            case 2:
                changed.erase(at);
                break;
            case 3:
                changed[place] = random.pick<char>({0, 1, '\x7F', '\x80', '\xFF'});
                break;
            case 4: {
                const Bytes run(at, at + static_cast<std::ptrdiff_t>(random.below(
                                             std::min<size_t>(changed.size() - place + 1, 40))));
                changed.insert(
                    changed.begin() + static_cast<std::ptrdiff_t>(random.below(changed.size())),
                    run.begin(), run.end());
                break;
            }
            case 5:
                std::swap(changed[place], changed[random.below(changed.size())]);
                break;
            default:
                changed[place] = static_cast<char>(changed[place] ^ (1 << random.below(8)));
                break;
        }
    }
    return changed;
}

}  // namespace zrp_test
