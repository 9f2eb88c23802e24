// The floors: what it costs to copy the encoded bytes, and to copy the object. No codec that reads
// or writes all of them can be faster.
#include <string.h>

#include "bench/codecs/codecs.h"
#include "bench/codecs/this_codec.h"

namespace zrp_bench {

namespace {

/// Copies blocks of memory, in turn, each to the same place.
class CopyTask final : public Task {
  public:
    explicit CopyTask(size_t repetition) : to_(placeInPage(repetition)), from_(0) {}

    void add(std::span<const char> block) {
        from_.add(block);
        memory_.resize(std::max(memory_.size(), to_ + block.size()));
    }

    /// To be called when all blocks are there.
    void finish() { blocks_ = from_.views(); }

    void run(size_t count) override {
        char* const to = memory_.data() + to_;
        inTurn(blocks_, next_, count, [to](std::span<const char> block) {
            memcpy(to, block.data(), block.size());
            keep(to);
        });
    }

    double bytes() const override { return from_.averageSize(); }

  private:
    size_t to_;
    EncodedMessages from_;
    std::vector<std::span<const char>> blocks_;
    PageAlignedBytes memory_;
    size_t next_ = 0;
};

std::span<const char> memoryOf(const auto& values) {
    return {reinterpret_cast<const char*>(&values), sizeof(values)};
}
std::span<const char> memoryOf(const RawFrame& values) {
    return {reinterpret_cast<const char*>(&values.frame()),
            sizeof(values.frame()) + values.body().size()};
}

/// A case that copies, of each value of a message, the block that `blockOf(value, codec)` names.
template <class Codec, class Shape, class BlockOf>
Case copyOf(const char* name, const Message<Shape>& message, BlockOf blockOf) {
    return {"copy/" + message.name + "/" + name, [&message, blockOf](size_t repetition) {
                PageAlignedBytes out(16384 + largestBody(message.values.front()));
                Codec codec(out, message.values.front());
                auto task = std::make_unique<CopyTask>(repetition);
                for (const Shape& values : message.values) {
                    task->add(blockOf(values, codec));
                }
                task->finish();
                return task;
            }};
}

}  // namespace

void addFloors(Cases& cases) {
    const auto encoded = [](const auto& values, auto& codec) { return codec.encode(&values); };
    const auto object = [](const auto& values, auto&) { return memoryOf(values); };
    forEachMessage([&]<class Shape>(const Message<Shape>& message) {
        cases.push_back(copyOf<ThisCodecVarint<Shape>>("bytes-varint", message, encoded));
        cases.push_back(copyOf<ThisCodecFixed<Shape>>("bytes-fixed", message, encoded));
        cases.push_back(copyOf<ThisCodecVarint<Shape>>("object", message, object));
    });
}

}  // namespace zrp_bench
