/// \file quorva_zrp.h
/// Every message of the connection protocol between a game client and an access server: 29
/// structures and 6 unions, with their constants. This is the only header a user needs.
///
/// A message is a plain record: standard layout, trivially copyable, everything inline. A sender
/// runs `construct()` on it, and on each union for its selector, before first use. A receiver
/// zeroes it as well (`TZRPInFrame frame = TZRPInFrame();`), since decoding constructs nothing: a
/// member that a peer selects but leaves half empty keeps what the memory held. On the wire each
/// field travels as a tag (its number and wire type) and a value; two flavours of the stream exist,
/// told apart by their first byte: with varints (0xAA) and with fixed-width integers (0x99).
/// Decoders accept both.
///
/// What was decoded is a peer's word. A count may exceed its array, a selector may name a member
/// that did not arrive (fields come in any order) or none at all, and the head and the body of a
/// frame may have been sent for different commands; encoders and printers refuse what they cannot
/// handle, but for the `dwBodyLen` of a TZRPFrame, which they trust. Object and buffer must not
/// overlap.
///
/// Results are 0 or one of the negative `Quorva::BRX_ERR_...` codes of BrxBuf.h. Nothing throws,
/// allocates, does input or output, or keeps state; calls on different objects may run on different
/// threads at once.
#ifndef QUORVA_ZRP_H
#define QUORVA_ZRP_H

#include <stddef.h>
#include <stdint.h>

#include "../Common/Source/Core/BRX/BrxBuf.h"

