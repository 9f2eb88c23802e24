// From this project's records to msgpack arrays. Members of unions that no measured message uses
// are packed as placeholders.
#pragma once

#include <msgpack.hpp>
#include <span>

#include "bench/messages.h"
#include "bench/peers/record_access.h"

namespace zrp_bench::pack {

/// Where the packer writes; what does not fit makes it throw.
class FixedStream {
  public:
    explicit FixedStream(std::span<char> out) : out_(out) {}

    void write(const char* from, size_t size) {
        if (size > out_.size() - used_) {
            throw std::length_error("the output is full");
        }
        memcpy(out_.data() + used_, from, size);
        used_ += size;
    }
    std::span<const char> written() const { return out_.first(used_); }

  private:
    std::span<char> out_;
    size_t used_ = 0;
};

using Packer = msgpack::packer<FixedStream>;

inline void packText(Packer& to, std::string_view text) {
    to.pack_str(static_cast<uint32_t>(text.size()));
    to.pack_str_body(text.data(), static_cast<uint32_t>(text.size()));
}

inline void packBytes(Packer& to, const uint8_t* bytes, size_t size) {
    to.pack_bin(static_cast<uint32_t>(size));
    to.pack_bin_body(reinterpret_cast<const char*>(bytes), static_cast<uint32_t>(size));
}

/// The placeholder members of unions.
inline void packPlaceholder(Packer& to) {
    to.pack_int8(0);
}

inline void pack(Packer& to, const Base& from) {
    to.pack_array(9);
    to.pack_uint16(from.wMagic);
    to.pack_uint16(from.wHeadVersion);
    to.pack_uint16(from.wBodyVersion);
    to.pack_uint16(from.wCommand);
    to.pack_uint32(from.dwTimeStamp);
    to.pack_uint8(from.bEncrypted);
    to.pack_uint32(from.dwSequence);
    to.pack_uint32(from.dwHeadLen);
    to.pack_uint32(from.dwBodyLen);
}

inline void pack(Packer& to, const quorva_zrp::TVESKRawDHReq& from) {
    to.pack_array(2);
    packBytes(to, from.szDH_A, from.wA_size);
    packBytes(to, from.szDH_p, sizeof(from.szDH_p));
}

inline void pack(Packer& to, const quorva_zrp::TVESKAccount& from) {
    to.pack_array(4);
    to.pack_uint16(from.wType);
    to.pack_uint8(from.bFormat);
    if (from.bFormat == quorva_zrp::ZRP_FORMAT_UINT64) {
        to.pack_uint64(from.stValue.ullUINT64);
    } else if (from.bFormat == quorva_zrp::ZRP_FORMAT_STRING) {
        packText(to, textOf(from.stValue.szSTRING));
    } else {
        packPlaceholder(to);
    }
    to.pack_uint64(from.ullUid);
}

inline void pack(Packer& to, const quorva_zrp::TZRPRelayReqBody& from) {
    const quorva_zrp::TZRPRelay& info = from.stRelayInfo;
    to.pack_array(2);
    to.pack_int32(from.iRelayType);
    to.pack_array(6);
    to.pack_uint32(info.dwPosition);
    packBytes(to, info.szIdentity, sizeof(info.szIdentity));
    to.pack_uint64(info.ullServerID);
    to.pack_int64(info.llSessionID);
    to.pack_uint8(info.bServerType);
    packText(to, textOf(info.szStartServiceName));
}

inline void pack(Packer& to, const quorva_zrp::TZRPAuthReqBody& from) {
    to.pack_array(5);
    to.pack_uint16(from.wAuthType);
    packText(to, textOf(from.szGameToken));
    to.pack_uint32(from.dwXQuorvaTimestamp);
    packText(to, textOf(from.szXQuorvaTokenVersion));
    to.pack_array(2);
    packText(to, textOf(from.stOAuthData.szAccessToken));
    packText(to, textOf(from.stOAuthData.szExtend));
}

inline void pack(Packer& to, uint8_t flag, const quorva_zrp::TZRPRouteInfo& from) {
    switch (flag) {
        case quorva_zrp::ZRP_ROUTE_ZONE:
            to.pack_array(2);
            to.pack_uint32(from.stSpecifyZone.dwTypeID);
            to.pack_uint32(from.stSpecifyZone.dwZoneID);
            break;
        case quorva_zrp::ZRP_ROUTE_SERVER:
            to.pack_array(2);
            to.pack_uint64(from.stSpecifyServer.ullServerID);
            to.pack_uint8(from.stSpecifyServer.bServerType);
            break;
        case quorva_zrp::ZRP_ROUTE_NAME:
            to.pack_array(1);
            packText(to, textOf(from.stSpecifyName.szServiceName));
            break;
        default:
            packPlaceholder(to);
    }
}

inline void pack(Packer& to, const quorva_zrp::TZRPSynHead& from) {
    to.pack_array(13);
    to.pack_uint8(from.bKeyMethod);
    if (from.bKeyMethod == quorva_zrp::ZRP_KEY_RAW_DH) {
        pack(to, from.stKeyInfo.stReqByRawDH);
    } else {
        packPlaceholder(to);
    }
    to.pack_uint8(from.bEncMethod);
    to.pack_int64(from.llGameID);
    to.pack_int32(from.iUnitID);
    to.pack_int32(from.iClientType);
    pack(to, from.stAccount);
    if (from.bHasRelayInfo != 0) {
        pack(to, from.stRelayReqInfo);
    } else {
        to.pack_nil();
    }
    if (from.bHasAuthInfo != 0) {
        pack(to, from.stAuthReqInfo);
    } else {
        to.pack_nil();
    }
    to.pack_uint8(from.bSupportCompressMethodList);
    to.pack_uint8(from.bRouteFlag);
    pack(to, from.bRouteFlag, from.stRouteInfo);
    to.pack_uint32(from.dwReserved);
}

inline void pack(Packer& to, const quorva_zrp::TZRPDataHead& from) {
    to.pack_array(4);
    to.pack_uint8(from.bCompressFlag);
    to.pack_uint8(from.bAllowLost);
    to.pack_uint8(from.bRouteFlag);
    pack(to, from.bRouteFlag, from.stRouteInfo);
}

inline void pack(Packer& to, const quorva_zrp::TZRPAuthRspBody& from) {
    to.pack_array(4);
    pack(to, from.stAccount);
    to.pack_uint16(from.wAuthType);
    packText(to, textOf(from.szAtk));
    packText(to, textOf(from.szExtend));
}

inline void pack(Packer& to, const Notice& from) {
    to.pack_array(3);
    to.pack_uint16(from.wAuthType);
    packBytes(to, from.szAtk, from.wAtkLen);
    to.pack_uint32(from.dwAtkExpireIn);
}

inline void pack(Packer& to, const quorva_zrp::TZRPHead& from) {
    to.pack_array(2);
    pack(to, from.stBase);
    if (from.stBase.wCommand == quorva_zrp::ZRP_CMD_SYN) {
        pack(to, from.stExtend.stSyn);
    } else if (from.stBase.wCommand == quorva_zrp::ZRP_CMD_DATA) {
        pack(to, from.stExtend.stData);
    } else {
        packPlaceholder(to);
    }
}

inline void pack(Packer& to, const Frame& from) {
    const uint16_t command = from.stHead.stBase.wCommand;
    to.pack_array(2);
    pack(to, from.stHead);
    if (command == quorva_zrp::ZRP_CMD_AUTH_RSP) {
        pack(to, from.stBody.stAuthRsp);
    } else if (command == quorva_zrp::ZRP_CMD_AUTH_REFRESH_NOTIFY) {
        pack(to, from.stBody.stAuthRefreshNotify);
    } else {
        packPlaceholder(to);
    }
}

inline void pack(Packer& to, const RawFrame& from) {
    to.pack_array(2);
    pack(to, from.head());
    packBytes(to, from.body().data(), from.body().size());
}

}  // namespace zrp_bench::pack
