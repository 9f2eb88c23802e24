#include "protocol/codec/validate.h"

#include "protocol/fields/frames.h"

namespace quorva_zrp {

namespace codec {

void Trail::write(char* path, size_t size) const {
    char* const last = path + size - 1;
    for (size_t left = count_; left > 0 && path != last; --left) {
        const char* const name = labels_[left - 1] + 1;  // within its brackets
        const size_t length = strlen(name) - 1;
        const size_t room = static_cast<size_t>(last - path);
        const size_t taken = length < room ? length : room;
        memcpy(path, name, taken);
        path += taken;
        if (left > 1 && path != last) {
            *path++ = '.';
        }
    }
    *path = '\0';
}

// A frame holds everything but TVESKAuthData and itself in another form; no path is longer.
static_assert(pathLimits<TZRPInFrame>().size + 1 == ZRP_PATH_SIZE,
              "the published size is that of the longest path");

}  // namespace codec

#define ZRP_DEFINE_STRUCTURE(Type)                                                               \
    int validate(const Type& message, char* path, size_t pathSize) {                             \
        return codec::validateMessage<Type>(path, pathSize, [&](auto& trail) ZRP_INLINE_LAMBDA { \
            return codec::validateFields<Type>(codec::bytesOf(message), trail);                  \
        });                                                                                      \
    }

#define ZRP_DEFINE_UNION(Type)                                                                   \
    int validate(const Type& message, long long selector, char* path, size_t pathSize) {         \
        return codec::validateMessage<Type>(path, pathSize, [&](auto& trail) ZRP_INLINE_LAMBDA { \
            return codec::validateMember<Type>(codec::bytesOf(message), selector, trail);        \
        });                                                                                      \
    }

ZRP_DEFINE_STRUCTURE(TZRPBase)
ZRP_DEFINE_STRUCTURE(TVESKRawDHReq)
ZRP_DEFINE_STRUCTURE(TVESKRawDHRsp)
ZRP_DEFINE_STRUCTURE(TVESKEncDHInfo)
ZRP_DEFINE_STRUCTURE(TVESKKey)
ZRP_DEFINE_UNION(TZRPKeyReq)
ZRP_DEFINE_UNION(TZRPKeyRsp)
ZRP_DEFINE_UNION(TVESKIDValue)
ZRP_DEFINE_STRUCTURE(TVESKAccount)
ZRP_DEFINE_STRUCTURE(TVESKAuthData)
ZRP_DEFINE_STRUCTURE(O2AuthData)
ZRP_DEFINE_STRUCTURE(TZRPAuthReqBody)
ZRP_DEFINE_STRUCTURE(TZRPAuthRspBody)
ZRP_DEFINE_STRUCTURE(TZRPAckBody)
ZRP_DEFINE_STRUCTURE(TZRPAuthRefreshReq)
ZRP_DEFINE_STRUCTURE(TZRPAuthRefreshNotifyBody)
ZRP_DEFINE_STRUCTURE(TZRPRelay)
ZRP_DEFINE_STRUCTURE(TZRPRelayReqBody)
ZRP_DEFINE_STRUCTURE(SpecifyZoneRouteInfo)
ZRP_DEFINE_STRUCTURE(SpecifyServerRouteInfo)
ZRP_DEFINE_STRUCTURE(SpecifyNameRouteInfo)
ZRP_DEFINE_UNION(TZRPRouteInfo)
ZRP_DEFINE_STRUCTURE(TZRPRouteChangeBody)
ZRP_DEFINE_STRUCTURE(TZRPSynHead)
ZRP_DEFINE_STRUCTURE(TZRPAckHead)
ZRP_DEFINE_STRUCTURE(TZRPBingoBody)
ZRP_DEFINE_STRUCTURE(TZRPDataHead)
ZRP_DEFINE_STRUCTURE(TZRPWaitBody)
ZRP_DEFINE_STRUCTURE(TZRPCStopBody)
ZRP_DEFINE_STRUCTURE(TZRPSStopBody)
ZRP_DEFINE_UNION(TZRPExtHead)
ZRP_DEFINE_UNION(TZRPBody)
ZRP_DEFINE_STRUCTURE(TZRPHead)
ZRP_DEFINE_STRUCTURE(TZRPFrame)
ZRP_DEFINE_STRUCTURE(TZRPInFrame)

#undef ZRP_DEFINE_STRUCTURE
#undef ZRP_DEFINE_UNION

int validateWithBody(const TZRPFrame& frame, size_t bodySize, char* path, size_t pathSize) {
    using Body = codec::Field<TZRPFrame, 1>;
    static_assert(Body::kind() == codec::Kind::trailingBytes);
    return codec::validateMessage<TZRPFrame>(path, pathSize, [&](auto& trail) {
        const char* const record = codec::bytesOf(frame);
        int result = codec::validateFields<TZRPFrame>(record, trail);
        if (result == 0 && Body::governor(record) > bodySize) {
            result = Quorva::BRX_ERR_REFER_TOO_BIG;
            trail.add(Body::label);
        }
        return result;
    });
}

}  // namespace quorva_zrp
