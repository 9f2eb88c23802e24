// protobuf with full messages.
#include "zrp.pb.h"
#include "zrp_no_oneof.pb.h"

#include "bench/peers/peers.h"
#include "bench/peers/protobuf_codec.h"

namespace zrp_bench {

namespace {

struct FullMessages {
    static constexpr const char* keptName = "protobuf-reused";
    static constexpr bool isInSweep = true;
    using Base = zrp_peer::Base;
    using RefreshNotice = zrp_peer::RefreshNotice;
    using Frame = zrp_peer::Frame;
};

/// A oneof gives up its member's memory whenever the message is cleared; optional fields keep
/// theirs. They say less than unions, but a message that is kept gets faster.
struct MessagesWithoutOneof {
    static constexpr const char* keptName = "protobuf-no-oneof";
    static constexpr bool isInSweep = false;
    using Base = zrp_peer_no_oneof::Base;
    using RefreshNotice = zrp_peer_no_oneof::RefreshNotice;
    using Frame = zrp_peer_no_oneof::Frame;
};

template <class Shape>
using KeptFull = protobuf::Kept<FullMessages, Shape>;
template <class Shape>
using KeptWithoutOneof = protobuf::Kept<MessagesWithoutOneof, Shape>;
template <class Shape>
using FilledFull = protobuf::Filled<FullMessages, Shape>;
template <class Shape>
using OnHeap = protobuf::OnHeap<FullMessages, Shape>;
template <class Shape>
using OnArena = protobuf::OnArena<FullMessages, Shape>;

}  // namespace

void addProtobuf(Cases& cases) {
    addCodec<KeptFull>(cases);
    addCodec<KeptWithoutOneof>(cases);
    addCodec<FilledFull>(cases);
    addCodec<OnHeap>(cases);
    addCodec<OnArena>(cases);
}

}  // namespace zrp_bench
