// Sequences of operations on the two buffers, each compared with a model: result, position, and
// every byte of memory or value.
#include "fuzz/support/input_pair.h"
#include "fuzz/support/output_pair.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t count) {
    zrp_fuzz::Input input(bytes, count);
    zrp_fuzz::OutputPair writing(input);
    zrp_fuzz::InputPair reading(input);
    while (!input.isEmpty()) {
        if (input.flag()) {
            writing.step(input);
        } else {
            reading.step(input);
        }
    }
    return 0;
}
