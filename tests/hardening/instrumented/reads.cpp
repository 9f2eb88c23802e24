// Decoding reads at most three times as many bytes as the input has, whatever the input is: work
// cannot grow faster than what a peer sends.
#include <stdio.h>
#include <string.h>

#include <algorithm>
#include <vector>

#include "tests/differential/random.h"
#include "tests/hardening/instrumented/read_counter.h"
#include "tests/hardening/instrumented/samples.h"
#include "tests/support/bytes.h"

namespace zrp_test {
namespace {

constexpr uint64_t mostPerByte = 3;

/// The decode that read most for its size.
struct Worst {
    const char* type = "";
    uint64_t read = 0;
    Bytes input;

    double ratio() const {
        return input.empty() ? 0 : static_cast<double>(read) / static_cast<double>(input.size());
    }
};

class Measurement {
  public:
    /// Returns how many bytes were read per byte of input.
    double decode(const TypePair& pair, const Bytes& input, bool isWhole) {
        Bytes record(recordSize(pair));
        long long selector = 0;
        size_t used = 0;
        const ReadCounter counter(input.data(), input.size());
        (void)pair.library->unpack(record.data(), &selector, input.data(), input.size(), &used);
        ++decodes_;
        if (counter.bytesRead() > mostPerByte * input.size()) {
            complain(pair, "reads too much", counter.bytesRead(), input);
        }
        // What comes back whole was read whole: this holds the counter to account.
        if (isWhole && (used != input.size() || counter.neverRead(used) != 0)) {
            complain(pair, "was not seen to read all", counter.bytesRead(), input);
        }
        const Worst now{pair.library->name, counter.bytesRead(), input};
        if (now.ratio() > worst_.ratio()) {
            worst_ = now;
        }
        return now.ratio();
    }

    int report() const {
        printf("%zu decodes; at most %.2f bytes read per byte of input, by %s in\n%s\n", decodes_,
               worst_.ratio(), worst_.type, toHex(worst_.input).c_str());
        return failures_ == 0 ? 0 : 1;
    }

  private:
    void complain(const TypePair& pair, const char* what, uint64_t read, const Bytes& input) {
        if (++failures_ <= 10) {
            fprintf(stderr, "%s %s: %llu bytes read of %zu: %s\n", pair.library->name, what,
                    static_cast<unsigned long long>(read), input.size(), toHex(input).c_str());
        }
    }

