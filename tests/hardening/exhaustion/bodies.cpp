#include <string.h>

#include <memory>

#include "tests/hardening/exhaustion/model.h"
#include "tests/hardening/exhaustion/sweeps.h"
#include "tests/oracle/oracle.h"

namespace zrp_test {

namespace {

/// A decode on one side.
struct Decoded {
    Bytes record;
    long long selector = 0;
    int result = 0;
    size_t used = 0;

    /// Everything back to how it was before the decode.
    void reset(const Bytes& before) {
        memcpy(record.data(), before.data(), before.size());
        selector = -77;
        used = 77;
    }
    bool operator==(const Decoded& other) const {
        return result == other.result && used == other.used && selector == other.selector &&
               memcmp(record.data(), other.record.data(), record.size()) == 0;
    }
};

std::string shown(const char* side, const Decoded& decoded) {
    return std::string("\n  ") + side + ": result " + std::to_string(decoded.result) + ", used " +
           std::to_string(decoded.used) + ", selector " + std::to_string(decoded.selector) + ", " +
           toHex(decoded.record);
}

}  // namespace

std::string sweepBodies(const TypePair& pair, bool varint, size_t length, Sample strings) {
    const size_t size = 5 + length;
    // Exactly as long as the message, so that a sanitizer sees a read past its end.
    const std::unique_ptr<char[]> input(new char[size]);
    const char envelope[5] = {static_cast<char>(varint ? 0xAA : 0x99), 0, 0, 0,
                              static_cast<char>(size)};
    memcpy(input.get(), envelope, sizeof(envelope));

    Bytes before(recordSize(pair));
    Random random(length);
    random.fill(before);
    Decoded library{before};
    Decoded oracle{before};
    for (uint64_t string = strings.first; string < strings.limit; string += strings.step) {
        memcpy(input.get() + sizeof(envelope), fixedModel(string, length).bytes, length);
        library.reset(before);
        oracle.reset(before);
        library.result = pair.library->unpack(library.record.data(), &library.selector, input.get(),
                                              size, &library.used);
        oracle.result = zrp_oracle::unpack(*pair.oracle, oracle.record.data(), &oracle.selector,
                                           input.get(), size, &oracle.used);
        if (!(library == oracle)) {
            return std::string(pair.library->name) + " decodes " + toHex(input.get(), size) +
                   " differently:" + shown("library", library) + shown("oracle", oracle);
        }
    }
    return "";
}

}  // namespace zrp_test