namespace quorva_zrp {

// --- Command codes ------------------------------------------------------------------------------
// `TZRPBase::wCommand` decides which head extension and which body a frame carries. The high byte
// groups one exchange; the low byte is 1 for the client's message of it and 2 for the server's, but
// for data, which both send.
//
//                                                       head extension       body
constexpr uint16_t ZRP_CMD_NULL = 0;                      // chNull               chNull
constexpr uint16_t ZRP_CMD_SYN = 0x1001;                  // stSyn                chSyn
constexpr uint16_t ZRP_CMD_ACK = 0x1002;                  // stAck                stAck
constexpr uint16_t ZRP_CMD_AUTH_REQ = 0x2001;             // chAuthReq            stAuthReq
constexpr uint16_t ZRP_CMD_AUTH_RSP = 0x2002;             // chAuthRsp            stAuthRsp
constexpr uint16_t ZRP_CMD_WAIT = 0x3002;                 // chWait               stWait
constexpr uint16_t ZRP_CMD_DATA = 0x4013;                 // stData               chData
constexpr uint16_t ZRP_CMD_CSTOP = 0x5001;                // chCStop              stCStop
constexpr uint16_t ZRP_CMD_SSTOP = 0x5002;                // chSStop              stSStop
constexpr uint16_t ZRP_CMD_BINGO = 0x6002;                // chBingo              stBingo
constexpr uint16_t ZRP_CMD_AUTH_REFRESH_REQ = 0x7001;     // chAuthRefreshReq     stAuthRefreshReq
constexpr uint16_t ZRP_CMD_AUTH_REFRESH_NOTIFY = 0x7002;  // chAuthRefreshNotify stAuthRefreshNotify
constexpr uint16_t ZRP_CMD_ROUTE_CHANGE = 0x8002;         // chRouteChange        stRouteChange

// --- Selectors of the smaller unions ------------------------------------------------------------

// Key methods: `bKeyMethod` of both handshake heads. The request has no member for KEY_VALUE.
constexpr uint8_t ZRP_KEY_NONE = 0;    ///< chNull in both
constexpr uint8_t ZRP_KEY_VALUE = 2;   ///< stKey, answer only
constexpr uint8_t ZRP_KEY_RAW_DH = 3;  ///< stReqByRawDH, stRspByRawDH
constexpr uint8_t ZRP_KEY_ENC_DH = 4;  ///< stReqByEncDH, stRspByEncDH

// Account formats: `bFormat` of TVESKAccount.
constexpr uint8_t ZRP_FORMAT_NULL = 0;    ///< chNull
constexpr uint8_t ZRP_FORMAT_UINT32 = 1;  ///< dwUINT32
constexpr uint8_t ZRP_FORMAT_UINT64 = 2;  ///< ullUINT64
constexpr uint8_t ZRP_FORMAT_STRING = 3;  ///< szSTRING

// Route flags: `bRouteFlag` of TZRPSynHead and TZRPDataHead.
constexpr uint8_t ZRP_ROUTE_NONE = 0;            ///< chNull
constexpr uint8_t ZRP_ROUTE_ZONE = 1;            ///< stSpecifyZone
constexpr uint8_t ZRP_ROUTE_SERVER = 2;          ///< stSpecifyServer
constexpr uint8_t ZRP_ROUTE_LOGIN_POSITION = 3;  ///< chLOGINPOSITION
constexpr uint8_t ZRP_ROUTE_NAME = 4;            ///< stSpecifyName

// --- Capacities, in bytes -----------------------------------------------------------------------
// A text of capacity N holds at most N - 1 characters and a NUL.

constexpr size_t ZRP_CAP_DH_VALUE = 64;       ///< Diffie-Hellman public values and modulus
constexpr size_t ZRP_CAP_KEY_VALUE = 128;     ///< TVESKKey::szValue
constexpr size_t ZRP_CAP_ENC_INFO = 1024;     ///< TVESKEncDHInfo::szEncryptedInfo
constexpr size_t ZRP_CAP_AUTH_INFO = 1024;    ///< TVESKAuthData::szAuthInfo
constexpr size_t ZRP_CAP_ATK = 1024;          ///< TZRPAuthRefreshNotifyBody::szAtk
constexpr size_t ZRP_CAP_IDENTITY = 16;       ///< TZRPRelay::szIdentity
constexpr size_t ZRP_CAP_ACCOUNT_TEXT = 256;  ///< TVESKIDValue::szSTRING
constexpr size_t ZRP_CAP_TOKEN_TEXT = 256;    ///< tokens and extension texts
constexpr size_t ZRP_CAP_TOKEN_VERSION = 8;   ///< TZRPAuthReqBody::szXQuorvaTokenVersion
constexpr size_t ZRP_CAP_SERVICE_NAME = 128;  ///< service names

// --- Largest encodings --------------------------------------------------------------------------
// What `getTLVMaxPackedSize` reports, in bytes, envelope included, as constant expressions:
//     char out[TZRPInFrame_MAX_VARINT];
// TZRPFrame counts no body bytes: add dwBodyLen to its sizes when it carries a body.

// clang-format off
#define ZRP_LARGEST(Type, varint, fixed)           \
    constexpr size_t Type##_MAX_VARINT = (varint); \
    constexpr size_t Type##_MAX_FIXED = (fixed)

//          type                       varint  fixed
ZRP_LARGEST(TZRPBase,                      83,    75);
ZRP_LARGEST(TVESKRawDHReq,                159,   158);
ZRP_LARGEST(TVESKRawDHRsp,                 86,    85);
ZRP_LARGEST(TVESKEncDHInfo,              1052,  1051);
ZRP_LARGEST(TVESKKey,                     148,   148);
ZRP_LARGEST(TZRPKeyReq,                  1061,  1060);
ZRP_LARGEST(TZRPKeyRsp,                  1061,  1060);
ZRP_LARGEST(TVESKIDValue,                 270,   270);
ZRP_LARGEST(TVESKAccount,                 308,   305);
ZRP_LARGEST(TVESKAuthData,               1046,  1045);
ZRP_LARGEST(O2AuthData,                   535,   535);
ZRP_LARGEST(TZRPAuthReqBody,              844,   842);
ZRP_LARGEST(TZRPAuthRspBody,              855,   851);
ZRP_LARGEST(TZRPAckBody,                  870,   866);
ZRP_LARGEST(TZRPAuthRefreshReq,            15,    14);
ZRP_LARGEST(TZRPAuthRefreshNotifyBody,   1064,  1061);
ZRP_LARGEST(TZRPRelay,                    213,   208);
ZRP_LARGEST(TZRPRelayReqBody,             232,   226);
ZRP_LARGEST(SpecifyZoneRouteInfo,          25,    23);
ZRP_LARGEST(SpecifyServerRouteInfo,        26,    24);
ZRP_LARGEST(SpecifyNameRouteInfo,         142,   142);
ZRP_LARGEST(TZRPRouteInfo,                151,   151);
ZRP_LARGEST(TZRPRouteChangeBody,           20,    18);
ZRP_LARGEST(TZRPSynHead,                 2702,  2685);
ZRP_LARGEST(TZRPAckHead,                 1108,  1105);
ZRP_LARGEST(TZRPBingoBody,                238,   232);
ZRP_LARGEST(TZRPDataHead,                 178,   178);
ZRP_LARGEST(TZRPWaitBody,                  35,    32);
ZRP_LARGEST(TZRPCStopBody,                 15,    14);
ZRP_LARGEST(TZRPSStopBody,                 25,    23);
ZRP_LARGEST(TZRPExtHead,                 2711,  2694);
ZRP_LARGEST(TZRPBody,                    1073,  1070);
ZRP_LARGEST(TZRPHead,                    2807,  2782);
ZRP_LARGEST(TZRPFrame,                   2825,  2800);
ZRP_LARGEST(TZRPInFrame,                 3893,  3865);
#undef ZRP_LARGEST
// clang-format on

// --- What every type offers ---------------------------------------------------------------------

/// The operations of a structure:
///
/// - `construct` sets every field to its default (0, an empty text, zeroed bytes, a union
///   constructed for its selector, unless the field names another default) and clears the presence
///   word. Always 0.
/// - `packTLV` encodes into the `size` bytes at `buffer`, envelope included, and stores in
///   `*usedSize` (may be null) how many bytes were written, also after a failure. `varint` chooses
///   the flavour. BRX_ERR_NULL_ARG (null buffer or size 0), _NO_ROOM, _TEXT_TOO_LONG (no NUL within
///   capacity), _REFER_TOO_BIG (count above capacity, flag above 1), _BAD_SELECTOR. The presence
///   word plays no part.
/// - `unpackTLV` decodes the envelope at `buffer` and stores in `*usedSize` (may be null) the bytes
///   consumed. Bytes after the declared length are ignored. Fields may come in any order, repeated
///   (the last wins) or not at all (they keep what they held); unknown fields are stepped over.
///   BRX_ERR_NULL_ARG, _NO_DATA, _BAD_MAGIC (these, met on the envelope, touch neither the object
///   nor `*usedSize`), _TEXT_TOO_LONG, _LENGTH_MISMATCH, _BAD_TYPE_ID, _ZERO_LENGTH. After a
///   failure the fields read so far, and their presence bits, stay.
/// - `packTLVWithVarint`, `packTLVNoVarint` and `unpackTLVWithVarint`, `unpackTLVNoVarint` do the
///   same for the fields alone, without envelope, from the buffer's position on; the decoders read
///   until `length` bytes are consumed.
/// - `getTLVMaxPackedSize` stores the largest encoding of the type, envelope included: the constant
///   Type_MAX_VARINT or Type_MAX_FIXED. BRX_ERR_NULL_ARG for a null `size`.
/// - `requiredFieldNum` is 0 for every type; `getLastLostRequiredFields` stores an empty text in
///   `buffer` and returns it, or returns null for a null buffer or a size of 0.
/// - `visualize` prints every field through the functions of `Quorva::BrxBufUtil`: one entry per
///   field at `indent`, nested content one level deeper (at the same level when `indent` is
///   negative), each entry ended by `separator`. It stops at the first failure and adds no NUL of
///   its own. BRX_ERR_NULL_ARG, _NO_ROOM, _REFER_TOO_BIG, _TEXT_TOO_LONG.
/// - `visualize_ex` does the same for direct use in a log call: it always returns a NUL-terminated
///   text, cut short where `visualize` stopped, or "" without a buffer.
///
/// `presence` has one bit per field in declaration order, bit 0 for the first: cleared by
/// `construct()` and at the start of a decode, set when a decode meets the field (even if its value
/// then fails), ignored by encoders. Each field X has `has_X()`, which reads its bit, and
/// `set_has_X()`, which sets it.
#define ZRP_STRUCTURE_OPERATIONS                                                               \
    int construct();                                                                           \
    int packTLV(char* buffer, size_t size, size_t* usedSize, bool varint) const;               \
    int packTLVWithVarint(Quorva::BrxWriteBuf& buf) const;                                     \
    int packTLVNoVarint(Quorva::BrxWriteBuf& buf) const;                                       \
    int unpackTLV(const char* buffer, size_t size, size_t* usedSize);                          \
    int unpackTLVWithVarint(Quorva::BrxReadBuf& buf, size_t length);                           \
    int unpackTLVNoVarint(Quorva::BrxReadBuf& buf, size_t length);                             \
    int getTLVMaxPackedSize(size_t* size, bool varint) const;                                  \
    int requiredFieldNum() const;                                                              \
    char* getLastLostRequiredFields(char* buffer, size_t size) const;                          \
    int visualize(Quorva::BrxWriteBuf& buf, int indent, char separator) const;                 \
    int visualize(char* buf, size_t size, size_t* used, int indent, char separator) const;     \
    const char* visualize_ex(Quorva::BrxWriteBuf& buf, int indent, char separator) const;      \
    const char* visualize_ex(char* buf, size_t size, size_t* used, int indent, char separator) \
        const;

/// The operations of a union. A union does not store which member is live: the caller passes the
/// selector, which is also the field number of the one member that travels. Decoding reads exactly
/// one field and sets `selector` to the number it found, also when that number names no member
/// (the value is then skipped); on failure `selector` stays as it was. `construct(selector)`
/// prepares one member (an unknown selector changes nothing), `construct()` zeroes the whole
/// storage. Encoding with a selector that names no member gives BRX_ERR_BAD_SELECTOR; printing then
/// prints nothing. The other results are those of the structures.
#define ZRP_UNION_OPERATIONS                                                                       \
    int construct();                                                                               \
    int construct(long long selector);                                                             \
    int packTLV(long long selector, char* buffer, size_t size, size_t* usedSize, bool varint)      \
        const;                                                                                     \
    int packTLVWithVarint(long long selector, Quorva::BrxWriteBuf& buf) const;                     \
    int packTLVNoVarint(long long selector, Quorva::BrxWriteBuf& buf) const;                       \
    int unpackTLV(long long& selector, const char* buffer, size_t size, size_t* usedSize);         \
    int unpackTLVWithVarint(long long& selector, Quorva::BrxReadBuf& buf, size_t length);          \
    int unpackTLVNoVarint(long long& selector, Quorva::BrxReadBuf& buf, size_t length);            \
    int getTLVMaxPackedSize(size_t* size, bool varint) const;                                      \
    int visualize(long long selector, Quorva::BrxWriteBuf& buf, int indent, char separator) const; \
    int visualize(long long selector, char* buf, size_t size, size_t* used, int indent,            \
                  char separator) const;

/// The presence accessors of field `Name`, whose bit is `bit`.
#define ZRP_PRESENCE(Name, bit)                                 \
    enum : uint32_t { PRESENCE_##Name = UINT32_C(1) << (bit) }; \
    bool has_##Name() const {                                   \
        return (presence & PRESENCE_##Name) != 0;               \
    }                                                           \
    void set_has_##Name() const {                               \
        presence |= PRESENCE_##Name;                            \
    }

// --- Frame base header --------------------------------------------------------------------------

/// The fixed part of every frame head. Only `wCommand` and `dwBodyLen` mean anything to this
/// layer; the rest is carried as it stands.
struct TZRPBase {
    uint16_t wMagic;        ///< protocol magic of the frame; never checked here
    uint16_t wHeadVersion;  ///< version of the head layout
    uint16_t wBodyVersion;  ///< version of the body layout
    uint16_t wCommand;      ///< ZRP_CMD_...: selector of the head extension and of the body.
                            ///< Decoding a head or a body overwrites it with the member found.
    uint32_t dwTimeStamp;   ///< timestamp, in the unit the two sides agree on
    uint8_t bEncrypted;     ///< encryption flag of the body
    uint32_t dwSequence;    ///< sequence number
    uint32_t dwHeadLen;     ///< length of the head
    uint32_t dwBodyLen;     ///< length of the body, bytes; in TZRPFrame the count of szBody
    mutable uint32_t presence;

