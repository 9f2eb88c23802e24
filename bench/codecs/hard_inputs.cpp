// Inputs that are hard on a decoder which expects fields in order: the same values with the fields
// of every structure in reverse order, or with unknown fields between them; and inputs of growing
// length, whose cost per byte must not grow with them.
#include <string>
#include <string_view>

#include "bench/codecs/codecs.h"
#include "bench/codecs/rewrite.h"
#include "bench/harness/codec_cases.h"
#include "bench/harness/oracle_types.h"
#include "tests/oracle/oracle.h"

namespace zrp_bench {

namespace {

/// Decodes the same bytes again and again. What must come out is what the oracle makes of them.
template <class Shape>
class HardDecode final : public Task {
  public:
    HardDecode(const std::string& name, std::string_view bytes, size_t repetition)
        : encoded_(placeInPage(repetition)) {
        encoded_.add(bytes);
        input_ = encoded_.last();
        Shape expected = blankLike(target_);
        size_t used = 0;
        result_ = zrp_oracle::unpack(typeOf(expected), &expected, nullptr, input_.data(),
                                     input_.size(), &used);
        target_.construct();
        if (decode() != result_ || valuesOf(target_) != valuesOf(expected)) {
            failCheck(name, "gives other values than the oracle");
        }
    }

    void run(size_t count) override {
        for (size_t i = 0; i < count; ++i) {
            if (decode() != result_) {
                failCheck("a timed decode", "gave another result");
            }
            keep(&target_);
        }
    }

    double bytes() const override { return static_cast<double>(input_.size()); }

  private:
    int decode() {
        size_t used = 0;
        return target_.unpackTLV(input_.data(), input_.size(), &used);
    }

    alignas(pageSize) Shape target_{};
    EncodedMessages encoded_;
    std::span<const char> input_;
    int result_ = 0;
};

template <class Shape>
Case hardCase(const std::string& name, std::string bytes) {
    return {name, [name, bytes = std::move(bytes)](size_t repetition) {
                return std::make_unique<HardDecode<Shape>>(name, bytes, repetition);
            }};
}

const char* flavourOf(bool varint) {
    return varint ? "/zrp-varint" : "/zrp-fixed";
}

template <class Shape>
std::string encoded(const Shape& values, bool varint) {
    std::string bytes(quorva_zrp::TZRPInFrame_MAX_VARINT, '\0');
    size_t used = 0;
    if (values.packTLV(bytes.data(), bytes.size(), &used, varint) != 0) {
        failCheck("a hard input", "does not encode");
    }
    bytes.resize(used);
    return bytes;
}

/// The message with its fields in other orders.
template <class Shape>
void addRewritten(Cases& cases, const Message<Shape>& message, bool varint) {
    const Shape& values = message.values.front();
    const std::string inOrder = encoded(values, varint);
    for (const Rewrite how : {Rewrite::reverse, Rewrite::addUnknown}) {
        const char* const suffix = how == Rewrite::reverse ? "-reversed" : "-unknown";
        cases.push_back(hardCase<Shape>("decode/" + message.name + suffix + flavourOf(varint),
                                        rewritten(typeOf(values), inOrder, how)));
    }
}

std::string repeatedTo(size_t size, std::string_view field) {
    std::string made;
    while (made.size() + field.size() <= size) {
        made += field;
    }
    return made;
}

/// Inputs that could tempt a decoder into reading the same bytes more than a few times.
void addGrowing(Cases& cases, size_t size, bool varint) {
    using namespace std::string_literals;
    const auto add = [&]<class Shape>(const Shape&, const std::string& kind,
                                      const std::string& fields) {
        cases.push_back(
            hardCase<Shape>("grow/" + kind + "-" + std::to_string(size) + flavourOf(varint),
                            withEnvelope(fields, varint)));
    };
    const Base base{};
    const Frame frame{};
    const std::string shortField = varint ? "\x70\x05"s : "\x73\0\0\0\x05"s;
    add(base, "repeated-field", repeatedTo(size, shortField));
    add(base, "unknown-bytes", delimited(200, std::string(size, 'x')));
    add(base, "unknown-fields", repeatedTo(size, unknownField(0)));
    add(base, "long-varint", tag(200, 0) + std::string(size, '\x80') + "\x01");
    add(base, "endless-varint", tag(200, 0) + std::string(size, '\x80'));
    // Whole heads again and again, in order and in reverse.
    const std::string inOrder = encoded(routedDataFrame().values.front(), varint);
    add(frame, "repeated-frame", repeatedTo(size, fieldsOf(inOrder)));
    add(frame, "repeated-reversed-frame",
        repeatedTo(size, fieldsOf(rewritten(typeOf(frame), inOrder, Rewrite::reverse))));
}

}  // namespace

void addHardInputs(Cases& cases) {
    for (const bool varint : {true, false}) {
        addRewritten(cases, baseHeader(), varint);
        addRewritten(cases, synFrame(), varint);
        addRewritten(cases, authResponseFrame(), varint);
        addRewritten(cases, routedDataFrame(), varint);
        addRewritten(cases, refreshNoticeFrame(), varint);
        addRewritten(cases, fullSynFrame(), varint);
        for (const size_t size : {size_t{1024}, size_t{16384}, size_t{262144}}) {
            addGrowing(cases, size, varint);
        }
    }
}

}  // namespace zrp_bench
