// A BrxReadBuf and its model: the same operation is done on both, and both must give the same.
#pragma once

#include <array>
#include <iterator>

#include "Common/Source/Core/BRX/BrxBuf.h"
#include "fuzz/support/input.h"
#include "fuzz/support/require.h"
#include "tests/oracle/cursor.h"

namespace zrp_fuzz {

class InputPair {
  public:
    /// One byte of the input says how many of its bytes are read from, and whether there are any.
    explicit InputPair(Input& input) : InputPair(input, input.byte()) {}

    /// Does what the next bytes of the input say.
    void step(Input& input) {
        const Operation& operation = operations[input.choice(std::size(operations))];
        const uint64_t before = input.integer();
        const uint8_t form = input.byte();
        const size_t number = form < 0xF0 ? form % runSize : SIZE_MAX - (0xFF - form);
        Outcome outcome{before, {}};
        Outcome expected = outcome;
        const int result = operation.onBuffer(buffer_, outcome, number);
        const int expectedResult = operation.onModel(model_, expected, number);
        const bool same = result == expectedResult && outcome == expected &&
                          buffer_.position == model_.used && buffer_.length == model_.size &&
                          buffer_.getUsedSize() == model_.used;
        require(same, operation.name, ' ', number, " over ", before, " gives ", result, ", value ",
                outcome.value, ", position ", buffer_.position, ", expected ", expectedResult,
                ", value ", expected.value, ", position ", model_.used, "\n  input ", shown(bytes_),
                "\n  run ", Shown{outcome.run.data(), runSize}, "\n  run ",
                Shown{expected.run.data(), runSize});
    }

  private:
    using Buffer = Quorva::BrxReadBuf;
    using Model = zrp_oracle::InputCursor;
    using Tags = Quorva::BrxTLVUtil;

    static constexpr size_t runSize = 80;

    /// What an operation reads into.
    struct Outcome {
        uint64_t value;  ///< an integer, zero-extended
        std::array<char, runSize> run;

        bool operator==(const Outcome& other) const = default;
    };

    struct Operation {
        const char* name;
        int (*onBuffer)(Buffer& buffer, Outcome& outcome, size_t number);
        int (*onModel)(Model& model, Outcome& outcome, size_t number);
    };

    InputPair(Input& input, uint8_t sizeByte)
        : bytes_(std::min<size_t>(sizeByte % 64, input.restSize())),
          buffer_(sizeByte < 0xF0 ? begin() : nullptr, bytes_.size()),
          model_(sizeByte < 0xF0 ? begin() : nullptr, bytes_.size()) {
        for (char& byte : bytes_) {
            byte = static_cast<char>(input.byte());
        }
    }

    /// An input of size 0 is an input all the same.
    const char* begin() const { return bytes_.empty() ? "" : bytes_.data(); }

    static uint64_t mask(size_t width) { return UINT64_MAX >> (64 - 8 * width); }

    /// Calls a reader with a variable of its type that holds what was there before.
    template <class Integer>
    static int read(Buffer& buffer, Outcome& outcome, int32_t (Buffer::*reader)(Integer&)) {
        Integer value = static_cast<Integer>(outcome.value);
        const int result = (buffer.*reader)(value);
        outcome.value = static_cast<uint64_t>(value) & mask(sizeof(value));
        return result;
    }

    static int takeFixed(Model& model, Outcome& outcome, size_t width) {
        outcome.value &= mask(width);
        return model.takeBigEndian(outcome.value, width);
    }

    static int takeVarint(Model& model, Outcome& outcome, size_t width) {
        return model.takeVarint(outcome.value, static_cast<unsigned>(8 * width));
    }

    /// Even bits are the values from 0 up, odd ones those from -1 down.
    static int takeSignedVarint(Model& model, Outcome& outcome, size_t width) {
        const int result = takeVarint(model, outcome, width);
        const uint64_t half = outcome.value / 2;
        outcome.value = (outcome.value % 2 == 0 ? half : ~half) & mask(width);
        return result;
    }

    /// Fails without saying so.
    static int takeVarint64(Model& model, Outcome& outcome) {
        (void)takeVarint(model, outcome, 8);
        return 0;
    }

    static int decode64(Buffer& buffer, Outcome& outcome) {
        size_t used = 7;
        Buffer::decode_64_var(buffer.beginPtr + buffer.position, buffer.length - buffer.position,
                              used, outcome.value, -2);
        return static_cast<int>(used);
    }

    static int decode64(const Model& model, Outcome& outcome) {
        Model copy = model;
        (void)takeVarint(copy, outcome, 8);
        return static_cast<int>(copy.used - model.used);
    }

