/// \file quorva_zrp_validate.h
/// Whether a message is sound, and whether a frame arrived with one command: two extras beside the
/// operations of quorva_zrp.h, for receivers. What was decoded is a peer's word: a count may exceed
/// its array, a selector may name no member. Encoders and printers refuse what they cannot handle,
/// but they meet it late and do not say where.
///
///     int result = frame.unpackTLV(bytes, size, &used);
///     if (result == 0) {
///         result = validate(frame, path, sizeof(path));
///     }
///     if (result == 0) {
///         result = commandsOfInFrame(bytes, size, nullptr);
///     }
///     if (result != 0) {
///         ...  // drop the frame, or the peer
///     }
///
/// Nothing here throws, allocates, does input or output, keeps state, or changes a message.
#ifndef QUORVA_ZRP_VALIDATE_H
#define QUORVA_ZRP_VALIDATE_H

#include <stddef.h>
#include <stdint.h>

#include "quorva_zrp.h"

namespace quorva_zrp {

// --- Sound messages -----------------------------------------------------------------------------

/// Bytes that hold the longest path and its NUL.
constexpr size_t ZRP_PATH_SIZE = 68;

// `validate` looks at what encoders and printers look at, in their order, through all nesting:
//
// - every count is within its array's capacity, every flag 0 or 1: else BRX_ERR_REFER_TOO_BIG;
// - every selector names a member: else BRX_ERR_BAD_SELECTOR;
// - every text has a NUL within its capacity: else BRX_ERR_TEXT_TOO_LONG.
//
// Members that no selector chooses and optional structures whose flag is 0 do not travel and may
// hold anything. The result is 0 exactly when encoding into a large enough buffer succeeds, else
// the code that encoding gives; a message with result 0 prints safely, too. The presence word plays
// no part: a field that did not arrive holds what it held, and is judged like any other.
//
// Up to `pathSize` bytes at `path` receive the way from the message to the field that is to blame,
// as "stHead.stExtend.stSyn.stAccount.stValue": cut short where it does not fit, always ended by a
// NUL. It names the text, array, optional structure or union; a wrong count, flag or selector lies
// in the field that governs it, which the comments of quorva_zrp.h name. The path is empty for a
// result of 0, and for a union whose own `selector` argument is to blame. Nothing is written where
// `path` is null or `pathSize` is 0.

#define ZRP_VALIDATE_STRUCTURE(Type) \
    int validate(const Type& message, char* path = nullptr, size_t pathSize = 0)
#define ZRP_VALIDATE_UNION(Type) \
    int validate(const Type& message, long long selector, char* path = nullptr, size_t pathSize = 0)

ZRP_VALIDATE_STRUCTURE(TZRPBase);
ZRP_VALIDATE_STRUCTURE(TVESKRawDHReq);
ZRP_VALIDATE_STRUCTURE(TVESKRawDHRsp);
ZRP_VALIDATE_STRUCTURE(TVESKEncDHInfo);
ZRP_VALIDATE_STRUCTURE(TVESKKey);
ZRP_VALIDATE_UNION(TZRPKeyReq);
ZRP_VALIDATE_UNION(TZRPKeyRsp);
ZRP_VALIDATE_UNION(TVESKIDValue);
ZRP_VALIDATE_STRUCTURE(TVESKAccount);
ZRP_VALIDATE_STRUCTURE(TVESKAuthData);
ZRP_VALIDATE_STRUCTURE(O2AuthData);
ZRP_VALIDATE_STRUCTURE(TZRPAuthReqBody);
ZRP_VALIDATE_STRUCTURE(TZRPAuthRspBody);
ZRP_VALIDATE_STRUCTURE(TZRPAckBody);
ZRP_VALIDATE_STRUCTURE(TZRPAuthRefreshReq);
ZRP_VALIDATE_STRUCTURE(TZRPAuthRefreshNotifyBody);
ZRP_VALIDATE_STRUCTURE(TZRPRelay);
ZRP_VALIDATE_STRUCTURE(TZRPRelayReqBody);
ZRP_VALIDATE_STRUCTURE(SpecifyZoneRouteInfo);
ZRP_VALIDATE_STRUCTURE(SpecifyServerRouteInfo);
ZRP_VALIDATE_STRUCTURE(SpecifyNameRouteInfo);
ZRP_VALIDATE_UNION(TZRPRouteInfo);
ZRP_VALIDATE_STRUCTURE(TZRPRouteChangeBody);
ZRP_VALIDATE_STRUCTURE(TZRPSynHead);
ZRP_VALIDATE_STRUCTURE(TZRPAckHead);
ZRP_VALIDATE_STRUCTURE(TZRPBingoBody);
ZRP_VALIDATE_STRUCTURE(TZRPDataHead);
ZRP_VALIDATE_STRUCTURE(TZRPWaitBody);
ZRP_VALIDATE_STRUCTURE(TZRPCStopBody);
ZRP_VALIDATE_STRUCTURE(TZRPSStopBody);
ZRP_VALIDATE_UNION(TZRPExtHead);
ZRP_VALIDATE_UNION(TZRPBody);
ZRP_VALIDATE_STRUCTURE(TZRPHead);
/// Deliberate: any dwBodyLen passes, as it does for the encoder. Only the caller knows how many
/// bytes lie behind the record; `validateWithBody` asks.
ZRP_VALIDATE_STRUCTURE(TZRPFrame);
ZRP_VALIDATE_STRUCTURE(TZRPInFrame);

#undef ZRP_VALIDATE_STRUCTURE
#undef ZRP_VALIDATE_UNION

/// As `validate`, and BRX_ERR_REFER_TOO_BIG at "szBody" when dwBodyLen is above `bodySize`, the
/// bytes that the caller has behind the record: the encoder would read on.
int validateWithBody(const TZRPFrame& frame, size_t bodySize, char* path = nullptr,
                     size_t pathSize = 0);

// --- One command per frame ----------------------------------------------------------------------

/// The command as the parts of an encoded frame state it. Decoding keeps one of the three: each
/// union that arrives overwrites `wCommand` with the number of its member.
struct ZRPCommands {
    bool hasBase;        ///< whether a base header with a wCommand was met
    bool hasExtension;   ///< whether a head extension was met
    bool hasBody;        ///< whether a body was met
    uint16_t base;       ///< wCommand of the base header, 0 without one
    uint32_t extension;  ///< field number of the extension's member, 0 without one
    uint32_t body;       ///< field number of the body's member, 0 without one
};

// Which parts state different commands: results of the functions below, added up.
constexpr int ZRP_DIFFER_BASE_EXTENSION = 1;
constexpr int ZRP_DIFFER_BASE_BODY = 2;
constexpr int ZRP_DIFFER_EXTENSION_BODY = 4;

// Each compares the command in the parts of an encoded message, envelope included, and stores what
// they state in `*commands` (may be null). Use them on bytes that decode.
//
// - 0: the parts that were met agree. A part that is missing agrees with everything; the presence
//   bits, or `*commands`, tell.
// - Above 0: the ZRP_DIFFER_... values of all pairs that disagree. A member number past 16 bits
//   disagrees with the base header even where that is missing: wCommand cannot hold it, and
//   decoding leaves another number there.
// - Below 0: the bytes cannot be followed so far: BRX_ERR_NULL_ARG, _NO_DATA, _BAD_MAGIC,
//   _LENGTH_MISMATCH, _BAD_TYPE_ID, with what was met until then in `*commands`. Bytes that decode
//   never give these.
//
// Parts are found as decoders find them: in any order, among unknown fields, the last of several
// counts. Within extension and body nothing but the number of the member is looked at; whether that
// number is a command is a matter for `validate`. Any bytes may be given: no byte past `size` or
// past the declared length is looked at, and the time taken is at most in proportion to them.

/// For bytes that decode as TZRPHead; there is no body.
int commandsOfHead(const char* buffer, size_t size, ZRPCommands* commands);

/// For a frame whose body is raw bytes, as TZRPFrame writes it: the body is stepped over and states
/// nothing.
int commandsOfFrame(const char* buffer, size_t size, ZRPCommands* commands);

/// For bytes that decode as TZRPInFrame.
int commandsOfInFrame(const char* buffer, size_t size, ZRPCommands* commands);

}  // namespace quorva_zrp

#endif  // QUORVA_ZRP_VALIDATE_H
