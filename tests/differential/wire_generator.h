// Wire bytes made field by field, well-formed enough to get far into a decoder and wrong enough to
// meet its every refusal.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include "tests/differential/random.h"
#include "tests/oracle/catalogue.h"
#include "tests/support/bytes.h"

namespace zrp_test {

/// Puts fields of a type in any order, repeated or missing, among unknown ones; with type ids that
/// do not fit, overlong varints, lengths off by one, empty and oversized arrays and texts.
class WireGenerator {
  public:
    WireGenerator(Random& random, bool varint) : random_(random), varint_(varint) {}

    /// A whole message: envelope, and fields of the type.
    Bytes message(const zrp_oracle::Type& type);

    /// Fields of the type, without envelope.
    Bytes fields(const zrp_oracle::Type& type);

  private:
    void putStructure(Bytes& out, const zrp_oracle::Type& type);
    void putUnion(Bytes& out, const zrp_oracle::Type& type);
    void putField(Bytes& out, const zrp_oracle::Field& field);
    void putUnknownField(Bytes& out, const zrp_oracle::Type& type);
    void putTag(Bytes& out, uint64_t number, uint64_t typeId);
    void putInteger(Bytes& out, size_t width);
    void putVarint(Bytes& out, uint64_t value);
    void putOverlongVarint(Bytes& out);
    void putDelimited(Bytes& out, const Bytes& content);
    void putNoise(Bytes& out, size_t count);
    size_t contentSizeFor(const zrp_oracle::Field& field);

    Random& random_;
    bool varint_;
};

/// The bytes, changed in one to four places: bits flipped, bytes replaced, put in, taken out,
/// repeated or swapped.
Bytes mutated(const Bytes& bytes, Random& random);

/// The beginning of one encoding and the end of another.
Bytes spliced(const Bytes& first, const Bytes& second, Random& random);

/// The bytes with others behind them that no declared length covers: decoders may go faster where
/// much input is left, and must not look further than they should.
Bytes withTail(const Bytes& bytes, Random& random);

/// `value` as 4 bytes, most significant first, at `place`.
void putLength(Bytes& bytes, size_t place, uint64_t value);

}  // namespace zrp_test
