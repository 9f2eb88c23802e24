// The two codecs that can give the rows of the digest, behind one interface: the library and the
// oracle.
#pragma once

#include <stddef.h>

#include "tests/differential/subject.h"

namespace zrp_test {

struct Codec {
    int (*construct)(const TypePair& pair, Subject& subject);
    int (*pack)(const TypePair& pair, const Subject& subject, Bytes& out, size_t* used,
                bool varint);
    int (*unpack)(const TypePair& pair, Subject& subject, const Bytes& in, size_t* used);
    int (*visualize)(const TypePair& pair, const Subject& subject, Bytes& out, size_t* used);
};

extern const Codec libraryCodec;
extern const Codec oracleCodec;

}  // namespace zrp_test
