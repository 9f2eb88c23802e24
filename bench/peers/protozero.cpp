// protozero: a writer and a reader of the protobuf wire format, between the caller's own records
// and a buffer of fixed size. Reading switches over number and wire type at once, as its
// documentation advises. Members of unions that no measured message uses are stepped over.
#include <protozero/basic_pbf_writer.hpp>
#include <protozero/buffer_fixed.hpp>
#include <protozero/pbf_reader.hpp>

#include "bench/harness/codec_cases.h"
#include "bench/peers/peers.h"
#include "bench/peers/protozero_read.h"
#include "bench/peers/protozero_write.h"

namespace zrp_bench {

namespace {

template <class Shape>
class Protozero : public RecordCodec<Shape> {
  public:
    static constexpr CodecInfo info{"protozero", true};
    using RecordCodec<Shape>::RecordCodec;

    std::span<const char> encode(const Shape* record) {
        protozero::fixed_size_buffer_adaptor buffer(this->out_.data(), this->out_.size());
        protozero_write::Writer writer(buffer);
        protozero_write::write(writer, *record);
        return {buffer.data(), buffer.size()};
    }

    bool decode(std::span<const char> bytes) {
        return protozero_read::read(protozero::pbf_reader(bytes.data(), bytes.size()),
                                    this->target_);
    }
};

}  // namespace

void addProtozero(Cases& cases) {
    addCodec<Protozero>(cases);
}

}  // namespace zrp_bench
