// Cutting frames out of a byte stream.
//
// A stream connection keeps the order of bytes and nothing else: one read may bring half a frame,
// or the end of one and the start of the next. The envelope of every frame tells where it ends: a
// flavour byte and the 4-byte length of the whole, most significant byte first.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <span>
#include <vector>

namespace conversation {

/// Collects bytes as they arrive and gives back whole frames. It decodes nothing and looks at a
/// length as soon as its 4 bytes are there, so a hostile length costs no memory: a caller that
/// calls `next` until it wants more before the next `append` never has it hold more than the
/// largest frame and one append.
class FrameCutter {
  public:
    enum class Step {
        needMore,   ///< no whole frame yet: append what arrives next
        frame,      ///< a frame was cut out
        notAFrame,  ///< the next byte begins no frame: neither 0xAA nor 0x99
        tooShort,   ///< the envelope announces fewer bytes than it has itself
        tooLarge,   ///< the envelope announces more bytes than the largest frame has
    };

    explicit FrameCutter(size_t largestFrame) : largestFrame_(largestFrame) {}

    /// Adds bytes that arrived. Frames given back before are no longer valid afterwards.
    void append(std::span<const char> arrived);

    /// Takes the next frame, envelope included; `frame` is set for Step::frame only and is valid
    /// until the next `append`. The last three steps are final: once the boundaries are lost there
    /// is no way to find them again, and every later call gives the same answer.
    [[nodiscard]] Step next(std::span<const char>& frame);

    /// Bytes that arrived and belong to no frame given back yet.
    size_t pending() const { return bytes_.size() - begin_; }

    /// Where the next frame begins, counted in bytes from the start of the stream.
    uint64_t streamPosition() const { return taken_; }

    /// The first byte and the announced length of the frame that is coming, as far as they are
    /// there: for messages. The length is 0 while fewer than 5 bytes are there.
    uint8_t firstByte() const;
    uint32_t announcedLength() const;

    size_t largestFrame() const { return largestFrame_; }

  private:
    const size_t largestFrame_;
    std::vector<char> bytes_;
    size_t begin_ = 0;  // bytes_ before this were given back
    uint64_t taken_ = 0;
};

}  // namespace conversation
