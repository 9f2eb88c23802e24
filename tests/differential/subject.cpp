#include "tests/differential/subject.h"

#include <algorithm>
#include <ostream>

#include "tests/oracle/oracle.h"
#include "tests/oracle/record.h"

namespace zrp_test {

using zrp_oracle::Field;
using zrp_oracle::Kind;
using zrp_oracle::Type;

namespace {

/// Bytes kept behind a frame for its body.
constexpr size_t trailingRoom = 200;

bool isTrailing(const Field& field) {
    return field.kind == Kind::bytes && field.size == 0;
}

/// Fills the fields of records with values chosen for them; everything between is left as it was.
class RecordFiller {
  public:
    RecordFiller(Random& random, Soundness soundness) : random_(random), soundness_(soundness) {}

    void fillStructure(const Type& type, char* record, uint64_t variant) {
        fillFields(type, record, variant);
        fillLiveMembers(type, record);
    }

    void fillUnion(const Type& type, char* record, long long selector) {
        const Field* member = zrp_oracle::fieldNumbered(type, selector);
        if (member == nullptr) {
            return;
        }
        if (member->kind == Kind::structure) {
            fillStructure(*member->type, record + member->offset, random_.next());
        } else {
            fillField(*member, record, 0);
        }
    }

  private:
    bool breaks() { return soundness_ == Soundness::doubtful && random_.oneIn(12); }

    /// All but the members of unions, of which the selectors are chosen.
    void fillFields(const Type& type, char* record, uint64_t variant) {
        for (const Field& field : type.fields) {
            fillField(field, record, variant);
        }
    }

    /// Two unions may share a selector, so that what is live is known only after all are chosen.
    void fillLiveMembers(const Type& type, char* record) {
        for (const Field& field : type.fields) {
            if (field.kind == Kind::structure) {
                fillLiveMembers(*field.type, record + field.offset);
            } else if (field.kind == Kind::unionValue) {
                fillUnion(*field.type, record + field.offset,
                          zrp_oracle::selectorOf(field, record));
            }
        }
    }

    void fillField(const Field& field, char* record, uint64_t variant) {
        switch (field.kind) {
            case Kind::text:
                fillText(field, record);
                break;
            case Kind::bytes:
                if (isTrailing(field)) {
                    zrp_oracle::setValueAt(record, field.governor, random_.below(trailingRoom + 1));
                }
                fillBytes(record + field.offset, isTrailing(field) ? trailingRoom : field.size);
                break;
            case Kind::structure:
                fillFields(*field.type, record + field.offset, variant);
                break;
            case Kind::unionValue:
                chooseSelector(field, record, variant);
                break;
            default:
                zrp_oracle::setBits(
                    field, record, field.hasBound ? countFor(field) : random_.interestingInteger());
                break;
        }
    }

    uint64_t countFor(const Field& field) {
        if (breaks()) {
            return field.bound + 1 + (random_.oneIn(2) ? 0 : random_.below(100));
        }
        return random_.oneIn(2) ? random_.pick<uint64_t>({0, 1, field.bound})
                                : random_.below(field.bound + 1);
    }

    void fillBytes(char* elements, size_t count) {
        for (size_t i = 0; i < count; ++i) {
            elements[i] = random_.byte();
        }
    }

    void fillText(const Field& field, char* record) {
        char* text = record + field.offset;
        for (size_t i = 0; i < field.size; ++i) {
            text[i] = static_cast<char>(1 + random_.below(255));
        }
        if (!breaks()) {
            const size_t length = random_.oneIn(3) ? random_.pick<size_t>({0, 1, field.size - 1})
                                                   : random_.below(field.size);
            text[length] = '\0';
        }
    }

    void chooseSelector(const Field& field, char* record, uint64_t variant) {
        const long long selector =
            breaks() ? strangeSelector(*field.type, random_)
                     : field.type->fields[variant % field.type->fields.size()].number;
        zrp_oracle::setValueAt(record, field.governor, static_cast<uint64_t>(selector));
    }

    Random& random_;
    Soundness soundness_;
};

}  // namespace

std::ostream& operator<<(std::ostream& out, const TypePair& pair) {
    return out << pair.library->name;
}

std::vector<TypePair> typePairs() {
    std::vector<TypePair> pairs;
    for (const MessageType& type : messageTypes()) {
        pairs.push_back({&type, &zrp_oracle::typeNamed(type.name)});
    }
    return pairs;
}

size_t recordSize(const TypePair& pair) {
    const bool trails = std::any_of(pair.oracle->fields.begin(), pair.oracle->fields.end(),
                                    [](const Field& field) { return isTrailing(field); });
    return pair.library->objectSize + (trails ? trailingRoom : 0);
}

size_t variantCount(const Type& type) {
    if (type.isUnion) {
        return type.fields.size();
    }
    size_t count = 1;
    for (const Field& field : type.fields) {
        if (field.type != nullptr) {
            count = std::max(count, variantCount(*field.type));
        }
    }
    return count;
}

Subject randomSubject(const TypePair& pair, Random& random, size_t variant, Soundness soundness) {
    Subject subject{Bytes(recordSize(pair)), 0};
    random.fill(subject.record);
    chooseValues(pair, subject, random, variant, soundness);
    return subject;
}

void chooseValues(const TypePair& pair, Subject& subject, Random& random, uint64_t variant,
                  Soundness soundness) {
    const Type& type = *pair.oracle;
    RecordFiller filler(random, soundness);
    if (type.isUnion) {
        const bool isStrange = soundness == Soundness::doubtful && random.oneIn(8);
        subject.selector = isStrange ? strangeSelector(type, random)
                                     : type.fields[variant % type.fields.size()].number;
        filler.fillUnion(type, subject.record.data(), subject.selector);
    } else {
        filler.fillStructure(type, subject.record.data(), variant);
    }
}

Subject randomTarget(const TypePair& pair, Random& random) {
    Subject target{Bytes(recordSize(pair)), 0};
    const uint64_t preparation = random.below(3);
    if (preparation != 0) {
        random.fill(target.record);
        target.selector = static_cast<long long>(random.next());
    }
    if (preparation == 2) {
        target.selector = random.pick(pair.oracle->fields).number;
        zrp_oracle::construct(*pair.oracle, target.record.data(), target.selector);
    }
    return target;
}

void limitTrailingBody(const Type& type, void* record) {
    for (const Field& field : type.fields) {
        if (isTrailing(field) && zrp_oracle::elementCount(field, record) > trailingRoom) {
            zrp_oracle::setValueAt(record, field.governor, trailingRoom);
        }
    }
}

long long strangeSelector(const Type& type, Random& random) {
    const long long number = random.pick(type.fields).number;
    switch (random.below(5)) {
        case 0:
            return number + 1;
        case 1:
            return number - 1;
        case 2:
            return -number - 1;
        case 3:
            return number + (1LL << (8 * random.below(7)));
        default:
            return static_cast<long long>(random.next());
    }
}

}  // namespace zrp_test