    ZRP_PRESENCE(Magic, 0)
    ZRP_PRESENCE(HeadVersion, 1)
    ZRP_PRESENCE(BodyVersion, 2)
    ZRP_PRESENCE(Command, 3)
    ZRP_PRESENCE(TimeStamp, 4)
    ZRP_PRESENCE(Encrypted, 5)
    ZRP_PRESENCE(Sequence, 6)
    ZRP_PRESENCE(HeadLen, 7)
    ZRP_PRESENCE(BodyLen, 8)
    ZRP_STRUCTURE_OPERATIONS
};

// --- Key exchange -------------------------------------------------------------------------------
// Key material as opaque bytes: this layer computes and enciphers nothing.

/// The client's raw Diffie-Hellman request.
struct TVESKRawDHReq {
    uint16_t wA_size;                  ///< bytes used in szDH_A, at most 64; rewritten by decoding
    uint8_t szDH_A[ZRP_CAP_DH_VALUE];  ///< client's public value; left out when wA_size is 0
    uint8_t szDH_p[ZRP_CAP_DH_VALUE];  ///< modulus; always all 64 bytes
    mutable uint32_t presence;

    ZRP_PRESENCE(A_size, 0)
    ZRP_PRESENCE(DH_A, 1)
    ZRP_PRESENCE(DH_p, 2)
    ZRP_STRUCTURE_OPERATIONS
};

/// The server's raw Diffie-Hellman answer.
struct TVESKRawDHRsp {
    uint16_t wB_size;                  ///< bytes used in szDH_B, at most 64; rewritten by decoding
    uint8_t szDH_B[ZRP_CAP_DH_VALUE];  ///< server's public value; left out when wB_size is 0
    mutable uint32_t presence;

