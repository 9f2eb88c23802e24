// The game client.
#include <algorithm>

#include "examples/conversation/commands.h"
#include "examples/conversation/roles.h"

namespace conversation {

using namespace quorva_zrp;

namespace {

void sendSyn(Peer& peer, const DhKeyPair& key) {
    TZRPInFrame frame = makeFrame(ZRP_CMD_SYN);
    TZRPSynHead& syn = frame.stHead.stExtend.stSyn;
    syn.llGameID = 7001;
    syn.iUnitID = -1;
    syn.iClientType = 2;

    // A union inside a message: set its selector, construct it for that selector, fill the member.
    syn.bKeyMethod = ZRP_KEY_RAW_DH;
    (void)syn.stKeyInfo.construct(syn.bKeyMethod);
    TVESKRawDHReq& request = syn.stKeyInfo.stReqByRawDH;
    // A counted array: fill it from the front and say how much of it counts.
    const DhValue& publicValue = key.publicValue();
    std::copy(publicValue.begin(), publicValue.end(), request.szDH_A);
    request.wA_size = static_cast<uint16_t>(publicValue.size());
    // A fixed array has no count: all of it is sent.
    std::copy(dhModulus().begin(), dhModulus().end(), request.szDH_p);

    syn.stAccount.wType = 1;
    syn.stAccount.bFormat = ZRP_FORMAT_STRING;
    (void)syn.stAccount.stValue.construct(syn.stAccount.bFormat);
    setText(syn.stAccount.stValue.szSTRING, "player.one", "szSTRING");

    // Optional elements: a flag of 1 sends them, a flag of 0 leaves them out.
    syn.bHasRelayInfo = 1;
    syn.stRelayReqInfo.iRelayType = 1;
    syn.stRelayReqInfo.stRelayInfo.llSessionID = -1;  // none yet
    setText(syn.stRelayReqInfo.stRelayInfo.szStartServiceName, "lobby", "szStartServiceName");
    syn.bHasAuthInfo = 1;
    syn.stAuthReqInfo.wAuthType = 4;
    setText(syn.stAuthReqInfo.szGameToken, "demo-token-of-the-handshake", "szGameToken");

    syn.bRouteFlag = ZRP_ROUTE_ZONE;
    (void)syn.stRouteInfo.construct(syn.bRouteFlag);
    syn.stRouteInfo.stSpecifyZone.dwTypeID = 2;
    syn.stRouteInfo.stSpecifyZone.dwZoneID = 31;
    peer.send(frame);
}

SharedSecret receiveAck(Peer& peer, const DhKeyPair& key) {
    const TZRPInFrame& frame = peer.receive(ZRP_CMD_ACK).frame;
    const TZRPAckHead& ack = frame.stHead.stExtend.stAck;
    // Three questions before a union member may be read: did the union come at all, is this the
    // member that came, and did its parts come?
    if (!ack.has_KeyInfo() || ack.bKeyMethod != ZRP_KEY_RAW_DH) {
        fail(Outcome::unexpectedFrame, "ACK carries key method {} where {} was asked for",
             ack.bKeyMethod, ZRP_KEY_RAW_DH);
    }
    const TVESKRawDHRsp& response = ack.stKeyInfo.stRspByRawDH;
    // A decoded count is what the other end said, and no more: a count field that comes without its
    // array, or after it, is never compared with the capacity. Check it before using it.
    if (!response.has_DH_B() || response.wB_size > ZRP_CAP_DH_VALUE) {
        fail(Outcome::unexpectedFrame, "ACK carries no Diffie-Hellman value, or one of {} bytes",
             response.wB_size);
    }
    const auto secret = key.agree(std::span<const uint8_t>(response.szDH_B, response.wB_size));
    if (!secret) {
        fail(Outcome::unexpectedFrame, "ACK carries a Diffie-Hellman value that gives no secret");
    }
    if (frame.stBody.stAck.bHasAuthInfo != 1) {
        fail(Outcome::unexpectedFrame, "ACK does not answer the token of SYN");
    }
    return *secret;
}

void authenticate(Peer& peer) {
    TZRPInFrame frame = makeFrame(ZRP_CMD_AUTH_REQ);
    TZRPAuthReqBody& request = frame.stBody.stAuthReq;
    request.wAuthType = 4;
    request.dwXQuorvaTimestamp = 1700000000;
    setText(request.szGameToken, "demo-game-token", "szGameToken");
    setText(request.stOAuthData.szAccessToken, "demo-access-token", "szAccessToken");
    // szXQuorvaTokenVersion keeps its default, "V1".
    peer.send(frame);

    const TZRPAuthRspBody& answer = peer.receive(ZRP_CMD_AUTH_RSP).frame.stBody.stAuthRsp;
    if (!answer.has_Account() || !answer.stAccount.has_Uid() || textOf(answer.szAtk).empty()) {
        fail(Outcome::unexpectedFrame, "AUTH_RSP names no user, or carries no token");
    }
}

/// Queues until the server lets the client in.
void waitForBingo(Peer& peer) {
    for (;;) {
        const ReceivedFrame& received = peer.receive();
        if (received.command() == ZRP_CMD_BINGO) {
            return;
        }
        if (received.command() != ZRP_CMD_WAIT) {
            fail(Outcome::unexpectedFrame, "{} came where WAIT or BINGO was due",
                 commandName(received.command()));
        }
        TZRPInFrame alive = makeFrame(ZRP_CMD_NULL);
        peer.send(alive);
    }
}

/// A body of bytes that mean something to the game and nothing to this layer.
Bytes someBody(size_t size, unsigned seed) {
    Bytes body(size);
    unsigned state = seed;
    for (char& byte : body) {
        state = state * 1103515245u + 12345u;
        byte = static_cast<char>(state >> 16);
    }
    return body;
}

void play(Peer& peer, const SharedSecret& secret) {
    const Bytes small = someBody(48, 1);
    const Bytes large = someBody(20000, 2);  // larger than any frame that carries a message
    // A body is just bytes: here some that look like the start of a frame.
    const Bytes disguised = {'\xAA', 0, 0, 0, 5, 0x25, '\x7F', '\xFF', '\xFF', '\xFF'};

    // Several frames in a row: at the other end one read may bring the end of one and the beginning
    // of the next.
    TZRPHead toZone = makeDataHead();
    routeToZone(toZone, 2, 31);
    peer.send(toZone, small);
    TZRPHead toServer = makeDataHead();
    routeToServer(toServer, 900001, 3);
    peer.send(toServer, large);
    TZRPHead toService = makeDataHead();
    routeToService(toService, "match-maker");
    peer.send(toService, disguised);

    peer.checkReceipt(secret, small);
    peer.checkReceipt(secret, large);
    peer.checkReceipt(secret, disguised);

    // And the other way round.
    for (int count = 0; count < 2; ++count) {
        peer.sendReceipt(secret, peer.receive(ZRP_CMD_DATA).body);
    }
}

void refreshToken(Peer& peer) {
    TZRPInFrame frame = makeFrame(ZRP_CMD_AUTH_REFRESH_REQ);
    peer.send(frame);

    const TZRPAuthRefreshNotifyBody& notice =
        peer.receive(ZRP_CMD_AUTH_REFRESH_NOTIFY).frame.stBody.stAuthRefreshNotify;
    if (!notice.has_Atk() || notice.wAtkLen > ZRP_CAP_ATK) {
        fail(Outcome::unexpectedFrame, "AUTH_REFRESH_NOTIFY carries no token, or one of {} bytes",
             notice.wAtkLen);
    }
}

void followRoute(Peer& peer, const SharedSecret& secret) {
    const TZRPRouteChangeBody& change =
        peer.receive(ZRP_CMD_ROUTE_CHANGE).frame.stBody.stRouteChange;
    if (!change.has_ServerID()) {
        fail(Outcome::unexpectedFrame, "ROUTE_CHANGE names no server");
    }
    TZRPHead head = makeDataHead();
    routeToServer(head, change.ullServerID, 3);
    const Bytes none;  // a body may be empty; it is then left out of the frame
    peer.send(head, none);
    peer.checkReceipt(secret, none);
}

void stop(Peer& peer) {
    TZRPInFrame frame = makeFrame(ZRP_CMD_CSTOP);
    peer.send(frame);
    (void)peer.receive(ZRP_CMD_SSTOP);
    peer.awaitEnd();
}

}  // namespace

void runClient(Peer& peer) {
    const DhKeyPair key;
    sendSyn(peer, key);
    const SharedSecret secret = receiveAck(peer, key);
    authenticate(peer);
    waitForBingo(peer);
    peer.sendProof(secret);
    peer.checkProof(secret);
    play(peer, secret);
    refreshToken(peer);
    followRoute(peer, secret);
    stop(peer);
}

}  // namespace conversation
