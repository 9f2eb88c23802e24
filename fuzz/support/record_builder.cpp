#include "fuzz/support/record_builder.h"

#include <string.h>

#include <array>

#include "fuzz/support/require.h"
#include "tests/oracle/record.h"

namespace zrp_fuzz {

using zrp_oracle::Field;
using zrp_oracle::Kind;
using zrp_oracle::Type;

namespace {

/// Bytes without NUL, enough for the longest text from any of the first 256 on.
const std::array<char, 1024>& characters() {
    static const std::array<char, 1024> all = [] {
        std::array<char, 1024> bytes{};
        for (size_t i = 0; i < bytes.size(); ++i) {
            bytes[i] = static_cast<char>(1 + 37 * i % 255);
        }
        return bytes;
    }();
    return all;
}

class RecordBuilder {
  public:
    RecordBuilder(Input& input, Soundness soundness)
        : input_(input), mayBreak_(soundness == Soundness::doubtful) {}

    void fillStructure(const Type& type, char* record) {
        for (const Field& field : type.fields) {
            fillField(field, record);
        }
    }

    void fillUnion(const Type& type, char* record, long long selector) {
        const Field* member = zrp_oracle::fieldNumbered(type, selector);
        if (member != nullptr) {
            fillField(*member, record);
        }
    }

    long long selectorFor(const Type& type) {
        const size_t index = input_.byte();
        if (mayBreak_ && index == 0xFF) {
            return static_cast<long long>(input_.integer());
        }
        return type.fields[index % type.fields.size()].number;
    }

  private:
    void fillField(const Field& field, char* record) {
        switch (field.kind) {
            case Kind::text:
                fillText(field, record);
                break;
            case Kind::bytes:
                break;  // stays noise; how many there are is said elsewhere in the record
            case Kind::structure:
                fillStructure(*field.type, record + field.offset);
                break;
            case Kind::unionValue:
                fillGovernedUnion(field, record);
                break;
            default:
                zrp_oracle::setBits(field, record,
                                    field.hasBound ? countFor(field) : input_.integer());
                break;
        }
    }

    uint64_t countFor(const Field& field) {
        if (mayBreak_ && input_.choice(16) == 15) {
            return field.bound + 1 + input_.byte();
        }
        return input_.count(field.bound);
    }

    void fillText(const Field& field, char* record) {
        char* text = record + field.offset;
        require(field.size + 256 <= characters().size(), "a longer text needs more characters");
        const bool endsNowhere = mayBreak_ && input_.choice(16) == 15;
        const size_t length =
            endsNowhere ? field.size : static_cast<size_t>(input_.count(field.size - 1));
        memcpy(text, characters().data() + input_.byte(), length);
        if (!endsNowhere) {
            text[length] = '\0';
        }
    }

    /// Two unions under one selector, as in a frame, get the same one.
    void fillGovernedUnion(const Field& field, char* record) {
        const char* const governor = record + field.governor.offset;
        const long long selector =
            governor == lastGovernor_ ? lastSelector_ : selectorFor(*field.type);
        zrp_oracle::setValueAt(record, field.governor, static_cast<uint64_t>(selector));
        fillUnion(*field.type, record + field.offset, selector);
        lastGovernor_ = governor;
        lastSelector_ = selector;
    }

    Input& input_;
    bool mayBreak_;
    const char* lastGovernor_ = nullptr;
    long long lastSelector_ = 0;
};

}  // namespace

Subject buildRecord(const TypePair& type, Input& input, Soundness soundness) {
    Subject subject = noise(type, input.byte());
    RecordBuilder builder(input, soundness);
    if (type.oracle->isUnion) {
        subject.selector = builder.selectorFor(*type.oracle);
        builder.fillUnion(*type.oracle, subject.record.data(), subject.selector);
    } else {
        subject.selector = 0;
        builder.fillStructure(*type.oracle, subject.record.data());
    }
    zrp_test::limitTrailingBody(*type.oracle, subject.record.data());
    return subject;
}

}  // namespace zrp_fuzz