    ZRP_PRESENCE(B_size, 0)
    ZRP_PRESENCE(DH_B, 1)
    ZRP_STRUCTURE_OPERATIONS
};

/// Enciphered key-exchange data, in both directions.
struct TVESKEncDHInfo {
    uint8_t bEncMethod;    ///< encryption method, any value
    uint16_t wEncInfoLen;  ///< bytes used in szEncryptedInfo, at most 1024; rewritten by decoding
    uint8_t szEncryptedInfo[ZRP_CAP_ENC_INFO];  ///< left out when wEncInfoLen is 0
    mutable uint32_t presence;

    ZRP_PRESENCE(EncMethod, 0)
    ZRP_PRESENCE(EncInfoLen, 1)
    ZRP_PRESENCE(EncryptedInfo, 2)
    ZRP_STRUCTURE_OPERATIONS
};

/// A key value; answer only.
struct TVESKKey {
    uint8_t bLength;  ///< bytes used in szValue, at most 128; rewritten by decoding
    uint8_t szValue[ZRP_CAP_KEY_VALUE];  ///< left out when bLength is 0
    mutable uint32_t presence;

    ZRP_PRESENCE(Length, 0)
    ZRP_PRESENCE(Value, 1)
    ZRP_STRUCTURE_OPERATIONS
};

/// Key material of the handshake request; selected by TZRPSynHead::bKeyMethod.
union TZRPKeyReq {
    int8_t chNull;                ///< 0 ZRP_KEY_NONE: placeholder
    TVESKRawDHReq stReqByRawDH;   ///< 3 ZRP_KEY_RAW_DH
    TVESKEncDHInfo stReqByEncDH;  ///< 4 ZRP_KEY_ENC_DH

    ZRP_UNION_OPERATIONS
};

/// Key material of the handshake answer; selected by TZRPAckHead::bKeyMethod.
union TZRPKeyRsp {
    int8_t chNull;                ///< 0 ZRP_KEY_NONE: placeholder
    TVESKKey stKey;               ///< 2 ZRP_KEY_VALUE
    TVESKRawDHRsp stRspByRawDH;   ///< 3 ZRP_KEY_RAW_DH
    TVESKEncDHInfo stRspByEncDH;  ///< 4 ZRP_KEY_ENC_DH

