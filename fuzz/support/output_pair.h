// A BrxWriteBuf and its model: the same operation is done on both, and both must look the same.
#pragma once

#include <array>
#include <iterator>
#include <string>

#include "Common/Source/Core/BRX/BrxBuf.h"
#include "fuzz/support/input.h"
#include "fuzz/support/require.h"
#include "tests/oracle/cursor.h"

namespace zrp_fuzz {

class OutputPair {
  public:
    /// One byte of the input says how much memory there is, and whether there is any.
    explicit OutputPair(Input& input) : OutputPair(input.byte()) {}

    /// Does what the next bytes of the input say.
    void step(Input& input) {
        const Operation& operation = operations[input.choice(std::size(operations))];
        const uint64_t value = input.integer();
        const uint8_t form = input.byte();
        // Mostly near the sizes in use, sometimes as large as a size can be.
        const size_t number = form < 0xF0 ? form % 80 : SIZE_MAX - (0xFF - form);
        const int result = operation.onBuffer(buffer_, value, number);
        const int expected = operation.onModel(model_, value, number);
        require(result == expected && looksTheSame(), operation.name, ' ', value, ' ', number,
                " gives ", result, " and position ", buffer_.position, ", expected ", expected,
                " and ", model_.used, "\n  ", shown(memory_), "\n  ", shown(modelMemory_));
    }

  private:
    using Buffer = Quorva::BrxWriteBuf;
    using Model = zrp_oracle::OutputCursor;

    struct Operation {
        const char* name;
        int (*onBuffer)(Buffer& buffer, uint64_t value, size_t number);
        int (*onModel)(Model& model, uint64_t value, size_t number);
    };

    explicit OutputPair(uint8_t sizeByte)
        : memory_(sizeByte % 64, '\xC7'),
          modelMemory_(memory_),
          buffer_(sizeByte < 0xF0 ? begin(memory_) : nullptr, memory_.size()),
          model_(sizeByte < 0xF0 ? begin(modelMemory_) : nullptr, modelMemory_.size()) {}

    /// Memory of size 0 is memory all the same.
    static char* begin(Bytes& bytes) {
        static char none = 0;
        return bytes.empty() ? &none : bytes.data();
    }

    bool looksTheSame() const {
        return buffer_.position == model_.used && buffer_.length == model_.size &&
               buffer_.getUsedSize() == model_.used && buffer_.getTotalSize() == model_.size &&
               (buffer_.getBeginPtr() == nullptr) == (model_.bytes == nullptr) &&
               !buffer_.ownsMemory && memory_ == modelMemory_;
    }

    template <class Integer>
    static Integer cut(uint64_t value) {
        return static_cast<Integer>(value);
    }

    /// 0, -1, 1, -2 become 0, 1, 2, 3.
    static uint64_t zigzag(int64_t value) {
        return value >= 0 ? static_cast<uint64_t>(value) * 2
                          : static_cast<uint64_t>(-(value + 1)) * 2 + 1;
    }

    static constexpr size_t sourceSize = 80;
    static const char* source() {
        static const char bytes[sourceSize + 1] =
            "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ!?,.-+*/()[]{}<>=%";
        return bytes;
    }

    /// A run inside the memory written into.
    static size_t runStart(uint64_t value, size_t size) {
        return static_cast<size_t>(value % (size + 1));
    }
    static size_t runSize(uint64_t value, size_t number, size_t size) {
        return std::min(number, size - runStart(value, size));
    }

    static int writeText(Model& model, const std::string& text) { return model.putText(text); }

    static int putByteAt(Model& model, uint8_t value, size_t place) {
        if (place >= model.size) {
            return -1;
        }
        model.bytes[place] = static_cast<char>(value);
        return 0;
    }