    static int skipValue(Model& model, uint64_t typeId) {
        constexpr size_t fixedSizes[] = {0, 1, 2, 4, 8};
        uint64_t length = 0;
        if (typeId == 0) {
            (void)model.takeVarint(length, 64);
            return 0;
        }
        if (typeId <= 4) {
            return model.skip(fixedSizes[typeId]);
        }
        if (typeId > 5) {
            return -35;
        }
        const int result = model.takeBigEndian(length, 4);
        return result != 0 ? result : model.skip(static_cast<size_t>(length));
    }

    /// Every tag function, as bits.
    static int tags(Outcome& outcome, size_t number) {
        const uint32_t tag = static_cast<uint32_t>(outcome.value);
        outcome.value = Tags::makeTag(static_cast<int>(tag), static_cast<int>(number % 100)) ^
                        uint64_t { Tags::getFieldId(tag) } << 32 ^
                        uint64_t { Tags::getTypeId(tag) } << 60;
        return 0;
    }

    static int modelTags(Outcome& outcome, size_t number) {
        const uint64_t tag = outcome.value % (UINT64_C(1) << 32);
        outcome.value =
            (tag * 16 + number % 100) % (UINT64_C(1) << 32) ^ tag / 16 << 32 ^ tag % 16 << 60;
        return 0;
    }

    /// Mostly the type ids in use, and any integer.
    static uint64_t typeIdFrom(const Outcome& outcome) {
        return outcome.value % 4 == 0 ? outcome.value / 4 : outcome.value / 4 % 8;
    }

    static size_t place(uint64_t value, size_t size) {
        return static_cast<size_t>(value % (size + 1));
    }

#define ZRP_STEP(name, onBuffer, onModel)                               \
    {                                                                   \
        name,                                                           \
            []([[maybe_unused]] Buffer& b, [[maybe_unused]] Outcome& o, \
               [[maybe_unused]] size_t n) -> int { return onBuffer; },  \
            []([[maybe_unused]] Model& m, [[maybe_unused]] Outcome& o,  \
               [[maybe_unused]] size_t n) -> int { return onModel; }    \
    }

    // clang-format off
    static constexpr Operation operations[] = {
        ZRP_STEP("readUInt8", read(b, o, &Buffer::readUInt8), takeFixed(m, o, 1)),
        ZRP_STEP("readUInt16", read(b, o, &Buffer::readUInt16), takeFixed(m, o, 2)),
        ZRP_STEP("readUInt32", read(b, o, &Buffer::readUInt32), takeFixed(m, o, 4)),
        ZRP_STEP("readUInt64", read(b, o, &Buffer::readUInt64), takeFixed(m, o, 8)),
        ZRP_STEP("readInt8", read(b, o, &Buffer::readInt8), takeFixed(m, o, 1)),
        ZRP_STEP("readInt32", read(b, o, &Buffer::readInt32), takeFixed(m, o, 4)),
        ZRP_STEP("readInt64", read(b, o, &Buffer::readInt64), takeFixed(m, o, 8)),
        ZRP_STEP("readVarUInt16", read(b, o, &Buffer::readVarUInt16), takeVarint(m, o, 2)),
        ZRP_STEP("readVarUInt32", read(b, o, &Buffer::readVarUInt32), takeVarint(m, o, 4)),
        ZRP_STEP("readVarUInt64", read(b, o, &Buffer::readVarUInt64), takeVarint64(m, o)),
        ZRP_STEP("readVarInt32", read(b, o, &Buffer::readVarInt32), takeSignedVarint(m, o, 4)),
        ZRP_STEP("readVarInt64", read(b, o, &Buffer::readVarInt64), takeSignedVarint(m, o, 8)),
        ZRP_STEP("readBytes", b.readBytes(o.run.data(), n), m.takeRun(o.run.data(), n)),
        ZRP_STEP("readBytes into null", b.readBytes(nullptr, n), -8),
        ZRP_STEP("skipForward", b.skipForward(n), m.skip(n)),
        ZRP_STEP("skipUnknownFields", Tags::skipUnknownFields(b, static_cast<int>(typeIdFrom(o))),
            skipValue(m, static_cast<uint32_t>(typeIdFrom(o)))),
        ZRP_STEP("decode_64_var", decode64(b, o), decode64(m, o)),
        ZRP_STEP("tags", tags(o, n), modelTags(o, n)),
        ZRP_STEP("position", (b.position = place(o.value, b.length), 0), (m.used = place(o.value, m.size), 0)),
        ZRP_STEP("set", (b.set(b.beginPtr, b.length), 0), (m.used = 0, 0)),
    };
    // clang-format on
#undef ZRP_STEP

    Bytes bytes_;
    Buffer buffer_;
    Model model_;
};

}  // namespace zrp_fuzz