    ZRP_UNION_OPERATIONS
};

// --- Accounts and authentication ----------------------------------------------------------------

/// An account identifier; selected by TVESKAccount::bFormat.
union TVESKIDValue {
    int8_t chNull;                        ///< 0 ZRP_FORMAT_NULL: placeholder
    uint32_t dwUINT32;                    ///< 1 ZRP_FORMAT_UINT32
    uint64_t ullUINT64;                   ///< 2 ZRP_FORMAT_UINT64
    char szSTRING[ZRP_CAP_ACCOUNT_TEXT];  ///< 3 ZRP_FORMAT_STRING: text, at most 255 characters

    ZRP_UNION_OPERATIONS
};

/// An account.
struct TVESKAccount {
    uint16_t wType;        ///< account type
    uint8_t bFormat;       ///< ZRP_FORMAT_...: selector of stValue; rewritten by decoding
    TVESKIDValue stValue;  ///< identifier, the member that bFormat selects
    uint64_t ullUid;       ///< user id
    mutable uint32_t presence;

    ZRP_PRESENCE(Type, 0)
    ZRP_PRESENCE(Format, 1)
    ZRP_PRESENCE(Value, 2)
    ZRP_PRESENCE(Uid, 3)
    ZRP_STRUCTURE_OPERATIONS
};

/// An opaque authentication blob. No frame carries it; it is encoded on its own.
struct TVESKAuthData {
    uint16_t wAuthLen;  ///< bytes used in szAuthInfo, at most 1024; rewritten by decoding
    uint8_t szAuthInfo[ZRP_CAP_AUTH_INFO];  ///< left out when wAuthLen is 0
    mutable uint32_t presence;

    ZRP_PRESENCE(AuthLen, 0)
    ZRP_PRESENCE(AuthInfo, 1)
    ZRP_STRUCTURE_OPERATIONS
};

/// The token pair of an authorisation service.
struct O2AuthData {
    char szAccessToken[ZRP_CAP_TOKEN_TEXT];  ///< access token, at most 255 characters
    char szExtend[ZRP_CAP_TOKEN_TEXT];       ///< extension text, at most 255 characters
    mutable uint32_t presence;

    ZRP_PRESENCE(AccessToken, 0)
    ZRP_PRESENCE(Extend, 1)
    ZRP_STRUCTURE_OPERATIONS
};

/// The authentication request. Field number 3 is free on purpose: `dwXQuorvaTimestamp`,
/// `szXQuorvaTokenVersion` and `stOAuthData` travel as 4, 5 and 6.
struct TZRPAuthReqBody {
    uint16_t wAuthType;                                 ///< authentication type
    char szGameToken[ZRP_CAP_TOKEN_TEXT];               ///< game token, at most 255 characters
    uint32_t dwXQuorvaTimestamp;                        ///< timestamp of the token
    char szXQuorvaTokenVersion[ZRP_CAP_TOKEN_VERSION];  ///< at most 7 characters; default "V1"
    O2AuthData stOAuthData;                             ///< token pair
    mutable uint32_t presence;

    ZRP_PRESENCE(AuthType, 0)
    ZRP_PRESENCE(GameToken, 1)
    ZRP_PRESENCE(XQuorvaTimestamp, 2)
    ZRP_PRESENCE(XQuorvaTokenVersion, 3)
    ZRP_PRESENCE(OAuthData, 4)
    ZRP_STRUCTURE_OPERATIONS
};

/// The authentication answer.
struct TZRPAuthRspBody {
    TVESKAccount stAccount;             ///< the account that was authenticated
    uint16_t wAuthType;                 ///< authentication type
    char szAtk[ZRP_CAP_TOKEN_TEXT];     ///< access token, text, at most 255 characters
    char szExtend[ZRP_CAP_TOKEN_TEXT];  ///< extension text, at most 255 characters
    mutable uint32_t presence;

    ZRP_PRESENCE(Account, 0)
    ZRP_PRESENCE(AuthType, 1)
    ZRP_PRESENCE(Atk, 2)
    ZRP_PRESENCE(Extend, 3)
    ZRP_STRUCTURE_OPERATIONS
};

/// The body of the handshake answer, with the authentication answer where there is one.
struct TZRPAckBody {
    uint8_t bHasAuthInfo;           ///< 0 or 1: whether stAuthResInfo travels; set by decoding it
    TZRPAuthRspBody stAuthResInfo;  ///< optional: left out when bHasAuthInfo is 0
    mutable uint32_t presence;

    ZRP_PRESENCE(HasAuthInfo, 0)
    ZRP_PRESENCE(AuthResInfo, 1)
    ZRP_STRUCTURE_OPERATIONS
};

/// The client's request for a fresh access token.
struct TZRPAuthRefreshReq {
    uint32_t dwReserve;  ///< reserved
    mutable uint32_t presence;

