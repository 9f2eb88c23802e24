#include "protocol/codec/commands.h"

namespace quorva_zrp::codec::commands {

namespace {

using Quorva::BrxReadBuf;
using Quorva::BrxTLVUtil;

class CommandReader {
  public:
    CommandReader(BrxReadBuf& input, bool varint, ZRPCommands& found)
        : in_(input), varint_(varint), found_(found) {}

    /// All the input: the fields of a TZRPHead, or of a frame with this body.
    int read(Body body) {
        return body == Body::none ? readHead(in_.length) : readFrame(in_.length, body);
    }

  private:
    BrxReadBuf& in_;
    bool varint_;
    ZRPCommands& found_;

    /// Reads tags until `length` bytes are consumed, and gives each to `readValue`.
    template <class ReadValue>
    int readFields(uint64_t length, ReadValue readValue) {
        const uint64_t end = in_.position + length;
        while (in_.position < end) {
            uint32_t tag = 0;
            int result = in_.readVarUInt32(tag);
            if (result == 0) {
                result = readValue(tag);
            }
            if (result != 0) {
                return result;
            }
        }
        return in_.position == end ? 0 : int{Quorva::BRX_ERR_LENGTH_MISMATCH};
    }

    int readFrame(uint64_t length, Body body) {
        return readFields(length, [&](uint32_t tag) {
            switch (BrxTLVUtil::getFieldId(tag)) {
                case HeadField::number():
                    return readNested([&](uint32_t size) { return readHead(size); });
                case BodyField::number():
                    return body == Body::rawBytes
                               ? skip(wireDelimited)
                               : readNested([&](uint32_t size) {
                                     return readMember<TZRPBody>(size, found_.hasBody, found_.body);
                                 });
                default:
                    return skip(tag);
            }
        });
    }

    int readHead(uint64_t length) {
        return readFields(length, [&](uint32_t tag) {
            switch (BrxTLVUtil::getFieldId(tag)) {
                case BaseField::number():
                    return readNested([&](uint32_t size) { return readBase(size); });
                case ExtensionField::number():
                    return readNested([&](uint32_t size) {
                        return readMember<TZRPExtHead>(size, found_.hasExtension, found_.extension);
                    });
                default:
                    return skip(tag);
            }
        });
    }

    int readBase(uint32_t length) {
        TZRPBase base = TZRPBase();
        const int result =
            varint_ ? base.unpackTLVWithVarint(in_, length) : base.unpackTLVNoVarint(in_, length);
        if (result == 0 && base.has_Command()) {
            found_.hasBase = true;
            found_.base = base.wCommand;
        }
        return result;
    }

    /// Steps over the one member of a union. Like decoders this goes by the member's number alone,
    /// whatever its wire type says, and leaves the rest of the union to what holds it.
    template <class Union>
    int readMember(uint32_t length, bool& isThere, uint32_t& number) {
        const size_t start = in_.position;
        uint32_t tag = 0;
        int result = in_.readVarUInt32(tag);
        if (result == 0) {
            result = skip(withField<Union>(
                BrxTLVUtil::getFieldId(tag), [&](auto member) { return member.tag(varint_); },
                [&] { return tag; }));
        }
        if (result == 0 && in_.position - start > length) {
            result = Quorva::BRX_ERR_LENGTH_MISMATCH;
        }
        if (result == 0) {
            isThere = true;
            number = BrxTLVUtil::getFieldId(tag);
        }
        return result;
    }

    template <class Read>
    int readNested(Read read) {
        uint32_t length = 0;
        const int result = in_.readUInt32(length);
        return result != 0 ? result : read(length);
    }

    /// Steps over a value by the wire type of a tag.
    int skip(uint32_t tag) {
        return BrxTLVUtil::skipUnknownFields(in_, static_cast<int>(BrxTLVUtil::getTypeId(tag)));
    }
};

int differences(const ZRPCommands& found) {
    const auto fitsBase = [&](uint32_t number) {
        return number <= UINT16_MAX && (!found.hasBase || number == found.base);
    };
    int differ = 0;
    if (found.hasExtension && !fitsBase(found.extension)) {
        differ += ZRP_DIFFER_BASE_EXTENSION;
    }
    if (found.hasBody && !fitsBase(found.body)) {
        differ += ZRP_DIFFER_BASE_BODY;
    }
    if (found.hasExtension && found.hasBody && found.extension != found.body) {
        differ += ZRP_DIFFER_EXTENSION_BODY;
    }
    return differ;
}

}  // namespace

int readCommands(const char* buffer, size_t size, Body body, ZRPCommands& found) {
    found = ZRPCommands();
    Envelope envelope{};
    if (const int result = readEnvelope(buffer, size, envelope); result != 0) {
        return result;
    }
    if (envelope.bodyLength > size - envelopeSize) {
        return Quorva::BRX_ERR_LENGTH_MISMATCH;  // a declared length below that of the envelope
    }
    BrxReadBuf fields(buffer + envelopeSize, static_cast<size_t>(envelope.bodyLength));
    const int result = CommandReader(fields, envelope.varint, found).read(body);
    return result != 0 ? result : differences(found);
}

}  // namespace quorva_zrp::codec::commands
