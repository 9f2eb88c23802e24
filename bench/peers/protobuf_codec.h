// protobuf: one codec for each way of keeping messages, for full and lite messages alike. `Schema`
// names the generated classes.
//
// Encoding makes a message of the record's values and serialises it: the size is computed once,
// then everything is written to an array, the two steps that the library's own functions consist
// of. `Filled` leaves out the first half, for programs that keep their values in messages anyway. A
// decode into a kept message reuses the memory of its texts.
#pragma once

#include <google/protobuf/arena.h>

#include <memory>
#include <type_traits>

#include "bench/harness/codec_cases.h"
#include "bench/peers/protobuf_records.h"

namespace zrp_bench::protobuf {

template <class Schema, class Shape>
using MessageOf =
    std::conditional_t<std::is_same_v<Shape, Base>, typename Schema::Base,
                       std::conditional_t<std::is_same_v<Shape, Notice>,
                                          typename Schema::RefreshNotice, typename Schema::Frame>>;

inline std::span<const char> serialized(const auto& message, std::span<char> out) {
    const size_t size = message.ByteSizeLong();
    if (size > out.size()) {
        return {};
    }
    message.SerializeWithCachedSizesToArray(reinterpret_cast<uint8_t*>(out.data()));
    return out.first(size);
}

inline bool parse(auto& message, std::span<const char> bytes) {
    return message.ParseFromArray(bytes.data(), static_cast<int>(bytes.size()));
}

/// What all ways share: the check of results.
template <class Schema, class Shape>
class Codec {
  public:
    using Message = MessageOf<Schema, Shape>;

    Codec(std::span<char> out, const Shape& like) : out_(out), like_(like) {}

  protected:
    Shape asRecord(const Message& message) const {
        Shape made = blankLike(like_);
        const bool understood = read(message, made);
        return understood ? std::move(made) : blankLike(like_);
    }

    std::span<char> out_;

  private:
    const Shape& like_;
};

template <class Schema, class Shape>
class Kept : public Codec<Schema, Shape> {
  public:
    using Message = MessageOf<Schema, Shape>;
    static constexpr CodecInfo info{Schema::keptName, Schema::isInSweep};
    using Codec<Schema, Shape>::Codec;

    using Source = const Shape*;
    static Source source(const Shape& values) { return &values; }

    std::span<const char> encode(const Source& values) {
        sent_.Clear();
        fill(sent_, *values);
        return serialized(sent_, this->out_);
    }
    bool decode(std::span<const char> bytes) { return parse(received_, bytes); }
    Shape decoded() const { return this->asRecord(received_); }

  private:
    Message sent_;
    Message received_;
};

template <class Schema, class Shape>
class Filled : public Codec<Schema, Shape> {
  public:
    using Message = MessageOf<Schema, Shape>;
    static constexpr CodecInfo info{"protobuf-filled", true, true};
    using Codec<Schema, Shape>::Codec;

    using Source = std::unique_ptr<Message>;
    static Source source(const Shape& values) {
        auto made = std::make_unique<Message>();
        fill(*made, values);
        return made;
    }

    std::span<const char> encode(const Source& message) { return serialized(*message, this->out_); }
    bool decode(std::span<const char> bytes) { return parse(received_, bytes); }
    Shape decoded() const { return this->asRecord(received_); }

  private:
    Message received_;
};

template <class Schema, class Shape>
class OnHeap : public Codec<Schema, Shape> {
  public:
    using Message = MessageOf<Schema, Shape>;
    static constexpr CodecInfo info{"protobuf-heap"};
    using Codec<Schema, Shape>::Codec;

    using Source = const Shape*;
    static Source source(const Shape& values) { return &values; }

    std::span<const char> encode(const Source& values) {
        message_ = std::make_unique<Message>();
        fill(*message_, *values);
        return serialized(*message_, this->out_);
    }
    bool decode(std::span<const char> bytes) {
        message_ = std::make_unique<Message>();
        return parse(*message_, bytes);
    }
    Shape decoded() const { return this->asRecord(*message_); }

  private:
    std::unique_ptr<Message> message_;
};

/// The arena gets memory to start with, so that it need not ask for any, and is emptied before each
/// message.
template <class Schema, class Shape>
class OnArena : public Codec<Schema, Shape> {
  public:
    using Message = MessageOf<Schema, Shape>;
    static constexpr CodecInfo info{"protobuf-arena"};

    OnArena(std::span<char> out, const Shape& like)
        : Codec<Schema, Shape>(out, like), memory_(16384), arena_(memory_.data(), memory_.size()) {}

    using Source = const Shape*;
    static Source source(const Shape& values) { return &values; }

    std::span<const char> encode(const Source& values) {
        makeMessage();
        fill(*message_, *values);
        return serialized(*message_, this->out_);
    }
    bool decode(std::span<const char> bytes) {
        makeMessage();
        return parse(*message_, bytes);
    }
    Shape decoded() const { return this->asRecord(*message_); }

  private:
    void makeMessage() {
        arena_.Reset();
        message_ = google::protobuf::Arena::CreateMessage<Message>(&arena_);
    }

    PageAlignedBytes memory_;
    google::protobuf::Arena arena_;
    Message* message_ = nullptr;
};

}  // namespace zrp_bench::protobuf
