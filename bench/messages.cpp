#include "bench/messages.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <string_view>
#include <utility>

#include "bench/harness/oracle_types.h"
#include "tests/oracle/oracle.h"

namespace zrp_bench {

using namespace quorva_zrp;

namespace {

/// A small generator of repeatable pseudo-random values (xorshift64*).
class Random {
  public:
    explicit Random(uint64_t seed) : state_(seed) {}
    uint64_t next() {
        state_ ^= state_ >> 12;
        state_ ^= state_ << 25;
        state_ ^= state_ >> 27;
        return state_ * UINT64_C(0x2545F4914F6CDD1D);
    }
    /// A value of 1 to `bits` bits, every width as likely.
    uint64_t ofAnyWidth(unsigned bits) {
        const unsigned width = 1 + static_cast<unsigned>((next() >> 32) % bits);
        return (next() >> (64 - width)) | (UINT64_C(1) << (width - 1));
    }

  private:
    uint64_t state_;
};

// --- Parts of messages --------------------------------------------------------------------------

template <size_t N>
void setText(char (&to)[N], size_t length, uint64_t seed) {
    constexpr std::string_view alphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
    Random random(seed);
    for (size_t i = 0; i < length; ++i) {
        to[i] = alphabet[random.next() >> 58];
    }
    to[length] = '\0';
}

void setBytes(uint8_t* to, size_t length, uint64_t seed) {
    Random random(seed);
    for (size_t i = 0; i < length; ++i) {
        to[i] = static_cast<uint8_t>(random.next() >> 56);
    }
}

void setBase(Base& base, uint16_t command, uint32_t headLength, uint32_t bodyLength) {
    base.wMagic = 0x5A52;
    base.wHeadVersion = 12;
    base.wBodyVersion = 12;
    base.wCommand = command;
    base.dwTimeStamp = 1718035200;
    base.bEncrypted = 1;
    base.dwSequence = 4711;
    base.dwHeadLen = headLength;
    base.dwBodyLen = bodyLength;
}

Base base(uint16_t command, uint32_t headLength, uint32_t bodyLength) {
    Base made{};
    made.construct();
    setBase(made, command, headLength, bodyLength);
    return made;
}

Frame frame(uint16_t command, uint32_t headLength, uint32_t bodyLength) {
    Frame made{};
    made.construct();
    setBase(made.stHead.stBase, command, headLength, bodyLength);
    made.stHead.stExtend.construct(command);
    made.stBody.construct(command);
    return made;
}

void setRawKeyExchange(TZRPSynHead& syn) {
    syn.bKeyMethod = ZRP_KEY_RAW_DH;
    syn.stKeyInfo.construct(ZRP_KEY_RAW_DH);
    TVESKRawDHReq& key = syn.stKeyInfo.stReqByRawDH;
    key.wA_size = ZRP_CAP_DH_VALUE;
    setBytes(key.szDH_A, ZRP_CAP_DH_VALUE, 0xA1);
    setBytes(key.szDH_p, ZRP_CAP_DH_VALUE, 0xA2);
}

void setAuthRequest(TZRPSynHead& syn, size_t token, size_t texts) {
    syn.bHasAuthInfo = 1;
    TZRPAuthReqBody& request = syn.stAuthReqInfo;
    request.construct();
    request.wAuthType = 5;
    setText(request.szGameToken, token, 0xB1);
    request.dwXQuorvaTimestamp = 1718035123;
    setText(request.stOAuthData.szAccessToken, texts, 0xB2);
    setText(request.stOAuthData.szExtend, texts, 0xB3);
}

TZRPSynHead& setSyn(Frame& made) {
    TZRPSynHead& syn = made.stHead.stExtend.stSyn;
    setRawKeyExchange(syn);
    syn.bEncMethod = 3;
    syn.llGameID = INT64_C(7205759403792794);
    syn.iUnitID = 1;
    syn.iClientType = 102;
    syn.stAccount.wType = 4;
    syn.stAccount.ullUid = UINT64_C(9151314442816847873);
    syn.bSupportCompressMethodList = 3;
    return syn;
}

Notice notice() {
    Notice made{};
    made.construct();
    made.wAuthType = 5;
    made.wAtkLen = 512;
    setBytes(made.szAtk, 512, 0xD1);
    made.dwAtkExpireIn = 7200;
    return made;
}

void setServerRoute(TZRPDataHead& data) {
    data.bCompressFlag = 0;
    data.bAllowLost = 0;
    data.bRouteFlag = ZRP_ROUTE_SERVER;
    data.stRouteInfo.construct(ZRP_ROUTE_SERVER);
    data.stRouteInfo.stSpecifyServer.ullServerID = UINT64_C(0x0C3A91F0527E6B84);
    data.stRouteInfo.stSpecifyServer.bServerType = 7;
}

RawFrame rawFrame(size_t bodySize) {
    RawFrame made(bodySize);
    TZRPHead& head = made.head();
    head.construct();
    setBase(head.stBase, ZRP_CMD_DATA, 62, static_cast<uint32_t>(bodySize));
    head.stExtend.construct(ZRP_CMD_DATA);
    setServerRoute(head.stExtend.stData);
    std::vector<uint8_t> body(bodySize);
    setBytes(body.data(), bodySize, 0xE1);
    made.setBody(body.data(), body.size());
    return made;
}

template <class Shape>
Message<Shape> message(std::string name, Shape value) {
    Message<Shape> made{std::move(name), {}};
    made.values.push_back(std::move(value));
    return made;
}

Message<Base> makeRandomBaseHeaders() {
    Message<Base> made{"M1r", {}};
    Random random(0xF1);
    for (int i = 0; i < 4096; ++i) {
        Base header{};
        header.construct();
        header.wMagic = static_cast<uint16_t>(random.ofAnyWidth(16));
        header.wHeadVersion = static_cast<uint16_t>(random.ofAnyWidth(16));
        header.wBodyVersion = static_cast<uint16_t>(random.ofAnyWidth(16));
        header.wCommand = static_cast<uint16_t>(random.ofAnyWidth(16));
        header.dwTimeStamp = static_cast<uint32_t>(random.ofAnyWidth(32));
        header.bEncrypted = static_cast<uint8_t>(random.next() & 1);
        header.dwSequence = static_cast<uint32_t>(random.ofAnyWidth(32));
        header.dwHeadLen = static_cast<uint32_t>(random.ofAnyWidth(32));
        header.dwBodyLen = static_cast<uint32_t>(random.ofAnyWidth(32));
        made.values.push_back(header);
    }
    return made;
}

Frame makeSynFrame() {
    Frame made = frame(ZRP_CMD_SYN, 671, 0);
    TZRPSynHead& syn = setSyn(made);
    syn.stAccount.bFormat = ZRP_FORMAT_UINT64;
    syn.stAccount.stValue.ullUINT64 = UINT64_C(5764607523034234881);
    setAuthRequest(syn, 200, 100);
    syn.bRouteFlag = ZRP_ROUTE_ZONE;
    syn.stRouteInfo.construct(ZRP_ROUTE_ZONE);
    syn.stRouteInfo.stSpecifyZone.dwTypeID = 1;
    syn.stRouteInfo.stSpecifyZone.dwZoneID = 2047;
    return made;
}

Frame makeFullSynFrame() {
    Frame made = frame(ZRP_CMD_SYN, 1568, 0);
    TZRPSynHead& syn = setSyn(made);
    syn.stAccount.bFormat = ZRP_FORMAT_STRING;
    setText(syn.stAccount.stValue.szSTRING, ZRP_CAP_ACCOUNT_TEXT - 1, 0xC1);
    syn.bHasRelayInfo = 1;
    syn.stRelayReqInfo.construct();
    syn.stRelayReqInfo.iRelayType = 2;
    TZRPRelay& relay = syn.stRelayReqInfo.stRelayInfo;
    relay.dwPosition = 100200;
    setBytes(relay.szIdentity, ZRP_CAP_IDENTITY, 0xC2);
    relay.ullServerID = UINT64_C(0x0C3A91F0527E6B84);
    relay.llSessionID = INT64_C(0x00F2A6B8C4D1E395);
    relay.bServerType = 7;
    setText(relay.szStartServiceName, ZRP_CAP_SERVICE_NAME - 1, 0xC3);
    setAuthRequest(syn, ZRP_CAP_TOKEN_TEXT - 1, ZRP_CAP_TOKEN_TEXT - 1);
    setText(syn.stAuthReqInfo.szXQuorvaTokenVersion, ZRP_CAP_TOKEN_VERSION - 1, 0xC4);
    syn.bRouteFlag = ZRP_ROUTE_NAME;
    syn.stRouteInfo.construct(ZRP_ROUTE_NAME);
    setText(syn.stRouteInfo.stSpecifyName.szServiceName, ZRP_CAP_SERVICE_NAME - 1, 0xC5);
    return made;
}

Frame makeAuthResponseFrame() {
    Frame made = frame(ZRP_CMD_AUTH_RSP, 60, 276);
    TZRPAuthRspBody& response = made.stBody.stAuthRsp;
    response.stAccount.wType = 4;
    response.stAccount.bFormat = ZRP_FORMAT_STRING;
    setText(response.stAccount.stValue.szSTRING, 32, 0xC6);
    response.stAccount.ullUid = UINT64_C(9151314442816847873);
    response.wAuthType = 5;
    setText(response.szAtk, 128, 0xC7);
    setText(response.szExtend, 64, 0xC8);
    return made;
}

Frame makeRoutedDataFrame() {
    Frame made = frame(ZRP_CMD_DATA, 62, 9);
    setServerRoute(made.stHead.stExtend.stData);
    return made;
}

Frame makeRefreshNoticeFrame() {
    Frame made = frame(ZRP_CMD_AUTH_REFRESH_NOTIFY, 60, 527);
    made.stBody.stAuthRefreshNotify = notice();
    return made;
}

std::vector<Message<RawFrame>> makeBodySweep() {
    std::vector<Message<RawFrame>> made;
    for (size_t size = 16; size <= size_t{1} << 20; size *= 4) {
        made.push_back(message("body-" + std::to_string(size), rawFrame(size)));
        made.back().isSweep = true;
    }
    return made;
}

template <class Shape>
std::string encodedByOracle(const Shape& values, size_t room) {
    std::string bytes(room, '\0');
    size_t used = 0;
    const int result = zrp_oracle::pack(typeOf(values), recordOf(values), 0, bytes.data(),
                                        bytes.size(), &used, true);
    bytes.resize(used);
    return std::to_string(result) + ":" + bytes;
}

}  // namespace

// --- Raw frames ---------------------------------------------------------------------------------

RawFrame::RawFrame(size_t bodyCapacity) : memory_(sizeof(TZRPFrame) + bodyCapacity) {
    (void)frame().construct();
}

bool RawFrame::setBodySize(size_t size) {
    if (size > bodyCapacity()) {
        return false;
    }
    bodySize_ = size;
    return true;
}

bool RawFrame::setBody(const void* from, size_t size) {
    if (!setBodySize(size)) {
        return false;
    }
    memcpy(bodyStart(), from, size);
    return true;
}

// --- The messages -------------------------------------------------------------------------------

const Message<Base>& baseHeader() {
    static const Message<Base> made = message("M1", base(ZRP_CMD_DATA, 62, 1033));
    return made;
}

const Message<Base>& randomBaseHeaders() {
    static const Message<Base> made = makeRandomBaseHeaders();
    return made;
}

const Message<Frame>& synFrame() {
    static const Message<Frame> made = message("M2", makeSynFrame());
    return made;
}

const Message<Frame>& authResponseFrame() {
    static const Message<Frame> made = message("M3", makeAuthResponseFrame());
    return made;
}

const Message<Frame>& routedDataFrame() {
    static const Message<Frame> made = message("M4", makeRoutedDataFrame());
    return made;
}

const Message<RawFrame>& rawDataFrame() {
    static const Message<RawFrame> made = message("M5", rawFrame(1024));
    return made;
}

const Message<Frame>& refreshNoticeFrame() {
    static const Message<Frame> made = message("M6", makeRefreshNoticeFrame());
    return made;
}

const Message<Notice>& refreshNotice() {
    static const Message<Notice> made = message("M6n", notice());
    return made;
}

const Message<Frame>& fullSynFrame() {
    static const Message<Frame> made = message("M2f", makeFullSynFrame());
    return made;
}

const std::vector<Message<RawFrame>>& bodySweep() {
    static const std::vector<Message<RawFrame>> made = makeBodySweep();
    return made;
}

// --- Blank objects, comparison ------------------------------------------------------------------

Base blankLike(const Base&) {
    Base made{};
    made.construct();
    return made;
}

Notice blankLike(const Notice&) {
    Notice made{};
    made.construct();
    return made;
}

Frame blankLike(const Frame&) {
    Frame made{};
    made.construct();
    return made;
}

RawFrame blankLike(const RawFrame& values) {
    return RawFrame(values.bodyCapacity());
}

std::string valuesOf(const Base& values) {
    return encodedByOracle(values, TZRPBase_MAX_VARINT);
}

std::string valuesOf(const Notice& values) {
    return encodedByOracle(values, TZRPAuthRefreshNotifyBody_MAX_VARINT);
}

std::string valuesOf(const Frame& values) {
    return encodedByOracle(values, TZRPInFrame_MAX_VARINT);
}

std::string valuesOf(const RawFrame& values) {
    if (values.head().stBase.dwBodyLen != values.body().size()) {
        return "a body of another length than its head says";
    }
    return encodedByOracle(values, TZRPFrame_MAX_VARINT + 9 + values.body().size());
}

}  // namespace zrp_bench
