// The plain step-by-step codec of the tests: what a straightforward program for this format costs.
#include "tests/oracle/oracle.h"

#include "bench/codecs/codecs.h"
#include "bench/harness/codec_cases.h"
#include "bench/harness/oracle_types.h"
#include "examples/conversation/body_view.h"

namespace zrp_bench {

namespace {

template <class Shape, bool Varint>
class Oracle : public RecordCodec<Shape> {
  public:
    static constexpr CodecInfo info{Varint ? "oracle-varint" : "oracle-fixed"};
    using RecordCodec<Shape>::RecordCodec;

    std::span<const char> encode(const Shape* record) {
        size_t used = 0;
        const int result = zrp_oracle::pack(typeOf(*record), recordOf(*record), 0,
                                            this->out_.data(), this->out_.size(), &used, Varint);
        return this->out_.first(result == 0 ? used : 0);
    }

    bool decode(std::span<const char> bytes) {
        if constexpr (std::is_same_v<Shape, RawFrame>) {
            return decodeRaw(bytes);
        } else {
            size_t used = 0;
            return zrp_oracle::unpack(typeOf(this->target_), &this->target_, nullptr, bytes.data(),
                                      bytes.size(), &used) == 0;
        }
    }

  private:
    bool decodeRaw(std::span<const char> bytes) {
        conversation::FrameView view;
        if (conversation::viewFrame(bytes, view) != 0) {
            return false;
        }
        zrp_oracle::InputCursor fields(view.head.data(), view.head.size());
        return zrp_oracle::unpackFields(zrp_oracle::typeTZRPHead, &this->target_.head(), nullptr,
                                        fields, view.head.size(), view.varint) == 0 &&
               this->target_.setBody(view.body.data(), view.body.size());
    }
};

template <class Shape>
using OracleVarint = Oracle<Shape, true>;
template <class Shape>
using OracleFixed = Oracle<Shape, false>;

}  // namespace

void addOracle(Cases& cases) {
    addCodec<OracleVarint>(cases);
    addCodec<OracleFixed>(cases);
}

}  // namespace zrp_bench
