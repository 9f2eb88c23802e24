// A function for each type that does all that its operations do but printing, with the signature of
// `main`. They are called through tables: written out for each type, the calls would weigh as well,
// and they are not the library's.
#include "protocol/quorva_zrp.h"

namespace {

using namespace quorva_zrp;

/// The operations of a type; those of unions take a selector.
template <class... Selector>
struct Operations {
    void* message;
    int (*construct)(void* message, Selector... selector);
    int (*pack)(const void* message, Selector... selector, char* buffer, size_t size, size_t* used,
                bool varint);
    int (*unpack)(void* message, Selector&... selector, const char* buffer, size_t size,
                  size_t* used);
};

template <class Message>
Message message;

template <class Message, class... Selector>
constexpr Operations<Selector...> operations = {
    &message<Message>,
    [](void* to, Selector... selector) {
        return static_cast<Message*>(to)->construct(selector...);
    },
    [](const void* from, Selector... selector, char* buffer, size_t size, size_t* used,
       bool varint) {
        return static_cast<const Message*>(from)->packTLV(selector..., buffer, size, used, varint);
    },
    [](void* to, Selector&... selector, const char* buffer, size_t size, size_t* used) {
        return static_cast<Message*>(to)->unpackTLV(selector..., buffer, size, used);
    }};

char buffer[TZRPInFrame_MAX_VARINT];

/// Calls all operations; the result keeps the compiler from leaving anything out.
template <class... Selector>
int call(const Operations<Selector...>& type, int argc, Selector... selector) {
    const size_t size = static_cast<size_t>(argc);
    size_t used = 0;
    return type.construct(type.message, selector...) +
           type.pack(type.message, selector..., buffer, size, &used, argc > 1) +
           type.unpack(type.message, selector..., buffer, size, &used);
}

}  // namespace

#define ZRP_STRUCTURES(DO)        \
    DO(TZRPBase)                  \
    DO(TVESKRawDHReq)             \
    DO(TVESKRawDHRsp)             \
    DO(TVESKEncDHInfo)            \
    DO(TVESKKey)                  \
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
    DO(TZRPRouteChangeBody)       \
    DO(TZRPSynHead)               \
    DO(TZRPAckHead)               \
    DO(TZRPBingoBody)             \
    DO(TZRPDataHead)              \
    DO(TZRPWaitBody)              \
    DO(TZRPCStopBody)             \
    DO(TZRPSStopBody)             \
    DO(TZRPHead)                  \
    DO(TZRPFrame)                 \
    DO(TZRPInFrame)

#define ZRP_UNIONS(DO) \
    DO(TZRPKeyReq)     \
    DO(TZRPKeyRsp)     \
    DO(TVESKIDValue)   \
    DO(TZRPRouteInfo)  \
    DO(TZRPExtHead)    \
    DO(TZRPBody)

#define ZRP_USE_STRUCTURE(Type)                       \
    extern "C" int use_##Type(int argc, char** argv); \
    extern "C" int use_##Type(int argc, char**) {     \
        return call(operations<Type>, argc);          \
    }
ZRP_STRUCTURES(ZRP_USE_STRUCTURE)

#define ZRP_USE_UNION(Type)                                              \
    extern "C" int use_##Type(int argc, char** argv);                    \
    extern "C" int use_##Type(int argc, char**) {                        \
        return call<long long>(operations<Type, long long>, argc, argc); \
    }
ZRP_UNIONS(ZRP_USE_UNION)

namespace {

#define ZRP_STRUCTURE_ENTRY(Type) operations<Type>,
constexpr Operations<> structures[] = {ZRP_STRUCTURES(ZRP_STRUCTURE_ENTRY)};
#define ZRP_UNION_ENTRY(Type) operations<Type, long long>,
constexpr Operations<long long> unions[] = {ZRP_UNIONS(ZRP_UNION_ENTRY)};

}  // namespace

/// The whole catalogue.
extern "C" int use_catalogue(int argc, char** argv);
extern "C" int use_catalogue(int argc, char**) {
    int result = 0;
    for (const Operations<>& type : structures) {
        result += call(type, argc);
    }
    for (const Operations<long long>& type : unions) {
        result += call<long long>(type, argc, argc);
    }
    return result;
}
