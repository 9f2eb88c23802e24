#include "examples/conversation/describe.h"

#include <fmt/format.h>

#include <initializer_list>

namespace conversation {

using namespace quorva_zrp;

namespace {

std::string describeAccount(const TVESKAccount& account) {
    // `bFormat` tells which member of the union is live; only that one may be read.
    switch (account.bFormat) {
        case ZRP_FORMAT_UINT32:
            return fmt::format("account {}", account.stValue.dwUINT32);
        case ZRP_FORMAT_UINT64:
            return fmt::format("account {}", account.stValue.ullUINT64);
        case ZRP_FORMAT_STRING:
            return fmt::format("\"{}\"", printable(textOf(account.stValue.szSTRING)));
        default:
            return "no account";
    }
}

std::string describeRoute(uint8_t flag, const TZRPRouteInfo& route) {
    switch (flag) {
        case ZRP_ROUTE_ZONE:
            return fmt::format("to zone {}, type {}", route.stSpecifyZone.dwZoneID,
                               route.stSpecifyZone.dwTypeID);
        case ZRP_ROUTE_SERVER:
            return fmt::format("to server {}", route.stSpecifyServer.ullServerID);
        case ZRP_ROUTE_LOGIN_POSITION:
            return "to the login position";
        case ZRP_ROUTE_NAME:
            return fmt::format("to service \"{}\"",
                               printable(textOf(route.stSpecifyName.szServiceName)));
        default:
            return "";
    }
}

const char* describeKeyMethod(uint8_t method) {
    switch (method) {
        case ZRP_KEY_NONE:
            return "no key";
        case ZRP_KEY_VALUE:
            return "key";
        case ZRP_KEY_RAW_DH:
            return "raw DH";
        case ZRP_KEY_ENC_DH:
            return "enciphered DH";
        default:
            return "unknown key method";
    }
}

/// The parts that are not empty, with commas between.
std::string listOf(std::initializer_list<std::string> parts) {
    std::string list;
    for (const std::string& part : parts) {
        list += list.empty() || part.empty() ? "" : ", ";
        list += part;
    }
    return list;
}

std::string describeSyn(const TZRPSynHead& syn) {
    return listOf({describeAccount(syn.stAccount), describeKeyMethod(syn.bKeyMethod),
                   syn.bHasRelayInfo == 1 ? "relay" : "", syn.bHasAuthInfo == 1 ? "token" : "",
                   describeRoute(syn.bRouteFlag, syn.stRouteInfo)});
}

std::string describeAck(const TZRPAckHead& head, const TZRPAckBody& body) {
    return listOf({describeKeyMethod(head.bKeyMethod),
                   fmt::format("compression limit {}", head.dwCompressLimit),
                   body.bHasAuthInfo == 1 ? "token accepted" : ""});
}

std::string describeData(const ReceivedFrame& received) {
    const TZRPDataHead& head = received.frame.stHead.stExtend.stData;
    return listOf({fmt::format("body of {} bytes", received.body.size()),
                   describeRoute(head.bRouteFlag, head.stRouteInfo)});
}

/// The place in the queue, with a bar that fills up as the place comes nearer.
std::string describeWait(const TZRPWaitBody& wait) {
    constexpr uint32_t width = 20;
    const uint32_t total = wait.dwTotal;
    const uint64_t passed = wait.dwPosition <= total ? total - wait.dwPosition : 0;
    const size_t filled = total == 0 ? 0 : static_cast<size_t>(passed * width / total);
    return fmt::format("[{}{}] place {} of {}, about {} ms", std::string(filled, '#'),
                       std::string(width - filled, '.'), wait.dwPosition, total, wait.dwRoughTime);
}

}  // namespace

std::string printable(std::string_view text) {
    std::string safe(text);
    for (char& character : safe) {
        if (character < ' ' || character > '~') {
            character = '?';
        }
    }
    return safe;
}

std::string describe(const ReceivedFrame& received) {
    const TZRPExtHead& head = received.frame.stHead.stExtend;
    const TZRPBody& body = received.frame.stBody;
    switch (received.command()) {
        case ZRP_CMD_NULL:
            return "still here";
        case ZRP_CMD_SYN:
            return describeSyn(head.stSyn);
        case ZRP_CMD_ACK:
            return describeAck(head.stAck, body.stAck);
        case ZRP_CMD_AUTH_REQ:
            return fmt::format("token version {}, game token of {} characters",
                               printable(textOf(body.stAuthReq.szXQuorvaTokenVersion)),
                               textOf(body.stAuthReq.szGameToken).size());
        case ZRP_CMD_AUTH_RSP:
            return fmt::format("{}, user {}", describeAccount(body.stAuthRsp.stAccount),
                               body.stAuthRsp.stAccount.ullUid);
        case ZRP_CMD_WAIT:
            return describeWait(body.stWait);
        case ZRP_CMD_DATA:
            return describeData(received);
        case ZRP_CMD_CSTOP:
            return "goodbye";
        case ZRP_CMD_SSTOP:
            return fmt::format("goodbye, code {}, extended code {}", body.stSStop.dwCode,
                               body.stSStop.dwExErrCode);
        case ZRP_CMD_BINGO:
            return fmt::format("in: server {}, session {}, service \"{}\"",
                               body.stBingo.stRelayInfo.ullServerID,
                               body.stBingo.stRelayInfo.llSessionID,
                               printable(textOf(body.stBingo.stRelayInfo.szStartServiceName)));
        case ZRP_CMD_AUTH_REFRESH_REQ:
            return "asks for a fresh token";
        case ZRP_CMD_AUTH_REFRESH_NOTIFY:
            return fmt::format("fresh token of {} bytes, good for {} s",
                               body.stAuthRefreshNotify.wAtkLen,
                               body.stAuthRefreshNotify.dwAtkExpireIn);
        case ZRP_CMD_ROUTE_CHANGE:
            return fmt::format("now served by server {}", body.stRouteChange.ullServerID);
        default:
            return "";
    }
}

}  // namespace conversation