    Worst worst_;
    size_t decodes_ = 0;
    int failures_ = 0;
};

/// A message of `fields`.
Bytes messageOf(bool varint, const Bytes& fields) {
    Bytes message = {static_cast<char>(varint ? 0xAA : 0x99), 0, 0, 0, 0};
    message.insert(message.end(), fields.begin(), fields.end());
    message[3] = static_cast<char>(message.size() / 256);
    message[4] = static_cast<char>(message.size() % 256);
    return message;
}

/// The same field over and over: known and unknown ones, of every wire type.
void decodeRepetitions(const TypePair& pair, Measurement& measurement) {
    for (const bool varint : {true, false}) {
        for (unsigned tag = 0; tag < 0x80; ++tag) {
            for (const char filling : {'\x00', '\x01', '\x80', '\xFF'}) {
                Bytes fields;
                for (size_t i = 0; i < 40; ++i) {
                    fields.push_back(static_cast<char>(tag));
                    fields.insert(fields.end(), i % 12, filling);
                }
                measurement.decode(pair, messageOf(varint, fields), false);
            }
        }
    }
}

/// A tag, the length of `value`, and `value`.
Bytes delimited(Bytes tag, const Bytes& value) {
    tag.insert(tag.end(), {0, 0, static_cast<char>(value.size() / 256),
                           static_cast<char>(value.size() % 256)});
    tag.insert(tag.end(), value.begin(), value.end());
    return tag;
}

/// A varint over and over in a body that has no code of its own, in a frame whose end is then
/// broken: it is read quickly, and all again.
void decodeNestedRepetitions(const TypePair& pair, Measurement& measurement) {
    if (strcmp(pair.library->name, "TZRPInFrame") != 0) {
        return;
    }
    for (const char* tag : {"10", "20", "A0 01", "80 80 04"}) {
        for (size_t groups = 1; groups <= 10; ++groups) {
            Bytes routeChange;
            for (size_t i = 0; i < 100; ++i) {
                const Bytes bytes = hex(tag);
                routeChange.insert(routeChange.end(), bytes.begin(), bytes.end());
                routeChange.insert(routeChange.end(), groups - 1, '\xFF');
                routeChange.push_back('\x01');
            }
            Bytes fields = delimited(hex("25"), delimited(hex("A5 80 20"), routeChange));
            fields.push_back('\x15');
            measurement.decode(pair, messageOf(true, fields), false);
        }
    }
}

/// Varints that are too long, or do not end, where a field is expected: they are looked at as
/// predicted, again step by step, and once more as a tag where a 64-bit reader did not move.
void decodeOverlongVarints(const TypePair& pair, Measurement& measurement) {
    for (unsigned number = 0; number < 8; ++number) {
        for (const char continued : {'\x80', '\xFE', '\xFF'}) {
            for (const char last : {'\x00', '\x01', '\x7F', '\x80', '\xB2'}) {
                for (size_t length = 0; length < 24; ++length) {
                    Bytes fields(1, static_cast<char>(number * 16));
                    fields.insert(fields.end(), length, continued);
                    fields.push_back(last);
                    measurement.decode(pair, messageOf(true, fields), false);
                }
            }
        }
    }
}

/// A message of which nearly all is as expected: what notices late that it is not has read it all.
void decodeWithBrokenEnd(const TypePair& pair, const Bytes& message, Measurement& measurement) {
    for (size_t last = 1; last <= 16 && last <= message.size(); ++last) {
        for (const int change : {0x01, 0x80}) {
            Bytes changed = message;
            char& byte = changed[changed.size() - last];
            byte = static_cast<char>(byte ^ change);
            measurement.decode(pair, changed, false);
        }
    }
}

/// Fields of up to two bytes: where the input is short, every byte read twice shows most.
void decodeShortBodies(const TypePair& pair, Measurement& measurement) {
    for (const bool varint : {true, false}) {
        measurement.decode(pair, messageOf(varint, {}), false);
        for (unsigned string = 0; string < 0x10000; string += string < 0x100 ? 1 : 7) {
            Bytes fields(1, static_cast<char>(string % 256));
            if (string >= 0x100) {
                fields.push_back(static_cast<char>(string / 256));
            }
            measurement.decode(pair, messageOf(varint, fields), false);
        }
    }
}

/// What matters to a decoder: tags with and without values, ends of varints and what goes on,
/// lengths.
std::vector<Bytes> makeTokens() {
    std::vector<Bytes> tokens;
    for (const char* token :
         {"00", "01", "02", "10", "15", "20", "40", "7F", "80", "81", "FE", "FF", "80 80 80",
          "00 00 00 00", "00 00 00 01 FF", "00 00 00 04 FF FF FF FF", "FF FF FF FF"}) {
        tokens.push_back(hex(token));
    }
    for (unsigned number = 0; number < 16; ++number) {
        for (const unsigned wireType : {0U, 1U, 5U}) {
            Bytes tag(1, static_cast<char>(number * 16 + wireType));
            if (number >= 8) {
                tag.push_back('\x01');
            }
            tokens.push_back(tag);
            tag.push_back('\x00');
            tokens.push_back(tag);
        }
    }
    return tokens;
}

/// Climbs from random strings of tokens to those of which more is read as a message that `make`
/// puts around them. What is read beside the fields, the envelope and the last varint, weighs most
/// in short ones.
template <class Make>
void climb(const TypePair& pair, Random& random, Make make, Measurement& measurement) {
    static const std::vector<Bytes> tokens = makeTokens();
    std::vector<size_t> chosen(1 + random.below(14));
    for (size_t& token : chosen) {
        token = random.below(tokens.size());
    }
    double best = 0;
    for (int step = 0; step < 400; ++step) {
        std::vector<size_t> changed = chosen;
        const size_t place = random.below(changed.size());
        const auto at = changed.begin() + static_cast<ptrdiff_t>(place);
        if (random.oneIn(3) && changed.size() > 1) {
            changed.erase(at);
        } else if (random.oneIn(2)) {
            changed.insert(at, random.below(tokens.size()));
        } else {
            *at = random.below(tokens.size());
        }
        Bytes fields;
        for (const size_t token : changed) {
            fields.insert(fields.end(), tokens[token].begin(), tokens[token].end());
        }
        const double ratio = measurement.decode(pair, make(fields), false);
        if (ratio >= best) {
            best = ratio;
            chosen = changed;
        }
    }
}

void searchForMore(const TypePair& pair, Measurement& measurement) {
    Random random(1);
    for (int start = 0; start < 12; ++start) {
        const bool varint = start % 4 != 0;
        const auto make = [varint](const Bytes& fields) { return messageOf(varint, fields); };
        climb(pair, random, make, measurement);
    }
}

/// The same inside frames of data, of which every tag and length is the one expected but for the
/// last: such a frame is looked at once more.
void searchDataFrames(const TypePair& pair, Measurement& measurement) {
    if (strcmp(pair.library->name, "TZRPInFrame") != 0) {
        return;
    }
    Random random(1);
    for (int start = 0; start < 96; ++start) {
        const Bytes tag(1, start % 2 == 0 ? '\x15' : '\x25');
        const Bytes behind = hex(start % 4 < 2 ? "" : "10");
        // Tokens become fields of the base header, of the destination, or of both.
        const size_t share = start / 4 % 3;
        climb(
            pair, random,
            [&](const Bytes& fields) {
                const auto half =
                    fields.begin() + static_cast<ptrdiff_t>(fields.size() * share / 2);
                Bytes route = delimited(tag, Bytes(half, fields.end()));
                route.insert(route.end(), behind.begin(), behind.end());
                Bytes data = hex("11 00 21 00 31 01");
                const Bytes routeField = delimited(hex("45"), route);
                data.insert(data.end(), routeField.begin(), routeField.end());
                Bytes head = delimited(hex("15"), Bytes(fields.begin(), half));
                const Bytes extension = delimited(hex("25"), delimited(hex("B5 82 10"), data));
                head.insert(head.end(), extension.begin(), extension.end());
                Bytes frame = delimited(hex("15"), head);
                const Bytes body = delimited(hex("25"), hex("B1 82 10 00"));
                frame.insert(frame.end(), body.begin(), body.end());
                return messageOf(true, frame);
            },
            measurement);
    }
}

}  // namespace
}  // namespace zrp_test

