// Turns a codec into cases: encoding and decoding of every message, checked before it is timed.
//
// A codec is a class template over the shape of a message with
//
//     static constexpr CodecInfo info;
//     Codec(std::span<char> out, const Shape& like);  `out`: room for any encoding of the message
//     using Source = ...;                          what encoding reads: a record or a filled object
//     static Source source(const Shape& values);   not timed
//     std::span<const char> encode(const Source& source);   timed; empty when it fails
//     bool decode(std::span<const char> bytes);              timed; into an object the codec keeps
//     decoded()                                    that object as a Shape; not timed
//
// The template argument decides everything when it is compiled; no call inside a timed loop goes
// through a pointer.
#pragma once

#include <string.h>

#include <algorithm>
#include <span>
#include <utility>

#include "bench/harness/case.h"
#include "bench/harness/memory.h"
#include "bench/messages.h"

namespace zrp_bench {

struct CodecInfo {
    const char* name;
    bool isInSweep = false;     ///< measured over the series of body sizes, too
    bool isEncodeOnly = false;  ///< decodes like another one that is measured
};

/// Base of the codecs whose object is this project's record: they encode from one and decode into
/// one that they keep.
template <class Shape>
class RecordCodec {
  public:
    using Source = const Shape*;

    RecordCodec(std::span<char> out, const Shape& like) : out_(out), target_(blankLike(like)) {}

    static Source source(const Shape& values) { return &values; }
    const Shape& decoded() const { return target_; }

  protected:
    std::span<char> out_;
    alignas(pageSize) Shape target_;
};

/// Encoded messages one after the other in memory, each at the start of a cache line.
class EncodedMessages {
  public:
    /// The first starts at `start` within its page.
    explicit EncodedMessages(size_t start) : start_(start) {}

    void add(std::span<const char> bytes) {
        const size_t end = places_.empty() ? start_ : roundUp(places_.back().second);
        places_.push_back({end, end + bytes.size()});
        memory_.resize(roundUp(end + bytes.size()));
        std::copy(bytes.begin(), bytes.end(), memory_.begin() + static_cast<ptrdiff_t>(end));
    }

    std::span<const char> last() const {
        const auto& [begin, end] = places_.back();
        return {memory_.data() + begin, end - begin};
    }
    /// All of them; valid until the next one is added.
    std::vector<std::span<const char>> views() const {
        std::vector<std::span<const char>> made;
        for (const auto& [begin, end] : places_) {
            made.emplace_back(memory_.data() + begin, end - begin);
        }
        return made;
    }

    double averageSize() const {
        size_t sum = 0;
        for (const auto& [begin, end] : places_) {
            sum += end - begin;
        }
        return static_cast<double>(sum) / static_cast<double>(places_.size());
    }

  private:
    static size_t roundUp(size_t offset) { return (offset + 63) / 64 * 64; }

    size_t start_;
    std::vector<std::pair<size_t, size_t>> places_;
    PageAlignedBytes memory_;
};

inline size_t largestBody(const auto&) {
    return 0;
}
inline size_t largestBody(const RawFrame& values) {
    return values.bodyCapacity();
}

/// What encoding and decoding share: the codec, its output buffer, the encoded messages.
template <class Codec, class Shape>
class CodecTask : public Task {
  public:
    CodecTask(const std::string& name, const Message<Shape>& message, size_t repetition)
        : place_(placeInPage(repetition)),
          out_(place_ + 16384 + 2 * largestBody(message.values.front())),
          codec_(std::span(out_).subspan(place_), message.values.front()),
          encoded_(place_) {
        for (const Shape& values : message.values) {
            addChecked(name, values);
        }
        inputs_ = encoded_.views();
    }

    double bytes() const override { return encoded_.averageSize(); }

  protected:
    size_t place_;
    PageAlignedBytes out_;
    Codec codec_;
    EncodedMessages encoded_;
    std::vector<std::span<const char>> inputs_;

  private:
    /// Encodes the values and makes sure that decoding gives all of them back.
    void addChecked(const std::string& name, const Shape& values) {
        const typename Codec::Source source = Codec::source(values);
        const std::span<const char> bytes = codec_.encode(source);
        if (bytes.empty()) {
            failCheck(name, "does not encode");
        }
        encoded_.add(bytes);
        if (!codec_.decode(encoded_.last())) {
            failCheck(name, "does not decode what it encoded");
        }
        if (valuesOf(codec_.decoded()) != valuesOf(values)) {
            failCheck(name, "gives other values back");
        }
    }
};

template <class Codec, class Shape>
class EncodeTask final : public CodecTask<Codec, Shape> {
  public:
    EncodeTask(const std::string& name, const Message<Shape>& message, size_t repetition)
        : CodecTask<Codec, Shape>(name, message, repetition) {
        for (const Shape& values : message.values) {
            sources_.push_back(Codec::source(values));
        }
    }

    void run(size_t count) override {
        inTurn(sources_, next_, count, [this](const typename Codec::Source& source) {
            keep(this->codec_.encode(source).data());
        });
    }

  private:
    std::vector<typename Codec::Source> sources_;
    size_t next_ = 0;
};

template <class Codec, class Shape>
class DecodeTask final : public CodecTask<Codec, Shape> {
  public:
    using CodecTask<Codec, Shape>::CodecTask;

    void run(size_t count) override {
        inTurn(this->inputs_, next_, count, [this](std::span<const char> bytes) {
            if (!this->codec_.decode(bytes)) {
                failCheck("a timed decode", "failed");
            }
            keep(&this->codec_);
        });
    }

  private:
    size_t next_ = 0;
};

template <template <class, class> class SomeTask, class Codec, class Shape>
Case codecCase(const char* operation, const Message<Shape>& message) {
    const std::string name = std::string(operation) + "/" + message.name + "/" + Codec::info.name;
    return {name, [name, &message](size_t repetition) {
                return std::make_unique<SomeTask<Codec, Shape>>(name, message, repetition);
            }};
}

/// Adds encoding and decoding of every message with `Codec`.
template <template <class> class Codec>
void addCodec(Cases& cases) {
    forEachMessage([&]<class Shape>(const Message<Shape>& message) {
        if (!message.isSweep || Codec<Shape>::info.isInSweep) {
            cases.push_back(codecCase<EncodeTask, Codec<Shape>>("encode", message));
            if constexpr (!Codec<Shape>::info.isEncodeOnly) {
                cases.push_back(codecCase<DecodeTask, Codec<Shape>>("decode", message));
            }
        }
    });
}

}  // namespace zrp_bench
