// msgpack: every structure an array of its values, without numbers. Packed into memory of fixed
// size; unpacked with a visitor straight into the record, which its documentation recommends over
// the tree of objects. Counts of byte arrays and flags of optional elements are left out, since
// lengths and nil tell the same.
#include <msgpack.hpp>

#include "bench/harness/codec_cases.h"
#include "bench/harness/oracle_types.h"
#include "bench/peers/msgpack_pack.h"
#include "bench/peers/msgpack_visitor.h"
#include "bench/peers/peers.h"

namespace zrp_bench {

namespace {

void finishBody(auto&) {}
/// A raw frame knows how many bytes of its body are in use.
void finishBody(RawFrame& frame) {
    frame.setBodySize(frame.head().stBase.dwBodyLen);
}

char* recordBytes(auto& values) {
    return reinterpret_cast<char*>(&values);
}
char* recordBytes(RawFrame& values) {
    return reinterpret_cast<char*>(&values.frame());
}

template <class Shape>
class Msgpack : public RecordCodec<Shape> {
  public:
    static constexpr CodecInfo info{"msgpack", true};

    Msgpack(std::span<char> out, const Shape& like)
        : RecordCodec<Shape>(out, like),
          layout_(pack::layoutOf(typeOf(like))),
          bodyCapacity_(largestBody(like)) {}

    std::span<const char> encode(const Shape* record) {
        pack::FixedStream stream(this->out_);
        pack::Packer packer(stream);
        pack::pack(packer, *record);
        return stream.written();
    }

    bool decode(std::span<const char> bytes) {
        pack::RecordVisitor visitor(layout_, recordBytes(this->target_), bodyCapacity_);
        size_t used = 0;
        if (!msgpack::parse(bytes.data(), bytes.size(), used, visitor)) {
            return false;
        }
        finishBody(this->target_);
        return true;
    }

  private:
    const pack::Layout& layout_;
    size_t bodyCapacity_;
};

}  // namespace

void addMsgpack(Cases& cases) {
    addCodec<Msgpack>(cases);
}

}  // namespace zrp_bench
