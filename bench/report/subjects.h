// What was measured, in the order of tables and charts.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zrp_report {

struct Codec {
    const char* id;
    const char* name;
    bool isNumbered = false;  ///< another codec that numbers its fields and checks its input
};

inline const std::vector<Codec>& codecs() {
    static const std::vector<Codec> all = {
        {"zrp-varint", "this codec, varint"},
        {"zrp-fixed", "this codec, fixed"},
        {"protobuf-reused", "protobuf, message reused", true},
        {"protobuf-no-oneof", "protobuf, reused, no oneofs", true},
        {"protobuf-filled", "protobuf, filled beforehand", true},
        {"protobuf-heap", "protobuf, fresh on the heap", true},
        {"protobuf-arena", "protobuf, on an arena", true},
        {"protobuf-lite", "protobuf-lite, message reused", true},
        {"nanopb", "nanopb", true},
        {"protozero", "protozero", true},
        {"flatbuffers", "FlatBuffers", true},
        {"capnproto", "Cap'n Proto", true},
        {"capnproto-packed", "Cap'n Proto, packed", true},
        {"msgpack", "msgpack, arrays"},
        {"oracle-varint", "plain codec, varint"},
        {"oracle-fixed", "plain codec, fixed"},
    };
    return all;
}

struct Message {
    const char* id;
    const char* name;
};

/// M1 to M6 come first.
inline const std::vector<Message>& messages() {
    static const std::vector<Message> all = {
        {"M1", "base header alone"},
        {"M2", "syn frame"},
        {"M3", "authentication response frame"},
        {"M4", "data frame, route by server"},
        {"M5", "data frame with 1,024 bytes of body"},
        {"M6", "token refresh notice in its frame, 512 bytes of token"},
        {"M6n", "the notice of M6 alone"},
        {"M1r", "4,096 base headers with varints of every width"},
        {"M2f", "syn frame with every text full"},
    };
    return all;
}
constexpr size_t mainMessages = 6;

inline const std::vector<std::string>& directions() {
    static const std::vector<std::string> both = {"encode", "decode"};
    return both;
}

inline std::string nameOf(std::string_view direction, std::string_view message,
                          std::string_view codec) {
    return std::string(direction) + "/" + std::string(message) + "/" + std::string(codec);
}

/// The floor that a codec is compared with: copying the encoded bytes of this codec, in the codec's
/// own flavour where it has one.
inline std::string floorOf(std::string_view message, std::string_view codec) {
    return nameOf("copy", message, codec.ends_with("-fixed") ? "bytes-fixed" : "bytes-varint");
}

}  // namespace zrp_report