    ZRP_PRESENCE(Reserve, 0)
    ZRP_STRUCTURE_OPERATIONS
};

/// The server's notice of a fresh access token.
struct TZRPAuthRefreshNotifyBody {
    uint16_t wAuthType;          ///< authentication type
    uint16_t wAtkLen;            ///< bytes used in szAtk, at most 1024; rewritten by decoding
    uint8_t szAtk[ZRP_CAP_ATK];  ///< access token, bytes; left out when wAtkLen is 0
    uint32_t dwAtkExpireIn;      ///< lifetime of the token
    mutable uint32_t presence;

    ZRP_PRESENCE(AuthType, 0)
    ZRP_PRESENCE(AtkLen, 1)
    ZRP_PRESENCE(Atk, 2)
    ZRP_PRESENCE(AtkExpireIn, 3)
    ZRP_STRUCTURE_OPERATIONS
};

// --- Relay and routing --------------------------------------------------------------------------

/// The relay target: which server, which session, which service to start.
struct TZRPRelay {
    uint32_t dwPosition;                            ///< relay position
    uint8_t szIdentity[ZRP_CAP_IDENTITY];           ///< identity; always all 16 bytes
    uint64_t ullServerID;                           ///< target server id
    int64_t llSessionID;                            ///< session id
    uint8_t bServerType;                            ///< server type
    char szStartServiceName[ZRP_CAP_SERVICE_NAME];  ///< service to start, at most 127 characters
    mutable uint32_t presence;

    ZRP_PRESENCE(Position, 0)
    ZRP_PRESENCE(Identity, 1)
    ZRP_PRESENCE(ServerID, 2)
    ZRP_PRESENCE(SessionID, 3)
    ZRP_PRESENCE(ServerType, 4)
    ZRP_PRESENCE(StartServiceName, 5)
    ZRP_STRUCTURE_OPERATIONS
};

/// A relay request.
struct TZRPRelayReqBody {
    int32_t iRelayType;     ///< kind of relay; does not govern stRelayInfo
    TZRPRelay stRelayInfo;  ///< relay target
    mutable uint32_t presence;

    ZRP_PRESENCE(RelayType, 0)
    ZRP_PRESENCE(RelayInfo, 1)
    ZRP_STRUCTURE_OPERATIONS
};

/// Route to a zone.
struct SpecifyZoneRouteInfo {
    uint32_t dwTypeID;  ///< type id
    uint32_t dwZoneID;  ///< zone id
    mutable uint32_t presence;

    ZRP_PRESENCE(TypeID, 0)
    ZRP_PRESENCE(ZoneID, 1)
    ZRP_STRUCTURE_OPERATIONS
};

/// Route to one server.
struct SpecifyServerRouteInfo {
    uint64_t ullServerID;  ///< server id
    uint8_t bServerType;   ///< server type
    mutable uint32_t presence;

    ZRP_PRESENCE(ServerID, 0)
    ZRP_PRESENCE(ServerType, 1)
    ZRP_STRUCTURE_OPERATIONS
};

/// Route to a named service.
struct SpecifyNameRouteInfo {
    char szServiceName[ZRP_CAP_SERVICE_NAME];  ///< service name, at most 127 characters
    mutable uint32_t presence;

    ZRP_PRESENCE(ServiceName, 0)
    ZRP_STRUCTURE_OPERATIONS
};

/// How the target of a connection is named; selected by bRouteFlag of the head that holds it.
union TZRPRouteInfo {
    int8_t chNull;                           ///< 0 ZRP_ROUTE_NONE: no route
    SpecifyZoneRouteInfo stSpecifyZone;      ///< 1 ZRP_ROUTE_ZONE
    SpecifyServerRouteInfo stSpecifyServer;  ///< 2 ZRP_ROUTE_SERVER
    int8_t chLOGINPOSITION;                  ///< 3 ZRP_ROUTE_LOGIN_POSITION: placeholder
    SpecifyNameRouteInfo stSpecifyName;      ///< 4 ZRP_ROUTE_NAME

    ZRP_UNION_OPERATIONS
};

/// The server's notice of a new route.
struct TZRPRouteChangeBody {
    uint64_t ullServerID;  ///< the server now serving the connection
    mutable uint32_t presence;

    ZRP_PRESENCE(ServerID, 0)
    ZRP_STRUCTURE_OPERATIONS
};

// --- Connection handshake -----------------------------------------------------------------------

/// The client's handshake request: head extension of ZRP_CMD_SYN.
struct TZRPSynHead {
    uint8_t bKeyMethod;      ///< ZRP_KEY_...: selector of stKeyInfo; rewritten by decoding
    TZRPKeyReq stKeyInfo;    ///< key material, the member that bKeyMethod selects
    uint8_t bEncMethod;      ///< encryption method
    int64_t llGameID;        ///< game
    int32_t iUnitID;         ///< unit
    int32_t iClientType;     ///< client type
    TVESKAccount stAccount;  ///< account
    uint8_t bHasRelayInfo;   ///< 0 or 1: whether stRelayReqInfo travels; set by decoding it
    TZRPRelayReqBody stRelayReqInfo;  ///< optional: left out when bHasRelayInfo is 0
    uint8_t bHasAuthInfo;             ///< 0 or 1: whether stAuthReqInfo travels; set by decoding it
    TZRPAuthReqBody stAuthReqInfo;    ///< optional: left out when bHasAuthInfo is 0
    uint8_t bSupportCompressMethodList;  ///< compression methods the client supports
    uint8_t bRouteFlag;                  ///< ZRP_ROUTE_...: selector of stRouteInfo; rewritten by
                                         ///< decoding
    TZRPRouteInfo stRouteInfo;           ///< route, the member that bRouteFlag selects
    uint32_t dwReserved;                 ///< reserved
    mutable uint32_t presence;

