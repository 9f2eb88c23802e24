// From this project's records to the protobuf wire format, with protozero. Numbers are those of
// schemas/zrp.proto.
#pragma once

#include <protozero/basic_pbf_writer.hpp>
#include <protozero/buffer_fixed.hpp>

#include "bench/messages.h"
#include "bench/peers/record_access.h"

namespace zrp_bench::protozero_write {

using Writer = protozero::basic_pbf_writer<protozero::fixed_size_buffer_adaptor>;

inline void addText(Writer& to, uint32_t number, std::string_view text) {
    to.add_string(number, text.data(), text.size());
}
inline void addBytes(Writer& to, uint32_t number, const uint8_t* bytes, size_t size) {
    to.add_bytes(number, reinterpret_cast<const char*>(bytes), size);
}

/// A nested message; its length is filled in when the nested writer is done.
template <class... Arguments>
void addNested(Writer& to, uint32_t number, const Arguments&... arguments);

inline void write(Writer& to, const Base& from) {
    to.add_uint32(1, from.wMagic);
    to.add_uint32(2, from.wHeadVersion);
    to.add_uint32(3, from.wBodyVersion);
    to.add_uint32(4, from.wCommand);
    to.add_fixed32(5, from.dwTimeStamp);
    to.add_uint32(6, from.bEncrypted);
    to.add_uint32(7, from.dwSequence);
    to.add_uint32(8, from.dwHeadLen);
    to.add_uint32(9, from.dwBodyLen);
}

inline void write(Writer& to, const quorva_zrp::TVESKRawDHReq& from) {
    addBytes(to, 1, from.szDH_A, from.wA_size);
    addBytes(to, 2, from.szDH_p, sizeof(from.szDH_p));
}

inline void write(Writer& to, const quorva_zrp::TVESKAccount& from) {
    to.add_uint32(1, from.wType);
    if (from.bFormat == quorva_zrp::ZRP_FORMAT_UINT64) {
        to.add_fixed64(3, from.stValue.ullUINT64);
    } else if (from.bFormat == quorva_zrp::ZRP_FORMAT_STRING) {
        addText(to, 4, textOf(from.stValue.szSTRING));
    }
    to.add_fixed64(5, from.ullUid);
}

inline void write(Writer& to, const quorva_zrp::O2AuthData& from) {
    addText(to, 1, textOf(from.szAccessToken));
    addText(to, 2, textOf(from.szExtend));
}

inline void write(Writer& to, const quorva_zrp::TZRPAuthReqBody& from) {
    to.add_uint32(1, from.wAuthType);
    addText(to, 2, textOf(from.szGameToken));
    to.add_fixed32(4, from.dwXQuorvaTimestamp);
    addText(to, 5, textOf(from.szXQuorvaTokenVersion));
    addNested(to, 6, from.stOAuthData);
}

inline void write(Writer& to, const quorva_zrp::TZRPAuthRspBody& from) {
    addNested(to, 1, from.stAccount);
    to.add_uint32(2, from.wAuthType);
    addText(to, 3, textOf(from.szAtk));
    addText(to, 4, textOf(from.szExtend));
}

inline void write(Writer& to, const Notice& from) {
    to.add_uint32(1, from.wAuthType);
    addBytes(to, 2, from.szAtk, from.wAtkLen);
    to.add_uint32(3, from.dwAtkExpireIn);
}

inline void write(Writer& to, const quorva_zrp::TZRPRelay& from) {
    to.add_uint32(1, from.dwPosition);
    addBytes(to, 2, from.szIdentity, sizeof(from.szIdentity));
    to.add_fixed64(3, from.ullServerID);
    to.add_sfixed64(4, from.llSessionID);
    to.add_uint32(5, from.bServerType);
    addText(to, 6, textOf(from.szStartServiceName));
}

inline void write(Writer& to, const quorva_zrp::TZRPRelayReqBody& from) {
    to.add_sint32(1, from.iRelayType);
    addNested(to, 2, from.stRelayInfo);
}

inline void write(Writer& to, const quorva_zrp::SpecifyZoneRouteInfo& from) {
    to.add_uint32(1, from.dwTypeID);
    to.add_uint32(2, from.dwZoneID);
}

inline void write(Writer& to, const quorva_zrp::SpecifyServerRouteInfo& from) {
    to.add_fixed64(1, from.ullServerID);
    to.add_uint32(2, from.bServerType);
}

inline void write(Writer& to, const quorva_zrp::SpecifyNameRouteInfo& from) {
    addText(to, 1, textOf(from.szServiceName));
}

/// The members of a route have numbers from `first` on.
inline void writeRoute(Writer& to, uint32_t first, uint8_t flag,
                       const quorva_zrp::TZRPRouteInfo& from) {
    if (flag == quorva_zrp::ZRP_ROUTE_ZONE) {
        addNested(to, first, from.stSpecifyZone);
    } else if (flag == quorva_zrp::ZRP_ROUTE_SERVER) {
        addNested(to, first + 1, from.stSpecifyServer);
    } else if (flag == quorva_zrp::ZRP_ROUTE_NAME) {
        addNested(to, first + 3, from.stSpecifyName);
    }
}

inline void write(Writer& to, const quorva_zrp::TZRPSynHead& from) {
    if (from.bKeyMethod == quorva_zrp::ZRP_KEY_RAW_DH) {
        addNested(to, 1, from.stKeyInfo.stReqByRawDH);
    }
    to.add_uint32(3, from.bEncMethod);
    to.add_sfixed64(4, from.llGameID);
    to.add_sint32(5, from.iUnitID);
    to.add_sint32(6, from.iClientType);
    addNested(to, 7, from.stAccount);
    if (from.bHasRelayInfo != 0) {
        addNested(to, 8, from.stRelayReqInfo);
    }
    if (from.bHasAuthInfo != 0) {
        addNested(to, 9, from.stAuthReqInfo);
    }
    to.add_uint32(10, from.bSupportCompressMethodList);
    writeRoute(to, 11, from.bRouteFlag, from.stRouteInfo);
    to.add_uint32(15, from.dwReserved);
}

inline void write(Writer& to, const quorva_zrp::TZRPDataHead& from) {
    to.add_uint32(1, from.bCompressFlag);
    to.add_uint32(2, from.bAllowLost);
    writeRoute(to, 3, from.bRouteFlag, from.stRouteInfo);
}

inline void write(Writer& to, const quorva_zrp::TZRPHead& from) {
    addNested(to, 1, from.stBase);
    if (from.stBase.wCommand == quorva_zrp::ZRP_CMD_SYN) {
        addNested(to, 2, from.stExtend.stSyn);
    } else if (from.stBase.wCommand == quorva_zrp::ZRP_CMD_DATA) {
        addNested(to, 4, from.stExtend.stData);
    }
}

inline void write(Writer& to, const Frame& from) {
    addNested(to, 1, from.stHead);
    const uint16_t command = from.stHead.stBase.wCommand;
    if (command == quorva_zrp::ZRP_CMD_AUTH_RSP) {
        addNested(to, 4, from.stBody.stAuthRsp);
    } else if (command == quorva_zrp::ZRP_CMD_AUTH_REFRESH_NOTIFY) {
        addNested(to, 10, from.stBody.stAuthRefreshNotify);
    }
}

inline void write(Writer& to, const RawFrame& from) {
    addNested(to, 1, from.head());
    addBytes(to, 12, from.body().data(), from.body().size());
}

template <class... Arguments>
void addNested(Writer& to, uint32_t number, const Arguments&... arguments) {
    Writer nested(to, number);
    write(nested, arguments...);
}

}  // namespace zrp_bench::protozero_write
