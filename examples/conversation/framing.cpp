#include "examples/conversation/framing.h"

#include "examples/conversation/body_view.h"

namespace conversation {

void FrameCutter::append(std::span<const char> arrived) {
    // What was given back is dropped here and not in `next`, so that frames stay valid until now.
    bytes_.erase(bytes_.begin(), bytes_.begin() + static_cast<std::ptrdiff_t>(begin_));
    begin_ = 0;
    bytes_.insert(bytes_.end(), arrived.begin(), arrived.end());
}

uint8_t FrameCutter::firstByte() const {
    return pending() == 0 ? uint8_t{0} : static_cast<uint8_t>(bytes_[begin_]);
}

uint32_t FrameCutter::announcedLength() const {
    if (pending() < envelopeSize) {
        return 0;
    }
    uint32_t length = 0;
    Quorva::BrxReadBuf envelope(bytes_.data() + begin_, envelopeSize);
    (void)envelope.skipForward(1);  // neither can fail: 5 bytes are there
    (void)envelope.readUInt32(length);
    return length;
}

FrameCutter::Step FrameCutter::next(std::span<const char>& frame) {
    if (pending() == 0) {
        return Step::needMore;
    }
    if (firstByte() != magicVarint && firstByte() != magicFixed) {
        return Step::notAFrame;
    }
    if (pending() < envelopeSize) {
        return Step::needMore;
    }
    const size_t length = announcedLength();
    if (length < envelopeSize) {
        return Step::tooShort;
    }
    if (length > largestFrame_) {
        return Step::tooLarge;
    }
    if (pending() < length) {
        return Step::needMore;
    }
    frame = std::span<const char>(bytes_.data() + begin_, length);
    begin_ += length;
    taken_ += length;
    return Step::frame;
}

}  // namespace conversation