    ZRP_PRESENCE(KeyMethod, 0)
    ZRP_PRESENCE(KeyInfo, 1)
    ZRP_PRESENCE(EncMethod, 2)
    ZRP_PRESENCE(GameID, 3)
    ZRP_PRESENCE(UnitID, 4)
    ZRP_PRESENCE(ClientType, 5)
    ZRP_PRESENCE(Account, 6)
    ZRP_PRESENCE(HasRelayInfo, 7)
    ZRP_PRESENCE(RelayReqInfo, 8)
    ZRP_PRESENCE(HasAuthInfo, 9)
    ZRP_PRESENCE(AuthReqInfo, 10)
    ZRP_PRESENCE(SupportCompressMethodList, 11)
    ZRP_PRESENCE(RouteFlag, 12)
    ZRP_PRESENCE(RouteInfo, 13)
    ZRP_PRESENCE(Reserved, 14)
    ZRP_STRUCTURE_OPERATIONS
};

/// The server's handshake answer: head extension of ZRP_CMD_ACK.
struct TZRPAckHead {
    uint8_t bEncMethod;        ///< encryption method
    uint8_t bKeyMethod;        ///< ZRP_KEY_...: selector of stKeyInfo; rewritten by decoding
    TZRPKeyRsp stKeyInfo;      ///< key material, the member that bKeyMethod selects
    uint8_t bCompressMethod;   ///< compression method to use
    uint32_t dwCompressLimit;  ///< compression limit; default 1024
    uint32_t dwReserved;       ///< reserved
    mutable uint32_t presence;

    ZRP_PRESENCE(EncMethod, 0)
    ZRP_PRESENCE(KeyMethod, 1)
    ZRP_PRESENCE(KeyInfo, 2)
    ZRP_PRESENCE(CompressMethod, 3)
    ZRP_PRESENCE(CompressLimit, 4)
    ZRP_PRESENCE(Reserved, 5)
    ZRP_STRUCTURE_OPERATIONS
};

/// The message that completes the handshake: body of ZRP_CMD_BINGO.
struct TZRPBingoBody {
    TZRPRelay stRelayInfo;     ///< relay target
    uint8_t bCompressMethod;   ///< compression method to use
    uint32_t dwCompressLimit;  ///< compression limit; default 1024
    mutable uint32_t presence;

    ZRP_PRESENCE(RelayInfo, 0)
    ZRP_PRESENCE(CompressMethod, 1)
    ZRP_PRESENCE(CompressLimit, 2)
    ZRP_STRUCTURE_OPERATIONS
};

// --- Data head, queue and stop notices ----------------------------------------------------------

/// Head extension of ZRP_CMD_DATA.
struct TZRPDataHead {
    uint8_t bCompressFlag;      ///< whether and how the body is compressed
    uint8_t bAllowLost;         ///< whether the body may be lost
    uint8_t bRouteFlag;         ///< ZRP_ROUTE_...: selector of stRouteInfo; rewritten by decoding
    TZRPRouteInfo stRouteInfo;  ///< where the body goes, the member that bRouteFlag selects
    mutable uint32_t presence;

    ZRP_PRESENCE(CompressFlag, 0)
    ZRP_PRESENCE(AllowLost, 1)
    ZRP_PRESENCE(RouteFlag, 2)
    ZRP_PRESENCE(RouteInfo, 3)
    ZRP_STRUCTURE_OPERATIONS
};

/// A waiting client's place in the queue: body of ZRP_CMD_WAIT.
struct TZRPWaitBody {
    uint32_t dwPosition;   ///< place in the queue
    uint32_t dwTotal;      ///< clients in the queue
    uint32_t dwRoughTime;  ///< rough time to wait
    mutable uint32_t presence;

    ZRP_PRESENCE(Position, 0)
    ZRP_PRESENCE(Total, 1)
    ZRP_PRESENCE(RoughTime, 2)
    ZRP_STRUCTURE_OPERATIONS
};

/// The client's stop notice: body of ZRP_CMD_CSTOP.
struct TZRPCStopBody {
    uint32_t dwReserved;  ///< reserved
    mutable uint32_t presence;

    ZRP_PRESENCE(Reserved, 0)
    ZRP_STRUCTURE_OPERATIONS
};

/// The server's stop notice: body of ZRP_CMD_SSTOP.
struct TZRPSStopBody {
    uint32_t dwCode;       ///< reason
    uint32_t dwExErrCode;  ///< extended reason
    mutable uint32_t presence;

