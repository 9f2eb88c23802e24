// The messages that are measured, and their values: once, for every codec.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <span>
#include <string>
#include <vector>

#include "bench/harness/memory.h"
#include "protocol/quorva_zrp.h"

namespace zrp_bench {

/// A frame with a body of raw bytes: the record and, directly behind it, the body. The object of
/// peers that bring none of their own, too.
class RawFrame {
  public:
    explicit RawFrame(size_t bodyCapacity);

    quorva_zrp::TZRPFrame& frame() {
        return *reinterpret_cast<quorva_zrp::TZRPFrame*>(memory_.data());
    }
    const quorva_zrp::TZRPFrame& frame() const {
        return *reinterpret_cast<const quorva_zrp::TZRPFrame*>(memory_.data());
    }
    quorva_zrp::TZRPHead& head() { return frame().stHead; }
    const quorva_zrp::TZRPHead& head() const { return frame().stHead; }

    size_t bodyCapacity() const { return memory_.size() - sizeof(quorva_zrp::TZRPFrame); }
    uint8_t* bodyStart() { return reinterpret_cast<uint8_t*>(&frame() + 1); }
    const uint8_t* bodyStart() const { return reinterpret_cast<const uint8_t*>(&frame() + 1); }
    std::span<const uint8_t> body() const { return {bodyStart(), bodySize_}; }

    /// Copies a body in; false when it is larger than the capacity.
    bool setBody(const void* from, size_t size);
    /// For those who put the bytes at `bodyStart` themselves.
    bool setBodySize(size_t size);

  private:
    PageAlignedBytes memory_;
    size_t bodySize_ = 0;
};

// The shapes of messages: what a codec must be able to encode and decode.
using Base = quorva_zrp::TZRPBase;
using Notice = quorva_zrp::TZRPAuthRefreshNotifyBody;
using Frame = quorva_zrp::TZRPInFrame;

/// A message under measurement. Where it has more than one value, operations take them in turn;
/// their count is a power of two.
template <class Shape>
struct Message {
    std::string name;
    PageAlignedVector<Shape> values;
    bool isSweep = false;  ///< one of the series of body sizes
};

const Message<Base>& baseHeader();           ///< M1
const Message<Base>& randomBaseHeaders();    ///< M1r: 4096 of them, varints of every width
const Message<Frame>& synFrame();            ///< M2
const Message<Frame>& authResponseFrame();   ///< M3
const Message<Frame>& routedDataFrame();     ///< M4
const Message<RawFrame>& rawDataFrame();     ///< M5: 1,024 bytes of body
const Message<Frame>& refreshNoticeFrame();  ///< M6
const Message<Notice>& refreshNotice();      ///< M6n: the notice of M6 without its frame
const Message<Frame>& fullSynFrame();        ///< M2f: every text as long as it may be
/// Data frames with bodies from 16 bytes to 1 MiB.
const std::vector<Message<RawFrame>>& bodySweep();

/// Calls `visit(message)` for each of them.
template <class Visit>
void forEachMessage(Visit visit) {
    visit(baseHeader());
    visit(randomBaseHeaders());
    visit(synFrame());
    visit(authResponseFrame());
    visit(routedDataFrame());
    visit(rawDataFrame());
    visit(refreshNoticeFrame());
    visit(refreshNotice());
    visit(fullSynFrame());
    for (const Message<RawFrame>& message : bodySweep()) {
        visit(message);
    }
}

/// An object of the same shape that holds none of the values.
Base blankLike(const Base& values);
Notice blankLike(const Notice& values);
Frame blankLike(const Frame& values);
RawFrame blankLike(const RawFrame& values);

/// Every live value of an object as text, for comparing two of them. Encoded by the tests' oracle,
/// not by the library.
std::string valuesOf(const Base& values);
std::string valuesOf(const Notice& values);
std::string valuesOf(const Frame& values);
std::string valuesOf(const RawFrame& values);

}  // namespace zrp_bench
