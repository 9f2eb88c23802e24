// Taking an encoded frame apart without decoding it: how a receiver gets at a raw body.
//
// The message layer has two records for a frame. TZRPInFrame decodes a body of this protocol.
// TZRPFrame sends a body of raw bytes, and is of no use for receiving one: it has no room for the
// body, so its decoder stores nothing and then takes the first body byte for the next tag. Handing
// a frame with a raw body to either decoder therefore reads the body as fields, which at best
// fails. So a receiver that knows raw bodies does not decode the whole frame. It
//
//   1. calls `viewFrame`, which walks the two top-level tags and finds where head and body lie,
//   2. calls `decodeHead`, which decodes the head's bytes and nothing else,
//   3. looks at `stBase.wCommand`: for ZRP_CMD_DATA the bytes of `FrameView::body` are the body;
//      for any other command the whole frame is decoded as TZRPInFrame.
//
// Everything here only reads, only within the bytes given, and copies nothing.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <span>

#include "protocol/quorva_zrp.h"

namespace conversation {

constexpr size_t envelopeSize = 5;  ///< the flavour byte and the 4-byte total length
constexpr uint8_t magicVarint = 0xAA;
constexpr uint8_t magicFixed = 0x99;

/// Where the parts of an encoded frame lie: views into the encoded bytes, valid as long as those.
struct FrameView {
    bool varint = false;  ///< the flavour that the first byte names
    bool hasHead = false;
    bool hasBody = false;        ///< false for an empty body, which is not sent at all
    std::span<const char> head;  ///< fields of TZRPHead, without tag and length
    std::span<const char> body;  ///< the body itself, without tag and length
};

namespace body_view_detail {

/// Reads a 4-byte length and steps over that many bytes, which become `value`.
[[nodiscard]] inline int takeDelimited(Quorva::BrxReadBuf& from, std::span<const char>& value) {
    uint32_t length = 0;
    int result = from.readUInt32(length);
    if (result != 0) {
        return result;
    }
    const size_t begin = from.position;
    result = from.skipForward(length);  // refuses a length above what is left
    if (result != 0) {
        return result;
    }
    value = std::span<const char>(from.beginPtr + begin, length);
    return 0;
}

/// What `viewFrame` does, but for a view that was emptied before and may hold anything on failure.
[[nodiscard]] inline int findParts(std::span<const char> encoded, FrameView& view) {
    if (encoded.size() < envelopeSize) {
        return Quorva::BRX_ERR_NO_DATA;
    }
    // These two reads cannot fail: 5 bytes are there.
    Quorva::BrxReadBuf envelope(encoded.data(), encoded.size());
    uint8_t magic = 0;
    uint32_t declared = 0;
    (void)envelope.readUInt8(magic);
    (void)envelope.readUInt32(declared);
    if (magic != magicVarint && magic != magicFixed) {
        return Quorva::BRX_ERR_BAD_MAGIC;
    }
    if (declared > encoded.size()) {
        return Quorva::BRX_ERR_NO_DATA;
    }
    if (declared < envelopeSize) {
        return Quorva::BRX_ERR_LENGTH_MISMATCH;
    }

    view.varint = magic == magicVarint;
    Quorva::BrxReadBuf fields(encoded.data() + envelopeSize, declared - envelopeSize);
    while (fields.position < fields.length) {
        uint32_t tag = 0;
        int result = fields.readVarUInt32(tag);  // tags are varints in both flavours
        if (result != 0) {
            return result;
        }
        switch (Quorva::BrxTLVUtil::getFieldId(tag)) {
            case 1:
                result = takeDelimited(fields, view.head);
                view.hasHead = true;
                break;
            case 2:
                result = takeDelimited(fields, view.body);
                if (result == 0 && view.body.empty()) {
                    result = Quorva::BRX_ERR_ZERO_LENGTH;
                }
                view.hasBody = true;
                break;
            default:
                result = Quorva::BrxTLVUtil::skipUnknownFields(
                    fields, static_cast<int>(Quorva::BrxTLVUtil::getTypeId(tag)));
                break;
        }
        if (result != 0) {
            return result;
        }
    }
    return 0;
}

}  // namespace body_view_detail

/// Finds head and body in the encoded frame at the front of `encoded`; bytes after the frame are
/// left alone. Like the decoders it goes by field numbers alone, steps over fields it does not
/// know, and lets the last of several occurrences win. Unlike them it never looks past the declared
/// length. Returns 0 or one of the codes of the decoders: BRX_ERR_NO_DATA (fewer than
/// 5 bytes, fewer than declared, a tag or value that ends too late), BRX_ERR_BAD_MAGIC,
/// BRX_ERR_LENGTH_MISMATCH (a declared length below 5), BRX_ERR_ZERO_LENGTH (a body of length 0,
/// which no encoder writes), BRX_ERR_BAD_TYPE_ID. On failure `view` is empty.
[[nodiscard]] inline int viewFrame(std::span<const char> encoded, FrameView& view) {
    view = FrameView();
    const int result = body_view_detail::findParts(encoded, view);
    if (result != 0) {
        view = FrameView();
    }
    return result;
}

/// Decodes the head that `viewFrame` found; a frame without a head leaves `head` as constructed.
/// Which extension will come is not known beforehand, so none can be constructed: fields of it that
/// do not come hold what the memory held. Zero the record first where that could be anything.
/// The cursor is confined to the head's bytes, so a damaged head cannot read into the body: where
/// the decoder of the whole frame would report BRX_ERR_LENGTH_MISMATCH it is BRX_ERR_NO_DATA here.
[[nodiscard]] inline int decodeHead(const FrameView& view, quorva_zrp::TZRPHead& head) {
    const int result = head.construct();
    if (result != 0 || !view.hasHead) {
        return result;
    }
    Quorva::BrxReadBuf fields(view.head.data(), view.head.size());
    return view.varint ? head.unpackTLVWithVarint(fields, view.head.size())
                       : head.unpackTLVNoVarint(fields, view.head.size());
}

}  // namespace conversation