    ZRP_PRESENCE(Code, 0)
    ZRP_PRESENCE(ExErrCode, 1)
    ZRP_STRUCTURE_OPERATIONS
};

// --- Frames -------------------------------------------------------------------------------------

/// The head extension; selected by TZRPBase::wCommand.
union TZRPExtHead {
    int8_t chNull;               ///< 0 ZRP_CMD_NULL
    TZRPSynHead stSyn;           ///< 4097 ZRP_CMD_SYN
    TZRPAckHead stAck;           ///< 4098 ZRP_CMD_ACK
    int8_t chAuthReq;            ///< 8193 ZRP_CMD_AUTH_REQ
    int8_t chAuthRsp;            ///< 8194 ZRP_CMD_AUTH_RSP
    int8_t chWait;               ///< 12290 ZRP_CMD_WAIT
    TZRPDataHead stData;         ///< 16403 ZRP_CMD_DATA
    int8_t chCStop;              ///< 20481 ZRP_CMD_CSTOP
    int8_t chSStop;              ///< 20482 ZRP_CMD_SSTOP
    int8_t chBingo;              ///< 24578 ZRP_CMD_BINGO
    int8_t chAuthRefreshReq;     ///< 28673 ZRP_CMD_AUTH_REFRESH_REQ
    int8_t chAuthRefreshNotify;  ///< 28674 ZRP_CMD_AUTH_REFRESH_NOTIFY
    int8_t chRouteChange;        ///< 32770 ZRP_CMD_ROUTE_CHANGE

    ZRP_UNION_OPERATIONS
};

/// The frame body; selected by TZRPBase::wCommand.
union TZRPBody {
    int8_t chNull;                                  ///< 0 ZRP_CMD_NULL
    int8_t chSyn;                                   ///< 4097 ZRP_CMD_SYN
    TZRPAckBody stAck;                              ///< 4098 ZRP_CMD_ACK
    TZRPAuthReqBody stAuthReq;                      ///< 8193 ZRP_CMD_AUTH_REQ
    TZRPAuthRspBody stAuthRsp;                      ///< 8194 ZRP_CMD_AUTH_RSP
    TZRPWaitBody stWait;                            ///< 12290 ZRP_CMD_WAIT
    int8_t chData;                                  ///< 16403 ZRP_CMD_DATA
    TZRPCStopBody stCStop;                          ///< 20481 ZRP_CMD_CSTOP
    TZRPSStopBody stSStop;                          ///< 20482 ZRP_CMD_SSTOP
    TZRPBingoBody stBingo;                          ///< 24578 ZRP_CMD_BINGO
    TZRPAuthRefreshReq stAuthRefreshReq;            ///< 28673 ZRP_CMD_AUTH_REFRESH_REQ
    TZRPAuthRefreshNotifyBody stAuthRefreshNotify;  ///< 28674 ZRP_CMD_AUTH_REFRESH_NOTIFY
    TZRPRouteChangeBody stRouteChange;              ///< 32770 ZRP_CMD_ROUTE_CHANGE

    ZRP_UNION_OPERATIONS
};

/// The head of a frame.
struct TZRPHead {
    TZRPBase stBase;       ///< base header
    TZRPExtHead stExtend;  ///< extension, the member that stBase.wCommand selects
    mutable uint32_t presence;

    ZRP_PRESENCE(Base, 0)
    ZRP_PRESENCE(Extend, 1)
    ZRP_STRUCTURE_OPERATIONS
};

/// A frame whose body is already encoded: the sender's form. The body bytes lie directly after the
/// record in the caller's memory, stHead.stBase.dwBodyLen of them: allocate sizeof(TZRPFrame) plus
/// the body, and reach it as `szBody` or `reinterpret_cast<uint8_t*>(&frame + 1)`; both are the
/// same place.
/// Deliberate: the count is not checked against anything, since only the caller knows what lies
/// behind the record. After a decode it is the peer's number: set it to the bytes that are there
/// before encoding or printing. A total length above 32 bits travels cut to them.
/// Deliberate: decoding stores no body byte. A received frame is decoded as TZRPInFrame, or its
/// body is found in the encoded bytes.
struct TZRPFrame {
    TZRPHead stHead;  ///< head
    mutable uint32_t presence;
    __extension__ alignas(TZRPHead) uint8_t szBody[0];  ///< body; left out when dwBodyLen is 0

    ZRP_PRESENCE(Head, 0)
    ZRP_PRESENCE(Body, 1)
    ZRP_STRUCTURE_OPERATIONS
};

/// A frame with a body of this protocol: the receiver's form.
struct TZRPInFrame {
    TZRPHead stHead;  ///< head
    TZRPBody stBody;  ///< body, the member that stHead.stBase.wCommand selects
    mutable uint32_t presence;

    ZRP_PRESENCE(Head, 0)
    ZRP_PRESENCE(Body, 1)
    ZRP_STRUCTURE_OPERATIONS
};

#undef ZRP_STRUCTURE_OPERATIONS
#undef ZRP_UNION_OPERATIONS
#undef ZRP_PRESENCE

}  // namespace quorva_zrp

#endif  // QUORVA_ZRP_H
