// Cap'n Proto, plain and packed. Messages are built in memory that is kept and zeroed between them,
// large enough for a single segment; reading goes straight over the plain bytes, or over memory
// that is kept for the unpacked ones. All values are then copied into a record; bounds are checked
// on the way.
#include <capnp/message.h>
#include <capnp/serialize-packed.h>
#include <capnp/serialize.h>
#include <kj/io.h>

#include "bench/harness/codec_cases.h"
#include "bench/peers/capnproto_build.h"
#include "bench/peers/capnproto_copy.h"
#include "bench/peers/peers.h"

namespace zrp_bench {

namespace {

template <class Shape>
struct CapnRootOf {
    using Struct = zrp_capnp::Frame;
};
template <>
struct CapnRootOf<Base> {
    using Struct = zrp_capnp::Base;
};
template <>
struct CapnRootOf<Notice> {
    using Struct = zrp_capnp::RefreshNotice;
};

template <class Shape, bool Packed>
class CapnProto : public RecordCodec<Shape> {
  public:
    static constexpr CodecInfo info{Packed ? "capnproto-packed" : "capnproto", !Packed};

    CapnProto(std::span<char> out, const Shape& like)
        : RecordCodec<Shape>(out, like),
          words_(out.size() / sizeof(capnp::word)),
          unpacked_(Packed ? words_.size() : 0) {}

    std::span<const char> encode(const Shape* record) {
        capnp::MallocMessageBuilder builder(kj::arrayPtr(words_.data(), words_.size()));
        capn::build(builder.initRoot<Struct>(), *record);
        kj::ArrayOutputStream stream(
            kj::arrayPtr(reinterpret_cast<kj::byte*>(this->out_.data()), this->out_.size()));
        if constexpr (Packed) {
            capnp::writePackedMessage(stream, builder);
        } else {
            capnp::writeMessage(stream, builder);
        }
        return this->out_.first(stream.getArray().size());
    }

    bool decode(std::span<const char> bytes) {
        if constexpr (Packed) {
            kj::ArrayInputStream stream(
                kj::arrayPtr(reinterpret_cast<const kj::byte*>(bytes.data()), bytes.size()));
            capnp::PackedMessageReader reader(stream, capnp::ReaderOptions(),
                                              kj::arrayPtr(unpacked_.data(), unpacked_.size()));
            return capn::copy(reader.template getRoot<Struct>(), this->target_);
        } else {
            capnp::FlatArrayMessageReader reader(
                kj::arrayPtr(reinterpret_cast<const capnp::word*>(bytes.data()),
                             bytes.size() / sizeof(capnp::word)));
            return capn::copy(reader.template getRoot<Struct>(), this->target_);
        }
    }

  private:
    using Struct = typename CapnRootOf<Shape>::Struct;

    /// Zeroed: a builder expects that of its first segment, and leaves it so.
    PageAlignedVector<capnp::word> words_;
    PageAlignedVector<capnp::word> unpacked_;
};

template <class Shape>
using CapnProtoPlain = CapnProto<Shape, false>;
template <class Shape>
using CapnProtoPacked = CapnProto<Shape, true>;

}  // namespace

void addCapnProto(Cases& cases) {
    addCodec<CapnProtoPlain>(cases);
    addCodec<CapnProtoPacked>(cases);
}

}  // namespace zrp_bench
