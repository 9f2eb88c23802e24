#include "tests/digest/codec.h"

#include "tests/oracle/oracle.h"

namespace zrp_test {

namespace {

constexpr int dumpIndent = 1;
constexpr char dumpSeparator = '\n';

}  // namespace

const Codec libraryCodec = {
    [](const TypePair& pair, Subject& subject) {
        return pair.library->construct(subject.record.data(), subject.selector);
    },
    [](const TypePair& pair, const Subject& subject, Bytes& out, size_t* used, bool varint) {
        return pair.library->pack(subject.record.data(), subject.selector, out.data(), out.size(),
                                  used, varint);
    },
    [](const TypePair& pair, Subject& subject, const Bytes& in, size_t* used) {
        return pair.library->unpack(subject.record.data(), &subject.selector, in.data(), in.size(),
                                    used);
    },
    [](const TypePair& pair, const Subject& subject, Bytes& out, size_t* used) {
        return pair.library->visualizeInto(subject.record.data(), subject.selector, out.data(),
                                           out.size(), used, dumpIndent, dumpSeparator);
    },
};

const Codec oracleCodec = {
    [](const TypePair& pair, Subject& subject) {
        return zrp_oracle::construct(*pair.oracle, subject.record.data(), subject.selector);
    },
    [](const TypePair& pair, const Subject& subject, Bytes& out, size_t* used, bool varint) {
        return zrp_oracle::pack(*pair.oracle, subject.record.data(), subject.selector, out.data(),
                                out.size(), used, varint);
    },
    [](const TypePair& pair, Subject& subject, const Bytes& in, size_t* used) {
        return zrp_oracle::unpack(*pair.oracle, subject.record.data(), &subject.selector, in.data(),
                                  in.size(), used);
    },
    [](const TypePair& pair, const Subject& subject, Bytes& out, size_t* used) {
        zrp_oracle::PrintLog log;
        return zrp_oracle::visualizeInto(*pair.oracle, subject.record.data(), subject.selector,
                                         out.data(), out.size(), used, dumpIndent, dumpSeparator,
                                         log);
    },
};

}  // namespace zrp_test
