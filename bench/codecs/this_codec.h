// This codec, in both flavours.
#pragma once

#include "bench/harness/codec_cases.h"
#include "examples/conversation/body_view.h"

namespace zrp_bench {

template <class Shape, bool Varint>
class ThisCodec : public RecordCodec<Shape> {
  public:
    static constexpr CodecInfo info{Varint ? "zrp-varint" : "zrp-fixed", true};
    using RecordCodec<Shape>::RecordCodec;

    std::span<const char> encode(const Shape* record) {
        size_t used = 0;
        const int result = record->packTLV(this->out_.data(), this->out_.size(), &used, Varint);
        return this->out_.first(result == 0 ? used : 0);
    }

    bool decode(std::span<const char> bytes) {
        size_t used = 0;
        return this->target_.unpackTLV(bytes.data(), bytes.size(), &used) == 0;
    }
};

/// Frames with raw bodies: decoding is what a receiver does, who finds head and body in the encoded
/// frame, decodes the head and copies the body out.
template <bool Varint>
class ThisCodec<RawFrame, Varint> : public RecordCodec<RawFrame> {
  public:
    static constexpr CodecInfo info{Varint ? "zrp-varint" : "zrp-fixed", true};
    using RecordCodec<RawFrame>::RecordCodec;

    std::span<const char> encode(const RawFrame* record) {
        size_t used = 0;
        const int result = record->frame().packTLV(out_.data(), out_.size(), &used, Varint);
        return out_.first(result == 0 ? used : 0);
    }

    bool decode(std::span<const char> bytes) {
        conversation::FrameView view;
        if (conversation::viewFrame(bytes, view) != 0) {
            return false;
        }
        Quorva::BrxReadBuf fields(bytes.data(), bytes.size());
        fields.position = static_cast<size_t>(view.head.data() - bytes.data());
        const int result = view.varint
                               ? target_.head().unpackTLVWithVarint(fields, view.head.size())
                               : target_.head().unpackTLVNoVarint(fields, view.head.size());
        return result == 0 && target_.setBody(view.body.data(), view.body.size());
    }
};

template <class Shape>
using ThisCodecVarint = ThisCodec<Shape, true>;
template <class Shape>
using ThisCodecFixed = ThisCodec<Shape, false>;

}  // namespace zrp_bench
