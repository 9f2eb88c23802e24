// The access server.
#include <algorithm>
#include <string_view>
#include <thread>

#include "examples/conversation/roles.h"

namespace conversation {

using namespace quorva_zrp;

namespace {

constexpr uint64_t firstServer = 900001;
constexpr uint64_t secondServer = 900002;
constexpr uint64_t userId = 123456789012345;
constexpr int64_t sessionId = 42;

/// What the server keeps of the client's request. The frame itself goes with the next one.
struct Request {
    DhValue clientValue;
    size_t clientValueSize;
    std::string service;
    bool hasToken;
};

Request receiveSyn(Peer& peer) {
    const TZRPSynHead& syn = peer.receive(ZRP_CMD_SYN).frame.stHead.stExtend.stSyn;
    if (!syn.has_KeyInfo() || syn.bKeyMethod != ZRP_KEY_RAW_DH) {
        fail(Outcome::unexpectedFrame, "SYN carries key method {}, and only {} is supported",
             syn.bKeyMethod, ZRP_KEY_RAW_DH);
    }
    const TVESKRawDHReq& request = syn.stKeyInfo.stReqByRawDH;
    if (!request.has_DH_A() || request.wA_size > ZRP_CAP_DH_VALUE) {
        fail(Outcome::unexpectedFrame, "SYN carries no Diffie-Hellman value, or one of {} bytes",
             request.wA_size);
    }
    // The modulus is the client's word. A server that computed with any number it was sent could be
    // made to give its secret away, so only the one agreed upon will do.
    if (!std::equal(dhModulus().begin(), dhModulus().end(), request.szDH_p)) {
        fail(Outcome::unexpectedFrame, "SYN carries a modulus other than the one agreed upon");
    }
    if (!syn.has_Account() || !syn.stAccount.has_Value()) {
        fail(Outcome::unexpectedFrame, "SYN names no account");
    }

    Request kept = {};
    std::copy_n(request.szDH_A, request.wA_size, kept.clientValue.begin());
    kept.clientValueSize = request.wA_size;
    kept.hasToken = syn.bHasAuthInfo == 1;
    if (syn.bHasRelayInfo == 1) {
        kept.service = textOf(syn.stRelayReqInfo.stRelayInfo.szStartServiceName);
    }
    return kept;
}

void fillAccount(TVESKAccount& account) {
    account.wType = 1;
    account.bFormat = ZRP_FORMAT_UINT64;
    (void)account.stValue.construct(account.bFormat);
    account.stValue.ullUINT64 = userId;
    account.ullUid = userId;
}

void sendAck(Peer& peer, const DhKeyPair& key, bool answerToken) {
    TZRPInFrame frame = makeFrame(ZRP_CMD_ACK);
    TZRPAckHead& ack = frame.stHead.stExtend.stAck;
    ack.bKeyMethod = ZRP_KEY_RAW_DH;
    (void)ack.stKeyInfo.construct(ack.bKeyMethod);
    TVESKRawDHRsp& response = ack.stKeyInfo.stRspByRawDH;
    std::copy(key.publicValue().begin(), key.publicValue().end(), response.szDH_B);
    response.wB_size = static_cast<uint16_t>(key.publicValue().size());

    // ACK is the one command with a structure in the head and another in the body.
    TZRPAckBody& body = frame.stBody.stAck;
    body.bHasAuthInfo = answerToken ? 1 : 0;
    if (answerToken) {
        fillAccount(body.stAuthResInfo.stAccount);
        setText(body.stAuthResInfo.szAtk, "demo-handshake-atk", "szAtk");
    }
    peer.send(frame);
}

void authenticate(Peer& peer) {
    const TZRPAuthReqBody& request = peer.receive(ZRP_CMD_AUTH_REQ).frame.stBody.stAuthReq;
    // A field that did not come keeps its default. Where the default is no answer, ask.
    if (!request.has_GameToken() || textOf(request.szGameToken) != "demo-game-token") {
        fail(Outcome::unexpectedFrame, "AUTH_REQ carries no game token, or not the right one");
    }
    if (textOf(request.szXQuorvaTokenVersion) != "V1") {
        fail(Outcome::unexpectedFrame, "AUTH_REQ carries a token of another version than V1");
    }
    const uint16_t authType = request.wAuthType;

    TZRPInFrame frame = makeFrame(ZRP_CMD_AUTH_RSP);
    TZRPAuthRspBody& answer = frame.stBody.stAuthRsp;
    fillAccount(answer.stAccount);
    answer.wAuthType = authType;
    setText(answer.szAtk, "demo-atk", "szAtk");
    setText(answer.szExtend, "region=test", "szExtend");
    peer.send(frame);
}

void queueThenAdmit(Peer& peer, const std::string& service) {
    const Options& options = peer.options();
    const uint32_t total = options.queueNotices;
    for (uint32_t position = total; position > 0; --position) {
        TZRPInFrame frame = makeFrame(ZRP_CMD_WAIT);
        frame.stBody.stWait.dwPosition = position;
        frame.stBody.stWait.dwTotal = total;
        frame.stBody.stWait.dwRoughTime = static_cast<uint32_t>(options.pause.count()) * position;
        peer.send(frame);
        (void)peer.receive(ZRP_CMD_NULL);  // the client is still there
        std::this_thread::sleep_for(options.pause);
    }

    TZRPInFrame frame = makeFrame(ZRP_CMD_BINGO);
    TZRPRelay& relay = frame.stBody.stBingo.stRelayInfo;
    relay.ullServerID = firstServer;
    relay.llSessionID = sessionId;
    constexpr std::string_view identity = "session-identity";
    static_assert(identity.size() == ZRP_CAP_IDENTITY);
    std::copy(identity.begin(), identity.end(), relay.szIdentity);
    setText(relay.szStartServiceName, service, "szStartServiceName");
    peer.send(frame);
}

/// Gives a receipt for the next body that comes.
void acceptBody(Peer& peer, const SharedSecret& secret) {
    peer.sendReceipt(secret, peer.receive(ZRP_CMD_DATA).body);
}

void play(Peer& peer, const SharedSecret& secret) {
    acceptBody(peer, secret);
    acceptBody(peer, secret);
    acceptBody(peer, secret);

    const std::string_view welcome = "the game begins";
    TZRPHead toLogin = makeDataHead();
    routeToLoginPosition(toLogin);
    peer.send(toLogin, welcome);
    const Bytes map(3000, '\x2A');
    TZRPHead plain = makeDataHead();
    peer.send(plain, map);
    peer.checkReceipt(secret, welcome);
    peer.checkReceipt(secret, map);
}

void refreshToken(Peer& peer) {
    (void)peer.receive(ZRP_CMD_AUTH_REFRESH_REQ);

    TZRPInFrame frame = makeFrame(ZRP_CMD_AUTH_REFRESH_NOTIFY);
    TZRPAuthRefreshNotifyBody& notice = frame.stBody.stAuthRefreshNotify;
    constexpr std::string_view token = "demo-refreshed-atk";
    std::copy(token.begin(), token.end(), notice.szAtk);
    notice.wAtkLen = static_cast<uint16_t>(token.size());
    notice.dwAtkExpireIn = 7200;
    peer.send(frame);
}

void moveToOtherServer(Peer& peer, const SharedSecret& secret) {
    TZRPInFrame frame = makeFrame(ZRP_CMD_ROUTE_CHANGE);
    frame.stBody.stRouteChange.ullServerID = secondServer;
    peer.send(frame);

    const ReceivedFrame& moved = peer.receive(ZRP_CMD_DATA);
    const TZRPDataHead& head = moved.frame.stHead.stExtend.stData;
    if (head.bRouteFlag != ZRP_ROUTE_SERVER ||
        head.stRouteInfo.stSpecifyServer.ullServerID != secondServer) {
        fail(Outcome::unexpectedFrame, "DATA does not follow the route to server {}", secondServer);
    }
    peer.sendReceipt(secret, moved.body);
}

void stop(Peer& peer) {
    (void)peer.receive(ZRP_CMD_CSTOP);
    TZRPInFrame frame = makeFrame(ZRP_CMD_SSTOP);
    frame.stBody.stSStop.dwCode = 0;  // nothing is wrong: the client asked for it
    peer.send(frame);
}

}  // namespace

void runServer(Peer& peer) {
    const Request request = receiveSyn(peer);
    const DhKeyPair key;
    auto secret =
        key.agree(std::span<const uint8_t>(request.clientValue).first(request.clientValueSize));
    if (!secret) {
        fail(Outcome::unexpectedFrame, "SYN carries a Diffie-Hellman value that gives no secret");
    }
    if (peer.injects(FaultKind::secret)) {
        secret->flipOneBit();
    }
    sendAck(peer, key, request.hasToken);
    authenticate(peer);
    queueThenAdmit(peer, request.service);
    peer.checkProof(*secret);
    peer.sendProof(*secret);
    play(peer, *secret);
    refreshToken(peer);
    moveToOtherServer(peer, *secret);
    stop(peer);
}

}  // namespace conversation
