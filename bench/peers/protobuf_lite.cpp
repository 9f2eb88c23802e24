// protobuf with lite messages, kept. They run on the part of the full library that the lite library
// consists of; both libraries in one program would define it twice.
#include "zrp_lite.pb.h"

#include "bench/peers/peers.h"
#include "bench/peers/protobuf_codec.h"

namespace zrp_bench {

namespace {

struct LiteMessages {
    static constexpr const char* keptName = "protobuf-lite";
    static constexpr bool isInSweep = false;
    using Base = zrp_peer_lite::Base;
    using RefreshNotice = zrp_peer_lite::RefreshNotice;
    using Frame = zrp_peer_lite::Frame;
};

template <class Shape>
using KeptLite = protobuf::Kept<LiteMessages, Shape>;

}  // namespace

void addProtobufLite(Cases& cases) {
    addCodec<KeptLite>(cases);
}

}  // namespace zrp_bench
