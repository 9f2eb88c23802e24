// protobuf-lite's counterpart of the program for TZRPInFrame: encodes and decodes a frame.
#include "zrp_lite.pb.h"

static char buffer[4096];

int main(int argc, char**) {
    zrp_peer_lite::Frame frame;
    const bool encoded = frame.SerializeToArray(buffer, argc);
    return encoded && frame.ParseFromArray(buffer, argc) ? 0 : 1;
}
