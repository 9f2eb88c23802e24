// From the protobuf wire format to this project's records, with protozero. Numbers are those of
// schemas/zrp.proto. Each `read` is false for content that does not fit the record; malformed
// encodings make protozero throw.
#pragma once

#include <protozero/pbf_reader.hpp>

#include "bench/messages.h"
#include "bench/peers/record_access.h"

namespace zrp_bench::protozero_read {

using protozero::pbf_reader;

constexpr auto varintField(uint32_t number) {
    return protozero::tag_and_type(number, protozero::pbf_wire_type::varint);
}
constexpr auto fixed32Field(uint32_t number) {
    return protozero::tag_and_type(number, protozero::pbf_wire_type::fixed32);
}
constexpr auto fixed64Field(uint32_t number) {
    return protozero::tag_and_type(number, protozero::pbf_wire_type::fixed64);
}
constexpr auto delimitedField(uint32_t number) {
    return protozero::tag_and_type(number, protozero::pbf_wire_type::length_delimited);
}

/// Goes over the fields of a message; `take(key, from, isGood)` takes the field of that number and
/// wire type and clears `isGood` when it does not fit.
template <class Take>
[[nodiscard]] bool forEachField(pbf_reader from, Take take) {
    bool isGood = true;
    while (from.next()) {
        take(from.tag_and_type(), from, isGood);
    }
    return isGood;
}

template <size_t N>
[[nodiscard]] bool readText(pbf_reader& from, char (&to)[N]) {
    const protozero::data_view view = from.get_view();
    return putText(to, {view.data(), view.size()});
}

inline bool read(pbf_reader message, Base& to) {
    return forEachField(message, [&to](uint32_t key, pbf_reader& from, bool&) {
        switch (key) {
            case varintField(1):
                to.wMagic = static_cast<uint16_t>(from.get_uint32());
                break;
            case varintField(2):
                to.wHeadVersion = static_cast<uint16_t>(from.get_uint32());
                break;
            case varintField(3):
                to.wBodyVersion = static_cast<uint16_t>(from.get_uint32());
                break;
            case varintField(4):
                to.wCommand = static_cast<uint16_t>(from.get_uint32());
                break;
            case fixed32Field(5):
                to.dwTimeStamp = from.get_fixed32();
                break;
            case varintField(6):
                to.bEncrypted = static_cast<uint8_t>(from.get_uint32());
                break;
            case varintField(7):
                to.dwSequence = from.get_uint32();
                break;
            case varintField(8):
                to.dwHeadLen = from.get_uint32();
                break;
            case varintField(9):
                to.dwBodyLen = from.get_uint32();
                break;
            default:
                from.skip();
        }
    });
}

inline bool read(pbf_reader message, quorva_zrp::TVESKRawDHReq& to) {
    return forEachField(message, [&to](uint32_t key, pbf_reader& from, bool& isGood) {
        switch (key) {
            case delimitedField(1): {
                const protozero::data_view view = from.get_view();
                isGood &= putBytes(to.szDH_A, to.wA_size, view.data(), view.size());
                break;
            }
            case delimitedField(2): {
                const protozero::data_view view = from.get_view();
                isGood &= fillBytes(to.szDH_p, view.data(), view.size());
                break;
            }
            default:
                from.skip();
        }
    });
}

inline bool read(pbf_reader message, quorva_zrp::TVESKAccount& to) {
    return forEachField(message, [&to](uint32_t key, pbf_reader& from, bool& isGood) {
        switch (key) {
            case varintField(1):
                to.wType = static_cast<uint16_t>(from.get_uint32());
                break;
            case fixed64Field(3):
                to.bFormat = quorva_zrp::ZRP_FORMAT_UINT64;
                to.stValue.ullUINT64 = from.get_fixed64();
                break;
            case delimitedField(4):
                to.bFormat = quorva_zrp::ZRP_FORMAT_STRING;
                isGood &= readText(from, to.stValue.szSTRING);
                break;
            case fixed64Field(5):
                to.ullUid = from.get_fixed64();
                break;
            default:
                from.skip();
        }
    });
}

inline bool read(pbf_reader message, quorva_zrp::O2AuthData& to) {
    return forEachField(message, [&to](uint32_t key, pbf_reader& from, bool& isGood) {
        switch (key) {
            case delimitedField(1):
                isGood &= readText(from, to.szAccessToken);
                break;
            case delimitedField(2):
                isGood &= readText(from, to.szExtend);
                break;
            default:
                from.skip();
        }
    });
}

inline bool read(pbf_reader message, quorva_zrp::TZRPAuthReqBody& to) {
    return forEachField(message, [&to](uint32_t key, pbf_reader& from, bool& isGood) {
        switch (key) {
            case varintField(1):
                to.wAuthType = static_cast<uint16_t>(from.get_uint32());
                break;
            case delimitedField(2):
                isGood &= readText(from, to.szGameToken);
                break;
            case fixed32Field(4):
                to.dwXQuorvaTimestamp = from.get_fixed32();
                break;
            case delimitedField(5):
                isGood &= readText(from, to.szXQuorvaTokenVersion);
                break;
            case delimitedField(6):
                isGood &= read(from.get_message(), to.stOAuthData);
                break;
            default:
                from.skip();
        }
    });
}

inline bool read(pbf_reader message, quorva_zrp::TZRPAuthRspBody& to) {
    return forEachField(message, [&to](uint32_t key, pbf_reader& from, bool& isGood) {
        switch (key) {
            case delimitedField(1):
                isGood &= read(from.get_message(), to.stAccount);
                break;
            case varintField(2):
                to.wAuthType = static_cast<uint16_t>(from.get_uint32());
                break;
            case delimitedField(3):
                isGood &= readText(from, to.szAtk);
                break;
            case delimitedField(4):
                isGood &= readText(from, to.szExtend);
                break;
            default:
                from.skip();
        }
    });
}

inline bool read(pbf_reader message, Notice& to) {
    return forEachField(message, [&to](uint32_t key, pbf_reader& from, bool& isGood) {
        switch (key) {
            case varintField(1):
                to.wAuthType = static_cast<uint16_t>(from.get_uint32());
                break;
            case delimitedField(2): {
                const protozero::data_view view = from.get_view();
                isGood &= putBytes(to.szAtk, to.wAtkLen, view.data(), view.size());
                break;
            }
            case varintField(3):
                to.dwAtkExpireIn = from.get_uint32();
                break;
            default:
                from.skip();
        }
    });
}

inline bool read(pbf_reader message, quorva_zrp::TZRPRelay& to) {
    return forEachField(message, [&to](uint32_t key, pbf_reader& from, bool& isGood) {
        switch (key) {
            case varintField(1):
                to.dwPosition = from.get_uint32();
                break;
            case delimitedField(2): {
                const protozero::data_view view = from.get_view();
                isGood &= fillBytes(to.szIdentity, view.data(), view.size());
                break;
            }
            case fixed64Field(3):
                to.ullServerID = from.get_fixed64();
                break;
            case fixed64Field(4):
                to.llSessionID = from.get_sfixed64();
                break;
            case varintField(5):
                to.bServerType = static_cast<uint8_t>(from.get_uint32());
                break;
            case delimitedField(6):
                isGood &= readText(from, to.szStartServiceName);
                break;
            default:
                from.skip();
        }
    });
}

inline bool read(pbf_reader message, quorva_zrp::TZRPRelayReqBody& to) {
    return forEachField(message, [&to](uint32_t key, pbf_reader& from, bool& isGood) {
        switch (key) {
            case varintField(1):
                to.iRelayType = from.get_sint32();
                break;
            case delimitedField(2):
                isGood &= read(from.get_message(), to.stRelayInfo);
                break;
            default:
                from.skip();
        }
    });
}

inline bool read(pbf_reader message, quorva_zrp::SpecifyZoneRouteInfo& to) {
    return forEachField(message, [&to](uint32_t key, pbf_reader& from, bool&) {
        switch (key) {
            case varintField(1):
                to.dwTypeID = from.get_uint32();
                break;
            case varintField(2):
                to.dwZoneID = from.get_uint32();
                break;
            default:
                from.skip();
        }
    });
}

inline bool read(pbf_reader message, quorva_zrp::SpecifyServerRouteInfo& to) {
    return forEachField(message, [&to](uint32_t key, pbf_reader& from, bool&) {
        switch (key) {
            case fixed64Field(1):
                to.ullServerID = from.get_fixed64();
                break;
            case varintField(2):
                to.bServerType = static_cast<uint8_t>(from.get_uint32());
                break;
            default:
                from.skip();
        }
    });
}

inline bool read(pbf_reader message, quorva_zrp::SpecifyNameRouteInfo& to) {
    return forEachField(message, [&to](uint32_t key, pbf_reader& from, bool& isGood) {
        if (key == delimitedField(1)) {
            isGood &= readText(from, to.szServiceName);
        } else {
            from.skip();
        }
    });
}

inline bool read(pbf_reader message, quorva_zrp::TZRPSynHead& to) {
    to.bHasRelayInfo = 0;
    to.bHasAuthInfo = 0;
    return forEachField(message, [&to](uint32_t key, pbf_reader& from, bool& isGood) {
        switch (key) {
            case delimitedField(1):
                to.bKeyMethod = quorva_zrp::ZRP_KEY_RAW_DH;
                isGood &= read(from.get_message(), to.stKeyInfo.stReqByRawDH);
                break;
            case varintField(3):
                to.bEncMethod = static_cast<uint8_t>(from.get_uint32());
                break;
            case fixed64Field(4):
                to.llGameID = from.get_sfixed64();
                break;
            case varintField(5):
                to.iUnitID = from.get_sint32();
                break;
            case varintField(6):
                to.iClientType = from.get_sint32();
                break;
            case delimitedField(7):
                isGood &= read(from.get_message(), to.stAccount);
                break;
            case delimitedField(8):
                to.bHasRelayInfo = 1;
                isGood &= read(from.get_message(), to.stRelayReqInfo);
                break;
            case delimitedField(9):
                to.bHasAuthInfo = 1;
                isGood &= read(from.get_message(), to.stAuthReqInfo);
                break;
            case varintField(10):
                to.bSupportCompressMethodList = static_cast<uint8_t>(from.get_uint32());
                break;
            case delimitedField(11):
                to.bRouteFlag = quorva_zrp::ZRP_ROUTE_ZONE;
                isGood &= read(from.get_message(), to.stRouteInfo.stSpecifyZone);
                break;
            case delimitedField(12):
                to.bRouteFlag = quorva_zrp::ZRP_ROUTE_SERVER;
                isGood &= read(from.get_message(), to.stRouteInfo.stSpecifyServer);
                break;
            case delimitedField(14):
                to.bRouteFlag = quorva_zrp::ZRP_ROUTE_NAME;
                isGood &= read(from.get_message(), to.stRouteInfo.stSpecifyName);
                break;
            case varintField(15):
                to.dwReserved = from.get_uint32();
                break;
            default:
                from.skip();
        }
    });
}

inline bool read(pbf_reader message, quorva_zrp::TZRPDataHead& to) {
    return forEachField(message, [&to](uint32_t key, pbf_reader& from, bool& isGood) {
        switch (key) {
            case varintField(1):
                to.bCompressFlag = static_cast<uint8_t>(from.get_uint32());
                break;
            case varintField(2):
                to.bAllowLost = static_cast<uint8_t>(from.get_uint32());
                break;
            case delimitedField(3):
                to.bRouteFlag = quorva_zrp::ZRP_ROUTE_ZONE;
                isGood &= read(from.get_message(), to.stRouteInfo.stSpecifyZone);
                break;
            case delimitedField(4):
                to.bRouteFlag = quorva_zrp::ZRP_ROUTE_SERVER;
                isGood &= read(from.get_message(), to.stRouteInfo.stSpecifyServer);
                break;
            case delimitedField(6):
                to.bRouteFlag = quorva_zrp::ZRP_ROUTE_NAME;
                isGood &= read(from.get_message(), to.stRouteInfo.stSpecifyName);
                break;
            default:
                from.skip();
        }
    });
}

inline bool read(pbf_reader message, quorva_zrp::TZRPHead& to) {
    return forEachField(message, [&to](uint32_t key, pbf_reader& from, bool& isGood) {
        switch (key) {
            case delimitedField(1):
                isGood &= read(from.get_message(), to.stBase);
                break;
            case delimitedField(2):
                isGood &= read(from.get_message(), to.stExtend.stSyn);
                break;
            case delimitedField(4):
                isGood &= read(from.get_message(), to.stExtend.stData);
                break;
            default:
                from.skip();
        }
    });
}

inline bool read(pbf_reader message, Frame& to) {
    return forEachField(message, [&to](uint32_t key, pbf_reader& from, bool& isGood) {
        switch (key) {
            case delimitedField(1):
                isGood &= read(from.get_message(), to.stHead);
                break;
            case delimitedField(4):
                isGood &= read(from.get_message(), to.stBody.stAuthRsp);
                break;
            case delimitedField(10):
                isGood &= read(from.get_message(), to.stBody.stAuthRefreshNotify);
                break;
            default:
                from.skip();
        }
    });
}

inline bool read(pbf_reader message, RawFrame& to) {
    return forEachField(message, [&to](uint32_t key, pbf_reader& from, bool& isGood) {
        switch (key) {
            case delimitedField(1):
                isGood &= read(from.get_message(), to.head());
                break;
            case delimitedField(12): {
                const protozero::data_view view = from.get_view();
                isGood &= to.setBody(view.data(), view.size());
                break;
            }
            default:
                from.skip();
        }
    });
}

}  // namespace zrp_bench::protozero_read