    static int putOwnRun(Model& model, uint64_t value, size_t number) {
        if (model.bytes == nullptr) {
            return -8;
        }
        const std::string run(model.bytes + runStart(value, model.size),
                              runSize(value, number, model.size));
        return model.putRun(run.data(), run.size());
    }

#define ZRP_STEP(name, onBuffer, onModel)                               \
    {                                                                   \
        name,                                                           \
            []([[maybe_unused]] Buffer& b, [[maybe_unused]] uint64_t v, \
               [[maybe_unused]] size_t n) -> int { return onBuffer; },  \
            []([[maybe_unused]] Model& m, [[maybe_unused]] uint64_t v,  \
               [[maybe_unused]] size_t n) -> int { return onModel; }    \
    }

    // clang-format off
    static constexpr Operation operations[] = {
        ZRP_STEP("reserve", b.reserve(n), m.skip(n)),
        ZRP_STEP("writeUInt8", b.writeUInt8(cut<uint8_t>(v)), m.putByte(cut<uint8_t>(v))),
        ZRP_STEP("writeUInt16", b.writeUInt16(cut<uint16_t>(v)), m.putBigEndian(v, 2)),
        ZRP_STEP("writeUInt32", b.writeUInt32(cut<uint32_t>(v)), m.putBigEndian(v, 4)),
        ZRP_STEP("writeUInt64", b.writeUInt64(v), m.putBigEndian(v, 8)),
        ZRP_STEP("writeInt8", b.writeInt8(cut<int8_t>(v)), m.putByte(cut<uint8_t>(v))),
        ZRP_STEP("writeInt32", b.writeInt32(cut<int32_t>(v)), m.putBigEndian(v, 4)),
        ZRP_STEP("writeInt64", b.writeInt64(cut<int64_t>(v)), m.putBigEndian(v, 8)),
        ZRP_STEP("writeVarUInt16", b.writeVarUInt16(cut<uint16_t>(v)), m.putVarint(cut<uint16_t>(v))),
        ZRP_STEP("writeVarUInt32", b.writeVarUInt32(cut<uint32_t>(v)), m.putVarint(cut<uint32_t>(v))),
        ZRP_STEP("writeVarUInt64", b.writeVarUInt64(v), m.putVarint(v)),
        ZRP_STEP("writeVarInt32", b.writeVarInt32(cut<int32_t>(v)), m.putVarint(zigzag(cut<int32_t>(v)))),
        ZRP_STEP("writeVarInt64", b.writeVarInt64(cut<int64_t>(v)), m.putVarint(zigzag(cut<int64_t>(v)))),
        ZRP_STEP("writeCharWithNull", b.writeCharWithNull(cut<char>(v)), m.putCharAndNul(cut<char>(v))),
        ZRP_STEP("writeBytes", b.writeBytes(source(), n), m.putRun(source(), n)),
        ZRP_STEP("writeBytes of null", b.writeBytes(nullptr, n), -8),
        ZRP_STEP("writeBytes of its own memory",
            b.writeBytes(b.beginPtr == nullptr ? nullptr : b.beginPtr + runStart(v, b.length), runSize(v, n, b.length)),
            putOwnRun(m, v, n)),
        ZRP_STEP("writeUInt8 at", b.writeUInt8(cut<uint8_t>(v), n), putByteAt(m, cut<uint8_t>(v), n)),
        ZRP_STEP("writeChar at", b.writeChar(cut<char>(v), n), putByteAt(m, cut<uint8_t>(v), n)),
        ZRP_STEP("writeUInt32 at", b.writeUInt32(cut<uint32_t>(v), n), m.putLengthAt(n, cut<uint32_t>(v))),
        ZRP_STEP("textize %d", b.textize("%d", cut<int>(v)), writeText(m, std::to_string(cut<int>(v)))),
        ZRP_STEP("textize %s|%c", b.textize("%.*s|%c", static_cast<int>(n % sourceSize), source(), 'x'),
            writeText(m, std::string(source(), n % sourceSize) + "|x")),
        ZRP_STEP("position", (b.position = runStart(v, b.length), 0), (m.used = runStart(v, m.size), 0)),
        ZRP_STEP("_set", (b._set(b.beginPtr, b.length), 0), (m.used = 0, 0)),
    };
    // clang-format on
#undef ZRP_STEP

    Bytes memory_;
    Bytes modelMemory_;
    Buffer buffer_;
    Model model_;
};

}  // namespace zrp_fuzz
