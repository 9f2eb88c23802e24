// The extras beside the codec: validating a decoded message, and comparing the commands of an
// encoded frame. Both are meant to be small beside the decode that comes before them.
#include "protocol/quorva_zrp_validate.h"

#include "bench/codecs/codecs.h"
#include "bench/codecs/this_codec.h"

namespace zrp_bench {

namespace {

template <class Shape>
class Validate final : public Task {
  public:
    explicit Validate(const Message<Shape>& message) : values_(message.values) {}

    void run(size_t count) override {
        inTurn(values_, next_, count, [](const Shape& record) {
            char path[quorva_zrp::ZRP_PATH_SIZE];
            keep(&record);
            if (quorva_zrp::validate(record, path, sizeof(path)) != 0) {
                failCheck("a timed validation", "failed");
            }
        });
    }

    double bytes() const override { return sizeof(Shape); }

  private:
    const PageAlignedVector<Shape>& values_;
    size_t next_ = 0;
};

/// Encoded frames whose commands are compared; the encoding is checked as that of any codec.
template <bool Varint>
class CompareCommands final : public CodecTask<ThisCodec<Frame, Varint>, Frame> {
  public:
    using CodecTask<ThisCodec<Frame, Varint>, Frame>::CodecTask;

    void run(size_t count) override {
        inTurn(this->inputs_, next_, count, [](std::span<const char> bytes) {
            quorva_zrp::ZRPCommands commands;
            if (quorva_zrp::commandsOfInFrame(bytes.data(), bytes.size(), &commands) != 0) {
                failCheck("a timed comparison of commands", "failed");
            }
            keep(&commands);
        });
    }

  private:
    size_t next_ = 0;
};

template <bool Varint>
Case commandsCase(const Message<Frame>& message) {
    const std::string name = "commands/" + message.name + "/" + ThisCodec<Frame, Varint>::info.name;
    return {name, [name, &message](size_t repetition) {
                return std::make_unique<CompareCommands<Varint>>(name, message, repetition);
            }};
}

}  // namespace

void addValidate(Cases& cases) {
    forEachMessage([&]<class Shape>(const Message<Shape>& message) {
        if constexpr (!std::is_same_v<Shape, RawFrame>) {
            cases.push_back({"validate/" + message.name + "/zrp", [&message](size_t) {
                                 return std::make_unique<Validate<Shape>>(message);
                             }});
        }
        if constexpr (std::is_same_v<Shape, Frame>) {
            cases.push_back(commandsCase<true>(message));
            cases.push_back(commandsCase<false>(message));
        }
    });
}

}  // namespace zrp_bench
