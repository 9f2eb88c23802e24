// FlatBuffers: one builder, cleared and used again for every message, as its guide advises. The
// bytes stay in the builder. Decoding verifies them, then copies every value into a record.
#include "bench/harness/codec_cases.h"
#include "bench/peers/flatbuffers_build.h"
#include "bench/peers/flatbuffers_copy.h"
#include "bench/peers/peers.h"

namespace zrp_bench {

namespace {

template <class Shape>
struct RootOf {
    using Table = zrp_flat::Frame;
};
template <>
struct RootOf<Base> {
    using Table = zrp_flat::Base;
};
template <>
struct RootOf<Notice> {
    using Table = zrp_flat::RefreshNotice;
};

template <class Shape>
class FlatBuffers : public RecordCodec<Shape> {
  public:
    static constexpr CodecInfo info{"flatbuffers", true};

    FlatBuffers(std::span<char> out, const Shape& like)
        : RecordCodec<Shape>(out, like), builder_(out.size()) {}

    std::span<const char> encode(const Shape* record) {
        builder_.Clear();
        builder_.Finish(flat::build(builder_, *record));
        return {reinterpret_cast<const char*>(builder_.GetBufferPointer()), builder_.GetSize()};
    }

    bool decode(std::span<const char> bytes) {
        using Table = typename RootOf<Shape>::Table;
        const uint8_t* const start = reinterpret_cast<const uint8_t*>(bytes.data());
        flatbuffers::Verifier verifier(start, bytes.size());
        return verifier.VerifyBuffer<Table>(nullptr) &&
               flat::copy(flatbuffers::GetRoot<Table>(start), this->target_);
    }

  private:
    flatbuffers::FlatBufferBuilder builder_;
};

}  // namespace

void addFlatBuffers(Cases& cases) {
    addCodec<FlatBuffers>(cases);
}

}  // namespace zrp_bench
