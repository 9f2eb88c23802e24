// nanopb's counterpart of the program for TZRPInFrame: encodes and decodes a frame.
#include <pb_decode.h>
#include <pb_encode.h>

#include "zrp.nanopb.h"

static zrp_peer_Frame frame;
static pb_byte_t buffer[4096];

int main(int argc, char**) {
    pb_ostream_t out = pb_ostream_from_buffer(buffer, static_cast<size_t>(argc));
    const bool encoded = pb_encode(&out, zrp_peer_Frame_fields, &frame);
    pb_istream_t in = pb_istream_from_buffer(buffer, static_cast<size_t>(argc));
    return encoded && pb_decode(&in, zrp_peer_Frame_fields, &frame) ? 0 : 1;
}