int main() {
    using namespace zrp_test;
    Measurement measurement;
    for (const TypePair& pair : typePairs()) {
        for (const SampleRecord& sample : sampleRecords(pair, 4)) {
            for (const bool varint : {true, false}) {
                if (sample.isSound) {
                    // The body of a frame is no field that a decoder of this layer takes.
                    const bool isWhole = strcmp(pair.library->name, "TZRPFrame") != 0;
                    const Bytes message = encoded(pair, sample.subject, varint);
                    measurement.decode(pair, message, isWhole);
                    decodeWithBrokenEnd(pair, message, measurement);
                }
            }
        }
        for (const SampleInput& sample : sampleInputs(pair, 20)) {
            measurement.decode(pair, sample.bytes, false);
        }
        decodeRepetitions(pair, measurement);
        decodeNestedRepetitions(pair, measurement);
        decodeOverlongVarints(pair, measurement);
        decodeShortBodies(pair, measurement);
        searchForMore(pair, measurement);
        searchDataFrames(pair, measurement);
        // Of these more was read when the envelope was read again after a prediction gave up.
        for (const char* fields : {"20 10 80 20 FF 81 80", "80 01 00 70 00 40 71 E0 01 80 81 80"}) {
            measurement.decode(pair, messageOf(true, hex(fields)), false);
        }
    }
    return measurement.report();
}
