#include "tests/validate/commands_reference.h"

#include "tests/oracle/oracle.h"
#include "tests/oracle/record.h"

namespace zrp_test {

using zrp_oracle::InputCursor;

namespace {

/// Goes along the tags of frame and head itself, and leaves everything below to the oracle.
class Reference {
  public:
    Reference(InputCursor& in, bool varint) : in_(in), varint_(varint) {}

    quorva_zrp::ZRPCommands found{};

    bool takeFrame(uint64_t length, FrameBody body) {
        return takeFields(length, [&](uint64_t number, uint64_t typeId) {
            if (number == 1) {
                uint64_t size = 0;
                return takeLength(size) && takeHead(size);
            }
            if (number == 2 && body == FrameBody::member) {
                return takeMember(zrp_oracle::typeTZRPBody, found.hasBody, found.body);
            }
            return skip(number == 2 ? 5 : typeId);
        });
    }

    bool takeHead(uint64_t length) {
        return takeFields(length, [&](uint64_t number, uint64_t typeId) {
            if (number == 1) {
                return takeBase();
            }
            if (number == 2) {
                return takeMember(zrp_oracle::typeTZRPExtHead, found.hasExtension, found.extension);
            }
            return skip(typeId);
        });
    }

  private:
    InputCursor& in_;
    bool varint_;

    template <class TakeValue>
    bool takeFields(uint64_t length, TakeValue takeValue) {
        const uint64_t end = in_.used + length;
        while (in_.used < end) {
            uint64_t tag = 0;
            if (in_.takeVarint(tag, 32) != 0 || !takeValue(tag / 16, tag % 16)) {
                return false;
            }
        }
        return in_.used == end;
    }

    bool takeLength(uint64_t& length) { return in_.takeBigEndian(length, 4) == 0; }

    bool takeBase() {
        quorva_zrp::TZRPBase base{};
        uint64_t length = 0;
        if (!takeLength(length) || zrp_oracle::unpackFields(zrp_oracle::typeTZRPBase, &base,
                                                            nullptr, in_, length, varint_) != 0) {
            return false;
        }
        if (base.has_Command()) {
            found.hasBase = true;
            found.base = base.wCommand;
        }
        return true;
    }

    bool takeMember(const zrp_oracle::Type& type, bool& isThere, uint32_t& number) {
        Bytes value(type.size);
        long long selector = 0;
        uint64_t length = 0;
        if (!takeLength(length) ||
            zrp_oracle::unpackFields(type, value.data(), &selector, in_, length, varint_) != 0) {
            return false;
        }
        isThere = true;
        number = static_cast<uint32_t>(selector);
        return true;
    }

    bool skip(uint64_t typeId) {
        uint64_t value = 0;
        if (typeId == 0) {
            (void)in_.takeVarint(value, 64);  // a varint that is cut short does not move
            return true;
        }
        if (typeId == 5) {
            return takeLength(value) && in_.skip(value) == 0;
        }
        return typeId < 5 && in_.skip(size_t{1} << (typeId - 1)) == 0;
    }
};

}  // namespace

StatedCommands statedCommands(const Bytes& encoded, FrameBody body) {
    InputCursor envelope(encoded.data(), encoded.size());
    uint64_t magic = 0;
    uint64_t declared = 0;
    if (envelope.takeBigEndian(magic, 1) != 0 || envelope.takeBigEndian(declared, 4) != 0 ||
        (magic != zrp_oracle::varintMagic && magic != zrp_oracle::fixedMagic) || declared < 5 ||
        declared > encoded.size()) {
        return {false, {}};
    }
    InputCursor in(encoded.data(), declared);
    in.used = 5;
    Reference reference(in, magic == zrp_oracle::varintMagic);
    const bool isReadable = body == FrameBody::none ? reference.takeHead(declared - 5)
                                                    : reference.takeFrame(declared - 5, body);
    return {isReadable, reference.found};
}

int expectedDifferences(const quorva_zrp::ZRPCommands& stated) {
    const auto differsFromBase = [&](bool isThere, uint32_t number) {
        return isThere && (number > 0xFFFF || (stated.hasBase && stated.base != number));
    };
    return (differsFromBase(stated.hasExtension, stated.extension) ? 1 : 0) +
           (differsFromBase(stated.hasBody, stated.body) ? 2 : 0) +
           (stated.hasExtension && stated.hasBody && stated.extension != stated.body ? 4 : 0);
}

}  // namespace zrp_test
