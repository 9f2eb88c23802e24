// A function for each type that does all that its operations do but printing, with the signature of
// `main`.
#include "protocol/quorva_zrp.h"

namespace {

using namespace quorva_zrp;

char buffer[TZRPInFrame_MAX_VARINT];

/// What every program calls; the result keeps the compiler from leaving anything out.
template <class Message>
int encodeAndDecode(int argc, char** argv) {
    static Message message;
    const bool varint = argc > 1;
    const size_t size = static_cast<size_t>(argc) * sizeof(argv);
    size_t used = 0;
    if constexpr (requires { message.packTLV(buffer, size, &used, varint); }) {
        return message.construct() + message.packTLV(buffer, size, &used, varint) +
               message.unpackTLV(buffer, size, &used);
    } else {
        long long selector = argc;
        return message.construct(selector) +
               message.packTLV(selector, buffer, size, &used, varint) +
               message.unpackTLV(selector, buffer, size, &used);
    }
}

}  // namespace

#define ZRP_USE(Type)                                  \
    extern "C" int use_##Type(int argc, char** argv);  \
    extern "C" int use_##Type(int argc, char** argv) { \
        return encodeAndDecode<Type>(argc, argv);      \
    }

#define ZRP_TYPES(DO)             \
    DO(TZRPBase)                  \
    DO(TVESKRawDHReq)             \
    DO(TVESKRawDHRsp)             \
    DO(TVESKEncDHInfo)            \
    DO(TVESKKey)                  \
    DO(TZRPKeyReq)                \
    DO(TZRPKeyRsp)                \
    DO(TVESKIDValue)              \
    DO(TVESKAccount)              \
    DO(TVESKAuthData)             \
    DO(O2AuthData)                \
    DO(TZRPAuthReqBody)           \
    DO(TZRPAuthRspBody)           \
    DO(TZRPAckBody)               \
    DO(TZRPAuthRefreshReq)        \
    DO(TZRPAuthRefreshNotifyBody) \
    DO(TZRPRelay)                 \
    DO(TZRPRelayReqBody)          \
    DO(SpecifyZoneRouteInfo)      \
    DO(SpecifyServerRouteInfo)    \
    DO(SpecifyNameRouteInfo)      \
    DO(TZRPRouteInfo)             \
    DO(TZRPRouteChangeBody)       \
    DO(TZRPSynHead)               \
    DO(TZRPAckHead)               \
    DO(TZRPBingoBody)             \
    DO(TZRPDataHead)              \
    DO(TZRPWaitBody)              \
    DO(TZRPCStopBody)             \
    DO(TZRPSStopBody)             \
    DO(TZRPExtHead)               \
    DO(TZRPBody)                  \
    DO(TZRPHead)                  \
    DO(TZRPFrame)                 \
    DO(TZRPInFrame)

ZRP_TYPES(ZRP_USE)

#define ZRP_ADD_USE(Type) +use_##Type(argc, argv)

/// The whole catalogue.
extern "C" int use_catalogue(int argc, char** argv);
extern "C" int use_catalogue(int argc, char** argv) {
    return 0 ZRP_TYPES(ZRP_ADD_USE);
}
