// Every structure of the catalogue with its fields: in declaration order, of which C++ type, and
// which bit of the presence word each has. Written by hand from the catalogue's field lists, not
// from the header, so that the two can disagree.
#pragma once

#include <gtest/gtest.h>
#include <stddef.h>
#include <stdint.h>

#include <string>
#include <type_traits>
#include <utility>

#include "protocol/quorva_zrp.h"

namespace zrp_test {

/// Where a member of type `T` may lie in a record. (Some compilers' `alignof` says more than that.)
template <class T>
struct Placed {
    char before;
    T member;
};
template <class T>
constexpr size_t memberAlignment = offsetof(Placed<T>, member);

template <class T>
struct Field {
    const char* name;
    size_t offset;
    size_t size;
    size_t alignment;
    bool typeMatches;
    unsigned bit;
    bool (T::*has)() const;
    void (T::*set)() const;
};

/// The fields of structure `T`: a specialisation for each has `name` and `fields`.
template <class T>
struct FieldsOf;

#define ZRP_TEST_FIELD(Type, member, bit, Accessor)                                               \
    {                                                                                             \
#member, offsetof(Structure, member), sizeof(Type), memberAlignment < Type>,              \
            std::is_same_v < decltype(Structure::member), Type>, bit, &Structure::has_##Accessor, \
            &Structure::set_has_##Accessor                                                        \
    }

/// A field whose bytes lie behind the record: it has no size of its own. Its type is found by way
/// of an element, since the library's traits do not know arrays of no elements.
#define ZRP_TEST_TRAILING_FIELD(Type, member, bit, Accessor)                               \
    {                                                                                      \
#member, offsetof(Structure, member), 0, 1,                                        \
            std::is_same_v < decltype(std::declval <Structure&>().member[0]), Type&>, bit, \
            &Structure::has_##Accessor, &Structure::set_has_##Accessor                     \
    }

#define ZRP_TEST_STRUCTURE(Type, ...)                               \
    template <>                                                     \
    struct FieldsOf<quorva_zrp::Type> {                             \
        using Structure = quorva_zrp::Type;                         \
        static constexpr const char* name = #Type;                  \
        static constexpr Field<Structure> fields[] = {__VA_ARGS__}; \
    }

using namespace quorva_zrp;

// clang-format off

ZRP_TEST_STRUCTURE(TZRPBase,
    ZRP_TEST_FIELD(uint16_t, wMagic, 0, Magic),
    ZRP_TEST_FIELD(uint16_t, wHeadVersion, 1, HeadVersion),
    ZRP_TEST_FIELD(uint16_t, wBodyVersion, 2, BodyVersion),
    ZRP_TEST_FIELD(uint16_t, wCommand, 3, Command),
    ZRP_TEST_FIELD(uint32_t, dwTimeStamp, 4, TimeStamp),
    ZRP_TEST_FIELD(uint8_t, bEncrypted, 5, Encrypted),
    ZRP_TEST_FIELD(uint32_t, dwSequence, 6, Sequence),
    ZRP_TEST_FIELD(uint32_t, dwHeadLen, 7, HeadLen),
    ZRP_TEST_FIELD(uint32_t, dwBodyLen, 8, BodyLen));

// --- Key exchange

ZRP_TEST_STRUCTURE(TVESKRawDHReq,
    ZRP_TEST_FIELD(uint16_t, wA_size, 0, A_size),
    ZRP_TEST_FIELD(uint8_t[64], szDH_A, 1, DH_A),
    ZRP_TEST_FIELD(uint8_t[64], szDH_p, 2, DH_p));

ZRP_TEST_STRUCTURE(TVESKRawDHRsp,
    ZRP_TEST_FIELD(uint16_t, wB_size, 0, B_size),
    ZRP_TEST_FIELD(uint8_t[64], szDH_B, 1, DH_B));

ZRP_TEST_STRUCTURE(TVESKEncDHInfo,
    ZRP_TEST_FIELD(uint8_t, bEncMethod, 0, EncMethod),
    ZRP_TEST_FIELD(uint16_t, wEncInfoLen, 1, EncInfoLen),
    ZRP_TEST_FIELD(uint8_t[1024], szEncryptedInfo, 2, EncryptedInfo));

ZRP_TEST_STRUCTURE(TVESKKey,
    ZRP_TEST_FIELD(uint8_t, bLength, 0, Length),
    ZRP_TEST_FIELD(uint8_t[128], szValue, 1, Value));

// --- Accounts and authentication

ZRP_TEST_STRUCTURE(TVESKAccount,
    ZRP_TEST_FIELD(uint16_t, wType, 0, Type),
    ZRP_TEST_FIELD(uint8_t, bFormat, 1, Format),
    ZRP_TEST_FIELD(TVESKIDValue, stValue, 2, Value),
    ZRP_TEST_FIELD(uint64_t, ullUid, 3, Uid));

ZRP_TEST_STRUCTURE(TVESKAuthData,
    ZRP_TEST_FIELD(uint16_t, wAuthLen, 0, AuthLen),
    ZRP_TEST_FIELD(uint8_t[1024], szAuthInfo, 1, AuthInfo));

ZRP_TEST_STRUCTURE(O2AuthData,
    ZRP_TEST_FIELD(char[256], szAccessToken, 0, AccessToken),
    ZRP_TEST_FIELD(char[256], szExtend, 1, Extend));

// Field number 3 is free; the bits are not: they follow declaration order.
ZRP_TEST_STRUCTURE(TZRPAuthReqBody,
    ZRP_TEST_FIELD(uint16_t, wAuthType, 0, AuthType),
    ZRP_TEST_FIELD(char[256], szGameToken, 1, GameToken),
    ZRP_TEST_FIELD(uint32_t, dwXQuorvaTimestamp, 2, XQuorvaTimestamp),
    ZRP_TEST_FIELD(char[8], szXQuorvaTokenVersion, 3, XQuorvaTokenVersion),
    ZRP_TEST_FIELD(O2AuthData, stOAuthData, 4, OAuthData));

ZRP_TEST_STRUCTURE(TZRPAuthRspBody,
    ZRP_TEST_FIELD(TVESKAccount, stAccount, 0, Account),
    ZRP_TEST_FIELD(uint16_t, wAuthType, 1, AuthType),
    ZRP_TEST_FIELD(char[256], szAtk, 2, Atk),
    ZRP_TEST_FIELD(char[256], szExtend, 3, Extend));

ZRP_TEST_STRUCTURE(TZRPAckBody,
    ZRP_TEST_FIELD(uint8_t, bHasAuthInfo, 0, HasAuthInfo),
    ZRP_TEST_FIELD(TZRPAuthRspBody, stAuthResInfo, 1, AuthResInfo));

ZRP_TEST_STRUCTURE(TZRPAuthRefreshReq,
    ZRP_TEST_FIELD(uint32_t, dwReserve, 0, Reserve));

ZRP_TEST_STRUCTURE(TZRPAuthRefreshNotifyBody,
    ZRP_TEST_FIELD(uint16_t, wAuthType, 0, AuthType),
    ZRP_TEST_FIELD(uint16_t, wAtkLen, 1, AtkLen),
    ZRP_TEST_FIELD(uint8_t[1024], szAtk, 2, Atk),
    ZRP_TEST_FIELD(uint32_t, dwAtkExpireIn, 3, AtkExpireIn));

// --- Relay and routing

ZRP_TEST_STRUCTURE(TZRPRelay,
    ZRP_TEST_FIELD(uint32_t, dwPosition, 0, Position),
    ZRP_TEST_FIELD(uint8_t[16], szIdentity, 1, Identity),
    ZRP_TEST_FIELD(uint64_t, ullServerID, 2, ServerID),
    ZRP_TEST_FIELD(int64_t, llSessionID, 3, SessionID),
    ZRP_TEST_FIELD(uint8_t, bServerType, 4, ServerType),
    ZRP_TEST_FIELD(char[128], szStartServiceName, 5, StartServiceName));

ZRP_TEST_STRUCTURE(TZRPRelayReqBody,
    ZRP_TEST_FIELD(int32_t, iRelayType, 0, RelayType),
    ZRP_TEST_FIELD(TZRPRelay, stRelayInfo, 1, RelayInfo));

ZRP_TEST_STRUCTURE(SpecifyZoneRouteInfo,
    ZRP_TEST_FIELD(uint32_t, dwTypeID, 0, TypeID),
    ZRP_TEST_FIELD(uint32_t, dwZoneID, 1, ZoneID));

ZRP_TEST_STRUCTURE(SpecifyServerRouteInfo,
    ZRP_TEST_FIELD(uint64_t, ullServerID, 0, ServerID),
    ZRP_TEST_FIELD(uint8_t, bServerType, 1, ServerType));

ZRP_TEST_STRUCTURE(SpecifyNameRouteInfo,
    ZRP_TEST_FIELD(char[128], szServiceName, 0, ServiceName));

ZRP_TEST_STRUCTURE(TZRPRouteChangeBody,
    ZRP_TEST_FIELD(uint64_t, ullServerID, 0, ServerID));

// --- Handshake

ZRP_TEST_STRUCTURE(TZRPSynHead,
    ZRP_TEST_FIELD(uint8_t, bKeyMethod, 0, KeyMethod),
    ZRP_TEST_FIELD(TZRPKeyReq, stKeyInfo, 1, KeyInfo),
    ZRP_TEST_FIELD(uint8_t, bEncMethod, 2, EncMethod),
    ZRP_TEST_FIELD(int64_t, llGameID, 3, GameID),
    ZRP_TEST_FIELD(int32_t, iUnitID, 4, UnitID),
    ZRP_TEST_FIELD(int32_t, iClientType, 5, ClientType),
    ZRP_TEST_FIELD(TVESKAccount, stAccount, 6, Account),
    ZRP_TEST_FIELD(uint8_t, bHasRelayInfo, 7, HasRelayInfo),
    ZRP_TEST_FIELD(TZRPRelayReqBody, stRelayReqInfo, 8, RelayReqInfo),
    ZRP_TEST_FIELD(uint8_t, bHasAuthInfo, 9, HasAuthInfo),
    ZRP_TEST_FIELD(TZRPAuthReqBody, stAuthReqInfo, 10, AuthReqInfo),
    ZRP_TEST_FIELD(uint8_t, bSupportCompressMethodList, 11, SupportCompressMethodList),
    ZRP_TEST_FIELD(uint8_t, bRouteFlag, 12, RouteFlag),
    ZRP_TEST_FIELD(TZRPRouteInfo, stRouteInfo, 13, RouteInfo),
    ZRP_TEST_FIELD(uint32_t, dwReserved, 14, Reserved));

ZRP_TEST_STRUCTURE(TZRPAckHead,
    ZRP_TEST_FIELD(uint8_t, bEncMethod, 0, EncMethod),
    ZRP_TEST_FIELD(uint8_t, bKeyMethod, 1, KeyMethod),
    ZRP_TEST_FIELD(TZRPKeyRsp, stKeyInfo, 2, KeyInfo),
    ZRP_TEST_FIELD(uint8_t, bCompressMethod, 3, CompressMethod),
    ZRP_TEST_FIELD(uint32_t, dwCompressLimit, 4, CompressLimit),
    ZRP_TEST_FIELD(uint32_t, dwReserved, 5, Reserved));

ZRP_TEST_STRUCTURE(TZRPBingoBody,
    ZRP_TEST_FIELD(TZRPRelay, stRelayInfo, 0, RelayInfo),
    ZRP_TEST_FIELD(uint8_t, bCompressMethod, 1, CompressMethod),
    ZRP_TEST_FIELD(uint32_t, dwCompressLimit, 2, CompressLimit));

// --- Data head, queue and stop notices

ZRP_TEST_STRUCTURE(TZRPDataHead,
    ZRP_TEST_FIELD(uint8_t, bCompressFlag, 0, CompressFlag),
    ZRP_TEST_FIELD(uint8_t, bAllowLost, 1, AllowLost),
    ZRP_TEST_FIELD(uint8_t, bRouteFlag, 2, RouteFlag),
    ZRP_TEST_FIELD(TZRPRouteInfo, stRouteInfo, 3, RouteInfo));

ZRP_TEST_STRUCTURE(TZRPWaitBody,
    ZRP_TEST_FIELD(uint32_t, dwPosition, 0, Position),
    ZRP_TEST_FIELD(uint32_t, dwTotal, 1, Total),
    ZRP_TEST_FIELD(uint32_t, dwRoughTime, 2, RoughTime));

ZRP_TEST_STRUCTURE(TZRPCStopBody,
    ZRP_TEST_FIELD(uint32_t, dwReserved, 0, Reserved));

ZRP_TEST_STRUCTURE(TZRPSStopBody,
    ZRP_TEST_FIELD(uint32_t, dwCode, 0, Code),
    ZRP_TEST_FIELD(uint32_t, dwExErrCode, 1, ExErrCode));

// --- Frames

ZRP_TEST_STRUCTURE(TZRPHead,
    ZRP_TEST_FIELD(TZRPBase, stBase, 0, Base),
    ZRP_TEST_FIELD(TZRPExtHead, stExtend, 1, Extend));

ZRP_TEST_STRUCTURE(TZRPFrame,
    ZRP_TEST_FIELD(TZRPHead, stHead, 0, Head),
    ZRP_TEST_TRAILING_FIELD(uint8_t, szBody, 1, Body));

ZRP_TEST_STRUCTURE(TZRPInFrame,
    ZRP_TEST_FIELD(TZRPHead, stHead, 0, Head),
    ZRP_TEST_FIELD(TZRPBody, stBody, 1, Body));

// clang-format on

#undef ZRP_TEST_FIELD
#undef ZRP_TEST_TRAILING_FIELD
#undef ZRP_TEST_STRUCTURE

using Structures =
    testing::Types<TZRPBase, TVESKRawDHReq, TVESKRawDHRsp, TVESKEncDHInfo, TVESKKey, TVESKAccount,
                   TVESKAuthData, O2AuthData, TZRPAuthReqBody, TZRPAuthRspBody, TZRPAckBody,
                   TZRPAuthRefreshReq, TZRPAuthRefreshNotifyBody, TZRPRelay, TZRPRelayReqBody,
                   SpecifyZoneRouteInfo, SpecifyServerRouteInfo, SpecifyNameRouteInfo,
                   TZRPRouteChangeBody, TZRPSynHead, TZRPAckHead, TZRPBingoBody, TZRPDataHead,
                   TZRPWaitBody, TZRPCStopBody, TZRPSStopBody, TZRPHead, TZRPFrame, TZRPInFrame>;

struct StructureName {
    template <class T>
    static std::string GetName(int) {
        return FieldsOf<T>::name;
    }
};

}  // namespace zrp_test
