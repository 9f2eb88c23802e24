#include "tests/digest/rows.h"

#include <algorithm>
#include <utility>

#include "tests/differential/wire_generator.h"
#include "tests/digest/view.h"
#include "tests/oracle/oracle.h"

namespace zrp_test {

namespace {

constexpr char untouched = '\xC7';
/// A used size that the codec did not set; small enough for 32 bits.
constexpr size_t unset = 0x5E75E75E;

bool hasTrailingBody(const zrp_oracle::Type& type) {
    return std::any_of(type.fields.begin(), type.fields.end(),
                       [](const zrp_oracle::Field& field) { return field.size == 0; });
}

/// Makes the rows of one type and flavour, a group of them from each record.
class RowMaker {
  public:
    RowMaker(const TypePair& pair, bool varint, const Codec& codec,
             const std::function<void(const Row&)>& visit)
        : pair_(pair),
          type_(*pair.oracle),
          varint_(varint),
          codec_(codec),
          visit_(visit),
          random_(varint ? 1 : 2),
          // A body behind a frame is taken for more fields of the frame.
          unions_(hasTrailingBody(type_) ? Unions::hidden : Unions::shown),
          largest_(zrp_oracle::largestSize(type_, varint) + recordSize(pair) -
                   pair.library->objectSize) {}

    void makeAll() {
        for (uint64_t variant = 0; count_ < rowsPerLine; ++variant) {
            makeGroup(variant);
        }
    }

  private:
    void makeGroup(uint64_t variant) {
        construct();
        const Subject sound = subject(variant, Soundness::sound);
        const Bytes encoded = pack(sound, largest_ + 16);
        packIntoLess(sound, encoded.size(), 10);
        const Subject doubtful = subject(variant, Soundness::doubtful);
        pack(doubtful, largest_ + 16);
        packIntoLess(doubtful, largest_, 5);
        visualize(sound);
        visualize(doubtful);

        unpack("unpack", encoded, unions_);
        unpack("unpack with a tail", withTail(encoded, random_), unions_);
        unpackCut(encoded);
        unpackDamaged(encoded);
        unpackInvented();
        before_ = encoded;
    }

    void construct() {
        Subject target = target_();
        target.selector =
            random_.oneIn(4) ? strangeSelector(type_, random_) : random_.pick(type_.fields).number;
        Row row = rowOf("construct", view(target, Unions::shown), 0);
        clearUnions(type_, target.record.data());
        row.result = codec_.construct(pair_, target);
        finish(row, target.selector, view(target, Unions::shown));
    }

    Bytes pack(const Subject& from, size_t room) {
        Bytes out(room, untouched);
        size_t used = unset;
        Row row = rowOf("pack", view(from, Unions::shown), room);
        row.result = codec_.pack(pair_, from, out, &used, varint_);
        row.used = used;
        finish(row, from.selector, out);
        out.resize(row.result == 0 ? used : 0);
        return out;
    }

    void packIntoLess(const Subject& from, size_t enough, int times) {
        for (; times > 0; --times) {
            pack(from, 1 + static_cast<size_t>(random_.below(enough + 1)));
        }
    }

    void visualize(const Subject& from) {
        const size_t room = 1 + static_cast<size_t>(random_.below(8 * largest_));
        Bytes out(room, untouched);
        size_t used = unset;
        Row row = rowOf("visualize", view(from, Unions::shown), room);
        row.result = codec_.visualize(pair_, from, out, &used);
        row.used = used;
        finish(row, from.selector, std::move(out));
    }

    void unpack(const char* operation, const Bytes& input, Unions unions) {
        Subject target = target_();
        size_t used = unset;
        Row row = rowOf(operation, input, 0);
        row.result = codec_.unpack(pair_, target, input, &used);
        row.used = used;
        finish(row, target.selector,
               type_.isUnion && row.result != 0 ? Bytes() : view(target, unions));
    }

    void unpackCut(const Bytes& encoded) {
        for (int i = 0; i < 8; ++i) {
            const size_t size = static_cast<size_t>(random_.below(encoded.size() + 1));
            Bytes cut(encoded.begin(), encoded.begin() + static_cast<std::ptrdiff_t>(size));
            if (i % 2 == 0 && size >= 5) {
                putLength(cut, 1, size);
            }
            unpack("unpack cut", cut, unions_);
        }
    }

    void unpackDamaged(const Bytes& encoded) {
        for (int i = 0; i < 14; ++i) {
            Bytes damaged =
                mutated(i % 4 == 0 ? spliced(encoded, before_, random_) : encoded, random_);
            if (damaged.size() >= 5 && !random_.oneIn(6)) {
                damaged[0] = static_cast<char>(varint_ ? 0xAA : 0x99);
                putLength(damaged, 1, damaged.size());
            }
            unpack("unpack damaged", damaged, Unions::hidden);
        }
    }

    void unpackInvented() {
        WireGenerator generator(random_, varint_);
        for (int i = 0; i < 12; ++i) {
            unpack("unpack invented", generator.message(type_), Unions::hidden);
        }
    }

    /// A record of chosen values; zeroes where no field of a live member is.
    Subject subject(uint64_t variant, Soundness soundness) {
        Subject made{Bytes(recordSize(pair_)), 0};
        chooseValues(pair_, made, random_, variant, soundness);
        return made;
    }

    /// A record to decode into: zeroes or chosen values, zeroes in unions.
    Subject target_() {
        Subject made{Bytes(recordSize(pair_)), 0};
        if (random_.oneIn(2)) {
            made = subject(random_.next(), Soundness::doubtful);
            clearUnions(type_, made.record.data());
            if (!type_.isUnion) {
                zrp_oracle::setValueAt(made.record.data(), {type_.presence, 4}, random_.next());
            }
        }
        return made;
    }

    Bytes view(const Subject& of, Unions unions) const {
        const char* const record = of.record.data();
        Bytes bytes = type_.isUnion ? viewOfMember(type_, record, of.selector, unions)
                                    : viewOf(type_, record, unions);
        // The trailing body.
        bytes.insert(bytes.end(), record + pair_.library->objectSize, record + of.record.size());
        return bytes;
    }

    static Row rowOf(const char* operation, Bytes input, uint64_t room) {
        return {operation, std::move(input), room, 0, unset, 0, {}};
    }

    void finish(Row& row, long long selector, Bytes output) {
        row.selector = selector;
        row.output = std::move(output);
        if (count_ < rowsPerLine) {
            ++count_;
            visit_(row);
        }
    }

    const TypePair& pair_;
    const zrp_oracle::Type& type_;
    bool varint_;
    const Codec& codec_;
    const std::function<void(const Row&)>& visit_;
    Random random_;
    Unions unions_;
    size_t largest_;
    size_t count_ = 0;
    Bytes before_;
};

}  // namespace

void forEachRow(const TypePair& pair, bool varint, const Codec& codec,
                const std::function<void(const Row&)>& visit) {
    RowMaker(pair, varint, codec, visit).makeAll();
}

}  // namespace zrp_test
