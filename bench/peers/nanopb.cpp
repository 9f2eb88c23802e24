// nanopb: generated structures with everything inline, kept. Fields that an encoding does not hold
// keep their values, as in this codec (PB_DECODE_NOINIT). The raw body goes through callbacks, the
// way for data without a bound, which copy it straight from and to the caller's memory.
#include <pb_decode.h>
#include <pb_encode.h>

#include "bench/harness/codec_cases.h"
#include "bench/peers/nanopb_records.h"
#include "bench/peers/peers.h"

namespace zrp_bench {

namespace {

template <class Shape>
struct Generated {
    using Message = zrp_peer_Frame;
    static const pb_msgdesc_t* fields() { return zrp_peer_Frame_fields; }
};
template <>
struct Generated<Base> {
    using Message = zrp_peer_Base;
    static const pb_msgdesc_t* fields() { return zrp_peer_Base_fields; }
};
template <>
struct Generated<Notice> {
    using Message = zrp_peer_RefreshNotice;
    static const pb_msgdesc_t* fields() { return zrp_peer_RefreshNotice_fields; }
};

// The messages are in different files' worth of descriptors, but a body only exists in raw frames.
void receiveBody(auto&, auto&) {}
void receiveBody(zrp_peer_Frame& message, RawFrame& target) {
    message.raw_body.funcs.decode = [](pb_istream_t* stream, const pb_field_t*, void** argument) {
        RawFrame& to = *static_cast<RawFrame*>(*argument);
        const size_t size = stream->bytes_left;
        return to.setBodySize(size) && pb_read(stream, to.bodyStart(), size);
    };
    message.raw_body.arg = &target;
}

template <class Shape>
class Nanopb {
  public:
    static constexpr CodecInfo info{"nanopb", true};
    using Source = typename Generated<Shape>::Message;

    Nanopb(std::span<char> out, const Shape& like) : out_(out), target_(blankLike(like)) {
        receiveBody(message_, target_);
    }

    static Source source(const Shape& values) {
        Source made{};
        nanopb::fill(made, values);
        return made;
    }

    std::span<const char> encode(const Source& message) {
        pb_ostream_t stream =
            pb_ostream_from_buffer(reinterpret_cast<pb_byte_t*>(out_.data()), out_.size());
        const bool done = pb_encode(&stream, Generated<Shape>::fields(), &message);
        return out_.first(done ? stream.bytes_written : 0);
    }

    bool decode(std::span<const char> bytes) {
        pb_istream_t stream =
            pb_istream_from_buffer(reinterpret_cast<const pb_byte_t*>(bytes.data()), bytes.size());
        return pb_decode_ex(&stream, Generated<Shape>::fields(), &message_, PB_DECODE_NOINIT);
    }

    Shape decoded() const {
        Shape made = target_;
        return nanopb::read(message_, made) ? std::move(made) : blankLike(target_);
    }

  private:
    std::span<char> out_;
    alignas(pageSize) Source message_{};
    Shape target_;  ///< has the body of a raw frame; else only for the check
};

}  // namespace

void addNanopb(Cases& cases) {
    addCodec<Nanopb>(cases);
}

}  // namespace zrp_bench
